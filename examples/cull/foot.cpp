#include "cull/foot.h"

#include "cull/rest_pose.h"

#include <algorithm>
#include <cmath>

namespace cull
{

namespace
{

using Vector = C3DVector3Tpl<double>;

constexpr double k_ToeShare = 1.0 / 20; ///< of the figure's height, within which the ends are toes
constexpr double k_FootShare = 1.0 / 5; ///< of the figure's height, within which a foot reaches up
constexpr double k_HeelShare = 1.0 / 5; ///< of the foot's length, to either side

bool IsSteep(Vector const & bone)
{
    return std::abs(bone.Y) >= std::hypot(bone.X, bone.Z);
}

class FootFinder
{
public:
    explicit FootFinder(clip::Skeleton const & skeleton) : m_Skeleton(skeleton), m_Rest(ComputeRestPose(skeleton))
    {
        auto const [lowest, highest] = std::minmax_element(
            m_Rest.begin(), m_Rest.end(), [](Vector const & a, Vector const & b) { return a.Y < b.Y; });
        m_Height = highest->Y - lowest->Y;
        m_Lowest = lowest->Y;
    }

    std::vector<Foot> Find() const
    {
        std::vector<int> const ends = clip::FindEnds(m_Skeleton);
        double lowestEnd = m_Rest[static_cast<std::size_t>(ends.front())].Y;
        for (int const end : ends)
        {
            lowestEnd = std::min(lowestEnd, m_Rest[static_cast<std::size_t>(end)].Y);
        }
        std::vector<Foot> feet;
        for (int const end : ends)
        {
            auto const toe = static_cast<std::size_t>(end);
            if (m_Rest[toe].Y <= lowestEnd + k_ToeShare * m_Height)
            {
                AddFoot(feet, toe);
            }
        }
        return feet;
    }

private:
    bool HasParent(std::size_t joint) const { return m_Skeleton.joints[joint].parent != clip::k_NoParent; }
    std::size_t ParentOf(std::size_t joint) const { return static_cast<std::size_t>(m_Skeleton.joints[joint].parent); }

    std::size_t FindAnkle(std::size_t toe) const
    {
        std::size_t ankle = ParentOf(toe);
        while (HasParent(ankle) && !IsSteep(m_Skeleton.joints[ankle].offset) &&
               m_Rest[ParentOf(ankle)].Y <= m_Lowest + k_FootShare * m_Height)
        {
            ankle = ParentOf(ankle);
        }
        return ankle;
    }

    double Length(std::size_t ankle, std::size_t toe) const { return GetDistance(m_Rest[ankle], m_Rest[toe]); }

    /// Adds the foot of a toe, unless its ankle has one that is as long.
    void AddFoot(std::vector<Foot> & feet, std::size_t toe) const
    {
        if (!HasParent(toe))
        {
            return;
        }
        std::size_t const ankle = FindAnkle(toe);
        if (!(Length(ankle, toe) > 0))
        {
            return;
        }
        auto const other =
            std::find_if(feet.begin(), feet.end(), [ankle](Foot const & foot) { return foot.ankle == ankle; });
        if (other == feet.end())
        {
            feet.push_back(MakeFoot(ankle, toe));
        }
        else if (Length(ankle, toe) > Length(ankle, other->toe))
        {
            *other = MakeFoot(ankle, toe);
        }
    }

    /// In the rest pose every joint's frame is that of the world.
    Foot MakeFoot(std::size_t ankle, std::size_t toe) const
    {
        Vector way;
        way.Sub(m_Rest[toe], m_Rest[ankle]);
        double const drop = IsSteep(way) ? 0 : way.Y;
        double const level = std::hypot(way.X, way.Z);
        // A foot that points straight down is as wide in X as any.
        Vector const aside = level > 0 ? Vector(way.Z / level, 0, -way.X / level) : Vector(1, 0, 0);
        double const width = k_HeelShare * way.GetLength();
        return {ankle,
                toe,
                {Vector(width * aside.X, drop, width * aside.Z), Vector(-width * aside.X, drop, -width * aside.Z)}};
    }

    clip::Skeleton const & m_Skeleton;
    std::vector<Vector> m_Rest;
    double m_Lowest;
    double m_Height;
};

} // namespace

std::vector<Foot> FindFeet(clip::Skeleton const & skeleton)
{
    return FootFinder(skeleton).Find();
}

std::vector<SoleMotion> ComputeSoles(std::vector<Foot> const & feet, clip::Skeleton const & skeleton,
                                     clip::PoseTrack const & poses)
{
    std::vector<SoleMotion> soles(feet.size(), SoleMotion(poses.FrameCount()));
    clip::SkeletonPose pose(skeleton, clip::Composition::ByComponent);
    for (std::size_t frame = 0; frame < poses.FrameCount(); ++frame)
    {
        pose.Set(poses.Frame(frame));
        for (std::size_t i = 0; i < feet.size(); ++i)
        {
            Sole & sole = soles[i][frame];
            pose.World(feet[i].toe).GetMatrix()->GetTranslation(sole[0]);
            C3DXfoMatTpl<double> const & ankle = *pose.World(feet[i].ankle).GetMatrix();
            sole[1].Mul(feet[i].heel[0], ankle);
            sole[2].Mul(feet[i].heel[1], ankle);
        }
    }
    return soles;
}

} // namespace cull
