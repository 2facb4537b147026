#include "clip/gradient_noise.h"

#include <cmath>

namespace clip
{

namespace
{

double Fade(double t)
{
    return ((t * 6 - 15) * t + 10) * t * t * t;
}

/// The lattice along one axis around a coordinate.
struct Surroundings
{
    explicit Surroundings(double x) : below(static_cast<long long>(std::floor(x))), fraction(x - std::floor(x)) {}

    /// How much the neighbour below (0) or above (1) counts.
    double Weight(int side) const { return side == 0 ? 1 - Fade(fraction) : Fade(fraction); }

    long long below;
    double fraction;
};

} // namespace

C3DVector3Tpl<double> GradientNoise::Gradient(long long i, long long j, long long k) const
{
    auto const wrap = [](long long n) { return static_cast<double>(n & (k_Period - 1)); };
    // At a point of the lattice the noise is the product of its gradient with the coordinates themselves. The gradient
    // is the same a period further along an axis, the product is larger by the period times that component.
    auto const product = [this](double x, double y, double z)
    {
        double a = 0;
        double b = 0;
        double c = 0;
        m_Noise.DNoise(x, y, z, a, b, c);
        return c;
    };
    double const x = wrap(i);
    double const y = wrap(j);
    double const z = wrap(k);
    double const here = product(x, y, z);
    return {(product(x + k_Period, y, z) - here) / k_Period, (product(x, y + k_Period, z) - here) / k_Period,
            (product(x, y, z + k_Period) - here) / k_Period};
}

double GradientNoise::At(double x, double y, double z) const
{
    Surroundings const alongX(x);
    Surroundings const alongY(y);
    Surroundings const alongZ(z);
    double sum = 0;
    for (int corner = 0; corner < 8; ++corner)
    {
        int const right = corner & 1;
        int const top = corner >> 1 & 1;
        int const front = corner >> 2;
        C3DVector3Tpl<double> const gradient = Gradient(alongX.below + right, alongY.below + top, alongZ.below + front);
        double const product = gradient.X * (alongX.fraction - right) + gradient.Y * (alongY.fraction - top) +
                               gradient.Z * (alongZ.fraction - front);
        sum += alongX.Weight(right) * alongY.Weight(top) * alongZ.Weight(front) * product;
    }
    return sum;
}

} // namespace clip
