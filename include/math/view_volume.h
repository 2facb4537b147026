#pragma once

/// \file
/// The view volume of a camera.

#include "math/transformation_matrix.h"
#include "math/vector3.h"

namespace math::detail
{

struct EyeViewVolume;
struct WorldViewVolume;

} // namespace math::detail

/// How a box lies to a view volume.
enum tagE3DVIEWINTERSECTION : int
{
    E3DVIEWINTERSECTION_OUTSIDE = 0, ///< the box lies outside
    E3DVIEWINTERSECTION_INSIDE = 1,  ///< the box lies wholly inside
    E3DVIEWINTERSECTION_CROSSING = 2 ///< the box crosses the boundary, or the test could not tell it from crossing
};

/// The view volume of a camera, a box or a truncated pyramid, made to sort bounding boxes into those that lie outside,
/// inside and across it.
///
/// View space looks down -Z with X to the right and Y up: a point in front of the camera has a negative Z, and the
/// volume lies between z = -near and z = -far. A matrix takes view space to world space. There are two strategies:
/// - *world space*, the one at first: the box, as its bounds along the world axes, is tested against the six planes of
///   the volume and against the volume's silhouettes along the three axes, which together is the full test by
///   separating axes.
/// - *view space*: the box is taken into view space with its orientation, and its eight corners are tested against the
///   six planes. A box that no single plane separates from the volume comes out as crossing, however far away it is.
///
/// Where the two differ, one of them says crossing. Points on a boundary count as inside.
///
/// A **mirroring matrix** (one of negative determinant), or exchanged limits (left above right and the like, an odd
/// number of such exchanges), turns the volume's planes inside out in world space: a box that lies inside then comes
/// out as outside, and a box across the volume does so unless it reaches beyond all planes or contains the bounds of
/// the volume. Only an orthographic volume along the world axes does not mind, since no plane of it is asked. In view
/// space a mirroring matrix gives right answers, while exchanged limits leave no point inside.
///
/// In world space an edge that lies along a world axis but for rounding, by more than 1e-12, as an off-centre
/// perspective volume of a size of 10000 and more may have one, has a silhouette line of a direction that rounding has
/// chosen, which in rare cases cuts through the volume: a box in it can then come out as outside. View space has no
/// silhouettes.
///
/// Comparisons do not find a NaN outside: in view space a coordinate of a corner that is a NaN lies within all limits
/// of it, and in world space a box of NaNs is inside, or crossing where the volume is a box along the world axes.
///
/// One object may be asked by several threads at a time.
class MATH_API C3DViewVolume
{
public:
    /// \name Construction
    ///@{

    /// A volume in world space, which has to be Set before it is asked.
    C3DViewVolume();

    /// An independent copy. Where memory runs out, what was to be copied is missing, as it is before the first Set.
    C3DViewVolume(C3DViewVolume const & source);

    /// Frees the volume.
    ~C3DViewVolume();

    /// A copy of the fields as they are, the pointers included: **both objects own the source's volume afterwards, each
    /// destructor frees it, and the target's former one is lost**. Assign only to hand a volume over, from an object
    /// that is never destroyed. For a copy use the copy constructor.
    C3DViewVolume & operator=(C3DViewVolume const & source);

    /// Chooses the strategy: 0 world space, any other value view space. A value other than the present one, of the same
    /// meaning too, drops the volume: it has to be Set again.
    void SetViewSpace(int mode);
    ///@}

    /// \name Setting
    /// None of these tests its arguments. Where memory runs out, the first call after construction or a change of mode
    /// leaves the volume as it was, not set.
    ///
    /// `left`, `right`, `bottom` and `top` are limits in view space, of a perspective volume on its near plane; `near`
    /// and `far` are distances, and positive. `matrix` is affine and takes view space to world space. In view space its
    /// inverse is needed: with a matrix that C3DXfoMatTpl::Invert finds singular the inverse of the call before stays,
    /// at first the identity.
    ///@{

    /// SetFrustum where `orthographic` is 0, else SetOrtho.
    void Set(double left, double right, double bottom, double top, double near, double far,
             C3DXfoMatTpl<double> const & matrix, int orthographic);

    /// A box.
    void SetOrtho(double left, double right, double bottom, double top, double near, double far,
                  C3DXfoMatTpl<double> const & matrix);

    /// A truncated pyramid with its apex at the origin of view space.
    void SetFrustum(double left, double right, double bottom, double top, double near, double far,
                    C3DXfoMatTpl<double> const & matrix);

    /// A symmetric pyramid.
    /// \param fieldOfView the whole horizontal angle of view, in radians
    /// \param aspect width over height
    /// \param near,far the distances
    /// \param matrix takes view space to world space
    void SetPersp(double fieldOfView, double aspect, double near, double far, C3DXfoMatTpl<double> const & matrix);
    ///@}

    /// How a box lies to the volume. The volume must have been set in the present mode; it is not checked.
    /// \param box the minimum and the maximum of the box
    /// \param matrix takes the box to world space, and is affine; null for a box in world space. In world space the
    /// bounds of the transformed box stand for the box.
    tagE3DVIEWINTERSECTION Classify(C3DVector3Tpl<double> const * const box, C3DXfoMatTpl<double> const * matrix) const;

private:
    int m_ViewSpace = 0;
    math::detail::EyeViewVolume * m_pEyeVolume = nullptr;
    math::detail::WorldViewVolume * m_pWorldVolume = nullptr;
};
