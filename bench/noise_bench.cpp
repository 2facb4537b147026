// Gradient noise: the three faces of a cell, and the pieces that evaluators are built from, over an array that stays in
// the first-level cache. The counter `each` is the time of one call. glm's noise of one value is a yardstick alone: its
// hash is another.

#include "random_values.h"
#include "run_over_array.h"
#include "signal/noise_inspector.h"

#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdint>
#include <glm/gtc/noise.hpp>
#include <glm/vec3.hpp>
#include <type_traits>
#include <vector>

namespace
{

using math::detail::NoiseInspector;

constexpr std::size_t k_Count = 512;

/// Noise with a seed, freed in the end.
struct SeededNoise
{
    C3DPerlinNoise noise{20240229UL};

    SeededNoise() = default;
    SeededNoise(SeededNoise const &) = delete;
    SeededNoise & operator=(SeededNoise const &) = delete;
    ~SeededNoise() { noise.Dispose(); }
};

/// Coordinates from -100 to 100, four a call.
std::vector<double> Coordinates()
{
    std::vector<double> values = bench::RandomValues<double>(4 * k_Count);
    for (double & value : values)
    {
        value *= 100;
    }
    return values;
}

/// Runs an operation of one call: the coordinates of the call, its number, and the output.
template <typename Out, typename Operation>
void Run(benchmark::State & state, Operation operation)
{
    bench::RunOverArray(state, Coordinates(), std::vector<Out>(k_Count),
                        [&operation](auto const & in, auto & out, std::size_t i) { operation(&in[4 * i], i, out[i]); });
    using benchmark::Counter;
    state.counters["each"] =
        Counter(static_cast<double>(k_Count), Counter::kIsIterationInvariantRate | Counter::kInvert);
}

struct Faces
{
    double a;
    double b;
    double c;
};

void DNoise(benchmark::State & state)
{
    SeededNoise const seeded;
    Run<Faces>(state, [&noise = seeded.noise](double const * at, std::size_t /*call*/, Faces & out)
               { noise.DNoise(at[0], at[1], at[2], out.a, out.b, out.c); });
}
BENCHMARK(DNoise);

void GlmPerlin(benchmark::State & state)
{
    Run<double>(state, [](double const * at, std::size_t /*call*/, double & out)
                { out = glm::perlin(glm::dvec3(at[0], at[1], at[2])); });
}
BENCHMARK(GlmPerlin);

struct Hashes
{
    double fades[3];
    int hashes[4];
};

void CellHash(benchmark::State & state)
{
    SeededNoise const seeded;
    Run<Hashes>(state,
                [&noise = seeded.noise](double const * at, std::size_t /*call*/, Hashes & out)
                {
                    (noise.*NoiseInspector::calculate3D)(at[0], at[1], at[2], out.fades[0], out.fades[1], out.fades[2],
                                                         out.hashes[0], out.hashes[1], out.hashes[2], out.hashes[3]);
                });
}
BENCHMARK(CellHash);

struct Place
{
    double fraction;
    double fade;
    int cell;
};

void Split(benchmark::State & state)
{
    C3DPerlinNoise const noise;
    Run<Place>(state, [&noise](double const * at, std::size_t /*call*/, Place & out)
               { (noise.*NoiseInspector::split)(at[0], out.fraction, out.cell, out.fade); });
}
BENCHMARK(Split);

void FastFloor(benchmark::State & state)
{
    Run<int>(state, [](double const * at, std::size_t /*call*/, int & out) { out = NoiseInspector::FastFloor(at[0]); });
}
BENCHMARK(FastFloor);

void StandardFloor(benchmark::State & state)
{
    Run<int>(state,
             [](double const * at, std::size_t /*call*/, int & out) { out = static_cast<int>(std::floor(at[0])); });
}
BENCHMARK(StandardFloor);

void Fade(benchmark::State & state)
{
    Run<double>(state,
                [](double const * at, std::size_t /*call*/, double & out) { out = NoiseInspector::fade(at[0]); });
}
BENCHMARK(Fade);

/// A hash of five bits, scattered over the calls.
int HashOf(std::size_t call)
{
    return static_cast<int>(static_cast<std::uint32_t>(call) * 2654435761U >> 27U);
}

template <auto Gradient>
void Grad(benchmark::State & state)
{
    Run<double>(state,
                [](double const * at, std::size_t call, double & out)
                {
                    if constexpr (std::is_invocable_v<decltype(Gradient), int, double>)
                    {
                        out = Gradient(HashOf(call), at[0]);
                    }
                    else if constexpr (std::is_invocable_v<decltype(Gradient), int, double, double>)
                    {
                        out = Gradient(HashOf(call), at[0], at[1]);
                    }
                    else if constexpr (std::is_invocable_v<decltype(Gradient), int, double, double, double>)
                    {
                        out = Gradient(HashOf(call), at[0], at[1], at[2]);
                    }
                    else
                    {
                        out = Gradient(HashOf(call), at[0], at[1], at[2], at[3]);
                    }
                });
}
BENCHMARK(Grad<NoiseInspector::grad1D>)->Name("Grad1D");
BENCHMARK(Grad<NoiseInspector::grad2D>)->Name("Grad2D");
BENCHMARK(Grad<NoiseInspector::grad3D>)->Name("Grad3D");
BENCHMARK(Grad<NoiseInspector::grad4D>)->Name("Grad4D");

/// What the nine pairs of gradient components come to halfway.
constexpr double k_Blends[9] = {-1, -0.5, 0, -0.5, 0, 0.5, 0, 0.5, 1};

/// Two products with gradients of four dimensions, blended along t, by the table of pairs.
void PairByTable(benchmark::State & state)
{
    SeededNoise const seeded;
    C3DPerlinNoise const & noise = seeded.noise;
    int const * const p31 = (noise.*NoiseInspector::GetP31Table)(0);
    Run<double>(state,
                [&noise, p31](double const * at, std::size_t call, double & out) {
                    out = (noise.*NoiseInspector::lerpgradt)(k_Blends, p31, static_cast<int>(call % 511), at[0], at[1],
                                                             at[2], at[3]);
                });
}
BENCHMARK(PairByTable);

/// The same by two products and a blend.
void PairByProducts(benchmark::State & state)
{
    SeededNoise const seeded;
    int const * const p31 = (seeded.noise.*NoiseInspector::GetP31Table)(0);
    Run<double>(state,
                [p31](double const * at, std::size_t call, double & out)
                {
                    std::size_t const i = call % 511;
                    out = NoiseInspector::lerp(0.5, NoiseInspector::grad4D(p31[i], at[0], at[1], at[2], at[3]),
                                               NoiseInspector::grad4D(p31[i + 1], at[0], at[1], at[2], at[3] - 1));
                });
}
BENCHMARK(PairByProducts);

void TwoPairsByTable(benchmark::State & state)
{
    SeededNoise const seeded;
    C3DPerlinNoise const & noise = seeded.noise;
    int const * const p31 = (noise.*NoiseInspector::GetP31Table)(0);
    Run<double>(state,
                [&noise, p31](double const * at, std::size_t call, double & out)
                {
                    out = (noise.*NoiseInspector::lerpgradxt)(k_Blends, 0.25, p31, static_cast<int>(call % 511),
                                                              static_cast<int>((call + 100) % 511), at[0], at[1], at[2],
                                                              at[3]);
                });
}
BENCHMARK(TwoPairsByTable);

/// A new seed each time: the shuffle and the three tables.
void Reseed(benchmark::State & state)
{
    SeededNoise seeded;
    unsigned long seed = 0;
    for (auto _ : state)
    {
        seeded.noise.Init(0, ++seed);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(Reseed);

} // namespace
