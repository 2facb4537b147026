#include "geometry/eye_view_volume.h"

#include "geometry/vector_pair.h"

namespace math::detail
{

namespace
{

/// Corners of a box, seen from the camera, in pairs: those at its minimum and its maximum along its Y axis.
constexpr int k_CornerPairs = 4;
using Corners = VectorPair[k_CornerPairs];

/// What is added for a product that is left out: it changes no sum, not even the sign of a zero.
constexpr Pair k_NoProduct = {-0.0, -0.0};

/// What components of points add to a coordinate of their images: nothing where they are 0 or a NaN, as for
/// C3DVector3Tpl::Mul.
Pair Term(Pair components, double element)
{
    PairOfTruths const areUsed = (components < 0) | (components > 0);
    return areUsed ? components * element : k_NoProduct;
}

/// The corners' images under an affine matrix, coordinate by coordinate. Partial sums that corners share are formed
/// once; each corner has its terms in the order of C3DVector3Tpl::Mul.
class CornerTransformation
{
public:
    CornerTransformation(C3DVector3Tpl<double> const * box, C3DXfoMatTpl<double> const & boxToView)
        : m_Box(box[0], box[1]), m_BoxToView(boxToView)
    {
    }

    void Transform(int column, Pair VectorPair::*coordinate, Corners & corners) const
    {
        Pair const x = m_BoxToView.Get(3, column) + Term(m_Box.X, m_BoxToView.Get(0, column));
        Pair const y = Term(m_Box.Y, m_BoxToView.Get(1, column));
        Pair const z = Term(m_Box.Z, m_BoxToView.Get(2, column));
        for (int i = 0; i < k_CornerPairs; ++i)
        {
            corners[i].*coordinate = x[i / 2] + y + z[i % 2];
        }
    }

private:
    VectorPair m_Box; ///< its minimum and its maximum
    C3DXfoMatTpl<double> const & m_BoxToView;
};

/// What the outcodes of the corners have in common. A bit of an outcode tells that a corner is beyond one plane.
class Outcodes
{
public:
    /// Two opposite planes: a corner beyond the first one is not beyond the second.
    template <typename First, typename Second>
    void Add(Corners const & corners, First isBeyondFirst, Second isBeyondSecond)
    {
        constexpr int both = 3;
        int areBeyondFirst = both;
        int areBeyondSecond = both;
        for (VectorPair const & p : corners)
        {
            int const first = ToBits(isBeyondFirst(p));
            int const second = ToBits(isBeyondSecond(p));
            areBeyondFirst &= first;
            areBeyondSecond &= second & ~first;
            m_AreAnyBeyond |= first | second;
        }
        m_AreAllBeyondOne |= (areBeyondFirst == both) | (areBeyondSecond == both);
    }

    tagE3DVIEWINTERSECTION Classify() const
    {
        if (m_AreAllBeyondOne)
        {
            return E3DVIEWINTERSECTION_OUTSIDE;
        }
        return m_AreAnyBeyond != 0 ? E3DVIEWINTERSECTION_CROSSING : E3DVIEWINTERSECTION_INSIDE;
    }

private:
    bool m_AreAllBeyondOne = false; ///< All corners are beyond one plane, which separates the box from the volume.
    int m_AreAnyBeyond = 0;         ///< Whether some corner is beyond some plane.
};

/// The sides of an orthographic volume.
void AddBoxSides(EyeViewVolume const & volume, Corners const & corners, Outcodes & codes)
{
    codes.Add(
        corners, [&](VectorPair const & p) { return p.X < volume.left; },
        [&](VectorPair const & p) { return p.X > volume.right; });
    codes.Add(
        corners, [&](VectorPair const & p) { return p.Y < volume.bottom; },
        [&](VectorPair const & p) { return p.Y > volume.top; });
}

/// The sides of a perspective volume.
void AddPyramidSides(EyeViewVolume const & volume, Corners const & corners, Outcodes & codes)
{
    auto const isBeyond = [](double const(&side)[3])
    { return [&side](VectorPair const & p) { return side[0] * p.X + side[1] * p.Y + side[2] * p.Z < 0; }; };
    codes.Add(corners, isBeyond(volume.leftSide), isBeyond(volume.rightSide));
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
    // How a box ends is a coin toss: everything is computed, and nothing branches on it.
    CornerTransformation const transformation(box, matrix);
    Corners corners;
    transformation.Transform(0, &VectorPair::X, corners);
    transformation.Transform(1, &VectorPair::Y, corners);
    transformation.Transform(2, &VectorPair::Z, corners);
    Outcodes codes;
    codes.Add(
        corners, [this](VectorPair const & p) { return p.Z > minusNear; },
        [this](VectorPair const & p) { return p.Z < minusFar; });
    orthographic != 0 ? AddBoxSides(*this, corners, codes) : AddPyramidSides(*this, corners, codes);
    return codes.Classify();
}

} // namespace math::detail
