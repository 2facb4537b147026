#include "math/matrix33.h"

#include "math/matrix44.h"
#include "matrix/elements.h"
#include "matrix/inverse33.h"
#include "matrix/jacobi.h"
#include "numeric/plain_record.h"
#include "numeric/text_form.h"

namespace
{

template <typename T>
void Widen(T const (*const a)[3], double (&wide)[3][3])
{
    for (int r = 0; r < 3; ++r)
    {
        for (int c = 0; c < 3; ++c)
        {
            wide[r][c] = static_cast<double>(a[r][c]);
        }
    }
}

} // namespace

template <typename T>
C3DMatrix33Tpl<T>::C3DMatrix33Tpl(float (&array)[3][3])
{
    for (int r = 0; r < 3; ++r)
    {
        SetRow(r, static_cast<T>(array[r][0]), static_cast<T>(array[r][1]), static_cast<T>(array[r][2]));
    }
}

template <typename T>
C3DMatrix33Tpl<T> & C3DMatrix33Tpl<T>::operator=(float (&array)[4][4])
{
    for (int r = 0; r < 3; ++r)
    {
        SetRow(r, static_cast<T>(array[r][0]), static_cast<T>(array[r][1]), static_cast<T>(array[r][2]));
    }
    return *this;
}

template <typename T>
bool C3DMatrix33Tpl<T>::operator==(C3DMatrix33Tpl const & other) const
{
    return math::detail::ElementsAreEqual(GetArray(), other.GetArray(), 9);
}

template <typename T>
int C3DMatrix33Tpl<T>::IsNull(T epsilon) const
{
    return math::detail::ElementsAreNull(GetArray(), 9, epsilon);
}

template <typename T>
bool C3DMatrix33Tpl<T>::IsIdentity(T epsilon) const
{
    return math::detail::IsIdentity(m_Elements, epsilon);
}

template <typename T>
bool C3DMatrix33Tpl<T>::IsDiagonal(T epsilon) const
{
    return math::detail::IsDiagonal(m_Elements, epsilon);
}

template <typename T>
int C3DMatrix33Tpl<T>::IsSymmetric(T epsilon) const
{
    for (int r = 0; r < 3; ++r)
    {
        for (int c = 0; c < 3; ++c)
        {
            if (std::abs(m_Elements[r][c] - m_Elements[c][r]) >= epsilon)
            {
                return 0;
            }
        }
    }
    return 1;
}

template <typename T>
int C3DMatrix33Tpl<T>::IsSingular(T epsilon) const
{
    T det;
    T size;
    ComputeDetAndDetSize(m_Elements, det, size);
    if (size == 0)
    {
        return 1;
    }
    return !(std::abs(det / size) >= epsilon);
}

template <typename T>
C3DMatrix33Tpl<T> & C3DMatrix33Tpl<T>::Adjoint(C3DMatrix33Tpl const & a)
{
    T adjugate[3][3];
    ComputeAdjoint(a.m_Elements, adjugate);
    return Set(adjugate);
}

template <typename T>
int C3DMatrix33Tpl<T>::Invert(C3DMatrix33Tpl const & a)
{
    return ComputeInverse(a.m_Elements, m_Elements, 0, math::detail::k_StandardTolerance<T>);
}

template <typename T>
int C3DMatrix33Tpl<T>::TransposeInverse(C3DMatrix33Tpl const & a)
{
    return ComputeInverse(a.m_Elements, m_Elements, 1, math::detail::k_StandardTolerance<T>);
}

template <typename T>
int C3DMatrix33Tpl<T>::GetEigenVectors(C3DMatrix33Tpl & vectors, C3DVector3Tpl<T> & values, T epsilon) const
{
    return IsSymmetric(epsilon) != 0 ? ComputeEigen(m_Elements, vectors.m_Elements, values, epsilon) : 0;
}

template <typename T>
void C3DMatrix33Tpl<T>::ComputeDetAndDetSize(T const (*const a)[3], T & det, T & size)
{
    math::detail::SumTripleProducts(a, det, size);
}

template <typename T>
void C3DMatrix33Tpl<T>::ComputeAdjoint(T const (*const a)[3], T (*const out)[3])
{
    math::detail::VisitAdjugate(a, [out](int r, int c, T value) { out[r][c] = value; });
}

template <typename T>
int C3DMatrix33Tpl<T>::ComputeInverse(T const (*const a)[3], T (*const out)[3], int transposed, T epsilon) const
{
    double const wide[3][3] = {{double(a[0][0]), double(a[0][1]), double(a[0][2])},
                               {double(a[1][0]), double(a[1][1]), double(a[1][2])},
                               {double(a[2][0]), double(a[2][1]), double(a[2][2])}};
    auto const limit = static_cast<double>(epsilon);
    if (transposed == 0)
    {
        return math::detail::VisitInverse(wide, limit,
                                          [out](int r, int c, double value) { out[r][c] = static_cast<T>(value); });
    }
    return math::detail::VisitInverse(wide, limit,
                                      [out](int r, int c, double value) { out[c][r] = static_cast<T>(value); });
}

template <typename T>
int C3DMatrix33Tpl<T>::ComputeEigen(T const (*const a)[3], T (*const vectors)[3], C3DVector3Tpl<T> & values,
                                    T epsilon) const
{
    double wide[3][3];
    Widen(a, wide);
    double const base[3] = {static_cast<double>(values.X), static_cast<double>(values.Y),
                            static_cast<double>(values.Z)};
    math::detail::EigenDecomposition eigen;
    int const converged = math::detail::DecomposeSymmetric(wide, base, static_cast<double>(epsilon), eigen);
    for (int i = 0; i < 3; ++i)
    {
        for (int j = 0; j < 3; ++j)
        {
            vectors[i][j] = static_cast<T>(eigen.vectors[i][j]);
        }
    }
    values.Set(static_cast<T>(eigen.values[0]), static_cast<T>(eigen.values[1]), static_cast<T>(eigen.values[2]));
    return converged;
}

template <typename T>
long C3DMatrix33Tpl<T>::Save(IStream * stream, int /*format*/) const
{
    return math::detail::SaveUnchecked(stream, GetArray(), 9);
}

template <typename T>
long C3DMatrix33Tpl<T>::Load(IStream * stream)
{
    return math::detail::LoadUnchecked(stream, GetArray(), 9);
}

template <typename T>
void C3DMatrix33Tpl<T>::Dump(wchar_t const * label, std::ostream & stream) const
{
    math::detail::DumpWithBlankLine(label, stream, *this);
}

template <typename T>
int AreAlmostEqual(C3DMatrix33Tpl<T> const & a, C3DMatrix33Tpl<T> const & b, std::type_identity_t<T> epsilon)
{
    return math::detail::ElementsAreAlmostEqual(a.GetArray(), b.GetArray(), 9, epsilon);
}

template <typename T>
std::ostream & operator<<(std::ostream & stream, C3DMatrix33Tpl<T> const & matrix)
{
    math::detail::WriteRows(stream, matrix.GetArray(), 3);
    return stream;
}

template <typename T>
std::istream & operator>>(std::istream & stream, C3DMatrix33Tpl<T> & matrix)
{
    math::detail::ReadNumbers<9>(stream, matrix.GetArray());
    return stream;
}

static_assert(sizeof(C3DMatrix33Tpl<float>) == 9 * sizeof(float));
static_assert(sizeof(C3DMatrix33Tpl<double>) == 9 * sizeof(double));
static_assert(std::is_standard_layout_v<C3DMatrix33Tpl<double>> &&
              std::is_trivially_copyable_v<C3DMatrix33Tpl<double>>);

template class C3DMatrix33Tpl<float>;
template class C3DMatrix33Tpl<double>;
template int AreAlmostEqual(C3DMatrix33Tpl<float> const &, C3DMatrix33Tpl<float> const &, float);
template int AreAlmostEqual(C3DMatrix33Tpl<double> const &, C3DMatrix33Tpl<double> const &, double);
template std::ostream & operator<<(std::ostream &, C3DMatrix33Tpl<float> const &);
template std::ostream & operator<<(std::ostream &, C3DMatrix33Tpl<double> const &);
template std::istream & operator>>(std::istream &, C3DMatrix33Tpl<float> &);
template std::istream & operator>>(std::istream &, C3DMatrix33Tpl<double> &);
