#pragma once

/// \file
/// The kernels of fft_kernels.h along each axis of an array of rows, or of planes of rows. `t` is scratch for n times
/// ColumnGroupWidth values, with n the number of rows, or the greater of those of rows and planes; where it is null the
/// kernel allocates it, and **ends the process where it cannot**.

namespace math::detail
{

/// n1 rows of n2/2 complex samples: the complex transform along rows and columns.
void DSPComplexDFT2D(int n1, int n2, int sign, double ** a, double * t, int * ip, double * w);
/// The real transform along the rows, the complex one along the columns, and the first two columns separated; for a
/// sign below 0 the way back, in the order of its steps.
void DSPRealDFT2D(int n1, int n2, int sign, double ** a, double * t, int * ip, double * w);
/// The cosine, or the sine, transform along rows and columns.
///@{
void DSPCosineDFT2D(int n1, int n2, int sign, double ** a, double * t, int * ip, double * w);
void DSPSineDFT2D(int n1, int n2, int sign, double ** a, double * t, int * ip, double * w);
///@}

/// n1 planes of n2 rows of n3/2 complex samples: the complex transform along the three axes.
void DSPComplexDFT3D(int n1, int n2, int n3, int sign, double *** a, double * t, int * ip, double * w);
/// The real transform along the rows, the complex one along the other axes, and the first two columns separated; for a
/// sign below 0 the way back: the first two columns joined, then the planes, the columns and the rows.
void DSPRealDFT3D(int n1, int n2, int n3, int sign, double *** a, double * t, int * ip, double * w);
/// The cosine, or the sine, transform along the three axes.
///@{
void DSPCosineDFT3D(int n1, int n2, int n3, int sign, double *** a, double * t, int * ip, double * w);
void DSPSineDFT3D(int n1, int n2, int n3, int sign, double *** a, double * t, int * ip, double * w);
///@}

} // namespace math::detail
