#pragma once

/// \file
/// The transformation matrix.

#include "math/detail/determinant4.h"
#include "math/detail/row4.h"
#include "math/matrix44.h"
#include "math/numeric.h"
#include "math/rotation_matrix.h"
#include "math/vector3.h"
#include "math/vector4.h"

#include <type_traits>

class C3DRotation;
class C3DTransfo;
template <typename T>
class C3DRotation3Tpl;

namespace math::detail
{

class TransformationInspector;

/// The bits of the mask byte that tell of negative scale axes: 2 for X, 4 for Y, 8 for Z.
inline constexpr unsigned char k_SclSignMask = 14;

} // namespace math::detail

/// A four by four matrix of a transformation, which remembers which of its three scale axes are negative.
///
/// Vectors are rows: a point maps to p M. Rows 0 to 2 of the upper three by three block are the images of the axes,
/// each the scaled row of a rotation; row 3 holds the translation; column 3 of an affine matrix is (0, 0, 0, 1).
///
/// A determinant tells no more than whether the number of negative axes is odd. Three bits of the mask byte tell it
/// axis by axis, so that a mirrored matrix comes apart into the scale that was put in: 2 for X, 4 for Y, 8 for Z. They
/// are *consistent* when an odd number of them is set exactly where the determinant is not at or above 0 (a NaN counts
/// as negative). Whoever reads inconsistent bits takes their complement, all three, and to repair them is to complement
/// them. What sets elements without knowing a scale *recomputes* the bits: all of them are set where the determinant is
/// negative, else none. The other five bits of the byte are no one's and stay, except where assignment copies the byte.
///
/// Operations of the base class that are not listed here mean what they mean there and leave the bits as they are;
/// streams and text do not hold the bits. Methods write into the target, which may be an operand, and return it. No
/// index is checked.
template <typename T>
class C3DXfoMatTpl : public C3DMatrix44Tpl<T>
{
    using Base = C3DMatrix44Tpl<T>;

public:
    /// \name Construction
    ///@{

    /// The identity, with no negative axis.
    C3DXfoMatTpl() : Base(C3DInitRequest_DoNotInitialize())
    {
        Base::SetIdentity();
        this->m_MaskInfo = 0;
    }

    /// Writes nothing, the bits included.
    // NOLINTNEXTLINE(clang-analyzer-optin.cplusplus.UninitializedObject): the caller fills it.
    explicit C3DXfoMatTpl(C3DInitRequest_DoNotInitialize const & request) : Base(request) {}

    /// The elements row by row; recomputes the bits.
    C3DXfoMatTpl(T m00, T m01, T m02, T m03, T m10, T m11, T m12, T m13, T m20, T m21, T m22, T m23, T m30, T m31,
                 T m32, T m33)
        : Base(m00, m01, m02, m03, m10, m11, m12, m13, m20, m21, m22, m23, m30, m31, m32, m33)
    {
        this->m_MaskInfo = 0;
        SetSclSignBitsFromXfo();
    }

    /// The vectors become the columns where `rows` is 0, else the rows; recomputes the bits.
    C3DXfoMatTpl(C3DVector4Tpl<T> const & a, C3DVector4Tpl<T> const & b, C3DVector4Tpl<T> const & c,
                 C3DVector4Tpl<T> const & d, int rows)
        : Base(a, b, c, d, rows)
    {
        this->m_MaskInfo = 0;
        SetSclSignBitsFromXfo();
    }
    ///@}

    /// \name Setting elements
    ///@{
    using Base::Set;

    /// The identity, with no negative axis.
    C3DXfoMatTpl & SetIdentity()
    {
        Base::SetIdentity();
        ClearSclSignBits();
        return *this;
    }

    /// The upper block; the rest becomes the identity's, so the translation is lost. Recomputes the bits.
    C3DXfoMatTpl & Set(C3DMatrix33Tpl<T> const & m);
    C3DXfoMatTpl & Set(C3DRotMatTpl<T> const & r) { return Set(r.GetMatrix()); }

    /// The transpose of a rotation, in the same way.
    C3DXfoMatTpl & SetWithTranspose(C3DRotMatTpl<T> const & r);

    /// All sixteen elements. Recomputes the bits, those of another transformation matrix too: assignment keeps them.
    C3DXfoMatTpl & Set(Base const & m);
    C3DXfoMatTpl & Set(T const (*const array)[4]);
    C3DXfoMatTpl & Set(T (*const array)[4]) { return Set(static_cast<T const(*)[4]>(array)); }

    /// The upper block; row 3 and column 3 stay. Recomputes the bits.
    C3DXfoMatTpl & Set(T const (*const array)[3]);
    C3DXfoMatTpl & Set(T (*const array)[3]) { return Set(static_cast<T const(*)[3]>(array)); }

    /// One element; the bits stay.
    C3DXfoMatTpl & Set(int row, int column, T value)
    {
        Base::Set(row, column, value);
        return *this;
    }

    /// One row. Recomputes the bits, unless it is row 3, where they stay.
    C3DXfoMatTpl & SetRow(int r, T x, T y, T z, T w);
    C3DXfoMatTpl & SetRow(int r, C3DVector4Tpl<T> const & v) { return SetRow(r, v.X, v.Y, v.Z, v.W); }

    /// One column. Clears the bits, whatever the determinant: readers of a mirrored matrix take the complement.
    C3DXfoMatTpl & SetCol(int c, T x, T y, T z, T w)
    {
        Base::SetCol(c, x, y, z, w);
        ClearSclSignBits();
        return *this;
    }
    C3DXfoMatTpl & SetCol(int c, C3DVector4Tpl<T> const & v) { return SetCol(c, v.X, v.Y, v.Z, v.W); }

    /// Replaces row 3 without its last element, or adds to it; the bits stay.
    C3DXfoMatTpl & SetTranslation(C3DVector3Tpl<T> const & t)
    {
        this->m_Elements[3][0] = t.X;
        this->m_Elements[3][1] = t.Y;
        this->m_Elements[3][2] = t.Z;
        return *this;
    }
    C3DXfoMatTpl & AddTranslation(C3DVector3Tpl<T> const & t)
    {
        this->m_Elements[3][0] += t.X;
        this->m_Elements[3][1] += t.Y;
        this->m_Elements[3][2] += t.Z;
        return *this;
    }

    /// The transpose of all four rows. The bits stay in place, and come along from another matrix.
    C3DXfoMatTpl & Transpose()
    {
        Base::Transpose();
        return *this;
    }
    C3DXfoMatTpl & Transpose(C3DXfoMatTpl const & m)
    {
        Base::Transpose(m);
        SetSclSignBits(m.GetSclSignBits());
        return *this;
    }
    ///@}

    /// \name Reading
    ///@{

    /// The object as a general matrix.
    Base const & GetMatrix44() const { return *this; }

    /// The bits as they are stored, consistent or not: 2 for a negative X axis, 4 for Y, 8 for Z.
    unsigned char GetSclSignBits() const
    {
        return static_cast<unsigned char>(this->m_MaskInfo & math::detail::k_SclSignMask);
    }

    /// The determinant of the upper block.
    T GetDet33() const { return this->GetDet(3, 3); }

    /// Row 3 without its last element.
    C3DVector3Tpl<T> & GetTranslation(C3DVector3Tpl<T> & t) const
    {
        return t.Set(this->m_Elements[3][0], this->m_Elements[3][1], this->m_Elements[3][2]);
    }

    /// The elements row by row, not transposed, as `float`.
    void GetQNMatrix(float (*const out)[4]) const;
    ///@}

    /// \name Products
    ///@{
    using Base::Mul;
    using Base::MulTransByReg;

    /// The product a b: a acts first. An axis of the product counts as negative where it is so in one of the factors
    /// alone; the bits are then repaired.
    C3DXfoMatTpl & Mul(C3DXfoMatTpl const & a, C3DXfoMatTpl const & b)
    {
        unsigned char const aBits = a.GetSclSignBits();
        unsigned char const bBits = b.GetSclSignBits();
        Base::Mul(a, b);
        XORSclSignBits(aBits, bBits);
        SetSclSignBitsFromXfo();
        return *this;
    }
    C3DXfoMatTpl & Mul(C3DXfoMatTpl const & b) { return Mul(*this, b); }

    /// The products of a rotation r with the upper block of m: r M, M r and the transpose of r times M. They write the
    /// upper block and the bits of m and nothing else: a target that is not m keeps its own row 3 and column 3, so that
    /// the translation of m does not arrive.
    C3DXfoMatTpl & Mul(C3DRotMatTpl<T> const & r, C3DXfoMatTpl const & m);
    C3DXfoMatTpl & Mul(C3DXfoMatTpl const & m, C3DRotMatTpl<T> const & r);
    C3DXfoMatTpl & MulTransByReg(C3DRotMatTpl<T> const & r, C3DXfoMatTpl const & m);

    /// All of m, then the rotation: the translation of m is rotated too. Column 3 and the bits are those of m.
    C3DXfoMatTpl & MulWithRotMat(C3DXfoMatTpl const & m, C3DRotMatTpl<T> const & r);

    /// Rotates the axes and not the translation: the product of the upper block with r, in place.
    C3DXfoMatTpl & AddRotation(C3DRotMatTpl<T> const & r) { return Mul(*this, r); }

    /// The inverse of an affine matrix, whose column 3 is not read. Returns 0, with the target kept, where
    /// C3DMatrix33Tpl::Invert finds the upper block singular. The bits are not those of m: the target keeps its own and
    /// repairs them, so that a matrix inverted in place keeps its negative axes.
    int Invert() { return Invert(*this); }
    int Invert(C3DXfoMatTpl const & m);
    ///@}

    /// \name Scale and rotation
    /// A scale factor below 1e-12 in magnitude (1e-6 in `float`) becomes that value with its own sign, so that the
    /// matrix stays invertible and its rows keep a direction; a NaN becomes the negative one.
    ///@{

    /// Multiplies by a scale: rows 0 to 2 where `scaleRows` is not 0, so that the scale acts first; else all columns,
    /// so that it acts last and the translation is scaled too. An axis with a negative factor changes its bit, which is
    /// not repaired.
    C3DXfoMatTpl & AddScaling(C3DVector3Tpl<T> const & s, int scaleRows);

    /// Replaces the scale and keeps the rotation, as GetRotation reads it. The bits are the signs of the factors. In
    /// `double` a small positive factor becomes 1e-6 here, while a small negative one becomes -1e-12 as everywhere.
    C3DXfoMatTpl & SetScaling(C3DVector3Tpl<T> const & s);

    /// Replaces the rotation and keeps the scale, as GetScaling reads it, and the bits, even where r is no proper
    /// rotation.
    C3DXfoMatTpl & SetRotation(C3DRotMatTpl<T> const & r);

    /// Replaces the upper block by a scale followed by a rotation, whose matrix is brought up to date. The rest of the
    /// matrix stays. The bits are the signs of the factors and are not repaired, even where the rotation mirrors.
    void SetScalingAndRotation(C3DVector3Tpl<T> const & s, C3DRotation & rotation);
    void SetScalingAndRotation(C3DVector3Tpl<T> const & s, C3DRotation3Tpl<T> const & rotation);

    /// The scale of a matrix without shear: the lengths of rows 0 to 2, with the signs that the bits tell. A row that
    /// is shorter than 1e-12 (1e-6 in `float`) counts as that long.
    C3DVector3Tpl<T> & GetScaling(C3DVector3Tpl<T> & s) const;

    /// The rotation of a matrix without shear: the rows divided by the scale. A matrix with shear gives rows that are
    /// not perpendicular, and a null row stays null. The classes of rotations take these rows as their `Set` of three
    /// vectors does.
    C3DRotMatTpl<T> & GetRotation(C3DRotMatTpl<T> & r) const;
    C3DRotation & GetRotation(C3DRotation & r) const;
    C3DRotation3Tpl<T> & GetRotation(C3DRotation3Tpl<T> & r) const;

    /// What GetScaling and GetRotation give, at the cost of one.
    void GetScalingAndRotation(C3DVector3Tpl<T> & s, C3DRotation & r) const;
    void GetScalingAndRotation(C3DVector3Tpl<T> & s, C3DRotation3Tpl<T> & r) const;

    /// Any matrix as a rotation followed by a scale, a rotation and a translation:
    ///
    ///     upper block = U D V,   scalingOrientation = U,   remainder = [D V, 0; t, 1],
    ///
    /// with U and V proper rotations and D diagonal, from the singular value decomposition of the upper block. Values
    /// below 1e-12 (1e-6 in `float`) are kept away from zero as scale factors are. A mirrored matrix gives three
    /// negative factors. Where all factors agree no orientation is needed, and U is the identity; else a half-turn of U
    /// that stands next to D moves into the signs of D. The factors come in the order in which the decomposition finds
    /// them. `remainder` may be the matrix itself.
    void GetAffineDecomposition(C3DRotMatTpl<T> & scalingOrientation, C3DXfoMatTpl & remainder) const;
    ///@}

private:
    friend class C3DTransfo;
    friend class math::detail::TransformationInspector;

    /// Clears the three bits, or replaces them by those of a byte; the other five stay.
    void ClearSclSignBits() { SetSclSignBits(0); }
    void SetSclSignBits(unsigned char bits)
    {
        this->m_MaskInfo = static_cast<unsigned char>((this->m_MaskInfo & ~math::detail::k_SclSignMask) |
                                                      (bits & math::detail::k_SclSignMask));
    }
    /// A bit is set where the factor is below 0: neither -0 nor a NaN is.
    void SetSclSignBits(C3DVector3Tpl<T> const & scl) { SetSclSignBits(BitsOfNegatives(scl)); }

    /// The old bits are no operand.
    void XORSclSignBits(unsigned char a, unsigned char b) { SetSclSignBits(static_cast<unsigned char>(a ^ b)); }
    /// The old bits are an operand.
    void XORSclSignBits(C3DVector3Tpl<T> const & scl) { XORSclSignBits(this->m_MaskInfo, BitsOfNegatives(scl)); }

    /// How many bits are set, 0 to 3.
    unsigned long NegSclSignCount() const
    {
        unsigned const bits = this->m_MaskInfo;
        return (bits >> 1 & 1) + (bits >> 2 & 1) + (bits >> 3 & 1);
    }

    /// 1 where the bits are consistent.
    int ValidateSclSignBits() const
    {
        bool const isMirrored = !(math::detail::Determinant(this->m_Elements) >= 0);
        return (NegSclSignCount() % 2 != 0) == isMirrored;
    }

    /// The elements and bits of m, and repairs the bits.
    void SetAndRepair(C3DXfoMatTpl const & m)
    {
        // In pieces of the size in which the determinant is about to load them, and all before the first is stored: m
        // may be the target.
        typename math::detail::Row4<T>::Lanes row0;
        typename math::detail::Row4<T>::Lanes row1;
        typename math::detail::Row4<T>::Lanes row2;
        typename math::detail::Row4<T>::Lanes row3;
        math::detail::LoadRows(m.GetArray(), row0, row1, row2, row3);
        math::detail::StoreRow(row0, this->m_Elements[0]);
        math::detail::StoreRow(row1, this->m_Elements[1]);
        math::detail::StoreRow(row2, this->m_Elements[2]);
        math::detail::StoreRow(row3, this->m_Elements[3]);
        SetSclSignBits(m.GetSclSignBits());
        SetSclSignBitsFromXfo();
    }

    /// Repairs the bits; 1 where they were consistent.
    int SetSclSignBitsFromXfo()
    {
        int const consistent = ValidateSclSignBits();
        // All bits change or none, without a branch: which axes are negative is up to the data.
        XORSclSignBits(this->m_MaskInfo, static_cast<unsigned char>(math::detail::k_SclSignMask * (1 - consistent)));
        return consistent;
    }

    /// Recomputes the bits.
    void ComputeSignBits();

    /// The bit of an axis, read through the rule of consistency.
    int IsSclAxisNegative(int axis) const;

    void SetUpperBlock(C3DMatrix33Tpl<T> const & block, unsigned char bits);

    static unsigned char BitsOfNegatives(C3DVector3Tpl<T> const & scl)
    {
        return static_cast<unsigned char>((0 > scl.X ? 2 : 0) | (0 > scl.Y ? 4 : 0) | (0 > scl.Z ? 8 : 0));
    }
};

/// 1 where the matrices are almost equal, as for C3DMatrix44Tpl, and their bits are the same.
template <typename T>
MATH_API inline int AreAlmostEqual(C3DXfoMatTpl<T> const & a, C3DXfoMatTpl<T> const & b,
                                   std::type_identity_t<T> epsilon = math::detail::k_StandardTolerance<T>)
{
    return AreAlmostEqual(a.GetMatrix44(), b.GetMatrix44(), epsilon) != 0 && a.GetSclSignBits() == b.GetSclSignBits();
}

template <typename T>
inline C3DVector3Tpl<T> & C3DVector3Tpl<T>::Mul(C3DVector3Tpl<T> const & v, C3DXfoMatTpl<T> const & m)
{
    if (v.MayHaveZero()) [[unlikely]]
    {
        T sum[4];
        MulPointSkippingZeros(v, m.GetMatrix44(), sum);
        return Set(sum[0], sum[1], sum[2]);
    }
    typename math::detail::Row4<T>::Lanes sum;
    MulPoint(v, m.GetMatrix44(), sum);
    return Set(sum[0], sum[1], sum[2]);
}

template <typename T>
inline C3DVector4Tpl<T> & C3DVector4Tpl<T>::Mul(C3DVector4Tpl<T> const & v, C3DXfoMatTpl<T> const & m)
{
    return Mul(v, m.GetMatrix44());
}

template <typename T>
inline C3DVector4Tpl<T> & C3DVector4Tpl<T>::Mul(C3DXfoMatTpl<T> const & m, C3DVector4Tpl<T> const & v)
{
    return Mul(m.GetMatrix44(), v);
}

/// n points through an affine transformation, each as C3DVector3Tpl::Mul would take it and with the same bits, by the
/// widest instructions of the machine. The arrays may be one and the same, but not overlap otherwise. An n below 1 does
/// nothing.
MATH_API void F3DTransformPoints(C3DXfoMatTpl<double> const & m, C3DVector3Tpl<double> const * in, long n,
                                 C3DVector3Tpl<double> * out);

extern template class MATH_API C3DXfoMatTpl<float>;
extern template class MATH_API C3DXfoMatTpl<double>;
extern template int AreAlmostEqual(C3DXfoMatTpl<float> const &, C3DXfoMatTpl<float> const &, float);
extern template int AreAlmostEqual(C3DXfoMatTpl<double> const &, C3DXfoMatTpl<double> const &, double);
