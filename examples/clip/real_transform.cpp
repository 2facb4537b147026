#include "clip/real_transform.h"

#include <cmath>
#include <new>
#include <stdexcept>

namespace clip
{

namespace
{

unsigned int CheckSize(std::size_t size)
{
    if (size > RealTransform::k_MostValues)
    {
        throw std::length_error("the clip is too long for a transform of its frames");
    }
    return static_cast<unsigned int>(size);
}

} // namespace

RealTransform::RealTransform(std::size_t size) : m_Signal(CheckSize(size))
{
    if (m_Signal.m_Data == nullptr)
    {
        throw std::bad_alloc();
    }
}

void RealTransform::Run(int sign)
{
    // The tables are made by the first call, the only one that may fail.
    if (!m_Transform.RealFFT(sign, &m_Signal))
    {
        throw std::bad_alloc();
    }
}

void RealTransform::Forward()
{
    Run(1);
}

void RealTransform::Backward()
{
    Run(-1);
    for (double & value : Values())
    {
        value *= 2.0 / m_Signal.m_Size;
    }
}

double RealTransform::Magnitude(std::size_t k) const
{
    double const * const spectrum = m_Signal.m_Data;
    if (k == 0 || 2 * k == m_Signal.m_Size)
    {
        return std::abs(spectrum[k == 0 ? 0 : 1]);
    }
    return std::hypot(spectrum[2 * k], spectrum[2 * k + 1]);
}

void RealTransform::Scale(std::size_t k, double factor)
{
    double * const spectrum = m_Signal.m_Data;
    if (k == 0 || 2 * k == m_Signal.m_Size)
    {
        spectrum[k == 0 ? 0 : 1] *= factor;
        return;
    }
    spectrum[2 * k] *= factor;
    spectrum[2 * k + 1] *= factor;
}

} // namespace clip
