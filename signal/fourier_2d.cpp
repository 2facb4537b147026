#include "math/fourier_2d.h"

#include "signal/axis_table_counts.h"
#include "signal/fft_planes.h"
#include "signal/mirrored_rows.h"
#include "signal/row_memory.h"
#include "signal/transform_tables.h"

#include <utility>

using math::detail::TableCounts;

CDSPSignal2D::CDSPSignal2D(unsigned int size1, unsigned int size2)
    : m_Data(math::detail::AllocateRows(size1, size2)), m_Size1(size1), m_Size2(size2)
{
}

CDSPSignal2D::CDSPSignal2D(CDSPSignal2D const & other) : CDSPSignal2D(other.m_Size1, other.m_Size2)
{
    math::detail::CopyRows(other.m_Data, m_Data, m_Size1, m_Size2);
}

CDSPSignal2D & CDSPSignal2D::operator=(CDSPSignal2D const & other)
{
    CDSPSignal2D copy(other);
    std::swap(m_Data, copy.m_Data);
    std::swap(m_Size1, copy.m_Size1);
    std::swap(m_Size2, copy.m_Size2);
    return *this;
}

CDSPSignal2D::~CDSPSignal2D()
{
    math::detail::FreeRows(m_Data, m_Size1);
    m_Data = nullptr;
}

CDSPTransform2D::CDSPTransform2D() = default;

CDSPTransform2D::~CDSPTransform2D()
{
    delete[] m_Work;
    delete[] m_Scratch;
    delete[] m_Index;
}

bool CDSPTransform2D::InitArrays(unsigned int wCount, unsigned int ipCount, unsigned int tCount)
{
    return math::detail::AllocateTables("CDSPTransform2D", wCount, ipCount, tCount, m_Work, m_Index, m_Scratch);
}

/// \return whether the tables serve a transform of this size
bool CDSPTransform2D::Prepare(unsigned int size1, unsigned int size2, TableCounts const & counts)
{
    if (!m_IsTried)
    {
        m_IsTried = true;
        m_MaxSize1 = size1;
        m_MaxSize2 = size2;
        m_Initialized = InitArrays(counts.work, math::detail::CountIndexes(counts.half), counts.scratch);
    }
    return m_Initialized && size1 <= m_MaxSize1 && size2 <= m_MaxSize2;
}

namespace
{

bool IsComplete(CDSPSignal2D const * signal)
{
    return signal != nullptr && math::detail::HasRows(signal->m_Data, signal->m_Size1);
}

} // namespace

bool CDSPTransform2D::ComplexFFT(int sign, CDSPSignal2D * signal)
{
    if (!IsComplete(signal) ||
        !Prepare(signal->m_Size1, signal->m_Size2, math::detail::CountsOfComplexAxes(signal->m_Size1, signal->m_Size2)))
    {
        return false;
    }
    math::detail::DSPComplexDFT2D(static_cast<int>(signal->m_Size1), static_cast<int>(signal->m_Size2), sign,
                                  signal->m_Data, m_Scratch, m_Index, m_Work);
    return true;
}

bool CDSPTransform2D::RealFFT(int sign, bool isExpanded, CDSPSignal2D * signal)
{
    if (!IsComplete(signal))
    {
        return false;
    }
    unsigned int const n1 = signal->m_Size1;
    unsigned int const n2 = isExpanded ? signal->m_Size2 - 2 : signal->m_Size2;
    if (isExpanded && sign == -1)
    {
        math::detail::PackRows(n2, signal->m_Data, static_cast<int>(n1));
    }
    if (!Prepare(n1, n2, math::detail::CountsOfRealAxes(n1, n2)))
    {
        return false;
    }
    math::detail::DSPRealDFT2D(static_cast<int>(n1), static_cast<int>(n2), sign, signal->m_Data, m_Scratch, m_Index,
                               m_Work);
    if (isExpanded && sign == 1)
    {
        math::detail::ExpandRows(n2, signal->m_Data, static_cast<int>(n1));
    }
    return true;
}

bool CDSPTransform2D::RunTrigonometric(int sign, CDSPSignal2D * signal, TrigonometricKernel * kernel)
{
    if (!IsComplete(signal) || !Prepare(signal->m_Size1, signal->m_Size2,
                                        math::detail::CountsOfTrigonometricAxes(signal->m_Size1, signal->m_Size2)))
    {
        return false;
    }
    kernel(static_cast<int>(signal->m_Size1), static_cast<int>(signal->m_Size2), sign, signal->m_Data, m_Scratch,
           m_Index, m_Work);
    return true;
}

bool CDSPTransform2D::RealDCT(int sign, CDSPSignal2D * signal)
{
    return RunTrigonometric(sign, signal, math::detail::DSPCosineDFT2D);
}

bool CDSPTransform2D::RealDST(int sign, CDSPSignal2D * signal)
{
    return RunTrigonometric(sign, signal, math::detail::DSPSineDFT2D);
}
