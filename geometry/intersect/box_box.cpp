#include "math/box_intersection.h"
#include "math/platform/result.h"

#include <cmath>

using Vector = C3DVector3Tpl<double>;

namespace
{

/// Two boxes, in the frame of the first: half sizes a and b, center t and axes r (rows) of the second, magnitudes m of
/// the axes' components.
class BoxPair
{
public:
    BoxPair(C3DMatrix33Tpl<double> const & rotation, Vector const & translation, Vector const & extentsA,
            Vector const & extentsB)
        : t(translation), a(extentsA), b(extentsB)
    {
        for (int row = 0; row < 3; ++row)
        {
            for (int column = 0; column < 3; ++column)
            {
                r[row][column] = rotation.Get(row, column);
                m[row][column] = std::abs(r[row][column]);
            }
        }
    }

    /// The axes that the boxes are most often separated by come first, each against the sum of the extents along it.
    bool AreSeparatedByFace() const
    {
        return std::abs(t.X) > a.X + (m[0][0] * b.X + m[1][0] * b.Y + m[2][0] * b.Z) ||
               IsSeparatedByAxisOfSecond(0, b.X) ||
               std::abs(t.Y) > a.Y + (m[0][1] * b.X + m[1][1] * b.Y + m[2][1] * b.Z) ||
               std::abs(t.Z) > a.Z + (m[0][2] * b.X + m[1][2] * b.Y + m[2][2] * b.Z) ||
               IsSeparatedByAxisOfSecond(1, b.Y) || IsSeparatedByAxisOfSecond(2, b.Z);
    }

    /// The cross products of an axis of the first box with one of the second; that of the two last is left out.
    bool AreSeparatedByEdges() const
    {
        return std::abs(r[0][1] * t.Z - r[0][2] * t.Y) >
                   a.Y * m[0][2] + a.Z * m[0][1] + b.Y * m[2][0] + b.Z * m[1][0] ||
               std::abs(r[1][1] * t.Z - r[1][2] * t.Y) >
                   a.Y * m[1][2] + a.Z * m[1][1] + b.X * m[2][0] + b.Z * m[0][0] ||
               std::abs(r[2][1] * t.Z - r[2][2] * t.Y) >
                   a.Y * m[2][2] + a.Z * m[2][1] + b.X * m[1][0] + b.Y * m[0][0] ||
               std::abs(r[0][2] * t.X - r[0][0] * t.Z) >
                   a.X * m[0][2] + a.Z * m[0][0] + b.Y * m[2][1] + b.Z * m[1][1] ||
               std::abs(r[1][2] * t.X - r[1][0] * t.Z) >
                   a.X * m[1][2] + a.Z * m[1][0] + b.X * m[2][1] + b.Z * m[0][1] ||
               std::abs(r[2][2] * t.X - r[2][0] * t.Z) >
                   a.X * m[2][2] + a.Z * m[2][0] + b.X * m[1][1] + b.Y * m[0][1] ||
               std::abs(r[0][0] * t.Y - r[0][1] * t.X) >
                   a.X * m[0][1] + a.Y * m[0][0] + b.Y * m[2][2] + b.Z * m[1][2] ||
               std::abs(r[1][0] * t.Y - r[1][1] * t.X) > a.X * m[1][1] + a.Y * m[1][0] + b.X * m[2][2] + b.Z * m[0][2];
    }

private:
    bool IsSeparatedByAxisOfSecond(int i, double extent) const
    {
        return std::abs(t.X * r[i][0] + t.Y * r[i][1] + t.Z * r[i][2]) >
               extent + (m[i][0] * a.X + m[i][1] * a.Y + m[i][2] * a.Z);
    }

    Vector const & t;
    Vector const & a;
    Vector const & b;
    double r[3][3];
    double m[3][3];
};

} // namespace

long F3DLocalBoxVsBoxIntersection(C3DRotMatTpl<double> const & rotation, Vector const & translation,
                                  Vector const & extentsA, Vector const & extentsB, unsigned long & flags,
                                  tagS3DGEOMINFO * info, double /*tol*/)
{
    if (info != nullptr)
    {
        *info = tagS3DGEOMINFO{};
    }
    BoxPair const boxes(rotation.GetMatrix(), translation, extentsA, extentsB);
    bool const areApart = boxes.AreSeparatedByFace() || boxes.AreSeparatedByEdges();
    flags = areApart ? math::detail::k_NoContact : math::detail::k_Intersecting;
    return S_OK;
}
