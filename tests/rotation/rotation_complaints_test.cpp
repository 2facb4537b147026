/// What users of other libraries complain of, through the rotation object: frames arrive as matrices, and the angles
/// that are shown are those nearest to the last ones.

#include "rotation/rotation_states.h"

using namespace rotation_test;

namespace
{

constexpr double k_Degree = k_Pi / 180;

/// The angles an editor shows for a frame that arrives as a matrix, with the last angles as the target.
class Display
{
public:
    Display(Vector const & angles, tagE3DROTORDER order) : m_Rotation(angles, order) {}

    Vector Show(Matrix const & frame)
    {
        C3DRotation arrived(frame);
        C3DRotation identity;
        C3DRotation last = m_Rotation;
        m_Rotation.MulUsingEulerAnglesTarget(arrived, identity, last);
        Vector angles;
        m_Rotation.GetXYZAngles(angles);
        EXPECT_LT(Distance(JudgeOf(angles, m_Rotation.GetXYZRotOrder()), JudgeOf(frame)), 1e-7);
        return angles;
    }

private:
    C3DRotation m_Rotation;
};

} // namespace

TEST(RotationComplaints, A_sweep_through_the_pole_comes_back_as_it_was)
{
    Display display(Vector(0, 80 * k_Degree, 0), E3DROTORDER_XYZ);
    for (double const degrees : {80.0, 90.0, 100.0})
    {
        Vector const angles(0, degrees * k_Degree, 0);
        EXPECT_LT(MaxDifference(display.Show(MatrixOf(angles, E3DROTORDER_XYZ)), angles), 1e-12) << degrees;
    }
}

TEST(RotationComplaints, A_fine_sweep_over_both_poles_and_many_turns_comes_back_in_every_order)
{
    constexpr int middle[6] = {1, 2, 0, 2, 0, 1};
    for (tagE3DROTORDER const order : k_Orders)
    {
        Display display(Vector(0, 0, 0), order);
        for (int degrees = 0; degrees <= 1080; degrees += 5)
        {
            Vector const angles(middle[order], degrees * k_Degree);
            EXPECT_LT(MaxDifference(display.Show(MatrixOf(angles, order)), angles), 1e-11) << order << ' ' << degrees;
        }
    }
}

TEST(RotationComplaints, Minus_90_degrees_in_ZYX_keeps_its_sign_and_its_matrix)
{
    Vector const angles(0, -90 * k_Degree, 45 * k_Degree);
    C3DRotation set(angles, E3DROTORDER_ZYX);
    C3DRotation rotation = MakeState(k_QuatAlone, Vector(1, 1, 1), E3DROTORDER_ZYX);
    rotation.Set(*set.GetMatrix());
    Vector read;
    rotation.GetXYZAngles(read);
    EXPECT_NEAR(read.Y, -90 * k_Degree, 1e-12);
    EXPECT_LT(MaxDifference(MatrixOf(read, E3DROTORDER_ZYX), *set.GetMatrix()), 1e-12);

    Display display(angles, E3DROTORDER_ZYX);
    EXPECT_LT(MaxDifference(display.Show(*set.GetMatrix()), angles), 1e-12)
        << "and all of it with itself as the target";
}

TEST(RotationComplaints, Two_whole_turns_over_forty_frames_come_back_as_720_degrees)
{
    for (tagE3DROTORDER const order : k_Orders)
    {
        for (int axis = 0; axis < 3; ++axis)
        {
            for (double const sign : {1.0, -1.0})
            {
                Display display(Vector(0, 0, 0), order);
                Vector shown(0, 0, 0);
                for (int frame = 0; frame <= 40; ++frame)
                {
                    Vector const angles(axis, sign * frame * 18 * k_Degree);
                    shown = display.Show(MatrixOf(angles, order));
                    EXPECT_LT(MaxDifference(shown, angles), 1e-11) << order << ' ' << axis << ' ' << frame;
                }
                EXPECT_LT(MaxDifference(shown, Vector(axis, sign * 720 * k_Degree)), 1e-11);
            }
        }
    }
}

TEST(RotationComplaints, Steps_of_90_degrees_in_all_angles_never_jump)
{
    for (tagE3DROTORDER const order : k_Orders)
    {
        Display display(Vector(0, 0, 0), order);
        Vector last(0, 0, 0);
        for (int step = 1; step <= 40; ++step)
        {
            double const angle = step * 90 * k_Degree;
            Vector const shown = display.Show(MatrixOf(Vector(angle, angle, angle), order));
            EXPECT_LT(MaxDifference(shown, last), 90 * k_Degree + 1e-9) << order << ' ' << step;
            last = shown;
        }
    }
}

TEST(RotationComplaints, A_joint_under_a_turning_parent_keeps_its_curve)
{
    // World = local, then parent; the local rotation is asked back from the world with the last frame as the target.
    for (tagE3DROTORDER const order : k_Orders)
    {
        C3DRotation shown(0, 0, 0, order);
        Vector last(0, 0, 0);
        for (int frame = 0; frame <= 200; ++frame)
        {
            double const t = frame / 200.0;
            Vector const angles(t * 3 * k_TwoPi, 1.2 * std::sin(9 * t), -t * 2 * k_TwoPi + 0.3);
            C3DRotation local(angles, order);
            C3DRotation parent(Vector(1, 2, 3), 5 * t);
            C3DRotation world;
            world.Mul(local, parent);
            C3DRotation undo = parent;
            undo.Invert();
            if (frame == 0)
            {
                shown.Set(angles, order);
            }
            C3DRotation target = shown;
            shown.MulUsingEulerAnglesTarget(world, undo, target);
            Vector read;
            shown.GetXYZAngles(read);
            if (frame > 0)
            {
                EXPECT_LT(MaxDifference(read, last), 0.5) << order << ' ' << frame;
            }
            last = read;
            EXPECT_LT(Distance(JudgeOf(read, order), JudgeOf(angles, order)), 1e-9);
        }
    }
}
