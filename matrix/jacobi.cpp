#include "matrix/jacobi.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace math::detail
{

namespace
{

constexpr int k_MostSweeps = 50;

/// Sweeps whose threshold is a share of the mean of what is left, so that the large elements go first.
constexpr int k_ThresholdSweeps = 3;
constexpr double k_ThresholdShare = 0.022222222222222223;

/// Sweeps before an element may be dropped, unrotated, for being negligible beside both its eigenvalues.
constexpr int k_SweepsBeforeDropping = 4;
constexpr double k_NegligibleFactor = 100;

/// Turns a pair of elements by the angle of sine s; tau is the tangent of half that angle.
void RotatePair(double & x, double & y, double s, double tau)
{
    double const oldX = x;
    double const oldY = y;
    x = oldX - s * (oldY + tau * oldX);
    y = oldY + s * (oldX - tau * oldY);
}

/// The tangent of the rotation that clears `element`, where `difference` is that of the two diagonal elements. The
/// smaller of the two angles is taken; its formula overflows where the element is negligible, and is not needed there.
double TangentOfRotation(double element, double difference, bool negligible)
{
    if (negligible)
    {
        return element / difference;
    }
    double const theta = 0.5 * difference / element;
    double const t = 1 / (std::abs(theta) + std::sqrt(1 + theta * theta));
    return theta < 0 ? -t : t;
}

class JacobiIteration
{
public:
    JacobiIteration(double const (&a)[3][3], double const (&base)[3], EigenDecomposition & result)
        : m_Vectors(result.vectors), m_Values(result.values)
    {
        for (int r = 0; r < 3; ++r)
        {
            std::copy_n(a[r], 3, m_Matrix[r]);
            for (int c = 0; c < 3; ++c)
            {
                m_Vectors[r][c] = r == c;
            }
            m_Values[r] = a[r][r];
            m_Base[r] = base[r];
        }
    }

    /// A NaN counts as converged.
    bool IsDiagonal(double epsilon) const
    {
        return !(std::abs(m_Matrix[0][1]) >= epsilon || std::abs(m_Matrix[0][2]) >= epsilon ||
                 std::abs(m_Matrix[1][2]) >= epsilon);
    }

    void Sweep(int number, double epsilon)
    {
        double const threshold = number <= k_ThresholdSweeps ? GetSize() * k_ThresholdShare : epsilon;
        bool const mayDrop = number > k_SweepsBeforeDropping;
        Annihilate(0, 1, threshold, epsilon, mayDrop);
        Annihilate(0, 2, threshold, epsilon, mayDrop);
        Annihilate(1, 2, threshold, epsilon, mayDrop);
        for (int i = 0; i < 3; ++i)
        {
            m_Base[i] += m_Change[i];
            m_Values[i] = m_Base[i];
            m_Change[i] = 0;
        }
    }

    /// Descending; of equal values the last comes first.
    void Sort()
    {
        for (int k = 0; k < 2; ++k)
        {
            int greatest = k;
            for (int i = k + 1; i < 3; ++i)
            {
                if (m_Values[i] >= m_Values[greatest])
                {
                    greatest = i;
                }
            }
            if (greatest != k)
            {
                std::swap(m_Values[k], m_Values[greatest]);
                for (auto & row : m_Vectors)
                {
                    std::swap(row[k], row[greatest]);
                }
            }
        }
    }

private:
    double GetSize() const { return std::abs(m_Matrix[0][1]) + std::abs(m_Matrix[0][2]) + std::abs(m_Matrix[1][2]); }

    /// Clears the element in row p and column q, p < q, unless it is within the threshold.
    void Annihilate(int p, int q, double threshold, double epsilon, bool mayDrop)
    {
        double & element = m_Matrix[p][q];
        double const g = k_NegligibleFactor * std::abs(element);
        if (mayDrop && g < std::abs(m_Values[p] * epsilon) && g < std::abs(m_Values[q] * epsilon))
        {
            element = 0;
            return;
        }
        if (!(std::abs(element) > threshold))
        {
            return;
        }
        double const difference = m_Values[q] - m_Values[p];
        double const t = TangentOfRotation(element, difference, g < std::abs(difference * epsilon));
        double const cosine = 1 / std::sqrt(1 + t * t);
        double const sine = t * cosine;
        double const change = t * element;
        m_Change[p] -= change;
        m_Change[q] += change;
        m_Values[p] -= change;
        m_Values[q] += change;
        element = 0;
        Rotate(p, q, sine, sine / (1 + cosine));
    }

    void Rotate(int p, int q, double s, double tau)
    {
        // The one index besides p and q, with its elements taken from above the diagonal.
        int const j = 3 - p - q;
        RotatePair(m_Matrix[std::min(j, p)][std::max(j, p)], m_Matrix[std::min(j, q)][std::max(j, q)], s, tau);
        for (auto & row : m_Vectors)
        {
            RotatePair(row[p], row[q], s, tau);
        }
    }

    double m_Matrix[3][3];
    double (&m_Vectors)[3][3];
    double (&m_Values)[3];
    double m_Base[3];
    double m_Change[3] = {};
};

} // namespace

int DecomposeSymmetric(double const (&a)[3][3], double const (&base)[3], double epsilon, EigenDecomposition & result)
{
    JacobiIteration iteration(a, base, result);
    for (int sweep = 1; sweep <= k_MostSweeps; ++sweep)
    {
        if (iteration.IsDiagonal(epsilon))
        {
            iteration.Sort();
            return 1;
        }
        iteration.Sweep(sweep, epsilon);
    }
    return 0;
}

} // namespace math::detail
