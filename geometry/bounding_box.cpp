#include "math/bounding_box.h"

#include "geometry/bounds.h"
#include "math/platform/result.h"

#include <algorithm>

using Vector = C3DVector3Tpl<double>;

namespace
{

/// Two of a kind lie opposite through the middle of the box.
constexpr tagE3DBBOXCORNER k_OppositeCorners[8] = {E3DBBOXCORNER_PPP, E3DBBOXCORNER_PPM, E3DBBOXCORNER_PMM,
                                                   E3DBBOXCORNER_PMP, E3DBBOXCORNER_MPP, E3DBBOXCORNER_MPM,
                                                   E3DBBOXCORNER_MMM, E3DBBOXCORNER_MMP};
constexpr tagE3DBBOXEDGE k_OppositeEdges[12] = {E3DBBOXEDGE_7_6, E3DBBOXEDGE_4_5, E3DBBOXEDGE_5_6, E3DBBOXEDGE_4_7,
                                                E3DBBOXEDGE_3_2, E3DBBOXEDGE_0_1, E3DBBOXEDGE_1_2, E3DBBOXEDGE_0_3,
                                                E3DBBOXEDGE_2_6, E3DBBOXEDGE_3_7, E3DBBOXEDGE_1_5, E3DBBOXEDGE_0_4};
constexpr tagE3DBBOXFACE k_OppositeFaces[6] = {E3DBBOXFACE_PLUS_X,  E3DBBOXFACE_MINUS_X, E3DBBOXFACE_PLUS_Y,
                                               E3DBBOXFACE_MINUS_Y, E3DBBOXFACE_PLUS_Z,  E3DBBOXFACE_MINUS_Z};

/// The signs of a corner: -1 for the minimum, 1 for the maximum.
constexpr short k_CornerSigns[8][3] = {{-1, -1, -1}, {-1, -1, 1}, {-1, 1, 1}, {-1, 1, -1},
                                       {1, -1, -1},  {1, -1, 1},  {1, 1, 1},  {1, 1, -1}};

template <typename Value, int Size>
bool IsInTable(Value value, Value const (&)[Size])
{
    return value >= 0 && value < Size;
}

/// Reads a table, after the checks of its callers.
template <typename Value, int Size>
long LookUp(Value value, Value const (&table)[Size], Value * out)
{
    if (out == nullptr)
    {
        return E_POINTER;
    }
    if (!IsInTable(value, table))
    {
        return E_INVALIDARG;
    }
    *out = table[value];
    return S_OK;
}

/// Grows a box to these bounds. A NaN gets into a minimum and not into a maximum.
void Merge(C3DBBox & box, Vector const & low, Vector const & high)
{
    Vector minimum = box.GetMin();
    Vector maximum = box.GetMax();
    for (unsigned long axis = 0; axis < 3; ++axis)
    {
        minimum[axis] = low[axis] >= minimum[axis] ? minimum[axis] : low[axis];
        maximum[axis] = high[axis] > maximum[axis] ? high[axis] : maximum[axis];
    }
    box.SetMin(minimum);
    box.SetMax(maximum);
}

} // namespace

S3DBBoxEdgeInfo const C3DBBox::m_EdgeInfo[12] = {
    {E3DBBOXCORNER_MMM, E3DBBOXCORNER_MMP, E3D_AXIS_Z}, {E3DBBOXCORNER_MPM, E3DBBOXCORNER_MPP, E3D_AXIS_Z},
    {E3DBBOXCORNER_MMM, E3DBBOXCORNER_MPM, E3D_AXIS_Y}, {E3DBBOXCORNER_MMP, E3DBBOXCORNER_MPP, E3D_AXIS_Y},
    {E3DBBOXCORNER_PMM, E3DBBOXCORNER_PMP, E3D_AXIS_Z}, {E3DBBOXCORNER_PPM, E3DBBOXCORNER_PPP, E3D_AXIS_Z},
    {E3DBBOXCORNER_PMM, E3DBBOXCORNER_PPM, E3D_AXIS_Y}, {E3DBBOXCORNER_PMP, E3DBBOXCORNER_PPP, E3D_AXIS_Y},
    {E3DBBOXCORNER_MMM, E3DBBOXCORNER_PMM, E3D_AXIS_X}, {E3DBBOXCORNER_MMP, E3DBBOXCORNER_PMP, E3D_AXIS_X},
    {E3DBBOXCORNER_MPM, E3DBBOXCORNER_PPM, E3D_AXIS_X}, {E3DBBOXCORNER_MPP, E3DBBOXCORNER_PPP, E3D_AXIS_X}};

S3DBBoxFaceInfo const C3DBBox::m_FaceInfo[6] = {
    {E3DBBOXCORNER_MMM, E3DBBOXCORNER_MMP, E3DBBOXCORNER_MPP, E3DBBOXCORNER_MPM, E3D_AXIS_X},
    {E3DBBOXCORNER_PMM, E3DBBOXCORNER_PPM, E3DBBOXCORNER_PPP, E3DBBOXCORNER_PMP, E3D_AXIS_X},
    {E3DBBOXCORNER_MMM, E3DBBOXCORNER_PMM, E3DBBOXCORNER_PMP, E3DBBOXCORNER_MMP, E3D_AXIS_Y},
    {E3DBBOXCORNER_MPM, E3DBBOXCORNER_MPP, E3DBBOXCORNER_PPP, E3DBBOXCORNER_PPM, E3D_AXIS_Y},
    {E3DBBOXCORNER_MMM, E3DBBOXCORNER_MPM, E3DBBOXCORNER_PPM, E3DBBOXCORNER_PMM, E3D_AXIS_Z},
    {E3DBBOXCORNER_MMP, E3DBBOXCORNER_PMP, E3DBBOXCORNER_PPP, E3DBBOXCORNER_MPP, E3D_AXIS_Z}};

static_assert(sizeof(S3DBBoxEdgeInfo) == 12 && sizeof(S3DBBoxFaceInfo) == 20);
static_assert(sizeof(C3DBBox) == sizeof(C3DBaseBox));

C3DBBox::C3DBBox() = default;

C3DBBox::C3DBBox(double side) : C3DBaseBox(side) {}

C3DBBox::C3DBBox(Vector const & sides) : C3DBaseBox(sides) {}

C3DBBox::C3DBBox(Vector const & minimum, Vector const & maximum) : C3DBaseBox(minimum, maximum) {}

C3DBBox::C3DBBox(C3DBBox const & other) = default;

C3DBBox & C3DBBox::operator=(C3DBBox const & other) = default;

C3DBBox::~C3DBBox() = default;

void C3DBBox::GetSign(tagE3DBBOXCORNER corner, short * const signs) const
{
    if (IsInTable(corner, k_OppositeCorners))
    {
        for (int axis = 0; axis < 3; ++axis)
        {
            signs[axis] = k_CornerSigns[corner][axis];
        }
    }
}

long C3DBBox::GetOppositeCorner(tagE3DBBOXCORNER corner, tagE3DBBOXCORNER * opposite) const
{
    return LookUp(corner, k_OppositeCorners, opposite);
}

long C3DBBox::GetOppositeEdge(tagE3DBBOXEDGE edge, tagE3DBBOXEDGE * opposite) const
{
    return LookUp(edge, k_OppositeEdges, opposite);
}

long C3DBBox::GetOppositeFace(tagE3DBBOXFACE face, tagE3DBBOXFACE * opposite) const
{
    return LookUp(face, k_OppositeFaces, opposite);
}

long C3DBBox::GetCorner(tagE3DBBOXCORNER corner, Vector & point) const
{
    if (!IsInTable(corner, k_OppositeCorners))
    {
        return E_INVALIDARG;
    }
    short const(&signs)[3] = k_CornerSigns[corner];
    point = Vector(signs[0] < 0 ? GetMinX() : GetMaxX(), signs[1] < 0 ? GetMinY() : GetMaxY(),
                   signs[2] < 0 ? GetMinZ() : GetMaxZ());
    return S_OK;
}

long C3DBBox::GetCorners(Vector * const points) const
{
    for (int corner = 0; corner < 8; ++corner)
    {
        GetCorner(static_cast<tagE3DBBOXCORNER>(corner), points[corner]);
    }
    return S_OK;
}

long C3DBBox::GetEdgePoints(tagE3DBBOXEDGE edge, Vector & point1, Vector & point2) const
{
    S3DBBoxEdgeInfo const & row = m_EdgeInfo[edge];
    long const result = GetCorner(row.corner1, point1);
    return result < 0 ? result : GetCorner(row.corner2, point2);
}

long C3DBBox::GetFacePoints(tagE3DBBOXFACE face, Vector & point1, Vector & point2, Vector & point3,
                            Vector & point4) const
{
    S3DBBoxFaceInfo const & row = m_FaceInfo[face];
    tagE3DBBOXCORNER const corners[] = {row.corner1, row.corner2, row.corner3, row.corner4};
    Vector * const points[] = {&point1, &point2, &point3, &point4};
    long result = S_OK;
    for (int i = 0; i < 4 && result >= 0; ++i)
    {
        result = GetCorner(corners[i], *points[i]);
    }
    return result;
}

long C3DBBox::GetEdgeLine(tagE3DBBOXEDGE edge, C3DLine & line) const
{
    Vector start;
    Vector end;
    long const result = GetEdgePoints(edge, start, end);
    if (result >= 0)
    {
        line.SetFromTwoPoints(start, end);
    }
    return result;
}

long C3DBBox::GetFacePlane(tagE3DBBOXFACE face, C3DPlane & plane) const
{
    Vector first;
    Vector second;
    Vector third;
    Vector fourth;
    long const result = GetFacePoints(face, first, second, third, fourth);
    if (result >= 0)
    {
        plane.SetOrigin(first);
        plane.SetTangents(second.Sub(first), fourth.Sub(first));
    }
    return result;
}

Vector & C3DBBox::GetDiagonal(Vector & diagonal) const
{
    return diagonal.Sub(GetMax(), GetMin());
}

double C3DBBox::GetDiagonalLength() const
{
    return GetDistance(GetMax(), GetMin());
}

Vector & C3DBBox::GetMidPoint(Vector & middle) const
{
    return middle.SetMidpoint(GetMin(), GetMax());
}

int C3DBBox::IsEmpty() const
{
    return !(GetDiagonalLength() >= math::detail::k_StandardTolerance<double>);
}

C3DBBox & C3DBBox::MergeBBox(C3DBBox const & box)
{
    Merge(*this, box.GetMin(), box.GetMax());
    return *this;
}

C3DBBox & C3DBBox::MergeVector(Vector const & point)
{
    Merge(*this, point, point);
    return *this;
}

C3DBBox & C3DBBox::MergeVector(double x, double y, double z)
{
    return MergeVector(Vector(x, y, z));
}

C3DBBox & C3DBBox::SetToBBoxOfTransformedBBox(C3DXfoMatTpl<double> const & matrix)
{
    Vector corners[8];
    GetCorners(corners);
    F3DTransformPoints(matrix, corners, 8, corners);
    SetMin(corners[0]);
    SetMax(corners[0]);
    for (Vector const & corner : corners)
    {
        MergeVector(corner);
    }
    return *this;
}

C3DBBox & C3DBBox::ComputeInSpaceFromVectorArray(Vector const * points, unsigned long count,
                                                 C3DXfoMatTpl<double> const & matrix, int tight)
{
    constexpr double degenerateSide = 0.001;
    if (points == nullptr || count == 0)
    {
        return *this;
    }
    if (tight == 0)
    {
        SetFromVectorArray(points, count);
        return SetToBBoxOfTransformedBBox(matrix);
    }
    // In blocks, which the widest instructions transform.
    constexpr unsigned long blockSize = 64;
    Vector block[blockSize];
    Vector last;
    math::detail::Bounds bounds(last.Mul(points[0], matrix));
    for (unsigned long done = 0; done < count; done += blockSize)
    {
        unsigned long const size = std::min(blockSize, count - done);
        F3DTransformPoints(matrix, points + done, static_cast<long>(size), block);
        for (unsigned long i = 0; i < size; ++i)
        {
            bounds.Include(block[i]);
        }
        last = block[size - 1];
    }
    SetMin(bounds.minimum);
    SetMax(bounds.maximum);
    if (GetDiagonalLength() < math::detail::k_StandardTolerance<double>)
    {
        Vector const side(degenerateSide, degenerateSide, degenerateSide);
        SetMin(last.Sub(side));
        SetMax(last.Add(side));
    }
    return *this;
}
