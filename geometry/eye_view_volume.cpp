#include "geometry/eye_view_volume.h"

#include <cmath>

namespace math::detail
{

namespace
{

/// Two numbers that go through the same operations side by side, in the registers that every target of the library has.
typedef double Pair __attribute__((vector_size(16))); // NOLINT(modernize-use-using): takes the attribute

/// Two truth values, with all bits set or none. Of which integer type the comparisons make them is the compiler's own.
using PairOfTruths = decltype(Pair() < Pair());

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

/// What the outcodes of the corners have in common. A bit of an outcode tells that a corner is beyond one plane.
class Outcodes
{
public:
    /// Two opposite planes: a corner beyond the first one is not beyond the second. Returns whether one of them has all
    /// corners beyond it, and so separates the box from the volume.
    template <typename First, typename Second>
    bool Add(CornerPair const (&corners)[k_CornerPairs], First isBeyondFirst, Second isBeyondSecond)
    {
        PairOfTruths areBeyondFirst = {-1, -1};
        PairOfTruths areBeyondSecond = {-1, -1};
        for (CornerPair const & p : corners)
        {
            PairOfTruths const first = isBeyondFirst(p);
            PairOfTruths const second = isBeyondSecond(p);
            areBeyondFirst &= first;
            areBeyondSecond &= second & ~first;
            m_IsAnyBeyond |= first | second;
        }
        return ((areBeyondFirst[0] & areBeyondFirst[1]) | (areBeyondSecond[0] & areBeyondSecond[1])) != 0;
    }

    bool IsAnyBeyond() const { return (m_IsAnyBeyond[0] | m_IsAnyBeyond[1]) != 0; }

private:
    PairOfTruths m_IsAnyBeyond = {0, 0};
};

/// The sides of an orthographic volume. Returns whether one of them separates.
bool AddBoxSides(EyeViewVolume const & volume, CornerPair const (&corners)[k_CornerPairs], Outcodes & codes)
{
    return codes.Add(
               corners, [&](CornerPair const & p) { return p.x < volume.left; },
               [&](CornerPair const & p) { return p.x > volume.right; }) ||
           codes.Add(
               corners, [&](CornerPair const & p) { return p.y < volume.bottom; },
               [&](CornerPair const & p) { return p.y > volume.top; });
}

/// The sides of a perspective volume. Returns whether one of them separates.
bool AddPyramidSides(EyeViewVolume const & volume, CornerPair const (&corners)[k_CornerPairs], Outcodes & codes)
{
    auto const isBeyond = [](double const(&side)[3])
    { return [&side](CornerPair const & p) { return side[0] * p.x + side[1] * p.y + side[2] * p.z < 0; }; };
    return codes.Add(corners, isBeyond(volume.leftSide), isBeyond(volume.rightSide)) ||
           codes.Add(corners, isBeyond(volume.bottomSide), isBeyond(volume.topSide));
}

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
    Outcodes codes;
    TransformCorners(box, matrix, 2, &CornerPair::z, corners);
    if (codes.Add(
            corners, [this](CornerPair const & p) { return p.z > minusNear; },
            [this](CornerPair const & p) { return p.z < minusFar; }))
    {
        return E3DVIEWINTERSECTION_OUTSIDE;
    }
    TransformCorners(box, matrix, 0, &CornerPair::x, corners);
    TransformCorners(box, matrix, 1, &CornerPair::y, corners);
    bool const isBeyondSide =
        orthographic != 0 ? AddBoxSides(*this, corners, codes) : AddPyramidSides(*this, corners, codes);
    if (isBeyondSide)
    {
        return E3DVIEWINTERSECTION_OUTSIDE;
    }
    return codes.IsAnyBeyond() ? E3DVIEWINTERSECTION_CROSSING : E3DVIEWINTERSECTION_INSIDE;
}

} // namespace math::detail
