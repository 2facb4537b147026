/// Alignment of vectors with axes, and of axes with vectors.

#include "rotation/rotation_states.h"

#include <vector>

using namespace rotation_test;

namespace
{

using Align = int (C3DRotation::*)(Vector const &, int &);

struct Alignment
{
    tagE3DAXISTYPE axis;
    Align align;
    Align minAlign;
    /// The axis of the half-turn for a vector against the axis.
    tagE3DAXISTYPE halfTurnAxis;
};

constexpr Alignment k_Alignments[3] = {{E3D_AXIS_X, &C3DRotation::AlignToX, &C3DRotation::MinAlignToX, E3D_AXIS_Y},
                                       {E3D_AXIS_Y, &C3DRotation::AlignToY, &C3DRotation::MinAlignToY, E3D_AXIS_Z},
                                       {E3D_AXIS_Z, &C3DRotation::AlignToZ, &C3DRotation::MinAlignToZ, E3D_AXIS_X}};

Vector RandomVector(test_support::Random & random, double limit)
{
    return {random.Uniform(-limit, limit), random.Uniform(-limit, limit), random.Uniform(-limit, limit)};
}

Vector Unit(int axis)
{
    return {axis, 1.0};
}

Vector Row(Matrix const & m, int r)
{
    return {m.Get(r, 0), m.Get(r, 1), m.Get(r, 2)};
}

Vector Column(Matrix const & m, int c)
{
    return {m.Get(0, c), m.Get(1, c), m.Get(2, c)};
}

void ExpectRotationMatrix(Matrix const & m, double tolerance = 1e-12)
{
    EXPECT_TRUE(Matrix().MulRegByTrans(m, m).IsIdentity(tolerance));
    EXPECT_NEAR(m.GetDet(), 1, tolerance);
}

} // namespace

// --- To an axis ------------------------------------------------------------------------------------------------------

TEST(RotationAlignment, A_vector_is_carried_to_the_axis)
{
    test_support::Random random(401);
    for (int i = 0; i < 3000; ++i)
    {
        Alignment const & alignment = k_Alignments[i % 3];
        Vector const v = RandomVector(random, 5);
        C3DRotation rotation = MakeState(k_States[i % 12] | (i % 2 == 0 ? k_Marked : 0));
        Inside inside(rotation);
        int degenerate = 5;
        EXPECT_EQ((rotation.*alignment.align)(v, degenerate), 1);
        EXPECT_EQ(degenerate, 0);
        EXPECT_EQ(inside.Flags(), 21U);
        EXPECT_EQ(inside.Order(), E3DROTORDER_ZXY);
        ExpectRotationMatrix(inside.Matrix());
        Vector out;
        rotation.RotateVct(v, out);
        EXPECT_LT(MaxDifference(out, Vector(alignment.axis, v.GetLength())), 1e-12);
    }
}

TEST(RotationAlignment, The_frame_stands_in_the_columns)
{
    // With u the direction: X gives u, (X x u) x u, X x u; Y gives Y x u, u, (Y x u) x u; Z gives (u x Z) x u, u x Z,
    // u.
    Vector const v(3, -4, 12);
    Vector const u(3.0 / 13, -4.0 / 13, 12.0 / 13);
    for (Alignment const & alignment : k_Alignments)
    {
        C3DRotation rotation;
        int degenerate = 0;
        (rotation.*alignment.align)(v, degenerate);
        Matrix const & m = Inside(rotation).Matrix();
        int const helper = (alignment.axis + 2) % 3;
        int const third = (alignment.axis + 1) % 3;
        int const helperColumn = alignment.axis == E3D_AXIS_X ? 2 : (alignment.axis == E3D_AXIS_Y ? 0 : 1);
        Vector cross;
        if (alignment.axis == E3D_AXIS_Z)
        {
            cross.SetCross(u, Unit(alignment.axis));
        }
        else
        {
            cross.SetCross(Unit(alignment.axis), u);
        }
        cross.Normalize();
        EXPECT_LT(MaxDifference(Column(m, alignment.axis), u), 1e-15);
        EXPECT_LT(MaxDifference(Column(m, helperColumn), cross), 1e-15);
        int const thirdColumn = helper == helperColumn ? third : helper;
        EXPECT_LT(MaxDifference(Column(m, thirdColumn), Vector().SetCross(cross, u)), 1e-15);
    }
}

TEST(RotationAlignment, The_frame_in_numbers)
{
    C3DRotation rotation;
    Matrix const & m = Inside(rotation).Matrix();
    int degenerate = 0;
    rotation.AlignToX(Vector(0, 0, 2), degenerate);
    EXPECT_TRUE(Same(m, Matrix(0, -1, 0, 0, 0, -1, 1, 0, 0)));
    rotation.AlignToY(Vector(2, 0, 0), degenerate);
    EXPECT_TRUE(Same(m, Matrix(0, 1, 0, 0, 0, -1, -1, 0, 0)));
    rotation.AlignToZ(Vector(0, 2, 0), degenerate);
    EXPECT_TRUE(Same(m, Matrix(0, 1, 0, 0, 0, 1, 1, 0, 0)));
}

TEST(RotationAlignment, A_vector_that_is_too_short_leaves_the_rotation)
{
    for (Alignment const & alignment : k_Alignments)
    {
        for (unsigned const state : k_States)
        {
            for (unsigned const flags : {state, state | k_Marked})
            {
                for (Vector const & v : {Vector(0, 0, 0), Vector(-0.0, 0, 0), Vector(1e-12, 0, 0),
                                         Vector(0, 0.99e-12, 0), Vector(0, 0, k_Nan), Vector(k_Nan, 1, 1)})
                {
                    C3DRotation rotation = MakeState(flags);
                    C3DRotation expected = rotation;
                    // To X the mark is lost before the vector is looked at.
                    Inside(expected).SetFlags(alignment.axis == E3D_AXIS_X ? state : flags);
                    int degenerate = 5;
                    EXPECT_EQ((rotation.*alignment.align)(v, degenerate), 0);
                    EXPECT_EQ(degenerate, 0);
                    EXPECT_TRUE(SameState(rotation, expected));
                }
            }
        }
        C3DRotation rotation;
        int degenerate = 5;
        EXPECT_EQ((rotation.*alignment.align)(Vector(1.01e-12, 0, 0), degenerate), 1) << "just long enough";
    }
    ASSERT_EQ(Vector(1e-12, 0, 0).GetLength(), 1e-12);
}

TEST(RotationAlignment, A_vector_along_the_axis_is_degenerate)
{
    for (Alignment const & alignment : k_Alignments)
    {
        for (unsigned const state : k_States)
        {
            for (unsigned const flags : {state, state | k_Marked})
            {
                for (double const length : {5.0, 1e-11})
                {
                    C3DRotation rotation = MakeState(flags);
                    int degenerate = 5;
                    EXPECT_EQ((rotation.*alignment.align)(Vector(alignment.axis, length), degenerate), 1);
                    EXPECT_EQ(degenerate, 1);
                    EXPECT_EQ(Inside(rotation).Flags(), k_IdentityState) << "made anew, from the mark too";
                    EXPECT_TRUE(Same(Inside(rotation).Quat(), Quat(1, 0, 0, 0)));

                    rotation = MakeState(flags);
                    C3DRotation expected = rotation;
                    expected.Set(alignment.halfTurnAxis, k_Pi);
                    EXPECT_EQ((rotation.*alignment.align)(Vector(alignment.axis, -length), degenerate), 1);
                    EXPECT_EQ(degenerate, 1);
                    EXPECT_EQ(Inside(rotation).Flags(), 0U);
                    EXPECT_EQ(Inside(rotation).Order(), E3DROTORDER_ZXY);
                    EXPECT_TRUE(SameState(rotation, expected));
                }
            }
        }
    }
}

TEST(RotationAlignment, The_degenerate_case_begins_where_the_squared_helper_is_below_the_limit)
{
    for (Alignment const & alignment : k_Alignments)
    {
        for (double const sign : {1.0, -1.0})
        {
            for (int const other : {1, 2})
            {
                Vector v(alignment.axis, sign);
                int degenerate = 5;
                C3DRotation rotation;
                v.Set((alignment.axis + other) % 3, 1.01e-6);
                EXPECT_EQ((rotation.*alignment.align)(v, degenerate), 1);
                EXPECT_EQ(degenerate, 0);
                EXPECT_EQ(Inside(rotation).Flags(), k_MatrixAlone);
                v.Set((alignment.axis + other) % 3, 0.99e-6);
                EXPECT_EQ((rotation.*alignment.align)(v, degenerate), 1);
                EXPECT_EQ(degenerate, 1);
                EXPECT_EQ(Inside(rotation).Flags(), sign > 0 ? k_IdentityState : 0U);
            }
        }
    }
}

TEST(RotationAlignment, An_infinite_vector_is_degenerate)
{
    for (Alignment const & alignment : k_Alignments)
    {
        C3DRotation rotation;
        int degenerate = 5;
        EXPECT_EQ((rotation.*alignment.align)(Vector(alignment.axis, k_Infinity), degenerate), 1);
        EXPECT_EQ(degenerate, 1);
        EXPECT_EQ(Inside(rotation).Flags(), k_IdentityState);
        // A component of zero along the axis counts as against it.
        EXPECT_EQ((rotation.*alignment.align)(Vector((alignment.axis + 1) % 3, k_Infinity), degenerate), 1);
        EXPECT_EQ(degenerate, 1);
        EXPECT_EQ(Inside(rotation).Angles().Get(alignment.halfTurnAxis), k_Pi);
    }
}

TEST(RotationAlignment, The_smallest_rotation_to_an_axis_is_the_one_from_the_vector_to_the_unit_axis)
{
    test_support::Random random(402);
    for (Alignment const & alignment : k_Alignments)
    {
        std::vector<Vector> vectors = {Vector(0, 0, 0), Vector(1e-13, 0, 0)};
        for (int axis = 0; axis < 3; ++axis)
        {
            vectors.emplace_back(axis, 2.0);
            vectors.emplace_back(axis, -2.0);
        }
        for (int i = 0; i < 50; ++i)
        {
            vectors.push_back(RandomVector(random, 3));
        }
        for (Vector const & v : vectors)
        {
            for (unsigned const flags : {24U, 2U, 46U, 56U})
            {
                C3DRotation rotation = MakeState(flags);
                C3DRotation expected = rotation;
                int degenerate = 5;
                int expectedDegenerate = 6;
                int const result = (rotation.*alignment.minAlign)(v, degenerate);
                EXPECT_EQ(result, expected.Set(v, Unit(alignment.axis), expectedDegenerate));
                EXPECT_EQ(degenerate, expectedDegenerate);
                EXPECT_TRUE(SameState(rotation, expected));
                Vector out;
                rotation.RotateVct(v, out);
                EXPECT_LT(MaxDifference(out, result != 0 ? Vector(alignment.axis, v.GetLength()) : v), 1e-12);
            }
        }
    }
}

// --- Axes to vectors -------------------------------------------------------------------------------------------------

TEST(RotationAlignment, The_first_axis_is_met_exactly_and_the_second_as_nearly_as_it_can_be)
{
    test_support::Random random(403);
    for (int axis1 = 0; axis1 < 3; ++axis1)
    {
        for (int axis2 = 0; axis2 < 3; ++axis2)
        {
            for (int i = 0; axis1 != axis2 && i < 200; ++i)
            {
                Vector const v1 = RandomVector(random, 4);
                Vector const v2 = RandomVector(random, 4);
                C3DRotation rotation = MakeState(k_States[i % 12] | (i % 2 == 0 ? k_Marked : 0));
                Inside inside(rotation);
                int degenerate = 5;
                EXPECT_EQ(rotation.AlignAxesToVct(static_cast<tagE3DAXISTYPE>(axis1), v1,
                                                  static_cast<tagE3DAXISTYPE>(axis2), v2, degenerate),
                          1);
                EXPECT_EQ(degenerate, 0);
                EXPECT_EQ(inside.Flags(), 21U);
                EXPECT_EQ(inside.Order(), E3DROTORDER_ZXY);
                ExpectRotationMatrix(inside.Matrix());
                // Rows are the images of the axes.
                EXPECT_LT(MaxDifference(Row(inside.Matrix(), axis1), Vector().Mul(v1, 1 / v1.GetLength())), 1e-12);
                // The image of the second axis is what is left of v2 across v1.
                Eigen::Vector3d const e1 = Eigen::Vector3d(v1.X, v1.Y, v1.Z).normalized();
                Eigen::Vector3d const e2(v2.X, v2.Y, v2.Z);
                Eigen::Vector3d const across = (e2 - e1 * e1.dot(e2)).normalized();
                EXPECT_LT(MaxDifference(Row(inside.Matrix(), axis2), Vector(across.x(), across.y(), across.z())),
                          1e-10);
            }
        }
    }
}

TEST(RotationAlignment, Equal_axes_no_axes_and_a_null_first_vector_change_nothing)
{
    for (unsigned const state : k_States)
    {
        for (unsigned const flags : {state, state | k_Marked})
        {
            C3DRotation rotation = MakeState(flags);
            C3DRotation expected = rotation;
            Vector const v(1, 2, 3);
            auto const expectNothing = [&](int axis1, Vector const & v1, int axis2, Vector const & v2)
            {
                int degenerate = 5;
                EXPECT_EQ(rotation.AlignAxesToVct(static_cast<tagE3DAXISTYPE>(axis1), v1,
                                                  static_cast<tagE3DAXISTYPE>(axis2), v2, degenerate),
                          0);
                EXPECT_EQ(degenerate, 0);
                EXPECT_TRUE(SameState(rotation, expected));
            };
            for (int axis = 0; axis < 3; ++axis)
            {
                expectNothing(axis, v, axis, Vector(3, 2, 1));
                expectNothing(axis, Vector(0, -0.0, 0), (axis + 1) % 3, v);
                expectNothing(axis, Vector(1e-12, -1e-12, 1e-12), (axis + 1) % 3, v);
                expectNothing(axis, v, 3, v);
                expectNothing(-1, v, axis, v);
            }
        }
    }
}

TEST(RotationAlignment, A_first_vector_counts_from_one_component_above_the_limit)
{
    for (int component = 0; component < 3; ++component)
    {
        for (double const value : {1.01e-12, -1.01e-12, k_Nan})
        {
            C3DRotation rotation;
            int degenerate = 0;
            EXPECT_EQ(
                rotation.AlignAxesToVct(E3D_AXIS_X, Vector(component, value), E3D_AXIS_Y, Vector(1, 2, 3), degenerate),
                1);
            EXPECT_EQ(Inside(rotation).Flags(), k_MatrixAlone);
        }
    }
}

TEST(RotationAlignment, Parallel_vectors_or_a_null_second_one_leave_the_second_axis_a_choice)
{
    // v1 is along axis c; what stands in for the second vector is v1 plus a unit along another axis: along the second
    // one, unless v1 lies along that one, and then along the first.
    for (int axis1 = 0; axis1 < 3; ++axis1)
    {
        for (int axis2 = 0; axis2 < 3; ++axis2)
        {
            for (int c = 0; axis1 != axis2 && c < 3; ++c)
            {
                for (double const factor : {0.0, 1.0, -2.0})
                {
                    SCOPED_TRACE(testing::Message() << axis1 << ' ' << axis2 << ' ' << c << ' ' << factor);
                    Vector const v1(c, 3.0);
                    C3DRotation rotation = MakeState(k_IdentityState);
                    Inside inside(rotation);
                    int degenerate = 5;
                    EXPECT_EQ(rotation.AlignAxesToVct(static_cast<tagE3DAXISTYPE>(axis1), v1,
                                                      static_cast<tagE3DAXISTYPE>(axis2), Vector(c, 3 * factor),
                                                      degenerate),
                              1);
                    EXPECT_EQ(degenerate, 1);
                    EXPECT_EQ(inside.Flags(), k_MatrixAlone);
                    ExpectRotationMatrix(inside.Matrix());
                    EXPECT_EQ(MaxDifference(Row(inside.Matrix(), axis1), Unit(c)), 0);
                    EXPECT_EQ(MaxDifference(Row(inside.Matrix(), axis2), Unit(c == axis2 ? axis1 : axis2)), 0);
                }
            }
        }
    }
}

TEST(RotationAlignment, Which_component_is_perturbed_depends_on_the_first_and_third_component)
{
    // axis1 X, axis2 Y, so that Z is the third. Both X and Z of v1 below the limit: X is raised, else Y.
    auto const imageOfY = [](Vector const & v1)
    {
        C3DRotation rotation;
        int degenerate = 0;
        EXPECT_EQ(rotation.AlignAxesToVct(E3D_AXIS_X, v1, E3D_AXIS_Y, v1, degenerate), 1);
        EXPECT_EQ(degenerate, 1);
        return Row(Inside(rotation).Matrix(), 1);
    };
    EXPECT_LT(MaxDifference(imageOfY(Vector(0.99e-12, 1, -0.99e-12)), Vector(1, 0, 0)), 1e-11);
    // Raising Y from (1e-12, 1, 0) leaves it parallel but for 1e-12 across, and that is what the frame is built on.
    EXPECT_LT(MaxDifference(imageOfY(Vector(1.5e-12, 1, 0)), Vector(-1, 0, 0)), 1e-3);
    EXPECT_LT(MaxDifference(imageOfY(Vector(0, 1, 1.5e-12)), Vector(0, 0, -1)), 1e-3);
}

TEST(RotationAlignment, Vectors_count_as_parallel_up_to_the_limit_in_every_component_of_their_cross_product)
{
    for (double const across : {1e-12, 1.01e-12})
    {
        C3DRotation rotation;
        int degenerate = 5;
        rotation.AlignAxesToVct(E3D_AXIS_X, Vector(1, 0, 0), E3D_AXIS_Y, Vector(1, 0, across), degenerate);
        EXPECT_EQ(degenerate, across > 1e-12 ? 0 : 1);
        EXPECT_LT(MaxDifference(Row(Inside(rotation).Matrix(), 1), across > 1e-12 ? Vector(0, 0, 1) : Vector(0, 1, 0)),
                  1e-15);
    }
}

TEST(RotationAlignment, A_row_is_normalised_only_where_it_is_long_enough)
{
    // The components are above the limit, and so is the length; their cross product is tiny but above it.
    C3DRotation rotation;
    int degenerate = 0;
    EXPECT_EQ(rotation.AlignAxesToVct(E3D_AXIS_X, Vector(2e-12, 0, 0), E3D_AXIS_Y, Vector(0, 10, 0), degenerate), 1);
    EXPECT_EQ(degenerate, 0);
    EXPECT_LT(MaxDifference(Inside(rotation).Matrix(), Matrix()), 1e-15);
    // At the limit itself the second component is raised, and a cross product of just the limit's length is left.
    ASSERT_EQ(Vector(0, 0, 1e-12).GetLength(), 1e-12);
    EXPECT_EQ(rotation.AlignAxesToVct(E3D_AXIS_X, Vector(1e-12, 1, 0), E3D_AXIS_Y, Vector(0, 0, 0), degenerate), 1);
    EXPECT_EQ(degenerate, 1);
    EXPECT_TRUE(Same(Row(Inside(rotation).Matrix(), 2), Vector(0, 0, 1e-12)));
    EXPECT_LT(MaxDifference(Row(Inside(rotation).Matrix(), 1), Vector(-1e-12, 0, 0)), 1e-20);
    EXPECT_EQ(rotation.AlignAxesToVct(E3D_AXIS_X, Vector(0, 1, 1e-12), E3D_AXIS_Y, Vector(0, 0, 0), degenerate), 1);
    EXPECT_TRUE(Same(Row(Inside(rotation).Matrix(), 2), Vector(-1e-12, 0, 0)));
}
