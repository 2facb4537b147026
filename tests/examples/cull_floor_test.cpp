#include "cull/floor.h"

#include "cull/tables.h"

#include "examples/made_clip.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <vector>

namespace
{

using cull::Contact;
using cull::Floor;
using cull::Sole;
using cull::SoleMotion;
using Vector = C3DVector3Tpl<double>;

constexpr double k_Size = 100; ///< of the figure

/// A level sole, 4 wide and 10 long, with its heel at a place.
Sole Level(Vector const & heel)
{
    return {Vector(heel.X, heel.Y, heel.Z + 10), Vector(heel.X + 2, heel.Y, heel.Z),
            Vector(heel.X - 2, heel.Y, heel.Z)};
}

/// The sole with its toe raised.
Sole Raised(Sole sole, double rise)
{
    sole[0].Y += rise;
    return sole;
}

bool IsUnder(Sole const & sole, Vector const & point)
{
    double const along = (point.Z - sole[1].Z) / 10;
    return along >= -1e-9 && along <= 1 + 1e-9 && std::abs(point.X - sole[0].X) <= 2 * (1 - along) + 1e-9;
}

TEST(CullFloor, A_falling_sole_meets_the_floor_when_it_gets_there)
{
    SoleMotion const sole = {Level({3, 20, 5}), Level({3, 10, 5}), Level({3, -5, 5}), Level({3, 30, 5})};
    std::optional<Contact> const contact = cull::FindFirstContact(sole, {0, 1});
    ASSERT_TRUE(contact);
    EXPECT_EQ(contact->frame, 1U);
    EXPECT_NEAR(contact->share, 2.0 / 3, 1e-12);
    EXPECT_EQ(contact->place.Y, 0);
    EXPECT_TRUE(IsUnder(sole[0], contact->place)) << contact->place.X << ' ' << contact->place.Z;
    EXPECT_EQ(contact->place.X, std::round(contact->place.X)) << "a point of the grid";
    EXPECT_EQ(contact->place.Z, std::round(contact->place.Z));
}

TEST(CullFloor, The_floor_lies_at_its_height)
{
    SoleMotion const sole = {Level({3, 20, 5}), Level({3, 10, 5})};
    std::optional<Contact> const contact = cull::FindFirstContact(sole, {17.5, 1});
    ASSERT_TRUE(contact);
    EXPECT_NEAR(contact->share, 0.25, 1e-12);
    EXPECT_EQ(contact->place.Y, 17.5);
    EXPECT_FALSE(cull::FindFirstContact(sole, {20.001, 1}));
    EXPECT_FALSE(cull::FindFirstContact(sole, {9.999, 1})) << "it would get there after the clip";
}

TEST(CullFloor, A_raised_toe_lets_the_heel_land_first)
{
    // The height over the ground is that of the heel plus 0.5 a unit of length.
    SoleMotion const sole = {Raised(Level({0, 10, 0.5}), 5), Raised(Level({0, -10, 0.5}), 5)};
    std::optional<Contact> const contact = cull::FindFirstContact(sole, {0, 1});
    ASSERT_TRUE(contact);
    EXPECT_EQ(contact->place.Z, 1) << "the row of points nearest to the heel";
    EXPECT_NEAR(contact->share, (10 + 0.25) / 20, 1e-12);
}

TEST(CullFloor, A_lowered_toe_lands_first)
{
    SoleMotion const sole = {Raised(Level({0, 10, 0.5}), -5), Raised(Level({0, -10, 0.5}), -5)};
    std::optional<Contact> const contact = cull::FindFirstContact(sole, {0, 1});
    ASSERT_TRUE(contact);
    EXPECT_EQ(contact->place, Vector(0, 0, 10));
    EXPECT_NEAR(contact->share, (10 - 4.75) / 20, 1e-12);
}

/// The sole lowers its toe while it moves forward: its height over a point is 2 - 24 t + 20 t^2.
TEST(CullFloor, A_sole_that_turns_on_its_way_meets_a_point_in_between)
{
    SoleMotion const sole = {Level({0, 2, 0}), Raised(Level({0, -2, 10}), -20)};
    std::optional<Contact> const contact = cull::FindFirstContact(sole, {0, 10});
    ASSERT_TRUE(contact);
    EXPECT_EQ(contact->place, Vector(0, 0, 10));
    EXPECT_NEAR(contact->share, (24 - std::sqrt(416)) / 40, 1e-12);
}

TEST(CullFloor, Its_width_lets_a_sole_meet_points_beside_its_line)
{
    // The line from heel to toe runs between two columns of points.
    SoleMotion const sole = {Level({0.5, 5, 0.5}), Level({0.5, -5, 0.5})};
    std::optional<Contact> const contact = cull::FindFirstContact(sole, {0, 1});
    ASSERT_TRUE(contact);
    EXPECT_NE(contact->place.X, 0.5);
    EXPECT_TRUE(IsUnder(sole[0], contact->place));
}

TEST(CullFloor, No_point_under_the_sole_is_no_contact)
{
    SoleMotion const sole = {Level({5, 5, 5}), Level({5, -5, 5})};
    EXPECT_TRUE(cull::FindFirstContact(sole, {0, 1}));
    EXPECT_FALSE(cull::FindFirstContact(sole, {0, 50})) << "the nearest points lie at 0 and 50";
}

TEST(CullFloor, A_point_within_the_bounds_of_the_sole_may_lie_beside_it)
{
    EXPECT_TRUE(cull::FindFirstContact({Level({0.1, 5, -9}), Level({0.1, -5, -9})}, {0, 50}));
    EXPECT_FALSE(cull::FindFirstContact({Level({1.8, 5, -9}), Level({1.8, -5, -9})}, {0, 50}));
}

/// The one point lies 8 from the heel of a slanted sole, whose toe is still above the floor where its heel is beneath.
TEST(CullFloor, A_meeting_before_or_after_the_step_is_none)
{
    Sole const high = Raised(Level({0, 10, -8}), 5);
    Sole const low = Raised(Level({0, 1, -8}), 5);
    EXPECT_FALSE(cull::FindFirstContact({high, low}, {2, 100})) << "it would be at 4/3 of the step";
    EXPECT_FALSE(cull::FindFirstContact({low, high}, {2, 100})) << "it would have been a third of the step before";
    std::optional<Contact> const contact = cull::FindFirstContact({high, low}, {5, 100});
    ASSERT_TRUE(contact) << "the same point, at a height that the sole reaches";
    EXPECT_NEAR(contact->share, 1, 1e-12);
}

TEST(CullFloor, A_sole_from_below_meets_it_on_its_way_up)
{
    std::optional<Contact> const contact =
        cull::FindFirstContact({Level({0, -1, 0}), Level({0, -0.5, 0}), Level({0, 1.5, 0})}, {0, 1});
    ASSERT_TRUE(contact);
    EXPECT_EQ(contact->frame, 1U);
    EXPECT_NEAR(contact->share, 0.25, 1e-12);
}

TEST(CullFloor, A_sole_that_rests_on_the_floor_meets_it_at_once)
{
    std::optional<Contact> const contact = cull::FindFirstContact({Level({0, 0, 0}), Level({0, 0, 0})}, {0, 1});
    ASSERT_TRUE(contact);
    EXPECT_EQ(contact->frame, 0U);
    EXPECT_EQ(contact->share, 0);
}

TEST(CullFloor, One_frame_is_no_motion)
{
    EXPECT_FALSE(cull::FindFirstContact({Level({0, 0, 0})}, {0, 1}));
    EXPECT_FALSE(cull::FindFirstContact({}, {0, 1}));
}

TEST(CullFloor, An_automatic_height_is_one_that_all_soles_pass)
{
    SoleMotion const left = {Level({0, 20, 0}), Level({0, 3, 0}), Level({0, 15, 0})};
    SoleMotion const right = {Level({0, 7, 0}), Raised(Level({0, 12, 0}), -6.5), Level({0, 9, 0})};
    EXPECT_DOUBLE_EQ(cull::ChooseFloorHeight({left, right}, k_Size), 6.5);
    EXPECT_DOUBLE_EQ(cull::ChooseFloorHeight({right, left}, k_Size), 6.5);
    EXPECT_DOUBLE_EQ(cull::ChooseFloorHeight({left}, k_Size), 4);
    EXPECT_EQ(cull::ChooseFloorHeight({}, k_Size), 0);
}

TEST(CullFloor, Its_points_are_a_hundredth_of_the_figure_apart_or_wider)
{
    EXPECT_DOUBLE_EQ(cull::LayFloor(5, {{Level({0, 0, 0})}}, k_Size).spacing, 1);
    EXPECT_EQ(cull::LayFloor(5, {{Level({0, 0, 0})}}, k_Size).height, 5);
    EXPECT_DOUBLE_EQ(cull::LayFloor(5, {{Level({0, 0, 0}), Level({508, 0, 0})}}, k_Size).spacing, 2);
    EXPECT_DOUBLE_EQ(cull::LayFloor(5, {{Level({0, 0, 0}), Level({0, 0, 502})}}, k_Size).spacing, 2);
    EXPECT_DOUBLE_EQ(cull::LayFloor(5, {{Level({0, 0, -1e10})}}, k_Size).spacing, 10) << "far from the origin";
    EXPECT_EQ(cull::LayFloor(5, {{Sole{Vector(0, 0, 0), Vector(0, 0, 0), Vector(0, 0, 0)}}}, 0).spacing, 1);
    EXPECT_DOUBLE_EQ(cull::LayFloor(5, {}, k_Size).spacing, 1);
}

TEST(CullFloor, A_wide_leap_ends_soon)
{
    SoleMotion const sole = {Level({-1e12, 1, -1e12}), Level({1e12, -1, 1e12})};
    Floor const floor = cull::LayFloor(0, {sole}, k_Size);
    EXPECT_GE(floor.spacing, 2e12 / 256);
    cull::FindFirstContact(sole, floor);
}

TEST(CullTables, The_floor_table_leaves_out_feet_without_a_contact)
{
    MadeClip made;
    made.Add("a", MadeClip::k_Root, {0, 0, 0});
    made.Add("b,c", 0, {0, 0, 0});
    cull::Foot first{0, 1, {}};
    cull::Foot second{1, 1, {}};
    std::ostringstream table;
    cull::WriteFloorTable(table, made.Get(), {first, second}, {std::nullopt, Contact{3, 0.25, {1, -0.5, 1e-20}}});
    EXPECT_EQ(table.str(), "foot,frame,time,x,y,z\n\"b,c\",3,1.625,1,-0.5,1e-20\n");
}

} // namespace
