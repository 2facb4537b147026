#pragma once

/// \file
/// The order of a triple of Euler angles.

/// The order in which the rotations about the fixed axes act: `E3DROTORDER_XYZ` turns about X, then about Y, then about
/// Z. As matrices of row vectors that is R(X) R(Y) R(Z), as quaternions Q(Z) Q(Y) Q(X). The order never permutes the
/// triple: its components are always the angles about X, Y and Z. The values are stored in streams.
enum tagE3DROTORDER : int
{
    E3DROTORDER_XYZ = 0, ///< R(X) R(Y) R(Z), an even permutation of the axes.
    E3DROTORDER_XZY = 1, ///< R(X) R(Z) R(Y), odd.
    E3DROTORDER_YXZ = 2, ///< R(Y) R(X) R(Z), odd.
    E3DROTORDER_YZX = 3, ///< R(Y) R(Z) R(X), even.
    E3DROTORDER_ZXY = 4, ///< R(Z) R(X) R(Y), even.
    E3DROTORDER_ZYX = 5  ///< R(Z) R(Y) R(X), odd.
};
