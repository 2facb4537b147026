#pragma once

/// \file
/// The corrections of a primitive against a sphere, written down step by step, as a judge of those of the library.

#include "math/map_points_in_ref.h"
#include "math/sphere.h"
#include "math/vector_geometry.h"
#include "support/same_bits.h"

#include <array>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace geometry_test
{

/// A primitive in the space of a sphere, and the steps that correct it there.
class ConstraintBySteps
{
public:
    using Vector = C3DVector3Tpl<double>;

    /// Corrections that go on for ever are ended there.
    static constexpr int k_MostSteps = 100000;

    /// The points and the reference are in world space, and the sphere in that of the matrix.
    ConstraintBySteps(C3DBaseSphere const & sphere, std::vector<Vector> points, Vector const & reference,
                      C3DXfoMatTpl<double> const & matrix)
        : m_Matrix(matrix), m_Points(std::move(points)), m_Reference(reference)
    {
        sphere.GetRadius(m_Radius);
        sphere.GetCenter(m_Center);
        F3DMapPointsInRef(m_Points.data(), static_cast<unsigned long>(m_Points.size()), nullptr, &m_Matrix, 1);
        F3DMapPointsInRef(&m_Reference, 1, nullptr, &m_Matrix, 1);
    }

    /// Steps taken by the last correction.
    int Steps() const { return m_Steps; }
    std::vector<Vector> const & LocalPoints() const { return m_Points; }

    Vector Include()
    {
        bool fits = false;
        bool hasOutside = false;
        for (Vector const & point : m_Points)
        {
            double const gap = Minus(Minus(point, m_Reference), m_Center).GetLength() - m_Radius;
            hasOutside = hasOutside || gap > 1e-12;
            fits = fits || !(gap >= -1e-12);
        }
        if (!fits || hasOutside)
        {
            return ToWorld(Vector(-m_Reference.X, -m_Reference.Y, -m_Reference.Z));
        }
        double best = 1.7976931348623157e308;
        for (Kinds kinds = Look(); kinds.outside && m_Steps < k_MostSteps; kinds = Look())
        {
            Vector const x = Minus(Target(kinds.farthest), kinds.farthest);
            double const length = x.GetLength();
            if (length < m_Radius * 0.0001 || std::abs((length - best) / (length + best)) < 0.01)
            {
                break;
            }
            best = length;
            Accept(x);
        }
        return ToWorld(m_Error);
    }

    Vector Exclude()
    {
        Vector const mean = Mean();
        Vector first(0, 0, 0);
        for (Kinds kinds = Look(); kinds.inside && m_Steps < k_MostSteps; kinds = Look())
        {
            Vector const w(-kinds.deepest.X, -kinds.deepest.Y, -kinds.deepest.Z);
            Vector x;
            if (m_Steps == 0)
            {
                Vector const s = Target(w);
                x = !IsSmall(w) && Product(mean, w) < -1e-12 ? Minus(w, s) : Vector().Add(s, w);
                first = x;
            }
            else
            {
                x = Better(first, w);
            }
            if (IsSmall(x) || !Accept(x))
            {
                break;
            }
        }
        return ToWorld(m_Error);
    }

    Vector PutOnSurface()
    {
        Vector const mean = Mean();
        Vector e(0, 0, 0);
        for (Kinds kinds = Look();
             !m_Points.empty() && !(kinds.on && kinds.outside && !kinds.inside) && m_Steps < k_MostSteps;
             kinds = Look())
        {
            Vector const w = kinds.nearest;
            Vector const s = Target(w);
            bool const isAway = !IsSmall(w) && Product(mean, w) < 1e-12;
            Vector x = Minus(isAway ? Vector(-s.X, -s.Y, -s.Z) : s, w);
            if (m_Steps == 0)
            {
                e = x;
                e.Normalize();
            }
            else
            {
                double const along = Product(x, e);
                if (along < 0)
                {
                    break;
                }
                x = Vector(e.X * along, e.Y * along, e.Z * along);
            }
            if (IsSmall(x) || !Accept(x))
            {
                break;
            }
        }
        return ToWorld(m_Error);
    }

    /// A step along `direction` that brings the point at -`w` from the center to the surface.
    Vector Better(Vector const & direction, Vector const & w) const
    {
        double const a = GetVctsAngle(direction, w, 1e-12);
        double const length = w.GetLength();
        double const s = std::sin(a) * length / m_Radius;
        double const quarter = s < 0 ? -1.5707963267948966 : 1.5707963267948966;
        double const b = std::abs(s) > 1 ? quarter : std::asin(s);
        double const m = m_Radius * m_Radius + length * length + 2 * m_Radius * length * std::cos(a + b);
        Vector step = direction;
        step.SetLength(std::sqrt(m < 0 ? 0 : m));
        return step;
    }

private:
    /// The kinds of points that there are, and the offsets of the worst ones.
    struct Kinds
    {
        bool inside = false;
        bool outside = false;
        bool on = false;
        Vector farthest{0, 0, 0};
        Vector deepest{0, 0, 0};
        Vector nearest{0, 0, 0};
    };

    static Vector Minus(Vector const & a, Vector const & b) { return {a.X - b.X, a.Y - b.Y, a.Z - b.Z}; }
    static double Product(Vector const & a, Vector const & b) { return a.X * b.X + a.Y * b.Y + a.Z * b.Z; }
    static bool IsSmall(Vector const & a)
    {
        return std::abs(a.X) <= 1e-12 && std::abs(a.Y) <= 1e-12 && std::abs(a.Z) <= 1e-12;
    }

    Vector Mean() const { return Vector().SetMean(m_Points.data(), static_cast<unsigned long>(m_Points.size())); }

    Kinds Look() const
    {
        Kinds kinds;
        double farthest = 0;
        double deepest = 0;
        double nearest = 0;
        for (std::size_t i = 0; i < m_Points.size(); ++i)
        {
            Vector const offset = Minus(m_Points[i], m_Center);
            double const gap = offset.GetLength() - m_Radius;
            bool const isOutside = gap > 1e-12;
            bool const isOn = !isOutside && gap >= -1e-12;
            (isOutside ? kinds.outside : isOn ? kinds.on : kinds.inside) = true;
            if (isOutside && gap > farthest)
            {
                farthest = gap;
                kinds.farthest = offset;
            }
            if (!isOutside && !(gap > deepest))
            {
                deepest = gap;
                kinds.deepest = offset;
            }
            if (i == 0 || gap < nearest)
            {
                nearest = gap;
                kinds.nearest = offset;
            }
        }
        return kinds;
    }

    Vector Target(Vector const & w) const
    {
        constexpr double pi = 3.14159265358979323846;
        Vector const d = Minus(w, m_Center);
        double u = 0;
        double v = 0;
        if (!IsSmall(d))
        {
            v = std::acos(d.Y / d.GetLength()) * 0.3183098861837907;
            u = std::atan2(-d.Z, d.X) * 0.15915494309189535;
            u = u < 0 ? u + 1 : u;
        }
        double const ring = std::sin(pi * v);
        Vector const normal(ring * std::cos(2 * pi * u), std::cos(pi * v), -(ring * std::sin(2 * pi * u)));
        return {m_Center.X + m_Radius * normal.X, m_Center.Y + m_Radius * normal.Y, m_Center.Z + m_Radius * normal.Z};
    }

    /// Moves everything. False where nothing moves.
    bool Accept(Vector const & x)
    {
        ++m_Steps;
        bool moves = Move(m_Error, x);
        for (Vector & point : m_Points)
        {
            moves = Move(point, x) || moves;
        }
        return moves;
    }

    static bool Move(Vector & point, Vector const & x)
    {
        Vector const before = point;
        point.Add(x);
        return !test_support::SameBits(before, point);
    }

    Vector ToWorld(Vector const & way) const
    {
        std::array<Vector, 2> ends{Vector(0, 0, 0), way};
        F3DMapPointsInRef(ends.data(), 2, nullptr, &m_Matrix, 0);
        return Minus(ends[1], ends[0]);
    }

    C3DXfoMatTpl<double> m_Matrix;
    std::vector<Vector> m_Points;
    Vector m_Reference;
    Vector m_Center;
    double m_Radius = 0;
    Vector m_Error{0, 0, 0};
    int m_Steps = 0;
};

} // namespace geometry_test
