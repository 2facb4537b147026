/// Where the vector classes part from each other: the limits of their length tests, what an index outside the range
/// does, ties, and the forms of an operation. Each row is checked on both sides of its limit.

#include "numeric/vector_checks.h"

#include <climits>
#include <optional>
#include <type_traits>

using namespace test_support;

namespace
{

/// Limits of the length tests. `accepted` is the smallest value that an operation takes and `rejected` the largest that
/// it refuses, next to each other.
template <typename T>
struct Limit
{
    T rejected;
    T accepted;
};

/// Succeeds above the tolerance.
template <typename T>
constexpr Limit<T> Above(T tolerance)
{
    return {tolerance, NextAbove(tolerance)};
}

/// Succeeds at the tolerance too.
template <typename T>
Limit<T> AtOrAbove(T tolerance)
{
    return {NextBelow(tolerance), tolerance};
}

template <typename Vector>
struct Limits;

template <>
struct Limits<C3DVector2Tpl<double>>
{
    static Limit<double> Normalize() { return Above(1e-12); }
    static Limit<double> SetLength() { return Above(1e-12); }
    static Limit<double> SetProjection() { return AtOrAbove(1e-12); }
};
template <>
struct Limits<C3DVector3Tpl<double>>
{
    static Limit<double> Normalize() { return Above(1e-12); }
    static Limit<double> SetLength() { return Above(1e-12); }
    static Limit<double> SetProjection() { return AtOrAbove(1e-12); }
};
template <>
struct Limits<C3DVector4Tpl<double>>
{
    static Limit<double> Normalize() { return Above(1e-12); }
    static Limit<double> SetLength() { return AtOrAbove(1e-12); }
    static Limit<double> SetProjection() { return AtOrAbove(1e-12); }
};
template <>
struct Limits<C3DVectorw>
{
    static Limit<double> Normalize() { return Above(1e-12); }
    static Limit<double> SetLength() { return AtOrAbove(1e-12); }
};

// Of the `float` vectors, that of three components compares in `float`. The others widen: 1e-6F and 1e-12F, as doubles,
// are a little below 1e-6 and 1e-12, so that even a test that takes its limit refuses them.
static_assert(static_cast<double>(1e-6F) < 1e-6 && static_cast<double>(1e-12F) < 1e-12);

template <>
struct Limits<C3DVector2Tpl<float>>
{
    static Limit<float> Normalize() { return Above(1e-6F); }
    static Limit<float> SetLength() { return Above(1e-6F); }
    static Limit<float> SetProjection() { return Above(1e-12F); }
};
template <>
struct Limits<C3DVector3Tpl<float>>
{
    static Limit<float> Normalize() { return Above(1e-6F); }
    static Limit<float> SetLength() { return Above(1e-6F); }
    static Limit<float> SetProjection() { return AtOrAbove(1e-6F); }
};
template <>
struct Limits<C3DVector4Tpl<float>>
{
    static Limit<float> Normalize() { return Above(1e-6F); }
    static Limit<float> SetLength() { return Above(1e-6F); }
    static Limit<float> SetProjection() { return Above(1e-6F); }
};

/// A direction in the XY plane of which the computed squared length is exactly `squared`. One square alone leaves out
/// some numbers; a second one, some orders smaller, fills the gap.
template <typename Vector>
std::optional<Vector> FindDirection(ScalarOf<Vector> squared)
{
    using T = ScalarOf<Vector>;
    T x = std::sqrt(squared);
    for (int step = 0; step < 1000; ++step, x = NextBelow(x))
    {
        T const rest = squared - x * x;
        T const y = rest > 0 ? std::sqrt(rest) : T(0);
        if (x * x + y * y == squared)
        {
            return Make<Vector>(x, y, 0, 0);
        }
    }
    return std::nullopt;
}

template <typename Vector>
class VectorDifferences : public testing::Test
{
};
TYPED_TEST_SUITE(VectorDifferences, AllVectorTypes);

template <typename Vector>
class ProjectionLimits : public testing::Test
{
};
using ProjectionTypes = testing::Types<C3DVector2Tpl<float>, C3DVector2Tpl<double>, C3DVector3Tpl<float>,
                                       C3DVector3Tpl<double>, C3DVector4Tpl<float>, C3DVector4Tpl<double>>;
TYPED_TEST_SUITE(ProjectionLimits, ProjectionTypes);

template <typename Vector>
constexpr bool is_homogeneous_point = std::is_same_v<Vector, C3DVectorw>;

/// A vector along one axis whose computed length is `length`. The weight of the homogeneous point is large, and must
/// not count.
template <typename Vector>
Vector OfLength(unsigned long axis, ScalarOf<Vector> length)
{
    auto v = MakeAlong<Vector>(axis, length);
    if constexpr (is_homogeneous_point<Vector>)
    {
        v.W = 1000;
    }
    EXPECT_EQ(v.GetLength(), std::abs(length));
    return v;
}

} // namespace

TYPED_TEST(VectorDifferences, Normalize_at_its_limit)
{
    using T = ScalarOf<TypeParam>;
    auto const limit = Limits<TypeParam>::Normalize();
    for (unsigned long axis = 0; axis < VectorTraits<TypeParam>::computed; ++axis)
    {
        for (T const sign : {T(1), T(-1)})
        {
            auto const rejected = OfLength<TypeParam>(axis, sign * limit.rejected);
            TypeParam target = rejected;
            EXPECT_EQ(target.Normalize(), 0);
            EXPECT_TRUE(HasSameBytes(target, rejected));
            target = OfLength<TypeParam>(axis, sign * limit.accepted);
            EXPECT_EQ(target.Normalize(), 1);
            EXPECT_NEAR(target[axis], sign, 2 * std::numeric_limits<T>::epsilon());
        }
    }
}

TYPED_TEST(VectorDifferences, SetLength_at_its_limit)
{
    using T = ScalarOf<TypeParam>;
    auto const limit = Limits<TypeParam>::SetLength();
    for (unsigned long axis = 0; axis < VectorTraits<TypeParam>::computed; ++axis)
    {
        for (T const sign : {T(1), T(-1)})
        {
            auto const rejected = OfLength<TypeParam>(axis, sign * limit.rejected);
            TypeParam target = rejected;
            EXPECT_EQ(target.SetLength(T(2)), 0);
            EXPECT_TRUE(HasSameBytes(target, rejected));
            target = OfLength<TypeParam>(axis, sign * limit.accepted);
            EXPECT_EQ(target.SetLength(T(2)), 1);
            EXPECT_NEAR(target[axis], 2 * sign, 4 * std::numeric_limits<T>::epsilon());
        }
    }
}

TYPED_TEST(ProjectionLimits, SetProjection_at_its_limit)
{
    using T = ScalarOf<TypeParam>;
    auto const limit = Limits<TypeParam>::SetProjection();
    std::optional<TypeParam> const rejected = FindDirection<TypeParam>(limit.rejected);
    std::optional<TypeParam> const accepted = FindDirection<TypeParam>(limit.accepted);
    ASSERT_TRUE(rejected.has_value() && accepted.has_value());
    ASSERT_EQ(rejected->GetSquaredLength(), limit.rejected);
    ASSERT_EQ(accepted->GetSquaredLength(), limit.accepted);

    auto const before = Make<TypeParam>(3, 4, 5, 6);
    TypeParam target = before;
    EXPECT_EQ(target.SetProjection(*rejected), 0);
    EXPECT_TRUE(HasSameBytes(target, before));
    EXPECT_EQ(target.SetProjection(*accepted), 1);
    EXPECT_NEAR(target.X * accepted->Y, target.Y * accepted->X, 16 * std::numeric_limits<T>::epsilon())
        << "the target lies along the direction";
    EXPECT_GE(target.GetLength(), T(2.9));
}

TYPED_TEST(VectorDifferences, Null_vectors_have_no_direction)
{
    using T = ScalarOf<TypeParam>;
    auto const null = Make<TypeParam>(0, 0, -0.0, 0);
    TypeParam target = null;
    EXPECT_EQ(target.Normalize(), 0);
    EXPECT_TRUE(HasSameBytes(target, null));
    EXPECT_EQ(target.SetLength(T(5)), 0);
    EXPECT_TRUE(HasSameBytes(target, null));
}

TYPED_TEST(VectorDifferences, NaN_lengths_are_refused)
{
    using T = ScalarOf<TypeParam>;
    for (unsigned long axis = 0; axis < VectorTraits<TypeParam>::computed; ++axis)
    {
        auto before = Make<TypeParam>(1, 2, 3, 4);
        before[axis] = k_NaN<T>;
        TypeParam target = before;
        EXPECT_EQ(target.Normalize(), 0);
        EXPECT_EQ(target.SetLength(T(2)), 0);
        EXPECT_TRUE(HasSameBytes(target, before));
    }
}

TYPED_TEST(VectorDifferences, Infinite_lengths_go_on)
{
    using T = ScalarOf<TypeParam>;
    auto target = Make<TypeParam>(k_Infinity<double>, 2, 3, 4);
    EXPECT_EQ(target.Normalize(), 1);
    EXPECT_TRUE(std::isnan(target.X));
    EXPECT_EQ(target.Y, T(0));
}

TEST(NormalizeFloat, Lengths_of_one_and_two_millionths)
{
    C3DVector3Tpl<float> target(0.0F, 1e-6F, 0.0F);
    EXPECT_EQ(target.Normalize(), 0);
    EXPECT_EQ(target.Y, 1e-6F);
    target.Set(0.0F, 2e-6F, 0.0F);
    EXPECT_EQ(target.Normalize(), 1);
    EXPECT_EQ(target.Y, 1.0F);
}

TEST(SetProjectionDouble, Directions_of_a_millionth_and_a_tenth_of_it)
{
    C3DVector3Tpl<double> target(3.0, 4.0, 5.0);
    EXPECT_EQ(target.SetProjection(C3DVector3Tpl<double>(0.0, 1e-7, 0.0)), 0);
    EXPECT_EQ(target.SetProjection(C3DVector3Tpl<double>(0.0, 1.0000001e-6, 0.0)), 1);
    EXPECT_DOUBLE_EQ(target.Y, 4.0);
}

TEST(SetProjectionFloat, Two_components_accept_directions_that_the_others_refuse)
{
    // Of squared length 1e-8.
    C3DVector2Tpl<float> two(3.0F, 4.0F);
    EXPECT_EQ(two.SetProjection(C3DVector2Tpl<float>(1e-4F, 0.0F)), 1);
    C3DVector3Tpl<float> three(3.0F, 4.0F, 5.0F);
    EXPECT_EQ(three.SetProjection(C3DVector3Tpl<float>(1e-4F, 0.0F, 0.0F)), 0);
    C3DVector4Tpl<float> four(3.0F, 4.0F, 5.0F, 6.0F);
    EXPECT_EQ(four.SetProjection(C3DVector4Tpl<float>(1e-4F, 0.0F, 0.0F, 0.0F)), 0);
}

TYPED_TEST(VectorDifferences, Get_falls_back_on_the_last_component_or_the_first_of_the_homogeneous_point)
{
    auto const v = Make<TypeParam>(2, 3, 5, 7);
    constexpr int count = static_cast<int>(VectorTraits<TypeParam>::stored);
    for (int i = 0; i < count; ++i)
    {
        EXPECT_EQ(v.Get(i), Components(v)[static_cast<unsigned long>(i)]) << i;
    }
    auto const fallback = is_homogeneous_point<TypeParam> ? v.X : Components(v).back();
    for (int const index : {-1, count, count + 1, 7, INT_MIN, INT_MAX})
    {
        EXPECT_EQ(v.Get(index), fallback) << index;
    }
}

namespace
{

/// `SetComp` of the two-component vector, `Set` of the others.
template <typename Vector>
Vector & SetIndexed(Vector & target, int index, ScalarOf<Vector> value)
{
    if constexpr (VectorTraits<Vector>::stored == 2)
    {
        return target.SetComp(index, value);
    }
    else
    {
        return target.Set(index, value);
    }
}

} // namespace

TYPED_TEST(VectorDifferences, Set_of_a_component_changes_nothing_outside_the_range)
{
    using T = ScalarOf<TypeParam>;
    auto const before = Make<TypeParam>(2, 3, 5, 7);
    constexpr int count = static_cast<int>(VectorTraits<TypeParam>::stored);
    for (int i = 0; i < count; ++i)
    {
        TypeParam target = before;
        EXPECT_EQ(&SetIndexed(target, i, T(99)), &target);
        auto expected = Components(before);
        expected[static_cast<unsigned long>(i)] = T(99);
        EXPECT_EQ(Components(target), expected) << i;
    }
    for (int const index : {-1, count, count + 1, 7, INT_MIN, INT_MAX})
    {
        TypeParam target = before;
        EXPECT_EQ(&SetIndexed(target, index, T(99)), &target);
        EXPECT_EQ(Components(target), Components(before)) << index;
    }
}

TYPED_TEST(VectorDifferences, Default_and_null_vectors)
{
    using T = ScalarOf<TypeParam>;
    ComponentsOf<TypeParam> expected{};
    if constexpr (is_homogeneous_point<TypeParam>)
    {
        expected.back() = T(1);
    }
    auto target = Make<TypeParam>(2, 3, 5, 7);
    EXPECT_EQ(&target.SetNull(), &target);
    EXPECT_EQ(Components(target), expected);
    if constexpr (VectorTraits<TypeParam>::stored != 3) // whose default constructor writes nothing
    {
        EXPECT_EQ(Components(TypeParam()), expected);
    }
}

namespace
{

template <typename T>
class InterpolationDifferences : public testing::Test
{
};
TYPED_TEST_SUITE(InterpolationDifferences, ScalarTypes);

} // namespace

TYPED_TEST(InterpolationDifferences, UnInterpolate_takes_a_span_of_the_tolerance_in_space_but_not_in_the_plane)
{
    using T = TypeParam;
    using V2 = C3DVector2Tpl<T>;
    using V3 = C3DVector3Tpl<T>;
    auto const epsilon = T(0.125);
    struct Row
    {
        T span;
        bool plane;
        bool space;
    };
    for (Row const & row :
         {Row{NextBelow(epsilon), false, false}, Row{epsilon, false, true}, Row{NextAbove(epsilon), true, true}})
    {
        for (T const sign : {T(1), T(-1)})
        {
            T const span = sign * row.span;
            T const parameter = T(1) / span;
            for (unsigned long axis = 0; axis < 2; ++axis)
            {
                auto const from = MakeAlong<V2>(axis, T(0));
                EXPECT_EQ(
                    MakeAlong<V2>(axis, T(1)).LinearPositionUnInterpolate(from, MakeAlong<V2>(axis, span), epsilon),
                    row.plane ? parameter : T(0))
                    << axis << ' ' << span;
            }
            for (unsigned long axis = 0; axis < 3; ++axis)
            {
                auto const from = MakeAlong<V3>(axis, T(0));
                EXPECT_EQ(
                    MakeAlong<V3>(axis, T(1)).LinearPositionUnInterpolate(from, MakeAlong<V3>(axis, span), epsilon),
                    row.space ? parameter : T(0))
                    << axis << ' ' << span;
            }
        }
    }
}

TYPED_TEST(InterpolationDifferences, UnInterpolate_has_the_standard_tolerance_by_default)
{
    using T = TypeParam;
    using V2 = C3DVector2Tpl<T>;
    using V3 = C3DVector3Tpl<T>;
    T const standard = std::is_same_v<T, double> ? T(1e-12) : T(1e-6F);
    EXPECT_EQ(MakeAlong<V2>(0, T(1)).LinearPositionUnInterpolate(MakeAlong<V2>(0, T(0)), MakeAlong<V2>(0, standard)),
              0);
    EXPECT_NE(MakeAlong<V2>(0, T(1)).LinearPositionUnInterpolate(MakeAlong<V2>(0, T(0)),
                                                                 MakeAlong<V2>(0, NextAbove(standard))),
              0);
    EXPECT_NE(MakeAlong<V3>(0, T(1)).LinearPositionUnInterpolate(MakeAlong<V3>(0, T(0)), MakeAlong<V3>(0, standard)),
              0);
    EXPECT_EQ(MakeAlong<V3>(0, T(1)).LinearPositionUnInterpolate(MakeAlong<V3>(0, T(0)),
                                                                 MakeAlong<V3>(0, NextBelow(standard))),
              0);
}

TYPED_TEST(InterpolationDifferences, Set_from_a_vector_returns_nothing_for_four_components)
{
    using V2 = C3DVector2Tpl<TypeParam>;
    using V3 = C3DVector3Tpl<TypeParam>;
    using V4 = C3DVector4Tpl<TypeParam>;
    static_assert(std::is_same_v<decltype(std::declval<V2 &>().Set(std::declval<V2>())), V2 &>);
    static_assert(std::is_same_v<decltype(std::declval<V3 &>().Set(std::declval<V3>())), V3 &>);
    static_assert(std::is_void_v<decltype(std::declval<V4 &>().Set(std::declval<V4>()))>);
}

TYPED_TEST(InterpolationDifferences, Minimal_forms_differ_by_class)
{
    using T = TypeParam;
    // The same numbers: signed where the flag is 0, by magnitude where it is not, always by magnitude with four.
    C3DVector2Tpl<T> two(T(-3), T(0.5));
    EXPECT_EQ(Components(two.SetMinimal(0, T(1))), Row<T>(1, 1));
    two.Set(T(-3), T(0.5));
    EXPECT_EQ(Components(two.SetMinimal(1, T(1))), Row<T>(-3, 1));
    C3DVector3Tpl<T> three(T(-3), T(0.5), T(-0.5));
    EXPECT_EQ(Components(three.SetMinimal(0, T(1))), Row<T>(1, 1, 1));
    three.Set(T(-3), T(0.5), T(-0.5));
    EXPECT_EQ(Components(three.SetMinimal(1, T(1))), Row<T>(-3, 1, -1));
    C3DVector4Tpl<T> four(T(-3), T(0.5), T(-0.5), T(-0.5));
    EXPECT_EQ(Components(four.SetMinimal(T(1))), Row<T>(-3, 1, -1, -1));
    C3DVectorw point(-3, 0.5, -0.5, -0.5);
    EXPECT_EQ(Components(point.SetMinimal(1.0)), Row<double>(-3, 1, -1, 1));
}

TYPED_TEST(InterpolationDifferences, Divisor_stands_last_except_for_the_homogeneous_point)
{
    using T = TypeParam;
    C3DVector2Tpl<T> const two(T(8), T(4));
    EXPECT_EQ(Components(C3DVector2Tpl<T>().Div(two, T(2))), Row<T>(4, 2));
    C3DVector3Tpl<T> const three(T(8), T(4), T(2));
    EXPECT_EQ(Components(C3DVector3Tpl<T>().Div(three, T(2))), Row<T>(4, 2, 1));
    C3DVector4Tpl<T> const four(T(8), T(4), T(2), T(1));
    EXPECT_EQ(Components(C3DVector4Tpl<T>().Div(four, T(2))), Row<T>(4, 2, 1, 0.5));
    C3DVectorw const point(8, 4, 2, 100);
    EXPECT_EQ(Components(C3DVectorw().Div(2.0, point)), Row<double>(4, 2, 1, 1));
}
