#include "bake/pose_file.h"

#include "clip/skeleton.h"
#include "math/platform/memory_stream.h"
#include "math/platform/stream_helper.h"
#include "math/transformation.h"

#include "examples/pose_checks.h"
#include "examples/scratch_folder.h"
#include "support/random.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <limits>
#include <numbers>
#include <optional>
#include <span>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace
{

using bake::SavedPoses;
using clip::Channel;
using clip::Composition;
using Bytes = std::vector<unsigned char>;
using Vector = C3DVector3Tpl<double>;

constexpr double k_Infinity = std::numeric_limits<double>::infinity();
constexpr double k_Nan = std::numeric_limits<double>::quiet_NaN();

// Where things stand: the header of the file's chunk is a tag, a version and a length, that of a pose likewise.
constexpr std::size_t k_HeaderSize = 12;
constexpr std::size_t k_FrameCountPlace = k_HeaderSize;
constexpr std::size_t k_JointCountPlace = k_FrameCountPlace + 8;
constexpr std::size_t k_FrameTimePlace = k_JointCountPlace + 8;
constexpr std::size_t k_FirstPose = k_FrameTimePlace + 8;
constexpr std::size_t k_PoseSize = 101;
// Within a pose; each vector has a byte of its own before it.
constexpr std::size_t k_ModePlace = k_HeaderSize;
constexpr std::size_t k_ScalingPlace = k_ModePlace + 2;
constexpr std::size_t k_TranslationPlace = k_ScalingPlace + 25;
constexpr std::size_t k_AnglesPlace = k_TranslationPlace + 24 + k_HeaderSize + 1;

/// A root, a child and its end site.
clip::Skeleton Chain()
{
    clip::Skeleton skeleton;
    PutJoint(skeleton, "root", clip::k_NoParent, {0, 0, 0},
             {Channel::YPosition, Channel::ZRotation, Channel::XRotation, Channel::YRotation});
    PutJoint(skeleton, "child", 0, {0, 1, 0}, {Channel::YRotation, Channel::XRotation});
    PutEndSite(skeleton, 1, {0, 1, 0});
    return skeleton;
}

/// Poses of the chain.
SavedPoses Poses(std::size_t frameCount = 2, Composition composition = Composition::ByComponent)
{
    test_support::Random random(frameCount);
    auto const vector = [&random](double size)
    { return Vector(random.Uniform(-size, size), random.Uniform(-size, size), random.Uniform(-size, size)); };
    SavedPoses saved{clip::PoseTrack(frameCount, 3), composition, 1.0 / 30};
    for (std::size_t frame = 0; frame < frameCount; ++frame)
    {
        for (clip::JointPose & pose : saved.poses.Frame(frame))
        {
            pose.translation = vector(100);
            pose.angles = vector(50);
        }
        saved.poses.Frame(frame)[0].scaling = vector(4);
    }
    return saved;
}

SavedPoses Decode(Bytes const & bytes, clip::Skeleton const & skeleton = Chain())
{
    return bake::DecodePoses(bytes, skeleton, "poses.bin");
}

/// What the refusal says behind the file's name; nothing where the bytes are taken.
std::string Refusal(Bytes const & bytes, clip::Skeleton const & skeleton = Chain())
{
    try
    {
        Decode(bytes, skeleton);
        return {};
    }
    catch (bake::PoseFileError const & error)
    {
        std::string const text = error.what();
        EXPECT_TRUE(text.starts_with("poses.bin: ")) << text;
        EXPECT_EQ(text.find('\n'), std::string::npos) << text;
        return text.substr(11);
    }
}

void ExpectBack(SavedPoses const & saved)
{
    SavedPoses const back = Decode(bake::EncodePoses(saved));
    EXPECT_TRUE(HaveSameBits(back.poses, saved.poses));
    EXPECT_EQ(back.composition, saved.composition);
    EXPECT_EQ(back.frameTime, saved.frameTime);
}

template <typename Value>
Bytes With(Bytes bytes, std::size_t place, Value value)
{
    std::memcpy(bytes.data() + place, &value, sizeof(value));
    return bytes;
}

std::size_t PlaceOfPose(std::size_t index)
{
    return k_FirstPose + index * k_PoseSize;
}

TEST(PoseFile, Gives_poses_back_bit_for_bit)
{
    for (std::size_t const frameCount : {1U, 2U, 100U})
    {
        ExpectBack(Poses(frameCount, Composition::ByComponent));
        ExpectBack(Poses(frameCount, Composition::ByMatrix));
    }
}

TEST(PoseFile, Keeps_whole_turns_and_negative_zeros_and_the_smallest_and_largest_numbers)
{
    SavedPoses saved = Poses(4);
    double const turn = 2 * std::numbers::pi;
    saved.poses.Frame(0)[0] = {{-0.0, 0, -0.0}, {3 * turn, -2 * turn, 5 * turn + 0.25}, {1, -1, 1}};
    saved.poses.Frame(0)[1] = {{0, -0.0, 0}, {0, -0.0, turn}, {1, 1, 1}};
    saved.poses.Frame(1)[0] = {{5e-324, 4e12, -4e12}, {4e12, -5e-324, 1e-300}, {-1, -1, -1}};
    saved.poses.Frame(2)[0] = {{1e-13, 0, 0}, {0, 1e-13, 0}, {1e-12, -1e-12, 4e12}};
    saved.poses.Frame(2)[1] = {{-0.0, -0.0, -0.0}, {-0.0, -0.0, -0.0}, {1, 1, 1}};
    saved.poses.Frame(3)[0] = {{0, 0, 0}, {0, 0, 0}, {1, 1, 1}};
    saved.poses.Frame(3)[1] = {{0, 0, -0.0}, {-0.0, 0, 0}, {1, 1, 1}};
    ExpectBack(saved);
}

// A plain scale of 1 in a pose of zeros is the identity, which a transformation knows by a flag: nothing of it may
// reach the pose behind it.
TEST(PoseFile, A_pose_leaves_no_trace_in_the_next)
{
    SavedPoses saved{clip::PoseTrack(3, 3), Composition::ByComponent, 1};
    saved.poses.Frame(1)[0] = {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}};
    ExpectBack(saved);
}

TEST(PoseFile, A_factor_of_scale_below_the_least_comes_back_as_that_with_its_sign)
{
    SavedPoses saved = Poses(1);
    saved.poses.Frame(0)[0].scaling = {0, -1e-13, 2};
    EXPECT_TRUE(HaveSameBits(Decode(bake::EncodePoses(saved)).poses.Frame(0)[0].scaling, {1e-12, -1e-12, 2}));
}

TEST(PoseFile, Keeps_the_time_of_a_frame)
{
    for (double const time : {5e-324, 1e-3, 0.1, 1e12})
    {
        SavedPoses saved = Poses(1);
        saved.frameTime = time;
        EXPECT_EQ(Decode(bake::EncodePoses(saved)).frameTime, time);
    }
}

TEST(PoseFile, Is_a_chunk_of_counts_and_saved_transformations)
{
    Bytes const bytes = bake::EncodePoses(Poses(2));
    ASSERT_EQ(bytes.size(), PlaceOfPose(6));
    unsigned char const header[] = {'E', 'S', 'O', 'P', 1, 0, 0, 0, 0x76, 0x02, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x40};
    EXPECT_EQ(Bytes(bytes.begin(), bytes.begin() + sizeof(header)), Bytes(std::begin(header), std::end(header)));
    for (std::size_t i = 0; i < 6; ++i)
    {
        EXPECT_EQ(std::memcmp(bytes.data() + PlaceOfPose(i), "FSRT1010", 8), 0) << i;
    }
    SavedPoses const saved = Poses(2);
    EXPECT_EQ(With(bytes, PlaceOfPose(4) + k_TranslationPlace, saved.poses.Frame(1)[1].translation), bytes);
    EXPECT_EQ(With(bytes, PlaceOfPose(3) + k_ScalingPlace, saved.poses.Frame(1)[0].scaling), bytes);
    EXPECT_EQ(With(bytes, PlaceOfPose(5) + k_AnglesPlace, saved.poses.Frame(1)[2].angles), bytes);
}

TEST(PoseFile, Every_truncation_is_refused)
{
    Bytes const bytes = bake::EncodePoses(Poses());
    for (std::size_t size = 0; size < bytes.size(); ++size)
    {
        EXPECT_EQ(Refusal(Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size))),
                  "it does not start with poses, or does not hold all")
            << size;
    }
}

// The chunk says truly how long it is, and is still too short.
TEST(PoseFile, Every_truncation_with_a_length_to_suit_is_refused)
{
    Bytes const bytes = bake::EncodePoses(Poses());
    for (std::size_t size = k_HeaderSize; size < bytes.size(); ++size)
    {
        Bytes const cut(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_NE(Refusal(With(cut, 8, static_cast<std::uint32_t>(size - k_HeaderSize))), "") << size;
    }
}

bool IsFinite(Vector const & vector)
{
    return std::isfinite(vector.X) && std::isfinite(vector.Y) && std::isfinite(vector.Z);
}

void ExpectUsable(SavedPoses const & saved, clip::Skeleton const & skeleton)
{
    for (std::size_t frame = 0; frame < saved.poses.FrameCount(); ++frame)
    {
        for (clip::JointPose const & pose : saved.poses.Frame(frame))
        {
            EXPECT_TRUE(IsFinite(pose.translation) && IsFinite(pose.angles) && IsFinite(pose.scaling));
        }
    }
    clip::WorldMotion const world = clip::ComputeWorldMotion(skeleton, saved.poses, saved.composition);
    for (Vector const & place : world.positions.All())
    {
        EXPECT_TRUE(IsFinite(place));
    }
}

TEST(PoseFile, A_damaged_byte_is_refused_or_leaves_poses_that_can_be_used)
{
    clip::Skeleton const skeleton = Chain();
    Bytes const bytes = bake::EncodePoses(Poses());
    std::size_t refused = 0;
    for (std::size_t place = 0; place < bytes.size(); ++place)
    {
        for (unsigned const damage : {0x01U, 0x02U, 0x04U, 0x08U, 0x10U, 0x20U, 0x40U, 0x80U, 0xFFU})
        {
            Bytes damaged = bytes;
            damaged[place] = static_cast<unsigned char>(damaged[place] ^ damage);
            SCOPED_TRACE(testing::Message() << "byte " << place << " damage " << damage);
            if (!Refusal(damaged, skeleton).empty())
            {
                ++refused;
                continue;
            }
            EXPECT_GE(place, k_FrameTimePlace) << "the tag, the version, the length or a count";
            ExpectUsable(Decode(damaged, skeleton), skeleton);
        }
    }
    EXPECT_GT(refused, bytes.size());
}

TEST(PoseFile, Another_tag_or_version_is_refused)
{
    Bytes const bytes = bake::EncodePoses(Poses());
    EXPECT_EQ(Refusal({}), "it does not start with poses, or does not hold all");
    EXPECT_EQ(Refusal(With(bytes, 0, std::uint32_t{0x54525346})), "it does not start with poses, or does not hold all");
    EXPECT_EQ(Refusal(With(bytes, 4, std::uint32_t{0})), "version 0 is unknown");
    EXPECT_EQ(Refusal(With(bytes, 4, std::uint32_t{2})), "version 2 is unknown");
    EXPECT_EQ(Refusal(With(bytes, 4, std::uint32_t{0xFFFFFFFF})), "version 4294967295 is unknown");
}

TEST(PoseFile, A_length_other_than_that_of_the_content_is_refused)
{
    Bytes const bytes = bake::EncodePoses(Poses());
    auto const length = static_cast<std::uint32_t>(bytes.size() - k_HeaderSize);
    for (std::uint32_t const wrong : {0U, 8U, length - 1, length + 1, 0x7FFFFFFFU, 0xFFFFFFFEU, 0xFFFFFFFFU})
    {
        EXPECT_NE(Refusal(With(bytes, 8, wrong)), "") << wrong;
    }
}

TEST(PoseFile, Counts_that_cannot_be_right_are_refused)
{
    Bytes const bytes = bake::EncodePoses(Poses());
    for (double const count :
         {0.0, -0.0, -1.0, 0.5, 1.5, 7.0, 1e9, 0x1p53, 1e300, -1e300, k_Infinity, -k_Infinity, k_Nan})
    {
        EXPECT_EQ(Refusal(With(bytes, k_FrameCountPlace, count)), "the number of frames cannot be right") << count;
        EXPECT_EQ(Refusal(With(bytes, k_JointCountPlace, count)), "the number of joints cannot be right") << count;
    }
}

// Six poses: for 3 joints that is two frames and no more, whatever each count could be alone.
TEST(PoseFile, Room_is_made_only_for_poses_that_the_file_can_hold)
{
    Bytes const bytes = bake::EncodePoses(Poses());
    for (double const count : {3.0, 4.0, 6.0})
    {
        EXPECT_EQ(Refusal(With(bytes, k_FrameCountPlace, count)), "it is too short for its number of frames") << count;
    }
    EXPECT_EQ(Refusal(With(bytes, k_FrameCountPlace, 1.0)), "there is more than the poses");
}

// Sixteen million poses would take more than a gigabyte; these bytes take a tenth of a megabyte.
TEST(PoseFile, A_large_skeleton_does_not_make_a_small_file_large)
{
    clip::Skeleton skeleton;
    for (int i = 0; i < 1000; ++i)
    {
        PutJoint(skeleton, std::to_string(i), i - 1, {0, 0, 0}, {});
    }
    Bytes const bytes = bake::EncodePoses({clip::PoseTrack(1, 1000), Composition::ByComponent, 1});
    EXPECT_EQ(Refusal(bytes, skeleton), "");
    EXPECT_EQ(Refusal(With(bytes, k_FrameCountPlace, 1000.0), skeleton), "it is too short for its number of frames");
    EXPECT_EQ(Refusal(With(bytes, k_FrameCountPlace, 2.0), skeleton), "it is too short for its number of frames");
}

TEST(PoseFile, Another_number_of_joints_is_refused)
{
    clip::Skeleton more = Chain();
    PutEndSite(more, 0, {1, 0, 0});
    clip::Skeleton fewer = Chain();
    fewer.joints.pop_back();
    Bytes const bytes = bake::EncodePoses(Poses());
    for (clip::Skeleton const & skeleton : {more, fewer})
    {
        EXPECT_EQ(Refusal(bytes, skeleton), "the skeleton has another number of joints");
    }
    EXPECT_EQ(Refusal(With(bytes, k_JointCountPlace, 2.0)), "the skeleton has another number of joints");
}

TEST(PoseFile, What_stands_behind_the_poses_is_refused)
{
    Bytes bytes = bake::EncodePoses(Poses());
    bytes.push_back(0);
    EXPECT_EQ(Refusal(bytes), "there is more than the poses") << "behind the chunk";
    EXPECT_EQ(Refusal(With(bytes, 8, static_cast<std::uint32_t>(bytes.size() - k_HeaderSize))),
              "there is more than the poses")
        << "in the chunk";
    Bytes twice = bake::EncodePoses(Poses());
    Bytes const once = twice;
    twice.insert(twice.end(), once.begin(), once.end());
    EXPECT_EQ(Refusal(twice), "there is more than the poses");
}

TEST(PoseFile, A_time_of_a_frame_that_cannot_be_right_is_refused)
{
    Bytes const bytes = bake::EncodePoses(Poses());
    for (double const time : {0.0, -0.0, -1.0, 1.0000001e12, k_Infinity, -k_Infinity, k_Nan})
    {
        EXPECT_EQ(Refusal(With(bytes, k_FrameTimePlace, time)), "the time of a frame cannot be right") << time;
    }
}

TEST(PoseFile, Numbers_that_are_none_or_too_large_are_refused_with_their_place)
{
    Bytes const bytes = bake::EncodePoses(Poses());
    double const above = std::nextafter(4e12, 1e13);
    for (double const number : {k_Nan, -k_Nan, k_Infinity, -k_Infinity, above, -above})
    {
        for (std::size_t axis = 0; axis < 3; ++axis)
        {
            for (std::size_t const place : {k_TranslationPlace, k_AnglesPlace})
            {
                EXPECT_EQ(Refusal(With(bytes, PlaceOfPose(4) + place + 8 * axis, number)),
                          "frame 1, joint \"child\": a number is too large, or none");
                EXPECT_EQ(Refusal(With(bytes, PlaceOfPose(0) + place + 8 * axis, number)),
                          "frame 0, joint \"root\": a number is too large, or none");
            }
            if (!std::isnan(number))
            {
                EXPECT_EQ(Refusal(With(bytes, PlaceOfPose(3) + k_ScalingPlace + 8 * axis, number)),
                          "frame 1, joint \"root\": a number is too large, or none");
            }
        }
    }
    EXPECT_EQ(Refusal(With(bytes, PlaceOfPose(4) + k_TranslationPlace, 4e12)), "");
    EXPECT_EQ(Refusal(With(bytes, PlaceOfPose(4) + k_AnglesPlace, -4e12)), "");
    EXPECT_EQ(Refusal(With(bytes, PlaceOfPose(3) + k_ScalingPlace, 4e12)), "");
}

// A transformation takes a factor that is no number for the least one.
TEST(PoseFile, A_scale_of_a_root_that_is_no_number_is_the_least)
{
    Bytes const bytes = With(bake::EncodePoses(Poses()), PlaceOfPose(0) + k_ScalingPlace, k_Nan);
    EXPECT_EQ(Decode(bytes).poses.Frame(0)[0].scaling.X, -1e-12);
}

TEST(PoseFile, Only_a_root_can_be_scaled)
{
    Bytes const bytes = bake::EncodePoses(Poses());
    for (double const factor : {-1.0, 2.0, std::nextafter(1.0, 2.0), k_Nan, 0.0})
    {
        for (std::size_t axis = 0; axis < 3; ++axis)
        {
            EXPECT_EQ(Refusal(With(bytes, PlaceOfPose(1) + k_ScalingPlace + 8 * axis, factor)),
                      "frame 0, joint \"child\": only a root can be scaled");
            EXPECT_EQ(Refusal(With(bytes, PlaceOfPose(5) + k_ScalingPlace + 8 * axis, factor)),
                      "frame 1, joint \"child_end\": only a root can be scaled");
        }
    }
    clip::Skeleton two = Chain();
    two.joints[1].parent = clip::k_NoParent;
    SavedPoses const back = Decode(With(bytes, PlaceOfPose(1) + k_ScalingPlace, 2.0), two);
    EXPECT_EQ(back.poses.Frame(0)[1].scaling, Vector(2, 1, 1)) << "a second root";
}

TEST(PoseFile, A_damaged_transformation_is_named)
{
    Bytes const bytes = bake::EncodePoses(Poses());
    EXPECT_EQ(Refusal(With(bytes, PlaceOfPose(1), 'X')), "frame 0, joint \"child\": the transformation is damaged");
    EXPECT_EQ(Refusal(With(bytes, PlaceOfPose(5) + k_AnglesPlace - 1 - k_HeaderSize, 'X')),
              "frame 1, joint \"child_end\": the transformation is damaged");
    EXPECT_EQ(Refusal(With(bytes, PlaceOfPose(5) + 8, std::uint32_t{0xFFFFFFFF})),
              "frame 1, joint \"child_end\": the transformation is damaged");
}

TEST(PoseFile, Keeps_the_way_of_composition_and_refuses_a_mixture)
{
    Bytes const bytes = bake::EncodePoses(Poses(2, Composition::ByMatrix));
    EXPECT_EQ(bytes[PlaceOfPose(0) + k_ModePlace], 0);
    EXPECT_EQ(Decode(bytes).composition, Composition::ByMatrix);
    EXPECT_EQ(bake::EncodePoses(Poses())[PlaceOfPose(0) + k_ModePlace], 1);
    for (std::size_t i = 1; i < 6; ++i)
    {
        EXPECT_TRUE(Refusal(With(bytes, PlaceOfPose(i) + k_ModePlace, '\1'))
                        .ends_with("it composes in another way than those before"))
            << i;
    }
    EXPECT_EQ(Refusal(With(bytes, PlaceOfPose(0) + k_ModePlace, '\1')),
              "frame 0, joint \"child\": it composes in another way than those before");
}

/// A file of one frame of the chain, in which a transformation stands in the place of the root's.
Bytes FileWith(C3DTransfo & root)
{
    CMemoryStream * const stream = CMemoryStream::Create();
    CKVStreamHelper helper(stream);
    helper.ChunkWriteOpen(0x504F5345, 1);
    helper.PutDouble(1);
    helper.PutDouble(3);
    helper.PutDouble(0.1);
    root.Save(stream, 0);
    C3DTransfo().Save(stream, 0);
    C3DTransfo().Save(stream, 0);
    helper.ChunkWriteClose();
    Bytes bytes(stream->GetBytes().begin(), stream->GetBytes().end());
    stream->Release();
    return bytes;
}

TEST(PoseFile, A_scaling_orientation_is_refused)
{
    C3DTransfo root;
    root.SetScaling(1, 2, 3);
    EXPECT_EQ(Refusal(FileWith(root)), "");
    C3DRotation orientation;
    orientation.Set(C3DVector3Tpl<double>(0.1, 0.2, 0.3), E3DROTORDER_XYZ);
    root.SetScalingOrientation(orientation);
    EXPECT_EQ(Refusal(FileWith(root)), "frame 0, joint \"root\": a scaling orientation has no place in a pose");
}

TEST(PoseFile, Is_loaded_by_name)
{
    ScratchFolder scratch;
    std::filesystem::path const file = scratch.Path() / "poses.bin";
    SavedPoses const saved = Poses(5, Composition::ByMatrix);
    Bytes const bytes = bake::EncodePoses(saved);
    WriteText(file, std::string(bytes.begin(), bytes.end()));
    SavedPoses const back = bake::LoadPoses(file, Chain());
    EXPECT_TRUE(HaveSameBits(back.poses, saved.poses));
    EXPECT_EQ(back.composition, Composition::ByMatrix);
    WriteText(file, "");
    try
    {
        bake::LoadPoses(file, Chain());
        ADD_FAILURE() << "not refused";
    }
    catch (bake::PoseFileError const & error)
    {
        EXPECT_EQ(error.what(), file.string() + ": it does not start with poses, or does not hold all");
    }
    EXPECT_THROW(bake::LoadPoses(scratch.Path() / "missing.bin", Chain()), std::system_error);
}

} // namespace
