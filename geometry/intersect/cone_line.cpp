#include "geometry/intersect/contact_array.h"
#include "math/line_intersection.h"
#include "math/platform/result.h"
#include "math/polynomial_roots.h"

#include <cmath>

using math::detail::k_StandardTolerance;
using Vector = C3DVector3Tpl<double>;

namespace
{

/// The parameters at which a line meets the double cone x^2 + y^2 = k z^2.
struct ConeRoots
{
    double t[2];
    unsigned int count; ///< 0 where the line lies in the surface, or the equation is linear without a root
};

ConeRoots FindConeRoots(double k, Vector const & p, Vector const & d)
{
    double const a = d.X * d.X + d.Y * d.Y - k * d.Z * d.Z;
    double const b = 2 * (p.X * d.X + p.Y * d.Y - k * p.Z * d.Z);
    double const c = p.X * p.X + p.Y * p.Y - k * p.Z * p.Z;
    ConeRoots roots{{0, 0}, 0};
    tagE3D_QUAD_ROOT_CODE code = E3D_QUAD_NO_ROOT;
    long const result = F3DFindQuadraticRoots(a, b, c, &code, roots.t);
    if (code == E3D_QUAD_ANY_VALUE)
    {
        return roots;
    }
    if (result == S_OK)
    {
        roots.count = code == E3D_QUAD_TWO_ROOTS ? 2 : 1;
        return roots;
    }
    constexpr double limit = math::detail::k_LessAccurateTolerance<double>;
    if (!(std::abs(a) < limit))
    {
        // A line that misses is carried on where the equation comes nearest to zero.
        roots.t[0] = std::abs(b) >= limit ? -b / (2 * a) : 0;
        roots.count = 1;
    }
    return roots;
}

/// Drops the roots on the upper nappe, and keeps the order of the others.
void KeepLowerNappe(ConeRoots & roots, Vector const & p, Vector const & d)
{
    constexpr double apexLimit = 0.001;
    unsigned int kept = 0;
    for (unsigned int i = 0; i < roots.count; ++i)
    {
        if (!(p.Z + roots.t[i] * d.Z > apexLimit))
        {
            roots.t[kept] = roots.t[i];
            ++kept;
        }
    }
    roots.count = kept;
}

} // namespace

long F3DLocalConeVsLineIntersection(double radius, double height, Vector const & p, Vector const & q,
                                    unsigned long & flags, unsigned int & count, tagS3DGEOMINFO ** infos)
{
    constexpr double shortest = k_StandardTolerance<double>;
    Vector d;
    d.Sub(q, p);
    bool const isPoint = std::abs(d.X) < shortest && std::abs(d.Y) < shortest && std::abs(d.Z) < shortest;
    if (!(radius >= shortest) || !(height >= shortest) || isPoint)
    {
        return E_INVALIDARG;
    }
    flags = math::detail::k_OtherNappe;
    count = 0;
    if (infos != nullptr)
    {
        *infos = nullptr;
    }
    ConeRoots roots = FindConeRoots(radius * radius / (height * height), p, d);
    if (roots.count == 0)
    {
        flags = math::detail::k_Degenerate;
        return S_OK;
    }
    KeepLowerNappe(roots, p, d);
    if (roots.count == 0)
    {
        return S_OK;
    }
    flags = math::detail::k_Intersecting;
    count = roots.count;
    if (infos == nullptr)
    {
        return S_OK;
    }
    tagS3DGEOMINFO * const records = math::detail::AllocateContacts(count);
    if (records == nullptr)
    {
        return E_OUTOFMEMORY;
    }
    *infos = records;
    for (unsigned int i = 0; i < count; ++i)
    {
        records[i].position.LinearPositionInterpolate(p, q, roots.t[i]);
        records[i].u = roots.t[i];
    }
    return S_OK;
}
