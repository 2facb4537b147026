#include "math/platform/text.h"

#include "platform/utf8.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

std::string Convert(wchar_t const * text)
{
    std::vector<char> buffer(math::detail::GetNarrowSize(text) + 4, 'x');
    EXPECT_EQ(CharToOemW(text, buffer.data()), 1);
    std::string result(buffer.data());
    EXPECT_EQ(result.size() + 1, math::detail::GetNarrowSize(text));
    EXPECT_EQ(std::string(buffer.end() - 4, buffer.end()), "xxxx") << "no more is written than was told";
    return result;
}

template <typename Unit>
std::string ConvertUnits(std::vector<Unit> text)
{
    text.push_back(0);
    std::size_t const size = math::detail::ConvertToUtf8(text.data(), nullptr);
    std::vector<char> buffer(size);
    EXPECT_EQ(math::detail::ConvertToUtf8(text.data(), buffer.data()), size);
    EXPECT_EQ(buffer.back(), '\0');
    return {buffer.begin(), buffer.end() - 1};
}

constexpr char const * replacement = "\xEF\xBF\xBD";

TEST(CharToOemW, Keeps_ascii)
{
    EXPECT_EQ(Convert(L"Dump of a vector\t~\x01\x7F"), "Dump of a vector\t~\x01\x7F");
    EXPECT_EQ(Convert(L""), "");
}

TEST(CharToOemW, Writes_wider_characters_as_several_bytes)
{
    EXPECT_EQ(Convert(L"caf\u00E9 \u20AC \U0001D54A"), "caf\xC3\xA9 \xE2\x82\xAC \xF0\x9D\x95\x8A");
}

TEST(CharToOemW, Refuses_null)
{
    char buffer = 'x';
    EXPECT_EQ(CharToOemW(nullptr, &buffer), 0);
    EXPECT_EQ(buffer, 'x');
    EXPECT_EQ(CharToOemW(L"a", nullptr), 0);
    EXPECT_EQ(CharToOemW(nullptr, nullptr), 0);
    EXPECT_EQ(math::detail::GetNarrowSize(nullptr), 0U);
}

TEST(CharToOemW, Takes_no_negative_character)
{
    wchar_t const text[] = {static_cast<wchar_t>(-1), L'a', 0};
    if constexpr (sizeof(wchar_t) > 2)
    {
        EXPECT_EQ(Convert(text), std::string(replacement) + "a");
    }
}

TEST(Utf8, Length_changes_at_its_four_thresholds)
{
    EXPECT_EQ(ConvertUnits<char32_t>({0x7F}), "\x7F");
    EXPECT_EQ(ConvertUnits<char32_t>({0x80}), "\xC2\x80");
    EXPECT_EQ(ConvertUnits<char32_t>({0x7FF}), "\xDF\xBF");
    EXPECT_EQ(ConvertUnits<char32_t>({0x800}), "\xE0\xA0\x80");
    EXPECT_EQ(ConvertUnits<char32_t>({0xFFFF}), "\xEF\xBF\xBF");
    EXPECT_EQ(ConvertUnits<char32_t>({0x10000}), "\xF0\x90\x80\x80");
    EXPECT_EQ(ConvertUnits<char32_t>({0x10FFFF}), "\xF4\x8F\xBF\xBF");
}

TEST(Utf8, What_is_no_character_is_replaced)
{
    for (char32_t const code : {0xD800U, 0xDBFFU, 0xDC00U, 0xDFFFU, 0x110000U, 0x80000041U, 0xFFFFFFFFU})
    {
        EXPECT_EQ(ConvertUnits<char32_t>({code}), replacement) << static_cast<unsigned int>(code);
    }
    EXPECT_EQ(ConvertUnits<char32_t>({0xD7FF}), "\xED\x9F\xBF");
    EXPECT_EQ(ConvertUnits<char32_t>({0xE000}), "\xEE\x80\x80");
}

TEST(Utf8, Surrogates_do_not_pair_in_wide_units)
{
    EXPECT_EQ(ConvertUnits<char32_t>({0xD83D, 0xDE00}), std::string(replacement) + replacement);
}

TEST(Utf8, Surrogates_pair_in_units_of_two_bytes)
{
    EXPECT_EQ(ConvertUnits<char16_t>({0xD800, 0xDC00}), "\xF0\x90\x80\x80");
    EXPECT_EQ(ConvertUnits<char16_t>({'a', 0xD83D, 0xDE00, 'b'}), "a\xF0\x9F\x98\x80"
                                                                  "b");
    EXPECT_EQ(ConvertUnits<char16_t>({0xDBFF, 0xDFFF}), "\xF4\x8F\xBF\xBF");
    EXPECT_EQ(ConvertUnits<char16_t>({0xFFFF}), "\xEF\xBF\xBF");
}

TEST(Utf8, A_lone_surrogate_is_replaced_and_its_neighbour_kept)
{
    std::string const lone = replacement;
    EXPECT_EQ(ConvertUnits<char16_t>({0xD83D}), lone) << "at the end of the text";
    EXPECT_EQ(ConvertUnits<char16_t>({0xD83D, 'a'}), lone + "a");
    EXPECT_EQ(ConvertUnits<char16_t>({0xDE00, 'a'}), lone + "a");
    EXPECT_EQ(ConvertUnits<char16_t>({0xDE00, 0xD83D}), lone + lone) << "the wrong way round";
    EXPECT_EQ(ConvertUnits<char16_t>({0xD83D, 0xD83D, 0xDE00}), lone + "\xF0\x9F\x98\x80");
    EXPECT_EQ(ConvertUnits<char16_t>({0xD83D, 0xE000}), lone + "\xEE\x80\x80");
}

} // namespace
