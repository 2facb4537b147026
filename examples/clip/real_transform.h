#pragma once

#include "math/fourier_1d.h"

#include <cstddef>
#include <span>

namespace clip
{

/// The Fourier transform of so many real values, in place, there and back.
class RealTransform
{
public:
    static constexpr std::size_t k_MostValues = std::size_t(1) << 28;

    /// \param size of the values: a power of two, at least 2
    /// \throws std::length_error above `k_MostValues`, and std::bad_alloc
    explicit RealTransform(std::size_t size);

    /// The values or, between `Forward` and `Backward`, their spectrum: at 0 the sum of all and at 1 the sum with
    /// alternating signs; at 2k and 2k + 1 the products with cosine and sine of k cycles over all values.
    std::span<double> Values() { return {m_Signal.m_Data, m_Signal.m_Size}; }

    void Forward();

    /// From the spectrum back to the values, in their size.
    void Backward();

    /// The size of the spectrum at k cycles over all values, k from 0 to half of their number.
    double Magnitude(std::size_t k) const;

    /// Multiplies the spectrum at k cycles.
    void Scale(std::size_t k, double factor);

private:
    void Run(int sign);

    CDSPSignal1D m_Signal;
    CDSPTransform1D m_Transform;
};

} // namespace clip
