#include "math/shape_description.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cwchar>
#include <limits>
#include <map>
#include <new>
#include <string>
#include <type_traits>

using Shape = C3DShapeDescription;

namespace
{

Shape::E3DShapeType Type(int value)
{
    return static_cast<Shape::E3DShapeType>(value);
}

Shape MakeInstance(unsigned long id)
{
    Shape shape;
    shape.SetAsInstance(id);
    return shape;
}

Shape MakeReference(unsigned long id, bool flag)
{
    Shape shape;
    shape.SetAsReference(id, flag);
    return shape;
}

/// A type that has no parameters of its own, over those of a reference.
Shape MakeOver(int type, unsigned long id, bool flag)
{
    Shape shape = MakeReference(id, flag);
    shape.SetAsTrivial(Type(type));
    return shape;
}

void Expect(Shape const & shape, int type, unsigned long id, bool flag)
{
    EXPECT_EQ(static_cast<int>(shape.GetType()), type);
    EXPECT_EQ(shape.GetInstanceDescription().identifier, id);
    EXPECT_EQ(shape.GetReferenceDescription().identifier, id);
    EXPECT_EQ(shape.GetReferenceDescription().flag, flag);
}

std::map<int, std::wstring> const k_Names{{0, L"Point"},  {1, L"Segment"}, {2, L"Disc"},       {3, L"Rectangle"},
                                          {4, L"Sphere"}, {5, L"Box"},     {6, L"Cylinder"},   {7, L"Capsule"},
                                          {8, L"Cone"},   {9, L"Blob"},    {128, L"Instance"}, {129, L"Reference"}};

constexpr wchar_t k_Marker = L'#';

/// A buffer that ends a few characters past what a name may fill.
using Buffer = std::array<wchar_t, Shape::k_ShapeTypeNameMaxSize + 4>;

Buffer MarkedBuffer()
{
    Buffer buffer;
    buffer.fill(k_Marker);
    return buffer;
}

} // namespace

TEST(ShapeDescription, Is_a_point_by_default)
{
    static_assert(sizeof(Shape) == 12 && std::is_standard_layout_v<Shape>);
    EXPECT_EQ(Shape().GetType(), Shape::E3DSHAPETYPE_POINT);
    for (int type = 0; type < 256; ++type)
    {
        EXPECT_EQ(static_cast<int>(Shape(Type(type)).GetType()), type);
    }
}

TEST(ShapeDescription, Stands_as_a_member_and_in_an_array_that_is_cleared)
{
    struct Body
    {
        int number;
        Shape shape;
    };
    Body const body{};
    std::array<Shape, 2> const shapes{};
    EXPECT_EQ(body.number, 0);
    EXPECT_EQ(body.shape.GetType(), Shape::E3DSHAPETYPE_POINT);
    EXPECT_EQ(shapes[1].GetType(), Shape::E3DSHAPETYPE_POINT);
    static_assert(std::is_convertible_v<Shape::E3DShapeType, Shape>);
}

TEST(ShapeDescription, Types_have_their_numbers)
{
    EXPECT_EQ(Shape::E3DSHAPETYPE_POINT, 0);
    EXPECT_EQ(Shape::E3DSHAPETYPE_SEGMENT, 1);
    EXPECT_EQ(Shape::E3DSHAPETYPE_DISC, 2);
    EXPECT_EQ(Shape::E3DSHAPETYPE_RECTANGLE, 3);
    EXPECT_EQ(Shape::E3DSHAPETYPE_SPHERE, 4);
    EXPECT_EQ(Shape::E3DSHAPETYPE_BOX, 5);
    EXPECT_EQ(Shape::E3DSHAPETYPE_CYLINDER, 6);
    EXPECT_EQ(Shape::E3DSHAPETYPE_CAPSULE, 7);
    EXPECT_EQ(Shape::E3DSHAPETYPE_CONE, 8);
    EXPECT_EQ(Shape::E3DSHAPETYPE_BLOB, 9);
    EXPECT_EQ(Shape::E3DSHAPETYPE_INSTANCE, 128);
    EXPECT_EQ(Shape::E3DSHAPETYPE_REFERENCE, 129);
}

TEST(ShapeDescription, Values_below_128_are_trivial)
{
    for (int type = 0; type < 256; ++type)
    {
        EXPECT_EQ(Shape(Type(type)).IsTrivial(), type < 128) << type;
    }
    EXPECT_FALSE(MakeInstance(0).IsTrivial());
    EXPECT_FALSE(MakeReference(0, false).IsTrivial());
}

TEST(ShapeDescription, SetAs_writes_what_its_type_has_and_no_more)
{
    Shape shape = MakeReference(7, true);
    Expect(shape, 129, 7, true);
    shape.SetAsInstance(9);
    Expect(shape, 128, 9, true);
    shape.SetAsTrivial(Shape::E3DSHAPETYPE_BOX);
    Expect(shape, 5, 9, true);
    shape.SetAsTrivial(Type(200));
    Expect(shape, 200, 9, true);
    shape.SetAsReference(11, false);
    Expect(shape, 129, 11, false);
}

TEST(ShapeDescription, Identifiers_are_the_low_32_bits)
{
    unsigned long const greatest = std::numeric_limits<unsigned long>::max();
    Expect(MakeInstance(greatest), 128, 0xFFFFFFFF, false);
    Expect(MakeReference(greatest, true), 129, 0xFFFFFFFF, true);
    if constexpr (sizeof(unsigned long) > 4)
    {
        unsigned long const wide = (greatest << 16U << 16U) | 0x12345678;
        Expect(MakeInstance(wide), 128, 0x12345678, false);
        Expect(MakeReference(wide, false), 129, 0x12345678, false);
        EXPECT_TRUE(MakeInstance(wide) == MakeInstance(0x12345678));
    }
}

TEST(ShapeDescription, Both_descriptions_are_one_place)
{
    Shape const shape = MakeInstance(5);
    EXPECT_EQ(static_cast<void const *>(&shape.GetInstanceDescription()),
              static_cast<void const *>(&shape.GetReferenceDescription()));
}

TEST(ShapeDescription, Set_copies_the_type_and_the_parameters_that_it_has)
{
    Shape shape = MakeReference(7, true);
    shape.Set(MakeInstance(9));
    Expect(shape, 128, 9, true); // the flag is none of an instance's
    shape.Set(MakeReference(3, false));
    Expect(shape, 129, 3, false);
    for (int const type : {0, 9, 10, 127, 130, 255})
    {
        shape.Set(MakeOver(type, 21, true));
        Expect(shape, type, 3, false);
    }
    shape.Set(shape);
    Expect(shape, 255, 3, false);
    Shape reference = MakeReference(7, true);
    reference.Set(reference);
    Expect(reference, 129, 7, true);
}

TEST(ShapeDescription, A_copy_has_the_parameters_of_its_type_alone)
{
    for (bool const flag : {true, false})
    {
        Shape const reference = MakeReference(7, flag);
        Shape const copy(reference);
        Expect(copy, 129, 7, flag);
    }
    Shape const instance = MakeOver(128, 9, true);
    Shape const copy(instance);
    Expect(copy, 128, 9, false);
    for (int const type : {0, 9, 10, 127, 130, 255})
    {
        Shape const other = MakeOver(type, 21, true);
        Shape const copyOfOther(other);
        Expect(copyOfOther, type, 0, false);
    }
}

TEST(ShapeDescription, Assignment_copies_the_object_whole)
{
    for (int const type : {0, 9, 10, 127, 128, 129, 130, 255})
    {
        Shape shape = MakeReference(3, false);
        EXPECT_EQ(&(shape = MakeOver(type, 21, true)), &shape);
        Expect(shape, type, 21, true);
    }
    Shape shape = MakeReference(3, true);
    Shape const & same = shape;
    shape = same;
    Expect(shape, 129, 3, true);
}

TEST(ShapeDescription, Comparison_looks_at_the_parameters_that_the_type_has)
{
    EXPECT_FALSE(Shape(Type(1)) == Shape(Type(2)));
    for (int const type : {0, 5, 9, 10, 127, 130, 255})
    {
        EXPECT_TRUE(MakeOver(type, 1, true) == MakeOver(type, 2, false)) << type;
    }
    EXPECT_TRUE(MakeInstance(4) == MakeInstance(4));
    EXPECT_FALSE(MakeInstance(4) == MakeInstance(5));
    EXPECT_TRUE(MakeOver(128, 4, true) == MakeOver(128, 4, false)); // the flag is none of an instance's
    EXPECT_FALSE(MakeInstance(0xFFFFFFFF) == MakeInstance(0x7FFFFFFF));
    EXPECT_TRUE(MakeReference(4, true) == MakeReference(4, true));
    EXPECT_TRUE(MakeReference(4, false) == MakeReference(4, false));
    EXPECT_FALSE(MakeReference(4, true) == MakeReference(4, false));
    EXPECT_FALSE(MakeReference(4, true) == MakeReference(5, true));
    EXPECT_FALSE(MakeInstance(4) == MakeReference(4, false));
    EXPECT_FALSE(MakeOver(5, 4, true) == MakeReference(4, true));
}

TEST(ShapeDescription, Comparison_ignores_the_tolerance)
{
    float const infinity = std::numeric_limits<float>::infinity();
    float const nan = std::numeric_limits<float>::quiet_NaN();
    for (float const tolerance : {0.0F, 100.0F, -1.0F, infinity, nan})
    {
        EXPECT_TRUE(MakeReference(4, true).IsAlmostEqual(MakeReference(4, true), tolerance));
        EXPECT_FALSE(MakeReference(4, true).IsAlmostEqual(MakeReference(4, false), tolerance));
        EXPECT_FALSE(MakeReference(4, true).IsAlmostEqual(MakeReference(5, true), tolerance));
        EXPECT_FALSE(MakeInstance(4).IsAlmostEqual(MakeInstance(5), tolerance));
        EXPECT_FALSE(MakeInstance(4).IsAlmostEqual(MakeReference(4, false), tolerance));
        EXPECT_TRUE(MakeOver(5, 1, true).IsAlmostEqual(MakeOver(5, 2, false), tolerance));
    }
}

TEST(ShapeDescription, Comparison_ignores_the_bytes_between_the_fields)
{
    alignas(Shape) unsigned char storage[sizeof(Shape)];
    std::fill(std::begin(storage), std::end(storage), static_cast<unsigned char>(0xA5));
    auto * const shape = ::new (static_cast<void *>(storage)) Shape;
    shape->SetAsReference(4, true);
    EXPECT_TRUE(*shape == MakeReference(4, true));
    EXPECT_TRUE(MakeReference(4, true) == *shape);
}

TEST(ShapeDescription, The_size_of_a_name_is_a_constant_for_arrays)
{
    static_assert(Shape::k_ShapeTypeNameMaxSize == 32);
    EXPECT_EQ(*&Shape::k_ShapeTypeNameMaxSize, 32U);
}

TEST(ShapeDescription, GetShapeTypeName_fills_the_buffer_with_the_name_and_zeros)
{
    for (auto const & [type, name] : k_Names)
    {
        Buffer buffer = MarkedBuffer();
        Shape::GetShapeTypeName(Type(type), buffer.data());
        Buffer expected = MarkedBuffer();
        std::fill_n(expected.begin(), 32, L'\0');
        std::copy(name.begin(), name.end(), expected.begin());
        EXPECT_EQ(buffer, expected) << type;
    }
}

TEST(ShapeDescription, GetShapeTypeName_leaves_the_buffer_for_a_value_that_names_no_shape)
{
    int unnamed = 0;
    for (int type = 0; type < 256; ++type)
    {
        if (!k_Names.contains(type))
        {
            Buffer buffer = MarkedBuffer();
            Shape::GetShapeTypeName(Type(type), buffer.data());
            EXPECT_EQ(buffer, MarkedBuffer()) << type;
            ++unnamed;
        }
    }
    EXPECT_EQ(unnamed, 244);
}

TEST(ShapeDescription, GetShapeTypeName_takes_a_null_buffer_for_every_value)
{
    for (int type = 0; type < 256; ++type)
    {
        EXPECT_NO_FATAL_FAILURE(Shape::GetShapeTypeName(Type(type), nullptr));
    }
}
