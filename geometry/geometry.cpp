#include "math/geometry.h"

#include "math/box.h"
#include "math/platform/result.h"
#include "math/point.h"
#include "math/sphere.h"

#include <type_traits>

static_assert(sizeof(tagS3DGEOMINFO) == 9 * sizeof(double));
static_assert(std::is_standard_layout_v<tagS3DGEOMINFO> && std::is_trivially_copyable_v<tagS3DGEOMINFO>);

C3DMathGeometry::C3DMathGeometry() : C3DMathGeometry(E3DGEOMTYPE_NONE) {}

C3DMathGeometry::C3DMathGeometry(e3dBaseGeomType type) : m_Type(type) {}

C3DMathGeometry::C3DMathGeometry(C3DMathGeometry const & other) = default;

C3DMathGeometry & C3DMathGeometry::operator=(C3DMathGeometry const & other) = default;

C3DMathGeometry::~C3DMathGeometry() = default;

long C3DMathGeometry::GetType(e3dBaseGeomType & type) const
{
    type = m_Type;
    return S_OK;
}

long C3DMathGeometry::Intersect_All(I3DPose_QN * const pose, C3DMathGeometry const & other,
                                    I3DPose_QN * const otherPose, unsigned long & flags, tagS3DGEOMINFO * info,
                                    double tolerance, double unused) const
{
    switch (other.m_Type)
    {
    case E3DGEOMTYPE_POINT:
        return Intersect_Point(pose, static_cast<C3DPoint const &>(other), otherPose, flags, info, tolerance, unused);
    case E3DGEOMTYPE_BOX:
        return Intersect_Box(pose, static_cast<C3DBaseBox const &>(other), otherPose, flags, info, tolerance, unused);
    case E3DGEOMTYPE_SPHERE:
        return Intersect_Sphere(pose, static_cast<C3DBaseSphere const &>(other), otherPose, flags, info, tolerance,
                                unused);
    default:
        flags = math::detail::k_NoContact;
        return E_NOTIMPL;
    }
}

namespace math::detail
{

long PartialGeometry::Intersect_Point(I3DPose_QN * const /*pose*/, C3DPoint const & /*other*/,
                                      I3DPose_QN * const /*otherPose*/, unsigned long & /*flags*/,
                                      tagS3DGEOMINFO * /*info*/, double /*tolerance*/, double /*unused*/) const
{
    return E_NOTIMPL;
}

long PartialGeometry::Intersect_Sphere(I3DPose_QN * const /*pose*/, C3DBaseSphere const & /*other*/,
                                       I3DPose_QN * const /*otherPose*/, unsigned long & /*flags*/,
                                       tagS3DGEOMINFO * /*info*/, double /*tolerance*/, double /*unused*/) const
{
    return E_NOTIMPL;
}

long PartialGeometry::Intersect_Box(I3DPose_QN * const /*pose*/, C3DBaseBox const & /*other*/,
                                    I3DPose_QN * const /*otherPose*/, unsigned long & /*flags*/,
                                    tagS3DGEOMINFO * /*info*/, double /*tolerance*/, double /*unused*/) const
{
    return E_NOTIMPL;
}

} // namespace math::detail
