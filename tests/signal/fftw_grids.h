#pragma once

/// \file
/// The transforms of two and three dimensions by FFTW, in a wider type than ours.

#include "signal/fourier_grid_sums.h"

#include <fftw3.h>

#include <cmath>
#include <cstddef>
#include <vector>

namespace signal_test
{

/// The sizes of the last `rank` axes, as FFTW takes them.
inline std::vector<int> SizesOf(Shape const & shape, int rank)
{
    std::vector<int> const sizes = {shape.planes, shape.rows, shape.width};
    return {sizes.end() - rank, sizes.end()};
}

inline Spectrum FourierByFftw(Shape const & shape, int sign, Spectrum samples)
{
    auto * const data = reinterpret_cast<fftwl_complex *>(samples.data());
    auto * const plan =
        fftwl_plan_dft(3, SizesOf(shape, 3).data(), data, data, sign < 0 ? FFTW_FORWARD : FFTW_BACKWARD, FFTW_ESTIMATE);
    fftwl_execute(plan);
    fftwl_destroy_plan(plan);
    return samples;
}

/// FFTW doubles each term but, where these stand at the start, the first along an axis; and keeps index n of a sine
/// last, where ours is first.
inline std::vector<Wide> TrigonometricByFftw(Kernel const & kernel, Shape const & shape, int rank,
                                             std::vector<double> const & values)
{
    bool const isSine = kernel.transform == Transform::Sine;
    fftwl_r2r_kind const forward = isSine ? FFTW_RODFT01 : FFTW_REDFT01;
    fftwl_r2r_kind const backward = isSine ? FFTW_RODFT10 : FFTW_REDFT10;
    std::vector<Wide> theirs(values.size());
    auto const placeOfTheirs = [&](int plane, int row, int column)
    {
        auto const before = [isSine](int i, int n) { return isSine ? (i + n - 1) % n : i; };
        return PlaceOf(shape, before(plane, shape.planes), before(row, shape.rows), before(column, shape.width));
    };
    ForEachPlace(shape,
                 [&](int plane, int row, int column)
                 {
                     Wide const value = values[PlaceOf(shape, plane, row, column)];
                     int const doubled = (plane == 0 && rank == 3 ? 1 : 0) + (row == 0 ? 1 : 0) + (column == 0 ? 1 : 0);
                     if (kernel.sign < 0)
                     {
                         theirs[PlaceOf(shape, plane, row, column)] = value;
                     }
                     else
                     {
                         theirs[placeOfTheirs(plane, row, column)] = std::ldexp(value, doubled);
                     }
                 });
    std::vector<fftwl_r2r_kind> const kinds(static_cast<std::size_t>(rank), kernel.sign < 0 ? backward : forward);
    auto * const plan =
        fftwl_plan_r2r(rank, SizesOf(shape, rank).data(), theirs.data(), theirs.data(), kinds.data(), FFTW_ESTIMATE);
    fftwl_execute(plan);
    fftwl_destroy_plan(plan);
    std::vector<Wide> sums;
    ForEachPlace(shape,
                 [&](int plane, int row, int column)
                 {
                     std::size_t const place =
                         kernel.sign < 0 ? placeOfTheirs(plane, row, column) : PlaceOf(shape, plane, row, column);
                     sums.push_back(std::ldexp(theirs[place], -rank));
                 });
    return sums;
}

inline std::vector<Wide> GridByFftw(Kernel const & kernel, Shape const & shape, int rank,
                                    std::vector<double> const & values)
{
    switch (kernel.transform)
    {
    case Transform::Complex:
        return ComplexGridSum(shape, kernel.sign, values, FourierByFftw);
    case Transform::Real:
        return RealGridSum(shape, kernel.sign, values, FourierByFftw);
    default:
        return TrigonometricByFftw(kernel, shape, rank, values);
    }
}

} // namespace signal_test
