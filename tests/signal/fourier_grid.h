#pragma once

/// \file
/// Signals and transforms of two and three dimensions behind one face, so that a test runs over both.

#include "math/fourier_2d.h"
#include "math/fourier_3d.h"
#include "signal/fft_planes.h"
#include "signal/fourier_kernel_cases.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <ostream>
#include <vector>

namespace signal_test
{

/// Planes of rows of values. In two dimensions there is one plane.
struct Shape
{
    int planes;
    int rows;
    int width;
};

inline std::ostream & operator<<(std::ostream & out, Shape const & shape)
{
    return out << shape.planes << " x " << shape.rows << " x " << shape.width;
}

inline std::size_t CountValues(Shape const & shape)
{
    return static_cast<std::size_t>(shape.planes) * static_cast<std::size_t>(shape.rows) *
           static_cast<std::size_t>(shape.width);
}

/// Where a value stands when all are in one line.
inline std::size_t PlaceOf(Shape const & shape, int plane, int row, int column)
{
    return (static_cast<std::size_t>(plane) * static_cast<std::size_t>(shape.rows) + static_cast<std::size_t>(row)) *
               static_cast<std::size_t>(shape.width) +
           static_cast<std::size_t>(column);
}

/// Calls `visit(plane, row)`.
template <typename Visit>
void ForEachRow(Shape const & shape, Visit visit)
{
    for (int plane = 0; plane < shape.planes; ++plane)
    {
        for (int row = 0; row < shape.rows; ++row)
        {
            visit(plane, row);
        }
    }
}

/// Calls `visit(plane, row, column)`.
template <typename Visit>
void ForEachPlace(Shape const & shape, Visit visit)
{
    ForEachRow(shape,
               [&](int plane, int row)
               {
                   for (int column = 0; column < shape.width; ++column)
                   {
                       visit(plane, row, column);
                   }
               });
}

/// With two values more in each row.
inline Shape Expanded(Shape const & shape)
{
    return {shape.planes, shape.rows, shape.width + 2};
}

inline constexpr Kernel k_GridKernels[] = {{Transform::Complex, 1}, {Transform::Complex, -1}, {Transform::Real, 1},
                                           {Transform::Real, -1},   {Transform::Cosine, 1},   {Transform::Cosine, -1},
                                           {Transform::Sine, 1},    {Transform::Sine, -1}};

inline constexpr Transform k_GridTransforms[] = {Transform::Complex, Transform::Real, Transform::Cosine,
                                                 Transform::Sine};

/// All powers of two from 2 to `most`.
inline std::vector<int> PowersOfTwo(int most)
{
    std::vector<int> powers;
    for (int n = 2; n <= most; n *= 2)
    {
        powers.push_back(n);
    }
    return powers;
}

struct TwoDimensions
{
    using Signal = CDSPSignal2D;
    using Object = CDSPTransform2D;

    static constexpr int rank = 2;
    static constexpr char const * outOfMemory = "Out of memory in CDSPTransform2D...";
    static constexpr char const * noScratch = "fft2d memory allocation error\n";

    static Signal MakeSignal(Shape const & shape)
    {
        return {static_cast<unsigned int>(shape.rows), static_cast<unsigned int>(shape.width)};
    }
    static double * Row(Signal const & signal, int /*plane*/, int row) { return signal.m_Data[row]; }

    /// The kernel alone.
    static void Run(Kernel const & kernel, Shape const & shape, Signal const & signal, double * t, int * ip, double * w)
    {
        using namespace math::detail;
        constexpr void (*kernels[])(int, int, int, double **, double *, int *,
                                    double *) = {DSPComplexDFT2D, DSPRealDFT2D, DSPCosineDFT2D, DSPSineDFT2D};
        kernels[static_cast<int>(kernel.transform)](shape.rows, shape.width, kernel.sign, signal.m_Data, t, ip, w);
    }

    /// Every combination of sizes up to `most`.
    static std::vector<Shape> Shapes(int most)
    {
        std::vector<Shape> shapes;
        for (int const rows : PowersOfTwo(most))
        {
            for (int const width : PowersOfTwo(most))
            {
                shapes.push_back({1, rows, width});
            }
        }
        return shapes;
    }
    static std::vector<Shape> SmallShapes() { return Shapes(16); }
    static std::vector<Shape> LargeShapes()
    {
        return {{1, 64, 256}, {1, 256, 32}, {1, 2, 4096}, {1, 2048, 2}, {1, 128, 4}, {1, 32, 32}, {1, 4, 128}};
    }
};

struct ThreeDimensions
{
    using Signal = CDSPSignal3D;
    using Object = CDSPTransform3D;

    static constexpr int rank = 3;
    static constexpr char const * outOfMemory = "Out of memory in CDSPTransform3D...";
    static constexpr char const * noScratch = "fft3d memory allocation error\n";

    static Signal MakeSignal(Shape const & shape)
    {
        return {static_cast<unsigned int>(shape.planes), static_cast<unsigned int>(shape.rows),
                static_cast<unsigned int>(shape.width)};
    }
    static double * Row(Signal const & signal, int plane, int row) { return signal.m_Data[plane][row]; }

    static void Run(Kernel const & kernel, Shape const & shape, Signal const & signal, double * t, int * ip, double * w)
    {
        using namespace math::detail;
        constexpr void (*kernels[])(int, int, int, int, double ***, double *, int *,
                                    double *) = {DSPComplexDFT3D, DSPRealDFT3D, DSPCosineDFT3D, DSPSineDFT3D};
        kernels[static_cast<int>(kernel.transform)](shape.planes, shape.rows, shape.width, kernel.sign, signal.m_Data,
                                                    t, ip, w);
    }

    static std::vector<Shape> Shapes(int most)
    {
        std::vector<Shape> shapes;
        for (int const planes : PowersOfTwo(most))
        {
            for (Shape const & plane : TwoDimensions::Shapes(most))
            {
                shapes.push_back({planes, plane.rows, plane.width});
            }
        }
        return shapes;
    }
    static std::vector<Shape> SmallShapes()
    {
        std::vector<Shape> shapes = Shapes(8);
        for (Shape const & shape :
             {Shape{16, 2, 4}, Shape{2, 16, 4}, Shape{2, 4, 16}, Shape{4, 2, 32}, Shape{2, 2, 64}})
        {
            shapes.push_back(shape);
        }
        return shapes;
    }
    /// Among them rows more than twice as long as there are rows and planes.
    static std::vector<Shape> LargeShapes()
    {
        return {{16, 32, 64}, {2, 2, 4096}, {64, 4, 2}, {4, 512, 2}, {2, 64, 16}, {32, 8, 4}, {128, 2, 8}, {4, 2, 256}};
    }
};

template <typename Dimensions>
void Fill(typename Dimensions::Signal const & signal, Shape const & shape, std::vector<double> const & values)
{
    ForEachRow(shape,
               [&](int plane, int row)
               {
                   auto const first = values.begin() + static_cast<std::ptrdiff_t>(PlaceOf(shape, plane, row, 0));
                   std::copy_n(first, shape.width, Dimensions::Row(signal, plane, row));
               });
}

template <typename Dimensions>
typename Dimensions::Signal MakeSignal(Shape const & shape, std::vector<double> const & values)
{
    typename Dimensions::Signal signal = Dimensions::MakeSignal(shape);
    Fill<Dimensions>(signal, shape, values);
    return signal;
}

template <typename Dimensions>
std::vector<double> ValuesOf(typename Dimensions::Signal const & signal, Shape const & shape)
{
    std::vector<double> values;
    values.reserve(CountValues(shape));
    ForEachRow(shape,
               [&](int plane, int row)
               {
                   double const * const first = Dimensions::Row(signal, plane, row);
                   values.insert(values.end(), first, first + shape.width);
               });
    return values;
}

template <typename Object, typename Signal>
bool ApplyTo(Object & object, Kernel const & kernel, Signal * signal, bool isExpanded = false)
{
    switch (kernel.transform)
    {
    case Transform::Complex:
        return object.ComplexFFT(kernel.sign, signal);
    case Transform::Real:
        return object.RealFFT(kernel.sign, isExpanded, signal);
    case Transform::Cosine:
        return object.RealDCT(kernel.sign, signal);
    default:
        return object.RealDST(kernel.sign, signal);
    }
}

inline bool HaveSameBits(std::vector<double> const & a, std::vector<double> const & b)
{
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0;
}

/// The transform by an object of its own; empty where that refuses. `shape` is that of the values.
template <typename Dimensions>
std::vector<double> TransformedGrid(Kernel const & kernel, Shape const & shape, std::vector<double> const & values,
                                    bool isExpanded = false)
{
    typename Dimensions::Signal signal = MakeSignal<Dimensions>(shape, values);
    typename Dimensions::Object object;
    return ApplyTo(object, kernel, &signal, isExpanded) ? ValuesOf<Dimensions>(signal, shape) : std::vector<double>();
}

} // namespace signal_test
