// Two- and three-dimensional transforms beside FFTW in double precision, on one thread, with plans that it guesses. Our
// rows lie apart, FFTW's in one piece. Results are per sample of a complex signal, or value of a real one
// (items_per_second). Tables and plans are made before the clock starts; the signals are zeros.

#include "fftw_transform.h"
#include "math/fourier_2d.h"
#include "math/fourier_3d.h"
#include "run_over_array.h"

#include <benchmark/benchmark.h>

namespace
{

/// \param samples how many there are in all
template <typename Operation>
void Measure(benchmark::State & state, std::size_t samples, Operation operation)
{
    operation();
    for (auto _ : state)
    {
        operation();
        benchmark::ClobberMemory();
    }
    bench::CountItems(state, samples);
}

CDSPSignal2D Zeros2D(unsigned int rows, unsigned int width)
{
    CDSPSignal2D signal(rows, width);
    for (unsigned int i = 0; i < rows; ++i)
    {
        std::fill_n(signal.m_Data[i], width, 0.0);
    }
    return signal;
}

CDSPSignal3D Zeros3D(unsigned int planes, unsigned int rows, unsigned int width)
{
    CDSPSignal3D signal(planes, rows, width);
    for (unsigned int i = 0; i < planes; ++i)
    {
        for (unsigned int j = 0; j < rows; ++j)
        {
            std::fill_n(signal.m_Data[i][j], width, 0.0);
        }
    }
    return signal;
}

template <typename Run>
void Ours2D(benchmark::State & state, unsigned int valuesPerSample, Run run)
{
    auto const n = static_cast<unsigned int>(state.range(0));
    CDSPSignal2D signal = Zeros2D(n, valuesPerSample * n);
    CDSPTransform2D transform;
    Measure(state, std::size_t{n} * n, [&] { benchmark::DoNotOptimize(run(transform, &signal)); });
}

template <typename Run>
void Ours3D(benchmark::State & state, unsigned int valuesPerSample, Run run)
{
    auto const n = static_cast<unsigned int>(state.range(0));
    CDSPSignal3D signal = Zeros3D(n, n, valuesPerSample * n);
    CDSPTransform3D transform;
    Measure(state, std::size_t{n} * n * n, [&] { benchmark::DoNotOptimize(run(transform, &signal)); });
}

void Complex2D(benchmark::State & state)
{
    Ours2D(state, 2, [](auto & transform, auto * signal) { return transform.ComplexFFT(1, signal); });
}

void Real2D(benchmark::State & state)
{
    Ours2D(state, 1, [](auto & transform, auto * signal) { return transform.RealFFT(1, false, signal); });
}

void Cosine2D(benchmark::State & state)
{
    Ours2D(state, 1, [](auto & transform, auto * signal) { return transform.RealDCT(-1, signal); });
}

void Complex3D(benchmark::State & state)
{
    Ours3D(state, 2, [](auto & transform, auto * signal) { return transform.ComplexFFT(1, signal); });
}

void Real3D(benchmark::State & state)
{
    Ours3D(state, 1, [](auto & transform, auto * signal) { return transform.RealFFT(1, false, signal); });
}

void Cosine3D(benchmark::State & state)
{
    Ours3D(state, 1, [](auto & transform, auto * signal) { return transform.RealDCT(-1, signal); });
}

/// The same number of samples along each axis. A real transform in place needs two values more a row.
template <int Rank>
void FftwComplex(benchmark::State & state)
{
    int const n[3] = {static_cast<int>(state.range(0)), static_cast<int>(state.range(0)),
                      static_cast<int>(state.range(0))};
    auto const samples = static_cast<std::size_t>(Rank == 2 ? n[0] * n[0] : n[0] * n[0] * n[0]);
    bench::FftwTransform const transform(2 * samples,
                                         [&](double * a)
                                         {
                                             auto * const values = reinterpret_cast<fftw_complex *>(a);
                                             return fftw_plan_dft(Rank, n, values, values, FFTW_BACKWARD,
                                                                  FFTW_ESTIMATE);
                                         });
    Measure(state, samples, [&] { transform.Run(); });
}

template <int Rank>
void FftwReal(benchmark::State & state)
{
    int const n[3] = {static_cast<int>(state.range(0)), static_cast<int>(state.range(0)),
                      static_cast<int>(state.range(0))};
    auto const rows = static_cast<std::size_t>(Rank == 2 ? n[0] : n[0] * n[0]);
    auto const width = static_cast<std::size_t>(n[0]);
    bench::FftwTransform const transform(
        rows * (width + 2),
        [&](double * a) { return fftw_plan_dft_r2c(Rank, n, a, reinterpret_cast<fftw_complex *>(a), FFTW_ESTIMATE); });
    Measure(state, rows * width, [&] { transform.Run(); });
}

template <int Rank>
void FftwCosine(benchmark::State & state)
{
    int const n[3] = {static_cast<int>(state.range(0)), static_cast<int>(state.range(0)),
                      static_cast<int>(state.range(0))};
    fftw_r2r_kind const kinds[3] = {FFTW_REDFT10, FFTW_REDFT10, FFTW_REDFT10};
    auto const samples = static_cast<std::size_t>(Rank == 2 ? n[0] * n[0] : n[0] * n[0] * n[0]);
    bench::FftwTransform const transform(samples, [&](double * a)
                                         { return fftw_plan_r2r(Rank, n, a, a, kinds, FFTW_ESTIMATE); });
    Measure(state, samples, [&] { transform.Run(); });
}

constexpr int k_Plane = 2;
constexpr int k_Space = 3;

BENCHMARK(Complex2D)->RangeMultiplier(4)->Range(64, 1024);
BENCHMARK(FftwComplex<k_Plane>)->RangeMultiplier(4)->Range(64, 1024);
BENCHMARK(Real2D)->RangeMultiplier(4)->Range(64, 1024);
BENCHMARK(FftwReal<k_Plane>)->RangeMultiplier(4)->Range(64, 1024);
BENCHMARK(Cosine2D)->RangeMultiplier(4)->Range(64, 1024);
BENCHMARK(FftwCosine<k_Plane>)->RangeMultiplier(4)->Range(64, 1024);
BENCHMARK(Complex3D)->RangeMultiplier(2)->Range(16, 128);
BENCHMARK(FftwComplex<k_Space>)->RangeMultiplier(2)->Range(16, 128);
BENCHMARK(Real3D)->RangeMultiplier(2)->Range(16, 128);
BENCHMARK(FftwReal<k_Space>)->RangeMultiplier(2)->Range(16, 128);
BENCHMARK(Cosine3D)->RangeMultiplier(2)->Range(16, 128);
BENCHMARK(FftwCosine<k_Space>)->RangeMultiplier(2)->Range(16, 128);

} // namespace
