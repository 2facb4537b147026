#pragma once

/// \file
/// The bounding box, with its corners, edges and faces.

#include "math/box.h"
#include "math/line.h"
#include "math/plane.h"
#include "math/transformation_matrix.h"

/// A corner, named by the bound it takes on each axis: M the minimum, P the maximum, in the order X, Y, Z.
enum tagE3DBBOXCORNER : int
{
    E3DBBOXCORNER_MMM = 0,
    E3DBBOXCORNER_MMP = 1,
    E3DBBOXCORNER_MPP = 2,
    E3DBBOXCORNER_MPM = 3,
    E3DBBOXCORNER_PMM = 4,
    E3DBBOXCORNER_PMP = 5,
    E3DBBOXCORNER_PPP = 6,
    E3DBBOXCORNER_PPM = 7
};

/// An edge, named by its corners.
enum tagE3DBBOXEDGE : int
{
    E3DBBOXEDGE_0_1 = 0,
    E3DBBOXEDGE_3_2 = 1,
    E3DBBOXEDGE_0_3 = 2,
    E3DBBOXEDGE_1_2 = 3,
    E3DBBOXEDGE_4_5 = 4,
    E3DBBOXEDGE_7_6 = 5,
    E3DBBOXEDGE_4_7 = 6,
    E3DBBOXEDGE_5_6 = 7,
    E3DBBOXEDGE_0_4 = 8,
    E3DBBOXEDGE_1_5 = 9,
    E3DBBOXEDGE_3_7 = 10,
    E3DBBOXEDGE_2_6 = 11
};

/// A face, named by its outward side.
enum tagE3DBBOXFACE : int
{
    E3DBBOXFACE_MINUS_X = 0,
    E3DBBOXFACE_PLUS_X = 1,
    E3DBBOXFACE_MINUS_Y = 2,
    E3DBBOXFACE_PLUS_Y = 3,
    E3DBBOXFACE_MINUS_Z = 4,
    E3DBBOXFACE_PLUS_Z = 5
};

/// The ends of an edge, and the axis along which it runs.
struct S3DBBoxEdgeInfo
{
    tagE3DBBOXCORNER corner1; ///< at the minimum of the axis
    tagE3DBBOXCORNER corner2; ///< at its maximum
    tagE3DAXISTYPE axis;      ///< the direction of the edge
};

/// The corners of a face, counter-clockwise seen from outside, and the axis of its normal.
struct S3DBBoxFaceInfo
{
    tagE3DBBOXCORNER corner1; ///< the first corner, the origin of GetFacePlane
    tagE3DBBOXCORNER corner2; ///< the next one, seen from outside
    tagE3DBBOXCORNER corner3; ///< the one opposite to the first
    tagE3DBBOXCORNER corner4; ///< the last one
    tagE3DAXISTYPE axis;      ///< of the normal, which may point against it
};

/// A box that grows to hold what it bounds. The default box is not empty space but the origin: merging into it keeps
/// the origin in the result.
class MATH_API C3DBBox : public C3DBaseBox
{
public:
    /// The twelve edges, indexed by their enumeration.
    static S3DBBoxEdgeInfo const m_EdgeInfo[12];
    /// The six faces, indexed by theirs.
    static S3DBBoxFaceInfo const m_FaceInfo[6];

    /// All bounds 0.
    C3DBBox();
    /// A cube about the origin.
    explicit C3DBBox(double side);
    /// About the origin, with these sides.
    explicit C3DBBox(C3DVector3Tpl<double> const & sides);
    /// With these corners, as given.
    C3DBBox(C3DVector3Tpl<double> const & minimum, C3DVector3Tpl<double> const & maximum);
    /// The same corners.
    C3DBBox(C3DBBox const & other);
    /// Takes over the corners.
    C3DBBox & operator=(C3DBBox const & other);
    ~C3DBBox() override;

    /// \name Corners, edges, faces
    ///@{

    /// Writes the three signs of a corner, -1 for the minimum and 1 for the maximum; nothing for a value out of range.
    void GetSign(tagE3DBBOXCORNER corner, short * const signs) const;

    /// The position of a corner.
    /// \return 0; `E_INVALIDARG` for a value out of range, with the output untouched
    long GetCorner(tagE3DBBOXCORNER corner, C3DVector3Tpl<double> & point) const;

    /// Writes the eight corners in the order of the enumeration. Returns 0.
    long GetCorners(C3DVector3Tpl<double> * const points) const;

    /// The two ends of an edge, which has to be a valid one. Returns 0.
    long GetEdgePoints(tagE3DBBOXEDGE edge, C3DVector3Tpl<double> & point1, C3DVector3Tpl<double> & point2) const;

    /// The four corners of a face, which has to be a valid one, counter-clockwise seen from outside. Returns 0.
    long GetFacePoints(tagE3DBBOXFACE face, C3DVector3Tpl<double> & point1, C3DVector3Tpl<double> & point2,
                       C3DVector3Tpl<double> & point3, C3DVector3Tpl<double> & point4) const;

    /// The line of an edge, which has to be a valid one, with the ends at the parameters 0 and 1. Returns 0.
    long GetEdgeLine(tagE3DBBOXEDGE edge, C3DLine & line) const;

    /// The plane of a face, which has to be a valid one: with its first corner as origin, the first edge as first
    /// tangent, and the normal pointing out of the box. Returns 0.
    long GetFacePlane(tagE3DBBOXFACE face, C3DPlane & plane) const;
    ///@}

    /// \name Opposites
    /// What lies opposite through the middle of the box. They return 0; `E_POINTER` for a null output, which is tested
    /// first; `E_INVALIDARG` for a value out of range, with the output untouched.
    ///@{
    long GetOppositeCorner(tagE3DBBOXCORNER corner, tagE3DBBOXCORNER * opposite) const;
    long GetOppositeEdge(tagE3DBBOXEDGE edge, tagE3DBBOXEDGE * opposite) const;
    long GetOppositeFace(tagE3DBBOXFACE face, tagE3DBBOXFACE * opposite) const;
    ///@}

    /// \name Measures
    ///@{

    /// Writes the maximum less the minimum, and returns it.
    C3DVector3Tpl<double> & GetDiagonal(C3DVector3Tpl<double> & diagonal) const;
    /// The length of the diagonal, which is not negative for an inverted box either.
    double GetDiagonalLength() const;
    /// Writes the point halfway between the bounds, and returns it.
    C3DVector3Tpl<double> & GetMidPoint(C3DVector3Tpl<double> & middle) const;

    /// 1 unless the diagonal is at least 1e-12 long: a flat box is not empty, nor is an inverted one; one with a NaN
    /// is.
    int IsEmpty() const;
    ///@}

    /// \name Growth
    /// Grows the box to hold another box or a point. An empty box is nothing special. A NaN gets into a minimum and
    /// never into a maximum.
    ///@{
    C3DBBox & MergeBBox(C3DBBox const & box);
    C3DBBox & MergeVector(C3DVector3Tpl<double> const & point);
    C3DBBox & MergeVector(double x, double y, double z);
    ///@}

    /// Moves one corner, by scaling each axis about a pivot so that the corner follows.
    /// \param corner the corner to move; a value out of range moves nothing
    /// \param delta the way of the corner
    /// \param pivot what stays. **The result is relative to it:** the pivot is taken off the bounds and not put back
    /// \param minSizes the least sides; each counts as 1e-12 at least
    /// \param maxSizes the greatest sides, where some component is above 1e-12 in magnitude: a zero beside a used one
    /// then means the least side, or no limit where that is 1e-12. All null, there is no greatest side
    /// \param clamp 0 keeps the box as it is where a side would break a limit; otherwise the side takes the limit
    ///
    /// A corner at the pivot on some axis divides by zero: the bounds become infinite or NaN.
    C3DBBox & PullCorner(tagE3DBBOXCORNER corner, C3DVector3Tpl<double> const & delta,
                         C3DVector3Tpl<double> const & pivot, C3DVector3Tpl<double> const & minSizes,
                         C3DVector3Tpl<double> const & maxSizes, int clamp);

    /// \name Transformation
    ///@{

    /// The box of the eight transformed corners.
    C3DBBox & SetToBBoxOfTransformedBBox(C3DXfoMatTpl<double> const & matrix);

    /// The box of points in another space. A null array or a count of 0 changes nothing.
    /// \param points,count the points
    /// \param matrix into the other space
    /// \param tight 0 transforms the box of the points: fast, and too large where the matrix rotates. Otherwise every
    /// point is transformed; where the diagonal is then shorter than 1e-12, the box runs from 0.001 below the last
    /// point on every axis **up to that point**, not around it
    C3DBBox & ComputeInSpaceFromVectorArray(C3DVector3Tpl<double> const * points, unsigned long count,
                                            C3DXfoMatTpl<double> const & matrix, int tight);
    ///@}
};
