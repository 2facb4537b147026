// The first calls of the page on noise and signals. The program fails where they do not give what the page says.

//! [first call]
#include <math/fourier_1d.h>
#include <math/perlin_noise.h>

#include <cmath>
#include <numbers>

int main()
{
    unsigned int const count = 64; // a power of two
    CDSPSignal1D signal(count);
    for (unsigned int j = 0; j < count; ++j)
    {
        signal.m_Data[j] = 3 * std::cos(2 * std::numbers::pi * 5 * j / count); // 5 waves, 3 high
    }
    CDSPTransform1D transform;
    if (!transform.RealFFT(1, &signal))
    {
        return 1;
    }
    // R[0], R[n/2], then R[k], I[k]: wave 5 is at 10, and half the count times as high.
    double const height = signal.m_Data[10] / (count / 2.0); // 3

    C3DPerlinNoise noise(7); // slot 0 has the seed 7
    double x = 0;
    double y = 0;
    double z = 0;
    noise.DNoise(0.3, 0.4, 0.5, x, y, z);
    noise.Dispose(); // copies share the tables: one of them frees them
    return std::abs(height - 3) < 1e-12 && std::isfinite(x + y + z) ? 0 : 1;
}
//! [first call]
