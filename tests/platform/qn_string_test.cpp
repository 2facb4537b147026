#include "math/platform/qn_string.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

TEST(QnString, Copies_its_text)
{
    std::wstring text = L"Bone";
    CQNString const string(text.c_str());
    text[0] = L'T';
    EXPECT_STREQ(string.GetWideString(), L"Bone");
}

TEST(QnString, Takes_null_as_empty)
{
    CQNString const string(nullptr);
    ASSERT_NE(string.GetWideString(), nullptr);
    EXPECT_STREQ(string.GetWideString(), L"");
    EXPECT_STREQ(CQNString(L"").GetWideString(), L"");
}

TEST(QnString, Copies_are_independent)
{
    CQNString first(L"a text too long for any small buffer inside the string");
    CQNString const second(first);
    EXPECT_NE(first.GetWideString(), second.GetWideString());
    first = CQNString(L"other");
    EXPECT_STREQ(first.GetWideString(), L"other");
    EXPECT_STREQ(second.GetWideString(), L"a text too long for any small buffer inside the string");
}

TEST(QnString, Survives_assignment_to_itself)
{
    CQNString string(L"Point");
    CQNString const & same = string;
    string = same;
    EXPECT_STREQ(string.GetWideString(), L"Point");
}

TEST(QnString, Is_made_where_a_string_is_wanted)
{
    auto const length = [](CQNString const & string) { return std::wstring(string.GetWideString()).size(); };
    EXPECT_EQ(length(L"Segment"), 7U);
}

} // namespace
