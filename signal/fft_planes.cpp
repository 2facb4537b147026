#include "signal/fft_planes.h"

#include "signal/column_pass.h"
#include "signal/fft_kernels.h"
#include "signal/fft_passes.h"
#include "signal/lines_of_four.h"
#include "signal/mirrored_rows.h"
#include "signal/scratch.h"

#include <algorithm>

namespace math::detail
{

namespace
{

/// A kernel of fft_kernels.h, and its forms for four lines.
struct LineKernel
{
    void (*one)(int n, int sign, double * a, int * ip, double * w);
    FourLinesKernel FourLines::*fourRows;
    FourLinesKernel FourLines::*fourColumns;
};

constexpr LineKernel k_Complex{DSPComplexDFT, &FourLines::complexRows, &FourLines::complexColumns};
constexpr LineKernel k_Real{DSPRealDFT, &FourLines::realRows, nullptr};
constexpr LineKernel k_Cosine{DSPCosineDFT, &FourLines::cosineRows, &FourLines::cosineColumns};
constexpr LineKernel k_Sine{DSPSineDFT, &FourLines::sineRows, &FourLines::sineColumns};

/// What a pass over an array needs beside the array.
struct Pass
{
    int sign;
    KernelMemory memory;
    std::size_t scratchSize;
    FourLines const * fourLines = FindFourLines();

    /// The rows of a plane.
    void AlongRows(LineKernel const & kernel, int n1, int n2, double ** a) const
    {
        int i = 0;
        if (fourLines != nullptr && n2 % 4 == 0 && 4 * static_cast<std::size_t>(n2) <= scratchSize)
        {
            for (; i + 3 < n1; i += 4)
            {
                (fourLines->*kernel.fourRows)(Rows(a), i, n2, sign, memory);
            }
        }
        for (; i < n1; ++i)
        {
            kernel.one(n2, sign, a[i], memory.ip, memory.w);
        }
    }

    /// The columns of n1 rows of n2 values.
    template <int ElementSize>
    void AlongColumns(LineKernel const & kernel, int n1, int n2, Rows const & rows) const
    {
        int const n = n1 * ElementSize;
        if (fourLines != nullptr && ColumnGroupWidth(n2, ElementSize) == 4 * ElementSize)
        {
            for (int place = 0; place < n2; place += 4 * ElementSize)
            {
                (fourLines->*kernel.fourColumns)(rows, place, n, sign, memory);
            }
            return;
        }
        TransformColumns<ElementSize>(n1, n2, rows, memory.t,
                                      [&](double * column) { kernel.one(n, sign, column, memory.ip, memory.w); });
    }

    /// Rows, then columns; for a real transform backwards the other way round.
    template <int ElementSize>
    void Plane(LineKernel const & rowKernel, LineKernel const & columnKernel, int n1, int n2, double ** a) const
    {
        bool const areRowsLast = rowKernel.one == DSPRealDFT && sign < 0;
        if (!areRowsLast)
        {
            AlongRows(rowKernel, n1, n2, a);
        }
        AlongColumns<ElementSize>(columnKernel, n1, n2, Rows(a));
        if (areRowsLast)
        {
            AlongRows(rowKernel, n1, n2, a);
        }
    }

    /// All planes, each by itself.
    template <int ElementSize>
    void Planes(LineKernel const & rowKernel, LineKernel const & columnKernel, int n1, int n2, int n3,
                double *** a) const
    {
        for (int i = 0; i < n1; ++i)
        {
            Plane<ElementSize>(rowKernel, columnKernel, n2, n3, a[i]);
        }
    }

    /// The columns through all planes.
    template <int ElementSize>
    void AcrossPlanes(LineKernel const & kernel, int n1, int n2, int n3, double *** a) const
    {
        for (int j = 0; j < n2; ++j)
        {
            AlongColumns<ElementSize>(kernel, n1, n3, Rows(a, j));
        }
    }
};

std::size_t CountScratch(int n, int width, int elementSize)
{
    return static_cast<std::size_t>(n) * static_cast<std::size_t>(ColumnGroupWidth(width, elementSize));
}

constexpr char const * k_Owner2D = "fft2d";
constexpr char const * k_Owner3D = "fft3d";

void IgnoreRow(double * /*row*/) {}

void TransformTrigonometric2D(LineKernel const & kernel, int n1, int n2, int sign, double ** a, double * t, int * ip,
                              double * w)
{
    int const longest = std::max(n1, n2);
    EnsureTwiddles(longest, 4, ip, w);
    EnsureCosines(longest, 1, ip, w);
    std::size_t const scratchSize = CountScratch(n1, n2, 1);
    Scratch const scratch(t, scratchSize, k_Owner2D);
    Pass{sign, {scratch.Get(), ip, w}, scratchSize}.Plane<1>(kernel, kernel, n1, n2, a);
}

void TransformTrigonometric3D(LineKernel const & kernel, int n1, int n2, int n3, int sign, double *** a, double * t,
                              int * ip, double * w)
{
    int const longest = std::max({n1, n2, n3});
    EnsureTwiddles(longest, 4, ip, w);
    EnsureCosines(longest, 1, ip, w);
    std::size_t const scratchSize = CountScratch(std::max(n1, n2), n3, 1);
    Scratch const scratch(t, scratchSize, k_Owner3D);
    Pass const pass{sign, {scratch.Get(), ip, w}, scratchSize};
    pass.Planes<1>(kernel, kernel, n1, n2, n3, a);
    pass.AcrossPlanes<1>(kernel, n1, n2, n3, a);
}

} // namespace

void DSPComplexDFT2D(int n1, int n2, int sign, double ** a, double * t, int * ip, double * w)
{
    EnsureTwiddles(std::max(2 * n1, n2), 4, ip, w);
    std::size_t const scratchSize = CountScratch(n1, n2, 2);
    Scratch const scratch(t, scratchSize, k_Owner2D);
    Pass{sign, {scratch.Get(), ip, w}, scratchSize}.Plane<2>(k_Complex, k_Complex, n1, n2, a);
}

void DSPRealDFT2D(int n1, int n2, int sign, double ** a, double * t, int * ip, double * w)
{
    EnsureTwiddles(std::max(2 * n1, n2), 4, ip, w);
    EnsureCosines(n2, 4, ip, w);
    std::size_t const scratchSize = CountScratch(n1, n2, 2);
    Scratch const scratch(t, scratchSize, k_Owner2D);
    Pass const pass{sign, {scratch.Get(), ip, w}, scratchSize};
    if (sign < 0)
    {
        VisitMirroredRows(a, n1, JoinFirstColumns, IgnoreRow);
    }
    pass.Plane<2>(k_Real, k_Complex, n1, n2, a);
    if (sign >= 0)
    {
        VisitMirroredRows(a, n1, SeparateFirstColumns, IgnoreRow);
    }
}

void DSPCosineDFT2D(int n1, int n2, int sign, double ** a, double * t, int * ip, double * w)
{
    TransformTrigonometric2D(k_Cosine, n1, n2, sign, a, t, ip, w);
}

void DSPSineDFT2D(int n1, int n2, int sign, double ** a, double * t, int * ip, double * w)
{
    TransformTrigonometric2D(k_Sine, n1, n2, sign, a, t, ip, w);
}

void DSPComplexDFT3D(int n1, int n2, int n3, int sign, double *** a, double * t, int * ip, double * w)
{
    int const rows = std::max(n1, n2);
    EnsureTwiddles(std::max(2 * rows, n3), 4, ip, w);
    std::size_t const scratchSize = CountScratch(rows, n3, 2);
    Scratch const scratch(t, scratchSize, k_Owner3D);
    Pass const pass{sign, {scratch.Get(), ip, w}, scratchSize};
    pass.Planes<2>(k_Complex, k_Complex, n1, n2, n3, a);
    pass.AcrossPlanes<2>(k_Complex, n1, n2, n3, a);
}

void DSPRealDFT3D(int n1, int n2, int n3, int sign, double *** a, double * t, int * ip, double * w)
{
    int const rows = std::max(n1, n2);
    EnsureTwiddles(std::max(2 * rows, n3), 4, ip, w);
    EnsureCosines(n3, 4, ip, w);
    std::size_t const scratchSize = CountScratch(rows, n3, 2);
    Scratch const scratch(t, scratchSize, k_Owner3D);
    Pass const pass{sign, {scratch.Get(), ip, w}, scratchSize};
    if (sign < 0)
    {
        VisitMirroredRows(a, n1, n2, JoinFirstColumns, IgnoreRow);
        pass.AcrossPlanes<2>(k_Complex, n1, n2, n3, a);
    }
    pass.Planes<2>(k_Real, k_Complex, n1, n2, n3, a);
    if (sign >= 0)
    {
        pass.AcrossPlanes<2>(k_Complex, n1, n2, n3, a);
        VisitMirroredRows(a, n1, n2, SeparateFirstColumns, IgnoreRow);
    }
}

void DSPCosineDFT3D(int n1, int n2, int n3, int sign, double *** a, double * t, int * ip, double * w)
{
    TransformTrigonometric3D(k_Cosine, n1, n2, n3, sign, a, t, ip, w);
}

void DSPSineDFT3D(int n1, int n2, int n3, int sign, double *** a, double * t, int * ip, double * w)
{
    TransformTrigonometric3D(k_Sine, n1, n2, n3, sign, a, t, ip, w);
}

} // namespace math::detail
