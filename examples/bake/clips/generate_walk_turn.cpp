// Writes the clip walk-turn.bvh to standard output: a figure of 21 joints that walks, turns twice about its vertical
// axis on the way, and raises its right arm over its head through the pole of the shoulder's rotation order.
//
// The gait starts from the footprints. The middle of the body follows a path; each foot stands on the place beside the
// path that the body passes at the middle of the step, and swings from one to the next; the angles of the leg follow
// from the places of hip and foot. So the feet neither slide nor sink, however sharply the path turns.

#include "clip/clip.h"
#include "clip/skeleton.h"
#include "clip/writer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <exception>
#include <iostream>
#include <numbers>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace
{

using clip::Channel;
using Matrix = C3DMatrix44Tpl<double>;
using Vector = C3DVector3Tpl<double>;

constexpr std::size_t k_FrameCount = 240;
constexpr double k_FrameTime = 1.0 / 30;
constexpr double k_LastTime = k_FrameTime * static_cast<double>(k_FrameCount - 1);

// Lengths in centimetres. X is the figure's left, Y up, Z ahead.
constexpr double k_Thigh = 42;
constexpr double k_Shin = 40;
constexpr double k_AnkleHeight = 8;
constexpr double k_ToeAhead = 13;
constexpr double k_ToeHeight = 2;
constexpr double k_RootHeight = 93.2;

constexpr double k_Speed = 96; // on a straight way
constexpr double k_SlowingInTurn = 0.3;
constexpr double k_StepHalfWidth = 8; // from the path to a footprint
constexpr double k_Steps = 9;         // of each foot: whole, so that the clip ends in the phase in which it starts
constexpr double k_FirstPhase = 0.1;
constexpr double k_StanceShare = 0.6; // of a step, in which the foot is on the ground

constexpr double k_TurnStart = 0.7;
constexpr double k_TurnEnd = 7.2;
constexpr double k_TurnDegrees = 720;

double Radians(double degrees)
{
    return degrees * (std::numbers::pi / 180);
}

double Degrees(double radians)
{
    return radians * (180 / std::numbers::pi);
}

double Wave(double phase)
{
    return std::cos(2 * std::numbers::pi * phase);
}

/// From 0 to 1 as x goes from 0 to 1, level at both ends.
double Smooth(double x)
{
    x = std::clamp(x, 0.0, 1.0);
    return x * x * (3 - 2 * x);
}

/// From 0 to 1 at an even pace but for a gentle start and end.
double SmoothRamp(double x)
{
    constexpr double k_Ease = 0.2;
    x = std::clamp(x, 0.0, 1.0);
    if (x > 0.5)
    {
        return 1 - SmoothRamp(1 - x);
    }
    double const eased = x < k_Ease ? x * x / (2 * k_Ease) : x - k_Ease / 2;
    return eased / (1 - k_Ease);
}

double Heading(double time)
{
    return k_TurnDegrees * SmoothRamp((time - k_TurnStart) / (k_TurnEnd - k_TurnStart));
}

/// How sharply the path turns, 1 at an even pace.
double Turning(double time)
{
    constexpr double k_Step = 0.01;
    double const even = k_TurnDegrees / (k_TurnEnd - k_TurnStart);
    return (Heading(time + k_Step) - Heading(time - k_Step)) / (2 * k_Step * even);
}

/// Along the path, in a second. A figure that turns walks more slowly, or the outer leg would not reach its next place.
double Speed(double time)
{
    return k_Speed * (1 - k_SlowingInTurn * Turning(time));
}

Vector Ahead(double heading)
{
    return {std::sin(Radians(heading)), 0, std::cos(Radians(heading))};
}

Vector Left(double heading)
{
    return {std::cos(Radians(heading)), 0, -std::sin(Radians(heading))};
}

/// start + direction times distance.
Vector Advance(Vector const & start, Vector const & direction, double distance)
{
    Vector step;
    step.Mul(direction, distance);
    return step.Add(start, step);
}

/// The way of the middle of the body over the ground, summed up in small steps.
class Path
{
public:
    Path()
    {
        Vector place(0, 0, k_Start * k_Speed);
        for (int i = 0; i <= k_Pieces; ++i)
        {
            m_Places.push_back(place);
            double const middle = k_Start + (i + 0.5) * k_Piece;
            place = Advance(place, Ahead(Heading(middle)), Speed(middle) * k_Piece);
        }
    }

    Vector At(double time) const
    {
        double const piece = std::clamp((time - k_Start) / k_Piece, 0.0, static_cast<double>(k_Pieces) - 1);
        auto const before = static_cast<std::size_t>(piece);
        Vector way;
        way.Sub(m_Places[before + 1], m_Places[before]);
        return Advance(m_Places[before], way, piece - static_cast<double>(before));
    }

private:
    // The first and the last footprints lie outside the time of the clip.
    static constexpr double k_Start = -2;
    static constexpr double k_Piece = 1.0 / 960;
    static constexpr int k_Pieces = static_cast<int>((k_LastTime + 4) / k_Piece);

    std::vector<Vector> m_Places;
};

/// A value over a step: key positions with a smooth way from each to the next.
template <std::size_t count>
double Interpolate(std::array<std::pair<double, double>, count> const & keys, double phase)
{
    for (std::size_t i = 1; i < count; ++i)
    {
        auto const [start, from] = keys[i - 1];
        auto const [end, to] = keys[i];
        if (phase <= end)
        {
            return from + (to - from) * Smooth((phase - start) / (end - start));
        }
    }
    return keys.back().second;
}

/// Where a foot is, and how it is turned: by the heading, then the pitch about its own left axis, toes down.
struct Foot
{
    Vector ankle;
    double heading;
    double pitch;
    double toePitch;
};

class Walk
{
public:
    /// Steps done since the left foot first touched the ground, whole at each of its touches.
    static double LeftSteps(double time) { return k_FirstPhase + k_Steps * time / k_LastTime; }

    /// \param side 1 for the left foot, -1 for the right one
    Foot FootAt(double time, double side) const
    {
        double const steps = LeftSteps(time) + (side > 0 ? 0 : 0.5);
        double const whole = std::floor(steps);
        double const phase = steps - whole;
        double const swing = std::clamp((phase - k_StanceShare) / (1 - k_StanceShare), 0.0, 1.0);
        double const here = MiddleOfStance(whole, side);
        double const there = MiddleOfStance(whole + 1, side);

        Foot foot;
        foot.heading = Heading(here) + (Heading(there) - Heading(here)) * Smooth(swing);
        foot.pitch = Pitch(phase);
        foot.toePitch = -std::max(foot.pitch, 0.0) * (1 - Smooth(swing * 1.5));
        Vector way;
        way.Sub(Print(there, side), Print(here, side));
        Vector const ball = Advance(Print(here, side), way, Smooth(swing));
        constexpr double k_Lift = 4;
        foot.ankle = AnkleAbove(ball, foot, k_Lift * (1 - Wave(swing)) / 2);
        return foot;
    }

    Path const & GetPath() const { return m_Path; }

private:
    /// The foot touches the ground with its heel, lies flat, rolls over the ball and swings.
    static double Pitch(double phase)
    {
        static constexpr std::array<std::pair<double, double>, 6> k_Keys = {
            {{0, -15}, {0.12, 0}, {0.32, 0}, {0.64, 40}, {0.9, -15}, {1, -15}}};
        return Interpolate(k_Keys, phase);
    }

    static double MiddleOfStance(double wholeSteps, double side)
    {
        double const leftSteps = wholeSteps + k_StanceShare / 2 - (side > 0 ? 0 : 0.5);
        return (leftSteps - k_FirstPhase) * k_LastTime / k_Steps;
    }

    /// The place of the ball of the foot that stands while the body passes at that time.
    Vector Print(double time, double side) const
    {
        double const heading = Heading(time);
        return Advance(Advance(m_Path.At(time), Left(heading), side * k_StepHalfWidth), Ahead(heading), k_ToeAhead);
    }

    /// The ankle of a foot with its ball above a place on the ground, so high that neither heel nor ball sinks.
    static Vector AnkleAbove(Vector const & ball, Foot const & foot, double lift)
    {
        double const sine = std::sin(Radians(foot.pitch));
        double const cosine = std::cos(Radians(foot.pitch));
        constexpr double k_HeelBehind = 4;
        double const ballDepth = k_AnkleHeight * cosine + k_ToeAhead * sine;
        double const heelDepth = k_AnkleHeight * cosine - k_HeelBehind * sine;
        Vector ankle = Advance(ball, Ahead(foot.heading), k_AnkleHeight * sine - k_ToeAhead * cosine);
        ankle.Y = std::max(ballDepth, heelDepth) + lift;
        return ankle;
    }

    Path m_Path;
};

using Channels = std::vector<Channel>;

Channels const k_LimbOrder = {Channel::ZRotation, Channel::XRotation, Channel::YRotation};

/// Joints by index, so that the motion can name them.
struct Figure
{
    struct Arm
    {
        int collar, shoulder, elbow, wrist;
    };
    struct Leg
    {
        int hip, knee, ankle, toe;
    };

    clip::Skeleton skeleton;
    int root, spine, chest, neck, head;
    Arm leftArm, rightArm;
    Leg leftLeg, rightLeg;
};

int AddJoint(clip::Skeleton & skeleton, std::string name, int parent, Vector const & offset, Channels channels)
{
    clip::Joint joint;
    joint.name = std::move(name);
    joint.parent = parent;
    joint.offset = offset;
    joint.channels = std::move(channels);
    return clip::AddJoint(skeleton, std::move(joint));
}

void AddEndSite(clip::Skeleton & skeleton, int parent, Vector const & offset)
{
    clip::Joint site;
    site.name = skeleton.joints[static_cast<std::size_t>(parent)].name + "_end";
    site.parent = parent;
    site.offset = offset;
    site.isEndSite = true;
    clip::AddJoint(skeleton, std::move(site));
}

Figure::Arm AddArm(Figure & figure, std::string const & side, double left)
{
    clip::Skeleton & skeleton = figure.skeleton;
    Figure::Arm arm{};
    arm.collar = AddJoint(skeleton, side + "Collar", figure.chest, {3 * left, 16, 1}, k_LimbOrder);
    arm.shoulder = AddJoint(skeleton, side + "Shoulder", arm.collar, {14 * left, 0, -1}, k_LimbOrder);
    arm.elbow = AddJoint(skeleton, side + "Elbow", arm.shoulder, {0, -28, 0}, k_LimbOrder);
    arm.wrist = AddJoint(skeleton, side + "Wrist", arm.elbow, {0, -25, 0}, k_LimbOrder);
    AddEndSite(skeleton, arm.wrist, {0, -17, 0});
    return arm;
}

Figure::Leg AddLeg(Figure & figure, std::string const & side, double left)
{
    clip::Skeleton & skeleton = figure.skeleton;
    Figure::Leg leg{};
    leg.hip = AddJoint(skeleton, side + "Hip", figure.root, {9.5 * left, -6, 0}, k_LimbOrder);
    leg.knee = AddJoint(skeleton, side + "Knee", leg.hip, {0, -k_Thigh, 0}, k_LimbOrder);
    leg.ankle = AddJoint(skeleton, side + "Ankle", leg.knee, {0, -k_Shin, 0}, k_LimbOrder);
    leg.toe = AddJoint(skeleton, side + "Toe", leg.ankle, {0, k_ToeHeight - k_AnkleHeight, k_ToeAhead}, k_LimbOrder);
    AddEndSite(skeleton, leg.toe, {0, -1.5, 6});
    return leg;
}

Figure BuildFigure()
{
    Figure figure{};
    clip::Skeleton & skeleton = figure.skeleton;
    Channels const trunkOrder = {Channel::YRotation, Channel::XRotation, Channel::ZRotation};
    Channels const rootChannels = {Channel::XPosition, Channel::YPosition, Channel::ZPosition,
                                   Channel::YRotation, Channel::XRotation, Channel::ZRotation};
    figure.root = AddJoint(skeleton, "Hips", clip::k_NoParent, {0, 0, 0}, rootChannels);
    figure.spine = AddJoint(skeleton, "Spine", figure.root, {0, 10, -1}, trunkOrder);
    figure.chest = AddJoint(skeleton, "Chest", figure.spine, {0, 18, -1}, trunkOrder);
    figure.neck = AddJoint(skeleton, "Neck", figure.chest, {0, 21, 1}, trunkOrder);
    figure.head = AddJoint(skeleton, "Head", figure.neck, {0, 9, 2}, trunkOrder);
    AddEndSite(skeleton, figure.head, {0, 17, 1});
    figure.leftArm = AddArm(figure, "Left", 1);
    figure.rightArm = AddArm(figure, "Right", -1);
    figure.leftLeg = AddLeg(figure, "Left", 1);
    figure.rightLeg = AddLeg(figure, "Right", -1);
    return figure;
}

/// One frame in the making.
class Pose
{
public:
    Pose(Figure const & figure, std::span<double> frame) : m_Figure(figure), m_Frame(frame) {}

    void Set(int joint, Channel channel, double value)
    {
        clip::Joint const & target = m_Figure.skeleton.joints[static_cast<std::size_t>(joint)];
        auto const place = std::find(target.channels.begin(), target.channels.end(), channel);
        m_Frame[target.firstChannel + static_cast<std::size_t>(place - target.channels.begin())] = value;
    }

    void SetAngles(int joint, double x, double y, double z)
    {
        Set(joint, Channel::XRotation, x);
        Set(joint, Channel::YRotation, y);
        Set(joint, Channel::ZRotation, z);
    }

    /// By the channels as they are now. Row i is axis i of the joint, row 3 its place.
    Matrix World(int joint) const
    {
        clip::Clip frame;
        frame.skeleton = m_Figure.skeleton;
        frame.frameCount = 1;
        frame.values.assign(m_Frame.begin(), m_Frame.end());
        clip::SkeletonPose pose(frame.skeleton, clip::Composition::ByComponent);
        pose.Set(clip::MakePoses(frame).Frame(0));
        return *pose.World(static_cast<std::size_t>(joint)).GetMatrix();
    }

private:
    Figure const & m_Figure;
    std::span<double> m_Frame;
};

Vector RowOf(Matrix const & matrix, int row)
{
    return {matrix.Get(row, 0), matrix.Get(row, 1), matrix.Get(row, 2)};
}

double Dot(Vector const & a, Vector const & b)
{
    return a.X * b.X + a.Y * b.Y + a.Z * b.Z;
}

void PoseTrunk(Pose & pose, Figure const & figure, Walk const & walk, double time)
{
    double const steps = Walk::LeftSteps(time);
    double const turning = Turning(time);
    double const sway = 2 * Wave(steps - k_StanceShare / 2);
    double const bob = -1.4 * Wave(2 * (steps - 0.05));
    double const twist = Wave(steps);
    Vector const place = Advance(walk.GetPath().At(time), Left(Heading(time)), sway);
    pose.Set(figure.root, Channel::XPosition, place.X);
    pose.Set(figure.root, Channel::YPosition, k_RootHeight + bob);
    pose.Set(figure.root, Channel::ZPosition, place.Z);
    pose.SetAngles(figure.root, 2.5, Heading(time) - 4 * twist, 2.5 * Wave(steps + 0.2) - turning);
    pose.SetAngles(figure.spine, 1.5, 5 * twist, -1.5 * Wave(steps + 0.2) - 1.5 * turning);
    pose.SetAngles(figure.chest, -1, 5 * twist, -1.2 * Wave(steps + 0.2) - turning);
    pose.SetAngles(figure.neck, 4 + 0.6 * Wave(2 * steps), -3 * twist + 5 * turning, 0.5 * turning);
    pose.SetAngles(figure.head, -5 - 0.8 * Wave(2 * steps), -3 * twist + 6 * turning, 0.5 * turning);
}

/// \param forward 1 where the arm is foremost, -1 where it is hindmost
/// \param side 1 left, -1 right
void PoseHangingArm(Pose & pose, Figure::Arm const & arm, double forward, double side)
{
    pose.SetAngles(arm.collar, 0, -2 * forward * side, 0);
    pose.SetAngles(arm.shoulder, 2 - 23 * forward, -4 * side, 7 * side);
    pose.SetAngles(arm.elbow, -20 - 11 * forward, 0, 0);
    pose.SetAngles(arm.wrist, -4 - 4 * forward, 0, 3 * side);
}

/// The right arm swings like the left one, but in the middle of the clip it goes up over the head, waves, and comes
/// down. Its middle rotation passes a quarter turn on both ways.
void PoseWavingArm(Pose & pose, Figure::Arm const & arm, double forward, double time)
{
    constexpr double k_UpStart = 2.1;
    constexpr double k_UpEnd = 3.7;
    constexpr double k_DownStart = 4.9;
    constexpr double k_DownEnd = 6.5;
    double const up = Smooth((time - k_UpStart) / (k_UpEnd - k_UpStart)) *
                      (1 - Smooth((time - k_DownStart) / (k_DownEnd - k_DownStart)));
    double const wave = up * std::sin(2 * std::numbers::pi * 1.25 * (time - k_UpStart));
    double const down = 1 - up;
    pose.SetAngles(arm.collar, 0, 2 * forward * down, -8 * up);
    pose.SetAngles(arm.shoulder, (2 - 23 * forward) * down - 152 * up, 4 + 14 * up, -7 - 9 * up);
    pose.SetAngles(arm.elbow, (-20 - 11 * forward) * down - 22 * up, 0, 24 * wave);
    pose.SetAngles(arm.wrist, (-4 - 4 * forward) * down, 0, -3 + 16 * wave);
}

/// Hip and knee that bring the ankle to its place. With the knee bent, the ankle lies at `bent` in the thigh's frame;
/// the twist about the thigh turns that to `turned`, in the plane of Y and Z at the angle `lean` before the downward
/// direction; the rotation about X then has to reach the target's depth, and the one about Z its direction across.
void PoseHipAndKnee(Pose & pose, Figure::Leg const & leg, Foot const & foot, double twist)
{
    pose.SetAngles(leg.hip, 0, 0, 0);
    Matrix const hip = pose.World(leg.hip);
    Vector reach;
    reach.Sub(foot.ankle, RowOf(hip, 3));
    Vector const target(Dot(reach, RowOf(hip, 0)), Dot(reach, RowOf(hip, 1)), Dot(reach, RowOf(hip, 2)));

    constexpr double k_Longest = 0.9995 * (k_Thigh + k_Shin);
    double const square = std::min(Dot(target, target), k_Longest * k_Longest);
    double const knee = std::acos((square - k_Thigh * k_Thigh - k_Shin * k_Shin) / (2 * k_Thigh * k_Shin));
    Vector const bent(0, -k_Thigh - k_Shin * std::cos(knee), -k_Shin * std::sin(knee));
    Vector const turned(bent.Z * std::sin(Radians(twist)), bent.Y, bent.Z * std::cos(Radians(twist)));

    double const radius = std::hypot(turned.Y, turned.Z);
    double const lean = std::atan2(turned.Z, -turned.Y);
    double const rise = std::asin(std::clamp(target.Z / radius, -1.0, 1.0));
    double const z = std::atan2(target.Y, target.X) - std::atan2(-radius * std::cos(rise), turned.X);
    pose.SetAngles(leg.hip, Degrees(lean - rise), twist, Degrees(z));
    pose.SetAngles(leg.knee, Degrees(knee), 0, 0);
}

/// The ankle turns the foot from the shin's frame to where the walk wants it: angles in the order Z, X, Y of the matrix
/// between the two frames, all far from a quarter turn.
void PoseFoot(Pose & pose, Figure::Leg const & leg, Foot const & foot)
{
    Matrix const shin = pose.World(leg.knee);
    double const sine = std::sin(Radians(foot.pitch));
    double const cosine = std::cos(Radians(foot.pitch));
    Vector const ahead = Ahead(foot.heading);
    Vector const footX = Left(foot.heading);
    Vector const footY(ahead.X * sine, cosine, ahead.Z * sine);
    Vector const footZ(ahead.X * cosine, -sine, ahead.Z * cosine);
    double const x = std::asin(Dot(RowOf(shin, 2), footY));
    double const y = std::atan2(-Dot(RowOf(shin, 2), footX), Dot(RowOf(shin, 2), footZ));
    double const z = std::atan2(-Dot(RowOf(shin, 0), footY), Dot(RowOf(shin, 1), footY));
    pose.SetAngles(leg.ankle, Degrees(x), Degrees(y), Degrees(z));
    pose.SetAngles(leg.toe, foot.toePitch, 0, 0);
}

void PoseLeg(Pose & pose, Figure::Leg const & leg, Foot const & foot, double heading)
{
    constexpr double k_HipShare = 0.6; // of the turn between body and foot; the ankle has the rest
    PoseHipAndKnee(pose, leg, foot, k_HipShare * (foot.heading - heading));
    PoseFoot(pose, leg, foot);
}

void PoseFrame(Figure const & figure, Walk const & walk, double time, std::span<double> frame)
{
    Pose pose(figure, frame);
    double const leftArmForward = -Wave(Walk::LeftSteps(time));
    PoseTrunk(pose, figure, walk, time);
    PoseHangingArm(pose, figure.leftArm, leftArmForward, 1);
    PoseWavingArm(pose, figure.rightArm, -leftArmForward, time);
    PoseLeg(pose, figure.leftLeg, walk.FootAt(time, 1), Heading(time));
    PoseLeg(pose, figure.rightLeg, walk.FootAt(time, -1), Heading(time));
}

/// To a thousandth of a degree or of a centimetre, which keeps the file small. The zero added turns -0 into 0.
double Rounded(double value)
{
    return std::round(value * 1000) / 1000 + 0.0;
}

clip::Clip Generate()
{
    Figure const figure = BuildFigure();
    Walk const walk;
    clip::Clip motion;
    motion.skeleton = figure.skeleton;
    motion.frameCount = k_FrameCount;
    motion.frameTime = 0.0333333;
    motion.values.resize(k_FrameCount * figure.skeleton.channelCount);
    for (std::size_t frame = 0; frame < k_FrameCount; ++frame)
    {
        PoseFrame(figure, walk, k_FrameTime * static_cast<double>(frame), motion.Frame(frame));
    }
    std::transform(motion.values.begin(), motion.values.end(), motion.values.begin(), Rounded);
    return motion;
}

} // namespace

int main()
{
    try
    {
        clip::WriteClip(std::cout, Generate());
        return std::cout.flush() ? 0 : 1;
    }
    catch (std::exception const & error)
    {
        std::cerr << "generate_walk_turn: " << error.what() << '\n';
        return 1;
    }
}
