#pragma once

/// \file
/// The transforms of the public class as values.

#include "math/fourier_1d.h"
#include "signal/fourier_kernel_cases.h"
#include "signal/transform_tables_inspector.h"

#include <algorithm>
#include <vector>

namespace signal_test
{

inline constexpr Transform k_Transforms[] = {Transform::Complex, Transform::Real,        Transform::Cosine,
                                             Transform::Sine,    Transform::WholeCosine, Transform::WholeSine};

/// Values of a signal for a transform of n: the whole-range ones have both ends.
inline unsigned int SignalSize(Transform transform, int n)
{
    return static_cast<unsigned int>(IsWholeRange(transform) ? n + 1 : n);
}

inline bool Apply(CDSPTransform1D & object, Kernel const & kernel, CDSPSignal1D * signal)
{
    switch (kernel.transform)
    {
    case Transform::Complex:
        return object.ComplexFFT(kernel.sign, signal);
    case Transform::Real:
        return object.RealFFT(kernel.sign, signal);
    case Transform::Cosine:
        return object.RealDCT(kernel.sign, signal);
    case Transform::Sine:
        return object.RealDST(kernel.sign, signal);
    case Transform::WholeCosine:
        return object.DCTOfRealFFT(signal);
    default:
        return object.DSTOfRealFFT(signal);
    }
}

inline void Fill(CDSPSignal1D & signal, std::vector<double> const & values)
{
    std::copy(values.begin(), values.end(), signal.m_Data);
}

inline std::vector<double> ValuesOf(CDSPSignal1D const & signal)
{
    return {signal.m_Data, signal.m_Data + signal.m_Size};
}

} // namespace signal_test
