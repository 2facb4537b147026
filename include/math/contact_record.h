#pragma once

/// \file
/// The record of one contact, and the flags that tell its kind.

#include "math/vector3.h"

/// One contact of two primitives, as every intersection query reports it.
///
/// A query fills the fields that its description names and leaves the others as they are in a caller's record, or
/// uninitialised in an array that the library allocates. `tagS3DGEOMINFO info{};` gives a record of zeros.
struct tagS3DGEOMINFO
{
    C3DVector3Tpl<double> position{0, 0, 0}; ///< the contact point
    C3DVector3Tpl<double> normal{0, 0, 0};   ///< the contact normal; for two planes the direction of their line
    double u = 0;                            ///< first parameter of a curve or surface
    double v = 0;                            ///< second parameter of a surface
    double distance = 0;                     ///< the signed gap: positive apart, negative where they overlap
};

namespace math::detail
{

// The kinds of contact. A query stores one of them and adds nothing to what stood there; operations on many points
// combine them. Any contact at all is a value with a bit in k_AnyContact.
inline constexpr unsigned long k_ParallelApart = 1;
inline constexpr unsigned long k_Degenerate = 2; // a line in a cone's surface, or an equation without a solution
inline constexpr unsigned long k_NoContact = 4;
inline constexpr unsigned long k_OtherNappe = 16;    // no contact with the nappe of the cone that counts
inline constexpr unsigned long k_ThroughCenter = 32; // a line through the center of a circle, across its plane
inline constexpr unsigned long k_Intersecting = 0x10000;
inline constexpr unsigned long k_Touching = 0x20000; // on the surface, within the tolerance
inline constexpr unsigned long k_Inside = 0x40000;
inline constexpr unsigned long k_Coincident = 0x100000; // the same object, within the tolerance
inline constexpr unsigned long k_AnyContact = 0xFFFF0000;

} // namespace math::detail
