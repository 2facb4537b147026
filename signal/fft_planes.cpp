#include "signal/fft_planes.h"

#include "signal/column_pass.h"
#include "signal/fft_kernels.h"
#include "signal/fft_passes.h"
#include "signal/mirrored_rows.h"
#include "signal/scratch.h"

#include <algorithm>

namespace math::detail
{

namespace
{

using RowKernel = void (*)(int n, int sign, double * a, int * ip, double * w);

/// What a pass over an array needs beside the array.
struct Pass
{
    int sign;
    double * t;
    int * ip;
    double * w;

    /// The rows of a plane.
    void Rows(RowKernel kernel, int n1, int n2, double ** a) const
    {
        for (int i = 0; i < n1; ++i)
        {
            kernel(n2, sign, a[i], ip, w);
        }
    }

    /// The columns of n1 rows of n2 values, given by number.
    template <int ElementSize, typename RowOf>
    void Columns(RowKernel kernel, int n1, int n2, RowOf rowOf) const
    {
        TransformColumns<ElementSize>(n1, n2, rowOf, t,
                                      [&](double * column) { kernel(n1 * ElementSize, sign, column, ip, w); });
    }

    /// Rows, then columns; for a real transform backwards the other way round.
    template <int ElementSize>
    void Plane(RowKernel rowKernel, RowKernel columnKernel, int n1, int n2, double ** a) const
    {
        bool const areRowsLast = rowKernel == DSPRealDFT && sign < 0;
        if (!areRowsLast)
        {
            Rows(rowKernel, n1, n2, a);
        }
        Columns<ElementSize>(columnKernel, n1, n2, [a](int i) { return a[i]; });
        if (areRowsLast)
        {
            Rows(rowKernel, n1, n2, a);
        }
    }

    /// All planes, each by itself.
    template <int ElementSize>
    void Planes(RowKernel rowKernel, RowKernel columnKernel, int n1, int n2, int n3, double *** a) const
    {
        for (int i = 0; i < n1; ++i)
        {
            Plane<ElementSize>(rowKernel, columnKernel, n2, n3, a[i]);
        }
    }

    /// The columns through all planes.
    template <int ElementSize>
    void AcrossPlanes(RowKernel kernel, int n1, int n2, int n3, double *** a) const
    {
        for (int j = 0; j < n2; ++j)
        {
            Columns<ElementSize>(kernel, n1, n3, [a, j](int i) { return a[i][j]; });
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

void TransformTrigonometric2D(RowKernel kernel, int n1, int n2, int sign, double ** a, double * t, int * ip, double * w)
{
    int const longest = std::max(n1, n2);
    EnsureTwiddles(longest, 4, ip, w);
    EnsureCosines(longest, 1, ip, w);
    Scratch const scratch(t, CountScratch(n1, n2, 1), k_Owner2D);
    Pass{sign, scratch.Get(), ip, w}.Plane<1>(kernel, kernel, n1, n2, a);
}

void TransformTrigonometric3D(RowKernel kernel, int n1, int n2, int n3, int sign, double *** a, double * t, int * ip,
                              double * w)
{
    int const longest = std::max({n1, n2, n3});
    EnsureTwiddles(longest, 4, ip, w);
    EnsureCosines(longest, 1, ip, w);
    Scratch const scratch(t, CountScratch(std::max(n1, n2), n3, 1), k_Owner3D);
    Pass const pass{sign, scratch.Get(), ip, w};
    pass.Planes<1>(kernel, kernel, n1, n2, n3, a);
    pass.AcrossPlanes<1>(kernel, n1, n2, n3, a);
}

} // namespace

void DSPComplexDFT2D(int n1, int n2, int sign, double ** a, double * t, int * ip, double * w)
{
    EnsureTwiddles(std::max(2 * n1, n2), 4, ip, w);
    Scratch const scratch(t, CountScratch(n1, n2, 2), k_Owner2D);
    Pass{sign, scratch.Get(), ip, w}.Plane<2>(DSPComplexDFT, DSPComplexDFT, n1, n2, a);
}

void DSPRealDFT2D(int n1, int n2, int sign, double ** a, double * t, int * ip, double * w)
{
    EnsureTwiddles(std::max(2 * n1, n2), 4, ip, w);
    EnsureCosines(n2, 4, ip, w);
    Scratch const scratch(t, CountScratch(n1, n2, 2), k_Owner2D);
    Pass const pass{sign, scratch.Get(), ip, w};
    if (sign < 0)
    {
        VisitMirroredRows(a, n1, JoinFirstColumns, IgnoreRow);
    }
    pass.Plane<2>(DSPRealDFT, DSPComplexDFT, n1, n2, a);
    if (sign >= 0)
    {
        VisitMirroredRows(a, n1, SeparateFirstColumns, IgnoreRow);
    }
}

void DSPCosineDFT2D(int n1, int n2, int sign, double ** a, double * t, int * ip, double * w)
{
    TransformTrigonometric2D(DSPCosineDFT, n1, n2, sign, a, t, ip, w);
}

void DSPSineDFT2D(int n1, int n2, int sign, double ** a, double * t, int * ip, double * w)
{
    TransformTrigonometric2D(DSPSineDFT, n1, n2, sign, a, t, ip, w);
}

void DSPComplexDFT3D(int n1, int n2, int n3, int sign, double *** a, double * t, int * ip, double * w)
{
    int const rows = std::max(n1, n2);
    EnsureTwiddles(std::max(2 * rows, n3), 4, ip, w);
    Scratch const scratch(t, CountScratch(rows, n3, 2), k_Owner3D);
    Pass const pass{sign, scratch.Get(), ip, w};
    pass.Planes<2>(DSPComplexDFT, DSPComplexDFT, n1, n2, n3, a);
    pass.AcrossPlanes<2>(DSPComplexDFT, n1, n2, n3, a);
}

void DSPRealDFT3D(int n1, int n2, int n3, int sign, double *** a, double * t, int * ip, double * w)
{
    int const rows = std::max(n1, n2);
    EnsureTwiddles(std::max(2 * rows, n3), 4, ip, w);
    EnsureCosines(n3, 4, ip, w);
    Scratch const scratch(t, CountScratch(rows, n3, 2), k_Owner3D);
    Pass const pass{sign, scratch.Get(), ip, w};
    if (sign < 0)
    {
        VisitMirroredRows(a, n1, n2, JoinFirstColumns, IgnoreRow);
        pass.AcrossPlanes<2>(DSPComplexDFT, n1, n2, n3, a);
    }
    pass.Planes<2>(DSPRealDFT, DSPComplexDFT, n1, n2, n3, a);
    if (sign >= 0)
    {
        pass.AcrossPlanes<2>(DSPComplexDFT, n1, n2, n3, a);
        VisitMirroredRows(a, n1, n2, SeparateFirstColumns, IgnoreRow);
    }
}

void DSPCosineDFT3D(int n1, int n2, int n3, int sign, double *** a, double * t, int * ip, double * w)
{
    TransformTrigonometric3D(DSPCosineDFT, n1, n2, n3, sign, a, t, ip, w);
}

void DSPSineDFT3D(int n1, int n2, int n3, int sign, double *** a, double * t, int * ip, double * w)
{
    TransformTrigonometric3D(DSPSineDFT, n1, n2, n3, sign, a, t, ip, w);
}

} // namespace math::detail
