#include "math/matrix44.h"

#include "math/detail/determinant4.h"
#include "matrix/elements.h"
#include "matrix/inverse44.h"
#include "numeric/plain_record.h"
#include "numeric/text_form.h"

namespace
{

template <typename T, typename Source>
void Convert(Source const (*const source)[4], T (*const target)[4])
{
    for (int r = 0; r < 4; ++r)
    {
        for (int c = 0; c < 4; ++c)
        {
            target[r][c] = static_cast<T>(source[r][c]);
        }
    }
}

template <typename T, typename Source>
C3DMatrix44Tpl<T> & SetFrom(C3DMatrix44Tpl<Source> const & source, C3DMatrix44Tpl<T> & target)
{
    for (int i = 0; i < 16; ++i)
    {
        target.GetArray()[i] = static_cast<T>(source.GetArray()[i]);
    }
    return target.SetMaskInfo(source.GetMaskInfo());
}

} // namespace

template <typename T>
C3DMatrix44Tpl<T>::C3DMatrix44Tpl(float (&array)[4][4])
{
    Convert(array, m_Elements);
}

template <typename T>
C3DMatrix44Tpl<T> & C3DMatrix44Tpl<T>::operator=(float (&array)[4][4])
{
    Convert(array, m_Elements);
    return *this;
}

template <typename T>
C3DMatrix44Tpl<T> & C3DMatrix44Tpl<T>::SetFromFloat(C3DMatrix44Tpl<float> const & m)
{
    return SetFrom(m, *this);
}

template <typename T>
C3DMatrix44Tpl<T> & C3DMatrix44Tpl<T>::SetFromDouble(C3DMatrix44Tpl<double> const & m)
{
    return SetFrom(m, *this);
}

template <typename T>
bool C3DMatrix44Tpl<T>::operator==(C3DMatrix44Tpl const & other) const
{
    return math::detail::ElementsAreEqual(GetArray(), other.GetArray(), 16);
}

template <typename T>
int C3DMatrix44Tpl<T>::IsNull(T epsilon) const
{
    return math::detail::ElementsAreNull(GetArray(), 16, epsilon);
}

template <typename T>
bool C3DMatrix44Tpl<T>::IsDiagonal(T epsilon) const
{
    return math::detail::IsDiagonal(m_Elements, epsilon);
}

template <typename T>
bool C3DMatrix44Tpl<T>::IsExactlyIdentity() const
{
    for (int r = 0; r < 4; ++r)
    {
        for (int c = 0; c < 4; ++c)
        {
            if (!(m_Elements[r][c] == T(r == c)))
            {
                return false;
            }
        }
    }
    return true;
}

template <typename T>
bool C3DMatrix44Tpl<T>::IsIdentity(T epsilon) const
{
    return epsilon == 0 ? IsExactlyIdentity() : math::detail::IsIdentity(m_Elements, epsilon);
}

template <typename T>
int C3DMatrix44Tpl<T>::IsSingular(T /*epsilon*/) const
{
    T const det = GetDet();
    return !(det < 0 || det > 0);
}

template <typename T>
T C3DMatrix44Tpl<T>::GetDet() const
{
    return math::detail::Determinant(m_Elements);
}

template <typename T>
T C3DMatrix44Tpl<T>::GetDet(int r, int c) const
{
    return C3DMatrix33Tpl<T>(r, c, *this).GetDet();
}

template <typename T>
int C3DMatrix44Tpl<T>::Invert(C3DMatrix44Tpl const & a)
{
    return ComputeInverse(a.m_Elements, m_Elements, 0);
}

template <typename T>
int C3DMatrix44Tpl<T>::TransposeInverse(C3DMatrix44Tpl const & a)
{
    return ComputeInverse(a.m_Elements, m_Elements, 1);
}

template <typename T>
int C3DMatrix44Tpl<T>::ComputeInverse(T const (*const a)[4], T (*const out)[4], int transposed)
{
    return math::detail::Invert(a, out, transposed != 0);
}

template <typename T>
long C3DMatrix44Tpl<T>::Save(IStream * stream, int /*format*/) const
{
    return math::detail::SaveUnchecked(stream, GetArray(), 16);
}

template <typename T>
long C3DMatrix44Tpl<T>::Load(IStream * stream)
{
    return math::detail::LoadUnchecked(stream, GetArray(), 16);
}

template <typename T>
void C3DMatrix44Tpl<T>::Dump(wchar_t const * label, std::ostream & stream) const
{
    math::detail::DumpWithBlankLine(label, stream, *this);
}

template <typename T>
int AreAlmostEqual(C3DMatrix44Tpl<T> const & a, C3DMatrix44Tpl<T> const & b, std::type_identity_t<T> epsilon)
{
    return math::detail::ElementsAreAlmostEqual(a.GetArray(), b.GetArray(), 16, epsilon);
}

template <typename T>
std::ostream & operator<<(std::ostream & stream, C3DMatrix44Tpl<T> const & matrix)
{
    math::detail::WriteRows(stream, matrix.GetArray(), 4);
    return stream;
}

template <typename T>
std::istream & operator>>(std::istream & stream, C3DMatrix44Tpl<T> & matrix)
{
    math::detail::ReadNumbers<16>(stream, matrix.GetArray());
    return stream;
}

static_assert(sizeof(C3DMatrix44Tpl<float>) == 17 * sizeof(float));
static_assert(sizeof(C3DMatrix44Tpl<double>) == 17 * sizeof(double));
static_assert(std::is_standard_layout_v<C3DMatrix44Tpl<double>> &&
              std::is_trivially_copyable_v<C3DMatrix44Tpl<double>>);

template class C3DMatrix44Tpl<float>;
template class C3DMatrix44Tpl<double>;
template int AreAlmostEqual(C3DMatrix44Tpl<float> const &, C3DMatrix44Tpl<float> const &, float);
template int AreAlmostEqual(C3DMatrix44Tpl<double> const &, C3DMatrix44Tpl<double> const &, double);
template std::ostream & operator<<(std::ostream &, C3DMatrix44Tpl<float> const &);
template std::ostream & operator<<(std::ostream &, C3DMatrix44Tpl<double> const &);
template std::istream & operator>>(std::istream &, C3DMatrix44Tpl<float> &);
template std::istream & operator>>(std::istream &, C3DMatrix44Tpl<double> &);
