#include "cull/options.h"

#include "clip/number_text.h"
#include "clip/reader.h"

#include <cmath>
#include <numbers>
#include <string>

namespace cull
{

std::string_view const k_Usage = R"(Usage: cull [options] CLIP.bvh

Looks at a motion-capture clip through a camera, and tells frame by frame which
joints the camera sees: the bounding box of each joint lies inside the camera's
view volume, outside, or across its boundary. Two strategies answer, one in world
space and one in the camera's own; where they differ, one says "crossing".

The box of a joint is the smallest along the world axes around the joint and its
children, the bones that start there, and a fiftieth of the figure's size in its
rest pose larger on every side.

Camera, each option with a default that shows the whole clip:
  --eye X,Y,Z   where the camera stands
  --look X,Y,Z  the place in the middle of its picture (default: the middle of the
                clip). Y is up; a camera that looks straight down has -Z up
  --fov DEGREES angle of view from left to right, 0.1 to 179 (default: 40)
  --ortho WIDTH a camera without perspective, that sees so much from left to right
  --aspect R    width of the picture over its height, 0.01 to 100 (default: 1.5)
  --near D      distance from which it sees
  --far D       distance up to which it sees
  --shake A     hold it by hand: it sways along each of its axes by up to A, and
                turns a little, up to the angle under which A appears where it looks
  --seed N      another movement of the hand, 0 to 4294967295 (default: 1)

Other options:
  --floor H     report when each foot first meets the floor at the height H;
                "auto" is the height to which every foot comes down, a little above
  --out DIR     folder for the results, made where it is missing (default: cull-out)
  -h, --help    print this text and end

Results:
  view.csv      frame, time, joint, world, view: for every joint in every frame the
                answers of both strategies, "outside", "inside" or "crossing"
  cull.svg      the volume, the path of the root and the boxes from above, and how
                many are inside, crossing and outside over time
  camera.csv    with a shake: frame, time, x, y, z, pitch, yaw, roll: where the camera
                is, and its turns about its own X, Y and Z in degrees
  floor.csv     with a floor: foot, frame, time, x, y, z of each foot's first contact;
                the frame is the last before it

Feet are found in the rest pose. An end of the skeleton within a twentieth of the
figure's height above the lowest end is a toe. Its foot reaches up to the ankle: the
nearest joint above whose own bone is steep, or the last in the lowest fifth of the
figure. The sole is a triangle of the toe and of two heel points beneath the ankle,
at the toe's height in the rest pose and two fifths of the foot's length apart, that
move with the ankle. (The leg of a skeleton without feet ends in a triangle of its
last bone, with the width at the upper end.) The floor is a grid of points, a
hundredth of the figure's height apart, or wider on a wide floor. A foot that begins
below the floor meets it on its way up.

Status: 0 done, 1 a file could not be read or written, or the strategies contradict
        each other, 2 a clip or the command line are wrong. Results of an earlier run
        stay as they were unless the status is 0.
)";

namespace
{

using Vector = C3DVector3Tpl<double>;

constexpr double k_Degree = std::numbers::pi / 180;

std::string Quoted(std::string_view text)
{
    return '"' + std::string(text) + '"';
}

Vector ReadPlace(std::string_view option, std::string_view text)
{
    std::optional<Vector> const place = clip::ParseTriple(text);
    auto const isUsable = [](double number) { return std::abs(number) <= clip::k_LargestNumber; };
    if (!place || !isUsable(place->X) || !isUsable(place->Y) || !isUsable(place->Z))
    {
        throw UsageError("option " + Quoted(option) +
                         " wants three numbers up to 1e12 in size, such as 0,150,400, not " + Quoted(text));
    }
    return *place;
}

struct Range
{
    double smallest;
    double largest;
    std::string_view text;
};

constexpr Range k_Angles = {0.1, 179, "an angle from 0.1 to 179 degrees"};
constexpr Range k_Aspects = {0.01, 100, "a ratio from 0.01 to 100"};
constexpr Range k_Distances = {1e-6, clip::k_LargestNumber, "a distance from 1e-6 to 1e12"};
constexpr Range k_Heights = {-clip::k_LargestNumber, clip::k_LargestNumber, R"(a height up to 1e12 in size or "auto")"};

double ReadNumber(std::string_view option, std::string_view text, Range const & range)
{
    std::optional<double> const number = clip::ParseNumber(text);
    if (!number || !(*number >= range.smallest && *number <= range.largest))
    {
        throw UsageError("option " + Quoted(option) + " wants " + std::string(range.text) + ", not " + Quoted(text));
    }
    return *number;
}

class OptionReader
{
public:
    explicit OptionReader(std::span<char const * const> arguments) : m_Arguments(arguments) {}

    Options Read()
    {
        m_Options.isHelpWanted = m_Arguments.Read([this](std::string_view name) { return ReadOption(name); });
        m_Options.clip = m_Arguments.Clip();
        if (!m_Options.isHelpWanted)
        {
            CheckCamera();
            SetSeed();
        }
        return m_Options;
    }

private:
    bool ReadOption(std::string_view name)
    {
        if (name == "--out")
        {
            m_Options.outputFolder = m_Arguments.Path("a folder");
        }
        else if (name == "--floor")
        {
            m_Options.floor = ReadFloor(m_Arguments.Value());
        }
        else if (name == "--shake")
        {
            m_Options.shake = Shake{ReadNumber(name, m_Arguments.Value(), k_Distances)};
        }
        else if (name == "--seed")
        {
            m_Seed = m_Arguments.Seed();
        }
        else
        {
            return ReadCameraOption(name);
        }
        return true;
    }

    bool ReadCameraOption(std::string_view name)
    {
        CameraRequest & camera = m_Options.camera;
        if (name == "--eye")
        {
            camera.eye = ReadPlace(name, m_Arguments.Value());
        }
        else if (name == "--look")
        {
            camera.look = ReadPlace(name, m_Arguments.Value());
        }
        else if (name == "--fov")
        {
            camera.fieldOfView = k_Degree * ReadNumber(name, m_Arguments.Value(), k_Angles);
        }
        else if (name == "--ortho")
        {
            camera.orthographicWidth = ReadNumber(name, m_Arguments.Value(), k_Distances);
        }
        else if (name == "--aspect")
        {
            camera.aspect = ReadNumber(name, m_Arguments.Value(), k_Aspects);
        }
        else if (name == "--near")
        {
            camera.nearDistance = ReadNumber(name, m_Arguments.Value(), k_Distances);
        }
        else if (name == "--far")
        {
            camera.farDistance = ReadNumber(name, m_Arguments.Value(), k_Distances);
        }
        else
        {
            return false;
        }
        return true;
    }

    static FloorRequest ReadFloor(std::string_view text)
    {
        if (text == "auto")
        {
            return {};
        }
        return {ReadNumber("--floor", text, k_Heights)};
    }

    void CheckCamera() const
    {
        CameraRequest const & camera = m_Options.camera;
        if (camera.fieldOfView && camera.orthographicWidth)
        {
            throw UsageError(R"(options "--fov" and "--ortho" exclude each other)");
        }
        if (camera.nearDistance && camera.farDistance && !(*camera.nearDistance < *camera.farDistance))
        {
            throw UsageError(R"(option "--near" wants less than "--far")");
        }
    }

    void SetSeed()
    {
        if (m_Seed && !m_Options.shake)
        {
            throw UsageError(R"(option "--seed" is nothing without "--shake")");
        }
        if (m_Seed)
        {
            m_Options.shake->seed = *m_Seed;
        }
    }

    clip::Arguments m_Arguments;
    std::optional<unsigned long> m_Seed;
    Options m_Options;
};

} // namespace

Options ParseOptions(std::span<char const * const> arguments)
{
    return OptionReader(arguments).Read();
}

} // namespace cull
