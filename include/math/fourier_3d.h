#pragma once

/// \file
/// Three-dimensional signals and their Fourier, cosine and sine transforms.

#include "math/api.h"

namespace math::detail
{

struct TableCounts;
class TransformTablesInspector;

} // namespace math::detail

/// Planes of rows of samples, each row on its own.
class MATH_API CDSPSignal3D
{
public:
    double *** m_Data;    ///< the planes of rows, owned
    unsigned int m_Size1; ///< how many planes there are
    unsigned int m_Size2; ///< how many rows a plane has
    unsigned int m_Size3; ///< how many `double` values a row has

    /// Values that are not initialised. Where memory is short, what could not be had is null, and nothing tells so.
    CDSPSignal3D(unsigned int size1, unsigned int size2, unsigned int size3);

    /// Independent copies, of what there is and there is memory for.
    ///@{
    CDSPSignal3D(CDSPSignal3D const & other);
    CDSPSignal3D & operator=(CDSPSignal3D const & other);
    ///@}

    /// Frees the planes and rows.
    ~CDSPSignal3D();
};

/// Transforms of signals of n1 planes of n2 rows of n3 values, in place, along all three axes.
///
/// As CDSPTransform2D, with one axis more, and its words "Out of memory in CDSPTransform3D...".
class MATH_API CDSPTransform3D
{
public:
    /// Without tables: the first transform makes them.
    CDSPTransform3D();
    CDSPTransform3D(CDSPTransform3D const & other) = delete;
    CDSPTransform3D & operator=(CDSPTransform3D const & other) = delete;
    /// Frees the tables.
    ~CDSPTransform3D();

    /// Rows of n3/2 complex samples. There and back multiplies by n1 n2 n3 / 2.
    bool ComplexFFT(int sign, CDSPSignal3D * signal);

    /// Real values and the half of their transform that the other half mirrors, X[-k1][-k2][-k3] = conj X[k1][k2][k3].
    /// There and back multiplies by n1 n2 n3 / 2.
    ///
    /// Packed, columns 0 and n3/2 share the first two values of a row: of row (k1, k2) and its mirror (-k1, -k2) the
    /// first has its own column 0 there, and the second the imaginary and real part of its own column n3/2. The first
    /// is the one with 0 < k1 < n1/2 or, in planes 0 and n1/2, 0 < k2 < n2/2. The four rows that mirror themselves have
    /// the real parts of both.
    ///
    /// For `isExpanded` see CDSPTransform2D::RealFFT; n3 is the row less two there.
    bool RealFFT(int sign, bool isExpanded, CDSPSignal3D * signal);

    /// The cosine and sine transform along the three axes, with the same sign. Backward, then half of what stands at
    /// index 0 along each axis, then forward multiply by n1 n2 n3 / 8.
    ///@{
    bool RealDCT(int sign, CDSPSignal3D * signal);
    bool RealDST(int sign, CDSPSignal3D * signal);
    ///@}

private:
    friend class math::detail::TransformTablesInspector;

    /// Allocates the three tables, none for a count of 0, and marks each as empty by a 0 at its start.
    /// \return whether there was memory for all; otherwise the words above go to the standard error stream, and what
    /// could be had stays
    bool InitArrays(unsigned int wCount, unsigned int ipCount, unsigned int tCount);
    /// Makes the tables if this is the first call. \return whether they serve a transform of these sizes
    bool Prepare(unsigned int size1, unsigned int size2, unsigned int size3, math::detail::TableCounts const & counts);
    using TrigonometricKernel = void(int, int, int, int, double ***, double *, int *, double *);
    bool RunTrigonometric(int sign, CDSPSignal3D * signal, TrigonometricKernel * kernel);

    double * m_Work = nullptr;    ///< twiddles, then cosines
    double * m_Scratch = nullptr; ///< of the column passes
    int * m_Index = nullptr;      ///< how many of both there are, then the offsets of the bit reversal
    unsigned int m_MaxSize1 = 0;  ///< the sizes of the first transform, which the tables serve
    unsigned int m_MaxSize2 = 0;  ///< see m_MaxSize1
    unsigned int m_MaxSize3 = 0;  ///< see m_MaxSize1
    bool m_Initialized = false;   ///< whether all tables are there
    bool m_IsTried = false;       ///< whether they have been asked for, which is done once
};
