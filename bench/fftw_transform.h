#pragma once

#include <fftw3.h>

#include <algorithm>
#include <cstddef>

namespace bench
{

/// An array and a plan on it.
class FftwTransform
{
public:
    template <typename MakePlan>
    FftwTransform(std::size_t values, MakePlan makePlan) : m_Values(fftw_alloc_real(values)), m_Plan(makePlan(m_Values))
    {
        std::fill_n(m_Values, values, 0.0); // planning writes
    }
    FftwTransform(FftwTransform const &) = delete;
    FftwTransform & operator=(FftwTransform const &) = delete;
    ~FftwTransform()
    {
        fftw_destroy_plan(m_Plan);
        fftw_free(m_Values);
    }
    void Run() const { fftw_execute(m_Plan); }

private:
    double * m_Values;
    fftw_plan m_Plan;
};

} // namespace bench
