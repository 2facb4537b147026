#include "math/rotation_matrix.h"

#include "numeric/axis.h"

#include <cmath>
#include <istream>
#include <ostream>

template <typename T>
C3DRotMatTpl<T> & C3DRotMatTpl<T>::Set(tagE3DAXISTYPE axis, T angle)
{
    SetIdentity();
    if (!math::detail::NamesAxis(axis))
    {
        return *this;
    }
    T const c = std::cos(angle);
    T const s = std::sin(angle);
    int const next = (axis + 1) % 3;
    int const afterNext = (axis + 2) % 3;
    return Set(next, next, c).Set(afterNext, afterNext, c).Set(next, afterNext, s).Set(afterNext, next, -s);
}

template <typename T>
int AreAlmostEqual(C3DRotMatTpl<T> const & a, C3DRotMatTpl<T> const & b, std::type_identity_t<T> epsilon)
{
    return AreAlmostEqual(a.GetMatrix(), b.GetMatrix(), epsilon);
}

template <typename T>
std::ostream & operator<<(std::ostream & stream, C3DRotMatTpl<T> const & matrix)
{
    return stream << matrix.GetMatrix();
}

template <typename T>
std::istream & operator>>(std::istream & stream, C3DRotMatTpl<T> & matrix)
{
    return stream >> static_cast<C3DMatrix33Tpl<T> &>(matrix);
}

static_assert(sizeof(C3DRotMatTpl<float>) == 9 * sizeof(float));
static_assert(sizeof(C3DRotMatTpl<double>) == 9 * sizeof(double));
static_assert(std::is_standard_layout_v<C3DRotMatTpl<double>> && std::is_trivially_copyable_v<C3DRotMatTpl<double>>);

template class C3DRotMatTpl<float>;
template class C3DRotMatTpl<double>;
template int AreAlmostEqual(C3DRotMatTpl<float> const &, C3DRotMatTpl<float> const &, float);
template int AreAlmostEqual(C3DRotMatTpl<double> const &, C3DRotMatTpl<double> const &, double);
template std::ostream & operator<<(std::ostream &, C3DRotMatTpl<float> const &);
template std::ostream & operator<<(std::ostream &, C3DRotMatTpl<double> const &);
template std::istream & operator>>(std::istream &, C3DRotMatTpl<float> &);
template std::istream & operator>>(std::istream &, C3DRotMatTpl<double> &);
