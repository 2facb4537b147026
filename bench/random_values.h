#pragma once

#include <cstddef>
#include <random>
#include <vector>

namespace bench
{

/// Seeded values between -1 and 1, the same for every peer.
template <typename T>
std::vector<T> RandomValues(std::size_t count)
{
    std::mt19937_64 generator(20240229);
    std::uniform_real_distribution<T> uniform(T(-1), T(1));
    std::vector<T> values(count);
    for (T & value : values)
    {
        value = uniform(generator);
    }
    return values;
}

/// Objects built by `make` from consecutive groups of `Size` random values.
template <std::size_t Size, typename T, typename Make>
auto RandomObjects(std::size_t count, Make make)
{
    std::vector<T> const values = RandomValues<T>(count * Size);
    std::vector<decltype(make(values.data()))> objects;
    objects.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
    {
        objects.push_back(make(values.data() + i * Size));
    }
    return objects;
}

} // namespace bench
