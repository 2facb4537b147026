#include "math/vector2.h"

#include "math/rotation_matrix.h"
#include "math/vector3.h"
#include "numeric/bspline.h"
#include "numeric/components.h"
#include "numeric/plain_record.h"
#include "numeric/text_form.h"

#include <algorithm>

template <typename T>
int C3DVector2Tpl<T>::SetProjection(C3DVector2Tpl const & onto)
{
    T const squaredLength = onto.GetSquaredLength();
    if (static_cast<double>(squaredLength) < math::detail::k_StandardTolerance<double>)
    {
        return 0;
    }
    Mul(onto, math::detail::Dot(*this, onto) / squaredLength);
    return 1;
}

template <typename T>
C3DVector2Tpl<T> & C3DVector2Tpl<T>::SetMirror(C3DVector2Tpl const & p, C3DVector2Tpl const & c)
{
    Set(c);
    Mul(T(2));
    return Sub(p);
}

template <typename T>
C3DVector2Tpl<T> & C3DVector2Tpl<T>::SetMean(C3DVector2Tpl const * points, unsigned long count)
{
    if (points == nullptr)
    {
        return *this;
    }
    SetNull();
    for (unsigned long i = 0; i < count; ++i)
    {
        Add(points[i]);
    }
    return Mul(T(1) / static_cast<T>(count));
}

template <typename T>
T C3DVector2Tpl<T>::LinearPositionUnInterpolate(C3DVector2Tpl const & a, C3DVector2Tpl const & b, T epsilon) const
{
    C3DVector2Tpl const span = C3DVector2Tpl().Sub(b, a);
    if (std::abs(span.X) > epsilon && std::abs(span.X) > std::abs(span.Y))
    {
        return (X - a.X) / span.X;
    }
    return std::abs(span.Y) > epsilon ? (Y - a.Y) / span.Y : T(0);
}

namespace
{

template <typename T>
C3DVector2Tpl<T> WeightedSum(math::detail::BsplineWeights<T> const & w, C3DVector2Tpl<T> const & p0,
                             C3DVector2Tpl<T> const & p1, C3DVector2Tpl<T> const & p2, C3DVector2Tpl<T> const & p3)
{
    return {p0.X * w.w0 + p1.X * w.w1 + p2.X * w.w2 + p3.X * w.w3,
            p0.Y * w.w0 + p1.Y * w.w1 + p2.Y * w.w2 + p3.Y * w.w3};
}

/// One coordinate of a target that lies on the common line of a and b: a multiple of whichever is longer there.
template <typename T>
void DecomposeOnLine(T target, T a, T b, T & s, T & t)
{
    if (std::abs(a) > std::abs(b))
    {
        s = target / a;
    }
    else
    {
        t = target / b;
    }
}

/// For Dump alone: the text form of this class is not part of the interface.
template <typename T>
std::ostream & operator<<(std::ostream & stream, C3DVector2Tpl<T> const & vector)
{
    math::detail::WriteRow(stream, vector.GetArray(), 2);
    return stream;
}

} // namespace

template <typename T>
C3DVector2Tpl<T> & C3DVector2Tpl<T>::BsplinePositionInterpolate(C3DVector2Tpl const & p0, C3DVector2Tpl const & p1,
                                                                C3DVector2Tpl const & p2, C3DVector2Tpl const & p3, T t)
{
    return Mul(WeightedSum(math::detail::BsplinePositionWeights(t), p0, p1, p2, p3),
               math::detail::k_BsplinePositionFactor<T>);
}

template <typename T>
C3DVector2Tpl<T> & C3DVector2Tpl<T>::BsplineVectorInterpolate(C3DVector2Tpl const & p0, C3DVector2Tpl const & p1,
                                                              C3DVector2Tpl const & p2, C3DVector2Tpl const & p3, T t)
{
    return *this = WeightedSum(math::detail::BsplineVectorWeights(t), p0, p1, p2, p3);
}

template <typename T>
int C3DVector2Tpl<T>::IsBetween(C3DVector2Tpl const & a, C3DVector2Tpl const & b, T epsilon) const
{
    C3DVector2Tpl const d = C3DVector2Tpl().Sub(b, a);
    bool const alongX = std::abs(d.X) > std::abs(d.Y);
    T const span = alongX ? d.X : d.Y;
    T const offset = alongX ? X - a.X : Y - a.Y;
    if (span > 0)
    {
        return -epsilon < offset && offset < span + epsilon;
    }
    return span - epsilon < offset && offset < epsilon;
}

template <typename T>
T C3DVector2Tpl<T>::GetSquaredDistanceFromLine(C3DVector2Tpl const & base, C3DVector2Tpl const & direction,
                                               T epsilon) const
{
    C3DVector2Tpl offset = C3DVector2Tpl().Sub(*this, base);
    T const squaredLength = direction.GetSquaredLength();
    if (squaredLength >= epsilon)
    {
        offset.Sub(C3DVector2Tpl().Mul(direction, math::detail::Dot(offset, direction) / squaredLength));
    }
    return offset.GetSquaredLength();
}

template <typename T>
void C3DVector2Tpl<T>::GetNearestPointToLine(C3DVector2Tpl const & base, C3DVector2Tpl const & direction,
                                             C3DVector2Tpl & result, T /*epsilon*/) const
{
    C3DVector2Tpl const offset = C3DVector2Tpl().Sub(*this, base);
    result.Mul(direction, math::detail::Dot(direction, offset) / direction.GetSquaredLength());
}

template <typename T>
int C3DVector2Tpl<T>::DecomposeIn2Basis(C3DVector2Tpl const & a, C3DVector2Tpl const & b, T & s, T & t, T epsilon) const
{
    s = 0;
    t = 0;
    T const determinant = a.X * b.Y - b.X * a.Y;
    if (std::abs(determinant) >= epsilon)
    {
        T const reciprocal = T(1) / determinant;
        s = (b.Y * X - b.X * Y) * reciprocal;
        t = (a.X * Y - a.Y * X) * reciprocal;
        return 1;
    }
    if (std::abs(Y * a.X - X * a.Y) >= epsilon)
    {
        return 0;
    }
    T const largestX = std::max(std::abs(a.X), std::abs(b.X));
    T const largestY = std::max(std::abs(a.Y), std::abs(b.Y));
    if (largestX > largestY && largestX >= epsilon)
    {
        DecomposeOnLine(X, a.X, b.X, s, t);
        return 1;
    }
    if (!(largestX > largestY) && largestY >= epsilon)
    {
        DecomposeOnLine(Y, a.Y, b.Y, s, t);
        return 1;
    }
    return 0;
}

template <typename T>
int C3DVector2Tpl<T>::SetIntersection(C3DVector2Tpl const & p, C3DVector2Tpl const & d, C3DVector2Tpl const & q,
                                      C3DVector2Tpl const & e, T epsilon)
{
    T s;
    T t;
    if (C3DVector2Tpl().Sub(p, q).DecomposeIn2Basis(d, e, s, t, epsilon) == 0)
    {
        return 0;
    }
    Add(q, C3DVector2Tpl().Mul(t, e));
    return 1;
}

template <typename T>
T C3DVector2Tpl<T>::GetMaxComponent(int magnitudes) const
{
    return magnitudes == 0 ? std::max(X, Y) : std::max(std::abs(X), std::abs(Y));
}

template <typename T>
T C3DVector2Tpl<T>::GetMinComponent(int magnitudes) const
{
    return magnitudes == 0 ? std::min(X, Y) : std::min(std::abs(X), std::abs(Y));
}

template <typename T>
int C3DVector2Tpl<T>::GetIndexOfMaxComponent(int magnitudes) const
{
    return (magnitudes == 0 ? X > Y : std::abs(X) > std::abs(Y)) ? 0 : 1;
}

template <typename T>
int C3DVector2Tpl<T>::GetIndexOfMinComponent(int magnitudes) const
{
    return (magnitudes == 0 ? X < Y : std::abs(X) < std::abs(Y)) ? 0 : 1;
}

template <typename T>
C3DVector2Tpl<T> & C3DVector2Tpl<T>::SetMinimal(C3DVector2Tpl const & limit, int magnitudes)
{
    return Set(math::detail::SetMinimalComponent(X, limit.X, magnitudes),
               math::detail::SetMinimalComponent(Y, limit.Y, magnitudes));
}

template <typename T>
long C3DVector2Tpl<T>::Save(IStream * stream, int /*format*/) const
{
    return math::detail::SaveUnchecked(stream, GetArray(), 2);
}

template <typename T>
long C3DVector2Tpl<T>::Load(IStream * stream)
{
    return math::detail::LoadUnchecked(stream, GetArray(), 2);
}

template <typename T>
void C3DVector2Tpl<T>::Dump(wchar_t const * label, std::ostream & stream) const
{
    math::detail::WriteLabel(label, stream);
    stream << *this << "\n \n";
}

static_assert(sizeof(C3DVector2Tpl<float>) == 2 * sizeof(float));
static_assert(sizeof(C3DVector2Tpl<double>) == 2 * sizeof(double));
static_assert(std::is_standard_layout_v<C3DVector2Tpl<double>> && std::is_trivially_copyable_v<C3DVector2Tpl<double>>);

template class C3DVector2Tpl<float>;
template class C3DVector2Tpl<double>;
template int AreAlmostEqual(C3DVector2Tpl<float> const &, C3DVector2Tpl<float> const &, float);
template int AreAlmostEqual(C3DVector2Tpl<double> const &, C3DVector2Tpl<double> const &, double);
template float GetDistance(C3DVector2Tpl<float> const &, C3DVector2Tpl<float> const &);
template double GetDistance(C3DVector2Tpl<double> const &, C3DVector2Tpl<double> const &);
template float GetSquaredDistance(C3DVector2Tpl<float> const &, C3DVector2Tpl<float> const &);
template double GetSquaredDistance(C3DVector2Tpl<double> const &, C3DVector2Tpl<double> const &);
