/// The setters of a transformation: a state before, an operation, the state after.

#include "support/allocation_faults.h"
#include "transform/transformation_states.h"

#include <string>

using namespace transformation_test;
using test_support::AllocationFaults;

namespace
{

Vector const k_S(3, -0.25, 5);
Rotation const k_So(-0.3, 0.9, 0.1, E3DROTORDER_ZYX);
Rotation const k_AlmostNone(1e-12, -1e-12, 1e-12, E3DROTORDER_ZYX);
Rotation const k_R(-1.1, 0.2, 0.4, E3DROTORDER_XZY);
Vector const k_T(-7, 5, 0.125);
Vector const k_Axis(1, 2, -2);
Vector const k_Angles(0.4, -0.9, 1.3);
Quat const k_Quat(0.5, -0.5, 0.5, 0.5);
RotMatrix const k_Matrix = MatrixOf(k_R);

Rotation MarkedIdentity()
{
    Rotation identity;
    identity.Set(E3DROTORDER_ZYX, 1);
    return identity;
}

/// What happens to the order of the rotation.
enum class Order
{
    read, ///< It is the one that goes with the fresh form.
    own   ///< The rotation is replaced, in the order that it has itself, which nobody read from a matrix.
};

/// The states before: the components alone fresh, the matrix alone, both; the identity without and with its matrix.
constexpr unsigned k_Before[5] = {2, 1, 0, 18, 16};

using T = C3DTransfo &;
using V = Values &;

struct Row
{
    char const * operation;
    void (*act)(T);
    void (*effect)(V); ///< on the components, all of which are fresh afterwards
    Order order;
    unsigned after[5]; ///< the flags for each of k_Before
};

Row const k_Rows[] = {
    // Everything at once.
    {"Set(S, R, T)",
     [](T t) { t.Set(k_S, k_R, k_T); },
     [](V v) {
         v = {k_S, v.orientation, k_R, k_T};
     },
     Order::own,
     {2, 2, 2, 2, 2}},
    {"Set(S, SO, R, T)",
     [](T t) { t.Set(k_S, k_So, k_R, k_T); },
     [](V v) {
         v = {k_S, k_So, k_R, k_T};
     },
     Order::own,
     {2, 2, 2, 2, 2}},
    {"Set(S, almost no SO, R, T)",
     [](T t) { t.Set(k_S, k_AlmostNone, k_R, k_T); },
     [](V v) {
         v = {k_S, std::nullopt, k_R, k_T};
     },
     Order::own,
     {2, 2, 2, 2, 2}},
    {"SetIdentity()", [](T t) { t.SetIdentity(); }, [](V v) { v = Values(); }, Order::own, {18, 18, 18, 18, 16}},

    // Masks of the identity.
    {"SetIdentity(63)", [](T t) { t.SetIdentity(63); }, [](V v) { v = Values(); }, Order::own, {18, 18, 18, 18, 16}},
    {"SetIdentity(0)", [](T t) { t.SetIdentity(0); }, [](V) {}, Order::read, {2, 2, 2, 18, 16}},
    {"SetIdentity(1)",
     [](T t) { t.SetIdentity(1); },
     [](V v) { v.scaling.Set(1, 1, 1); },
     Order::read,
     {2, 2, 2, 18, 16}},
    {"SetIdentity(2)",
     [](T t) { t.SetIdentity(2); },
     [](V v) { v.orientation.reset(); },
     Order::read,
     {2, 2, 2, 18, 16}},
    {"SetIdentity(4)",
     [](T t) { t.SetIdentity(4); },
     [](V v) { v.rotation.SetIdentity(); },
     Order::own,
     {2, 2, 2, 18, 16}},
    {"SetIdentity(8)",
     [](T t) { t.SetIdentity(8); },
     [](V v) { v.translation.Set(0, 0, 0); },
     Order::read,
     {2, 2, 2, 18, 16}},
    {"SetIdentity(15)", [](T t) { t.SetIdentity(15); }, [](V v) { v = Values(); }, Order::own, {2, 2, 2, 18, 16}},
    {"SetIdentity(62)",
     [](T t) { t.SetIdentity(62); },
     [](V v) {
         v = {v.scaling, std::nullopt, Rotation(), Vector(0, 0, 0)};
     },
     Order::own,
     {2, 2, 2, 18, 16}},
    {"SetIdentity(127)", [](T t) { t.SetIdentity(127); }, [](V v) { v = Values(); }, Order::own, {2, 2, 2, 18, 16}},
    {"SetIdentity(255)", [](T t) { t.SetIdentity(255); }, [](V v) { v = Values(); }, Order::own, {2, 2, 2, 18, 16}},

    // The scaling.
    {"SetScaling(vector)", [](T t) { t.SetScaling(k_S); }, [](V v) { v.scaling = k_S; }, Order::read, {2, 2, 2, 2, 2}},
    {"SetScaling(vector of ones)",
     [](T t) { t.SetScaling(Vector(1, 1, 1)); },
     [](V v) { v.scaling.Set(1, 1, 1); },
     Order::read,
     {2, 2, 2, 2, 2}},
    {"SetScaling(x, y, z)",
     [](T t) { t.SetScaling(3, -0.25, 5); },
     [](V v) { v.scaling = k_S; },
     Order::read,
     {2, 2, 2, 2, 2}},
    {"SetScaling(1, 1, 1)",
     [](T t) { t.SetScaling(1, 1, 1); },
     [](V v) { v.scaling.Set(1, 1, 1); },
     Order::read,
     {2, 2, 2, 18, 18}},
    {"SetScaling(2, 1, 1)",
     [](T t) { t.SetScaling(2, 1, 1); },
     [](V v) { v.scaling.Set(2, 1, 1); },
     Order::read,
     {2, 2, 2, 2, 2}},
    {"SetScaling(1, 2, 1)",
     [](T t) { t.SetScaling(1, 2, 1); },
     [](V v) { v.scaling.Set(1, 2, 1); },
     Order::read,
     {2, 2, 2, 2, 2}},
    {"SetScaling(1, 1, 2)",
     [](T t) { t.SetScaling(1, 1, 2); },
     [](V v) { v.scaling.Set(1, 1, 2); },
     Order::read,
     {2, 2, 2, 2, 2}},
    {"SetScaling(S, SO)",
     [](T t) { t.SetScaling(k_S, k_So); },
     [](V v) {
         v = {k_S, k_So, v.rotation, v.translation};
     },
     Order::read,
     {2, 2, 2, 2, 2}},
    {"SetScaling(S, almost no SO)",
     [](T t) { t.SetScaling(k_S, k_AlmostNone); },
     [](V v) {
         v = {k_S, std::nullopt, v.rotation, v.translation};
     },
     Order::read,
     {2, 2, 2, 2, 2}},

    // The rotation.
    {"SetRotation(rotation)",
     [](T t) { t.SetRotation(k_R); },
     [](V v) { v.rotation = k_R; },
     Order::own,
     {2, 2, 2, 2, 2}},
    {"SetRotation(marked identity)",
     [](T t) { t.SetRotation(MarkedIdentity()); },
     [](V v) { v.rotation.SetIdentity(); },
     Order::own,
     {2, 2, 2, 18, 18}},
    {"SetRotation(identity without a mark)",
     [](T t) { t.SetRotation(Rotation(Quat(1, 0, 0, 0))); },
     [](V v) { v.rotation.SetIdentity(); },
     Order::own,
     {2, 2, 2, 2, 2}},
    {"SetRotation(quaternion)",
     [](T t) { t.SetRotation(k_Quat); },
     [](V v) { v.rotation.Set(k_Quat); },
     Order::own,
     {2, 2, 2, 2, 2}},
    {"SetRotation(matrix)",
     [](T t) { t.SetRotation(k_Matrix); },
     [](V v) { v.rotation.Set(k_Matrix); },
     Order::own,
     {2, 2, 2, 2, 2}},
    {"SetRotation(coordinate axis, angle)",
     [](T t) { t.SetRotation(E3D_AXIS_Y, 0.7); },
     [](V v) { v.rotation.Set(E3D_AXIS_Y, 0.7); },
     Order::own,
     {2, 2, 2, 2, 2}},
    {"SetRotation(coordinate axis, 0)",
     [](T t) { t.SetRotation(E3D_AXIS_Y, 0); },
     [](V v) { v.rotation.SetIdentity(); },
     Order::own,
     {2, 2, 2, 18, 18}},
    {"SetRotation(axis, angle)",
     [](T t) { t.SetRotation(k_Axis, 0.7); },
     [](V v) { v.rotation.Set(k_Axis, 0.7); },
     Order::own,
     {2, 2, 2, 2, 2}},
    {"SetRotation(from, to)",
     [](T t)
     {
         int degenerate = 5;
         EXPECT_EQ(t.SetRotation(k_Axis, k_T, degenerate), 1);
         EXPECT_EQ(degenerate, 0);
     },
     [](V v)
     {
         int degenerate = 0;
         v.rotation.Set(k_Axis, k_T, degenerate);
     },
     Order::own,
     {2, 2, 2, 2, 2}},
    {"SetRotation(from, opposite)",
     [](T t)
     {
         int degenerate = 5;
         EXPECT_EQ(t.SetRotation(Vector(1, 0, 0), Vector(-2, 0, 0), degenerate), 1);
         EXPECT_EQ(degenerate, 1);
     },
     [](V v) { v.rotation.Set(E3D_AXIS_Y, k_Pi); },
     Order::own,
     {2, 2, 2, 2, 2}},
    {"SetRotation(from, from)",
     [](T t)
     {
         int degenerate = 5;
         EXPECT_EQ(t.SetRotation(k_Axis, k_Axis, degenerate), 1);
     },
     [](V v) { v.rotation.SetIdentity(); },
     Order::own,
     {2, 2, 2, 18, 18}},
    {"SetRotation(from, null vector), which fails",
     [](T t)
     {
         int degenerate = 5;
         EXPECT_EQ(t.SetRotation(k_Axis, Vector(0, 0, 0), degenerate), 0);
     },
     [](V v) { v.rotation.SetIdentity(); },
     Order::own,
     {2, 0, 0, 18, 16}},

    // The scaling orientation.
    {"SetScalingOrientation(angles)",
     [](T t) { t.SetScalingOrientation(k_Angles); },
     [](V v) { v.orientation = Rotation(k_Angles, E3DROTORDER_XYZ); },
     Order::read,
     {2, 2, 2, 18, 18}},
    {"SetScalingOrientation(x, y, z)",
     [](T t) { t.SetScalingOrientation(0.4, -0.9, 1.3); },
     [](V v) { v.orientation = Rotation(k_Angles, E3DROTORDER_XYZ); },
     Order::read,
     {2, 2, 2, 18, 18}},
    {"SetScalingOrientation(zeros)",
     [](T t) { t.SetScalingOrientation(0, 0, 0); },
     [](V v) { v.orientation = Rotation(0, 0, 0, E3DROTORDER_XYZ); },
     Order::read,
     {2, 2, 2, 18, 18}},
    {"SetScalingOrientation(rotation)",
     [](T t) { t.SetScalingOrientation(k_So); },
     [](V v) { v.orientation = k_So; },
     Order::read,
     {2, 2, 2, 2, 2}},
    {"SetScalingOrientation(almost none)",
     [](T t) { t.SetScalingOrientation(k_AlmostNone); },
     [](V v) { v.orientation.reset(); },
     Order::read,
     {2, 0, 0, 18, 16}},
};

/// The components as they read before the operation.
Values ReadBefore(C3DTransfo before)
{
    if (Inside::AreComponentsDirty(before) != 0)
    {
        Inside::Factorize(before, 63);
    }
    return ValuesOf(before);
}

/// Whether the components, which must be clean, are these.
void ExpectComponents(C3DTransfo & transfo, Values const & expected)
{
    Snapshot const snapshot(transfo);
    ASSERT_TRUE(snapshot.HasComponents());
    EXPECT_TRUE(Near(snapshot.scaling, expected.scaling, 0));
    EXPECT_TRUE(Near(snapshot.translation, expected.translation, 0));
    EXPECT_LE(Distance(snapshot.rotation, expected.rotation), 1e-14);
    ASSERT_EQ(snapshot.orientation.has_value(), expected.orientation.has_value());
    if (snapshot.orientation)
    {
        EXPECT_TRUE(SameRotation(*snapshot.orientation, *expected.orientation));
    }
}

void ExpectRow(Row const & row, int column, unsigned others, Values const & values)
{
    unsigned const flags = k_Before[column] | others;
    SCOPED_TRACE(testing::Message() << row.operation << " on flags " << flags);
    C3DTransfo transfo = MakeState(flags, values);
    Snapshot const before(transfo);
    Values expected = ReadBefore(transfo);
    row.effect(expected);
    row.act(transfo);

    EXPECT_EQ(Inside::Flags(transfo), row.after[column] | others);
    ExpectComponents(transfo, expected);
    tagE3DROTORDER const own = (flags & k_ComponentsDirty) != 0 ? k_StaleOrder : E3DROTORDER_ZXY;
    EXPECT_EQ(transfo.GetXYZRotOrder(), row.order == Order::own ? own : E3DROTORDER_ZXY);
    if (!before.HasMatrix() || (row.after[column] & k_MatrixDirty) == 0)
    {
        EXPECT_TRUE(SameMatrix(before, Snapshot(transfo))) << "the matrix is not written";
    }
    if ((row.after[column] & (k_MatrixDirty | k_Identity)) == k_MatrixDirty)
    {
        EXPECT_TRUE(Near(*transfo.GetMatrix(), MatrixOf(expected)));
        EXPECT_EQ(transfo.GetMatrix()->GetSclSignBits(), MatrixOf(expected).GetSclSignBits());
    }
}

} // namespace

// --- The table -------------------------------------------------------------------------------------------------------

TEST(TransformationSet, Each_operation_in_each_state)
{
    for (Row const & row : k_Rows)
    {
        for (int column = 0; column < 5; ++column)
        {
            for (unsigned const others : {0U, k_QNScaling, k_PreserveOrder, k_Unused, 44U})
            {
                for (Values const & values : {Plain(), Sheared(), OtherSheared()})
                {
                    Values in_order = values;
                    in_order.rotation.Set(E3DROTORDER_ZXY, 1);
                    ExpectRow(row, column, others, in_order);
                }
            }
        }
    }
}

// --- Angles and orders -----------------------------------------------------------------------------------------------

TEST(TransformationSet, Angles_are_in_the_order_of_the_rotation_as_it_stands)
{
    for (unsigned const before : k_Before)
    {
        for (int form = 0; form < 2; ++form)
        {
            C3DTransfo transfo = MakeState(before);
            tagE3DROTORDER const order = (before & k_ComponentsDirty) != 0 ? k_StaleOrder : E3DROTORDER_ZXY;
            form == 0 ? transfo.SetRotation(k_Angles) : transfo.SetRotation(k_Angles.X, k_Angles.Y, k_Angles.Z);
            EXPECT_EQ(Inside::Flags(transfo), k_MatrixDirty);
            EXPECT_TRUE(SameRotation(Inside::Rotation(transfo), Rotation(k_Angles, order)));
            EXPECT_TRUE(Near(Inside::Scaling(transfo), (before & k_Identity) != 0 ? Vector(1, 1, 1) : Plain().scaling));
        }
    }
}

TEST(TransformationSet, Angles_of_zero_keep_the_identity_flag)
{
    for (unsigned const before : k_Before)
    {
        C3DTransfo transfo = MakeState(before);
        transfo.SetRotation(0, -0.0, 0);
        EXPECT_EQ(Inside::Flags(transfo), (before & k_Identity) | k_MatrixDirty);
        EXPECT_EQ(Inside::Rotation(transfo).QuickIsIdentity(), 1);
    }
}

TEST(TransformationSet, An_order_changes_the_rotation_as_its_own_setter_does)
{
    for (unsigned const before : {2U, 0U})
    {
        for (int const keep : {0, 1, -1})
        {
            for (tagE3DROTORDER const order : k_Orders)
            {
                C3DTransfo transfo = MakeState(before);
                Rotation expected = Plain().rotation;
                expected.Set(order, keep);
                transfo.SetRotation(order, keep);
                EXPECT_EQ(Inside::Flags(transfo), k_MatrixDirty);
                EXPECT_TRUE(SameRotation(Inside::Rotation(transfo), expected));
            }
        }
    }
    for (unsigned const before : {18U, 16U})
    {
        C3DTransfo transfo = MakeState(before);
        transfo.SetRotation(E3DROTORDER_YZX, 0);
        EXPECT_EQ(Inside::Flags(transfo), 18U);
        EXPECT_EQ(transfo.GetXYZRotOrder(), E3DROTORDER_YZX);
    }
}

// The preparation reads everything but the rotation, so that the rotation of the matrix is lost.
TEST(TransformationSet, An_order_for_a_matrix_acts_on_the_rotation_before_the_matrix)
{
    Rotation const former(0.4, 0.5, 0.6, E3DROTORDER_XYZ);
    C3DTransfo transfo(Vector(1, 1, 1), former, Vector(0, 0, 0));
    transfo.Set(MatrixOf(Plain()));
    transfo.SetRotation(E3DROTORDER_ZYX, 1);
    EXPECT_EQ(Inside::Flags(transfo), 6U);
    EXPECT_EQ(transfo.GetXYZRotOrder(), E3DROTORDER_ZYX);
    EXPECT_LE(Distance(Inside::Rotation(transfo), former), 1e-14);
    EXPECT_TRUE(Near(Inside::Scaling(transfo), Plain().scaling));
    EXPECT_TRUE(SameBits(Inside::Translation(transfo), Plain().translation));
}

TEST(TransformationSet, A_rotation_is_taken_into_the_order_of_its_target)
{
    for (tagE3DROTORDER const own : k_Orders)
    {
        Rotation expected = MarkedIdentity();
        expected.Set(own, 1);
        expected.Set(k_R, 1);
        EXPECT_EQ(expected.GetXYZRotOrder(), own);
        C3DTransfo rows[4];
        for (C3DTransfo & transfo : rows)
        {
            transfo.SetRotation(own, 1);
        }
        rows[0].SetRotation(k_R);
        rows[1].Set(k_S, k_R, k_T);
        rows[2].Set(k_S, k_So, k_R, k_T);
        rows[3].Set(k_R);
        for (C3DTransfo & transfo : rows)
        {
            EXPECT_TRUE(SameRotation(Inside::Rotation(transfo), expected)) << &transfo - rows;
        }
        rows[0].SetRotation(MarkedIdentity());
        rows[1].Set(k_S, MarkedIdentity(), k_T);
        rows[2].Set(k_S, k_So, MarkedIdentity(), k_T);
        rows[3].Set(MarkedIdentity());
        for (C3DTransfo & transfo : rows)
        {
            EXPECT_EQ(transfo.GetXYZRotOrder(), own) << &transfo - rows;
            EXPECT_EQ(Inside::Rotation(transfo).QuickIsIdentity(), 1);
        }
    }
}

TEST(TransformationSet, A_scaling_orientation_brings_its_order)
{
    C3DTransfo rows[3] = {MakeState(2, Sheared()), MakeState(2, Sheared()), MakeState(2, Sheared())};
    rows[0].Set(k_S, k_So, k_R, k_T);
    rows[1].SetScaling(k_S, k_So);
    rows[2].SetScalingOrientation(k_So);
    for (C3DTransfo & transfo : rows)
    {
        EXPECT_EQ(Inside::ScalingOrientation(transfo)->GetXYZRotOrder(), E3DROTORDER_ZYX);
        transfo.SetScalingOrientation(k_Angles);
        EXPECT_TRUE(SameRotation(*Inside::ScalingOrientation(transfo), Rotation(k_Angles, E3DROTORDER_XYZ)));
    }
}

TEST(TransformationSet, An_existing_scaling_orientation_is_written_where_it_is)
{
    C3DTransfo transfo = MakeState(2, Sheared());
    Rotation const * const pointer = Inside::ScalingOrientation(transfo);
    transfo.Set(k_S, k_So, k_R, k_T);
    transfo.SetScaling(k_S, *Sheared().orientation);
    transfo.SetScalingOrientation(k_So);
    transfo.SetScalingOrientation(k_Angles);
    transfo.SetScalingOrientation(1, 2, 3);
    EXPECT_EQ(Inside::ScalingOrientation(transfo), pointer);
}

TEST(TransformationSet, A_scaling_orientation_is_told_from_the_identity_at_1e_12)
{
    for (bool const beyond : {false, true})
    {
        Rotation const orientation(0, 0, beyond ? std::nextafter(1e-12, 1.0) : 1e-12, E3DROTORDER_XYZ);
        C3DTransfo rows[3];
        rows[0].Set(k_S, orientation, k_R, k_T);
        rows[1].SetScaling(k_S, orientation);
        rows[2].SetScalingOrientation(orientation);
        for (C3DTransfo & transfo : rows)
        {
            EXPECT_EQ(Inside::ScalingOrientation(transfo) != nullptr, beyond);
        }
    }
}

// The angle forms delete nothing: what is no orientation goes only when a matrix is made.
TEST(TransformationSet, A_scaling_orientation_of_no_angles_stays_until_a_matrix_is_made)
{
    C3DTransfo transfo = MakeState(2);
    transfo.SetScalingOrientation(0, 0, 0);
    EXPECT_NE(Inside::ScalingOrientation(transfo), nullptr);
    EXPECT_FALSE(transfo.IsScalingOrientationExisting());
    transfo.GetMatrix();
    EXPECT_EQ(Inside::ScalingOrientation(transfo), nullptr);
}

// --- The clamp -------------------------------------------------------------------------------------------------------

TEST(TransformationSet, Every_incoming_scaling_is_clamped)
{
    struct Clamp
    {
        double factor;
        double stored;
    };
    Clamp const clamps[] = {
        {0.0, 1e-12},
        {-0.0, 1e-12},
        {5e-324, 1e-12},
        {-5e-324, -1e-12},
        {1e-12, 1e-12},
        {-1e-12, -1e-12},
        {std::nextafter(1e-12, 0.0), 1e-12},
        {std::nextafter(-1e-12, 0.0), -1e-12},
        {std::nextafter(1e-12, 1.0), std::nextafter(1e-12, 1.0)},
        {std::nextafter(-1e-12, -1.0), std::nextafter(-1e-12, -1.0)},
        {k_Nan, -1e-12},
        {k_Infinity, k_Infinity},
        {-k_Infinity, -k_Infinity},
    };
    for (Clamp const & clamp : clamps)
    {
        for (int axis = 0; axis < 3; ++axis)
        {
            Vector const scaling = Vector(2, 3, 4).Set(axis, clamp.factor);
            Vector const expected = Vector(2, 3, 4).Set(axis, clamp.stored);
            C3DTransfo rows[5];
            rows[0].Set(scaling, k_R, k_T);
            rows[1].Set(scaling, k_So, k_R, k_T);
            rows[2].SetScaling(scaling);
            rows[3].SetScaling(scaling.X, scaling.Y, scaling.Z);
            rows[4].SetScaling(scaling, k_So);
            for (C3DTransfo & transfo : rows)
            {
                Vector read;
                transfo.GetScaling(read);
                EXPECT_TRUE(SameBits(read, expected)) << clamp.factor << " in form " << &transfo - rows;
            }
        }
    }
}

TEST(TransformationSet, A_scaling_of_0_is_stored_as_1e_12_and_read_so)
{
    C3DTransfo transfo;
    transfo.SetScaling(0, 2, 3);
    Vector scaling;
    transfo.GetScaling(scaling);
    EXPECT_TRUE(SameBits(scaling, Vector(1e-12, 2, 3)));
    EXPECT_FALSE(transfo.QuickIsIdentity());
}

TEST(TransformationSet, Three_scalars_are_compared_with_1_before_the_clamp)
{
    for (double const factor : {std::nextafter(1.0, 2.0), std::nextafter(1.0, 0.0), -1.0, 0.0, k_Nan})
    {
        for (int axis = 0; axis < 3; ++axis)
        {
            Vector const s = Vector(1, 1, 1).Set(axis, factor);
            C3DTransfo transfo;
            transfo.SetScaling(s.X, s.Y, s.Z);
            EXPECT_EQ(Inside::Flags(transfo), 6U) << factor;
        }
    }
}

// --- The translation -------------------------------------------------------------------------------------------------

TEST(TransformationSet, SetTranslation_writes_what_is_fresh_and_makes_nothing_stale)
{
    for (unsigned const before : k_Before)
    {
        for (unsigned const others : {0U, 44U})
        {
            for (Vector const & t : {k_T, Vector(0, 0, 0), Vector(-0.0, 0, -0.0), Vector(0, 5e-324, 0),
                                     Vector(k_Nan, 0, 0), Vector(0, 0, k_Nan)})
            {
                for (int form = 0; form < 2; ++form)
                {
                    C3DTransfo transfo = MakeState(before | others, Sheared());
                    Inside::Matrix(transfo).Set(3, 3, 7);
                    Inside::Matrix(transfo).SetMaskInfo(0xF3);
                    Snapshot expected(transfo);
                    form == 0 ? transfo.SetTranslation(t) : transfo.SetTranslation(t.X, t.Y, t.Z);
                    bool const zero = t.X == 0 && t.Y == 0 && t.Z == 0;
                    expected.flags = (zero ? before : before & ~k_Identity) | others;
                    if (expected.HasComponents())
                    {
                        expected.translation = t;
                    }
                    if (expected.HasMatrix())
                    {
                        expected.matrix.SetTranslation(t).Set(3, 3, 1);
                    }
                    EXPECT_TRUE(Untouched(expected, transfo)) << before;
                }
            }
        }
    }
}

TEST(TransformationSet, SetTranslation_of_two_clean_forms_leaves_both_clean_and_equal)
{
    C3DTransfo transfo = MakeState(0, Sheared());
    transfo.SetTranslation(k_T);
    EXPECT_EQ(Inside::Flags(transfo), 0U);
    Values expected = Sheared();
    expected.translation = k_T;
    EXPECT_TRUE(FreshFormsAre(transfo, MatrixOf(expected)));
}

// --- What the preparation keeps --------------------------------------------------------------------------------------

TEST(TransformationSet, Components_without_an_orientation_keep_the_one_that_the_matrix_implies)
{
    C3DTransfo transfo;
    transfo.Set(MatrixOf(Sheared()));
    C3DTransfo read(transfo);
    Rotation orientation;
    read.GetScalingOrientation(orientation);
    EXPECT_GT(Distance(orientation, Rotation()), 0.1);

    transfo.Set(k_S, k_R, k_T);
    ASSERT_NE(Inside::ScalingOrientation(transfo), nullptr);
    EXPECT_LE(Distance(*Inside::ScalingOrientation(transfo), orientation), 1e-14);
    EXPECT_TRUE(FreshFormsAre(transfo, MatrixOf(Values{k_S, orientation, k_R, k_T})));
}

TEST(TransformationSet, A_rotation_between_null_vectors_fails_with_the_identity_and_a_matrix_that_is_not_stale)
{
    for (Vector const & from : {Vector(0, 0, 0), Vector(1e-13, 0, 0)})
    {
        for (unsigned const before : {0U, 1U})
        {
            C3DTransfo transfo = MakeState(before);
            int degenerate = 9;
            EXPECT_EQ(transfo.SetRotation(from, Vector(1, 0, 0), degenerate), 0);
            EXPECT_EQ(degenerate, 0);
            EXPECT_EQ(Inside::Flags(transfo), 0U);
            EXPECT_EQ(Inside::Rotation(transfo).QuickIsIdentity(), 1);
            EXPECT_TRUE(Near(*transfo.GetMatrix(), MatrixOf(Plain()), 0));
        }
    }
}

// --- The flags -------------------------------------------------------------------------------------------------------

TEST(TransformationSet, A_change_of_QN_scaling_leaves_the_truth_in_the_components)
{
    for (unsigned const before : k_Before)
    {
        for (unsigned const others : {0U, k_PreserveOrder | k_Unused})
        {
            for (unsigned const present : {0U, k_QNScaling})
            {
                for (int const on : {0, 1, 2, -1, 4})
                {
                    SCOPED_TRACE(testing::Message() << (before | others | present) << " set to " << on);
                    C3DTransfo transfo = MakeState(before | others | present, Sheared());
                    Snapshot const was(transfo);
                    Values const values = ReadBefore(transfo);
                    transfo.SetQNScalingFlag(on);
                    EXPECT_EQ(transfo.GetQNScalingFlag(), on != 0 ? 1 : 0);
                    if (on == (present != 0 ? 1 : 0))
                    {
                        EXPECT_TRUE(Untouched(was, transfo));
                        continue;
                    }
                    // Another number than 1 is a change even where the flag is set.
                    unsigned const after = (before & ~k_ComponentsDirty) | k_MatrixDirty;
                    EXPECT_EQ(Inside::Flags(transfo), after | others | (on != 0 ? k_QNScaling : 0));
                    ExpectComponents(transfo, values);
                    EXPECT_EQ(transfo.GetXYZRotOrder(), E3DROTORDER_ZXY);
                }
            }
        }
    }
}

TEST(TransformationSet, SetIdentity_of_what_is_flagged_does_nothing)
{
    for (unsigned const fresh : k_Freshness)
    {
        for (unsigned mask = 0; mask < 256; ++mask)
        {
            C3DTransfo transfo = MakeState(fresh, Sheared());
            Inside::SetFlags(transfo, fresh | k_Identity | 44U);
            Snapshot const before(transfo);
            transfo.SetIdentity(static_cast<unsigned char>(mask));
            EXPECT_TRUE(Untouched(before, transfo));
            transfo.SetIdentity();
            EXPECT_TRUE(Untouched(before, transfo));
        }
    }
}

TEST(TransformationSet, SetIdentity_resets_the_components_of_every_mask)
{
    for (unsigned const before : {2U, 1U, 0U})
    {
        for (unsigned mask = 0; mask < 256; ++mask)
        {
            C3DTransfo transfo = MakeState(before, Sheared());
            Values expected = ReadBefore(transfo);
            transfo.SetIdentity(static_cast<unsigned char>(mask));
            if ((mask & 1U) != 0)
            {
                expected.scaling.Set(1, 1, 1);
            }
            if ((mask & 2U) != 0)
            {
                expected.orientation.reset();
            }
            if ((mask & 4U) != 0)
            {
                expected.rotation.SetIdentity();
            }
            if ((mask & 8U) != 0)
            {
                expected.translation.Set(0, 0, 0);
            }
            EXPECT_EQ(Inside::Flags(transfo), mask == 63 ? 18U : 2U) << mask;
            ExpectComponents(transfo, expected);
        }
    }
}

// --- Without memory for a scaling orientation -----------------------------------------------------------------------

TEST(TransformationSet, Without_memory_the_setters_of_everything_go_on_as_if_there_were_no_orientation)
{
    C3DTransfo rows[3] = {MakeState(0), MakeState(0), MakeState(0)};
    {
        AllocationFaults const refuse = AllocationFaults::RefuseAbove(sizeof(Rotation) - 1);
        rows[0].Set(k_S, k_So, k_R, k_T);
        rows[1].SetScaling(k_S, k_So);
        rows[2].Set(k_S, k_R, k_T);
    }
    ExpectComponents(rows[0], {k_S, std::nullopt, k_R, k_T});
    ExpectComponents(rows[1], {k_S, std::nullopt, Plain().rotation, Plain().translation});
    ExpectComponents(rows[2], {k_S, std::nullopt, k_R, k_T});
    for (C3DTransfo & transfo : rows)
    {
        EXPECT_EQ(Inside::Flags(transfo), k_MatrixDirty);
    }
}

TEST(TransformationSet, Without_memory_the_setters_of_the_orientation_return_with_the_matrix_not_marked_stale)
{
    for (unsigned const before : {0U, 1U, 2U, 16U, 18U})
    {
        C3DTransfo rows[3] = {MakeState(before), MakeState(before), MakeState(before)};
        Values const expected = ReadBefore(rows[0]);
        {
            AllocationFaults const refuse = AllocationFaults::RefuseAbove(sizeof(Rotation) - 1);
            rows[0].SetScalingOrientation(k_So);
            rows[1].SetScalingOrientation(k_Angles);
            rows[2].SetScalingOrientation(0.4, -0.9, 1.3);
        }
        for (C3DTransfo & transfo : rows)
        {
            EXPECT_EQ(Inside::Flags(transfo), before & ~k_ComponentsDirty);
            ExpectComponents(transfo, expected);
        }
    }
}
