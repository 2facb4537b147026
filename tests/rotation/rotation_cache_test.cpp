/// What a rotation caches, when it brings a form up to date, and what its tests trust.

#include "rotation/rotation_states.h"

#include <cstring>
#include <new>

using namespace rotation_test;

namespace
{

/// A rotation whose every form holds one number.
C3DRotation FilledWith(double value, unsigned flags)
{
    C3DRotation rotation;
    Inside inside(rotation);
    inside.FillQuat(value);
    inside.FillMatrix(value);
    inside.FillAngles(value);
    inside.SetFlags(flags);
    return rotation;
}

} // namespace

// --- Construction ----------------------------------------------------------------------------------------------------

TEST(RotationCache, Fields_stand_in_the_order_of_the_contract)
{
    EXPECT_EQ(Inside::Offsets(), (std::array<std::size_t, 6>{0, 32, 104, 128, 136, 137}));
    EXPECT_EQ(sizeof(C3DRotation), 144U);
}

TEST(RotationCache, Default_construction_gives_the_marked_identity)
{
    C3DRotation rotation;
    Inside inside(rotation);
    EXPECT_EQ(inside.Flags(), 56U);
    EXPECT_EQ(inside.Order(), 0);
    EXPECT_TRUE(Same(inside.Quat(), Quat(1, 0, 0, 0)));
    EXPECT_EQ(inside.Angle(), 0);
    EXPECT_EQ(rotation.QuickIsIdentity(), 1);
}

TEST(RotationCache, Default_construction_reads_as_the_identity_and_freshens_only_what_is_asked_for)
{
    C3DRotation rotation;
    Inside inside(rotation);
    inside.FillStale();
    Matrix matrix;
    rotation.GetMatrix(matrix);
    EXPECT_TRUE(Same(matrix, Matrix()));
    EXPECT_EQ(inside.Flags(), 48U);
}

TEST(RotationCache, Construction_without_initialisation_leaves_the_forms_unset)
{
    alignas(C3DRotation) unsigned char memory[sizeof(C3DRotation)];
    std::memset(memory, 0xAB, sizeof memory);
    auto * const rotation = new (memory) C3DRotation(C3DInitRequest_DoNotInitialize());
    Inside inside(*rotation);
    EXPECT_EQ(inside.Flags(), 28U);
    EXPECT_EQ(inside.Angle(), 0);
    EXPECT_EQ(inside.Order(), 0);
    unsigned char forms[128];
    std::memcpy(forms, memory, sizeof forms);
    EXPECT_TRUE(std::all_of(forms, forms + sizeof forms, [](unsigned char byte) { return byte == 0xAB; }));
}

TEST(RotationCache, Constructors_do_what_the_setter_with_their_arguments_does)
{
    Vector const zero(0, 0, 0);
    Vector const x(1, 0, 0);
    Vector const general(1, 2, -2);
    struct Row
    {
        char const * name;
        C3DRotation rotation;
        unsigned flags;
        int order;
        double angle; // NaN: not set with this form
        Judge judge;
    };
    Quat const q(0.5, -0.5, 0.5, 0.5);
    auto const turn = [](double angle, double ax, double ay, double az)
    { return Judge(Eigen::AngleAxisd(angle, Eigen::Vector3d(ax, ay, az).normalized())); };
    Row rows[] = {
        {"quaternion", C3DRotation(Quat(1, -1, 1, 1)), 24, 0, AngleOf(q), JudgeOf(q)},
        {"identity quaternion", C3DRotation(Quat()), 24, 0, 0, Judge::Identity()},
        {"matrix", C3DRotation(MatrixOf(Vector(0.1, 0.2, 0.3), E3DROTORDER_YXZ)), 21, 0, 0,
         JudgeOf(Vector(0.1, 0.2, 0.3), E3DROTORDER_YXZ)},
        {"coordinate axis", C3DRotation(E3D_AXIS_Y, 7.0), 0, 0, 7.0, turn(7, 0, 1, 0)},
        {"coordinate axis, no angle", C3DRotation(E3D_AXIS_Y, 0.0), 56, 0, 0, Judge::Identity()},
        {"vector along an axis", C3DRotation(x, -3.0), 0, 0, -3.0, turn(-3, 1, 0, 0)},
        {"vector", C3DRotation(general, 4.0), 24, 0, 4.0, turn(4, 1, 2, -2)},
        {"vector, no angle", C3DRotation(general, 0.0), 56, 0, 0, Judge::Identity()},
        {"from to", C3DRotation(x, Vector(0, 3, 0)), 24, 0, std::acos(0.0), turn(k_HalfPi, 0, 0, 1)},
        {"from to, parallel", C3DRotation(x, x), 56, 0, 0, Judge::Identity()},
        {"from to, opposite", C3DRotation(x, Vector(-1, 0, 0)), 0, 0, k_Pi, turn(k_Pi, 0, 1, 0)},
        {"from to, null", C3DRotation(zero, x), 56, 0, 0, Judge::Identity()},
        {"angles", C3DRotation(general, E3DROTORDER_YZX), 14, 3, 0, JudgeOf(general, E3DROTORDER_YZX)},
        {"scalar angles", C3DRotation(1, 2, -2, E3DROTORDER_ZYX), 14, 5, 0, JudgeOf(general, E3DROTORDER_ZYX)},
        {"null angles", C3DRotation(zero, E3DROTORDER_XZY), 46, 1, 0, Judge::Identity()},
        {"null scalar angles", C3DRotation(0, 0, 0, E3DROTORDER_ZXY), 46, 4, 0, Judge::Identity()},
    };
    for (Row & row : rows)
    {
        SCOPED_TRACE(row.name);
        Inside inside(row.rotation);
        EXPECT_EQ(inside.Flags(), row.flags);
        EXPECT_EQ(inside.Order(), row.order);
        EXPECT_EQ(inside.Angle(), row.angle);
        EXPECT_TRUE(FreshFormsAre(row.rotation, row.judge));
    }
}

TEST(RotationCache, Copies_and_assignment_take_the_stale_forms_too)
{
    for (unsigned const flags : k_States)
    {
        C3DRotation source = MakeState(flags);
        Inside(source).FillStale(77);
        C3DRotation copy(source);
        C3DRotation assigned;
        assigned = source;
        for (C3DRotation * const target : {&copy, &assigned})
        {
            Inside a(source);
            Inside b(*target);
            EXPECT_TRUE(Same(a.Quat(), b.Quat()) && Same(a.Matrix(), b.Matrix()) && Same(a.Angles(), b.Angles()));
            EXPECT_EQ(a.Angle(), b.Angle());
            EXPECT_EQ(a.Flags(), b.Flags());
            EXPECT_EQ(a.Order(), b.Order());
        }
    }
}

// --- Flags -----------------------------------------------------------------------------------------------------------

TEST(RotationCache, Marks_of_the_source_make_the_other_forms_stale_and_keep_the_mark_of_the_identity)
{
    for (unsigned flags = 0; flags < 64; ++flags)
    {
        struct Row
        {
            void (Inside::*mark)();
            unsigned expected;
        };
        for (Row const & row :
             {Row{&Inside::SetQuatRep, 24}, Row{&Inside::SetMatrixRep, 21}, Row{&Inside::SetXYZAnglesRep, 14}})
        {
            C3DRotation rotation = FilledWith(5, flags);
            Inside inside(rotation);
            (inside.*row.mark)();
            EXPECT_EQ(inside.Flags(), row.expected | (flags & k_Marked)) << flags;
            EXPECT_EQ(inside.Quat().W + inside.Matrix().Get(2, 2) + inside.Angles().X + inside.Angle(), 20);
        }
    }
}

TEST(RotationCache, SetIdentity_makes_the_marked_quaternion_or_does_nothing_where_the_mark_is_set)
{
    for (unsigned const state : k_States)
    {
        for (unsigned const flags : {state, state | k_Marked})
        {
            C3DRotation rotation = FilledWith(5, flags);
            Inside inside(rotation);
            inside.SetOrder(3);
            EXPECT_EQ(&rotation.SetIdentity(), &rotation);
            bool const wasMarked = (flags & k_Marked) != 0;
            EXPECT_EQ(inside.Flags(), wasMarked ? flags : 56U);
            EXPECT_TRUE(Same(inside.Quat(), wasMarked ? Quat(5, 5, 5, 5) : Quat(1, 0, 0, 0)));
            EXPECT_EQ(inside.Angle(), wasMarked ? 5 : 0);
            EXPECT_EQ(inside.Order(), 3);
        }
    }
}

TEST(RotationCache, Each_accessor_has_a_bit_of_its_own)
{
    C3DRotation rotation;
    Inside inside(rotation);
    struct Row
    {
        void (Inside::*set)(int);
        int (Inside::*get)() const;
        unsigned bit;
    };
    for (unsigned flags = 0; flags < 64; ++flags)
    {
        for (Row const & row :
             {Row{&Inside::SetQuatDirty, &Inside::IsQuatDirty, 4}, Row{&Inside::SetMatDirty, &Inside::IsMatDirty, 8},
              Row{&Inside::SetAnglesDirty, &Inside::AreAnglesDirty, 16}})
        {
            for (int const value : {0, 1, 2, -1})
            {
                inside.SetFlags(flags);
                EXPECT_EQ((inside.*row.get)(), (flags & row.bit) != 0 ? 1 : 0);
                (inside.*row.set)(value);
                EXPECT_EQ(inside.Flags(), value != 0 ? flags | row.bit : flags & ~row.bit);
            }
        }
        for (int const value : {0, 1, 2, -1})
        {
            inside.SetFlags(flags);
            EXPECT_EQ(rotation.QuickIsIdentity(), flags >= 32 ? 1 : 0);
            inside.SetDefinitelyIdentity(value);
            EXPECT_EQ(inside.Flags(), value != 0 ? flags | 32U : flags & ~32U);
        }
        for (tagE3DROTREPTYPE const rep : {E3DROTREPTYPE_QUAT, E3DROTREPTYPE_MATRIX, E3DROTREPTYPE_XYZANGLES})
        {
            inside.SetFlags(flags);
            EXPECT_EQ(inside.GetOrigRep(), static_cast<int>(flags & 3U));
            inside.SetOrigRep(rep);
            EXPECT_EQ(inside.Flags(), (flags & ~3U) | static_cast<unsigned>(rep));
        }
    }
    EXPECT_EQ(int(E3DROTREPTYPE_QUAT), 0);
    EXPECT_EQ(int(E3DROTREPTYPE_MATRIX), 1);
    EXPECT_EQ(int(E3DROTREPTYPE_XYZANGLES), 2);
}

TEST(RotationCache, NextAxis_goes_round)
{
    EXPECT_EQ(Inside::NextAxis(0), 1);
    EXPECT_EQ(Inside::NextAxis(1), 2);
    EXPECT_EQ(Inside::NextAxis(2), 0);
}

// --- Getters ---------------------------------------------------------------------------------------------------------

/// What reading a form leaves of the flags: its own bit is cleared. Angles come through the matrix, except where the
/// mark spares the work.
TEST(RotationCache, A_getter_freshens_its_own_form_and_no_other)
{
    auto const afterAngles = [](unsigned flags)
    {
        bool const throughMatrix = (flags & k_AnglesDirty) != 0 && (flags & k_Marked) == 0;
        return flags & ~(k_AnglesDirty | (throughMatrix ? k_MatDirty : 0));
    };
    Vector const angles(0.3, -0.5, 0.7);
    for (unsigned const state : k_States)
    {
        for (unsigned const flags : {state, state | k_Marked})
        {
            SCOPED_TRACE(flags);
            bool const marked = flags >= k_Marked;
            Vector const expectedAngles = marked ? Vector(0, 0, 0) : angles;
            Judge const judge = marked ? Judge::Identity() : JudgeOf(angles, E3DROTORDER_ZXY);
            double const half = 2 * std::acos(judge.w());
            bool const angleIsTheCallers = !marked && (flags & k_QuatDirty) == 0;

            C3DRotation rotation = MakeState(flags);
            Quat quat;
            rotation.GetQuat(quat);
            EXPECT_EQ(Inside(rotation).Flags(), flags & ~k_QuatDirty);
            EXPECT_LT(Distance(JudgeOf(quat), judge), 1e-15);
            EXPECT_TRUE(FreshFormsAre(rotation, judge));

            rotation = MakeState(flags);
            Matrix matrix;
            rotation.GetMatrix(matrix);
            EXPECT_EQ(Inside(rotation).Flags(), flags & ~k_MatDirty);
            EXPECT_LT(Distance(JudgeOf(matrix), judge), 1e-15);

            rotation = MakeState(flags);
            Matrix const * const inner = rotation.GetMatrix();
            EXPECT_EQ(inner, &Inside(rotation).Matrix());
            EXPECT_EQ(Inside(rotation).Flags(), flags & ~k_MatDirty);
            EXPECT_TRUE(Same(*inner, matrix));

            rotation = MakeState(flags);
            Vector read;
            rotation.GetXYZAngles(read);
            EXPECT_EQ(Inside(rotation).Flags(), afterAngles(flags));
            EXPECT_LT(MaxDifference(read, expectedAngles), 1e-15);
            EXPECT_TRUE(FreshFormsAre(rotation, judge));

            rotation = MakeState(flags);
            Vector scalars;
            rotation.GetXYZAngles(scalars.X, scalars.Y, scalars.Z);
            EXPECT_EQ(Inside(rotation).Flags(), afterAngles(flags));
            EXPECT_TRUE(Same(scalars, read));

            rotation = MakeState(flags);
            Vector axis;
            double angle = k_Nan;
            rotation.GetAxisAngle(axis, angle);
            EXPECT_EQ(Inside(rotation).Flags(), flags & ~k_QuatDirty);
            EXPECT_NEAR(angle, angleIsTheCallers ? half + 2 * k_TwoPi : half, 1e-14);
            Vector const judgeAxis(judge.x() / std::sin(half / 2), judge.y() / std::sin(half / 2),
                                   judge.z() / std::sin(half / 2));
            EXPECT_LT(MaxDifference(axis, marked ? Vector(0, 0, 0) : judgeAxis), 1e-14);

            EXPECT_EQ(rotation.GetXYZRotOrder(), E3DROTORDER_ZXY);
        }
    }
}

TEST(RotationCache, Fresh_forms_are_read_bit_for_bit)
{
    for (unsigned const flags : k_States)
    {
        C3DRotation rotation = FilledWith(12.3, flags);
        Inside inside(rotation);
        Quat quat;
        Matrix matrix;
        Vector angles;
        if ((flags & k_QuatDirty) == 0)
        {
            rotation.GetQuat(quat);
            EXPECT_TRUE(Same(quat, Quat(12.3, 12.3, 12.3, 12.3)));
        }
        if ((flags & k_MatDirty) == 0)
        {
            rotation.GetMatrix(matrix);
            EXPECT_TRUE(Same(matrix, Matrix(12.3, 12.3, 12.3, 12.3, 12.3, 12.3, 12.3, 12.3, 12.3)));
        }
        if ((flags & k_AnglesDirty) == 0)
        {
            rotation.GetXYZAngles(angles);
            EXPECT_TRUE(Same(angles, Vector(12.3, 12.3, 12.3)));
        }
        EXPECT_EQ(inside.Flags(), flags);
    }
}

TEST(RotationCache, Angles_in_another_order_leave_the_object_alone)
{
    Vector const angles(0.3 + 3 * k_TwoPi, -0.5, 0.7 - k_TwoPi);
    for (unsigned const flags : k_States)
    {
        for (tagE3DROTORDER const own : k_Orders)
        {
            for (tagE3DROTORDER const asked : k_Orders)
            {
                C3DRotation rotation = MakeState(flags, angles, own);
                C3DRotation reference = rotation;
                Vector stored;
                reference.GetXYZAngles(stored);
                Vector read(k_Nan, k_Nan, k_Nan);
                rotation.GetXYZAngles(read, asked);
                Vector const expected = asked == own ? stored : AnglesOf(MatrixOf(stored, own), asked);
                EXPECT_TRUE(Same(read, expected)) << flags << ' ' << own << ' ' << asked;
                EXPECT_TRUE(SameState(rotation, reference));
                EXPECT_LT(Distance(JudgeOf(read, asked), JudgeOf(angles, own)), 1e-14);
            }
        }
    }
}

TEST(RotationCache, Angles_of_the_identity_in_any_order_are_zeros_and_freshen_nothing)
{
    for (unsigned const state : k_States)
    {
        for (tagE3DROTORDER const asked : {E3DROTORDER_ZXY, E3DROTORDER_XYZ, k_NoOrder})
        {
            C3DRotation rotation = MakeState(state | k_Marked);
            // Even angles that were left behind the mark are not looked at.
            Inside(rotation).FillAngles(k_TwoPi);
            Vector read(k_Nan, k_Nan, k_Nan);
            rotation.GetXYZAngles(read, asked);
            EXPECT_TRUE(Same(read, Vector(0, 0, 0)));
            EXPECT_EQ(Inside(rotation).Flags(), state | k_Marked);
        }
    }
}

TEST(RotationCache, Angles_in_an_order_that_does_not_exist_are_zeros)
{
    C3DRotation rotation(0.3, 0.4, 0.5, E3DROTORDER_XYZ);
    Vector read(k_Nan, k_Nan, k_Nan);
    rotation.GetXYZAngles(read, k_NoOrder);
    EXPECT_TRUE(Same(read, Vector(0, 0, 0)));
}

TEST(RotationCache, Angles_of_a_matrix_lie_within_half_a_turn_and_the_matrix_stays_the_source)
{
    Matrix const matrix = MatrixOf(Vector(10, 1, -10), E3DROTORDER_XYZ);
    C3DRotation rotation(matrix);
    Inside(rotation).FillAngles(1000);
    Vector angles;
    rotation.GetXYZAngles(angles);
    // Of the two solutions the one nearer to zero.
    EXPECT_LT(MaxDifference(angles, Vector(10 - 3 * k_Pi, k_Pi - 1, -10 + 3 * k_Pi)), 1e-14);
    EXPECT_EQ(Inside(rotation).GetOrigRep(), 1);
    Matrix read;
    rotation.GetMatrix(read);
    EXPECT_TRUE(Same(read, matrix));
}

TEST(RotationCache, Axis_and_angle_are_those_of_the_caller)
{
    Vector axis;
    double angle = 0;
    C3DRotation(E3D_AXIS_X, 3 * k_Pi).GetAxisAngle(axis, angle);
    EXPECT_EQ(angle, 3 * k_Pi);
    EXPECT_TRUE(Same(axis, Vector(1, 0, 0)));
    Quat quat;
    C3DRotation(E3D_AXIS_X, 3 * k_Pi).GetQuat(quat);
    EXPECT_EQ(quat.X, -1);

    C3DRotation(Vector(0, 3, 4), -0.5).GetAxisAngle(axis, angle);
    EXPECT_EQ(angle, -0.5);
    EXPECT_LT(MaxDifference(axis, Vector(0, 0.6, 0.8)), 1e-15);

    // A quaternion with a negative scalar part turns by more than half a turn.
    C3DRotation(Quat(-0.6, 0, 0.8, 0)).GetAxisAngle(axis, angle);
    EXPECT_EQ(angle, 2 * std::acos(-0.6));
    EXPECT_LT(MaxDifference(axis, Vector(0, 1, 0)), 1e-15);
}

TEST(RotationCache, Axis_is_null_where_the_sine_of_half_the_angle_is_below_the_limit)
{
    struct Row
    {
        double angle;
        bool isNull;
    };
    for (Row const & row : {Row{2e-12, false}, Row{-2e-12, false}, Row{1.9999999e-12, true}, Row{-1.9999999e-12, true},
                            Row{k_TwoPi, true}, Row{k_TwoPi + 2.01e-12, false}, Row{k_Nan, true}})
    {
        C3DRotation rotation(Vector(0, 3, 4), row.angle);
        Vector axis(k_Nan, k_Nan, k_Nan);
        double angle = 5;
        rotation.GetAxisAngle(axis, angle);
        EXPECT_TRUE(angle == row.angle || (std::isnan(angle) && std::isnan(row.angle)));
        EXPECT_LT(MaxDifference(axis, row.isNull ? Vector(0, 0, 0) : Vector(0, 0.6, 0.8)), 1e-3) << row.angle;
        EXPECT_EQ(Same(axis, Vector(0, 0, 0)), row.isNull) << row.angle;
    }
}

TEST(RotationCache, Reading_fresh_forms_writes_nothing)
{
    // So threads may share a rotation whose forms are all fresh.
    C3DRotation a(0.3, -0.5, 0.7, E3DROTORDER_ZXY);
    C3DRotation b(Vector(1, 2, 3), 0.4);
    C3DRotation rotations[] = {C3DRotation().Mul(a, b),
                               C3DRotation().Interpolate(a, b, 0.3),
                               C3DRotation().Invert(a),
                               C3DRotation(Quat(1, 2, 3, 4)),
                               C3DRotation(MatrixOf(Vector(0.1, 0.2, 0.3), E3DROTORDER_YXZ)),
                               C3DRotation(1, 2, 3, E3DROTORDER_ZYX),
                               C3DRotation(E3D_AXIS_X, 9),
                               C3DRotation(Vector(1, 2, 3), 9),
                               C3DRotation()};
    for (C3DRotation & rotation : rotations)
    {
        SCOPED_TRACE(&rotation - rotations);
        Quat quat;
        Matrix matrix;
        Vector vector;
        double x = 0;
        double y = 0;
        double z = 0;
        rotation.GetQuat(quat);
        rotation.GetMatrix(matrix);
        rotation.GetXYZAngles(vector);
        ASSERT_EQ(Inside(rotation).Flags() & (k_QuatDirty | k_MatDirty | k_AnglesDirty), 0U);

        std::array<unsigned char, sizeof rotation> before{};
        std::memcpy(before.data(), &rotation, sizeof rotation);
        auto const isAsBefore = [&] { return std::memcmp(before.data(), &rotation, sizeof rotation) == 0; };
        rotation.GetAxisAngle(vector, x);
        EXPECT_TRUE(isAsBefore()) << "axis and angle";
        rotation.GetQuat(quat);
        rotation.GetMatrix(matrix);
        rotation.GetMatrix();
        rotation.GetXYZAngles(vector);
        rotation.GetXYZAngles(x, y, z);
        rotation.GetXYZAngles(vector, E3DROTORDER_YXZ);
        rotation.GetXYZRotOrder();
        EXPECT_TRUE(isAsBefore()) << "the other getters";
        rotation.QuickIsIdentity();
        rotation.IsAlmostIdentity(1e-9);
        rotation.IsIdentity(1e-9);
        rotation.IsIdentity();
        EXPECT_TRUE(isAsBefore()) << "the tests";
        rotation.RotateVct(vector, vector);
        rotation.InvRotateVct(&vector, 1, &vector);
        EXPECT_TRUE(isAsBefore()) << "vectors";
        C3DRotation product;
        product.Mul(rotation, b);
        product.Mul(rotation);
        product.MulAndUpdateEulerAngles(rotation, b, 1);
        product.Interpolate(rotation, b, 0.5);
        product.Invert(rotation);
        product.Set(rotation, 1);
        EXPECT_TRUE(isAsBefore()) << "products";
    }
}

// --- Bringing up to date ---------------------------------------------------------------------------------------------

TEST(RotationCache, The_quaternion_comes_from_the_matrix_or_else_from_the_angles)
{
    for (tagE3DROTORDER const order : k_Orders)
    {
        C3DRotation rotation;
        Inside inside(rotation);
        inside.SetOrder(order);
        inside.Matrix() = MatrixOf(Vector(0.1, 0.2, 0.3), order);
        inside.Angles().Set(1.1, 1.2, 1.3);
        Quat fromMatrix;
        F3DMatToQuat(inside.Matrix(), fromMatrix);
        Quat fromAngles;
        F3DEulerToQuat(inside.Angles(), fromAngles, order);
        for (unsigned const source : {k_FromQuat, k_FromMatrix, k_FromAngles})
        {
            for (unsigned const others : {0U, k_MatDirty, k_AnglesDirty, k_MatDirty | k_AnglesDirty})
            {
                inside.FillQuat(k_Nan);
                inside.SetFlags(source | k_QuatDirty | others);
                inside.UpdateQuat();
                EXPECT_TRUE(Same(inside.Quat(), source == k_FromMatrix ? fromMatrix : fromAngles));
                EXPECT_EQ(inside.Angle(), AngleOf(inside.Quat()));
                EXPECT_EQ(inside.Flags(), source | others);
            }
        }
    }
}

TEST(RotationCache, The_matrix_comes_from_the_quaternion_where_that_is_the_source_and_else_from_the_angles)
{
    for (tagE3DROTORDER const order : k_Orders)
    {
        C3DRotation rotation;
        Inside inside(rotation);
        inside.SetOrder(order);
        inside.Quat().Set(0.5, -0.5, 0.5, 0.5);
        inside.Angles().Set(1.1, 1.2, 1.3);
        Matrix fromQuat;
        F3DQuatToMat(inside.Quat(), fromQuat);
        for (unsigned const source : {k_FromQuat, k_FromMatrix, k_FromAngles})
        {
            for (unsigned const others : {0U, k_QuatDirty, k_AnglesDirty, k_QuatDirty | k_AnglesDirty})
            {
                inside.FillMatrix(k_Nan);
                inside.SetFlags(source | k_MatDirty | others);
                inside.UpdateMatrix();
                EXPECT_TRUE(Same(inside.Matrix(), source == k_FromQuat ? fromQuat : MatrixOf(inside.Angles(), order)));
                EXPECT_EQ(inside.Flags(), source | others);
            }
        }
    }
}

TEST(RotationCache, The_angles_come_from_the_matrix_and_through_it_from_the_quaternion)
{
    for (tagE3DROTORDER const order : k_Orders)
    {
        C3DRotation rotation;
        Inside inside(rotation);
        inside.SetOrder(order);
        Matrix const matrix = MatrixOf(Vector(1.1, 1.2, 1.3), order);
        Quat const quat(0.5, -0.1, 0.7, std::sqrt(0.25));
        Matrix quatMatrix;
        F3DQuatToMat(quat, quatMatrix);
        for (unsigned const source : {k_FromQuat, k_FromMatrix})
        {
            inside.FillQuat(k_Nan);
            inside.Matrix() = matrix;
            inside.FillAngles(100); // no target: it is discarded
            inside.SetFlags(source | k_AnglesDirty);
            inside.UpdateXYZAngles();
            EXPECT_TRUE(Same(inside.Angles(), AnglesOf(matrix, order)));
            EXPECT_EQ(inside.Flags(), source);

            inside.Quat() = quat;
            inside.FillMatrix(k_Nan);
            inside.FillAngles(100);
            inside.SetFlags(source | k_AnglesDirty | k_MatDirty);
            inside.UpdateXYZAngles();
            EXPECT_TRUE(Same(inside.Matrix(), quatMatrix));
            EXPECT_TRUE(Same(inside.Angles(), AnglesOf(quatMatrix, order)));
            EXPECT_EQ(inside.Flags(), source);
        }
    }
}

// The mark presets the quaternion and the matrix, and then the conversion runs all the same. It shows only where the
// conversion gives something else, or nothing: an order that does not exist leaves what it finds.
TEST(RotationCache, The_mark_presets_the_quaternion_and_does_not_end_its_update)
{
    C3DRotation rotation;
    Inside inside(rotation);
    inside.SetFlags(k_FromMatrix | k_QuatDirty | k_AnglesDirty | k_Marked);
    inside.Matrix().Set(E3D_AXIS_Z, 0.5);
    inside.UpdateQuat();
    Quat expected;
    F3DMatToQuat(inside.Matrix(), expected);
    EXPECT_TRUE(Same(inside.Quat(), expected));
    EXPECT_EQ(inside.Angle(), AngleOf(expected));

    inside.SetFlags(k_FromAngles | k_QuatDirty | k_MatDirty | k_Marked);
    inside.Angles().Set(0.3, 0.4, 0);
    inside.SetOrder(k_NoOrder);
    inside.FillQuat(k_Nan);
    inside.FillMatrix(k_Nan);
    inside.UpdateQuat();
    EXPECT_TRUE(Same(inside.Quat(), Quat(1, 0, 0, 0)));
    EXPECT_EQ(inside.Angle(), 0);
    inside.UpdateMatrix();
    EXPECT_TRUE(Same(inside.Matrix(), Matrix()));

    inside.SetOrder(E3DROTORDER_XZY);
    inside.UpdateMatrix();
    EXPECT_TRUE(Same(inside.Matrix(), MatrixOf(Vector(0.3, 0.4, 0), E3DROTORDER_XZY)));
    EXPECT_EQ(inside.Flags(), k_FromAngles | k_Marked);
}

TEST(RotationCache, The_mark_ends_the_update_of_the_angles)
{
    C3DRotation rotation = FilledWith(k_Nan, k_IdentityState);
    Inside inside(rotation);
    inside.UpdateXYZAngles();
    EXPECT_TRUE(Same(inside.Angles(), Vector(0, 0, 0)));
    EXPECT_TRUE(IsNan(inside.Matrix()));
    EXPECT_EQ(inside.Flags(), k_MatDirty | k_Marked);
}

// --- Tests of identity -----------------------------------------------------------------------------------------------

TEST(RotationCache, IsExactlyIdentity_trusts_the_angles_then_the_quaternion_then_the_matrix)
{
    struct Row
    {
        unsigned flags;
        int identity;
        Vector angles;
        Quat quat;
        Matrix matrix;
    };
    Vector const noAngles(k_Nan, k_Nan, k_Nan);
    Quat const noQuat(k_Nan, k_Nan, k_Nan, k_Nan);
    Matrix const noMatrix(k_Nan, k_Nan, k_Nan, k_Nan, k_Nan, k_Nan, k_Nan, k_Nan, k_Nan);
    Vector const zero(0, 0, 0);
    Quat const one(1, 0, 0, 0);
    Matrix const unit;
    double const almostOne = std::nextafter(1.0, 0.0);
    double const tiny = std::numeric_limits<double>::denorm_min();
    Row const rows[] = {
        {k_IdentityState, 1, noAngles, noQuat, noMatrix},
        {k_Marked | k_FromMatrix, 1, noAngles, noQuat, noMatrix},
        // angles first
        {k_AnglesAlone, 1, zero, noQuat, noMatrix},
        {k_AnglesAlone, 1, Vector(-0.0, 0.0, -0.0), noQuat, noMatrix},
        {0, 1, zero, noQuat, noMatrix},
        {0, 0, Vector(tiny, 0, 0), one, unit},
        {1, 0, Vector(0, -tiny, 0), one, unit},
        {2, 0, Vector(0, 0, tiny), one, unit},
        {2, 0, Vector(k_TwoPi, 0, 0), one, unit},
        {2, 0, Vector(k_Nan, 0, 0), one, unit},
        // then the quaternion
        {k_QuatAlone, 1, noAngles, one, noMatrix},
        {k_QuatAlone, 1, noAngles, Quat(1, -0.0, 0, 0), noMatrix},
        {k_FromMatrix | k_AnglesDirty, 1, noAngles, one, noMatrix},
        {k_AnglesDirty, 0, zero, Quat(almostOne, 0, 0, 0), unit},
        {k_AnglesDirty, 0, zero, Quat(1, tiny, 0, 0), unit},
        {k_AnglesDirty, 0, zero, Quat(1, 0, tiny, 0), unit},
        {k_AnglesDirty, 0, zero, Quat(1, 0, 0, tiny), unit},
        {k_AnglesDirty, 0, zero, Quat(-1, 0, 0, 0), unit},
        {k_AnglesDirty, 0, zero, Quat(1, k_Nan, 0, 0), unit},
        // then the matrix
        {k_MatrixAlone, 1, noAngles, noQuat, unit},
        {k_MatrixAlone, 1, noAngles, noQuat, Matrix(1, -0.0, 0, 0, 1, 0, 0, 0, 1)},
        {k_MatrixAlone, 0, zero, one, Matrix(almostOne, 0, 0, 0, 1, 0, 0, 0, 1)},
        {k_MatrixAlone, 0, zero, one, Matrix(1, 0, 0, 0, 1, 0, 0, tiny, 1)},
        {k_MatrixAlone, 0, zero, one, Matrix(1, 0, k_Nan, 0, 1, 0, 0, 0, 1)},
    };
    int number = 0;
    for (Row const & row : rows)
    {
        SCOPED_TRACE(number++);
        for (int const form : {0, 1, 2}) // IsExactlyIdentity, IsIdentity() and IsIdentity(0) are the same
        {
            C3DRotation rotation;
            Inside inside(rotation);
            inside.SetFlags(row.flags);
            inside.Angles() = row.angles;
            inside.Quat() = row.quat;
            inside.Matrix() = row.matrix;
            int const identity = form == 0   ? rotation.IsExactlyIdentity()
                                 : form == 1 ? rotation.IsIdentity()
                                             : rotation.IsIdentity(-0.0);
            EXPECT_EQ(identity, row.identity);
            EXPECT_EQ(inside.Flags(), row.flags | (row.identity != 0 ? k_Marked : 0U));
        }
    }
}

TEST(RotationCache, Every_element_of_the_matrix_counts_in_the_tests_of_identity)
{
    for (int i = 0; i < 9; ++i)
    {
        for (double const difference : {0.25, -0.25, k_Nan})
        {
            C3DRotation rotation;
            Inside inside(rotation);
            inside.SetFlags(k_MatrixAlone);
            inside.Matrix().SetIdentity();
            inside.Matrix().Set(i / 3, i % 3, (i % 4 == 0 ? 1 : 0) + difference);
            inside.FillStale();
            EXPECT_EQ(rotation.IsExactlyIdentity(), 0) << i;
            bool const number = !std::isnan(difference);
            EXPECT_EQ(rotation.IsAlmostIdentity(0.25), number ? 1 : 0) << i; // the limit passes
            EXPECT_EQ(rotation.IsAlmostIdentity(0.2499999), 0) << i;
            EXPECT_EQ(inside.Flags(), k_MatrixAlone);
        }
    }
}

TEST(RotationCache, IsAlmostIdentity_includes_its_limit_in_every_component_of_the_most_trusted_form)
{
    for (double const difference : {0.25, -0.25, k_Nan})
    {
        int const atLimit = std::isnan(difference) ? 0 : 1;
        for (int i = 0; i < 3; ++i)
        {
            C3DRotation rotation = FilledWith(k_Nan, k_AnglesAlone);
            Inside inside(rotation);
            inside.Angles() = Vector(i, difference);
            EXPECT_EQ(rotation.IsAlmostIdentity(0.25), atLimit);
            EXPECT_EQ(rotation.IsIdentity(0.25), atLimit);
            EXPECT_EQ(rotation.IsAlmostIdentity(0.2499999), 0);
            EXPECT_EQ(inside.Flags(), k_AnglesAlone) << "no trace";
        }
        for (int i = 0; i < 4; ++i)
        {
            C3DRotation rotation = FilledWith(k_Nan, k_QuatAlone);
            Inside inside(rotation);
            inside.Quat().Set(i == 0 ? 1 + difference : 1, i == 1 ? difference : 0, i == 2 ? difference : 0,
                              i == 3 ? difference : 0);
            EXPECT_EQ(rotation.IsAlmostIdentity(0.25), atLimit);
            EXPECT_EQ(rotation.IsIdentity(0.25), atLimit);
            EXPECT_EQ(rotation.IsAlmostIdentity(0.2499999), 0);
            EXPECT_EQ(inside.Flags(), k_QuatAlone);
        }
    }
}

TEST(RotationCache, IsAlmostIdentity_follows_the_same_order_of_trust)
{
    // The most trusted fresh form is the identity and the others are not, or the other way round.
    for (unsigned const flags : k_States)
    {
        for (bool const trusted : {true, false})
        {
            C3DRotation rotation = FilledWith(trusted ? 5 : 0, flags);
            Inside inside(rotation);
            auto const setQuat = [&](bool identity) { inside.Quat().Set(identity ? 1 : 0, 0, 0, 0); };
            auto const setMatrix = [&](bool identity) { inside.Matrix().Set(0, 0, identity ? 1 : 0); };
            inside.Matrix().SetIdentity();
            bool const byAngles = (flags & k_AnglesDirty) == 0;
            bool const byQuat = !byAngles && (flags & k_QuatDirty) == 0;
            inside.FillAngles(byAngles == trusted ? 0 : 1);
            setQuat(byQuat == trusted);
            setMatrix((!byAngles && !byQuat) == trusted);
            C3DRotation const & readOnly = rotation;
            EXPECT_EQ(readOnly.IsAlmostIdentity(1e-9), trusted ? 1 : 0) << flags;
            EXPECT_EQ(inside.Flags(), flags);
            EXPECT_EQ(rotation.IsExactlyIdentity(), trusted ? 1 : 0) << flags;
        }
    }
}

TEST(RotationCache, The_mark_answers_every_test)
{
    C3DRotation rotation = FilledWith(k_Nan, k_IdentityState);
    EXPECT_EQ(rotation.IsAlmostIdentity(-1), 1);
    EXPECT_EQ(rotation.IsIdentity(-1), 1);
    EXPECT_EQ(rotation.IsIdentity(0), 1);
    EXPECT_EQ(rotation.IsIdentity(), 1);
    EXPECT_EQ(rotation.IsExactlyIdentity(), 1);
    EXPECT_EQ(rotation.QuickIsIdentity(), 1);
}

TEST(RotationCache, Nothing_is_the_identity_within_a_limit_below_zero)
{
    C3DRotation rotation = MakeState(k_AnglesAlone, Vector(0, 0, 0));
    EXPECT_EQ(rotation.IsIdentity(-1e-9), 0);
    EXPECT_EQ(rotation.IsIdentity(k_Nan), 0);
    EXPECT_EQ(rotation.QuickIsIdentity(), 0);
    EXPECT_EQ(rotation.IsIdentity(0), 1);
}

TEST(RotationCache, QuickIsIdentity_computes_nothing)
{
    C3DRotation rotation = MakeState(k_AnglesAlone, Vector(0, 0, 0));
    EXPECT_EQ(rotation.QuickIsIdentity(), 0);
    EXPECT_EQ(Inside(rotation).Flags(), k_AnglesAlone);
}

TEST(RotationCache, A_whole_turn_in_the_angles_is_not_the_identity)
{
    C3DRotation rotation(k_TwoPi, 0, 0, E3DROTORDER_XYZ);
    Matrix matrix;
    rotation.GetMatrix(matrix);
    EXPECT_TRUE(matrix.IsIdentity(1e-12));
    EXPECT_EQ(rotation.IsExactlyIdentity(), 0);
    EXPECT_EQ(rotation.IsIdentity(1e-9), 0);
    EXPECT_EQ(rotation.QuickIsIdentity(), 0);
}

TEST(RotationCache, A_rotation_that_is_found_to_be_the_identity_stays_readable_in_every_form)
{
    for (unsigned const state : k_States)
    {
        C3DRotation rotation = MakeState(state | k_Marked);
        Inside(rotation).SetFlags(state);
        ASSERT_EQ(rotation.IsExactlyIdentity(), 1);
        Quat quat;
        Matrix matrix;
        Vector angles;
        rotation.GetQuat(quat);
        rotation.GetMatrix(matrix);
        rotation.GetXYZAngles(angles);
        EXPECT_TRUE(Same(quat, Quat(1, 0, 0, 0)));
        EXPECT_TRUE(Same(matrix, Matrix()));
        EXPECT_TRUE(Same(angles, Vector(0, 0, 0)));
    }
}
