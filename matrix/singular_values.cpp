#include "matrix/singular_values.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace math::detail
{

namespace
{

constexpr int k_MostSweeps = 30;

/// The iteration multiplies up to five quantities, each of which may be as small as a rounding error of the largest
/// element. Within these limits of that element no such product over- or underflows.
constexpr double k_LeastSize = 0x1p-100;
constexpr double k_GreatestSize = 0x1p100;

/// Scaling makes NaNs of infinities.
constexpr double k_Nan = std::numeric_limits<double>::quiet_NaN();

/// Whether a sum of squares is that of the exact numbers, up to rounding.
bool IsSafeSquare(double sum)
{
    return sum >= 0x1p-900 && sum <= 0x1p1000;
}

/// The square root of x^2 + y^2 by way of the quotient of the two, which cannot overflow. Out of line, as it is rare.
[[gnu::noinline]] double HypotenuseOfExtremes(double x, double y)
{
    double const a = std::abs(x);
    double const b = std::abs(y);
    if (a > b)
    {
        return a * std::sqrt(1 + (b / a) * (b / a));
    }
    return b != 0 ? b * std::sqrt(1 + (a / b) * (a / b)) : 0;
}

double Hypotenuse(double x, double y)
{
    double const sum = x * x + y * y;
    return IsSafeSquare(sum) ? std::sqrt(sum) : HypotenuseOfExtremes(x, y);
}

/// The magnitude with the sign of another number; a zero of either sign counts as positive.
double WithSign(double magnitude, double sign)
{
    return sign < 0 ? -magnitude : magnitude;
}

void Transpose(double const (&a)[3][3], double (&result)[3][3])
{
    for (int r = 0; r < 3; ++r)
    {
        for (int c = 0; c < 3; ++c)
        {
            result[c][r] = a[r][c];
        }
    }
}

/// Turns two vectors in the plane that they span.
void RotatePair(double (&x)[3], double (&y)[3], double c, double s)
{
    for (int i = 0; i < 3; ++i)
    {
        double const old = x[i];
        x[i] = old * c + y[i] * s;
        y[i] = y[i] * c - old * s;
    }
}

/// Householder's reflection I + u uT / h that carries a vector to the axis `First`, without regard to its elements
/// before that, which no reflection touches. The vector 0 needs none.
template <int First>
class Reflection
{
public:
    explicit Reflection(double const (&vector)[3])
    {
        std::copy(vector + First, vector + 3, m_U + First);
        double scale = 1;
        double s = SquareLength();
        if (!IsSafeSquare(s)) [[unlikely]]
        {
            scale = SumMagnitudes();
            if (scale == 0)
            {
                return;
            }
            for (int i = First; i < 3; ++i)
            {
                m_U[i] /= scale;
            }
            s = SquareLength();
        }
        double const f = m_U[First];
        // Opposite to the pivot in sign, so that nothing cancels.
        double const g = -WithSign(std::sqrt(s), f);
        m_U[First] = f - g;
        m_InverseH = 1 / (f * g - s);
        m_Image = scale * g;
    }

    /// What the vector becomes on its axis.
    double GetImage() const { return m_Image; }

    void Apply(double (&vector)[3]) const
    {
        if (m_InverseH == 0)
        {
            return;
        }
        double dot = 0;
        for (int i = First; i < 3; ++i)
        {
            dot += m_U[i] * vector[i];
        }
        double const factor = dot * m_InverseH;
        for (int i = First; i < 3; ++i)
        {
            vector[i] += factor * m_U[i];
        }
    }

    /// Apply for row r of a matrix that is given by its columns.
    void ApplyToRow(int r, double (&columns)[3][3]) const
    {
        double row[3] = {columns[0][r], columns[1][r], columns[2][r]};
        Apply(row);
        for (int c = First; c < 3; ++c)
        {
            columns[c][r] = row[c];
        }
    }

private:
    double SquareLength() const
    {
        double sum = 0;
        for (int i = First; i < 3; ++i)
        {
            sum += m_U[i] * m_U[i];
        }
        return sum;
    }

    double SumMagnitudes() const
    {
        double sum = 0;
        for (int i = First; i < 3; ++i)
        {
            sum += std::abs(m_U[i]);
        }
        return sum;
    }

    double m_U[3] = {};
    double m_InverseH = 0;
    double m_Image = 0;
};

/// The reflection of a vector of one element is a change of sign; a NaN makes NaNs of all that it reflects.
double ReflectElement(double element)
{
    if (element == 0)
    {
        return 1;
    }
    return std::isnan(element) ? element : -1;
}

/// The decomposition under way, in the paper's names: the diagonal w (there q) and the superdiagonal e of a bidiagonal
/// matrix, e[i] above w[i], and U and V by their columns.
class GolubReinsch
{
public:
    explicit GolubReinsch(double const (&a)[3][3])
    {
        double columns[3][3];
        Transpose(a, columns);
        Bidiagonalize(columns);
        for (int i = 0; i < 3; ++i)
        {
            m_Norm = std::max(m_Norm, std::abs(m_W[i]) + std::abs(m_E[i]));
        }
    }

    void Diagonalize()
    {
        for (int k = 2; k >= 0; --k)
        {
            for (int sweep = 0; sweep < k_MostSweeps; ++sweep)
            {
                int const l = Split(k);
                if (l == k)
                {
                    MakePositive(k);
                    break;
                }
                Sweep(l, k);
            }
        }
    }

    void GetResult(SingularValueDecomposition & result) const
    {
        Transpose(m_U, result.u);
        for (int i = 0; i < 3; ++i)
        {
            result.w[i] = m_W[i];
            std::copy_n(m_V[i], 3, result.vt[i]);
        }
    }

private:
    /// Columns and rows are reflected in turn, and U and V accumulated from the last reflection to the first.
    void Bidiagonalize(double (&columns)[3][3])
    {
        Reflection<0> const left0(columns[0]);
        left0.Apply(columns[1]);
        left0.Apply(columns[2]);
        Reflection<1> const right0({columns[0][0], columns[1][0], columns[2][0]});
        right0.ApplyToRow(1, columns);
        right0.ApplyToRow(2, columns);
        Reflection<1> const left1(columns[1]);
        left1.Apply(columns[2]);
        m_W[0] = left0.GetImage();
        m_E[1] = right0.GetImage();
        m_W[1] = left1.GetImage();
        double const right1 = ReflectElement(columns[2][1]);
        m_E[2] = right1 * columns[2][1];
        columns[2][2] *= right1;
        m_V[2][2] = right1;
        double const left2 = ReflectElement(columns[2][2]);
        m_W[2] = left2 * columns[2][2];
        m_U[2][2] = left2;
        right0.Apply(m_V[1]);
        right0.Apply(m_V[2]);
        left1.Apply(m_U[1]);
        left1.Apply(m_U[2]);
        left0.Apply(m_U[0]);
        left0.Apply(m_U[1]);
        left0.Apply(m_U[2]);
    }

    /// A test of exact equality: nothing is small but what vanishes in the norm.
    bool IsNegligible(double x) const { return std::abs(x) + m_Norm == m_Norm; }

    /// The first index of the block that ends at k and hangs together.
    int Split(int k)
    {
        for (int l = k; l > 0; --l)
        {
            if (IsNegligible(m_E[l]))
            {
                return l;
            }
            if (IsNegligible(m_W[l - 1]))
            {
                Cancel(l, k);
                return l;
            }
        }
        return 0;
    }

    /// Clears e[l] beside a vanishing w[l - 1] by rotations of row l - 1 with the rows below it.
    void Cancel(int l, int k)
    {
        double c = 0;
        double s = 1;
        for (int i = l; i <= k; ++i)
        {
            double const f = s * m_E[i];
            m_E[i] *= c;
            if (IsNegligible(f))
            {
                return;
            }
            double const g = m_W[i];
            double const h = Hypotenuse(f, g);
            m_W[i] = h;
            c = g / h;
            s = -f / h;
            RotatePair(m_U[l - 1], m_U[i], c, s);
        }
    }

    void MakePositive(int k)
    {
        if (m_W[k] < 0)
        {
            m_W[k] = -m_W[k];
            for (double & element : m_V[k])
            {
                element = -element;
            }
        }
    }

    /// The direction in which the first rotation of a sweep turns the columns l and l + 1:
    ///
    ///     f = ((x - z) (x + z) + h (y / (t + sign(t) sqrt(t^2 + 1)) - h)) / x   and   e[l + 1],   where
    ///     t = ((y - z) (y + z) + (g - h) (g + h)) / (2 h y)
    ///
    /// comes from the bottom 2 by 2 minor. Its length is free, which saves the divisions.
    void FindShift(int l, int k, double & f, double & h) const
    {
        double const x = m_W[l];
        double const y = m_W[k - 1];
        double const z = m_W[k];
        double const g = m_E[k - 1];
        double const e = m_E[k];
        double const denominator = 2 * e * y;
        double const t = std::copysign(1.0, denominator) * ((y - z) * (y + z) + (g - e) * (g + e));
        double const root = std::abs(t) + Hypotenuse(t, denominator);
        double const sign = WithSign(1, x);
        f = sign * ((x - z) * (x + z) - e * e) * root + sign * WithSign(1, t) * (e * y * std::abs(denominator));
        h = std::abs(x) * m_E[l + 1] * root;
    }

    /// One step of the QR iteration on the block from l to k. Each rotation of two columns, in V, raises an element
    /// below the diagonal; a rotation of two rows, in U, moves it above the diagonal, and the next one removes it.
    void Sweep(int l, int k)
    {
        double f;
        double h;
        FindShift(l, k, f, h);
        double x = m_W[l];
        double g = m_E[l + 1];
        for (int i = l + 1; i <= k; ++i)
        {
            double const columnLength = Hypotenuse(f, h);
            double const columnC = f / columnLength;
            double const columnS = h / columnLength;
            // The row's rotation is that of the same quantities after the column's, whose length cancels.
            double const p = x * f + g * h;
            double const q = m_W[i] * h;
            double const rowLength = Hypotenuse(p, q);
            // A row that vanishes may be turned by any angle.
            double const c = rowLength != 0 ? p / rowLength : columnC;
            double const s = rowLength != 0 ? q / rowLength : columnS;
            RotatePair(m_V[i - 1], m_V[i], columnC, columnS);
            RotatePair(m_U[i - 1], m_U[i], c, s);
            m_E[i - 1] = columnLength;
            m_W[i - 1] = rowLength / columnLength;
            double const above = g * columnC - x * columnS;
            double const y = m_W[i] * columnC;
            f = c * above + s * y;
            x = c * y - s * above;
            if (i < k)
            {
                g = c * m_E[i + 1];
                h = s * m_E[i + 1];
            }
        }
        m_E[l] = 0;
        m_E[k] = f;
        m_W[k] = x;
    }

    double m_U[3][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    double m_V[3][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    double m_W[3] = {};
    double m_E[3] = {};
    double m_Norm = 0;
};

void Decompose(double const (&a)[3][3], SingularValueDecomposition & result)
{
    GolubReinsch iteration(a);
    iteration.Diagonalize();
    iteration.GetResult(result);
}

} // namespace

void DecomposeSingularValues(double const (&a)[3][3], SingularValueDecomposition & result)
{
    double size = 0;
    for (auto const & row : a)
    {
        for (double const element : row)
        {
            size = std::max(size, std::abs(element));
        }
    }
    if (size == 0 || (size >= k_LeastSize && size <= k_GreatestSize)) [[likely]]
    {
        Decompose(a, result);
        return;
    }
    // A multiple by a power of two has the same decomposition, bit for bit but for the exponents of w.
    int const exponent = std::isinf(size) ? 0 : std::ilogb(size);
    double multiple[3][3];
    for (int r = 0; r < 3; ++r)
    {
        for (int c = 0; c < 3; ++c)
        {
            multiple[r][c] = std::isinf(a[r][c]) ? k_Nan : std::scalbn(a[r][c], -exponent);
        }
    }
    Decompose(multiple, result);
    for (double & value : result.w)
    {
        value = std::scalbn(value, exponent);
    }
}

} // namespace math::detail
