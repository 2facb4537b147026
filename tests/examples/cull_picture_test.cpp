#include "cull/view_picture.h"

#include "clip/axis_step.h"
#include "clip/reader.h"
#include "clip/time_axis.h"
#include "cull/silhouette.h"

#include "examples/count_text.h"
#include "examples/made_clip.h"
#include "examples/xml_check.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

namespace
{

using Vector = C3DVector3Tpl<double>;

constexpr char const * k_InsideColor = "#0072b2";
constexpr char const * k_CrossingColor = "#d98200";
constexpr char const * k_OutsideColor = "#989da6";
constexpr char const * k_VolumeColor = "#e9f2e4";
constexpr char const * k_VolumeEdgeColor = "#4c7a34";

/// All that a picture is drawn of.
struct Scene
{
    Scene(clip::Clip const & source, cull::CameraRequest const & request)
        : motion(source), positions(clip::ComputeWorldPositions(motion)),
          boxes(cull::ComputeJointBoxes(motion.skeleton, positions, 1)),
          camera(cull::PlaceCamera(request, cull::ComputeBounds(boxes))), answers(cull::Classify(boxes, camera))
    {
    }

    std::string Draw() const
    {
        std::ostringstream stream;
        cull::DrawView({motion, positions, boxes, camera, answers}, "walk & turn").Write(stream);
        return stream.str();
    }

    clip::Clip motion;
    clip::WorldPositions positions;
    cull::JointBoxes boxes;
    cull::Camera camera;
    cull::Classification answers;
};

cull::CameraRequest From(Vector const & eye, Vector const & look)
{
    cull::CameraRequest request;
    request.eye = eye;
    request.look = look;
    return request;
}

/// A figure of one bone that goes from X = -100 to 100 in 21 frames.
clip::Clip Passing()
{
    MadeClip made;
    made.AddEndSite(made.Add("root", MadeClip::k_Root, {0, 0, 0}), {0, 10, 0});
    for (int frame = 0; frame <= 20; ++frame)
    {
        made.AddFrame({10.0 * frame - 100, 0, 0});
    }
    return made.Get();
}

/// A camera that sees X from -40 to 40 of it.
cull::CameraRequest Middle()
{
    cull::CameraRequest request = From({0, 5, 100}, {0, 5, 0});
    request.orthographicWidth = 80;
    request.aspect = 1;
    request.nearDistance = 20;
    request.farDistance = 150;
    return request;
}

/// The numbers of an attribute of an element, which begins at `place`.
std::vector<double> Numbers(std::string const & text, std::size_t place, std::string const & attribute)
{
    std::size_t const start = text.find(attribute + "=\"", place) + attribute.size() + 2;
    std::string list = text.substr(start, text.find('"', start) - start);
    for (char & c : list)
    {
        c = c == ',' ? ' ' : c;
    }
    std::istringstream stream(list);
    std::vector<double> numbers;
    for (double number = 0; stream >> number;)
    {
        numbers.push_back(number);
    }
    return numbers;
}

/// Where every element begins that starts so and has such a part.
std::vector<std::size_t> FindElements(std::string const & text, std::string const & start, std::string const & part)
{
    std::vector<std::size_t> places;
    for (std::size_t place = 0; (place = text.find(start, place)) != std::string::npos; ++place)
    {
        if (text.substr(place, text.find('\n', place) - place).find(part) != std::string::npos)
        {
            places.push_back(place);
        }
    }
    return places;
}

std::string Fill(char const * color)
{
    return std::string("fill=\"") + color + '"';
}

std::string StrokeOf(char const * color)
{
    return std::string("stroke=\"") + color + '"';
}

TEST(CullPicture, Is_well_formed_and_titled)
{
    std::string const picture = Scene(Passing(), Middle()).Draw();
    EXPECT_EQ(FindXmlFault(picture), "");
    EXPECT_NE(picture.find("<title>walk &amp; turn: what a camera sees, from above and over time</title>"),
              std::string::npos);
    EXPECT_NE(picture.find(">walk &amp; turn: what the camera sees<"), std::string::npos);
    EXPECT_NE(picture.find(">1 joints, 21 frames, 10.50 s<"), std::string::npos);
    EXPECT_NE(picture.find(">orthographic, 80 wide, from 20 to 150<"), std::string::npos);
}

TEST(CullPicture, The_legend_counts_the_answers)
{
    // The boxes are 2 wide: those at -30 to 30 are inside, those at -40 and 40 cross, the other twelve are outside.
    Scene const scene(Passing(), Middle());
    std::string const picture = scene.Draw();
    EXPECT_NE(picture.find(">7 inside<"), std::string::npos);
    EXPECT_NE(picture.find(">2 crossing<"), std::string::npos);
    EXPECT_NE(picture.find(">12 outside<"), std::string::npos);
    EXPECT_NE(picture.find(">as world space has it; 0 of 21 are otherwise in view space<"), std::string::npos);
}

TEST(CullPicture, Answers_that_differ_are_counted)
{
    Scene scene(Passing(), Middle());
    scene.answers.view[3] = E3DVIEWINTERSECTION_CROSSING;
    scene.answers.view[17] = E3DVIEWINTERSECTION_CROSSING;
    EXPECT_NE(scene.Draw().find(">as world space has it; 2 of 21 are otherwise in view space<"), std::string::npos);
}

TEST(CullPicture, The_path_has_the_color_of_each_stretch_without_gaps)
{
    std::string const picture = Scene(Passing(), Middle()).Draw();
    double end = -1;
    std::vector<std::string> colors;
    for (std::size_t const place : FindElements(picture, "<polyline", "stroke-width=\"4.5\""))
    {
        std::vector<double> const points = Numbers(picture, place, "points");
        if (end >= 0)
        {
            EXPECT_EQ(points[0], end);
        }
        end = points[points.size() - 2];
        std::string const element = picture.substr(place, picture.find('\n', place) - place);
        std::size_t const stroke = element.find("stroke=\"") + 8;
        colors.push_back(element.substr(stroke, 7));
    }
    EXPECT_EQ(colors, (std::vector<std::string>{k_OutsideColor, k_CrossingColor, k_InsideColor, k_CrossingColor,
                                                k_OutsideColor}));
}

TEST(CullPicture, The_volume_is_where_the_map_has_it)
{
    std::string const picture = Scene(Passing(), Middle()).Draw();
    std::vector<std::size_t> const fills = FindElements(picture, "<polygon", Fill(k_VolumeColor));
    ASSERT_EQ(fills.size(), 1U);
    std::vector<double> const points = Numbers(picture, fills[0], "points");
    ASSERT_EQ(points.size(), 8U) << "a rectangle from above";
    double const left = std::min({points[0], points[2], points[4], points[6]});
    double const right = std::max({points[0], points[2], points[4], points[6]});
    double const top = std::min({points[1], points[3], points[5], points[7]});
    double const bottom = std::max({points[1], points[3], points[5], points[7]});
    // The rest of the path goes from X = -100 to 100, the volume from -40 to 40 and from Z = 80 to -50.
    std::vector<std::size_t> const halo = FindElements(picture, "<polyline", "stroke-width=\"7.5\"");
    ASSERT_EQ(halo.size(), 1U);
    std::vector<double> const path = Numbers(picture, halo[0], "points");
    double const scale = (path[path.size() - 2] - path[0]) / 200;
    EXPECT_NEAR(right - left, 80 * scale, 0.1);
    EXPECT_NEAR(bottom - top, 130 * scale, 0.1);
    EXPECT_NEAR(left - path[0], 60 * scale, 0.1);
    EXPECT_NEAR(bottom - path[1], 80 * scale, 0.1) << "Z points downwards";
    EXPECT_EQ(FindElements(picture, "<line", StrokeOf(k_VolumeEdgeColor)).size(), 5U) << "four sides, a line of sight";
}

TEST(CullPicture, Nothing_of_the_volume_leaves_the_map)
{
    for (cull::CameraRequest request : {From({0, 5, 30}, {0, 5, 0}), From({0, 500, 0}, {0, 0, 0}),
                                        From({4000, 30, 900}, {0, 0, 0}), From({0, 5, 0}, {1, 5, 0})})
    {
        request.fieldOfView = 2.5;
        request.nearDistance = 1;
        request.farDistance = 1e6;
        std::string const picture = Scene(Passing(), request).Draw();
        EXPECT_EQ(FindXmlFault(picture), "");
        std::vector<double> const page = Numbers(picture, 0, "viewBox");
        for (std::size_t const place : FindElements(picture, "<polygon", Fill(k_VolumeColor)))
        {
            std::vector<double> const points = Numbers(picture, place, "points");
            for (std::size_t i = 0; i < points.size(); i += 2)
            {
                EXPECT_GE(points[i], 90);
                EXPECT_LE(points[i], 1230);
                EXPECT_GE(points[i + 1], 140);
                EXPECT_LE(points[i + 1], page[3] - 200);
            }
        }
        for (std::size_t const place : FindElements(picture, "<line", StrokeOf(k_VolumeEdgeColor)))
        {
            for (char const * const x : {"x1", "x2"})
            {
                EXPECT_GE(Numbers(picture, place, x)[0], 90);
                EXPECT_LE(Numbers(picture, place, x)[0], 1230);
            }
            for (char const * const y : {"y1", "y2"})
            {
                EXPECT_GE(Numbers(picture, place, y)[0], 140);
                EXPECT_LE(Numbers(picture, place, y)[0], page[3] - 200);
            }
        }
    }
}

TEST(CullPicture, The_camera_shows_where_there_is_room_for_it)
{
    EXPECT_EQ(FindElements(Scene(Passing(), Middle()).Draw(), "<circle", Fill(k_VolumeEdgeColor)).size(), 1U);
    EXPECT_EQ(
        FindElements(Scene(Passing(), From({0, 5, 5000}, {0, 5, 0})).Draw(), "<circle", Fill(k_VolumeEdgeColor)).size(),
        0U);
}

/// Boxes of poses are rectangles with a fill that one can see through; three more stand in the legend.
std::size_t CountBoxes(std::string const & picture)
{
    return FindElements(picture, "<rect", "fill-opacity=\"0.22\"").size() - 3;
}

TEST(CullPicture, Poses_leave_each_other_free)
{
    clip::Clip const motion = clip::ReadClip(std::filesystem::path(SHIPPED_CLIP));
    std::string const picture = Scene(motion, From({250, 120, 20}, {10, 80, 140})).Draw();
    EXPECT_EQ(FindXmlFault(picture), "");
    std::size_t const boxes = CountBoxes(picture);
    EXPECT_EQ(boxes % 21, 0U);
    EXPECT_GE(boxes / 21, 4U);
    EXPECT_LE(boxes / 21, 8U);
    // Each of them shows its time.
    EXPECT_EQ(Count(picture, " s</text>"), 1 + boxes / 21);
}

TEST(CullPicture, Times_stand_beside_the_poses_and_each_other)
{
    clip::Clip const motion = clip::ReadClip(std::filesystem::path(SHIPPED_CLIP));
    std::string const picture = Scene(motion, From({250, 120, 20}, {10, 80, 140})).Draw();
    std::vector<cull::PageArea> taken;
    for (std::size_t const place : FindElements(picture, "<rect", "fill-opacity=\"0.22\""))
    {
        double const left = Numbers(picture, place, "x")[0];
        double const top = Numbers(picture, place, "y")[0];
        taken.push_back(
            {left, top, left + Numbers(picture, place, "width")[0], top + Numbers(picture, place, "height")[0]});
    }
    std::vector<std::size_t> const labels = FindElements(picture, "<text", "font-size=\"13\"");
    std::size_t times = 0;
    for (std::size_t const place : labels)
    {
        if (picture.substr(place, picture.find('\n', place) - place).ends_with(" s</text>"))
        {
            double const middle = Numbers(picture, place, "x")[0];
            double const base = Numbers(picture, place, "y")[0];
            cull::PageArea const label{middle - 20, base - 10, middle + 20, base};
            for (cull::PageArea const & other : taken)
            {
                EXPECT_FALSE(label.Overlaps(other));
            }
            taken.push_back(label);
            ++times;
        }
    }
    EXPECT_GE(times, 4U);
}

TEST(CullPicture, No_more_than_eight_poses_are_drawn)
{
    EXPECT_EQ(CountBoxes(Scene(Passing(), Middle()).Draw()), 8U);
}

TEST(CullPicture, A_figure_that_stays_is_drawn_once)
{
    MadeClip made;
    made.AddEndSite(made.Add("root", MadeClip::k_Root, {0, 0, 0}), {0, 10, 0});
    made.AddFrame({0, 0, 0});
    made.AddFrame({0, 0, 0.1});
    std::string const picture = Scene(made.Get(), {}).Draw();
    EXPECT_EQ(FindXmlFault(picture), "");
    EXPECT_EQ(CountBoxes(picture), 1U);
    EXPECT_EQ(Count(picture, ">0.00 s</text>"), 1U);
}

/// The areas of the plot, from the highest to the lowest.
std::vector<std::vector<double>> PlotAreas(std::string const & picture)
{
    std::vector<std::vector<double>> areas;
    for (char const * const color : {k_OutsideColor, k_CrossingColor, k_InsideColor})
    {
        std::vector<std::size_t> const places = FindElements(picture, "<polygon", Fill(color));
        EXPECT_EQ(places.size(), 1U);
        areas.push_back(Numbers(picture, places.at(0), "points"));
    }
    return areas;
}

TEST(CullPicture, The_plot_stacks_what_is_inside_crossing_and_outside)
{
    std::vector<std::vector<double>> const areas = PlotAreas(Scene(Passing(), Middle()).Draw());
    for (std::vector<double> const & area : areas)
    {
        ASSERT_EQ(area.size(), 2U * (2 + 2 * 21));
        EXPECT_EQ(area[0], area[2]);
        EXPECT_EQ(area[area.size() - 2], area[area.size() - 4]);
    }
    double const bottom = areas[0][1];
    for (std::size_t frame = 0; frame < 21; ++frame)
    {
        std::size_t const y = 2 * (1 + 2 * frame) + 1;
        bool const isInside = frame >= 7 && frame <= 13;
        bool const isCrossing = frame == 6 || frame == 14;
        EXPECT_NEAR(bottom - areas[0][y], 110, 0.01);
        EXPECT_NEAR(bottom - areas[1][y], isInside || isCrossing ? 110 : 0, 0.01) << frame;
        EXPECT_NEAR(bottom - areas[2][y], isInside ? 110 : 0, 0.01) << frame;
    }
}

TEST(CullPicture, A_clip_of_one_frame_and_place_is_drawn)
{
    MadeClip made;
    made.Add("root", MadeClip::k_Root, {3, 4, 5});
    made.AddFrame({0, 0, 0});
    Scene scene(made.Get(), {});
    scene.boxes = cull::ComputeJointBoxes(scene.motion.skeleton, scene.positions, 0);
    std::string const picture = scene.Draw();
    EXPECT_EQ(FindXmlFault(picture), "");
    EXPECT_EQ(picture.find("nan"), std::string::npos);
    EXPECT_EQ(picture.find("inf"), std::string::npos);
    EXPECT_EQ(PlotAreas(picture)[0].size(), 2U * 4);
}

TEST(CullPicture, A_long_clip_gives_no_larger_a_picture)
{
    MadeClip made;
    made.Add("root", MadeClip::k_Root, {0, 0, 0});
    for (int frame = 0; frame < 20000; ++frame)
    {
        made.AddFrame({frame % 1000 * 0.1, 0, frame % 777 * 0.1});
    }
    std::string const picture = Scene(made.Get(), Middle()).Draw();
    EXPECT_EQ(FindXmlFault(picture), "");
    EXPECT_LT(picture.size(), 200000U);
}

TEST(CullPicture, A_tiny_figure_far_from_the_origin_is_drawn)
{
    for (double const distance : {1e6, 1e9, 1e12, -1e12})
    {
        MadeClip made;
        made.AddEndSite(made.Add("root", MadeClip::k_Root, {distance, 0, -distance}), {1e-6, 0, 0});
        made.AddFrame({0, 0, 0});
        made.AddFrame({1e-6, 0, 1e-6});
        cull::CameraRequest const request = From({distance, 5, 100}, {distance, 0, -distance});
        Scene scene(made.Get(), request);
        scene.boxes = cull::ComputeJointBoxes(scene.motion.skeleton, scene.positions, 0);
        std::string const picture = scene.Draw();
        EXPECT_EQ(FindXmlFault(picture), "");
        EXPECT_LT(picture.size(), 40000U);
        EXPECT_GE(FindElements(picture, "<line", StrokeOf("#e4e1db")).size(), 5U) << "rules";
    }
}

TEST(CullPicture, A_camera_that_is_held_by_hand_has_its_path_around_its_eye)
{
    Scene const scene(Passing(), Middle());
    std::vector<Vector> const eyes = {{0, 5, 100}, {2, 5, 100}, {2, 5, 103}};
    std::ostringstream stream;
    cull::DrawView({scene.motion, scene.positions, scene.boxes, scene.camera, scene.answers, eyes}, "walk")
        .Write(stream);
    std::string const text = stream.str();
    EXPECT_EQ(FindXmlFault(text), "");
    EXPECT_EQ(Count(text, "s, camera held by hand<"), 1U);
    constexpr char const * k_EyePath = R"(stroke="#23272f" stroke-width="1.2")";
    EXPECT_EQ(Count(text, k_EyePath), 2U);
    EXPECT_EQ(Count(scene.Draw(), k_EyePath), 0U);
    EXPECT_EQ(Count(scene.Draw(), "held by hand"), 0U);
}

TEST(AxisStep, Steps_are_one_two_or_five_times_a_power_of_ten)
{
    EXPECT_DOUBLE_EQ(clip::ChooseDecimalStep(10, 10), 1);
    EXPECT_DOUBLE_EQ(clip::ChooseDecimalStep(10.1, 10), 2);
    EXPECT_DOUBLE_EQ(clip::ChooseDecimalStep(21, 10), 5);
    EXPECT_DOUBLE_EQ(clip::ChooseDecimalStep(51, 10), 10);
    EXPECT_DOUBLE_EQ(clip::ChooseDecimalStep(0.03, 1), 0.05);
}

TEST(AxisStep, Lists_multiples_from_end_to_end)
{
    EXPECT_EQ(clip::ListMultiples(-1, 1, 0.5), (std::vector<double>{-1, -0.5, 0, 0.5, 1}));
    EXPECT_EQ(clip::ListMultiples(-0.9, 0.9, 0.5), (std::vector<double>{-0.5, 0, 0.5}));
    EXPECT_EQ(clip::ListMultiples(2.1, 2.9, 1), std::vector<double>{});
    EXPECT_EQ(clip::ListMultiples(3e9, 3e9 + 7, 3), (std::vector<double>{3e9, 3e9 + 3, 3e9 + 6}));
}

TEST(TimeAxis, Rules_stand_at_round_seconds_and_at_the_start_of_none)
{
    clip::Drawing some(100, 100, "t");
    clip::DrawTimeAxis(some, {100, 500, 10, 60, 2});
    std::ostringstream text;
    some.Write(text);
    EXPECT_EQ(Count(text.str(), "<line"), 5U);
    for (char const * const label : {">0<", ">0.5<", ">1<", ">1.5<", ">2<", ">seconds<"})
    {
        EXPECT_NE(text.str().find(label), std::string::npos) << label;
    }
    EXPECT_NE(text.str().find("x1=\"200\" y1=\"10\" x2=\"200\" y2=\"65\""), std::string::npos);
    clip::Drawing none(100, 100, "t");
    clip::DrawTimeAxis(none, {100, 500, 10, 60, 0});
    std::ostringstream empty;
    none.Write(empty);
    EXPECT_EQ(Count(empty.str(), "<line"), 1U);
}

} // namespace
