#pragma once

/// \file
/// A quick pseudo-random generator whose state lies with the caller.
///
/// A multiplicative congruential generator modulo 2^32 with the multiplier 663608941. The state is 32 bits: of a wider
/// `unsigned long` the low 32 bits are used, and what is stored is below 2^32. 0 is no valid state; it is replaced by
/// 0xFFFFFFEF when met. The same state gives the same sequence on every machine.
///
/// Seed with numbers of the form 4k + 1: they run through 2^30 values before the first comes again. Numbers 4k + 3 end
/// up in a cycle of some 242 million. Each trailing zero bit of a seed stays and halves the period; 0x80000000 only
/// repeats itself. As with every generator of this kind the low bits are far from random; use the high ones. Not for
/// cryptography.
///
/// A state shared between threads needs the caller's care.

#include "math/api.h"

/// Moves the state one step and returns it: a whole number from 0 to 0xFFFFFFFE.
MATH_API unsigned long F3DQuickRand(unsigned long & state);

/// A uniform variate in [0, 1), from one step.
MATH_API double F3DQuickUniformRand(unsigned long & state);

/// A uniform variate in (center - range, center + range], from one step. Greater states give smaller values.
MATH_API double F3DQuickUniformRand(unsigned long & state, double center, double range);

/// A standard normal variate, from two steps. (Box, Muller: A note on the generation of random normal deviates, 1958.)
///
/// Infinite in the rare case that the first step yields 0.
MATH_API double F3DQuickGaussianRand(unsigned long & state);

/// mean + sigma sqrt(-2 ln u1) cos(2 pi sigma^2 u2), from two steps.
///
/// Beware: sigma^2 also multiplies the angle. The variate is normal with this mean and standard deviation only where
/// sigma^2 is a multiple of one half, such as for a sigma of 1; a sigma of 0.5 never goes below the mean. For other
/// deviations scale the form without arguments.
///
/// Not finite in the rare case that the first step yields 0.
MATH_API double F3DQuickGaussianRand(unsigned long & state, double mean, double sigma);

/// A standard normal variate by the polar method, which rejects pairs of steps until one lies in the unit circle.
/// (Marsaglia, Bray: A convenient method for generating normal variables, 1964.)
///
/// However many steps the call takes, the caller's state moves by one, so successive calls share steps and are not
/// independent.
MATH_API double F3DRealGaussianRand(unsigned long & state);
