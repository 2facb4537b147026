#include "math/vector_geometry.h"

#include <algorithm>
#include <array>
#include <limits>

namespace
{

template <typename T>
C3DVector3Tpl<T> Difference(C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b)
{
    return C3DVector3Tpl<T>().Sub(a, b);
}

template <typename T>
C3DVector2Tpl<T> Difference(C3DVector2Tpl<T> const & a, C3DVector2Tpl<T> const & b)
{
    return C3DVector2Tpl<T>().Sub(a, b);
}

/// The limit on the product of two lengths where the angle functions take none from the caller. The `float` forms have
/// no guard against null vectors: their limit is the low word of the `double` 1e-12 read as a `float`, which is
/// negative, and no product of lengths is below it.
template <typename T>
constexpr T k_ImpliedLengthLimit = T(1e-12);
template <>
constexpr float k_ImpliedLengthLimit<float> = -3.1943016e-38F;

/// How well a point fits on an edge of a triangle whose interior is of no use.
template <typename T>
struct EdgeFit
{
    int rating;              ///< 0 beyond the ends of the edge, 1 along it, 2 along a preferred edge.
    T squaredDistance;       ///< From the point to its place on the line of the edge.
    std::array<T, 3> weight; ///< The place, as coordinates of the three vertices.

    bool IsBetterThan(EdgeFit const & other) const
    {
        return rating > other.rating || (rating == other.rating && squaredDistance < other.squaredDistance);
    }
};

/// The parameter of p on the line from `origin` along d, read on the axis on which d is longer; 0 where d is null.
template <typename T>
T ParameterOnEdge(C3DVector2Tpl<T> const & p, C3DVector2Tpl<T> const & origin, C3DVector2Tpl<T> const & d, T epsilon)
{
    if (std::abs(d.X) > epsilon && std::abs(d.X) > std::abs(d.Y))
    {
        return (p.X - origin.X) / d.X;
    }
    return std::abs(d.Y) > epsilon ? (p.Y - origin.Y) / d.Y : T(0);
}

/// Fits p on the edge that ends at the vertex `end` and starts at the one before it.
template <typename T>
EdgeFit<T> FitOnEdge(C3DVector2Tpl<T> const & p, std::array<C3DVector2Tpl<T>, 3> const & vertices, unsigned long end,
                     T epsilon, unsigned long preferredVertex)
{
    unsigned long const start = (end + 2) % 3;
    C3DVector2Tpl<T> const d = Difference(vertices[end], vertices[start]);
    T const t = ParameterOnEdge(p, vertices[start], d, epsilon);
    bool const isBeyond = t < -epsilon || t > T(1) + epsilon;
    bool const isPreferred = preferredVertex == start || preferredVertex == end;

    EdgeFit<T> fit{};
    fit.rating = isBeyond ? 0 : (isPreferred ? 2 : 1);
    fit.squaredDistance =
        GetSquaredDistance(p, C3DVector2Tpl<T>(vertices[start].X + t * d.X, vertices[start].Y + t * d.Y));
    fit.weight[start] = T(1) - t;
    fit.weight[end] = t;
    return fit;
}

template <typename T>
EdgeFit<T> FitOnBestEdge(C3DVector2Tpl<T> const & p, std::array<C3DVector2Tpl<T>, 3> const & vertices, T epsilon,
                         unsigned long preferredVertex)
{
    EdgeFit<T> best{0, std::numeric_limits<T>::max(), {}};
    for (unsigned long end = 0; end < 3; ++end)
    {
        EdgeFit<T> const fit = FitOnEdge(p, vertices, end, epsilon, preferredVertex);
        if (fit.IsBetterThan(best))
        {
            best = fit;
        }
    }
    return best;
}

} // namespace

template <typename T>
T GetVctsCosAngle(C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b, std::type_identity_t<T> epsilon)
{
    T const lengths = a.GetLength() * b.GetLength();
    if (lengths < epsilon)
    {
        return 1;
    }
    T const cosine = math::detail::Dot(a, b) / lengths;
    // A NaN goes the way of the values that rounding has taken below -1.
    if (!(cosine >= T(-1)))
    {
        return -1;
    }
    return std::min(cosine, T(1));
}

template <typename T>
T GetVctsAngle(C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b, std::type_identity_t<T> epsilon)
{
    return std::acos(GetVctsCosAngle(a, b, epsilon));
}

template <typename T>
T GetPntsCosAngle(C3DVector3Tpl<T> const & o, C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b)
{
    return GetVctsCosAngle(Difference(a, o), Difference(b, o), k_ImpliedLengthLimit<T>);
}

template <typename T>
T GetPntsAngle(C3DVector3Tpl<T> const & o, C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b)
{
    return GetVctsAngle(Difference(a, o), Difference(b, o), k_ImpliedLengthLimit<T>);
}

template <typename T>
T Get2DVctsAngleSigned(C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b)
{
    T const angle = GetVctsAngle(a, b, k_ImpliedLengthLimit<T>);
    return b.Y * a.X - a.Y * b.X < 0 ? -angle : angle;
}

template <typename T>
T Get2DPntsAngleSigned(C3DVector3Tpl<T> const & o, C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b)
{
    return Get2DVctsAngleSigned(Difference(a, o), Difference(b, o));
}

template <typename T>
int Get2DPntSide(C3DVector3Tpl<T> const & /*p*/, C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b)
{
    // The two products of a side test, both built from b - a: their difference is 0, or a NaN where they are not
    // finite.
    return std::isfinite((b.Y - a.Y) * (b.X - a.X)) ? 1 : -1;
}

template <typename T>
int ArePntsCollinear(C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b, C3DVector3Tpl<T> const & c,
                     std::type_identity_t<T> epsilon)
{
    C3DVector3Tpl<double> const wideA(a.X, a.Y, a.Z);
    C3DVector3Tpl<double> const u = Difference(wideA, C3DVector3Tpl<double>(b.X, b.Y, b.Z));
    C3DVector3Tpl<double> const w = Difference(wideA, C3DVector3Tpl<double>(c.X, c.Y, c.Z));
    double const sine = C3DVector3Tpl<double>().SetCross(w, u).GetLength() / (u.GetLength() * w.GetLength());
    // Coincident points make the quotient a NaN, and collinear.
    return !(sine >= static_cast<double>(epsilon));
}

template <typename T>
int ArePntsColinearUsingDistance(C3DVector2Tpl<T> const & a, C3DVector2Tpl<T> const & b, C3DVector2Tpl<T> const & c,
                                 std::type_identity_t<T> epsilon)
{
    std::array<C3DVector2Tpl<T>, 3> const edge{Difference(b, a), Difference(c, b), Difference(a, c)};
    std::array<T, 3> const squaredLength{edge[0].GetSquaredLength(), edge[1].GetSquaredLength(),
                                         edge[2].GetSquaredLength()};
    T const limit = epsilon * epsilon;
    if (std::any_of(squaredLength.begin(), squaredLength.end(), [limit](T l) { return l < limit; }))
    {
        return 1;
    }
    for (unsigned int i = 0; i < 3; ++i)
    {
        unsigned int const next = (i + 1) % 3;
        if (squaredLength[i] >= squaredLength[next] && squaredLength[i] >= squaredLength[(i + 2) % 3])
        {
            T const along = math::detail::Dot(edge[next], edge[i]) / squaredLength[i];
            C3DVector2Tpl<T> const height = Difference(edge[next], C3DVector2Tpl<T>().Mul(edge[i], along));
            return height.GetSquaredLength() < limit;
        }
    }
    // Only NaNs leave no longest edge.
    return 1;
}

template <typename T>
int FSegmentIntersect(C3DVector2Tpl<T> const & /*a*/, C3DVector2Tpl<T> const & /*b*/, C3DVector2Tpl<T> const & /*c*/,
                      C3DVector2Tpl<T> const & /*d*/)
{
    return 0;
}

template <typename T>
void GetBarycentricCoords(C3DVector3Tpl<T> const & p, C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b,
                          C3DVector3Tpl<T> const & c, T & u, T & v, T & w)
{
    T const areaU = GetTriangleArea(p, b, c);
    T const areaV = GetTriangleArea(p, c, a);
    T const areaW = GetTriangleArea(p, a, b);
    T const sum = areaU + areaV + areaW;
    // Without any area there is nothing to divide by, and the three zeros are the result.
    T const scale = sum != 0 ? T(1) / sum : T(0);
    u = areaU * scale;
    v = areaV * scale;
    w = areaW * scale;
}

template <typename T>
int GetBarycentricCoords(C3DVector2Tpl<T> const & p, C3DVector2Tpl<T> const & a, C3DVector2Tpl<T> const & b,
                         C3DVector2Tpl<T> const & c, T & u, T & v, T & w, std::type_identity_t<T> epsilon,
                         unsigned long vertex)
{
    T const areaU = T(0.5) * math::detail::TwiceSignedArea(b, c, p);
    T const areaV = T(0.5) * math::detail::TwiceSignedArea(c, a, p);
    T const areaW = T(0.5) * math::detail::TwiceSignedArea(a, b, p);
    T const sum = areaU + areaV + areaW;
    if (sum > epsilon)
    {
        T const scale = T(1) / sum;
        u = areaU * scale;
        v = areaV * scale;
        w = areaW * scale;
        return u > -epsilon && v > -epsilon && w > -epsilon;
    }
    EdgeFit<T> const fit = FitOnBestEdge<T>(p, {a, b, c}, epsilon, vertex);
    u = fit.weight[0];
    v = fit.weight[1];
    w = fit.weight[2];
    return !(fit.squaredDistance >= epsilon) && fit.rating != 0;
}

template <typename T>
void GetOrthogonalBasis(C3DVector3Tpl<T> const & n, C3DVector3Tpl<T> & a, C3DVector3Tpl<T> & b)
{
    T const x = std::abs(n.X);
    T const y = std::abs(n.Y);
    T const z = std::abs(n.Z);
    // A quarter turn about the axis on which n is shortest keeps the most of its length.
    if ((x >= y ? y : x) >= z)
    {
        a.Set(-n.Y, n.X, 0);
    }
    else if (x >= y)
    {
        a.Set(-n.Z, 0, n.X);
    }
    else
    {
        a.Set(0, -n.Z, n.Y);
    }
    b.SetCross(n, a);
}

template float GetVctsCosAngle(C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &, float);
template double GetVctsCosAngle(C3DVector3Tpl<double> const &, C3DVector3Tpl<double> const &, double);
template float GetVctsAngle(C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &, float);
template double GetVctsAngle(C3DVector3Tpl<double> const &, C3DVector3Tpl<double> const &, double);
template float GetPntsCosAngle(C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &,
                               C3DVector3Tpl<float> const &);
template double GetPntsCosAngle(C3DVector3Tpl<double> const &, C3DVector3Tpl<double> const &,
                                C3DVector3Tpl<double> const &);
template float GetPntsAngle(C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &);
template double GetPntsAngle(C3DVector3Tpl<double> const &, C3DVector3Tpl<double> const &,
                             C3DVector3Tpl<double> const &);
template float Get2DVctsAngleSigned(C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &);
template double Get2DVctsAngleSigned(C3DVector3Tpl<double> const &, C3DVector3Tpl<double> const &);
template float Get2DPntsAngleSigned(C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &,
                                    C3DVector3Tpl<float> const &);
template double Get2DPntsAngleSigned(C3DVector3Tpl<double> const &, C3DVector3Tpl<double> const &,
                                     C3DVector3Tpl<double> const &);
template float GetCross(C3DVector2Tpl<float> const &, C3DVector2Tpl<float> const &);
template double GetCross(C3DVector2Tpl<double> const &, C3DVector2Tpl<double> const &);
template int Get2DPntSide(C3DVector2Tpl<float> const &, C3DVector2Tpl<float> const &, C3DVector2Tpl<float> const &);
template int Get2DPntSide(C3DVector2Tpl<double> const &, C3DVector2Tpl<double> const &, C3DVector2Tpl<double> const &);
template int Get2DPntSide(C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &);
template int Get2DPntSide(C3DVector3Tpl<double> const &, C3DVector3Tpl<double> const &, C3DVector3Tpl<double> const &);
template int ArePntsClockWise(C3DVector2Tpl<float> const &, C3DVector2Tpl<float> const &, C3DVector2Tpl<float> const &);
template int ArePntsClockWise(C3DVector2Tpl<double> const &, C3DVector2Tpl<double> const &,
                              C3DVector2Tpl<double> const &);
template int ArePntsCollinear(C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &,
                              float);
template int ArePntsCollinear(C3DVector3Tpl<double> const &, C3DVector3Tpl<double> const &,
                              C3DVector3Tpl<double> const &, double);
template int ArePntsColinearUsingDistance(C3DVector2Tpl<float> const &, C3DVector2Tpl<float> const &,
                                          C3DVector2Tpl<float> const &, float);
template int ArePntsColinearUsingDistance(C3DVector2Tpl<double> const &, C3DVector2Tpl<double> const &,
                                          C3DVector2Tpl<double> const &, double);
template int FSegmentIntersect(C3DVector2Tpl<float> const &, C3DVector2Tpl<float> const &, C3DVector2Tpl<float> const &,
                               C3DVector2Tpl<float> const &);
template int FSegmentIntersect(C3DVector2Tpl<double> const &, C3DVector2Tpl<double> const &,
                               C3DVector2Tpl<double> const &, C3DVector2Tpl<double> const &);
template float GetTriangleArea(C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &,
                               C3DVector3Tpl<float> const &);
template double GetTriangleArea(C3DVector3Tpl<double> const &, C3DVector3Tpl<double> const &,
                                C3DVector3Tpl<double> const &);
template void GetBarycentricCoords(C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &,
                                   C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &, float &, float &,
                                   float &);
template void GetBarycentricCoords(C3DVector3Tpl<double> const &, C3DVector3Tpl<double> const &,
                                   C3DVector3Tpl<double> const &, C3DVector3Tpl<double> const &, double &, double &,
                                   double &);
template int GetBarycentricCoords(C3DVector2Tpl<float> const &, C3DVector2Tpl<float> const &,
                                  C3DVector2Tpl<float> const &, C3DVector2Tpl<float> const &, float &, float &, float &,
                                  float, unsigned long);
template int GetBarycentricCoords(C3DVector2Tpl<double> const &, C3DVector2Tpl<double> const &,
                                  C3DVector2Tpl<double> const &, C3DVector2Tpl<double> const &, double &, double &,
                                  double &, double, unsigned long);
template void GetOrthogonalBasis(C3DVector3Tpl<float> const &, C3DVector3Tpl<float> &, C3DVector3Tpl<float> &);
template void GetOrthogonalBasis(C3DVector3Tpl<double> const &, C3DVector3Tpl<double> &, C3DVector3Tpl<double> &);
