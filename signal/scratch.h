#pragma once

#include <cstddef>
#include <cstdio>
#include <cstdlib>

namespace math::detail
{

/// The caller's scratch memory, or some of its own.
class Scratch
{
public:
    /// Where memory is short, "`owner` memory allocation error" goes to the standard error stream, and the process
    /// ends.
    Scratch(double * given, std::size_t count, char const * owner)
        : m_Own(given == nullptr ? static_cast<double *>(std::malloc(count * sizeof(double))) : nullptr),
          m_Memory(given == nullptr ? m_Own : given)
    {
        if (m_Memory == nullptr)
        {
            std::fprintf(stderr, "%s memory allocation error\n", owner);
            std::exit(1); // NOLINT(concurrency-mt-unsafe): there is no other way to report it
        }
    }
    Scratch(Scratch const &) = delete;
    Scratch & operator=(Scratch const &) = delete;
    ~Scratch() { std::free(m_Own); }

    double * Get() const { return m_Memory; }

private:
    double * m_Own;
    double * m_Memory;
};

} // namespace math::detail
