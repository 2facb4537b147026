#pragma once

/// \file
/// The kernels of fft_kernels.h on four lines of an array at once, which stand side by side in scratch memory, value by
/// value. Each line has the bits that it would have alone.

namespace math::detail
{

/// The rows of a plane, or those of one number in all planes.
class Rows
{
public:
    explicit Rows(double ** rows) : m_Rows(rows) {}
    Rows(double *** planes, int number) : m_Planes(planes), m_Number(number) {}

    double * At(int i) const { return m_Planes == nullptr ? m_Rows[i] : m_Planes[i][m_Number]; }

private:
    double *** m_Planes = nullptr;
    double ** m_Rows = nullptr;
    int m_Number = 0;
};

/// What the kernels need beside an array. `t` has room for four lines.
struct KernelMemory
{
    double * t;
    int * ip;
    double * w;
};

/// A kernel on four rows of n values, a multiple of four, from a number on, or on the four columns of n / 2 complex
/// numbers, or n values, that begin at a place in the rows.
using FourLinesKernel = void (*)(Rows const & rows, int first, int n, int sign, KernelMemory const & memory);

struct FourLines
{
    FourLinesKernel complexRows;
    FourLinesKernel realRows;
    FourLinesKernel cosineRows;
    FourLinesKernel sineRows;
    FourLinesKernel complexColumns;
    FourLinesKernel cosineColumns;
    FourLinesKernel sineColumns;
};

/// \return null where the processor has no registers of four values
FourLines const * FindFourLines();

} // namespace math::detail
