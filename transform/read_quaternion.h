#pragma once

/// \file
/// A quaternion out of a text stream, with a value for what cannot be read.

#include "math/quaternion.h"

#include <istream>

namespace math::detail
{

/// Reads the four bare numbers W, X, Y, Z. A number for which the stream has nothing left, or which a stream that has
/// already failed cannot give, is that of the identity.
template <typename T>
C3DQuatTpl<T> ReadQuaternion(std::istream & stream)
{
    C3DQuatTpl<T> quat;
    stream >> quat.W >> quat.X >> quat.Y >> quat.Z;
    return quat;
}

} // namespace math::detail
