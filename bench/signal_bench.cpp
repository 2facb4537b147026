// One-dimensional transforms, in place, beside FFTW in double precision on one thread, with plans that it guesses and
// plans that it measures, and beside KissFFT: its C++ template in double precision, and its C library, which is
// packaged in single precision only, so that its numbers take half the memory. Results are per sample of a complex
// signal, or value of a real one (items_per_second). Tables and plans are made before the clock starts.
//
// The signals are all zeros: no transform here branches on its data, and these stay what they are, where others would
// grow from one transform to the next until they overflow.

#include "fftw_transform.h"
#include "math/fourier_1d.h"
#include "run_over_array.h"

#include <fftw3.h>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <complex>
#include <cstddef>
#include <kissfft/kiss_fft.h>
#include <kissfft/kiss_fftr.h>
#include <kissfft/kissfft.hh>
#include <vector>

namespace
{

constexpr long k_Smallest = 1 << 4;
constexpr long k_Largest = 1 << 20;

template <typename Operation>
void Measure(benchmark::State & state, Operation operation)
{
    operation();
    for (auto _ : state)
    {
        operation();
        benchmark::ClobberMemory();
    }
    bench::CountItems(state, static_cast<std::size_t>(state.range(0)));
}

CDSPSignal1D Zeros(long size)
{
    CDSPSignal1D signal(static_cast<unsigned int>(size));
    std::fill_n(signal.m_Data, signal.m_Size, 0.0);
    return signal;
}

/// One of our transforms, on `values` of them for a size of n.
template <typename Transform>
void Ours(benchmark::State & state, long values, Transform run)
{
    CDSPSignal1D signal = Zeros(values);
    CDSPTransform1D transform;
    Measure(state, [&] { benchmark::DoNotOptimize(run(transform, &signal)); });
}

void ComplexForward(benchmark::State & state)
{
    Ours(state, 2 * state.range(0), [](auto & transform, auto * signal) { return transform.ComplexFFT(1, signal); });
}

void ComplexBackward(benchmark::State & state)
{
    Ours(state, 2 * state.range(0), [](auto & transform, auto * signal) { return transform.ComplexFFT(-1, signal); });
}

void RealForward(benchmark::State & state)
{
    Ours(state, state.range(0), [](auto & transform, auto * signal) { return transform.RealFFT(1, signal); });
}

void RealBackward(benchmark::State & state)
{
    Ours(state, state.range(0), [](auto & transform, auto * signal) { return transform.RealFFT(-1, signal); });
}

void CosineForward(benchmark::State & state)
{
    Ours(state, state.range(0), [](auto & transform, auto * signal) { return transform.RealDCT(1, signal); });
}

void CosineBackward(benchmark::State & state)
{
    Ours(state, state.range(0), [](auto & transform, auto * signal) { return transform.RealDCT(-1, signal); });
}

void SineForward(benchmark::State & state)
{
    Ours(state, state.range(0), [](auto & transform, auto * signal) { return transform.RealDST(1, signal); });
}

void SineBackward(benchmark::State & state)
{
    Ours(state, state.range(0), [](auto & transform, auto * signal) { return transform.RealDST(-1, signal); });
}

void WholeCosine(benchmark::State & state)
{
    Ours(state, state.range(0) + 1, [](auto & transform, auto * signal) { return transform.DCTOfRealFFT(signal); });
}

void WholeSine(benchmark::State & state)
{
    Ours(state, state.range(0) + 1, [](auto & transform, auto * signal) { return transform.DSTOfRealFFT(signal); });
}

template <unsigned Rigour, typename MakePlan>
void Fftw(benchmark::State & state, long values, MakePlan makePlan)
{
    bench::FftwTransform const transform(static_cast<std::size_t>(values), makePlan);
    Measure(state, [&] { transform.Run(); });
}

template <unsigned Rigour, int Sign>
void FftwComplex(benchmark::State & state)
{
    auto const n = static_cast<int>(state.range(0));
    Fftw<Rigour>(state, 2L * n,
                 [n](double * values)
                 {
                     auto * const samples = reinterpret_cast<fftw_complex *>(values);
                     return fftw_plan_dft_1d(n, samples, samples, Sign, Rigour);
                 });
}

template <unsigned Rigour>
void FftwRealForward(benchmark::State & state)
{
    auto const n = static_cast<int>(state.range(0));
    Fftw<Rigour>(state, n + 2L,
                 [n](double * values)
                 { return fftw_plan_dft_r2c_1d(n, values, reinterpret_cast<fftw_complex *>(values), Rigour); });
}

template <unsigned Rigour>
void FftwRealBackward(benchmark::State & state)
{
    auto const n = static_cast<int>(state.range(0));
    Fftw<Rigour>(state, n + 2L,
                 [n](double * values)
                 { return fftw_plan_dft_c2r_1d(n, reinterpret_cast<fftw_complex *>(values), values, Rigour); });
}

/// The size of FFTW's whole-range transforms is the number of values, n + 1 and n - 1.
template <unsigned Rigour, fftw_r2r_kind Kind>
void FftwTrigonometric(benchmark::State & state)
{
    int const more = Kind == FFTW_REDFT00 ? 1 : Kind == FFTW_RODFT00 ? -1 : 0;
    int const n = static_cast<int>(state.range(0)) + more;
    Fftw<Rigour>(state, n, [n](double * values) { return fftw_plan_r2r_1d(n, values, values, Kind, Rigour); });
}

template <bool IsInverse>
void KissComplex(benchmark::State & state)
{
    auto const n = static_cast<std::size_t>(state.range(0));
    std::vector<std::complex<double>> const in(n);
    std::vector<std::complex<double>> out(n);
    kissfft<double> const transform(n, IsInverse);
    Measure(state, [&] { transform.transform(in.data(), out.data()); });
}

/// In single precision.
template <bool IsInverse>
void KissFloatComplex(benchmark::State & state)
{
    auto const n = static_cast<std::size_t>(state.range(0));
    std::vector<kiss_fft_cpx> const in(n);
    std::vector<kiss_fft_cpx> out(n);
    auto * const plan = kiss_fft_alloc(static_cast<int>(n), IsInverse ? 1 : 0, nullptr, nullptr);
    Measure(state, [&] { kiss_fft(plan, in.data(), out.data()); });
    kiss_fft_free(plan);
}

void KissFloatRealForward(benchmark::State & state)
{
    auto const n = static_cast<std::size_t>(state.range(0));
    std::vector<float> const in(n);
    std::vector<kiss_fft_cpx> out(n / 2 + 1);
    auto * const plan = kiss_fftr_alloc(static_cast<int>(n), 0, nullptr, nullptr);
    Measure(state, [&] { kiss_fftr(plan, in.data(), out.data()); });
    kiss_fftr_free(plan);
}

void KissRealForward(benchmark::State & state)
{
    auto const n = static_cast<std::size_t>(state.range(0));
    std::vector<double> const in(n);
    std::vector<std::complex<double>> out(n);
    kissfft<double> const transform(n / 2, false);
    Measure(state, [&] { transform.transform_real(in.data(), out.data()); });
}

void Sizes(benchmark::internal::Benchmark * family)
{
    family->RangeMultiplier(2)->Range(k_Smallest, k_Largest);
}

void FewSizes(benchmark::internal::Benchmark * family)
{
    family->RangeMultiplier(16)->Range(k_Smallest, k_Largest);
}

constexpr unsigned k_Guessed = FFTW_ESTIMATE;
constexpr unsigned k_Measured = FFTW_MEASURE;

BENCHMARK(ComplexForward)->Apply(Sizes);
BENCHMARK(FftwComplex<k_Guessed, FFTW_BACKWARD>)->Apply(Sizes);
BENCHMARK(FftwComplex<k_Measured, FFTW_BACKWARD>)->Apply(Sizes);
BENCHMARK(KissComplex<true>)->Apply(Sizes);
BENCHMARK(KissFloatComplex<true>)->Apply(Sizes);
BENCHMARK(ComplexBackward)->Apply(Sizes);
BENCHMARK(FftwComplex<k_Guessed, FFTW_FORWARD>)->Apply(Sizes);
BENCHMARK(FftwComplex<k_Measured, FFTW_FORWARD>)->Apply(Sizes);
BENCHMARK(KissComplex<false>)->Apply(Sizes);
BENCHMARK(KissFloatComplex<false>)->Apply(Sizes);

BENCHMARK(RealForward)->Apply(Sizes);
BENCHMARK(FftwRealForward<k_Guessed>)->Apply(Sizes);
BENCHMARK(FftwRealForward<k_Measured>)->Apply(Sizes);
BENCHMARK(KissRealForward)->Apply(Sizes);
BENCHMARK(KissFloatRealForward)->Apply(Sizes);
BENCHMARK(RealBackward)->Apply(Sizes);
BENCHMARK(FftwRealBackward<k_Guessed>)->Apply(Sizes);
BENCHMARK(FftwRealBackward<k_Measured>)->Apply(Sizes);

BENCHMARK(CosineForward)->Apply(FewSizes);
BENCHMARK(FftwTrigonometric<k_Guessed, FFTW_REDFT01>)->Apply(FewSizes);
BENCHMARK(FftwTrigonometric<k_Measured, FFTW_REDFT01>)->Apply(FewSizes);
BENCHMARK(CosineBackward)->Apply(FewSizes);
BENCHMARK(FftwTrigonometric<k_Guessed, FFTW_REDFT10>)->Apply(FewSizes);
BENCHMARK(FftwTrigonometric<k_Measured, FFTW_REDFT10>)->Apply(FewSizes);
BENCHMARK(SineForward)->Apply(FewSizes);
BENCHMARK(FftwTrigonometric<k_Guessed, FFTW_RODFT01>)->Apply(FewSizes);
BENCHMARK(FftwTrigonometric<k_Measured, FFTW_RODFT01>)->Apply(FewSizes);
BENCHMARK(SineBackward)->Apply(FewSizes);
BENCHMARK(FftwTrigonometric<k_Guessed, FFTW_RODFT10>)->Apply(FewSizes);
BENCHMARK(FftwTrigonometric<k_Measured, FFTW_RODFT10>)->Apply(FewSizes);
BENCHMARK(WholeCosine)->Apply(FewSizes);
BENCHMARK(FftwTrigonometric<k_Guessed, FFTW_REDFT00>)->Apply(FewSizes);
BENCHMARK(FftwTrigonometric<k_Measured, FFTW_REDFT00>)->Apply(FewSizes);
BENCHMARK(WholeSine)->Apply(FewSizes);
BENCHMARK(FftwTrigonometric<k_Guessed, FFTW_RODFT00>)->Apply(FewSizes);
BENCHMARK(FftwTrigonometric<k_Measured, FFTW_RODFT00>)->Apply(FewSizes);

} // namespace
