#pragma once

/// \file
/// Real roots of polynomials up to the third degree.
///
/// Coefficients come from the highest power down. Roots are not sorted. Slots beyond the reported number of roots are
/// left unwritten. Coefficients that are infinite or NaN, or whose squares and cubes overflow, give roots that are not
/// finite, or none. No pointer may be null except where a null is answered with a code.

#include "math/numeric.h"

/// What F3DFindQuadraticRoots found.
enum tagE3D_QUAD_ROOT_CODE
{
    E3D_QUAD_NO_ROOT = 0,   ///< No real root.
    E3D_QUAD_ONE_ROOT = 1,  ///< One root, in the first slot.
    E3D_QUAD_TWO_ROOTS = 2, ///< Two roots, in the two slots.
    E3D_QUAD_ANY_VALUE = 3  ///< All coefficients vanish: every value is a root, and none is stored.
};

/// The real roots of a x^2 + b x + c, by the form that avoids cancellation.
///
/// A coefficient counts as zero below 1e-9, and so does the discriminant; these limits are absolute, so scale the
/// equation to coefficients near 1.
///
/// With all three coefficients in play and q = -(b + sign(b) sqrt(b^2 - 4 a c)) / 2, the first root is q / a and the
/// second c / q. Without b the positive root comes first. Without c the roots are -b / a and 0, in this order.
/// (Press, Teukolsky, Vetterling, Flannery: Numerical Recipes, section 5.6.)
///
/// \param a,b,c the coefficients
/// \param code what was found
/// \param roots room for two roots
/// \return 0 when something was found, 1 for no root, `E_POINTER` for a null `code`, with nothing written
MATH_API long F3DFindQuadraticRoots(double a, double b, double c, tagE3D_QUAD_ROOT_CODE * code, double * const roots);

/// The root of a x + b. `a` counts as zero below `epsilon`; where `b` does too, every value is a root, and 0 is
/// reported as the one root.
MATH_API void F3DGetLinearRealRoots(double const & a, double const & b, unsigned long * count, double * root,
                                    double const & epsilon = math::detail::k_StandardTolerance<double>);

/// The real roots of a x^2 + b x + c by the plain formula, (sqrt(D) - b) / 2a first, which loses digits where 4 a c is
/// small beside b^2. F3DFindQuadraticRoots does not.
///
/// `a` counts as zero below `epsilon`; the equation is then linear, with its root in `r0`. A double root, with a
/// discriminant of exactly 0, is reported as no root.
MATH_API void F3DGetQuadraticRealRoots(double const & a, double const & b, double const & c, unsigned long * count,
                                       double * r0, double * r1,
                                       double const & epsilon = math::detail::k_StandardTolerance<double>);

/// The real roots of a x^3 + b x^2 + c x + d, by Cardano's formula for one real root and Viete's for three.
///
/// `epsilon` is relative to the sum of the magnitudes of the coefficients. Leading coefficients below that limit count
/// as zero: the equation is then quadratic (with a double root reported as none), linear, or holds everywhere (0 is
/// reported as the one root).
///
/// A double root is stored twice, in `r1` and `r2`, after the simple one. It is recognised when the discriminant is not
/// negative and two cube roots agree within the limit; one that rounding has moved is reported as two close roots, or
/// as none, with the simple root alone. A triple root counts as a double one and is stored three times.
///
/// A single real root comes from the sum of two cube roots. Where one of them is small beside the other it is mostly
/// rounding error: the root is then good to the cube root of the machine precision, 6e-6 of the coefficients, and a
/// step of Newton's iteration improves it.
MATH_API void F3DGetCubicRealRoots(double const & a, double b, double c, double const & d, unsigned long * count,
                                   double * r0, double * r1, double * r2,
                                   double const & epsilon = math::detail::k_StandardTolerance<double>);
