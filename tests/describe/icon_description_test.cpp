#include "math/icon_description.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <type_traits>

using Icon = C3DIconDescription;

namespace
{

Icon Make(int type)
{
    Icon icon;
    icon.SetIconType(static_cast<Icon::E3DIconType>(type));
    return icon;
}

} // namespace

TEST(IconDescription, Is_none_by_default_and_has_32_bits)
{
    static_assert(sizeof(Icon) == 4 && std::is_standard_layout_v<Icon>);
    EXPECT_EQ(Icon().GetIconType(), 0);
}

TEST(IconDescription, Types_have_their_numbers)
{
    EXPECT_EQ(Icon::E3DICONTYPE_NONE, 0);
    EXPECT_EQ(Icon::E3DICONTYPE_NULL, 1);
    EXPECT_EQ(Icon::E3DICONTYPE_BOX, 2);
    EXPECT_EQ(Icon::E3DICONTYPE_SPHERE, 3);
    EXPECT_EQ(Icon::E3DICONTYPE_SQUARE, 4);
    EXPECT_EQ(Icon::E3DICONTYPE_CIRCLE, 5);
    EXPECT_EQ(Icon::E3DICONTYPE_BONE, 6);
    EXPECT_EQ(Icon::E3DICONTYPE_CUSTOM, 7);
}

TEST(IconDescription, Names_are_those_that_users_read)
{
    wchar_t const * const names[] = {L"None", L"Null", L"Box", L"Sphere", L"Square", L"Circle", L"Bone", L"Custom"};
    for (int type = 0; type < 8; ++type)
    {
        EXPECT_EQ(std::wstring(Icon::GetIconTypeName(static_cast<Icon::E3DIconType>(type)).GetWideString()),
                  names[type]);
        EXPECT_EQ(std::wstring(Make(type).GetIconTypeName().GetWideString()), names[type]);
    }
}

TEST(IconDescription, Other_values_have_an_empty_name)
{
    for (int const type : {8, 9, 128, 129, 255, 256, 0x101, -1, std::numeric_limits<int>::min()})
    {
        EXPECT_EQ(std::wstring(Icon::GetIconTypeName(static_cast<Icon::E3DIconType>(type)).GetWideString()), L"")
            << type;
        EXPECT_EQ(std::wstring(Make(type).GetIconTypeName().GetWideString()), L"") << type;
    }
}

TEST(IconDescription, SetIconType_stores_any_value)
{
    for (int const type : {0, 7, 8, 255, 256, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
    {
        EXPECT_EQ(static_cast<int>(Make(type).GetIconType()), type);
    }
}

TEST(IconDescription, Copies_have_the_whole_value)
{
    Icon const icon = Make(0x12345678);
    Icon const copy(icon);
    Icon assigned = Make(3);
    EXPECT_EQ(&(assigned = icon), &assigned);
    Icon set = Make(3);
    set.Set(icon);
    EXPECT_EQ(static_cast<int>(copy.GetIconType()), 0x12345678);
    EXPECT_EQ(static_cast<int>(assigned.GetIconType()), 0x12345678);
    EXPECT_EQ(static_cast<int>(set.GetIconType()), 0x12345678);
    set.Set(set);
    EXPECT_EQ(static_cast<int>(set.GetIconType()), 0x12345678);
}

TEST(IconDescription, Comparison_is_that_of_the_whole_value_whatever_the_tolerance)
{
    float const infinity = std::numeric_limits<float>::infinity();
    float const nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_TRUE(Make(1) == Make(1));
    EXPECT_FALSE(Make(1) == Make(2));
    EXPECT_FALSE(Make(1) == Make(0x101));
    EXPECT_TRUE(Make(99) == Make(99));
    for (float const tolerance : {0.0F, 5.0F, -1.0F, infinity, nan})
    {
        EXPECT_TRUE(Make(1).IsAlmostEqual(Make(1), tolerance));
        EXPECT_FALSE(Make(1).IsAlmostEqual(Make(2), tolerance));
        EXPECT_FALSE(Make(1).IsAlmostEqual(Make(0x101), tolerance));
    }
}
