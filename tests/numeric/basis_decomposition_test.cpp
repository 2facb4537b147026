#include "math/vector2.h"
#include "math/vector3.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace
{

/// A power of two, so that limits can be met exactly.
constexpr double k_Epsilon = 0.0009765625;

template <typename T>
struct Coefficients
{
    int result;
    T s;
    T t;
};

template <typename T>
Coefficients<T> Decompose(C3DVector3Tpl<T> target, C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b,
                          T epsilon = T(k_Epsilon))
{
    Coefficients<T> found{-1, T(77), T(88)};
    found.result = target.DecomposeIn2Basis(a, b, found.s, found.t, epsilon);
    return found;
}

template <typename T>
Coefficients<T> Decompose(C3DVector2Tpl<T> const & target, C3DVector2Tpl<T> const & a, C3DVector2Tpl<T> const & b,
                          T epsilon = T(k_Epsilon))
{
    Coefficients<T> found{-1, T(77), T(88)};
    found.result = target.DecomposeIn2Basis(a, b, found.s, found.t, epsilon);
    return found;
}

template <typename T>
void ExpectCoefficients(Coefficients<T> const & found, int result, T s, T t)
{
    T const tolerance = 8 * std::numeric_limits<T>::epsilon();
    EXPECT_EQ(found.result, result);
    EXPECT_NEAR(found.s, s, tolerance * (1 + std::abs(s)));
    EXPECT_NEAR(found.t, t, tolerance * (1 + std::abs(t)));
}

template <typename T>
class Decomposition : public testing::Test
{
public:
    using V2 = C3DVector2Tpl<T>;
    using V3 = C3DVector3Tpl<T>;
};

using Scalars = testing::Types<float, double>;
TYPED_TEST_SUITE(Decomposition, Scalars);

} // namespace

TYPED_TEST(Decomposition, In_space_does_not_look_at_the_third_coordinate)
{
    using V = typename TestFixture::V3;
    ExpectCoefficients<TypeParam>(Decompose(V(1, 2, 3), V(1, 0, 0), V(0, 1, 0)), 1, 1, 2);
}

TYPED_TEST(Decomposition, In_space_uses_the_coordinates_in_which_the_basis_is_largest)
{
    using V = typename TestFixture::V3;
    TypeParam const off = 1000;
    // a in X, b in Z: the Y of 2a + 3b, which is 7, does not matter.
    ExpectCoefficients<TypeParam>(Decompose(V(8, 7 + off, 10), V(4, 2, -1), V(0, 1, 4)), 1, 2, 3);
    // The greater of the two in Z: X and Z once more.
    ExpectCoefficients<TypeParam>(Decompose(V(8, 7 + off, 22), V(4, 2, -1), V(0, 1, 8)), 1, 2, 3);
    // a in Y by magnitude, b in Z: X does not matter.
    ExpectCoefficients<TypeParam>(Decompose(V(5 + off, -8, 10), V(1, -4, -1), V(1, 0, 4)), 1, 2, 3);
}

TYPED_TEST(Decomposition, In_space_gives_a_tie_to_the_earlier_coordinate)
{
    using V = typename TestFixture::V3;
    TypeParam const off = 1000;
    // a ties in X and Y and takes X, so that Y does not matter.
    ExpectCoefficients<TypeParam>(Decompose(V(4, -1 + off, 9), V(2, -2, 0), V(0, 1, 3)), 1, 2, 3);
    // b ties in Y and Z and takes Y, so that Z does not matter.
    ExpectCoefficients<TypeParam>(Decompose(V(10, 9, -9 + off), V(5, 0, 0), V(0, 3, -3)), 1, 2, 3);
}

TYPED_TEST(Decomposition, In_space_takes_a_second_coordinate_where_both_are_largest_in_the_same)
{
    using V = typename TestFixture::V3;
    TypeParam const off = 1000;
    // a leads, so b gives the second coordinate: Y is larger in b, Z in a.
    ExpectCoefficients<TypeParam>(Decompose(V(22, 8, 6 + off), V(5, 1, 3), V(4, 2, 0)), 1, 2, 3);
    // b leads, so a gives it.
    ExpectCoefficients<TypeParam>(Decompose(V(23, 7 + off, 6), V(4, 2, 3), V(5, 1, 0)), 1, 2, 3);
    // Equally large, a leads.
    ExpectCoefficients<TypeParam>(Decompose(V(25, 8, 6 + off), V(5, 1, 3), V(5, 2, 0)), 1, 2, 3);
    // A tie between the other two goes to the later one in cyclic order: Z after X.
    ExpectCoefficients<TypeParam>(Decompose(V(22, 8 + off, 0), V(5, 1, 3), V(4, 2, -2)), 1, 2, 3);
    // Both in Z: next is X, then Y. X is larger.
    ExpectCoefficients<TypeParam>(Decompose(V(8, 5 + off, 22), V(1, 1, 5), V(2, 1, 4)), 1, 2, 3);
    // Both in Y: next is Z, then X, which takes the tie.
    ExpectCoefficients<TypeParam>(Decompose(V(11, 22, 9 + off), V(1, 5, 0), V(3, 4, 3)), 1, 2, 3);
}

TYPED_TEST(Decomposition, In_space_recovers_the_coefficients_of_a_combination)
{
    using V = typename TestFixture::V3;
    std::mt19937_64 generator(41);
    std::uniform_real_distribution<TypeParam> coordinate(-4, 4);
    TypeParam const tolerance = 1000 * std::numeric_limits<TypeParam>::epsilon();
    int tried = 0;
    for (int i = 0; i < 2000; ++i)
    {
        V const a(coordinate(generator), coordinate(generator), coordinate(generator));
        V const b(coordinate(generator), coordinate(generator), coordinate(generator));
        // Its components are the three determinants that may come to be used.
        if (V().SetCross(a, b).GetMinComponent(1) < 2)
        {
            continue;
        }
        ++tried;
        TypeParam const s = coordinate(generator);
        TypeParam const t = coordinate(generator);
        V const target = V().Add(V().Mul(a, s), V().Mul(b, t));
        auto const found = Decompose(target, a, b);
        EXPECT_EQ(found.result, 1);
        V const rebuilt = V().Add(V().Mul(a, found.s), V().Mul(b, found.t));
        EXPECT_LT(GetDistance(rebuilt, target), tolerance);
    }
    EXPECT_GT(tried, 500);
}

TYPED_TEST(Decomposition, In_space_on_null_vectors_asks_for_a_null_target)
{
    using V = typename TestFixture::V3;
    auto const epsilon = TypeParam(k_Epsilon);
    TypeParam const below = epsilon / 2;
    V const tiny(0, -below, 0);
    ExpectCoefficients<TypeParam>(Decompose(V(0, 0, 0), V(0, 0, 0), V(0, 0, 0)), 1, 0, 0);
    ExpectCoefficients<TypeParam>(Decompose(V(epsilon, -epsilon, epsilon), tiny, tiny), 1, 0, 0);
    TypeParam const above = epsilon * 2;
    ExpectCoefficients<TypeParam>(Decompose(V(-above, 0, 0), tiny, tiny), 0, 0, 0);
    ExpectCoefficients<TypeParam>(Decompose(V(0, above, 0), tiny, tiny), 0, 0, 0);
    ExpectCoefficients<TypeParam>(Decompose(V(0, 0, -above), tiny, tiny), 0, 0, 0);
    TypeParam const nan = std::numeric_limits<TypeParam>::quiet_NaN();
    ExpectCoefficients<TypeParam>(Decompose(V(0, nan, 0), tiny, tiny), 0, 0, 0);
}

TYPED_TEST(Decomposition, In_space_a_basis_vector_of_epsilon_is_not_null)
{
    using V = typename TestFixture::V3;
    auto const epsilon = TypeParam(k_Epsilon);
    // Parallel then, and the target lies on the line.
    ExpectCoefficients<TypeParam>(Decompose(V(3 * epsilon, 0, 0), V(epsilon, 0, 0), V(0, 0, 0)), 1, 3, 0);
    ExpectCoefficients<TypeParam>(Decompose(V(3 * epsilon, 0, 0), V(0, 0, 0), V(epsilon, 0, 0)), 1, 0, 3);
    ExpectCoefficients<TypeParam>(Decompose(V(3 * epsilon, 0, 0), V(epsilon / 2, 0, 0), V(0, 0, 0)), 0, 0, 0);
}

TYPED_TEST(Decomposition, In_space_a_determinant_of_epsilon_is_not_parallel)
{
    using V = typename TestFixture::V3;
    auto const epsilon = TypeParam(k_Epsilon);
    ExpectCoefficients<TypeParam>(Decompose(V(5, 3 * epsilon, 0), V(1, 0, 0), V(1, epsilon, 0)), 1, 2, 3);
    ExpectCoefficients<TypeParam>(Decompose(V(5, -3 * epsilon, 0), V(1, 0, 0), V(1, -epsilon, 0)), 1, 2, 3);
    // Below it both stand for one line.
    ExpectCoefficients<TypeParam>(Decompose(V(5, 0, 0), V(1, 0, 0), V(1, epsilon / 2, 0)), 1, 0, 5);
}

TYPED_TEST(Decomposition, In_space_on_parallel_vectors_uses_the_longer_one)
{
    using V = typename TestFixture::V3;
    ExpectCoefficients<TypeParam>(Decompose(V(2, 0, 0), V(1, 0, 0), V(2, 0, 0)), 1, 0, 1);
    ExpectCoefficients<TypeParam>(Decompose(V(2, 0, 0), V(-2, 0, 0), V(1, 0, 0)), 1, -1, 0);
    // Equally long: the second.
    ExpectCoefficients<TypeParam>(Decompose(V(2, 0, 0), V(-1, 0, 0), V(1, 0, 0)), 1, 0, 2);
    ExpectCoefficients<TypeParam>(Decompose(V(-6, -12, -18), V(1, 2, 3), V(0, 0, 0)), 1, -6, 0);
}

TYPED_TEST(Decomposition, In_space_on_parallel_vectors_refuses_a_target_off_the_line)
{
    using V = typename TestFixture::V3;
    auto const epsilon = TypeParam(k_Epsilon);
    V const a(1, 0, 0);
    V const b(2, 0, 0);
    ExpectCoefficients<TypeParam>(Decompose(V(2, epsilon, 0), a, b), 0, 0, 0);
    ExpectCoefficients<TypeParam>(Decompose(V(2, 0, -epsilon), a, b), 0, 0, 0);
    ExpectCoefficients<TypeParam>(Decompose(V(2, 0, epsilon / 2), a, b), 1, 0, 1);
    // The distance counts times the length of a.
    ExpectCoefficients<TypeParam>(Decompose(V(2, epsilon / 2, 0), V(2, 0, 0), b), 0, 0, 0);
}

TYPED_TEST(Decomposition, In_space_does_not_test_the_target_against_a_null_first_vector)
{
    using V = typename TestFixture::V3;
    ExpectCoefficients<TypeParam>(Decompose(V(5, 6, 8), V(0, 0, 0), V(0, 0, 2)), 1, 0, 4);
    // A null second vector does have its line tested.
    ExpectCoefficients<TypeParam>(Decompose(V(5, 6, 8), V(0, 0, 2), V(0, 0, 0)), 0, 0, 0);
}

TYPED_TEST(Decomposition, In_space_may_use_the_target_as_a_basis_vector)
{
    using V = typename TestFixture::V3;
    V target(1, 2, 3);
    TypeParam s = 7;
    TypeParam t = 7;
    EXPECT_EQ(target.DecomposeIn2Basis(target, V(1, 0, 0), s, t, TypeParam(k_Epsilon)), 1);
    EXPECT_NEAR(s, 1, 1e-6);
    EXPECT_NEAR(t, 0, 1e-6);
}

TYPED_TEST(Decomposition, In_the_plane_recovers_the_coefficients_of_a_combination)
{
    using V = typename TestFixture::V2;
    V const a(TypeParam(1), TypeParam(2));
    V const b(TypeParam(-3), TypeParam(1));
    ExpectCoefficients<TypeParam>(Decompose(V(TypeParam(-13), TypeParam(9)), a, b), 1, 2, 5);
    ExpectCoefficients<TypeParam>(Decompose(V(TypeParam(0), TypeParam(0)), a, b), 1, 0, 0);
    ExpectCoefficients<TypeParam>(Decompose(V(TypeParam(-13), TypeParam(9)), b, a), 1, 5, 2);
}

TYPED_TEST(Decomposition, In_the_plane_a_determinant_of_epsilon_is_not_parallel)
{
    using V = typename TestFixture::V2;
    auto const epsilon = TypeParam(k_Epsilon);
    V const a(TypeParam(1), TypeParam(0));
    ExpectCoefficients<TypeParam>(Decompose(V(TypeParam(5), 3 * epsilon), a, V(TypeParam(1), epsilon)), 1, 2, 3);
    ExpectCoefficients<TypeParam>(Decompose(V(TypeParam(5), -3 * epsilon), a, V(TypeParam(1), -epsilon)), 1, 2, 3);
    ExpectCoefficients<TypeParam>(Decompose(V(TypeParam(5), TypeParam(0)), a, V(TypeParam(1), epsilon / 2)), 1, 0, 5);
}

TYPED_TEST(Decomposition, In_the_plane_on_parallel_vectors_uses_the_longer_one_along_its_longer_axis)
{
    using V = typename TestFixture::V2;
    auto const v = [](int x, int y) { return V(static_cast<TypeParam>(x), static_cast<TypeParam>(y)); };
    // Along X.
    ExpectCoefficients<TypeParam>(Decompose(v(4, 2), v(2, 1), v(-4, -2)), 1, 0, -1);
    ExpectCoefficients<TypeParam>(Decompose(v(4, 2), v(-4, -2), v(2, 1)), 1, -1, 0);
    ExpectCoefficients<TypeParam>(Decompose(v(4, 2), v(2, 1), v(-2, -1)), 1, 0, -2);
    // Along Y.
    ExpectCoefficients<TypeParam>(Decompose(v(2, 4), v(1, 2), v(-2, -4)), 1, 0, -1);
    ExpectCoefficients<TypeParam>(Decompose(v(2, 4), v(-2, -4), v(1, 2)), 1, -1, 0);
    ExpectCoefficients<TypeParam>(Decompose(v(2, 4), v(1, 2), v(-1, -2)), 1, 0, -2);
}

TYPED_TEST(Decomposition, In_the_plane_a_diagonal_is_read_on_y)
{
    using V = typename TestFixture::V2;
    auto const epsilon = TypeParam(k_Epsilon);
    TypeParam const one = 1;
    // A target just off the diagonal tells which coordinate was read.
    V const target(TypeParam(3), 3 + epsilon / 2);
    auto const found = Decompose(target, V(one, one), V(one / 2, one / 2));
    EXPECT_EQ(found.result, 1);
    EXPECT_EQ(found.s, target.Y);
    EXPECT_EQ(found.t, 0);
}

TYPED_TEST(Decomposition, In_the_plane_on_parallel_vectors_refuses_a_target_off_the_line)
{
    using V = typename TestFixture::V2;
    auto const epsilon = TypeParam(k_Epsilon);
    V const a(TypeParam(1), TypeParam(0));
    V const b(TypeParam(2), TypeParam(0));
    ExpectCoefficients<TypeParam>(Decompose(V(TypeParam(2), epsilon), a, b), 0, 0, 0);
    ExpectCoefficients<TypeParam>(Decompose(V(TypeParam(2), -epsilon), a, b), 0, 0, 0);
    ExpectCoefficients<TypeParam>(Decompose(V(TypeParam(2), epsilon / 2), a, b), 1, 0, 1);
    // A null first vector has no line to be off.
    ExpectCoefficients<TypeParam>(Decompose(V(TypeParam(2), TypeParam(9)), V(), b), 1, 0, 1);
}

TYPED_TEST(Decomposition, In_the_plane_refuses_a_basis_shorter_than_epsilon)
{
    using V = typename TestFixture::V2;
    auto const epsilon = TypeParam(k_Epsilon);
    TypeParam const zero = 0;
    V const origin;
    ExpectCoefficients<TypeParam>(Decompose(origin, origin, origin), 0, 0, 0);
    ExpectCoefficients<TypeParam>(Decompose(origin, V(epsilon / 2, zero), origin), 0, 0, 0);
    ExpectCoefficients<TypeParam>(Decompose(origin, V(zero, epsilon / 2), origin), 0, 0, 0);
    ExpectCoefficients<TypeParam>(Decompose(V(epsilon, zero), V(epsilon, zero), origin), 1, 1, 0);
    ExpectCoefficients<TypeParam>(Decompose(V(zero, epsilon), V(zero, -epsilon), origin), 1, -1, 0);
    ExpectCoefficients<TypeParam>(Decompose(V(epsilon, zero), origin, V(-epsilon, zero)), 1, 0, -1);
}

TYPED_TEST(Decomposition, A_target_that_is_no_number_is_not_null_and_yet_on_every_line)
{
    using F = TestFixture;
    TypeParam const nan = std::numeric_limits<TypeParam>::quiet_NaN();
    for (int component = 0; component < 3; ++component)
    {
        EXPECT_EQ(Decompose(typename F::V3(component, nan), typename F::V3(0, 0, 0), typename F::V3(0, 0, 0)).result, 0)
            << component;
    }
    auto const inSpace = Decompose(typename F::V3(nan, 0, 0), typename F::V3(2, 0, 0), typename F::V3(1, 0, 0));
    EXPECT_EQ(inSpace.result, 1);
    EXPECT_TRUE(std::isnan(inSpace.s));
    EXPECT_EQ(inSpace.t, 0);
    auto const inThePlane =
        Decompose(typename F::V2(nan, TypeParam(0)), typename F::V2(TypeParam(2), 0), typename F::V2(TypeParam(1), 0));
    EXPECT_EQ(inThePlane.result, 1);
    EXPECT_TRUE(std::isnan(inThePlane.s));
    EXPECT_EQ(inThePlane.t, 0);
}

TYPED_TEST(Decomposition, In_the_plane_an_extent_that_is_no_number_leaves_the_decision_to_y)
{
    using F = TestFixture;
    TypeParam const nan = std::numeric_limits<TypeParam>::quiet_NaN();
    auto const found =
        Decompose(typename F::V2(TypeParam(5), TypeParam(3)), typename F::V2(nan, TypeParam(1)), typename F::V2());
    EXPECT_EQ(found.result, 1);
    EXPECT_EQ(found.s, 3);
    EXPECT_EQ(found.t, 0);
}

TYPED_TEST(Decomposition, Intersection_is_where_two_endless_lines_meet)
{
    using V = typename TestFixture::V2;
    auto const v = [](int x, int y) { return V(static_cast<TypeParam>(x), static_cast<TypeParam>(y)); };
    V meeting = v(9, 9);
    EXPECT_EQ(meeting.SetIntersection(v(0, 0), v(1, 1), v(10, 0), v(0, 1), TypeParam(k_Epsilon)), 1);
    EXPECT_TRUE(meeting == v(10, 10));
    // Behind the starting points of both.
    EXPECT_EQ(meeting.SetIntersection(v(0, 0), v(1, 0), v(-4, 3), v(0, 2), TypeParam(k_Epsilon)), 1);
    EXPECT_TRUE(meeting == v(-4, 0));
}

TYPED_TEST(Decomposition, Intersection_of_parallel_lines_leaves_the_target)
{
    using V = typename TestFixture::V2;
    auto const v = [](int x, int y) { return V(static_cast<TypeParam>(x), static_cast<TypeParam>(y)); };
    V meeting = v(9, 8);
    EXPECT_EQ(meeting.SetIntersection(v(0, 0), v(1, 0), v(0, 1), v(2, 0), TypeParam(k_Epsilon)), 0);
    EXPECT_TRUE(meeting == v(9, 8));
}

TYPED_TEST(Decomposition, Intersection_of_a_line_with_itself_is_one_of_its_points)
{
    using V = typename TestFixture::V2;
    auto const v = [](int x, int y) { return V(static_cast<TypeParam>(x), static_cast<TypeParam>(y)); };
    V meeting;
    // The longer direction takes the whole way between the points: from q to p ...
    EXPECT_EQ(meeting.SetIntersection(v(1, 0), v(1, 0), v(5, 0), v(2, 0), TypeParam(k_Epsilon)), 1);
    EXPECT_TRUE(meeting == v(1, 0));
    // ... or from p to q.
    EXPECT_EQ(meeting.SetIntersection(v(1, 0), v(2, 0), v(5, 0), v(1, 0), TypeParam(k_Epsilon)), 1);
    EXPECT_TRUE(meeting == v(5, 0));
}

TYPED_TEST(Decomposition, Intersection_may_be_stored_over_any_operand)
{
    using V = typename TestFixture::V2;
    auto const v = [](int x, int y) { return V(static_cast<TypeParam>(x), static_cast<TypeParam>(y)); };
    V const p = v(0, 0);
    V const d = v(1, 1);
    V const q = v(10, 0);
    V const e = v(0, 1);
    auto const epsilon = TypeParam(k_Epsilon);
    V target = p;
    EXPECT_EQ(target.SetIntersection(target, d, q, e, epsilon), 1);
    EXPECT_TRUE(target == v(10, 10));
    target = d;
    EXPECT_EQ(target.SetIntersection(p, target, q, e, epsilon), 1);
    EXPECT_TRUE(target == v(10, 10));
    target = q;
    EXPECT_EQ(target.SetIntersection(p, d, target, e, epsilon), 1);
    EXPECT_TRUE(target == v(10, 10));
    target = e;
    EXPECT_EQ(target.SetIntersection(p, d, q, target, epsilon), 1);
    EXPECT_TRUE(target == v(10, 10));
}
