#pragma once

/// \file
/// The kernels of fft_kernels.h along each axis of an array of rows, or of planes of rows. `t` is scratch for n times
/// ColumnGroupWidth values, with n the number of rows, or the greater of those of rows and planes; where it is null the
/// kernel allocates it, and **ends the process where it cannot**.

namespace math::detail
{

void DSPComplexDFT2D(int n1, int n2, int sign, double ** a, double * t, int * ip, double * w);
void DSPRealDFT2D(int n1, int n2, int sign, double ** a, double * t, int * ip, double * w);
void DSPCosineDFT2D(int n1, int n2, int sign, double ** a, double * t, int * ip, double * w);
void DSPSineDFT2D(int n1, int n2, int sign, double ** a, double * t, int * ip, double * w);

void DSPComplexDFT3D(int n1, int n2, int n3, int sign, double *** a, double * t, int * ip, double * w);
void DSPRealDFT3D(int n1, int n2, int n3, int sign, double *** a, double * t, int * ip, double * w);
void DSPCosineDFT3D(int n1, int n2, int n3, int sign, double *** a, double * t, int * ip, double * w);
void DSPSineDFT3D(int n1, int n2, int n3, int sign, double *** a, double * t, int * ip, double * w);

} // namespace math::detail
