#include "math/vector4.h"

#include "math/matrix44.h"
#include "math/transformation_matrix.h"
#include "numeric/components.h"
#include "numeric/plain_record.h"
#include "numeric/text_form.h"

template <typename T>
int C3DVector4Tpl<T>::Normalize()
{
    T const length = GetLength();
    if (!(static_cast<double>(length) > math::detail::k_WidenedTolerance<T>))
    {
        return 0;
    }
    Mul(T(1) / length);
    return 1;
}

template <typename T>
int C3DVector4Tpl<T>::SetLength(T length)
{
    T const current = GetLength();
    if (!(static_cast<double>(current) >= math::detail::k_WidenedTolerance<T>))
    {
        return 0;
    }
    Mul(length / current);
    return 1;
}

template <typename T>
int C3DVector4Tpl<T>::SetProjection(C3DVector4Tpl const & onto)
{
    T const squaredLength = onto.GetSquaredLength();
    if (static_cast<double>(squaredLength) < math::detail::k_WidenedTolerance<T>)
    {
        return 0;
    }
    Mul(onto, math::detail::Dot(*this, onto) / squaredLength);
    return 1;
}

template <typename T>
C3DVector4Tpl<T> & C3DVector4Tpl<T>::SetMinimal(T limit)
{
    return Set(math::detail::RaiseMagnitudeToLimit(X, limit), math::detail::RaiseMagnitudeToLimit(Y, limit),
               math::detail::RaiseMagnitudeToLimit(Z, limit), math::detail::RaiseMagnitudeToLimit(W, limit));
}

template <typename T>
long C3DVector4Tpl<T>::Save(IStream * stream, int /*format*/) const
{
    return math::detail::SaveUnchecked(stream, GetArray(), 4);
}

template <typename T>
long C3DVector4Tpl<T>::Load(IStream * stream)
{
    return math::detail::LoadUnchecked(stream, GetArray(), 4);
}

template <typename T>
void C3DVector4Tpl<T>::Dump(wchar_t const * label, std::ostream & stream) const
{
    math::detail::DumpWithBlankLine(label, stream, *this);
}

template <typename T>
std::ostream & operator<<(std::ostream & stream, C3DVector4Tpl<T> const & vector)
{
    math::detail::WriteRow(stream, vector.GetArray(), 4);
    return stream;
}

template <typename T>
std::istream & operator>>(std::istream & stream, C3DVector4Tpl<T> & vector)
{
    math::detail::ReadNumbers<4>(stream, vector.GetArray());
    return stream;
}

static_assert(sizeof(C3DVector4Tpl<float>) == 4 * sizeof(float));
static_assert(sizeof(C3DVector4Tpl<double>) == 4 * sizeof(double));
static_assert(std::is_standard_layout_v<C3DVector4Tpl<double>> && std::is_trivially_copyable_v<C3DVector4Tpl<double>>);

template class C3DVector4Tpl<float>;
template class C3DVector4Tpl<double>;
template int AreAlmostEqual(C3DVector4Tpl<float> const &, C3DVector4Tpl<float> const &, float);
template int AreAlmostEqual(C3DVector4Tpl<double> const &, C3DVector4Tpl<double> const &, double);
template int AreOrthogonal(C3DVector4Tpl<float> const &, C3DVector4Tpl<float> const &, float);
template int AreOrthogonal(C3DVector4Tpl<double> const &, C3DVector4Tpl<double> const &, double);
template float GetDistance(C3DVector4Tpl<float> const &, C3DVector4Tpl<float> const &);
template double GetDistance(C3DVector4Tpl<double> const &, C3DVector4Tpl<double> const &);
template float GetSquaredDistance(C3DVector4Tpl<float> const &, C3DVector4Tpl<float> const &);
template double GetSquaredDistance(C3DVector4Tpl<double> const &, C3DVector4Tpl<double> const &);
template std::ostream & operator<<(std::ostream &, C3DVector4Tpl<float> const &);
template std::ostream & operator<<(std::ostream &, C3DVector4Tpl<double> const &);
template std::istream & operator>>(std::istream &, C3DVector4Tpl<float> &);
template std::istream & operator>>(std::istream &, C3DVector4Tpl<double> &);
