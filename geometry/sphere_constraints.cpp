#include "geometry/sphere_surface.h"
#include "geometry/vector_expressions.h"
#include "math/map_points_in_ref.h"
#include "math/platform/pose.h"
#include "math/platform/result.h"
#include "math/sphere.h"
#include "math/transformation_matrix.h"
#include "math/vector_geometry.h"
#include "matrix/try_allocate.h"
#include "rotation/angle_constants.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>

using math::detail::Dot;
using Vector = C3DVector3Tpl<double>;

namespace
{

/// A correction ends after so many steps, whatever the input.
constexpr int k_MostPasses = 100000;

bool HaveSameBits(Vector const & a, Vector const & b)
{
    using Bits = std::array<std::uint64_t, 3>;
    return std::bit_cast<Bits>(a) == std::bit_cast<Bits>(b);
}

/// A primitive in the space of a pose, which is moved there step by step.
class LocalPrimitive
{
public:
    /// Brings the points into the space of the pose, with `reference` behind them if there is one.
    LocalPrimitive(Vector const * reference, Vector const * points, I3DPose_QN * pose, unsigned long count)
        : m_Result(pose->GetGlobalMatrix(&m_Matrix))
    {
        if (m_Result < 0)
        {
            return;
        }
        if (m_Matrix == nullptr || (points == nullptr && count > 0))
        {
            m_Result = E_POINTER;
            return;
        }
        // The way back of the translation needs two places.
        unsigned long const places = std::max(count, 1UL);
        m_Points = places < std::numeric_limits<unsigned long>::max() ? math::detail::TryAllocate<Vector>(places + 1)
                                                                      : nullptr;
        if (m_Points != nullptr)
        {
            m_Count = count;
            std::copy_n(points, count, m_Points.get());
            unsigned long used = count;
            if (reference != nullptr)
            {
                m_Points[used++] = *reference;
            }
            F3DMapPointsInRef(m_Points.get(), used, nullptr, m_Matrix, 1);
        }
    }

    /// Whether the pose answered and there was memory.
    bool IsReady() const { return m_Points != nullptr; }
    /// What the caller is told where it is not: of memory nothing.
    long Result() const { return m_Result; }
    Vector * Points() const { return m_Points.get(); }
    unsigned long Count() const { return m_Count; }
    Vector const & Reference() const { return m_Points[m_Count]; }
    Vector Mean() const { return Vector(0, 0, 0).SetMean(m_Points.get(), m_Count); }

    /// Moves the primitive, and adds the step to the translation.
    /// \return whether anything changed
    bool Move(Vector const & step, Vector & translation) const
    {
        bool isChanged = Add(translation, step);
        for (unsigned long i = 0; i < m_Count; ++i)
        {
            isChanged = Add(m_Points[i], step) || isChanged;
        }
        return isChanged;
    }

    /// The translation as a vector of world space. The points are lost.
    void MapToWorld(Vector & translation) const
    {
        m_Points[0].SetNull();
        m_Points[1] = translation;
        F3DMapPointsInRef(m_Points.get(), 2, nullptr, m_Matrix, 0);
        translation.Sub(m_Points[1], m_Points[0]);
    }

private:
    static bool Add(Vector & point, Vector const & step)
    {
        Vector const before = point;
        return !HaveSameBits(before, point.Add(step));
    }

    C3DXfoMatTpl<double> const * m_Matrix = nullptr;
    long m_Result;
    std::unique_ptr<Vector[]> m_Points;
    unsigned long m_Count = 0;
};

/// The point of the sphere in the direction of w. An offset from the center is taken for a point, which is right for a
/// center at the origin alone.
Vector SurfaceTarget(C3DBaseSphere const & sphere, Vector const & w)
{
    double u = 0;
    double v = 0;
    Vector target;
    sphere.ProjectOn(w, u, v);
    sphere.GetPos(u, v, target);
    return target;
}

/// The same, or the opposite point where w lies away from the middle of the primitive: where mean . w is below a limit.
Vector FacingTarget(C3DBaseSphere const & sphere, Vector const & w, Vector const & mean, double limit)
{
    Vector target = SurfaceTarget(sphere, w);
    return !math::detail::IsNegligible(w) && Dot(mean, w) < limit ? target.Negate() : target;
}

/// Moves a primitive step by step until `isDone`, and gives the way in world space. A pass asks `makeStep` for a step,
/// which may decline, takes it and lets `check` look at the points again.
/// \return the first failure of `check`: `translation` is then the way so far, in the space of the primitive
template <typename Check, typename IsDone, typename MakeStep>
long Correct(LocalPrimitive & primitive, Vector & translation, Check check, IsDone isDone, MakeStep makeStep)
{
    translation.SetNull();
    long result = check();
    for (int pass = 0; pass < k_MostPasses && result >= 0 && !isDone(); ++pass)
    {
        Vector step;
        if (!makeStep(pass, step) || !primitive.Move(step, translation))
        {
            break;
        }
        result = check();
    }
    if (result >= 0)
    {
        primitive.MapToWorld(translation);
    }
    return result;
}

} // namespace

long C3DBaseSphere::GetOnSurfaceError(Vector const & /*reference*/, Vector * points, I3DPose_QN * pose, Vector & error,
                                      unsigned long count)
{
    LocalPrimitive primitive(nullptr, points, pose, count);
    if (!primitive.IsReady())
    {
        return primitive.Result();
    }
    Vector const mean = primitive.Mean();
    unsigned long flags = 0;
    Vector worst;
    Vector direction;
    auto const check = [&] { return CheckPrimitiveOnSurface(pose, primitive.Points(), flags, worst, count); };
    auto const isDone = [&] { return flags == (math::detail::k_Touching | math::detail::k_NoContact) || count == 0; };
    auto const makeStep = [&](int pass, Vector & step)
    {
        step.Sub(FacingTarget(*this, worst, mean, math::detail::k_StandardTolerance<double>), worst);
        if (pass == 0)
        {
            direction = math::detail::UnitOrSame(step);
            return !math::detail::IsNegligible(step);
        }
        // Later steps go on in the first direction, and never back.
        double const s = Dot(step, direction);
        step.Mul(direction, s);
        return !(s < 0) && !math::detail::IsNegligible(step);
    };
    return Correct(primitive, error, check, isDone, makeStep);
}

long C3DBaseSphere::GetExclusionError(Vector const & /*reference*/, Vector * points, I3DPose_QN * pose, Vector & error,
                                      unsigned long count)
{
    LocalPrimitive primitive(nullptr, points, pose, count);
    if (!primitive.IsReady())
    {
        return primitive.Result();
    }
    Vector const mean = primitive.Mean();
    unsigned long flags = 0;
    Vector worst;
    Vector firstStep;
    auto const check = [&] { return CheckPrimitiveExclusion(pose, primitive.Points(), flags, worst, count); };
    auto const isDone = [&]
    { return (flags & (math::detail::k_Intersecting | math::detail::k_Inside)) == 0 || count == 0; };
    auto const makeStep = [&](int pass, Vector & step)
    {
        step.Negate(worst);
        if (pass > 0)
        {
            FindBetterTranslation(firstStep, step);
        }
        else
        {
            firstStep = step.Add(FacingTarget(*this, step, mean, -math::detail::k_StandardTolerance<double>));
        }
        return !math::detail::IsNegligible(step);
    };
    return Correct(primitive, error, check, isDone, makeStep);
}

long C3DBaseSphere::GetInclusionError(Vector const & reference, Vector * points, I3DPose_QN * pose, Vector & error,
                                      unsigned long count)
{
    LocalPrimitive primitive(&reference, points, pose, count);
    if (!primitive.IsReady())
    {
        return primitive.Result();
    }
    unsigned long flags = 0;
    long const result = IsPrimitiveLarger(primitive.Reference(), primitive.Points(), pose, flags, count);
    if (result < 0)
    {
        return result;
    }
    if ((flags & math::detail::k_Inside) == 0)
    {
        error.Negate(primitive.Reference());
        primitive.MapToWorld(error);
        return result;
    }
    Vector worst;
    double best = std::numeric_limits<double>::max();
    auto const check = [&] { return CheckPrimitiveInclusion(pose, primitive.Points(), count, flags, worst); };
    auto const isDone = [&] { return (flags & (math::detail::k_Inside | math::detail::k_Coincident)) != 0; };
    auto const makeStep = [&](int /*pass*/, Vector & step)
    {
        constexpr double closeEnough = 0.0001; // of the radius
        constexpr double stalled = 0.01;       // change from one step's length to the next
        step.Sub(SurfaceTarget(*this, worst), worst);
        double const length = step.GetLength();
        bool const isStalled = std::abs((length - best) / (length + best)) < stalled;
        best = length;
        return !(length < m_Radius * closeEnough) && !isStalled;
    };
    return Correct(primitive, error, check, isDone, makeStep);
}

long C3DBaseSphere::FindBetterTranslation(Vector const & direction, Vector & translation) const
{
    // The triangle of the center, the point and the point of the sphere ahead of it, by the law of cosines.
    double const angle = GetVctsAngle(direction, translation);
    double const length = translation.GetLength();
    double const sine = std::sin(angle) * length / m_Radius;
    double const atSphere = std::abs(sine) > 1 ? std::copysign(math::detail::k_HalfPi, sine) : std::asin(sine);
    double const square = m_Radius * m_Radius + length * length + 2 * m_Radius * length * std::cos(angle + atSphere);
    translation = direction;
    translation.SetLength(std::sqrt(square < 0 ? 0 : square));
    return S_OK;
}
