#include "cull/classification.h"

#include "clip/reader.h"
#include "cull/rest_pose.h"
#include "cull/tables.h"

#include "examples/made_clip.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <numbers>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace
{

using cull::JointBox;
using cull::JointBoxes;
using Vector = C3DVector3Tpl<double>;

constexpr auto k_Outside = E3DVIEWINTERSECTION_OUTSIDE;
constexpr auto k_Inside = E3DVIEWINTERSECTION_INSIDE;
constexpr auto k_Crossing = E3DVIEWINTERSECTION_CROSSING;

/// A root with two children, one of them an end site, the other with an end site of its own.
MadeClip Branching()
{
    MadeClip made;
    int const root = made.Add("root", MadeClip::k_Root, {1, 2, 3});
    int const arm = made.Add("arm", root, {10, 0, 0});
    made.AddEndSite(arm, {0, 0, -4});
    made.AddEndSite(root, {0, 20, 0});
    return made;
}

TEST(CullRestPose, Adds_up_the_offsets)
{
    clip::Skeleton const skeleton = Branching().Get().skeleton;
    std::vector<Vector> const expected = {{1, 2, 3}, {11, 2, 3}, {11, 2, -1}, {1, 22, 3}};
    EXPECT_EQ(cull::ComputeRestPose(skeleton), expected);
    EXPECT_EQ(cull::ComputeFigureSize(skeleton), 20);
}

TEST(CullRestPose, The_size_is_the_longest_side_whichever_it_is)
{
    for (Vector const & offset : {Vector(7, 1, -2), Vector(-1, -7, 2), Vector(1, 2, 7)})
    {
        MadeClip made;
        made.AddEndSite(made.Add("root", MadeClip::k_Root, {5, 5, 5}), offset);
        EXPECT_EQ(cull::ComputeFigureSize(made.Get().skeleton), 7);
    }
}

TEST(CullBoxes, Hold_a_joint_and_its_children_and_a_margin)
{
    MadeClip made = Branching();
    made.AddFrame({0, 0, 0});
    made.AddFrame({100, -50, 0});
    clip::Clip const & motion = made.Get();
    JointBoxes const boxes = cull::ComputeJointBoxes(motion.skeleton, clip::ComputeWorldPositions(motion), 0.5);
    EXPECT_EQ(boxes.joints, (std::vector<std::size_t>{0, 1})) << "end sites have no box";
    ASSERT_EQ(boxes.FrameCount(), 2U);
    EXPECT_EQ(boxes.At(0, 0), (JointBox{Vector(0.5, 1.5, 2.5), Vector(11.5, 22.5, 3.5)}));
    EXPECT_EQ(boxes.At(0, 1), (JointBox{Vector(10.5, 1.5, -1.5), Vector(11.5, 2.5, 3.5)}));
    EXPECT_EQ(boxes.At(1, 0), (JointBox{Vector(100.5, -48.5, 2.5), Vector(111.5, -27.5, 3.5)}));
    EXPECT_EQ(boxes.At(1, 1), (JointBox{Vector(110.5, -48.5, -1.5), Vector(111.5, -47.5, 3.5)}));
    clip::Bounds const all = cull::ComputeBounds(boxes);
    EXPECT_EQ(all.smallest, Vector(0.5, -48.5, -1.5));
    EXPECT_EQ(all.largest, Vector(111.5, 22.5, 3.5));
}

TEST(CullBoxes, A_joint_without_children_has_a_box_of_the_margin_alone)
{
    MadeClip made;
    made.Add("root", MadeClip::k_Root, {1, 2, 3});
    made.AddFrame({0, 0, 0});
    clip::Clip const & motion = made.Get();
    JointBoxes const boxes = cull::ComputeJointBoxes(motion.skeleton, clip::ComputeWorldPositions(motion), 0);
    EXPECT_EQ(boxes.At(0, 0), (JointBox{Vector(1, 2, 3), Vector(1, 2, 3)}));
}

JointBoxes Boxes(std::vector<JointBox> boxes)
{
    return {{0}, std::move(boxes)};
}

/// A camera at the origin that looks along -Z, 20 wide and high at 10 and 80 at 40, or 20 throughout.
cull::Camera Ahead(bool isOrthographic)
{
    cull::CameraRequest request;
    request.eye = Vector(0, 0, 0);
    request.look = Vector(0, 0, -1);
    request.aspect = 1;
    request.nearDistance = 10;
    request.farDistance = 40;
    if (isOrthographic)
    {
        request.orthographicWidth = 20;
    }
    else
    {
        request.fieldOfView = std::numbers::pi / 2;
    }
    return cull::PlaceCamera(request, {});
}

TEST(CullClassification, Tells_boxes_inside_outside_and_across_in_both_strategies)
{
    JointBoxes const boxes = Boxes({{Vector(-1, -1, -21), Vector(1, 1, -20)},
                                    {Vector(9, -1, -21), Vector(11, 1, -20)},
                                    {Vector(30, -1, -21), Vector(31, 1, -20)},
                                    {Vector(-1, -1, -5), Vector(1, 1, -4)},
                                    {Vector(-1, -1, -11), Vector(1, 1, -9)},
                                    {Vector(-1, -1, -50), Vector(1, 1, -45)},
                                    {Vector(-1, -1, 20), Vector(1, 1, 30)}});
    std::vector<tagE3DVIEWINTERSECTION> const perspective = {k_Inside,   k_Inside,  k_Outside, k_Outside,
                                                             k_Crossing, k_Outside, k_Outside};
    std::vector<tagE3DVIEWINTERSECTION> const orthographic = {k_Inside,   k_Crossing, k_Outside, k_Outside,
                                                              k_Crossing, k_Outside,  k_Outside};
    EXPECT_EQ(cull::Classify(boxes, Ahead(false)).world, perspective);
    EXPECT_EQ(cull::Classify(boxes, Ahead(false)).view, perspective);
    EXPECT_EQ(cull::Classify(boxes, Ahead(true)).world, orthographic);
    EXPECT_EQ(cull::Classify(boxes, Ahead(true)).view, orthographic);
}

/// The volume stands on edge, so that the wide box beside it lies behind no single side of it.
TEST(CullClassification, View_space_may_say_crossing_where_world_space_says_outside)
{
    cull::CameraRequest request;
    request.eye = Vector(0, 0, 0);
    request.look = Vector(1, 0, -1);
    request.aspect = 1;
    request.orthographicWidth = 2;
    request.nearDistance = 10;
    request.farDistance = 12;
    JointBoxes const boxes = Boxes({{Vector(9.5, -5, -30), Vector(30, 5, 20)}});
    cull::Classification const answers = cull::Classify(boxes, cull::PlaceCamera(request, {}));
    EXPECT_EQ(answers.world, std::vector<tagE3DVIEWINTERSECTION>{k_Outside});
    EXPECT_EQ(answers.view, std::vector<tagE3DVIEWINTERSECTION>{k_Crossing});
    EXPECT_NO_THROW(cull::CheckAgreement(answers, boxes, Branching().Get().skeleton));
}

/// The camera-space coordinates of a point, and how deep it lies within the six sides: below 0 behind one.
std::array<double, 6> Depths(cull::Camera const & camera, Vector const & point)
{
    Vector way;
    way.Sub(point, camera.eye);
    std::array<double, 3> seen{};
    for (int row = 0; row < 3; ++row)
    {
        seen[static_cast<std::size_t>(row)] =
            way.X * camera.matrix.Get(row, 0) + way.Y * camera.matrix.Get(row, 1) + way.Z * camera.matrix.Get(row, 2);
    }
    double const widening = camera.isOrthographic ? 1 : -seen[2] / camera.nearDistance;
    double const x = widening * camera.width / 2;
    double const y = widening * camera.height / 2;
    return {seen[0] + x,
            x - seen[0],
            seen[1] + y,
            y - seen[1],
            -seen[2] - camera.nearDistance,
            camera.farDistance + seen[2]};
}

Vector PointIn(JointBox const & box, double x, double y, double z)
{
    return {std::lerp(box[0].X, box[1].X, x), std::lerp(box[0].Y, box[1].Y, y), std::lerp(box[0].Z, box[1].Z, z)};
}

/// What points of the box show.
struct Samples
{
    bool anyInside = false;
    bool anyOutside = false;
    bool isBehindOneSide = false; ///< all corners behind one and the same
    bool isBehindEye = false;     ///< a corner
    bool isNarrow = false;        ///< a corner so near to a side that rounding may decide
};

Samples Sample(cull::Camera const & camera, JointBox const & box)
{
    Samples samples;
    std::array<int, 6> cornersBehind{};
    constexpr int k_Steps = 6;
    for (int i = 0; i < (k_Steps + 1) * (k_Steps + 1) * (k_Steps + 1); ++i)
    {
        int const x = i % (k_Steps + 1);
        int const y = i / (k_Steps + 1) % (k_Steps + 1);
        int const z = i / (k_Steps + 1) / (k_Steps + 1);
        std::array<double, 6> const depths =
            Depths(camera, PointIn(box, x / double(k_Steps), y / double(k_Steps), z / double(k_Steps)));
        bool const isInside = std::all_of(depths.begin(), depths.end(), [](double depth) { return depth >= 0; });
        (isInside ? samples.anyInside : samples.anyOutside) = true;
        if (x % k_Steps == 0 && y % k_Steps == 0 && z % k_Steps == 0)
        {
            samples.isBehindEye = samples.isBehindEye || depths[4] < -camera.nearDistance;
            for (std::size_t side = 0; side < depths.size(); ++side)
            {
                cornersBehind[side] += depths[side] < 0 ? 1 : 0;
                samples.isNarrow = samples.isNarrow || std::abs(depths[side]) < 1e-9;
            }
        }
    }
    samples.isBehindOneSide =
        std::any_of(cornersBehind.begin(), cornersBehind.end(), [](int corners) { return corners == 8; });
    return samples;
}

TEST(CullClassification, Agrees_with_points_of_the_boxes)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> place(-30, 30);
    std::uniform_real_distribution<double> side(0.5, 25);
    std::array<std::size_t, 3> seen{};
    for (int round = 0; round < 24; ++round)
    {
        cull::CameraRequest request;
        request.eye = Vector(place(random), place(random), place(random));
        request.look = Vector(place(random) / 3, place(random) / 3, place(random) / 3);
        request.aspect = 0.5 + side(random) / 10;
        request.nearDistance = 5;
        request.farDistance = 60;
        (round % 2 == 0 ? request.orthographicWidth : request.fieldOfView) = round % 2 == 0 ? 10 + side(random) : 0.9;
        cull::Camera const camera = cull::PlaceCamera(request, {});
        std::vector<JointBox> list(150);
        for (JointBox & box : list)
        {
            box[0] = {place(random), place(random), place(random)};
            box[1] = {box[0].X + side(random), box[0].Y + side(random), box[0].Z + side(random)};
        }
        cull::Classification const answers = cull::Classify(Boxes(list), camera);
        for (std::size_t i = 0; i < list.size(); ++i)
        {
            Samples const samples = Sample(camera, list[i]);
            if (samples.isNarrow)
            {
                continue;
            }
            for (tagE3DVIEWINTERSECTION const answer : {answers.world[i], answers.view[i]})
            {
                EXPECT_EQ(answer == k_Inside, !samples.anyOutside) << round << ' ' << i;
                EXPECT_FALSE(answer == k_Outside && samples.anyInside) << round << ' ' << i;
            }
            EXPECT_FALSE(answers.world[i] != k_Outside && samples.isBehindOneSide) << round << ' ' << i;
            EXPECT_FALSE(answers.view[i] == k_Outside && !samples.isBehindOneSide) << round << ' ' << i;
            // A corner behind the eye lies behind opposite sides, of which view space notes one.
            EXPECT_TRUE(answers.view[i] == k_Outside || !samples.isBehindOneSide || samples.isBehindEye)
                << round << ' ' << i;
            ++seen[static_cast<std::size_t>(answers.world[i])];
        }
        MadeClip made = Branching();
        EXPECT_NO_THROW(cull::CheckAgreement(answers, Boxes(list), made.Get().skeleton));
    }
    EXPECT_GT(*std::min_element(seen.begin(), seen.end()), 20U) << "each answer was put to the test";
}

TEST(CullClassification, Counts_pairs_of_answers)
{
    cull::Classification answers;
    answers.world = {k_Outside, k_Outside, k_Inside, k_Crossing, k_Outside, k_Crossing};
    answers.view = {k_Outside, k_Crossing, k_Inside, k_Crossing, k_Crossing, k_Inside};
    cull::AnswerCounts const counts = cull::CountAnswers(answers);
    EXPECT_EQ(counts, (cull::AnswerCounts{{{1, 0, 2}, {0, 1, 0}, {0, 1, 1}}}));
}

TEST(CullClassification, Counts_boxes_beyond_the_bounds_on_each_side)
{
    // The bounds are those of the far end in X and Y, -40 to 40, and -40 to -10 in Z.
    JointBoxes const boxes = Boxes({{Vector(40.1, 0, -20), Vector(41, 1, -15)},
                                    {Vector(-41, 0, -20), Vector(-40.1, 1, -15)},
                                    {Vector(0, 40.1, -20), Vector(1, 41, -15)},
                                    {Vector(0, -41, -20), Vector(1, -40.1, -15)},
                                    {Vector(0, 0, -9.9), Vector(1, 1, -5)},
                                    {Vector(0, 0, -50), Vector(1, 1, -40.1)},
                                    {Vector(39.9, 39.9, -10.1), Vector(41, 41, -5)},
                                    {Vector(-41, -41, -50), Vector(-39.9, -39.9, -39.9)}});
    EXPECT_EQ(cull::CountBeyondBounds(boxes, Ahead(false)), 6U);
}

TEST(CullClassification, A_contradiction_is_told_with_its_frame_and_joint)
{
    MadeClip made = Branching();
    JointBoxes boxes;
    boxes.joints = {0, 1};
    boxes.boxes.resize(6);
    cull::Classification answers;
    answers.world = {k_Outside, k_Crossing, k_Crossing, k_Inside, k_Outside, k_Inside};
    answers.view = {k_Crossing, k_Outside, k_Inside, k_Crossing, k_Outside, k_Inside};
    EXPECT_NO_THROW(cull::CheckAgreement(answers, boxes, made.Get().skeleton));
    auto const contradiction = [&]() -> std::string
    {
        try
        {
            cull::CheckAgreement(answers, boxes, made.Get().skeleton);
            return {};
        }
        catch (cull::ContradictionError const & error)
        {
            return error.what();
        }
    };
    answers.view[5] = k_Outside;
    EXPECT_EQ(contradiction(), "the strategies contradict each other in frame 2, joint arm: inside in world space, "
                               "outside in view space");
    answers.view[4] = k_Inside;
    EXPECT_EQ(contradiction(), "the strategies contradict each other in frame 2, joint root: outside in world space, "
                               "inside in view space");
}

TEST(CullTables, The_view_table_has_a_line_for_every_frame_and_joint)
{
    MadeClip made;
    int const root = made.Add("a,\"b\"", MadeClip::k_Root, {0, 0, 0});
    made.AddEndSite(made.Add("c", root, {0, 1, 0}), {0, 1, 0});
    JointBoxes boxes;
    boxes.joints = {0, 1};
    boxes.boxes.resize(4);
    cull::Classification answers;
    answers.world = {k_Outside, k_Crossing, k_Inside, k_Outside};
    answers.view = {k_Crossing, k_Crossing, k_Inside, k_Outside};
    std::ostringstream table;
    cull::WriteViewTable(table, made.Get(), boxes, answers);
    EXPECT_EQ(table.str(), "frame,time,joint,world,view\n"
                           "0,0,\"a,\"\"b\"\"\",outside,crossing\n"
                           "0,0,c,crossing,crossing\n"
                           "1,0.5,\"a,\"\"b\"\"\",inside,inside\n"
                           "1,0.5,c,outside,outside\n");
}

} // namespace
