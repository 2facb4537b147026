#include "geometry/intersect/contact_array.h"
#include "math/line_intersection.h"
#include "math/platform/result.h"
#include "math/polynomial_roots.h"
#include "math/rotation.h"
#include "rotation/angle_constants.h"

#include <cmath>

using namespace math::detail; // NOLINT(google-build-using-namespace): tolerances and kinds of contact
using Vector = C3DVector3Tpl<double>;
using Vector2 = C3DVector2Tpl<double>;

namespace
{

/// What is found in the plane of the circle, about its center.
struct PlaneContacts
{
    Vector2 points[2];
    unsigned int count;
    unsigned long flags;
};

/// A line across the plane of the circle.
PlaneContacts CrossPlane(Vector const & p, Vector const & q, double radius, double distanceLimit)
{
    Vector point;
    double const t = -p.Z / (q.Z - p.Z);
    point.Sub(q, p).Mul(t).Add(p);
    if (std::abs(point.X) < k_StandardTolerance<double> && std::abs(point.Y) < distanceLimit)
    {
        return {{}, 0, k_ThroughCenter};
    }
    double const squaredGap = point.X * point.X + point.Y * point.Y - radius * radius;
    bool const isMiss = std::abs(squaredGap) >= distanceLimit;
    return {{Vector2(point.X, point.Y)}, 1, isMiss ? k_NoContact : k_Intersecting};
}

/// A line along the plane of the circle: its points at the circle's distance from the center, or else the nearest one.
/// \return false where the line has no length in the plane
bool RunAlongPlane(Vector const & p, Vector const & q, double radius, double distanceLimit, PlaneContacts & contacts)
{
    Vector2 const start(p.X, p.Y);
    Vector2 const d(q.X - p.X, q.Y - p.Y);
    double const a = d.GetSquaredLength();
    if (!(a >= k_StandardTolerance<double>))
    {
        return false;
    }
    double const b = 2 * Dot(start, d);
    double roots[2] = {0, 0};
    tagE3D_QUAD_ROOT_CODE code = E3D_QUAD_NO_ROOT;
    F3DFindQuadraticRoots(a, b, start.GetSquaredLength() - radius * radius, &code, roots);
    contacts.flags = std::abs(p.Z) >= distanceLimit ? k_NoContact : k_Intersecting;
    contacts.count = code == E3D_QUAD_TWO_ROOTS ? 2 : 1;
    if (code == E3D_QUAD_NO_ROOT)
    {
        contacts.flags = k_NoContact;
        roots[0] = -b / (2 * a);
    }
    for (unsigned int i = 0; i < contacts.count; ++i)
    {
        contacts.points[i].Mul(d, roots[i]).Add(start);
    }
    return true;
}

/// The point of the circle in the direction of a contact.
void FillRecord(tagS3DGEOMINFO & record, Vector2 const & point, C3DBaseCircle const & circle, C3DRotation & toPlane)
{
    Vector center;
    double radius = 0;
    circle.GetCenter(center);
    circle.GetRadius(radius);
    double const angle = std::atan2(point.Y, point.X);
    Vector local(radius * std::cos(angle), radius * std::sin(angle), 0);
    toPlane.InvRotateVct(local, local);
    record.position.Add(center, local);
    circle.GetNormal(record.normal);
    record.u = (angle < 0 ? angle + k_TwoPi : angle) / k_TwoPi;
}

} // namespace

long F3DWorldCircleVsLineIntersection(C3DBaseCircle const & circle, Vector const & p, Vector const & q,
                                      unsigned long & flags, unsigned int & count, tagS3DGEOMINFO ** infos,
                                      double parallelLimit, double distanceLimit)
{
    Vector center;
    Vector normal;
    double radius = 0;
    circle.GetCenter(center);
    circle.GetNormal(normal);
    circle.GetRadius(radius);
    if (radius < k_StandardTolerance<double>)
    {
        return E_INVALIDARG;
    }
    C3DRotation toPlane;
    int degenerate = 0;
    toPlane.Set(normal, Vector(0, 0, 1), degenerate);
    Vector localP;
    Vector localQ;
    toPlane.RotateVct(localP.Sub(p, center), localP);
    toPlane.RotateVct(localQ.Sub(q, center), localQ);
    double const length = localP.GetLength();
    if (!(length >= k_StandardTolerance<double>))
    {
        return E_INVALIDARG;
    }
    PlaneContacts contacts{};
    if (std::abs((localP.Z - localQ.Z) / length) > parallelLimit)
    {
        contacts = CrossPlane(localP, localQ, radius, distanceLimit);
    }
    else if (!RunAlongPlane(localP, localQ, radius, distanceLimit, contacts))
    {
        return E_INVALIDARG;
    }
    flags = contacts.flags;
    count = contacts.count;
    if (count == 0)
    {
        return S_FALSE;
    }
    if (infos == nullptr)
    {
        return S_OK;
    }
    tagS3DGEOMINFO * const records = AllocateContacts(count);
    if (records == nullptr)
    {
        return E_OUTOFMEMORY;
    }
    *infos = records;
    for (unsigned int i = 0; i < count; ++i)
    {
        FillRecord(records[i], contacts.points[i], circle, toPlane);
    }
    return S_OK;
}
