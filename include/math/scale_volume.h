#pragma once

/// \file
/// Keeping a volume when a scale changes.

#include "math/vector3.h"

/// Compensates the change of some factors of a scale by the others, so that the changed and the adjusted ones have the
/// product that they would have at 1: a box stretched along X becomes thinner along Y and Z.
///
/// Axes are bit sets: 1 for X, 2 for Y, 4 for Z.
///
/// \param scale the factors along the three axes, as the user left them
/// \param changed the axes that the user has set
/// \param result the compensated factors; always written, with the values of `scale` where nothing is adjusted. It may
/// be `scale`.
/// \param allowed the axes that may be adjusted; those that are also in `changed`, and bits above the three, are
/// ignored
/// \return 0 when the compensation was done, or when `changed` is 0 or above 7, so that there was nothing to
/// do; 1 when it cannot be done: a changed factor is 0, or no axis is left to adjust
///
/// Each adjusted factor is multiplied by |1 / p|, p the product of the changed factors, or by its square root where two
/// axes share the adjustment: signs stay.
MATH_API long F3DScaleVolume(C3DVector3Tpl<double> const & scale, unsigned int changed, C3DVector3Tpl<double> & result,
                             unsigned int allowed);
