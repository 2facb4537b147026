#include "math/dual_quaternion.h"

#include "math/compact_rotation.h"
#include "math/rotation_conversions.h"
#include "numeric/text_form.h"
#include "transform/read_quaternion.h"

namespace
{

template <typename T>
C3DVector3Tpl<T> VectorPart(C3DQuatTpl<T> const & quat)
{
    return {quat.X, quat.Y, quat.Z};
}

template <typename T>
C3DVector3Tpl<T> Combine(T p, C3DVector3Tpl<T> const & a, T q, C3DVector3Tpl<T> const & b)
{
    return {p * a.X + q * b.X, p * a.Y + q * b.Y, p * a.Z + q * b.Z};
}

template <typename T>
bool AgreeExactly(C3DQuatTpl<T> const & a, C3DQuatTpl<T> const & b)
{
    return a.W == b.W && a.X == b.X && a.Y == b.Y && a.Z == b.Z;
}

} // namespace

// --- Screw form ------------------------------------------------------------------------------------------------------

template <typename T>
C3DDualQuatTpl<T> & C3DDualQuatTpl<T>::Set(T angle, T pitch, C3DVector3Tpl<T> const & axis, C3DVector3Tpl<T> & moment)
{
    T const cosine = std::cos(angle * T(0.5));
    T const sine = std::sin(angle * T(0.5));
    T const halfPitch = pitch * T(0.5);
    C3DVector3Tpl<T> const dual = Combine(sine, moment, halfPitch * cosine, axis);
    m_Real.Set(cosine, sine * axis.X, sine * axis.Y, sine * axis.Z);
    m_Dual.Set(-halfPitch * sine, dual.X, dual.Y, dual.Z);
    return *this;
}

template <typename T>
void C3DDualQuatTpl<T>::Get(T & angle, T & pitch, C3DVector3Tpl<T> & axis, C3DVector3Tpl<T> & moment) const
{
    if (m_Real.IsIdentity())
    {
        axis = VectorPart(m_Dual);
        T const squaredLength = axis.GetSquaredLength();
        angle = 0;
        pitch = Exceeds(squaredLength) ? 2 * std::sqrt(squaredLength) : T(0);
        moment.SetNull();
        return;
    }
    axis = VectorPart(m_Real);
    T const reciprocal = 1 / axis.GetLength();
    axis.Mul(reciprocal);
    angle = 2 * std::acos(m_Real.W);
    pitch = -2 * m_Dual.W * reciprocal;
    moment = Combine(T(1), VectorPart(m_Dual), -(pitch * m_Real.W * T(0.5)), axis).Mul(reciprocal);
}

template <typename T>
C3DDualQuatTpl<T> & C3DDualQuatTpl<T>::Log()
{
    T angle;
    T pitch;
    C3DVector3Tpl<T> axis;
    C3DVector3Tpl<T> moment;
    Get(angle, pitch, axis, moment);
    T const halfAngle = angle * T(0.5);
    m_Dual.Set(Combine(halfAngle, moment, pitch * T(0.5), axis));
    m_Real.Set(axis.Mul(halfAngle));
    return *this;
}

template <typename T>
C3DDualQuatTpl<T> & C3DDualQuatTpl<T>::Exp()
{
    C3DVector3Tpl<T> const real = VectorPart(m_Real);
    T const length = real.GetLength();
    if (!(static_cast<double>(length) >= math::detail::k_StandardTolerance<double>))
    {
        m_Real.SetIdentity();
        return *this;
    }
    C3DVector3Tpl<T> const dual = VectorPart(m_Dual);
    C3DVector3Tpl<T> const axis(real.X / length, real.Y / length, real.Z / length);
    T const halfPitch = math::detail::Dot(dual, axis);
    C3DVector3Tpl<T> const across = Combine(T(1), dual, -halfPitch, axis);
    C3DVector3Tpl<T> moment(across.X / length, across.Y / length, across.Z / length);
    return Set(2 * length, 2 * halfPitch, axis, moment);
}

template <typename T>
C3DDualQuatTpl<T> & C3DDualQuatTpl<T>::ScLerp(C3DDualQuatTpl const & a, C3DDualQuatTpl const & b, T t)
{
    C3DDualQuatTpl screw(b);
    if (!(math::detail::DotByPairs(a.m_Real, b.m_Real) >= 0))
    {
        screw.Negate();
    }
    // The product of a value and its inverse is the identity only up to rounding, which the screw form would blow up.
    // Not the operator, to which a NaN is equal to anything.
    if (AgreeExactly(screw.m_Real, a.m_Real) && AgreeExactly(screw.m_Dual, a.m_Dual))
    {
        screw.SetIdentity();
    }
    else
    {
        C3DDualQuatTpl inverse;
        inverse.Invert(a);
        screw.Mul(inverse);
    }
    T angle;
    T pitch;
    C3DVector3Tpl<T> axis;
    C3DVector3Tpl<T> moment;
    screw.Get(angle, pitch, axis, moment);
    screw.Set(angle * t, pitch * t, axis, moment);
    return Mul(screw, a);
}

// --- Rigid matrices --------------------------------------------------------------------------------------------------

template <typename T>
C3DDualQuatTpl<T> & C3DDualQuatTpl<T>::Set(C3DMatrix44Tpl<T> const & m)
{
    C3DQuatTpl<T> quat;
    C3DRotation3Tpl<T>(m).GetQuat(quat);
    return Set(quat, C3DVector3Tpl<T>(m.Get(3, 0), m.Get(3, 1), m.Get(3, 2)));
}

template <typename T>
void C3DDualQuatTpl<T>::Get(C3DMatrix44Tpl<T> & m) const
{
    C3DRotMatTpl<T> rotation;
    F3DQuatToMat(m_Real, rotation);
    C3DVector3Tpl<T> t;
    GetTranslation(t);
    for (int r = 0; r < 3; ++r)
    {
        m.SetRow(r, rotation.Get(r, 0), rotation.Get(r, 1), rotation.Get(r, 2), 0);
    }
    m.SetRow(3, t.X, t.Y, t.Z, 1);
}

template <typename T>
void C3DDualQuatTpl<T>::GetTranslation(C3DVector3Tpl<T> & t) const
{
    if (m_Dual.IsNull())
    {
        t.SetNull();
        return;
    }
    C3DQuatTpl<T> product;
    product.Mul(m_Dual, C3DQuatTpl<T>().Conjugate(m_Real));
    t.Set(2 * product.X, 2 * product.Y, 2 * product.Z);
}

// --- Iterative blend -------------------------------------------------------------------------------------------------

template <typename T>
C3DDualQuatTpl<T> & C3DDualQuatTpl<T>::IterativeBlend(long n, C3DDualQuatTpl const * const q, T const * const w, T tol)
{
    C3DDualQuatTpl blend;
    blend.LinearBlend(n, q, w);
    for (int pass = 0; pass < 6; ++pass)
    {
        // The same for every k.
        C3DDualQuatTpl logarithm;
        logarithm.Invert(blend);
        logarithm.Mul(logarithm).Log();
        C3DDualQuatTpl sum;
        sum.SetNull();
        for (long k = 0; k < n; ++k)
        {
            sum.Add(C3DDualQuatTpl().Mul(logarithm, w[k]));
        }
        T const realError = sum.m_Real.GetSquaredLength();
        T const dualError = sum.m_Dual.GetSquaredLength();
        blend.Mul(sum.Exp());
        if (!(realError >= tol) && !(dualError >= tol))
        {
            break;
        }
    }
    return *this = blend.Normalize();
}

template <typename T>
C3DDualQuatTpl<T> & C3DDualQuatTpl<T>::IterativeBlend(C3DDualQuatTpl const & a, C3DDualQuatTpl const & b, T t)
{
    C3DDualQuatTpl const values[2] = {a, b};
    T const weights[2] = {1 - t, t};
    return IterativeBlend(2, values, weights, math::detail::k_StandardTolerance<T>);
}

// --- Persistence and text --------------------------------------------------------------------------------------------

template <typename T>
long C3DDualQuatTpl<T>::Save(IStream * stream, int format) const
{
    static_cast<void>(m_Real.Save(stream, format));
    static_cast<void>(m_Dual.Save(stream, format));
    return 0;
}

template <typename T>
long C3DDualQuatTpl<T>::Load(IStream * stream)
{
    static_cast<void>(m_Real.Load(stream));
    static_cast<void>(m_Dual.Load(stream));
    return 0;
}

template <typename T>
void C3DDualQuatTpl<T>::Dump(wchar_t const * label, std::ostream & stream) const
{
    math::detail::WriteLabel(label, stream);
    stream << *this << '\n';
}

template <typename T>
std::ostream & operator<<(std::ostream & stream, C3DDualQuatTpl<T> const & quaternion)
{
    return stream << quaternion.GetReal() << quaternion.GetDual();
}

template <typename T>
std::istream & operator>>(std::istream & stream, C3DDualQuatTpl<T> & quaternion)
{
    C3DQuatTpl<T> const real = math::detail::ReadQuaternion<T>(stream);
    C3DQuatTpl<T> const dual = math::detail::ReadQuaternion<T>(stream);
    quaternion.Set(real, dual);
    return stream;
}

static_assert(sizeof(C3DDualQuatTpl<float>) == 8 * sizeof(float));
static_assert(sizeof(C3DDualQuatTpl<double>) == 8 * sizeof(double));
static_assert(std::is_standard_layout_v<C3DDualQuatTpl<float>> && std::is_standard_layout_v<C3DDualQuatTpl<double>>);
static_assert(std::is_trivially_copyable_v<C3DDualQuatTpl<float>> &&
              std::is_trivially_copyable_v<C3DDualQuatTpl<double>>);
static_assert(std::is_trivially_destructible_v<C3DDualQuatTpl<float>> &&
              std::is_trivially_destructible_v<C3DDualQuatTpl<double>>);

template class C3DDualQuatTpl<float>;
template class C3DDualQuatTpl<double>;
template bool AreAlmostEqual(C3DDualQuatTpl<float> const &, C3DDualQuatTpl<float> const &, float);
template bool AreAlmostEqual(C3DDualQuatTpl<double> const &, C3DDualQuatTpl<double> const &, double);
template std::ostream & operator<<(std::ostream &, C3DDualQuatTpl<float> const &);
template std::ostream & operator<<(std::ostream &, C3DDualQuatTpl<double> const &);
template std::istream & operator>>(std::istream &, C3DDualQuatTpl<float> &);
template std::istream & operator>>(std::istream &, C3DDualQuatTpl<double> &);
