#include "geometry/intersect/gap.h"
#include "geometry/vector_expressions.h"
#include "math/platform/pose.h"
#include "math/platform/result.h"
#include "math/point_sphere_intersection.h"
#include "math/sphere.h"
#include "math/transformation_matrix.h"
#include "matrix/try_allocate.h"

#include <cstdint>

using math::detail::SphereGap;
using Vector = C3DVector3Tpl<double>;

namespace
{

constexpr double k_LocationTolerance = 1e-12;

/// How many points are of which kind. 16 bits each: 65536 points of a kind count as none.
class LocationCounts
{
public:
    void Add(unsigned long location)
    {
        switch (location)
        {
        case math::detail::k_NoContact:
            ++m_Outside;
            break;
        case math::detail::k_Touching:
            ++m_On;
            break;
        default:
            ++m_Inside;
        }
    }

    unsigned long Flags() const
    {
        if (m_Inside != 0)
        {
            if (m_Outside != 0)
            {
                return math::detail::k_Intersecting;
            }
            return m_On != 0 ? math::detail::k_Inside | math::detail::k_Touching : math::detail::k_Inside;
        }
        if (m_On == 0)
        {
            return math::detail::k_NoContact;
        }
        return m_Outside != 0 ? math::detail::k_Touching | math::detail::k_NoContact : math::detail::k_Coincident;
    }

private:
    std::uint16_t m_Inside = 0;
    std::uint16_t m_On = 0;
    std::uint16_t m_Outside = 0;
};

/// The kind of an array of points, each of which `look` is shown with its number, kind and gap.
template <typename Look>
unsigned long Locate(C3DBaseSphere const & sphere, Vector const * points, unsigned long count, Look look)
{
    Vector center;
    double radius = 0;
    sphere.GetCenter(center);
    sphere.GetRadius(radius);
    LocationCounts counts;
    for (unsigned long i = 0; i < count; ++i)
    {
        SphereGap const point(points[i], center, radius);
        unsigned long const location = point.Classify(k_LocationTolerance);
        counts.Add(location);
        look(i, location, point);
    }
    return counts.Flags();
}

} // namespace

long C3DBaseSphere::GetPointLocation(I3DPose_QN * const /*pose*/, Vector const & point, unsigned long & flags,
                                     Vector & offset)
{
    return F3DWorldPointVsSphereIntersection(point, m_Center, m_Radius, flags, offset, k_LocationTolerance);
}

long C3DBaseSphere::GetPrimitiveLocation(I3DPose_QN * const /*pose*/, Vector * points, unsigned long & flags,
                                         unsigned long count)
{
    flags = Locate(*this, points, count, [](unsigned long, unsigned long, SphereGap const &) {});
    return S_OK;
}

long C3DBaseSphere::CheckPrimitiveInclusion(I3DPose_QN * const /*pose*/, Vector * points, unsigned long count,
                                            unsigned long & flags, Vector & worst)
{
    SphereGap farthest{Vector(0, 0, 0), Vector(0, 0, 0), 0};
    flags = Locate(*this, points, count,
                   [&](unsigned long, unsigned long location, SphereGap const & point)
                   {
                       if (location == math::detail::k_NoContact && point.gap > farthest.gap)
                       {
                           farthest = point;
                       }
                   });
    worst = farthest.offset;
    return S_OK;
}

long C3DBaseSphere::CheckPrimitiveExclusion(I3DPose_QN * const /*pose*/, Vector * points, unsigned long & flags,
                                            Vector & worst, unsigned long count)
{
    SphereGap deepest{Vector(0, 0, 0), Vector(0, 0, 0), 0};
    flags = Locate(*this, points, count,
                   [&](unsigned long, unsigned long location, SphereGap const & point)
                   {
                       if (location != math::detail::k_NoContact && !(point.gap > deepest.gap))
                       {
                           deepest = point;
                       }
                   });
    worst = deepest.offset;
    return S_OK;
}

long C3DBaseSphere::CheckPrimitiveOnSurface(I3DPose_QN * const /*pose*/, Vector * points, unsigned long & flags,
                                            Vector & worst, unsigned long count)
{
    SphereGap nearest{Vector(0, 0, 0), Vector(0, 0, 0), 0};
    flags = Locate(*this, points, count,
                   [&](unsigned long i, unsigned long, SphereGap const & point)
                   {
                       if (i == 0 || point.gap < nearest.gap)
                       {
                           nearest = point;
                       }
                   });
    worst = nearest.offset;
    return S_OK;
}

long C3DBaseSphere::IsPrimitiveLarger(Vector const & reference, Vector * points, I3DPose_QN * pose,
                                      unsigned long & flags, unsigned long count)
{
    if (points == nullptr)
    {
        return E_POINTER;
    }
    auto const moved = math::detail::TryAllocate<Vector>(count);
    if (moved == nullptr)
    {
        return E_OUTOFMEMORY;
    }
    for (unsigned long i = 0; i < count; ++i)
    {
        moved[i].Sub(points[i], reference);
    }
    return GetPrimitiveLocation(pose, moved.get(), flags, count);
}

int C3DBaseSphere::PointIsIncluded(I3DPose_QN * const pose, Vector const & point)
{
    C3DXfoMatTpl<double> toSphere;
    if (pose != nullptr)
    {
        C3DXfoMatTpl<double> const * matrix = nullptr;
        if (pose->GetGlobalMatrix(&matrix) < 0 || matrix == nullptr)
        {
            return 0;
        }
        toSphere.Invert(*matrix);
    }
    SphereGap const local(Vector().Mul(point, toSphere), Vector(0, 0, 0), m_Radius);
    return local.Classify(k_LocationTolerance) >= math::detail::k_Intersecting;
}
