#include "math/fourier_1d.h"

#include "signal/fft_kernels.h"
#include "signal/transform_tables.h"

#include <algorithm>
#include <cstdio>
#include <new>
#include <utility>

using math::detail::TableCounts;

namespace
{

double * AllocateValues(unsigned int size)
{
    auto * const values = new (std::nothrow) double[size];
    if (values == nullptr)
    {
        std::fputs("Out of memory in CDSPSignal1D...", stderr);
    }
    return values;
}

} // namespace

CDSPSignal1D::CDSPSignal1D(unsigned int size) : m_Data(AllocateValues(size)), m_Size(size) {}

// A signal without a buffer has no values that a copy could hold.
CDSPSignal1D::CDSPSignal1D(CDSPSignal1D const & other)
    : m_Data(other.m_Data != nullptr ? AllocateValues(other.m_Size) : nullptr), m_Size(other.m_Size)
{
    if (m_Data != nullptr)
    {
        std::copy_n(other.m_Data, m_Size, m_Data);
    }
}

CDSPSignal1D & CDSPSignal1D::operator=(CDSPSignal1D const & other)
{
    CDSPSignal1D copy(other);
    std::swap(m_Data, copy.m_Data);
    std::swap(m_Size, copy.m_Size);
    return *this;
}

CDSPSignal1D::~CDSPSignal1D()
{
    delete[] m_Data;
    m_Data = nullptr;
}

CDSPTransform1D::CDSPTransform1D() = default;

CDSPTransform1D::~CDSPTransform1D()
{
    delete[] m_Work;
    delete[] m_Scratch;
    delete[] m_Index;
}

bool CDSPTransform1D::InitArrays(unsigned int wCount, unsigned int ipCount, unsigned int tCount)
{
    return math::detail::AllocateTables("CDSPTransform1D", wCount, ipCount, tCount, m_Work, m_Index, m_Scratch);
}

/// \return whether the tables serve a transform of `size` values
bool CDSPTransform1D::Prepare(CDSPSignal1D const * signal, unsigned int size, TableCounts const & counts)
{
    if (signal == nullptr || signal->m_Data == nullptr)
    {
        return false;
    }
    if (!m_IsTried)
    {
        m_IsTried = true;
        m_MaxSize = size;
        m_Initialized = InitArrays(counts.work, math::detail::CountIndexes(counts.half), counts.scratch);
    }
    return m_Initialized && size <= m_MaxSize;
}

namespace
{

TableCounts CountsOfComplex(unsigned int n)
{
    return {n / 2, n > 3 ? n / 4 : 0, 0};
}

TableCounts CountsOfReal(unsigned int n)
{
    return {n / 2, n / 2, 0};
}

TableCounts CountsOfTrigonometric(unsigned int n)
{
    return {n / 2, static_cast<unsigned int>(5ULL * n / 4), 0};
}

TableCounts CountsOfWholeRange(unsigned int n, unsigned int scratch)
{
    return {n / 4, static_cast<unsigned int>(5ULL * n / 8), scratch};
}

} // namespace

bool CDSPTransform1D::ComplexFFT(int sign, CDSPSignal1D * signal)
{
    unsigned int const n = signal != nullptr ? signal->m_Size : 0;
    if (!Prepare(signal, n, CountsOfComplex(n)))
    {
        return false;
    }
    math::detail::DSPComplexDFT(static_cast<int>(n), sign, signal->m_Data, m_Index, m_Work);
    return true;
}

bool CDSPTransform1D::RealFFT(int sign, CDSPSignal1D * signal)
{
    unsigned int const n = signal != nullptr ? signal->m_Size : 0;
    if (!Prepare(signal, n, CountsOfReal(n)))
    {
        return false;
    }
    math::detail::DSPRealDFT(static_cast<int>(n), sign, signal->m_Data, m_Index, m_Work);
    return true;
}

bool CDSPTransform1D::RealDCT(int sign, CDSPSignal1D * signal)
{
    unsigned int const n = signal != nullptr ? signal->m_Size : 0;
    if (!Prepare(signal, n, CountsOfTrigonometric(n)))
    {
        return false;
    }
    math::detail::DSPCosineDFT(static_cast<int>(n), sign, signal->m_Data, m_Index, m_Work);
    return true;
}

bool CDSPTransform1D::RealDST(int sign, CDSPSignal1D * signal)
{
    unsigned int const n = signal != nullptr ? signal->m_Size : 0;
    if (!Prepare(signal, n, CountsOfTrigonometric(n)))
    {
        return false;
    }
    math::detail::DSPSineDFT(static_cast<int>(m_MaxSize), sign, signal->m_Data, m_Index, m_Work);
    return true;
}

bool CDSPTransform1D::DCTOfRealFFT(CDSPSignal1D * signal)
{
    unsigned int const n = signal != nullptr ? signal->m_Size - 1 : 0;
    if (!Prepare(signal, n, CountsOfWholeRange(n, n / 2 + 1)))
    {
        return false;
    }
    math::detail::DSPWholeCosine(static_cast<int>(n), signal->m_Data, m_Scratch, m_Index, m_Work);
    return true;
}

bool CDSPTransform1D::DSTOfRealFFT(CDSPSignal1D * signal)
{
    unsigned int const n = signal != nullptr ? signal->m_Size - 1 : 0;
    if (!Prepare(signal, n, CountsOfWholeRange(n, n / 2)))
    {
        return false;
    }
    math::detail::DSPWholeSine(static_cast<int>(n), signal->m_Data, m_Scratch, m_Index, m_Work);
    return true;
}
