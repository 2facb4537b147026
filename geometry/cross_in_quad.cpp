#include "math/cross_in_quad.h"

#include "geometry/intersect/parameter_limits.h"
#include "math/platform/result.h"
#include "math/polynomial_roots.h"
#include "math/vector_geometry.h"

using Vector2 = C3DVector2Tpl<double>;

namespace
{

bool IsParameter(double t)
{
    return t > -math::detail::k_ParameterSlack && t < math::detail::k_JustAboveOne;
}

/// The parameter t for which the point lies on the line between base + t along and its image on the opposite edge.
///
/// \param base,along a corner and the edge along which t runs
/// \param across the other edge at the corner
/// \param skew by how much the opposite edge differs from `along`
/// \return 0; `E_FAIL` where t has no value in 0 to 1
long FindParameter(Vector2 const & base, Vector2 const & along, Vector2 const & across, Vector2 const & skew,
                   Vector2 const & point, double & t)
{
    Vector2 const offset = Vector2().Sub(point, base);
    double const a = GetCross(skew, along);
    double const b = skew.Y * offset.X + across.Y * along.X - skew.X * offset.Y - across.X * along.Y;
    double const c = GetCross(across, offset);
    double roots[2] = {0, 0};
    tagE3D_QUAD_ROOT_CODE code = E3D_QUAD_NO_ROOT;
    long const result = F3DFindQuadraticRoots(a, b, c, &code, roots);
    if (result < 0)
    {
        return result;
    }
    if (code == E3D_QUAD_ANY_VALUE)
    {
        t = 0.5;
        return S_OK;
    }
    int const rootCount = code; // none, one or two
    for (int i = 0; i < rootCount; ++i)
    {
        if (IsParameter(roots[i]))
        {
            t = roots[i];
            return S_OK;
        }
    }
    return E_FAIL;
}

} // namespace

long F3DFindCrossInQuad(C3DPlane const & /*plane*/, Vector2 const * const quad, Vector2 const & point, double * u,
                        double * v)
{
    // The edges in their order around, so that opposite ones run against each other.
    Vector2 const edge01 = Vector2().Sub(quad[1], quad[0]);
    Vector2 const edge12 = Vector2().Sub(quad[2], quad[1]);
    Vector2 const edge23 = Vector2().Sub(quad[3], quad[2]);
    Vector2 const edge30 = Vector2().Sub(quad[0], quad[3]);
    Vector2 const edge03 = Vector2().Sub(quad[3], quad[0]);
    Vector2 const edge10 = Vector2().Sub(quad[0], quad[1]);
    long const result = FindParameter(quad[0], edge01, edge03, Vector2().Add(edge23, edge01), point, *u);
    if (result != S_OK)
    {
        return result;
    }
    return FindParameter(quad[1], edge12, edge10, Vector2().Add(edge30, edge12), point, *v);
}
