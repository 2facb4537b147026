#pragma once

/// \file
/// The tables of the transform kernels. The caller owns them:
/// - ip[0] is nw, the number of twiddle values at the start of w, and ip[1] is nc, the number of cosines behind them;
///   both are 0 at first. From ip[2] on stand the offsets of the bit reversal: for m = 2^b >= 2 and 0 <= j < m,
///   ip[m + j] is 8 m times the reversal of j in b bits.
/// - w[0 .. nw - 1] is a chain of sub-tables of nw/2, nw/4, ... 2 values, so that the one of h values starts at
///   w[nw - 2 h]: each stage of a transform takes that of its own size from the end. The last two places are not used.
/// - w[nw .. nw + nc - 1] are the cosines.

namespace math::detail
{

/// Fills the chain of twiddles, and sets nw; nc becomes 1, as the cosines have lost their place.
void DSPMakeTwiddles(int nw, int * ip, double * w);

/// Fills the offsets of the bit reversal.
void DSPMakeBitRevTable(int nw, int * ip);

/// Fills a table c of nc cosines of a quarter turn, halved but for the first, and sets nc.
void DSPMakeCosines(int nc, int * ip, double * c);

} // namespace math::detail
