#include "geometry/world_view_volume.h"

#include "geometry/vector_expressions.h"
#include "geometry/vector_pair.h"
#include "math/vector2.h"

#include <cmath>

namespace math::detail
{

namespace
{

using Vector = C3DVector3Tpl<double>;
using Matrix = C3DXfoMatTpl<double>;

constexpr int k_CornerCount = 8;
using Corners = Vector[k_CornerCount];

constexpr int k_AllAxes = 7;

enum Plane
{
    k_Near,
    k_Left,
    k_Right,
    k_Top,
    k_Bottom,
    k_Far
};

/// Three corners of each plane, in the order of Plane. A corner has bit 0 for right, bit 1 for top, bit 2 for far.
constexpr int k_CornersOfPlane[WorldViewVolume::k_PlaneCount][3] = {{0, 1, 3}, {0, 2, 6}, {3, 1, 5},
                                                                    {2, 3, 7}, {4, 5, 1}, {6, 7, 5}};

struct Edge
{
    int corners[2];
    Plane planes[2];
};

constexpr Edge k_Edges[WorldViewVolume::k_EdgeCount] = {
    {{0, 1}, {k_Near, k_Bottom}}, {{3, 2}, {k_Near, k_Top}},    {{2, 0}, {k_Near, k_Left}},
    {{1, 3}, {k_Near, k_Right}},  {{0, 4}, {k_Bottom, k_Left}}, {{5, 1}, {k_Bottom, k_Right}},
    {{6, 2}, {k_Top, k_Left}},    {{3, 7}, {k_Top, k_Right}},   {{5, 4}, {k_Far, k_Bottom}},
    {{6, 7}, {k_Far, k_Top}},     {{4, 6}, {k_Far, k_Left}},    {{7, 5}, {k_Far, k_Right}}};

constexpr int k_AllThree[3] = {0, 1, 2};

/// The axes left in the projection along each axis.
constexpr int k_AxesOfProjection[3][2] = {{1, 2}, {0, 2}, {0, 1}};

// --- Setting ---------------------------------------------------------------------------------------------------------

void MakeCorners(ViewLimits const & limits, Matrix const & viewToWorld, int orthographic, Corners & corners)
{
    double const widening = orthographic != 0 ? 1 : limits.far / limits.near;
    for (int i = 0; i < k_CornerCount; ++i)
    {
        double const x = (i & 1) != 0 ? limits.right : limits.left;
        double const y = (i & 2) != 0 ? limits.top : limits.bottom;
        bool const isFar = (i & 4) != 0;
        Vector const corner = isFar ? Vector(widening * x, widening * y, -limits.far) : Vector(x, y, -limits.near);
        corners[i].Mul(corner, viewToWorld);
    }
}

template <int Dimension>
void Complete(BoundingHyperplane<Dimension> & hyperplane, double const * normal, double offset)
{
    for (int i = 0; i < Dimension; ++i)
    {
        hyperplane.normal[i] = normal[i];
        hyperplane.isNegative[i] = normal[i] < 0 ? 1 : 0;
    }
    hyperplane.offset = offset;
}

void SetBounds(Corners const & corners, WorldViewVolume & volume)
{
    volume.minimum = corners[0];
    volume.maximum = corners[0];
    for (Vector const & corner : corners)
    {
        for (unsigned long axis = 0; axis < 3; ++axis)
        {
            volume.minimum[axis] = corner[axis] < volume.minimum[axis] ? corner[axis] : volume.minimum[axis];
            volume.maximum[axis] = corner[axis] > volume.maximum[axis] ? corner[axis] : volume.maximum[axis];
        }
    }
}

void SetPlanes(Corners const & corners, WorldViewVolume & volume)
{
    for (int i = 0; i < WorldViewVolume::k_PlaneCount; ++i)
    {
        auto const & [first, pivot, last] = k_CornersOfPlane[i];
        Vector const normal = UnitOrSame(Vector().SetCross(corners[pivot], corners[last], corners[first]));
        Complete(volume.planes[i], normal.GetArray(), -Dot(normal, corners[first]));
    }
}

int FindAlignedAxes(WorldViewVolume const & volume, int orthographic)
{
    int mask = 0;
    for (int axis = 0; axis < 3; ++axis)
    {
        auto const isEdgeOn = [&volume, axis](Plane plane)
        { return std::abs(volume.planes[plane].normal[axis]) < k_StandardTolerance<double>; };
        bool const isAligned = isEdgeOn(k_Near) ? isEdgeOn(k_Left) || isEdgeOn(k_Top)
                                                : orthographic != 0 && isEdgeOn(k_Left) && isEdgeOn(k_Top);
        mask |= isAligned ? 1 << axis : 0;
    }
    return mask;
}

/// Adds the line of an edge to the silhouette along an axis, unless the edge lies along that axis.
void AddLine(Vector const & a, Vector const & b, Vector const & middle, int projection, WorldViewVolume & volume)
{
    using Vector2 = C3DVector2Tpl<double>;
    auto const project = [projection](Vector const & v)
    { return Vector2(v.Get(k_AxesOfProjection[projection][0]), v.Get(k_AxesOfProjection[projection][1])); };
    Vector2 const start = project(a);
    Vector2 const end = project(b);
    Vector2 normal(end.Y - start.Y, start.X - end.X);
    if (normal.Normalize() == 0)
    {
        return;
    }
    if (Dot(normal, Vector2().Sub(start, project(middle))) < 0)
    {
        normal.Negate();
    }
    Complete(volume.lines[projection][volume.lineCounts[projection]], normal.GetArray(), -Dot(normal, start));
    ++volume.lineCounts[projection];
}

void SetSilhouettes(Corners const & corners, WorldViewVolume & volume)
{
    Vector const middle = Vector().SetMidpoint(corners[0], corners[7]);
    for (Edge const & edge : k_Edges)
    {
        for (int axis = 0; axis < 3; ++axis)
        {
            // An edge of the silhouette lies between a plane that faces the viewer and one that does not, or is seen
            // edge-on. Not written as "at most 0", so that a NaN makes a line too.
            bool const doBothFaceOneWay =
                volume.planes[edge.planes[0]].normal[axis] * volume.planes[edge.planes[1]].normal[axis] > 0;
            if ((volume.alignedAxes & 1 << axis) == 0 && !doBothFaceOneWay)
            {
                AddLine(corners[edge.corners[0]], corners[edge.corners[1]], middle, axis, volume);
            }
        }
    }
}

// --- Classifying -----------------------------------------------------------------------------------------------------

/// A box as its minimum and its maximum.
struct Bounds
{
    double corners[2][3];
};

/// The bounds of a box under an affine matrix, term by term: each output coordinate is a sum of products with one input
/// coordinate each, and takes the lesser and the greater of its two products.
///
/// J. Arvo, "Transforming axis-aligned bounding boxes", Graphics Gems (1990).
void TransformBounds(Vector const * box, Matrix const & m, Bounds & bounds)
{
    for (int column = 0; column < 3; ++column)
    {
        double minimum = m.Get(3, column);
        double maximum = minimum;
        for (int row = 0; row < 3; ++row)
        {
            double const a = m.Get(row, column) * box[0].GetArray()[row];
            double const b = m.Get(row, column) * box[1].GetArray()[row];
            minimum += a < b ? a : b;
            maximum += a > b ? a : b;
        }
        bounds.corners[0][column] = minimum;
        bounds.corners[1][column] = maximum;
    }
}

void CopyBounds(Vector const * box, Bounds & bounds)
{
    for (int i = 0; i < 2; ++i)
    {
        bounds.corners[i][0] = box[i].X;
        bounds.corners[i][1] = box[i].Y;
        bounds.corners[i][2] = box[i].Z;
    }
}

/// One answer out of all six comparisons, for one branch: which of them separates cannot be foretold, and most boxes
/// end here.
bool AreApart(Bounds const & box, WorldViewVolume const & volume)
{
    double const * const minimum = volume.minimum.GetArray();
    double const * const maximum = volume.maximum.GetArray();
    int areApart = 0;
    for (int i = 0; i < 3; ++i)
    {
        areApart |= ToBits(Pair{minimum[i], box.corners[0][i]} > Pair{box.corners[1][i], maximum[i]});
    }
    return areApart != 0;
}

/// Whether the first bounds hold the second; equal ones do.
bool Contain(double const * minimum, double const * maximum, double const * innerMinimum, double const * innerMaximum)
{
    constexpr int both = 3;
    int contain = both;
    for (int i = 0; i < 3; ++i)
    {
        contain &= ToBits(Pair{minimum[i], innerMaximum[i]} <= Pair{innerMinimum[i], maximum[i]});
    }
    return contain == both;
}

/// The value of a hyperplane at the corner of the box that lies farthest against its normal, or at the opposite one.
enum Depth
{
    k_Deepest = 0,
    k_Shallowest = 1
};

template <int Dimension>
double ValueAt(Depth depth, BoundingHyperplane<Dimension> const & hyperplane, int const (&axes)[Dimension],
               Bounds const & box)
{
    auto const term = [&](int i)
    { return hyperplane.normal[i] * box.corners[hyperplane.isNegative[i] ^ depth][axes[i]]; };
    double sum = term(0) + term(1);
    if constexpr (Dimension == 3)
    {
        sum += term(2);
    }
    return sum + hyperplane.offset;
}

tagE3DVIEWINTERSECTION ClassifyByPlanes(WorldViewVolume const & volume, Bounds const & box)
{
    bool isCrossing = false;
    for (BoundingHyperplane<3> const & plane : volume.planes)
    {
        if (ValueAt(k_Deepest, plane, k_AllThree, box) > 0)
        {
            return E3DVIEWINTERSECTION_OUTSIDE;
        }
        isCrossing |= ValueAt(k_Shallowest, plane, k_AllThree, box) >= 0;
    }
    return isCrossing ? E3DVIEWINTERSECTION_CROSSING : E3DVIEWINTERSECTION_INSIDE;
}

bool IsBeyondSilhouette(WorldViewVolume const & volume, Bounds const & box)
{
    for (int projection = 0; projection < 3; ++projection)
    {
        for (int i = 0; i < volume.lineCounts[projection]; ++i)
        {
            if (ValueAt(k_Deepest, volume.lines[projection][i], k_AxesOfProjection[projection], box) > 0)
            {
                return true;
            }
        }
    }
    return false;
}

} // namespace

void WorldViewVolume::Set(ViewLimits const & limits, C3DXfoMatTpl<double> const & viewToWorld, int orthographic)
{
    Corners corners;
    MakeCorners(limits, viewToWorld, orthographic, corners);
    SetBounds(corners, *this);
    SetPlanes(corners, *this);
    alignedAxes = FindAlignedAxes(*this, orthographic);
    for (int & count : lineCounts)
    {
        count = 0;
    }
    if (alignedAxes != k_AllAxes)
    {
        SetSilhouettes(corners, *this);
    }
}

tagE3DVIEWINTERSECTION WorldViewVolume::Classify(C3DVector3Tpl<double> const * box,
                                                 C3DXfoMatTpl<double> const * boxToWorld) const
{
    Bounds bounds;
    if (boxToWorld != nullptr)
    {
        TransformBounds(box, *boxToWorld, bounds);
    }
    else
    {
        CopyBounds(box, bounds);
    }
    if (AreApart(bounds, *this))
    {
        return E3DVIEWINTERSECTION_OUTSIDE;
    }
    double const * const lowest = minimum.GetArray();
    double const * const highest = maximum.GetArray();
    if (alignedAxes == k_AllAxes)
    {
        return Contain(lowest, highest, bounds.corners[0], bounds.corners[1]) ? E3DVIEWINTERSECTION_INSIDE
                                                                              : E3DVIEWINTERSECTION_CROSSING;
    }
    if (Contain(bounds.corners[0], bounds.corners[1], lowest, highest))
    {
        return E3DVIEWINTERSECTION_CROSSING;
    }
    tagE3DVIEWINTERSECTION const byPlanes = ClassifyByPlanes(*this, bounds);
    if (byPlanes != E3DVIEWINTERSECTION_CROSSING)
    {
        return byPlanes;
    }
    return IsBeyondSilhouette(*this, bounds) ? E3DVIEWINTERSECTION_OUTSIDE : E3DVIEWINTERSECTION_CROSSING;
}

} // namespace math::detail
