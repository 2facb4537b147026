#pragma once

#include <benchmark/benchmark.h>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace bench
{

inline void CountItems(benchmark::State & state, std::size_t perIteration)
{
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(perIteration));
}

/// Runs an operation over arrays of its inputs and outputs.
template <typename In, typename Out, typename Operation>
void RunOverArray(benchmark::State & state, In && in, std::vector<Out> out, Operation operation)
{
    for (auto _ : state)
    {
        for (std::size_t i = 0; i < out.size(); ++i)
        {
            operation(in, out, i);
        }
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    CountItems(state, out.size());
}

} // namespace bench
