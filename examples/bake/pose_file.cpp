#include "bake/pose_file.h"

#include "clip/input.h"
#include "clip/reader.h"
#include "math/platform/memory_stream.h"
#include "math/platform/stream_helper.h"
#include "math/transformation.h"

#include <cmath>
#include <memory>
#include <new>
#include <string>
#include <string_view>

namespace bake
{

namespace
{

using Vector = C3DVector3Tpl<double>;

constexpr unsigned long k_Tag = 0x504F5345;
constexpr unsigned long k_Version = 1;

/// The bytes of a saved transformation, which has no scaling orientation.
constexpr std::size_t k_PoseSize = 101;

/// The largest size of a number in a pose. A clip's offset and channel add up, and a blend of two poses can be half as
/// far again.
constexpr double k_LargestNumber = 4 * clip::k_LargestNumber;

struct Releaser
{
    void operator()(IUnknown * object) const { object->Release(); }
};
using MemoryStream = std::unique_ptr<CMemoryStream, Releaser>;

/// Memory is all that can be missing for a stream on memory.
MemoryStream RequireStream(CMemoryStream * stream)
{
    if (stream == nullptr)
    {
        throw std::bad_alloc();
    }
    return MemoryStream(stream);
}

void RequireRoom(long result)
{
    if (result < 0)
    {
        throw std::bad_alloc();
    }
}

bool IsUsable(Vector const & v)
{
    return std::abs(v.X) <= k_LargestNumber && std::abs(v.Y) <= k_LargestNumber && std::abs(v.Z) <= k_LargestNumber;
}

/// What is wrong with the transformation of a joint, or nothing.
std::string_view FindFault(C3DTransfo & transformation, clip::JointPose const & pose, bool isRoot)
{
    if (!IsUsable(pose.translation) || !IsUsable(pose.angles) || !IsUsable(pose.scaling))
    {
        return "a number is too large, or none";
    }
    // A scale at every joint could multiply beyond all numbers.
    if (!isRoot && !(pose.scaling == Vector(1, 1, 1)))
    {
        return "only a root can be scaled";
    }
    return transformation.IsScalingOrientationExisting() ? "a scaling orientation has no place in a pose" : "";
}

clip::Composition CompositionOf(C3DTransfo const & transformation)
{
    return transformation.GetQNScalingFlag() != 0 ? clip::Composition::ByComponent : clip::Composition::ByMatrix;
}

class PoseDecoder
{
public:
    PoseDecoder(std::span<unsigned char const> bytes, clip::Skeleton const & skeleton, std::string const & name)
        : m_Stream(RequireStream(CMemoryStream::Create(bytes.data(), bytes.size()))), m_Size(bytes.size()),
          m_Helper(m_Stream.get()), m_Skeleton(skeleton), m_Name(name)
    {
    }

    SavedPoses Decode()
    {
        unsigned long version = 0;
        Require(m_Helper.ChunkReadOpen(k_Tag, &version) >= 0, "it does not start with poses, or does not hold all");
        Require(version == k_Version, "version " + std::to_string(version) + " is unknown");
        std::size_t const frames = ReadCount("frames");
        std::size_t const joints = ReadCount("joints");
        Require(joints == m_Skeleton.joints.size(), "the skeleton has another number of joints");
        Require(frames <= m_Size / k_PoseSize / joints, "it is too short for its number of frames");
        double frameTime = 0;
        Require(m_Helper.GetDouble(&frameTime) >= 0 && frameTime > 0 && frameTime <= clip::k_LargestNumber,
                "the time of a frame cannot be right");
        SavedPoses saved{clip::PoseTrack(frames, joints), clip::Composition::ByComponent, frameTime};
        for (std::size_t frame = 0; frame < frames; ++frame)
        {
            for (std::size_t i = 0; i < joints; ++i)
            {
                ReadPose(saved, frame, i);
            }
        }
        RequireEnd();
        return saved;
    }

private:
    void Require(bool holds, std::string_view complaint) const
    {
        if (!holds)
        {
            throw PoseFileError(m_Name + ": " + std::string(complaint));
        }
    }

    /// A whole number from 1 up to what the file has room for.
    std::size_t ReadCount(std::string const & what)
    {
        double count = 0;
        Require(m_Helper.GetDouble(&count) >= 0 && count >= 1 && count == std::floor(count) &&
                    count * static_cast<double>(k_PoseSize) <= static_cast<double>(m_Size),
                "the number of " + what + " cannot be right");
        return static_cast<std::size_t>(count);
    }

    void ReadPose(SavedPoses & saved, std::size_t frame, std::size_t joint)
    {
        C3DTransfo transformation;
        RequirePose(transformation.Load(m_Stream.get()) >= 0, frame, joint, "the transformation is damaged");
        clip::JointPose & pose = saved.poses.Frame(frame)[joint];
        transformation.GetTranslation(pose.translation);
        transformation.GetRotation(pose.angles);
        transformation.GetScaling(pose.scaling);
        bool const isRoot = m_Skeleton.joints[joint].parent == clip::k_NoParent;
        std::string_view const fault = FindFault(transformation, pose, isRoot);
        RequirePose(fault.empty(), frame, joint, fault);
        bool const isFirst = frame == 0 && joint == 0;
        saved.composition = isFirst ? CompositionOf(transformation) : saved.composition;
        RequirePose(CompositionOf(transformation) == saved.composition, frame, joint,
                    "it composes in another way than those before");
    }

    void RequirePose(bool holds, std::size_t frame, std::size_t joint, std::string_view complaint) const
    {
        if (!holds)
        {
            Require(false, "frame " + std::to_string(frame) + ", joint \"" + m_Skeleton.joints[joint].name +
                               "\": " + std::string(complaint));
        }
    }

    void RequireEnd()
    {
        unsigned long place = 0;
        Require(m_Helper.GetPos(&place) >= 0 && m_Helper.ChunkReadClose() >= 0 && place == m_Size,
                "there is more than the poses");
    }

    MemoryStream m_Stream;
    std::size_t m_Size;
    CKVStreamHelper m_Helper;
    clip::Skeleton const & m_Skeleton;
    std::string const & m_Name;
};

} // namespace

std::vector<unsigned char> EncodePoses(SavedPoses const & saved)
{
    MemoryStream const stream = RequireStream(CMemoryStream::Create());
    CKVStreamHelper helper(stream.get());
    RequireRoom(helper.ChunkWriteOpen(k_Tag, k_Version));
    RequireRoom(helper.PutDouble(static_cast<double>(saved.poses.FrameCount())));
    RequireRoom(helper.PutDouble(static_cast<double>(saved.poses.JointCount())));
    RequireRoom(helper.PutDouble(saved.frameTime));
    C3DTransfo transformation;
    transformation.SetQNScalingFlag(saved.composition == clip::Composition::ByComponent ? 1 : 0);
    for (std::size_t frame = 0; frame < saved.poses.FrameCount(); ++frame)
    {
        for (clip::JointPose const & pose : saved.poses.Frame(frame))
        {
            transformation.SetScaling(pose.scaling);
            transformation.SetRotation(pose.angles);
            transformation.SetTranslation(pose.translation);
            RequireRoom(transformation.Save(stream.get(), 0));
        }
    }
    RequireRoom(helper.ChunkWriteClose());
    return {stream->GetBytes().begin(), stream->GetBytes().end()};
}

SavedPoses DecodePoses(std::span<unsigned char const> bytes, clip::Skeleton const & skeleton, std::string const & name)
{
    return PoseDecoder(bytes, skeleton, name).Decode();
}

SavedPoses LoadPoses(std::filesystem::path const & file, clip::Skeleton const & skeleton)
{
    std::string const bytes = clip::ReadAll(file);
    return DecodePoses({reinterpret_cast<unsigned char const *>(bytes.data()), bytes.size()}, skeleton, file.string());
}

} // namespace bake
