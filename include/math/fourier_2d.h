#pragma once

/// \file
/// Two-dimensional signals and their Fourier, cosine and sine transforms.

#include "math/api.h"

namespace math::detail
{

struct TableCounts;
class TransformTablesInspector;

} // namespace math::detail

/// Rows of samples, each on its own.
class MATH_API CDSPSignal2D
{
public:
    double ** m_Data;     ///< the rows, owned
    unsigned int m_Size1; ///< how many rows there are
    unsigned int m_Size2; ///< how many `double` values a row has

    /// Values that are not initialised. Where memory is short, what could not be had is null, and nothing tells so.
    CDSPSignal2D(unsigned int size1, unsigned int size2);

    /// Independent copies, of what there is and there is memory for.
    ///@{
    CDSPSignal2D(CDSPSignal2D const & other);
    CDSPSignal2D & operator=(CDSPSignal2D const & other);
    ///@}

    /// Frees the rows.
    ~CDSPSignal2D();
};

/// Transforms of signals of n1 rows of n2 values, in place, along the rows and along the columns.
///
/// See CDSPTransform1D for the sums, and for what holds here too: one kind of transform for an object's whole life,
/// sizes up to those of the first call, powers of two that are not checked, and at least 2; false without a word but
/// the first "Out of memory in CDSPTransform2D...", and for a signal that lacks a row.
class MATH_API CDSPTransform2D
{
public:
    /// Without tables: the first transform makes them.
    CDSPTransform2D();
    CDSPTransform2D(CDSPTransform2D const & other) = delete;
    CDSPTransform2D & operator=(CDSPTransform2D const & other) = delete;
    /// Frees the tables.
    ~CDSPTransform2D();

    /// Rows of n2/2 complex samples. There and back multiplies by n1 n2 / 2.
    bool ComplexFFT(int sign, CDSPSignal2D * signal);

    /// Real values and the half of their transform that the other half mirrors, X[-k1][-k2] = conj X[k1][k2]. There and
    /// back multiplies by n1 n2 / 2.
    ///
    /// Packed, in place of n2 values a row, X[k1][k2] stands at 2 k2 and 2 k2 + 1 for 0 < k2 < n2/2. Columns 0 and n2/2
    /// mirror themselves: row k1 with 0 < k1 < n1/2 has its own column 0 there, and row n1 - k1 the imaginary and real
    /// part of its column n2/2. Rows 0 and n1/2 have the real parts of both.
    ///
    /// \param sign as for one dimension. Only 1 and -1 change the layout
    /// \param isExpanded whether rows have two values more, n2 being that much less than the signal's, and after a
    /// forward transform all n2/2 + 1 columns stand in their places. **A call that is refused with the sign -1 has
    /// packed the signal**
    /// \param signal the signal
    bool RealFFT(int sign, bool isExpanded, CDSPSignal2D * signal);

    /// The cosine and sine transform along both axes, with the same sign. Backward, then half of what stands at index 0
    /// along each axis, then forward multiply by n1 n2 / 4.
    ///@{
    bool RealDCT(int sign, CDSPSignal2D * signal);
    bool RealDST(int sign, CDSPSignal2D * signal);
    ///@}

private:
    friend class math::detail::TransformTablesInspector;

    /// Allocates the three tables, none for a count of 0, and marks each as empty by a 0 at its start.
    /// \return whether there was memory for all; otherwise the words above go to the standard error stream, and what
    /// could be had stays
    bool InitArrays(unsigned int wCount, unsigned int ipCount, unsigned int tCount);
    /// Makes the tables if this is the first call. \return whether they serve a transform of these sizes
    bool Prepare(unsigned int size1, unsigned int size2, math::detail::TableCounts const & counts);
    using TrigonometricKernel = void(int, int, int, double **, double *, int *, double *);
    bool RunTrigonometric(int sign, CDSPSignal2D * signal, TrigonometricKernel * kernel);

    double * m_Work = nullptr;    ///< twiddles, then cosines
    double * m_Scratch = nullptr; ///< of the column passes
    int * m_Index = nullptr;      ///< how many of both there are, then the offsets of the bit reversal
    unsigned int m_MaxSize1 = 0;  ///< the sizes of the first transform, which the tables serve
    unsigned int m_MaxSize2 = 0;  ///< see m_MaxSize1
    bool m_Initialized = false;   ///< whether all tables are there
    bool m_IsTried = false;       ///< whether they have been asked for, which is done once
};
