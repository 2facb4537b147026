#include "math/quaternion.h"

#include "numeric/plain_record.h"
#include "numeric/text_form.h"
#include "rotation/quaternion_matrix.h"

template <typename T>
bool C3DQuatTpl<T>::IsIdentity(T epsilon) const
{
    return std::abs(X) <= epsilon && std::abs(Y) <= epsilon && std::abs(Z) <= epsilon &&
           std::abs(1 - static_cast<double>(W)) <= static_cast<double>(epsilon);
}

template <typename T>
C3DQuatTpl<T> & C3DQuatTpl<T>::Normalize()
{
    math::detail::NormalizeQuaternion(*this);
    return *this;
}

template <typename T>
C3DQuatTpl<T> & C3DQuatTpl<T>::Slerp(C3DQuatTpl const & a, C3DQuatTpl const & b, T t)
{
    auto cosine = static_cast<double>(math::detail::Dot(a, b));
    bool const flip = !(cosine >= 0);
    if (flip)
    {
        cosine = -cosine;
    }
    auto weightA = static_cast<double>(T(1) - t);
    auto weightB = static_cast<double>(t);
    if (!(cosine >= 0.999999999999))
    {
        double const angle = std::acos(cosine);
        double const reciprocal = 1 / std::sin(angle);
        weightA = std::sin(weightA * angle) * reciprocal;
        weightB = std::sin(weightB * angle) * reciprocal;
    }
    if (flip)
    {
        weightB = -weightB;
    }
    auto const blend = [weightA, weightB](T p, T q)
    { return static_cast<T>(weightA * static_cast<double>(p) + weightB * static_cast<double>(q)); };
    return Set(blend(a.W, b.W), blend(a.X, b.X), blend(a.Y, b.Y), blend(a.Z, b.Z));
}

template <typename T>
long C3DQuatTpl<T>::Save(IStream * stream, int /*format*/) const
{
    T const values[4] = {X, Y, Z, W};
    return math::detail::SaveUnchecked(stream, values, 4);
}

template <typename T>
long C3DQuatTpl<T>::Load(IStream * stream)
{
    T values[4] = {X, Y, Z, W};
    long const result = math::detail::LoadUnchecked(stream, values, 4);
    Set(values[3], values[0], values[1], values[2]);
    return result;
}

template <typename T>
void C3DQuatTpl<T>::Dump(wchar_t const * label, std::ostream & stream) const
{
    math::detail::WriteLabel(label, stream);
    stream << *this << '\n';
}

template <typename T>
std::ostream & operator<<(std::ostream & stream, C3DQuatTpl<T> const & quaternion)
{
    return stream << "( W:" << quaternion.W << "  X:" << quaternion.X << "  Y:" << quaternion.Y
                  << "  Z:" << quaternion.Z << " )";
}

template <typename T>
std::istream & operator>>(std::istream & stream, C3DQuatTpl<T> & quaternion)
{
    T values[4];
    math::detail::ReadNumbers<4>(stream, values);
    quaternion.Set(values[0], values[1], values[2], values[3]);
    return stream;
}

static_assert(sizeof(C3DQuatTpl<float>) == 4 * sizeof(float));
static_assert(sizeof(C3DQuatTpl<double>) == 4 * sizeof(double));
static_assert(std::is_standard_layout_v<C3DQuatTpl<double>> && std::is_trivially_copyable_v<C3DQuatTpl<double>>);

template class C3DQuatTpl<float>;
template class C3DQuatTpl<double>;
template int AreAlmostEqual(C3DQuatTpl<float> const &, C3DQuatTpl<float> const &, float);
template int AreAlmostEqual(C3DQuatTpl<double> const &, C3DQuatTpl<double> const &, double);
template std::ostream & operator<<(std::ostream &, C3DQuatTpl<float> const &);
template std::ostream & operator<<(std::ostream &, C3DQuatTpl<double> const &);
template std::istream & operator>>(std::istream &, C3DQuatTpl<float> &);
template std::istream & operator>>(std::istream &, C3DQuatTpl<double> &);
