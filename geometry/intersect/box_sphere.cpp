#include "math/box_intersection.h"
#include "math/platform/result.h"

#include <algorithm>

using Vector = C3DVector3Tpl<double>;

namespace
{

/// A sphere and a box on one axis, on the side of the sphere's center.
struct AxisContact
{
    AxisContact(double c, double r, double min, double max)
        : sign(c <= 0 ? -1 : 1), inward(c <= 0 ? c + r : c - r), side(c <= 0 ? min : max), offset(c - side),
          isNear(c <= 0 ? inward - min >= 0 : inward - max <= 0), isInside(c >= min && c <= max)
    {
    }

    double sign;   ///< outwards
    double inward; ///< the sphere's innermost coordinate
    double side;   ///< the face
    double offset; ///< of the center from it
    bool isNear;   ///< the sphere reaches inwards past the face
    bool isInside; ///< the center lies in the bounds
};

constexpr unsigned k_X = 1;
constexpr unsigned k_Y = 2;
constexpr unsigned k_Z = 4;

/// The axes of the edge or corner that the sphere may touch, in the order in which they are looked for; 0 for none.
unsigned FindEdgeOrCorner(AxisContact const & x, AxisContact const & y, AxisContact const & z)
{
    if (x.isNear && y.isNear && z.isInside)
    {
        return k_X | k_Y;
    }
    if (y.isNear && z.isNear && x.isInside)
    {
        return k_Y | k_Z;
    }
    if (!x.isNear)
    {
        return 0;
    }
    if (z.isNear && y.isInside)
    {
        return k_X | k_Z;
    }
    return y.isNear && z.isNear ? k_X | k_Y | k_Z : 0;
}

void MeetEdgeOrCorner(AxisContact const (&contacts)[3], unsigned axes, double r, unsigned long & flags,
                      tagS3DGEOMINFO * info)
{
    Vector offset(0, 0, 0);
    Vector normal(0, 0, 0);
    for (unsigned i = 0; i < 3; ++i)
    {
        if ((axes >> i & 1) != 0)
        {
            offset[i] = contacts[i].offset;
            normal[i] = contacts[i].sign;
        }
    }
    double const distance = offset.GetLength();
    bool const isContact = distance <= r;
    flags = isContact ? math::detail::k_Intersecting : math::detail::k_NoContact;
    if (info == nullptr)
    {
        return;
    }
    info->distance = distance - r;
    if (isContact)
    {
        normal.Normalize();
        info->normal = normal;
        for (unsigned i = 0; i < 3; ++i)
        {
            info->position[i] = (axes >> i & 1) != 0 ? contacts[i].side : info->position[i];
        }
    }
}

/// The sphere meets the face of an axis.
void FillFaceContact(AxisContact const & contact, double min, double max, unsigned axis, tagS3DGEOMINFO & info)
{
    info.position[axis] = contact.inward;
    info.normal[axis] = contact.sign;
    info.distance = contact.inward >= 0 ? contact.inward - max : min - contact.inward;
}

} // namespace

long F3DLocalBoxVsSphereIntersection(Vector const & min, Vector const & max, Vector const & center, double radius,
                                     unsigned long & flags, tagS3DGEOMINFO * info, double tol)
{
    double const r = radius - tol;
    AxisContact const contacts[3] = {
        {center.X, r, min.X, max.X}, {center.Y, r, min.Y, max.Y}, {center.Z, r, min.Z, max.Z}};
    auto const & [x, y, z] = contacts;
    flags = math::detail::k_NoContact;
    bool const isCentered[3] = {x.isNear && y.isInside && z.isInside, y.isNear && x.isInside && z.isInside,
                                z.isNear && x.isInside && y.isInside};
    for (unsigned axis = 0; axis < 3; ++axis)
    {
        if (isCentered[axis])
        {
            flags = math::detail::k_Intersecting;
            if (info != nullptr)
            {
                FillFaceContact(contacts[axis], min[axis], max[axis], axis, *info);
            }
            return S_OK;
        }
    }
    if (!x.isNear && !y.isNear && !z.isNear)
    {
        if (info != nullptr)
        {
            info->distance = std::min({x.inward, y.inward, z.inward});
        }
        return S_OK;
    }
    if (unsigned const axes = FindEdgeOrCorner(x, y, z); axes != 0)
    {
        MeetEdgeOrCorner(contacts, axes, r, flags, info);
    }
    return S_OK;
}
