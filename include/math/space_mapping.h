#pragma once

/// \file
/// Matrices and directions that carry data between spaces.
///
/// A space is told by its transformation, or rotation, into the world. Reading them may write their caches.

#include "math/rotation.h"
#include "math/transformation.h"
#include "math/transformation_matrix.h"
#include "math/vector3.h"

/// What is to be mapped, and so how much of a transformation takes part.
enum tagE3DVECTORTYPE : int
{
    E3DVECTORTYPE_FULL = 0,     ///< points: all of it
    E3DVECTORTYPE_NOSCALE = 1,  ///< points of what is not scaled: rotation and translation
    E3DVECTORTYPE_DIRECTION = 2 ///< directions: rotation alone
};

/// The matrix out of a space into the world, with sign bits that are consistent. A value that names no type leaves
/// `out` as it was.
MATH_API C3DXfoMatTpl<double> & GetMapSpaceToWorld(tagE3DVECTORTYPE type, C3DTransfo & space,
                                                   C3DXfoMatTpl<double> & out);

/// The matrix from the world into a space. A value that names no type leaves `out` as it was, and so does a singular
/// matrix for `E3DVECTORTYPE_FULL`.
MATH_API C3DXfoMatTpl<double> & GetMapWorldToSpace(tagE3DVECTORTYPE type, C3DTransfo & space,
                                                   C3DXfoMatTpl<double> & out);

/// The matrix from one space into another: into the world, and from there. Where the second leaves `out`, the first is
/// multiplied with what `out` held.
MATH_API C3DXfoMatTpl<double> & GetMapSpaceToSpace(tagE3DVECTORTYPE type, C3DTransfo & from, C3DTransfo & to,
                                                   C3DXfoMatTpl<double> & out);

/// A direction out of a space into the world: `in` times the matrix of r, which is brought up to date. `in` and `out`
/// may be one vector.
MATH_API C3DVector3Tpl<double> & MapDirSpaceToWorld(C3DRotation & r, C3DVector3Tpl<double> const & in,
                                                    C3DVector3Tpl<double> & out);

/// A direction from the world into a space: `in` times the transpose of that matrix. `in` and `out` may be one vector.
MATH_API C3DVector3Tpl<double> & MapDirWorldToSpace(C3DRotation & r, C3DVector3Tpl<double> const & in,
                                                    C3DVector3Tpl<double> & out);

/// A direction from one space into another, through the world. `in` and `out` may be one vector.
MATH_API C3DVector3Tpl<double> & MapDirSpaceToSpace(C3DRotation & from, C3DRotation & to,
                                                    C3DVector3Tpl<double> const & in, C3DVector3Tpl<double> & out);
