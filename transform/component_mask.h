#pragma once

/// \file
/// The bits of a mask of components.

namespace math::detail
{

inline constexpr unsigned char k_ScalingComponent = 1;
inline constexpr unsigned char k_ScalingOrientationComponent = 2;
inline constexpr unsigned char k_RotationComponent = 4;
inline constexpr unsigned char k_TranslationComponent = 8;
/// The translation takes part in the right operand's scaling, in its rotation.
inline constexpr unsigned char k_InheritScaling = 16;
inline constexpr unsigned char k_InheritRotation = 32;
inline constexpr unsigned char k_AllComponents = 63;

} // namespace math::detail
