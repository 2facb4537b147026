#include "math/vectorw.h"

#include "numeric/vector_checks.h"

#include <limits>
#include <type_traits>

using namespace test_support;

namespace
{

C3DVectorw const a(2, -3, 5, 7);
C3DVectorw const b(11, 13, -17, 19);

} // namespace

TEST(Vectorw, Default_is_the_origin_with_weight_one)
{
    EXPECT_EQ(Components(C3DVectorw()), Row<double>(0, 0, 0, 1));
}

TEST(Vectorw, Set_and_Get_move_all_four_components)
{
    EXPECT_EQ(Components(C3DVectorw(1, 2, 3, 4)), Row<double>(1, 2, 3, 4));
    C3DVectorw v;
    EXPECT_EQ(&v.Set(5.0, 6.0, 7.0, 8.0), &v);
    EXPECT_EQ(Components(v), Row<double>(5, 6, 7, 8));
    double x = 0;
    double y = 0;
    double z = 0;
    double w = 0;
    a.Get(x, y, z, w);
    EXPECT_EQ(Row<double>(x, y, z, w), Row<double>(2, -3, 5, 7));
}

TEST(Vectorw, Array_and_copy_bring_all_four_components)
{
    double const array[5] = {2, 3, 5, 7, 11};
    C3DVectorw const fromArray(array);
    EXPECT_EQ(Components(fromArray), Row<double>(2, 3, 5, 7));
    C3DVectorw copy;
    EXPECT_EQ(&copy.Set(fromArray), &copy);
    EXPECT_EQ(Components(copy), Row<double>(2, 3, 5, 7));
}

TEST(Vectorw, IsExactlyNull_looks_at_the_weight_too)
{
    EXPECT_EQ(C3DVectorw().IsExactlyNull(), 0);
    EXPECT_EQ(C3DVectorw(0, -0.0, 0, -0.0).IsExactlyNull(), 1);
    for (int i = 0; i < 4; ++i)
    {
        EXPECT_EQ(C3DVectorw(0, 0, 0, 0).Set(i, 5e-324).IsExactlyNull(), 0);
        EXPECT_EQ(C3DVectorw(0, 0, 0, 0).Set(i, std::numeric_limits<double>::quiet_NaN()).IsExactlyNull(), 0);
    }
}

TEST(Vectorw, SetNull_resets_the_weight_to_one)
{
    C3DVectorw v = a;
    EXPECT_EQ(&v.SetNull(), &v);
    EXPECT_EQ(Components(v), Row<double>(0, 0, 0, 1));
}

TEST(Vectorw, Default_is_not_null_below_its_weight)
{
    EXPECT_EQ(C3DVectorw().IsNull(0.5), 0);
    EXPECT_EQ(C3DVectorw().IsNull(NextBelow(1.0)), 0);
    EXPECT_EQ(C3DVectorw().IsNull(1.0), 1);
}

TEST(Vectorw, Arithmetic_takes_no_weight_from_the_operands)
{
    C3DVectorw target(0, 0, 0, -100);
    target.Add(a, b);
    EXPECT_EQ(Components(target), Row<double>(13, 10, -12, -100));
    C3DVectorw const infinite(1, 1, 1, k_Infinity<double>);
    target.DivComp(infinite, C3DVectorw(1, 1, 1, 0)).Mul(infinite, 2.0).SetMidpoint(infinite, infinite);
    EXPECT_EQ(Components(target), Row<double>(1, 1, 1, -100));
}

TEST(Vectorw, Div_has_the_divisor_first)
{
    C3DVectorw target(101, 103, 107, 109);
    EXPECT_EQ(&target.Div(4.0, C3DVectorw(2, -3, 5, 7)), &target);
    EXPECT_EQ(Components(target), Row<double>(0.5, -0.75, 1.25, 109));
}

TEST(Vectorw, SetMinimal_keeps_the_signs_and_sets_the_weight_to_one)
{
    C3DVectorw v(0, 0, 0, 5);
    EXPECT_EQ(&v.SetMinimal(1.0), &v);
    EXPECT_EQ(Components(v), Row<double>(1, 1, 1, 1));
    v.Set(-0.0, -0.5, 3, -5);
    v.SetMinimal(2.0);
    EXPECT_EQ(Components(v), Row<double>(2, -2, 3, 1));
    v.Set(-2, 2, -1.9375, 0.25);
    v.SetMinimal(2.0);
    EXPECT_EQ(Components(v), Row<double>(-2, 2, -2, 1));
    v.Set(4, 5, 6, 9);
    v.SetMinimal(-8.0);
    EXPECT_EQ(Components(v), Row<double>(4, 5, 6, 1)) << "the weight is set even where nothing is raised";
}

TEST(Vectorw, GetDot_is_that_of_the_positions)
{
    EXPECT_EQ(C3DVectorw::GetDot(a, b), 22 - 39 - 85);
    EXPECT_EQ(GetDot(a, b), 22 - 39 - 85);
    EXPECT_EQ(C3DVectorw::GetDot(MakeAlong<C3DVectorw>(3, 5.0), MakeAlong<C3DVectorw>(3, 5.0)), 0);
}

TEST(Vectorw, Distances_are_those_of_the_positions)
{
    C3DVectorw const near(1, 2, 3, 50);
    C3DVectorw const far(3, 5, 9, -50);
    EXPECT_EQ(C3DVectorw::GetDistance(near, far), 7);
    EXPECT_EQ(C3DVectorw::GetSquaredDistance(near, far), 49);
    EXPECT_EQ(GetDistance(near, far), 7);
    EXPECT_EQ(GetSquaredDistance(near, far), 49);
}

TEST(Vectorw, Normalize_leaves_the_weight)
{
    C3DVectorw v(0, 0, -4, 5);
    EXPECT_EQ(v.Normalize(), 1);
    EXPECT_EQ(Components(v), Row<double>(0, 0, -1, 5));
    EXPECT_EQ(v.SetLength(3.0), 1);
    EXPECT_EQ(Components(v), Row<double>(0, 0, -3, 5));
}
