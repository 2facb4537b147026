/// The text of a rotation, to the character.

#include "rotation/rotation_states.h"

#include <iomanip>
#include <sstream>
#include <string>

using namespace rotation_test;

namespace
{

using Dump = void (C3DRotation::*)(wchar_t const *, std::ostream &);

std::string TextOf(C3DRotation rotation, Dump dump, wchar_t const * name = nullptr)
{
    std::ostringstream stream;
    (rotation.*dump)(name, stream);
    return stream.str();
}

} // namespace

TEST(RotationDump, Each_form_has_a_line_that_names_it_and_its_text)
{
    C3DRotation const quarterTurn(E3D_AXIS_Z, k_HalfPi);
    EXPECT_EQ(TextOf(quarterTurn, &C3DRotation::DumpQuat, L"elbow"),
              "elbow\n(Quaternion representation)\n( W:0.707107  X:0  Y:0  Z:0.707107 )\n");
    EXPECT_EQ(TextOf(C3DRotation(Matrix(1, 2, 3, 4, 5, 6, 7, 8, 9)), &C3DRotation::DumpMatrix, L"elbow"),
              "elbow\n(Rotation Matrix representation)\n( 1 2 3 )\n( 4 5 6 )\n( 7 8 9 )\n");
    EXPECT_EQ(TextOf(quarterTurn, &C3DRotation::DumpAxisAngle, L"elbow"),
              "elbow\n(Axis-Angle representation)\n( 0 0 1 ), 90 degrees\n");
    EXPECT_EQ(TextOf(C3DRotation(k_Pi, -k_HalfPi, 4 * k_Pi, E3DROTORDER_ZYX), &C3DRotation::DumpXYZAngles, L"elbow"),
              "elbow\n(XYZ Euler Angles representation)\n180 deg,-90 deg,720 deg\n");
}

TEST(RotationDump, Without_a_name_there_is_no_line_for_it)
{
    C3DRotation const identity;
    EXPECT_EQ(TextOf(identity, &C3DRotation::DumpQuat), "(Quaternion representation)\n( W:1  X:0  Y:0  Z:0 )\n");
    EXPECT_EQ(TextOf(identity, &C3DRotation::DumpMatrix),
              "(Rotation Matrix representation)\n( 1 0 0 )\n( 0 1 0 )\n( 0 0 1 )\n");
    EXPECT_EQ(TextOf(identity, &C3DRotation::DumpAxisAngle), "(Axis-Angle representation)\n( 0 0 0 ), 0 degrees\n");
    EXPECT_EQ(TextOf(identity, &C3DRotation::DumpXYZAngles), "(XYZ Euler Angles representation)\n0 deg,0 deg,0 deg\n");
    EXPECT_EQ(TextOf(identity, &C3DRotation::DumpQuat, L"").substr(0, 2), "\n(") << "an empty name has a line";
    EXPECT_EQ(TextOf(identity, &C3DRotation::DumpQuat, L"\u00E4\u4E2D").substr(0, 6), "\u00E4\u4E2D\n");
}

TEST(RotationDump, The_angle_is_the_callers)
{
    // The sine of half of it is -1, by which the zeros of the quaternion are divided too.
    EXPECT_EQ(TextOf(C3DRotation(E3D_AXIS_X, 3 * k_Pi), &C3DRotation::DumpAxisAngle),
              "(Axis-Angle representation)\n( 1 -0 -0 ), 540 degrees\n");
    EXPECT_EQ(TextOf(C3DRotation(Vector(0, -2, 0), -k_Pi), &C3DRotation::DumpAxisAngle),
              "(Axis-Angle representation)\n( 0 -1 0 ), -180 degrees\n");
}

TEST(RotationDump, Numbers_appear_in_the_format_of_the_stream)
{
    C3DRotation rotation(0.5, -0.25, 1, E3DROTORDER_XYZ);
    std::ostringstream stream;
    stream << std::fixed << std::setprecision(12);
    rotation.DumpXYZAngles(nullptr, stream);
    EXPECT_EQ(stream.str(),
              "(XYZ Euler Angles representation)\n28.647889756541 deg,-14.323944878271 deg,57.295779513082 deg\n");
    EXPECT_EQ(stream.precision(), 12);
}

TEST(RotationDump, A_dump_brings_its_own_form_up_to_date)
{
    for (unsigned const state : k_States)
    {
        for (unsigned const flags : {state, state | k_Marked})
        {
            auto const flagsAfter = [flags](Dump dump)
            {
                C3DRotation rotation = MakeState(flags);
                std::ostringstream stream;
                (rotation.*dump)(nullptr, stream);
                EXPECT_EQ(stream.str().find("nan"), std::string::npos);
                return Inside(rotation).Flags();
            };
            EXPECT_EQ(flagsAfter(&C3DRotation::DumpQuat), flags & ~k_QuatDirty);
            EXPECT_EQ(flagsAfter(&C3DRotation::DumpAxisAngle), flags & ~k_QuatDirty);
            EXPECT_EQ(flagsAfter(&C3DRotation::DumpMatrix), flags & ~k_MatDirty);
            C3DRotation read = MakeState(flags);
            Vector angles;
            read.GetXYZAngles(angles);
            EXPECT_EQ(flagsAfter(&C3DRotation::DumpXYZAngles), Inside(read).Flags());
        }
    }
}
