#include "math/polynomial_roots.h"

#include "math/platform/result.h"

#include <algorithm>
#include <cmath>

namespace
{

/// Thirds are products with this number and not quotients: its digits are part of the results.
constexpr double k_Third = 0.3333333333333333;
constexpr double k_TwoPi = 6.283185307179586;

void StoreOneRoot(tagE3D_QUAD_ROOT_CODE & code, double * roots, double root)
{
    code = E3D_QUAD_ONE_ROOT;
    roots[0] = root;
}

void StoreTwoRoots(tagE3D_QUAD_ROOT_CODE & code, double * roots, double first, double second)
{
    code = E3D_QUAD_TWO_ROOTS;
    roots[0] = first;
    roots[1] = second;
}

void SolveLinear(double b, double c, double tolerance, tagE3D_QUAD_ROOT_CODE & code, double * roots)
{
    if (std::abs(b) >= tolerance)
    {
        StoreOneRoot(code, roots, -c / b);
    }
    else if (std::abs(c) <= tolerance)
    {
        code = E3D_QUAD_ANY_VALUE;
    }
}

/// x^2 = w
void SolvePureSquare(double w, double tolerance, tagE3D_QUAD_ROOT_CODE & code, double * roots)
{
    if (w >= tolerance)
    {
        StoreTwoRoots(code, roots, std::sqrt(w), -std::sqrt(w));
    }
    else if (w >= -tolerance)
    {
        StoreOneRoot(code, roots, 0);
    }
}

void SolveFullQuadratic(double a, double b, double c, double tolerance, tagE3D_QUAD_ROOT_CODE & code, double * roots)
{
    double const discriminant = b * b - 4 * a * c;
    if (discriminant >= tolerance)
    {
        double const q = -0.5 * (b + (b >= 0 ? 1.0 : -1.0) * std::sqrt(discriminant));
        StoreTwoRoots(code, roots, q / a, c / q);
    }
    else if (discriminant > -tolerance)
    {
        StoreOneRoot(code, roots, -0.5 * b / a);
    }
}

/// Both roots of a x^2 + b x + c where the discriminant is positive; whether it was.
bool SolveByPlainFormula(double a, double b, double c, double & r0, double & r1)
{
    double const discriminant = b * b - 4 * a * c;
    if (!(discriminant > 0))
    {
        return false;
    }
    double const root = std::sqrt(discriminant);
    r0 = (root - b) / (2 * a);
    r1 = (-b - root) / (2 * a);
    return true;
}

double CubeRoot(double x)
{
    return std::copysign(std::pow(std::abs(x), k_Third), x);
}

/// y^3 + 3 p y + q with y = a x + s: what is left of a cubic without its square term.
struct DepressedCubic
{
    double a;
    double s;
    double p;
    double q;

    double ToRoot(double y) const { return (y - s) / a; }
};

DepressedCubic Depress(double a, double b, double c, double d)
{
    double const s = b * k_Third;
    double const thirdOfC = c * k_Third;
    return {a, s, a * thirdOfC - s * s, a * a * d - 3 * a * s * thirdOfC + 2 * s * s * s};
}

/// Cardano's formula, for a discriminant that is not negative. `rootOfDiscriminant` is that of 4 p^3 + q^2.
unsigned long SolveByCardano(DepressedCubic const & cubic, double rootOfDiscriminant, double tolerance, double & r0,
                             double & r1, double & r2)
{
    double const u = CubeRoot((cubic.q + rootOfDiscriminant) / 2);
    double const w = CubeRoot((cubic.q - rootOfDiscriminant) / 2);
    if (u - w >= tolerance)
    {
        r0 = cubic.ToRoot(-u - w);
        return 1;
    }
    r0 = cubic.ToRoot(-2 * u);
    r1 = cubic.ToRoot(u);
    r2 = r1;
    return 3;
}

/// Viete's formula, for a negative discriminant: three real roots.
unsigned long SolveByViete(DepressedCubic const & cubic, double & r0, double & r1, double & r2)
{
    double const g = std::sqrt(-cubic.p);
    // Near a double root rounding can take the cosine past its range.
    double const h = std::acos(std::clamp(cubic.q / (2 * g * cubic.p), -1.0, 1.0));
    r0 = cubic.ToRoot(2 * g * std::cos(h * k_Third));
    r1 = cubic.ToRoot(2 * g * std::cos((k_TwoPi - h) * k_Third));
    r2 = cubic.ToRoot(2 * g * std::cos((h + k_TwoPi) * k_Third));
    return 3;
}

/// b x^2 + c x + d, with a limit below which a coefficient counts as zero.
unsigned long SolveBelowCubic(double b, double c, double d, double tolerance, double & r0, double & r1)
{
    if (std::abs(b) >= tolerance)
    {
        return SolveByPlainFormula(b, c, d, r0, r1) ? 2 : 0;
    }
    if (std::abs(c) >= tolerance)
    {
        r0 = -d / c;
        return 1;
    }
    if (std::abs(d) < tolerance)
    {
        r0 = 0;
        return 1;
    }
    return 0;
}

} // namespace

long F3DFindQuadraticRoots(double a, double b, double c, tagE3D_QUAD_ROOT_CODE * code, double * const roots)
{
    if (code == nullptr)
    {
        return E_POINTER;
    }
    double const tolerance = math::detail::k_LessAccurateTolerance<double>;
    *code = E3D_QUAD_NO_ROOT;
    if (std::abs(a) < tolerance)
    {
        SolveLinear(b, c, tolerance, *code, roots);
    }
    else if (std::abs(b) < tolerance)
    {
        SolvePureSquare(-c / a, tolerance, *code, roots);
    }
    else if (std::abs(c) < tolerance)
    {
        StoreTwoRoots(*code, roots, -b / a, 0);
    }
    else
    {
        SolveFullQuadratic(a, b, c, tolerance, *code, roots);
    }
    return *code == E3D_QUAD_NO_ROOT ? S_FALSE : S_OK;
}

void F3DGetLinearRealRoots(double const & a, double const & b, unsigned long * count, double * root,
                           double const & epsilon)
{
    *count = 0;
    if (std::abs(a) >= epsilon)
    {
        *root = -b / a;
        *count = 1;
    }
    else if (std::abs(b) < epsilon)
    {
        *root = 0;
        *count = 1;
    }
}

void F3DGetQuadraticRealRoots(double const & a, double const & b, double const & c, unsigned long * count, double * r0,
                              double * r1, double const & epsilon)
{
    if (std::abs(a) >= epsilon)
    {
        *count = SolveByPlainFormula(a, b, c, *r0, *r1) ? 2 : 0;
        return;
    }
    F3DGetLinearRealRoots(b, c, count, r0, epsilon);
}

void F3DGetCubicRealRoots(double const & a, double b, double c, double const & d, unsigned long * count, double * r0,
                          double * r1, double * r2, double const & epsilon)
{
    double const tolerance = (std::abs(d) + std::abs(a) + std::abs(c) + std::abs(b) + 1e-79) * epsilon;
    *count = 0;
    if (std::abs(a) < tolerance)
    {
        *count = SolveBelowCubic(b, c, d, tolerance, *r0, *r1);
        return;
    }
    DepressedCubic const cubic = Depress(a, b, c, d);
    double const discriminant = 4 * cubic.p * cubic.p * cubic.p + cubic.q * cubic.q;
    if (discriminant >= 0)
    {
        *count = SolveByCardano(cubic, std::sqrt(discriminant), tolerance, *r0, *r1, *r2);
    }
    else if (discriminant < 0)
    {
        *count = SolveByViete(cubic, *r0, *r1, *r2);
    }
}
