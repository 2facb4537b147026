#pragma once

/// \file
/// One-dimensional signals and their Fourier, cosine and sine transforms.

#include "math/api.h"

namespace math::detail
{

struct TableCounts;
class TransformTablesInspector;

} // namespace math::detail

/// A buffer of samples. A complex signal holds real and imaginary parts in turn, so that its size is twice the number
/// of its samples.
class MATH_API CDSPSignal1D
{
public:
    double * m_Data;     ///< the samples, owned
    unsigned int m_Size; ///< how many `double` values they are

    /// `size` values that are not initialised. Where memory is short, "Out of memory in CDSPSignal1D..." goes to the
    /// standard error stream, and the buffer is null.
    explicit CDSPSignal1D(unsigned int size);

    /// Independent copies. Of a signal without a buffer the copy has none either; where memory for one is short, it is
    /// as above.
    ///@{
    CDSPSignal1D(CDSPSignal1D const & other);
    CDSPSignal1D & operator=(CDSPSignal1D const & other);
    ///@}

    /// Frees the buffer.
    ~CDSPSignal1D();
};

/// Transforms of signals of one size, in place, with the tables that they need. The sum of a transform is as its name
/// tells; nothing is normalised: a transform and its inverse multiply the signal by half its size.
///
/// The first call makes the tables, for its kind of transform and its size. **An object serves one kind of transform
/// for its whole life**, and signals of the size of the first one or smaller. Sizes are powers of two, at least 2,
/// which is not checked. Of `sign` it is read whether it is below 0.
///
/// All return true where they ran. They return false, with the signal unchanged, for a signal without a buffer, for one
/// larger than the first, and where the tables could not be had, which then stays so; the first time "Out of memory in
/// CDSPTransform1D..." goes to the standard error stream.
///
/// An object belongs to one thread at a time. (P. Duhamel, H. Hollmann, "Split radix FFT algorithm", 1984; K. R. Rao,
/// P. Yip, "Discrete Cosine Transform", 1990.)
class MATH_API CDSPTransform1D
{
public:
    /// Without tables: the first transform makes them.
    CDSPTransform1D();
    CDSPTransform1D(CDSPTransform1D const & other) = delete;
    CDSPTransform1D & operator=(CDSPTransform1D const & other) = delete;
    /// Frees the tables.
    ~CDSPTransform1D();

    /// X[k] = sum of x[j] exp(+2 pi i j k / N) over the N = size / 2 samples; with exp(-...) for a sign below 0. There
    /// and back multiplies by N.
    bool ComplexFFT(int sign, CDSPSignal1D * signal);

    /// R[k] + i I[k] = sum of x[j] exp(+2 pi i j k / n) over the n values: R[0], R[n/2], then R[k], I[k] for
    /// 0 < k < n/2. With a sign below 0 the way back, from that layout. There and back multiplies by n/2.
    bool RealFFT(int sign, CDSPSignal1D * signal);

    /// C[k] = sum of x[j] cos(pi j (k + 1/2) / n); for a sign below 0 of x[j] cos(pi (j + 1/2) k / n). The second, then
    /// half of C[0], then the first multiply by n/2.
    bool RealDCT(int sign, CDSPSignal1D * signal);

    /// S[k] = sum over 0 < j <= n of x[j] sin(pi j (k + 1/2) / n); for a sign below 0 over 0 <= j < n of
    /// x[j] sin(pi (j + 1/2) k / n), 0 < k <= n. Index n stands at 0. As RealDCT there and back. **It works on as many
    /// values as the first signal had**, in a smaller signal too.
    bool RealDST(int sign, CDSPSignal1D * signal);

    /// C[k] = sum over 0 <= j <= n of x[j] cos(pi j k / n), for a signal of n + 1 values. Twice, with both ends halved
    /// before each, multiplies by n/2.
    bool DCTOfRealFFT(CDSPSignal1D * signal);

    /// S[k] = sum over 0 < j < n of x[j] sin(pi j k / n), for a signal of n + 1 values, and 0 at 0; the last value is
    /// not read. Twice multiplies by n/2.
    bool DSTOfRealFFT(CDSPSignal1D * signal);

private:
    friend class math::detail::TransformTablesInspector;

    /// Allocates the three tables, none for a count of 0, and marks each as empty by a 0 at its start.
    /// \return whether there was memory for all; otherwise the words above go to the standard error stream, and what
    /// could be had stays
    bool InitArrays(unsigned int wCount, unsigned int ipCount, unsigned int tCount);
    /// Makes the tables if this is the first call. \return whether they serve a transform of `size` values
    bool Prepare(CDSPSignal1D const * signal, unsigned int size, math::detail::TableCounts const & counts);

    double * m_Work = nullptr;    ///< twiddles, then cosines
    double * m_Scratch = nullptr; ///< of the whole-range transforms, else null
    int * m_Index = nullptr;      ///< how many of both there are, then the offsets of the bit reversal
    unsigned int m_MaxSize = 0;   ///< the size of the first transform, which the tables serve
    bool m_Initialized = false;   ///< whether all tables are there
    bool m_IsTried = false;       ///< whether they have been asked for, which is done once
};
