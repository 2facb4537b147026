#pragma once

/// \file
/// The extraction of Euler angles once more, for tests: written as a list of steps on the table of euler_checks.h,
/// without the library's names and structure, so that a slip in either shows.

#include "math/angles.h"
#include "rotation/euler_checks.h"

namespace test_support
{

/// Brings an angle's whole turns to those that put `shifted` into one turn.
inline double DropTurns(double angle, double shifted)
{
    if (shifted < 0 || shifted >= k_TwoPi)
    {
        return angle - std::floor(shifted * 0.15915494309189535) * k_TwoPi;
    }
    return angle;
}

inline double CircleDistance(double p, double c)
{
    double d = std::abs(p - c);
    if (p >= 0 && c < 0)
    {
        d = std::abs(p - c - k_TwoPi);
    }
    if (p < 0 && c >= 0)
    {
        d = std::abs(p + k_TwoPi - c);
    }
    return d > k_Pi ? k_TwoPi - d : d;
}

/// f, mid and h with the bounded target in `tb`, which is indexed by axis; steps 8 to 12 of the pole.
inline std::array<double, 3> PoleBySteps(double const (&m)[3][3], OrderRow const & row, double mid,
                                         double const (&tb)[3], double zero)
{
    double const p = tb[row.a0];
    double const q = tb[row.a2];
    double const sine = m[row.sineRow][row.sineColumn];
    double const cosine = m[row.cosineRow][row.cosineColumn];
    double f = 0;
    double h = 0;
    if (row.even == (mid < 0))
    {
        double d = F3DArcSinCos(row.sign * sine, cosine);
        if (std::abs(d) >= 1e-6)
        {
            d = std::abs(p + q) >= zero ? d - (p + q) : d;
            f = p + d / 2;
            h = q + d / 2;
        }
        else
        {
            f = h = -(p + q) / 2;
        }
    }
    else
    {
        double d = F3DArcSinCos(sine, cosine);
        if (std::abs(d) >= 1e-6)
        {
            d = std::abs(p - q) >= zero ? d - (p - q) : d;
            f = p + d / 2;
            h = q - d / 2;
        }
        else
        {
            f = h = (p + q) / 2;
        }
    }
    auto const inTurn = [](double x) { return x - std::floor(x * 0.15915494309189535) * k_TwoPi; };
    double const f2 = inTurn(f + k_Pi);
    double const h2 = inTurn(h + k_Pi);
    f = inTurn(f);
    h = inTurn(h);
    bool const second = CircleDistance(p, f) + CircleDistance(q, h) >= CircleDistance(p, f2) + CircleDistance(q, h2);
    return second ? std::array{f2, mid, h2} : std::array{f, mid, h};
}

inline std::array<double, 3> RegularBySteps(double const (&m)[3][3], OrderRow const & row, double mid,
                                            double const (&tb)[3])
{
    double const k = 1 / std::cos(std::abs(mid));
    double const s = row.sign;
    double const f = F3DArcSinCos(-s * m[row.a1][row.a2] * k, k * m[row.a2][row.a2]);
    double const h = F3DArcSinCos(-s * m[row.a0][row.a1] * k, k * m[row.a0][row.a0]);
    double const mid2 = (mid > 0 ? k_Pi : -k_Pi) - mid;
    double const f2 = f > 0 ? f - k_Pi : f + k_Pi;
    double const h2 = h > 0 ? h - k_Pi : h + k_Pi;
    double const first =
        CircleDistance(tb[row.a0], f) + CircleDistance(tb[row.a1], mid) + CircleDistance(tb[row.a2], h);
    double const second =
        CircleDistance(tb[row.a0], f2) + CircleDistance(tb[row.a1], mid2) + CircleDistance(tb[row.a2], h2);
    return first >= second ? std::array{f2, mid2, h2} : std::array{f, mid, h};
}

template <typename T>
C3DVector3Tpl<T> ExtractBySteps(C3DMatrix33Tpl<T> const & mat, C3DVector3Tpl<T> const & target, OrderRow const & row)
{
    constexpr bool isDouble = std::is_same_v<T, double>;
    double const pole = isDouble ? 0.999999999999 : 0.999999;
    double const zero = isDouble ? 1e-12 : 1e-6;
    double m[3][3];
    double t[3];
    double tb[3];
    for (int r = 0; r < 3; ++r)
    {
        t[r] = static_cast<double>(target.Get(r));
        tb[r] = DropTurns(t[r], t[r] + k_Pi);
        for (int c = 0; c < 3; ++c)
        {
            m[r][c] = static_cast<double>(mat.Get(r, c));
        }
    }
    double const e = row.sign * m[row.a0][row.a2];
    std::array<double, 3> chosen{};
    if (e <= -pole || e >= pole)
    {
        chosen = PoleBySteps(m, row, e < 0 ? -k_HalfPi : k_HalfPi, tb, zero);
    }
    else
    {
        chosen = RegularBySteps(m, row, std::asin(e), tb);
    }
    double o[3];
    o[row.a0] = chosen[0];
    o[row.a1] = chosen[1];
    o[row.a2] = chosen[2];
    C3DVector3Tpl<T> result;
    for (int axis = 0; axis < 3; ++axis)
    {
        double const u = t[axis] + k_Pi - o[axis];
        bool const outside = u < 0 || u >= k_TwoPi;
        double const turns = std::floor(u * 0.15915494309189535) * k_TwoPi;
        result.Set(axis, static_cast<T>(outside ? o[axis] + turns : o[axis]));
    }
    return result;
}

/// By ==, a NaN being equal to a NaN.
template <typename T>
testing::AssertionResult IsSame(C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b)
{
    for (int i = 0; i < 3; ++i)
    {
        if (!(a.Get(i) == b.Get(i) || (std::isnan(a.Get(i)) && std::isnan(b.Get(i)))))
        {
            return testing::AssertionFailure()
                   << a.X << ' ' << a.Y << ' ' << a.Z << " is not " << b.X << ' ' << b.Y << ' ' << b.Z;
        }
    }
    return testing::AssertionSuccess();
}

} // namespace test_support
