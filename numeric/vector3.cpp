#include "math/vector3.h"

#include "math/matrix33.h"
#include "math/matrix44.h"
#include "math/platform/qn_vector.h"
#include "math/platform/result.h"
#include "math/rotation_matrix.h"
#include "math/transformation_matrix.h"
#include "numeric/bspline.h"
#include "numeric/components.h"
#include "numeric/plain_record.h"
#include "numeric/text_form.h"

#include <algorithm>

template <typename T>
C3DVector3Tpl<T> const C3DVector3Tpl<T>::k_UnitVector(T(1), T(1), T(1));

template <typename T>
C3DVector3Tpl<T>::C3DVector3Tpl(QN_Vector const & vector)
    : X(static_cast<T>(vector.X)), Y(static_cast<T>(vector.Y)), Z(static_cast<T>(vector.Z))
{
}

template <typename T>
C3DVector3Tpl<T> & C3DVector3Tpl<T>::operator=(QN_Vector const & vector)
{
    *this = C3DVector3Tpl(vector);
    return *this;
}

template <typename T>
C3DVector3Tpl<T>::operator QN_Vector() const
{
    return {static_cast<float>(X), static_cast<float>(Y), static_cast<float>(Z)};
}

template <typename T>
void C3DVector3Tpl<T>::MulPointSkippingZeros(C3DVector3Tpl const & v, C3DMatrix44Tpl<T> const & m, T (&sum)[4])
{
    for (int column = 0; column < 4; ++column)
    {
        sum[column] = m.Get(3, column);
    }
    for (int row = 0; row < 3; ++row)
    {
        T const component = v.GetArray()[row];
        if (std::abs(component) > 0)
        {
            for (int column = 0; column < 4; ++column)
            {
                sum[column] += component * m.Get(row, column);
            }
        }
    }
}

template <typename T>
int C3DVector3Tpl<T>::SetOrthogonal(C3DVector3Tpl const & a, C3DVector3Tpl const & b)
{
    T const tolerance = math::detail::k_StandardTolerance<T>;
    SetCross(a, b);
    if (std::abs(X) <= tolerance && std::abs(Y) <= tolerance && std::abs(Z) <= tolerance)
    {
        return 0;
    }
    SetCross(a);
    return 1;
}

template <typename T>
int C3DVector3Tpl<T>::SetOrthoProj(C3DVector3Tpl const & a, C3DVector3Tpl const & b)
{
    if (SetOrthogonal(a, b) == 0)
    {
        return 0;
    }
    Mul(math::detail::Dot(*this, b) / GetSquaredLength());
    return 1;
}

template <typename T>
int C3DVector3Tpl<T>::SetProjection(C3DVector3Tpl const & onto)
{
    T const squaredLength = onto.GetSquaredLength();
    if (squaredLength < math::detail::k_StandardTolerance<T>)
    {
        return 0;
    }
    Mul(onto, math::detail::Dot(*this, onto) / squaredLength);
    return 1;
}

template <typename T>
C3DVector3Tpl<T> & C3DVector3Tpl<T>::SetMirror(C3DVector3Tpl const & p, C3DVector3Tpl const & c)
{
    Set(c);
    Mul(T(2));
    return Sub(p);
}

template <typename T>
C3DVector3Tpl<T> & C3DVector3Tpl<T>::SetMean(C3DVector3Tpl const * points, unsigned long count)
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
T C3DVector3Tpl<T>::LinearPositionUnInterpolate(C3DVector3Tpl const & a, C3DVector3Tpl const & b, T epsilon) const
{
    C3DVector3Tpl const span = C3DVector3Tpl().Sub(b, a);
    int const axis = span.GetIndexOfMaxComponent(1);
    if (std::abs(span.Get(axis)) < epsilon)
    {
        return 0;
    }
    return (Get(axis) - a.Get(axis)) / span.Get(axis);
}

namespace
{

template <typename T>
C3DVector3Tpl<T> WeightedSum(math::detail::BsplineWeights<T> const & w, C3DVector3Tpl<T> const & p0,
                             C3DVector3Tpl<T> const & p1, C3DVector3Tpl<T> const & p2, C3DVector3Tpl<T> const & p3)
{
    return {p0.X * w.w0 + p1.X * w.w1 + p2.X * w.w2 + p3.X * w.w3,
            p0.Y * w.w0 + p1.Y * w.w1 + p2.Y * w.w2 + p3.Y * w.w3,
            p0.Z * w.w0 + p1.Z * w.w1 + p2.Z * w.w2 + p3.Z * w.w3};
}

/// The index of the largest |component|; a tie goes to the lower index.
template <typename T>
int FirstIndexOfLargestMagnitude(C3DVector3Tpl<T> const & v)
{
    int index = 0;
    for (int i = 1; i < 3; ++i)
    {
        if (std::abs(v.Get(i)) > std::abs(v.Get(index)))
        {
            index = i;
        }
    }
    return index;
}

/// The two coordinates on which a decomposition in the basis a, b is solved.
struct CoordinatePair
{
    int r;
    int c;
};

/// The first coordinate is where the larger of the basis vectors is largest, the second where the other one is: the
/// largest of its two remaining ones, if both are largest in the same coordinate.
template <typename T>
CoordinatePair ChooseCoordinates(C3DVector3Tpl<T> const & a, int largestOfA, C3DVector3Tpl<T> const & b, int largestOfB)
{
    bool const bLeads = std::abs(b.Get(largestOfB)) > std::abs(a.Get(largestOfA));
    CoordinatePair pair = bLeads ? CoordinatePair{largestOfB, largestOfA} : CoordinatePair{largestOfA, largestOfB};
    if (pair.r == pair.c)
    {
        C3DVector3Tpl<T> const & other = bLeads ? a : b;
        int const next = (pair.r + 1) % 3;
        int const afterNext = (pair.r + 2) % 3;
        pair.c = std::abs(other.Get(next)) > std::abs(other.Get(afterNext)) ? next : afterNext;
    }
    return pair;
}

} // namespace

template <typename T>
C3DVector3Tpl<T> & C3DVector3Tpl<T>::BsplinePositionInterpolate(C3DVector3Tpl const & p0, C3DVector3Tpl const & p1,
                                                                C3DVector3Tpl const & p2, C3DVector3Tpl const & p3, T t)
{
    return Mul(WeightedSum(math::detail::BsplinePositionWeights(t), p0, p1, p2, p3),
               math::detail::k_BsplinePositionFactor<T>);
}

template <typename T>
C3DVector3Tpl<T> & C3DVector3Tpl<T>::BsplineVectorInterpolate(C3DVector3Tpl const & p0, C3DVector3Tpl const & p1,
                                                              C3DVector3Tpl const & p2, C3DVector3Tpl const & p3, T t)
{
    return *this = WeightedSum(math::detail::BsplineVectorWeights(t), p0, p1, p2, p3);
}

template <typename T>
int C3DVector3Tpl<T>::DecomposeIn2Basis(C3DVector3Tpl const & a, C3DVector3Tpl const & b, T & s, T & t, T epsilon)
{
    int const largestOfA = FirstIndexOfLargestMagnitude(a);
    int const largestOfB = FirstIndexOfLargestMagnitude(b);
    auto const [r, c] = ChooseCoordinates(a, largestOfA, b, largestOfB);
    s = 0;
    t = 0;
    if (std::abs(a.Get(largestOfA)) < epsilon && std::abs(b.Get(largestOfB)) < epsilon)
    {
        return std::abs(X) <= epsilon && std::abs(Y) <= epsilon && std::abs(Z) <= epsilon;
    }
    T const determinant = a.Get(r) * b.Get(c) - a.Get(c) * b.Get(r);
    if (std::abs(determinant) >= epsilon)
    {
        T const reciprocal = T(1) / determinant;
        s = (Get(r) * b.Get(c) - Get(c) * b.Get(r)) * reciprocal;
        t = (Get(c) * a.Get(r) - Get(r) * a.Get(c)) * reciprocal;
        return 1;
    }
    // Parallel. The test is against the line of a even where a is the null vector and b the useful one: it then passes.
    if (C3DVector3Tpl().SetCross(*this, a).GetSquaredLength() >= epsilon * epsilon)
    {
        return 0;
    }
    if (std::abs(a.Get(r)) > std::abs(b.Get(r)))
    {
        s = Get(r) / a.Get(r);
    }
    else
    {
        t = Get(r) / b.Get(r);
    }
    return 1;
}

template <typename T>
T C3DVector3Tpl<T>::GetMaxComponent(int magnitudes) const
{
    return magnitudes == 0 ? std::max({X, Y, Z}) : std::max({std::abs(X), std::abs(Y), std::abs(Z)});
}

template <typename T>
T C3DVector3Tpl<T>::GetMinComponent(int magnitudes) const
{
    return magnitudes == 0 ? std::min({X, Y, Z}) : std::min({std::abs(X), std::abs(Y), std::abs(Z)});
}

template <typename T>
int C3DVector3Tpl<T>::GetIndexOfMaxComponent(int magnitudes) const
{
    C3DVector3Tpl const v = magnitudes == 0 ? *this : C3DVector3Tpl(std::abs(X), std::abs(Y), std::abs(Z));
    if (v.X > v.Y)
    {
        return v.X > v.Z ? 0 : 2;
    }
    return v.Y > v.Z ? 1 : 2;
}

template <typename T>
int C3DVector3Tpl<T>::GetIndexOfMinComponent(int magnitudes) const
{
    C3DVector3Tpl const v = magnitudes == 0 ? *this : C3DVector3Tpl(std::abs(X), std::abs(Y), std::abs(Z));
    if (v.X < v.Y)
    {
        return v.X < v.Z ? 0 : 2;
    }
    return v.Y < v.Z ? 1 : 2;
}

template <typename T>
C3DVector3Tpl<T> & C3DVector3Tpl<T>::SetMinimal(C3DVector3Tpl const & limit, int magnitudes)
{
    return Set(math::detail::SetMinimalComponent(X, limit.X, magnitudes),
               math::detail::SetMinimalComponent(Y, limit.Y, magnitudes),
               math::detail::SetMinimalComponent(Z, limit.Z, magnitudes));
}

template <typename T>
long C3DVector3Tpl<T>::Save(IStream * stream, int /*format*/) const
{
    if (stream == nullptr)
    {
        return E_INVALIDARG;
    }
    CKVStreamHelper helper(stream);
    long const result = helper.PutUInt8(0);
    return result < 0 ? result : math::detail::PutScalars(helper, GetArray(), 3);
}

template <typename T>
long C3DVector3Tpl<T>::Load(IStream * stream)
{
    if (stream == nullptr)
    {
        return E_INVALIDARG;
    }
    CKVStreamHelper helper(stream);
    unsigned char version = 0;
    long const result = helper.GetUInt8(&version);
    return result < 0 ? result : math::detail::GetScalars(helper, GetArray(), 3);
}

template <typename T>
void C3DVector3Tpl<T>::Dump(wchar_t const * label, std::ostream & stream) const
{
    math::detail::DumpWithBlankLine(label, stream, *this);
}

template <typename T>
std::ostream & operator<<(std::ostream & stream, C3DVector3Tpl<T> const & vector)
{
    math::detail::WriteRow(stream, vector.GetArray(), 3);
    return stream;
}

template <typename T>
std::istream & operator>>(std::istream & stream, C3DVector3Tpl<T> & vector)
{
    math::detail::ReadNumbers<3>(stream, vector.GetArray());
    return stream;
}

static_assert(sizeof(C3DVector3Tpl<float>) == 3 * sizeof(float));
static_assert(sizeof(C3DVector3Tpl<double>) == 3 * sizeof(double));
static_assert(std::is_standard_layout_v<C3DVector3Tpl<double>> && std::is_trivially_copyable_v<C3DVector3Tpl<double>>);

template class C3DVector3Tpl<float>;
template class C3DVector3Tpl<double>;
template int AreAlmostEqual(C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &, float);
template int AreAlmostEqual(C3DVector3Tpl<double> const &, C3DVector3Tpl<double> const &, double);
template float GetDistance(C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &);
template double GetDistance(C3DVector3Tpl<double> const &, C3DVector3Tpl<double> const &);
template float GetSquaredDistance(C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &);
template double GetSquaredDistance(C3DVector3Tpl<double> const &, C3DVector3Tpl<double> const &);
template std::ostream & operator<<(std::ostream &, C3DVector3Tpl<float> const &);
template std::ostream & operator<<(std::ostream &, C3DVector3Tpl<double> const &);
template std::istream & operator>>(std::istream &, C3DVector3Tpl<float> &);
template std::istream & operator>>(std::istream &, C3DVector3Tpl<double> &);
