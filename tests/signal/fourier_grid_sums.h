#pragma once

/// \file
/// The sums that define the transforms of two and three dimensions, in a wider type, and the places of a real one.

#include "signal/fourier_grid.h"
#include "signal/fourier_sums.h"

#include <cmath>
#include <complex>
#include <cstddef>
#include <numbers>
#include <vector>

namespace signal_test
{

using WideComplex = std::complex<Wide>;
using Spectrum = std::vector<WideComplex>;

/// The factors of a sum along one axis, by the index of the result and that of the term.
class AxisFactors
{
public:
    template <typename Factor>
    AxisFactors(int n, Factor factor) : m_Size(n)
    {
        for (int k = 0; k < n; ++k)
        {
            for (int j = 0; j < n; ++j)
            {
                m_Factors.push_back(factor(n, k, j));
            }
        }
    }
    WideComplex operator()(int k, int j) const { return m_Factors[static_cast<std::size_t>(k * m_Size + j)]; }

private:
    int m_Size;
    std::vector<WideComplex> m_Factors;
};

/// For every place the sum over all places, with the product of the three axes' factors.
template <typename Factor>
Spectrum SeparableSum(Shape const & shape, Spectrum const & terms, Factor factor)
{
    AxisFactors const planeFactors(shape.planes, factor);
    AxisFactors const rowFactors(shape.rows, factor);
    AxisFactors const columnFactors(shape.width, factor);
    Spectrum sums;
    ForEachPlace(shape,
                 [&](int k1, int k2, int k3)
                 {
                     WideComplex sum = 0;
                     ForEachRow(shape,
                                [&](int j1, int j2)
                                {
                                    WideComplex ofRow = 0;
                                    for (int j3 = 0; j3 < shape.width; ++j3)
                                    {
                                        ofRow += columnFactors(k3, j3) * terms[PlaceOf(shape, j1, j2, j3)];
                                    }
                                    sum += planeFactors(k1, j1) * rowFactors(k2, j2) * ofRow;
                                });
                     sums.push_back(sum);
                 });
    return sums;
}

/// The factor exp(sign 2 pi i j k / n), with the angle of the first turn.
inline Spectrum FourierSum(Shape const & shape, int sign, Spectrum const & samples)
{
    return SeparableSum(shape, samples,
                        [sign](int n, int k, int j)
                        {
                            Wide const turn = static_cast<Wide>(j * k % n) / static_cast<Wide>(n);
                            return std::polar<Wide>(1, (sign < 0 ? -2 : 2) * std::numbers::pi_v<Wide> * turn);
                        });
}

/// cos or sin of a whole multiple of pi / (2 n). Index n of a sine stands at 0.
inline Spectrum TrigonometricSum(Shape const & shape, Kernel const & kernel, Spectrum const & values)
{
    return SeparableSum(shape, values,
                        [&kernel](int n, int k, int j) -> WideComplex
                        {
                            bool const isSine = kernel.transform == Transform::Sine;
                            auto const whole = [&](int place) { return isSine && place == 0 ? n : place; };
                            int const steps = kernel.sign < 0 ? (2 * j + 1) * whole(k) : whole(j) * (2 * k + 1);
                            Wide const angle = std::numbers::pi_v<Wide> * static_cast<Wide>(steps % (4 * n)) /
                                               static_cast<Wide>(2 * n);
                            return isSine ? std::sin(angle) : std::cos(angle);
                        });
}

/// A real or imaginary part of a spectrum.
struct SpectrumPart
{
    int k1;
    int k2;
    int k3;
    bool isImaginary;
};

/// What stands at a place of the packed layout of a real transform. Columns 0 and width/2 are mirrored in themselves:
/// the first row of two images has its column 0 in its first two places, the second its column width/2, the imaginary
/// part first; a row that is its own image has the real parts of both.
inline SpectrumPart PartAt(Shape const & shape, int plane, int row, int column)
{
    if (column > 1)
    {
        return {plane, row, column / 2, column % 2 == 1};
    }
    int const middlePlane = shape.planes / 2;
    int const middleRow = shape.rows / 2;
    bool const isPlaneImaged = plane == 0 || plane == middlePlane;
    if (isPlaneImaged && (row == 0 || row == middleRow))
    {
        return {plane, row, column == 0 ? 0 : shape.width / 2, false};
    }
    bool const isFirst = isPlaneImaged ? row < middleRow : plane < middlePlane;
    return isFirst ? SpectrumPart{plane, row, 0, column == 1} : SpectrumPart{plane, row, shape.width / 2, column == 0};
}

inline Wide ValueOf(Spectrum const & spectrum, Shape const & shape, SpectrumPart const & part)
{
    WideComplex const value = spectrum[PlaceOf(shape, part.k1, part.k2, part.k3)];
    return part.isImaginary ? value.imag() : value.real();
}

inline std::vector<Wide> PackedParts(Shape const & shape, Spectrum const & spectrum)
{
    std::vector<Wide> parts;
    ForEachPlace(shape, [&](int plane, int row, int column)
                 { parts.push_back(ValueOf(spectrum, shape, PartAt(shape, plane, row, column))); });
    return parts;
}

/// The whole spectrum of the real signal whose packed layout these values are.
inline Spectrum UnpackedSpectrum(Shape const & shape, std::vector<double> const & values)
{
    Spectrum spectrum(CountValues(shape), 0);
    ForEachPlace(shape,
                 [&](int plane, int row, int column)
                 {
                     Wide const value = values[PlaceOf(shape, plane, row, column)];
                     SpectrumPart const part = PartAt(shape, plane, row, column);
                     WideComplex const added = part.isImaginary ? WideComplex(0, value) : WideComplex(value);
                     std::size_t const place = PlaceOf(shape, part.k1, part.k2, part.k3);
                     std::size_t const image =
                         PlaceOf(shape, (shape.planes - part.k1) % shape.planes, (shape.rows - part.k2) % shape.rows,
                                 (shape.width - part.k3) % shape.width);
                     spectrum[place] += added;
                     if (image != place)
                     {
                         spectrum[image] += std::conj(added);
                     }
                 });
    return spectrum;
}

/// The transform of real values or of packed parts, by a function that sums a complex one. The way back has half the
/// sum over the whole spectrum.
template <typename Sum>
std::vector<Wide> RealGridSum(Shape const & shape, int sign, std::vector<double> const & values, Sum sum)
{
    if (sign >= 0)
    {
        return PackedParts(shape, sum(shape, 1, Spectrum(values.begin(), values.end())));
    }
    std::vector<Wide> halves;
    for (WideComplex const & value : sum(shape, -1, UnpackedSpectrum(shape, values)))
    {
        halves.push_back(value.real() / 2);
    }
    return halves;
}

/// The transform of pairs of values.
template <typename Sum>
std::vector<Wide> ComplexGridSum(Shape const & shape, int sign, std::vector<double> const & values, Sum sum)
{
    Spectrum samples;
    for (std::size_t i = 0; i < values.size(); i += 2)
    {
        samples.emplace_back(values[i], values[i + 1]);
    }
    std::vector<Wide> sums;
    for (WideComplex const & value : sum(Shape{shape.planes, shape.rows, shape.width / 2}, sign, samples))
    {
        sums.push_back(value.real());
        sums.push_back(value.imag());
    }
    return sums;
}

inline std::vector<Wide> DefiningGridSum(Kernel const & kernel, Shape const & shape, std::vector<double> const & values)
{
    switch (kernel.transform)
    {
    case Transform::Complex:
        return ComplexGridSum(shape, kernel.sign, values, FourierSum);
    case Transform::Real:
        return RealGridSum(shape, kernel.sign, values, FourierSum);
    default:
        std::vector<Wide> sums;
        for (WideComplex const & value : TrigonometricSum(shape, kernel, Spectrum(values.begin(), values.end())))
        {
            sums.push_back(value.real());
        }
        return sums;
    }
}

/// What rounding explains, in the measure of RelativeError.
inline double ToleranceOf(Shape const & shape)
{
    return 1e-15 * std::log2(static_cast<double>(CountValues(shape)));
}

} // namespace signal_test
