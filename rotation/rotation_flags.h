#pragma once

/// \file
/// The bits of C3DRotation's flag byte.

namespace math::detail
{

inline constexpr unsigned char k_SourceMask = 3;
inline constexpr unsigned char k_QuatDirty = 4;
inline constexpr unsigned char k_MatDirty = 8;
inline constexpr unsigned char k_AnglesDirty = 16;
inline constexpr unsigned char k_DefinitelyIdentity = 32;

/// The source is the quaternion, which alone is valid, and is known to be the identity.
inline constexpr unsigned char k_IdentityFlags = k_MatDirty | k_AnglesDirty | k_DefinitelyIdentity;

/// No form is valid.
inline constexpr unsigned char k_UnsetFlags = k_QuatDirty | k_MatDirty | k_AnglesDirty;

} // namespace math::detail
