#pragma once

/// \file
/// What the transform kernels share: tables on demand, and the passes between a real and a complex transform.

#include "signal/fft_core.h"

namespace math::detail
{

/// Makes n / `ratio` twiddles where there are fewer. New twiddles leave no cosines.
void EnsureTwiddles(int n, int ratio, int * ip, double * w);

/// Makes n / `ratio` cosines, behind the twiddles, where there are fewer. Twiddles come first.
void EnsureCosines(int n, int ratio, int * ip, double * w);

/// The real transform of n values but for the two that stand in one place, after and before the complex one.
///@{
void DSPRealForwardPost(int n, double * a, int nc, double const * c);
void DSPRealBackwardPre(int n, double * a, int nc, double const * c);
///@}

/// The two passes by operations of one width.
struct RealPasses
{
    void (*forwardPost)(int n, double * a, int nc, double const * c);
    void (*backwardPre)(int n, double * a, int nc, double const * c);
};

/// One complex number in a register.
RealPasses RealPassesByOne();

/// Two, with the same bits as a result. Those by one where the processor has no such registers.
RealPasses RealPassesByTwo();

/// The turn of pairs of values that makes a cosine or sine transform of a real one.
///@{
void DSPCosinePhase(int n, double * a, int nc, double const * c);
void DSPSinePhase(int n, double * a, int nc, double const * c);
///@}

/// What a real transform is made of: for one array, or for several side by side.
struct RealParts
{
    Cores cores;
    RealPasses passes;
};

/// Those for one array.
inline constexpr RealParts k_PartsOfOne{{DSPForwardCore, DSPBackwardCore}, {DSPRealForwardPost, DSPRealBackwardPre}};

/// The complex transform of n values and the pass behind it, or the pass before it; nothing below 4 values.
///@{
void TransformForward(RealParts const & parts, int n, double * a, int const * ip, double const * w);
void TransformBackward(RealParts const & parts, int n, double * a, int const * ip, double const * w);
///@}

} // namespace math::detail
