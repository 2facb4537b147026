#include "geometry/eye_view_volume.h"

#include <cmath>

namespace math::detail
{

namespace
{

/// Two numbers that go through the same operations side by side, in the registers that every target of the library has,
/// and two truth values of which the comparisons set all bits or none.
// NOLINTBEGIN(modernize-use-using): they take the attribute.
typedef double Pair __attribute__((vector_size(16)));
typedef long long PairOfTruths __attribute__((vector_size(16)));
// NOLINTEND(modernize-use-using)

/// Two of the eight corners of a box, seen from the camera: those at its minimum and its maximum along its Z axis.
struct CornerPair
{
    Pair x;
    Pair y;
    Pair z;
};

constexpr int k_CornerPairs = 4;

/// What a component of a point adds to a coordinate of its image: nothing where it is 0 or a NaN, as for
/// C3DVector3Tpl::Mul.
double Term(double component, double element)
{
    return std::abs(component) > 0 ? component * element : -0.0;
}

/// One coordinate of the corners' images under an affine matrix. Partial sums that corners share are formed once; each
/// corner has its terms in the order of C3DVector3Tpl::Mul.
void TransformCorners(C3DVector3Tpl<double> const * box, C3DXfoMatTpl<double> const & m, int column,
                      Pair CornerPair::*coordinate, CornerPair (&out)[k_CornerPairs])
{
    Pair const z = {Term(box[0].Z, m.Get(2, column)), Term(box[1].Z, m.Get(2, column))};
    for (int i = 0; i < k_CornerPairs; ++i)
    {
        double const sum = m.Get(3, column) + Term(box[i / 2].X, m.Get(0, column));
        out[i].*coordinate = sum + Term(box[i % 2].Y, m.Get(1, column)) + z;
    }
}

Pair Dot(double const (&side)[3], CornerPair const & p)
{
    return side[0] * p.x + side[1] * p.y + side[2] * p.z;
}

/// What the outcodes of the corners have in common. A bit of an outcode tells that a corner is beyond one plane.
class Outcodes
{
public:
    /// Two opposite planes: a corner beyond the first one is not beyond the second.
    void Add(int first, PairOfTruths isBeyondFirst, PairOfTruths isBeyondSecond)
    {
        m_AreAllBeyond[first] &= isBeyondFirst;
        m_AreAllBeyond[first + 1] &= isBeyondSecond & ~isBeyondFirst;
        m_IsAnyBeyond |= isBeyondFirst | isBeyondSecond;
    }

    tagE3DVIEWINTERSECTION Classify() const
    {
        PairOfTruths isSeparated = {0, 0};
        for (PairOfTruths const & areAllBeyond : m_AreAllBeyond)
        {
            isSeparated |= areAllBeyond & __builtin_shufflevector(areAllBeyond, areAllBeyond, 1, 0);
        }
        if (isSeparated[0] != 0)
        {
            return E3DVIEWINTERSECTION_OUTSIDE;
        }
        return (m_IsAnyBeyond[0] | m_IsAnyBeyond[1]) != 0 ? E3DVIEWINTERSECTION_CROSSING : E3DVIEWINTERSECTION_INSIDE;
    }

private:
    PairOfTruths m_AreAllBeyond[6] = {{-1, -1}, {-1, -1}, {-1, -1}, {-1, -1}, {-1, -1}, {-1, -1}};
    PairOfTruths m_IsAnyBeyond = {0, 0};
};

} // namespace

void EyeViewVolume::Set(ViewLimits const & limits, C3DXfoMatTpl<double> const & viewToWorld, int isOrthographic)
{
    left = limits.left;
    right = limits.right;
    bottom = limits.bottom;
    top = limits.top;
    minusNear = -limits.near;
    minusFar = -limits.far;
    worldToView.Invert(viewToWorld);
    orthographic = isOrthographic;

    bottomMinusTop = bottom - top;
    leftMinusRight = left - right;
    auto const setSide = [](double(&side)[3], double x, double y, double z)
    {
        side[0] = x;
        side[1] = y;
        side[2] = z;
    };
    setSide(leftSide, bottomMinusTop * minusNear, 0, -left * bottomMinusTop);
    setSide(rightSide, -bottomMinusTop * minusNear, 0, right * bottomMinusTop);
    setSide(topSide, 0, -leftMinusRight * minusNear, top * leftMinusRight);
    setSide(bottomSide, 0, leftMinusRight * minusNear, -bottom * leftMinusRight);
}

tagE3DVIEWINTERSECTION EyeViewVolume::Classify(C3DVector3Tpl<double> const * box,
                                               C3DXfoMatTpl<double> const * boxToWorld) const
{
    C3DXfoMatTpl<double> boxToView{C3DInitRequest_DoNotInitialize()};
    if (boxToWorld != nullptr)
    {
        // The product of the base class: the signs of the scale axes are of no use here.
        boxToView.C3DMatrix44Tpl<double>::Mul(*boxToWorld, worldToView);
    }
    C3DXfoMatTpl<double> const & matrix = boxToWorld != nullptr ? boxToView : worldToView;
    CornerPair corners[k_CornerPairs];
    TransformCorners(box, matrix, 0, &CornerPair::x, corners);
    TransformCorners(box, matrix, 1, &CornerPair::y, corners);
    TransformCorners(box, matrix, 2, &CornerPair::z, corners);

    Outcodes codes;
    for (CornerPair const & p : corners)
    {
        if (orthographic != 0)
        {
            codes.Add(0, p.x<left, p.x> right);
            codes.Add(2, p.y<bottom, p.y> top);
        }
        else
        {
            codes.Add(0, Dot(leftSide, p) < 0, Dot(rightSide, p) < 0);
            codes.Add(2, Dot(bottomSide, p) < 0, Dot(topSide, p) < 0);
        }
        codes.Add(4, p.z > minusNear, p.z < minusFar);
    }
    return codes.Classify();
}

} // namespace math::detail
