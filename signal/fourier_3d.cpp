#include "math/fourier_3d.h"

#include "signal/axis_table_counts.h"
#include "signal/fft_planes.h"
#include "signal/mirrored_rows.h"
#include "signal/row_memory.h"
#include "signal/transform_tables.h"

#include <algorithm>
#include <new>
#include <utility>

using math::detail::TableCounts;

CDSPSignal3D::CDSPSignal3D(unsigned int size1, unsigned int size2, unsigned int size3)
    : m_Data(new (std::nothrow) double **[size1]), m_Size1(size1), m_Size2(size2), m_Size3(size3)
{
    if (m_Data != nullptr)
    {
        std::generate_n(m_Data, size1, [size2, size3] { return math::detail::AllocateRows(size2, size3); });
    }
}

CDSPSignal3D::CDSPSignal3D(CDSPSignal3D const & other) : CDSPSignal3D(other.m_Size1, other.m_Size2, other.m_Size3)
{
    for (unsigned int i = 0; m_Data != nullptr && other.m_Data != nullptr && i < m_Size1; ++i)
    {
        math::detail::CopyRows(other.m_Data[i], m_Data[i], m_Size2, m_Size3);
    }
}

CDSPSignal3D & CDSPSignal3D::operator=(CDSPSignal3D const & other)
{
    CDSPSignal3D copy(other);
    std::swap(m_Data, copy.m_Data);
    std::swap(m_Size1, copy.m_Size1);
    std::swap(m_Size2, copy.m_Size2);
    std::swap(m_Size3, copy.m_Size3);
    return *this;
}

CDSPSignal3D::~CDSPSignal3D()
{
    for (unsigned int i = 0; m_Data != nullptr && i < m_Size1; ++i)
    {
        math::detail::FreeRows(m_Data[i], m_Size2);
    }
    delete[] m_Data;
    m_Data = nullptr;
}

CDSPTransform3D::CDSPTransform3D() = default;

CDSPTransform3D::~CDSPTransform3D()
{
    delete[] m_Work;
    delete[] m_Scratch;
    delete[] m_Index;
}

bool CDSPTransform3D::InitArrays(unsigned int wCount, unsigned int ipCount, unsigned int tCount)
{
    return math::detail::AllocateTables("CDSPTransform3D", wCount, ipCount, tCount, m_Work, m_Index, m_Scratch);
}

/// \return whether the tables serve a transform of this size
bool CDSPTransform3D::Prepare(unsigned int size1, unsigned int size2, unsigned int size3, TableCounts const & counts)
{
    if (!m_IsTried)
    {
        m_IsTried = true;
        m_MaxSize1 = size1;
        m_MaxSize2 = size2;
        m_MaxSize3 = size3;
        m_Initialized = InitArrays(counts.work, math::detail::CountIndexes(counts.half), counts.scratch);
    }
    return m_Initialized && size1 <= m_MaxSize1 && size2 <= m_MaxSize2 && size3 <= m_MaxSize3;
}

namespace
{

bool IsComplete(CDSPSignal3D const * signal)
{
    return signal != nullptr && signal->m_Data != nullptr &&
           std::all_of(signal->m_Data, signal->m_Data + signal->m_Size1,
                       [signal](double * const * rows) { return math::detail::HasRows(rows, signal->m_Size2); });
}

unsigned int MostRows(CDSPSignal3D const & signal)
{
    return std::max(signal.m_Size1, signal.m_Size2);
}

} // namespace

bool CDSPTransform3D::ComplexFFT(int sign, CDSPSignal3D * signal)
{
    if (!IsComplete(signal) || !Prepare(signal->m_Size1, signal->m_Size2, signal->m_Size3,
                                        math::detail::CountsOfComplexAxes(MostRows(*signal), signal->m_Size3)))
    {
        return false;
    }
    math::detail::DSPComplexDFT3D(static_cast<int>(signal->m_Size1), static_cast<int>(signal->m_Size2),
                                  static_cast<int>(signal->m_Size3), sign, signal->m_Data, m_Scratch, m_Index, m_Work);
    return true;
}

bool CDSPTransform3D::RealFFT(int sign, bool isExpanded, CDSPSignal3D * signal)
{
    if (!IsComplete(signal))
    {
        return false;
    }
    auto const n1 = static_cast<int>(signal->m_Size1);
    auto const n2 = static_cast<int>(signal->m_Size2);
    unsigned int const n3 = isExpanded ? signal->m_Size3 - 2 : signal->m_Size3;
    if (isExpanded && sign == -1)
    {
        math::detail::PackRows(n3, signal->m_Data, n1, n2);
    }
    if (!Prepare(signal->m_Size1, signal->m_Size2, n3, math::detail::CountsOfRealAxes(MostRows(*signal), n3)))
    {
        return false;
    }
    math::detail::DSPRealDFT3D(n1, n2, static_cast<int>(n3), sign, signal->m_Data, m_Scratch, m_Index, m_Work);
    if (isExpanded && sign == 1)
    {
        math::detail::ExpandRows(n3, signal->m_Data, n1, n2);
    }
    return true;
}

bool CDSPTransform3D::RunTrigonometric(int sign, CDSPSignal3D * signal, TrigonometricKernel * kernel)
{
    if (!IsComplete(signal) || !Prepare(signal->m_Size1, signal->m_Size2, signal->m_Size3,
                                        math::detail::CountsOfTrigonometricAxes(MostRows(*signal), signal->m_Size3)))
    {
        return false;
    }
    kernel(static_cast<int>(signal->m_Size1), static_cast<int>(signal->m_Size2), static_cast<int>(signal->m_Size3),
           sign, signal->m_Data, m_Scratch, m_Index, m_Work);
    return true;
}

bool CDSPTransform3D::RealDCT(int sign, CDSPSignal3D * signal)
{
    return RunTrigonometric(sign, signal, math::detail::DSPCosineDFT3D);
}

bool CDSPTransform3D::RealDST(int sign, CDSPSignal3D * signal)
{
    return RunTrigonometric(sign, signal, math::detail::DSPSineDFT3D);
}
