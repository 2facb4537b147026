/// Pulling a corner of the bounding box, within limits of its sides.

#include "geometry/box_checks.h"
#include "math/bounding_box.h"

#include <gtest/gtest.h>

using namespace geometry_test;

namespace
{

Vector const k_NoLimit(0, 0, 0);

/// Sides 4, 8 and 16 about the origin. Powers of two keep the scales exact.
C3DBBox MakeBox()
{
    return {Vector(-2, -4, -8), Vector(2, 4, 8)};
}

/// A pull at the corner where all bounds are the maximum.
struct Pull
{
    Vector delta{0, 0, 0};
    Vector pivot{0, 0, 0};
    Vector minSizes = k_NoLimit;
    Vector maxSizes = k_NoLimit;
    int clamp = 0;
};

C3DBBox Pulled(Pull const & pull, tagE3DBBOXCORNER corner = E3DBBOXCORNER_PPP)
{
    C3DBBox box = MakeBox();
    C3DBBox const & result = box.PullCorner(corner, pull.delta, pull.pivot, pull.minSizes, pull.maxSizes, pull.clamp);
    EXPECT_EQ(&result, &box);
    return box;
}

testing::AssertionResult IsUnchanged(C3DBBox const & box)
{
    return HasBounds(box, MakeBox().GetMin(), MakeBox().GetMax());
}

/// A vector with one component, the others 0.
Vector On(int axis, double value)
{
    return {axis, value};
}

double SideOf(C3DBBox const & box, int axis)
{
    return box.GetMax().Get(axis) - box.GetMin().Get(axis);
}

} // namespace

TEST(BoundingBoxPull, Corner_follows_and_the_box_scales_about_the_pivot)
{
    EXPECT_TRUE(HasBounds(Pulled({.delta = Vector(2, 4, -4)}), Vector(-4, -8, -4), Vector(4, 8, 4)));
    EXPECT_TRUE(HasBounds(Pulled({.delta = Vector(-2, 2, 4)}, E3DBBOXCORNER_MMM), Vector(-4, -2, -4), Vector(4, 2, 4)));
}

TEST(BoundingBoxPull, Each_corner_follows_on_each_axis)
{
    Random random(561);
    for (int corner = 0; corner < 8; ++corner)
    {
        for (int i = 0; i < 50; ++i)
        {
            C3DBBox box(RandomVector(random, 1).Add(-5, -5, -5), RandomVector(random, 1).Add(5, 5, 5));
            Vector const pivot = RandomVector(random, 2);
            Vector const delta = RandomVector(random, 1);
            Vector before;
            Vector opposite;
            box.GetCorner(static_cast<tagE3DBBOXCORNER>(corner), before);
            opposite.Sub(Vector().Add(box.GetMin(), box.GetMax()), before);
            box.PullCorner(static_cast<tagE3DBBOXCORNER>(corner), delta, pivot, k_NoLimit, k_NoLimit, 0);
            Vector after;
            box.GetCorner(static_cast<tagE3DBBOXCORNER>(corner), after);
            Vector const radius = Vector().Sub(before, pivot);
            EXPECT_TRUE(IsNear(after, Vector().Add(radius, delta), 1e-14)) << "relative to the pivot";
            for (int axis = 0; axis < 3; ++axis)
            {
                double const scale = 1 + delta.Get(axis) / radius.Get(axis);
                Vector end;
                end.Sub(Vector().Add(box.GetMin(), box.GetMax()), after);
                EXPECT_NEAR(end.Get(axis), scale * (opposite.Get(axis) - pivot.Get(axis)), 1e-13);
            }
        }
    }
}

TEST(BoundingBoxPull, Result_is_relative_to_the_pivot)
{
    Pull const still{.pivot = Vector(-6, -12, -24)};
    EXPECT_TRUE(HasBounds(Pulled(still), Vector(4, 8, 16), Vector(8, 16, 32)));
    Pull const twice{.delta = Vector(8, 16, 32), .pivot = Vector(-6, -12, -24)};
    EXPECT_TRUE(HasBounds(Pulled(twice), Vector(8, 16, 32), Vector(16, 32, 64)));
}

TEST(BoundingBoxPull, Pivot_at_the_opposite_corner_keeps_that_corner_at_0)
{
    Pull const pull{.delta = Vector(4, 8, 16), .pivot = Vector(-2, -4, -8)};
    EXPECT_TRUE(HasBounds(Pulled(pull), Vector(0, 0, 0), Vector(8, 16, 32)));
}

TEST(BoundingBoxPull, Arguments_may_be_the_corners_of_the_box)
{
    C3DBBox byPivot = MakeBox();
    byPivot.PullCorner(E3DBBOXCORNER_PPP, Vector(4, 8, 16), byPivot.GetMin(), k_NoLimit, k_NoLimit, 0);
    EXPECT_TRUE(HasBounds(byPivot, Vector(0, 0, 0), Vector(8, 16, 32)));
    C3DBBox byDelta = MakeBox();
    byDelta.PullCorner(E3DBBOXCORNER_PPP, byDelta.GetMax(), Vector(0, 0, 0), byDelta.GetMax(), byDelta.GetMax(), 1);
    EXPECT_TRUE(HasBounds(byDelta, Vector(-1, -2, -4), Vector(1, 2, 4))) << "the limits as they were before";
}

TEST(BoundingBoxPull, Side_below_its_least_is_rejected_on_each_axis_and_leaves_all_bounds)
{
    for (int axis = 0; axis < 3; ++axis)
    {
        double const side = SideOf(MakeBox(), axis);
        // The other axes pass, and would change.
        Vector delta(2, 4, 8);
        delta.Set(axis, -side / 4);
        Pull pull{.delta = delta, .minSizes = On(axis, side / 2)};
        EXPECT_EQ(SideOf(Pulled(pull), axis), side / 2) << "the limit passes";
        pull.minSizes = On(axis, Above(side / 2));
        EXPECT_TRUE(IsUnchanged(Pulled(pull))) << axis;
    }
}

TEST(BoundingBoxPull, Side_above_its_greatest_is_rejected_on_each_axis_and_leaves_all_bounds)
{
    for (int axis = 0; axis < 3; ++axis)
    {
        double const side = SideOf(MakeBox(), axis);
        Vector maxSizes(100, 100, 100);
        maxSizes.Set(axis, 2 * side);
        Pull pull{.delta = Vector(2, 4, 8), .maxSizes = maxSizes};
        EXPECT_EQ(SideOf(Pulled(pull), axis), 2 * side) << "the limit passes";
        pull.maxSizes.Set(axis, Below(2 * side));
        EXPECT_TRUE(IsUnchanged(Pulled(pull))) << axis;
    }
}

TEST(BoundingBoxPull, Clamping_gives_a_side_its_limit_and_moves_the_other_axes_freely)
{
    for (int axis = 0; axis < 3; ++axis)
    {
        double const side = SideOf(MakeBox(), axis);
        Vector delta(2, 4, 8);
        delta.Set(axis, -side / 4);
        C3DBBox const least = Pulled({.delta = delta, .minSizes = On(axis, 0.75 * side), .clamp = 1});
        Vector maxSizes(100, 100, 100);
        maxSizes.Set(axis, 1.25 * side);
        C3DBBox const greatest = Pulled({.delta = Vector(2, 4, 8), .maxSizes = maxSizes, .clamp = 1});
        for (int i = 0; i < 3; ++i)
        {
            double const whole = SideOf(MakeBox(), i);
            EXPECT_EQ(SideOf(least, i), i == axis ? 0.75 * side : 2 * whole) << axis << ' ' << i;
            EXPECT_EQ(SideOf(greatest, i), i == axis ? 1.25 * side : 2 * whole) << axis << ' ' << i;
            EXPECT_EQ(least.GetMin().Get(i), -least.GetMax().Get(i));
            EXPECT_EQ(greatest.GetMin().Get(i), -greatest.GetMax().Get(i));
        }
    }
}

TEST(BoundingBoxPull, Any_clamp_but_0_clamps)
{
    for (int const clamp : {1, -1, 256})
    {
        C3DBBox const box = Pulled({.delta = Vector(-1, 0, 0), .minSizes = Vector(3, 0, 0), .clamp = clamp});
        EXPECT_TRUE(HasBounds(box, Vector(-1.5, -4, -8), Vector(1.5, 4, 8)));
    }
}

TEST(BoundingBoxPull, Sides_always_keep_the_smallest_least_size)
{
    for (Vector const & minSizes : {Vector(0, 0, 0), Vector(-1, -1, -1), Vector(k_Nan, k_Nan, k_Nan),
                                    Vector(Below(1e-12), 1e-13, -k_Infinity), Vector(1e-12, 1e-12, 1e-12)})
    {
        // Down to nothing, and through it.
        for (Vector const & delta : {Vector(-2, -4, -8), Vector(-3, -5, -9)})
        {
            EXPECT_TRUE(IsUnchanged(Pulled({.delta = delta, .minSizes = minSizes})));
            C3DBBox const box = Pulled({.delta = delta, .minSizes = minSizes, .clamp = 1});
            EXPECT_TRUE(HasBoundsNear(box, Vector(-5e-13, -5e-13, -5e-13), Vector(5e-13, 5e-13, 5e-13), 1e-27));
        }
    }
    C3DBBox const above = Pulled({.delta = Vector(-2, -4, -8), .minSizes = Vector(1e-11, 1e-11, 1e-11), .clamp = 1});
    EXPECT_NEAR(above.GetMaxX(), 5e-12, 1e-26);
}

TEST(BoundingBoxPull, No_greatest_size_where_all_three_are_within_the_tolerance)
{
    for (Vector const & maxSizes : {Vector(0, 0, 0), Vector(1e-12, -1e-12, 1e-12), Vector(-0.0, 0.0, -1e-13)})
    {
        C3DBBox const box = Pulled({.delta = Vector(1e6, 1e6, 1e6), .maxSizes = maxSizes});
        EXPECT_GT(SideOf(box, 0), 1e6);
        EXPECT_GT(SideOf(box, 1), 1e6);
        EXPECT_GT(SideOf(box, 2), 1e6);
    }
}

TEST(BoundingBoxPull, Unused_greatest_size_beside_a_used_one_is_the_least_size)
{
    // Any magnitude above the tolerance is a use, a negative one too.
    for (double const used : {100.0, Above(1e-12), -Above(1e-12), -100.0})
    {
        for (int axis = 0; axis < 3; ++axis)
        {
            Pull pull{.delta = Vector(0, 0, 0), .minSizes = Vector(1, 2, 3), .maxSizes = On(axis, used)};
            EXPECT_TRUE(IsUnchanged(Pulled(pull))) << "the sides are too great as they are";
            pull.clamp = 1;
            C3DBBox const box = Pulled(pull);
            for (int i = 0; i < 3; ++i)
            {
                double const limit = i == axis && used == 100 ? SideOf(MakeBox(), i) : 1.0 + i;
                EXPECT_DOUBLE_EQ(SideOf(box, i), limit) << used << ' ' << axis << ' ' << i;
            }
        }
    }
}

TEST(BoundingBoxPull, Greatest_size_below_the_least_is_raised_to_it)
{
    Pull pull{.minSizes = Vector(4, 8, 16), .maxSizes = Vector(1, 1, 1)};
    EXPECT_TRUE(IsUnchanged(Pulled(pull))) << "sides at both limits pass";
    pull.delta.Set(1, 1, 1);
    pull.clamp = 1;
    EXPECT_TRUE(HasBounds(Pulled(pull), MakeBox().GetMin(), MakeBox().GetMax()));
    pull.delta.Set(-1, -1, -1);
    EXPECT_TRUE(HasBounds(Pulled(pull), MakeBox().GetMin(), MakeBox().GetMax()));
}

TEST(BoundingBoxPull, Smallest_greatest_size_does_not_count_as_a_limit)
{
    // Raised to the least size, which is the tolerance itself and so not above it.
    C3DBBox const box = Pulled({.delta = Vector(2, 4, 8), .maxSizes = Vector(100, 0, 0)});
    EXPECT_TRUE(HasBounds(box, Vector(-4, -8, -16), Vector(4, 8, 16)));
}

TEST(BoundingBoxPull, Rejection_on_Z_undoes_X_and_Y_bit_for_bit)
{
    C3DBBox box(Vector(-0.1, -0.7, -0.3), Vector(0.3, 1.1, 0.9));
    C3DBBox const before = box;
    box.PullCorner(E3DBBOXCORNER_PPP, Vector(0.1, 0.1, 5), Vector(0.01, 0.02, 0.03), k_NoLimit, Vector(3, 3, 3), 0);
    EXPECT_TRUE(HasBounds(box, before.GetMin(), before.GetMax()));
}

TEST(BoundingBoxPull, Corner_at_the_pivot_divides_by_zero)
{
    // 0 over 0 breaks every limit; anything else over 0 is an infinite scale, which a greatest side stops.
    Pull pull{.delta = Vector(0, 0, 0), .pivot = Vector(2, 0, 0)};
    EXPECT_TRUE(IsUnchanged(Pulled(pull)));
    pull.clamp = 1;
    pull.minSizes.Set(2, 0, 0);
    EXPECT_TRUE(HasBounds(Pulled(pull), Vector(-2, -4, -8), Vector(0, 4, 8))) << "the least side";
    pull.clamp = 0;
    pull.delta.Set(1, 0, 0);
    EXPECT_TRUE(HasBounds(Pulled(pull), Vector(-k_Infinity, -4, -8), Vector(k_Nan, 4, 8)));
    pull.maxSizes.Set(8, 8, 16);
    EXPECT_TRUE(IsUnchanged(Pulled(pull)));
    pull.clamp = 1;
    EXPECT_TRUE(HasBounds(Pulled(pull), Vector(-8, -4, -8), Vector(0, 4, 8))) << "the greatest side";
}

TEST(BoundingBoxPull, Inverted_box_has_a_negative_side_and_breaks_the_least)
{
    C3DBBox box(Vector(2, 4, 8), Vector(-2, -4, -8));
    box.PullCorner(E3DBBOXCORNER_PPP, Vector(0, 0, 0), Vector(0, 0, 0), k_NoLimit, k_NoLimit, 0);
    EXPECT_TRUE(HasBounds(box, Vector(2, 4, 8), Vector(-2, -4, -8)));
    box.PullCorner(E3DBBOXCORNER_PPP, Vector(0, 0, 0), Vector(0, 0, 0), Vector(2, 2, 2), k_NoLimit, 1);
    EXPECT_TRUE(HasBounds(box, Vector(-1, -1, -1), Vector(1, 1, 1))) << "the scale turns it upright";
}

TEST(BoundingBoxPull, Value_that_names_no_corner_moves_nothing)
{
    for (int const corner : {-1, 8, 99})
    {
        Pull const pull{.delta = Vector(2, 4, 8), .pivot = Vector(1, 1, 1), .clamp = 1};
        EXPECT_TRUE(IsUnchanged(Pulled(pull, static_cast<tagE3DBBOXCORNER>(corner)))) << corner;
    }
}
