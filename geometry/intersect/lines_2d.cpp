#include "geometry/intersect/parameter_limits.h"
#include "math/line_intersection.h"
#include "math/platform/result.h"
#include "math/vector_geometry.h"

#include <cmath>

using namespace math::detail; // NOLINT(google-build-using-namespace): limits of parameters and kinds of contact
using Vector2 = C3DVector2Tpl<double>;

namespace
{

/// Whether the segment from c to d, on the line through a along u, reaches into that from a to a + u.
bool DoCollinearSegmentsOverlap(Vector2 const & a, Vector2 const & u, Vector2 const & c, Vector2 const & d)
{
    bool const isByX = std::abs(u.X) >= math::detail::k_CoarseTolerance;
    double const atC = isByX ? (c.X - a.X) / u.X : (c.Y - a.Y) / u.Y;
    double const atD = isByX ? (d.X - a.X) / u.X : (d.Y - a.Y) / u.Y;
    return (atC >= -k_ParameterSlack || atD >= -k_ParameterSlack) && !(atC > k_JustAboveOne && atD > k_JustAboveOne);
}

} // namespace

long F3DWorld2DLineVs2DLineIntersection(Vector2 const & a, Vector2 const & b, Vector2 const & c, Vector2 const & d,
                                        unsigned long & flags, tagS3DGEOMINFO * info, double denominatorLimit,
                                        double collinearLimit)
{
    Vector2 const u = Vector2().Sub(b, a);
    Vector2 const w = Vector2().Sub(d, c);
    Vector2 const r = Vector2().Sub(a, c);
    double const denominator = GetCross(w, u);
    double const numerator1 = GetCross(r, w);
    double const numerator2 = GetCross(u, r);
    if (std::abs(denominator) >= denominatorLimit)
    {
        flags = k_Intersecting;
        if (info != nullptr)
        {
            double const t = numerator1 / denominator;
            info->u = t;
            info->v = numerator2 / denominator;
            info->position.Set(a.X + t * u.X, a.Y + t * u.Y, 0);
        }
        return S_OK;
    }
    if (std::abs(numerator1) >= collinearLimit || std::abs(numerator2) >= collinearLimit)
    {
        flags = k_ParallelApart;
        return S_FALSE;
    }
    bool const doOverlap = DoCollinearSegmentsOverlap(a, u, c, d);
    flags = doOverlap ? k_Coincident : k_NoContact;
    return doOverlap ? S_OK : S_FALSE;
}
