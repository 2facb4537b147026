#pragma once

#include <chrono>
#include <utility>

namespace clip
{

/// Runs an operation. \return its result and the seconds it took
template <typename Operation>
auto Measure(Operation const & operation)
{
    auto const start = std::chrono::steady_clock::now();
    auto result = operation();
    std::chrono::duration<double> const elapsed = std::chrono::steady_clock::now() - start;
    return std::pair(std::move(result), elapsed.count());
}

} // namespace clip
