#include "math/compact_rotation.h"

#include "math/platform/result.h"
#include "numeric/plain_record.h"
#include "numeric/text_form.h"
#include "rotation/angle_constants.h"
#include "rotation/euler_order.h"
#include "transform/read_quaternion.h"

#include <string>

namespace
{

template <typename T>
double Degrees(T angle)
{
    return static_cast<double>(angle) * math::detail::k_DegreesPerRadian;
}

/// Nothing for a value that names no order.
std::string NameOf(tagE3DROTORDER order)
{
    constexpr char axes[] = "xyz";
    math::detail::EulerOrder const * const row = math::detail::FindEulerOrder(order);
    return row != nullptr ? std::string{axes[row->first], axes[row->middle], axes[row->last]} : std::string();
}

} // namespace

template <typename T>
long C3DRotation3Tpl<T>::Save(IStream * stream, int /*format*/) const
{
    if (stream == nullptr)
    {
        return E_INVALIDARG;
    }
    CKVStreamHelper helper(stream);
    if (long const result = helper.PutUInt8(m_Rep); result < 0)
    {
        return result;
    }
    switch (m_Rep)
    {
    case E3DRotRep_Quat:
    {
        T const values[4] = {m_Last.scalar, m_Values.X, m_Values.Y, m_Values.Z};
        return math::detail::PutScalars(helper, values, 4);
    }
    case E3DRotRep_Euler:
    {
        long const result = math::detail::PutScalars(helper, m_Values.GetArray(), 3);
        return result < 0 ? result : helper.PutUInt8(static_cast<unsigned char>(m_Last.order));
    }
    case E3DRotRep_AxisAngle:
    {
        T const values[4] = {m_Values.X, m_Values.Y, m_Values.Z, m_Last.scalar};
        return math::detail::PutScalars(helper, values, 4);
    }
    }
    return S_OK;
}

template <typename T>
long C3DRotation3Tpl<T>::Load(IStream * stream)
{
    if (stream == nullptr)
    {
        return E_INVALIDARG;
    }
    CKVStreamHelper helper(stream);
    unsigned char rep = 0;
    if (long const result = helper.GetUInt8(&rep); result < 0)
    {
        return result;
    }
    if (rep > E3DRotRep_AxisAngle)
    {
        return S_OK;
    }
    T values[4] = {};
    if (long const result = math::detail::GetScalars(helper, values, rep == E3DRotRep_Euler ? 3 : 4); result < 0)
    {
        return result;
    }
    if (rep == E3DRotRep_Quat)
    {
        Set(C3DQuatTpl<T>(values[0], values[1], values[2], values[3]));
        return S_OK;
    }
    C3DVector3Tpl<T> const vector(values);
    if (rep == E3DRotRep_AxisAngle)
    {
        Set(vector, values[3]);
        return S_OK;
    }
    unsigned char order = 0;
    if (long const result = helper.GetUInt8(&order); result < 0)
    {
        return result;
    }
    Set(vector, static_cast<tagE3DROTORDER>(order));
    return S_OK;
}

template <typename T>
void C3DRotation3Tpl<T>::DumpQuat(wchar_t const * name, std::ostream & stream) const
{
    math::detail::WriteLabel(name, stream);
    stream << "Quaternion" << *this << '\n';
}

template <typename T>
void C3DRotation3Tpl<T>::DumpAxisAngle(wchar_t const * name, std::ostream & stream) const
{
    C3DVector3Tpl<T> axis(1, 0, 0);
    T angle = 0;
    GetAxisAngle(axis, angle);
    math::detail::WriteLabel(name, stream);
    stream << "Axis" << axis << ", Angle(" << Degrees(angle) << ")\n";
}

template <typename T>
void C3DRotation3Tpl<T>::DumpXYZAngles(wchar_t const * name, std::ostream & stream) const
{
    C3DVector3Tpl<T> angles(0, 0, 0);
    GetXYZAngles(angles);
    math::detail::WriteLabel(name, stream);
    stream << "Euler(" << Degrees(angles.X) << Degrees(angles.Y) << Degrees(angles.Z) << ", Order("
           << NameOf(GetRotOrder()) << ")\n";
}

template <typename T>
std::ostream & operator<<(std::ostream & stream, C3DRotation3Tpl<T> const & rotation)
{
    C3DQuatTpl<T> quat;
    rotation.GetQuat(quat);
    return stream << quat;
}

template <typename T>
std::istream & operator>>(std::istream & stream, C3DRotation3Tpl<T> & rotation)
{
    rotation.Set(math::detail::ReadQuaternion<T>(stream));
    return stream;
}

// The members of this file alone: the class is instantiated beside the others.
template long C3DRotation3Tpl<float>::Save(IStream *, int) const;
template long C3DRotation3Tpl<double>::Save(IStream *, int) const;
template long C3DRotation3Tpl<float>::Load(IStream *);
template long C3DRotation3Tpl<double>::Load(IStream *);
template void C3DRotation3Tpl<float>::DumpQuat(wchar_t const *, std::ostream &) const;
template void C3DRotation3Tpl<double>::DumpQuat(wchar_t const *, std::ostream &) const;
template void C3DRotation3Tpl<float>::DumpAxisAngle(wchar_t const *, std::ostream &) const;
template void C3DRotation3Tpl<double>::DumpAxisAngle(wchar_t const *, std::ostream &) const;
template void C3DRotation3Tpl<float>::DumpXYZAngles(wchar_t const *, std::ostream &) const;
template void C3DRotation3Tpl<double>::DumpXYZAngles(wchar_t const *, std::ostream &) const;
template std::ostream & operator<<(std::ostream &, C3DRotation3Tpl<float> const &);
template std::ostream & operator<<(std::ostream &, C3DRotation3Tpl<double> const &);
template std::istream & operator>>(std::istream &, C3DRotation3Tpl<float> &);
template std::istream & operator>>(std::istream &, C3DRotation3Tpl<double> &);
