#include "math/transformation_matrix.h"

#include "math/compact_rotation.h"
#include "math/rotation.h"
#include "matrix/inverse33.h"
#include "matrix/map_vectors.h"
#include "transform/scale_clamp.h"

#include <type_traits>

using namespace math::detail;

namespace
{

/// What SetScaling takes for a small positive factor. Callers rely on the value in `double`, a million times the
/// tolerance.
template <typename T>
constexpr T k_SmallestScaleSet = T(1e-6);

/// Writes the rows of a rotation, each times its factor, into the upper block. The product is taken in the rotation's
/// type. Not in a loop: a vectorised one would wait for numbers of the rotation that have only just been stored.
template <typename T, typename R>
void WriteScaledRows(T (*const rows)[4], C3DVector3Tpl<T> const & factors, C3DRotMatTpl<R> const & rotation)
{
    auto const writeRow = [rows, &rotation](int r, R factor)
    {
        rows[r][0] = static_cast<T>(factor * rotation.Get(r, 0));
        rows[r][1] = static_cast<T>(factor * rotation.Get(r, 1));
        rows[r][2] = static_cast<T>(factor * rotation.Get(r, 2));
    };
    writeRow(0, factors.X);
    writeRow(1, factors.Y);
    writeRow(2, factors.Z);
}

} // namespace

// --- The sign bits ---------------------------------------------------------------------------------------------------

template <typename T>
void C3DXfoMatTpl<T>::ComputeSignBits()
{
    ClearSclSignBits();
    SetSclSignBitsFromXfo();
}

template <typename T>
int C3DXfoMatTpl<T>::IsSclAxisNegative(int axis) const
{
    bool const bit = (this->m_MaskInfo & 2 << axis) != 0;
    return ValidateSclSignBits() != 0 ? bit : !bit;
}

// --- Setting elements ------------------------------------------------------------------------------------------------

template <typename T>
C3DXfoMatTpl<T> & C3DXfoMatTpl<T>::Set(C3DMatrix33Tpl<T> const & m)
{
    Base::Set(m.Get(0, 0), m.Get(0, 1), m.Get(0, 2), 0, m.Get(1, 0), m.Get(1, 1), m.Get(1, 2), 0, m.Get(2, 0),
              m.Get(2, 1), m.Get(2, 2), 0, 0, 0, 0, 1);
    ComputeSignBits();
    return *this;
}

template <typename T>
C3DXfoMatTpl<T> & C3DXfoMatTpl<T>::SetWithTranspose(C3DRotMatTpl<T> const & r)
{
    C3DRotMatTpl<T> transposed{C3DInitRequest_DoNotInitialize()};
    return Set(transposed.Transpose(r));
}

template <typename T>
C3DXfoMatTpl<T> & C3DXfoMatTpl<T>::Set(Base const & m)
{
    Base::Set(m.GetArray());
    ComputeSignBits();
    return *this;
}

template <typename T>
C3DXfoMatTpl<T> & C3DXfoMatTpl<T>::Set(T const (*const array)[4])
{
    Base::Set(array);
    ComputeSignBits();
    return *this;
}

template <typename T>
C3DXfoMatTpl<T> & C3DXfoMatTpl<T>::Set(T const (*const array)[3])
{
    for (int r = 0; r < 3; ++r)
    {
        for (int c = 0; c < 3; ++c)
        {
            this->m_Elements[r][c] = array[r][c];
        }
    }
    ComputeSignBits();
    return *this;
}

template <typename T>
C3DXfoMatTpl<T> & C3DXfoMatTpl<T>::SetRow(int r, T x, T y, T z, T w)
{
    Base::SetRow(r, x, y, z, w);
    if (r < 3)
    {
        ComputeSignBits();
    }
    return *this;
}

template <typename T>
void C3DXfoMatTpl<T>::GetQNMatrix(float (*const out)[4]) const
{
    for (int r = 0; r < 4; ++r)
    {
        for (int c = 0; c < 4; ++c)
        {
            out[r][c] = static_cast<float>(this->m_Elements[r][c]);
        }
    }
}

// --- Products --------------------------------------------------------------------------------------------------------

template <typename T>
void C3DXfoMatTpl<T>::SetUpperBlock(C3DMatrix33Tpl<T> const & block, unsigned char bits)
{
    // Not in a loop, for the reason told at WriteScaledRows.
    auto const writeRow = [this, &block](int r)
    {
        this->m_Elements[r][0] = block.Get(r, 0);
        this->m_Elements[r][1] = block.Get(r, 1);
        this->m_Elements[r][2] = block.Get(r, 2);
    };
    writeRow(0);
    writeRow(1);
    writeRow(2);
    SetSclSignBits(bits);
}

template <typename T>
C3DXfoMatTpl<T> & C3DXfoMatTpl<T>::Mul(C3DRotMatTpl<T> const & r, C3DXfoMatTpl const & m)
{
    SetUpperBlock(C3DMatrix33Tpl<T>().Mul(r, C3DMatrix33Tpl<T>(3, 3, m)), m.GetSclSignBits());
    return *this;
}

template <typename T>
C3DXfoMatTpl<T> & C3DXfoMatTpl<T>::Mul(C3DXfoMatTpl const & m, C3DRotMatTpl<T> const & r)
{
    SetUpperBlock(C3DMatrix33Tpl<T>().Mul(C3DMatrix33Tpl<T>(3, 3, m), r), m.GetSclSignBits());
    return *this;
}

template <typename T>
C3DXfoMatTpl<T> & C3DXfoMatTpl<T>::MulTransByReg(C3DRotMatTpl<T> const & r, C3DXfoMatTpl const & m)
{
    SetUpperBlock(C3DMatrix33Tpl<T>().MulTransByReg(r, C3DMatrix33Tpl<T>(3, 3, m)), m.GetSclSignBits());
    return *this;
}

template <typename T>
C3DXfoMatTpl<T> & C3DXfoMatTpl<T>::MulWithRotMat(C3DXfoMatTpl const & m, C3DRotMatTpl<T> const & r)
{
    for (int row = 0; row < 4; ++row)
    {
        C3DVector3Tpl<T> product(m.Get(row, 0), m.Get(row, 1), m.Get(row, 2));
        product.Mul(product, r);
        Base::SetRow(row, product.X, product.Y, product.Z, m.Get(row, 3));
    }
    SetSclSignBits(m.GetSclSignBits());
    return *this;
}

template <typename T>
int C3DXfoMatTpl<T>::Invert(C3DXfoMatTpl const & m)
{
    T const(&a)[4][4] = m.m_Elements;
    double const block[3][3] = {{double(a[0][0]), double(a[0][1]), double(a[0][2])},
                                {double(a[1][0]), double(a[1][1]), double(a[1][2])},
                                {double(a[2][0]), double(a[2][1]), double(a[2][2])}};
    C3DMatrix33Tpl<T> inverse{C3DInitRequest_DoNotInitialize()};
    if (!VisitInverse(block, static_cast<double>(k_StandardTolerance<T>),
                      [&inverse](int r, int c, double value) { inverse.Set(r, c, static_cast<T>(value)); }))
    {
        return 0;
    }
    C3DVector3Tpl<T> t(-a[3][0], -a[3][1], -a[3][2]);
    t.Mul(inverse);
    // Stored as whole rows, as which the determinant is about to load them.
    using Row = typename Row4<T>::Lanes;
    for (int r = 0; r < 3; ++r)
    {
        StoreRow(Row{inverse.Get(r, 0), inverse.Get(r, 1), inverse.Get(r, 2), 0}, this->m_Elements[r]);
    }
    StoreRow(Row{t.X, t.Y, t.Z, 1}, this->m_Elements[3]);
    SetSclSignBitsFromXfo();
    return 1;
}

// --- Scale and rotation ----------------------------------------------------------------------------------------------

template <typename T>
C3DXfoMatTpl<T> & C3DXfoMatTpl<T>::AddScaling(C3DVector3Tpl<T> const & s, int scaleRows)
{
    XORSclSignBits(s);
    C3DVector3Tpl<T> const factors = ClampScale(s);
    if (scaleRows != 0)
    {
        for (int r = 0; r < 3; ++r)
        {
            for (int c = 0; c < 3; ++c)
            {
                this->m_Elements[r][c] *= factors.GetArray()[r];
            }
        }
        return *this;
    }
    for (auto & row : this->m_Elements)
    {
        for (int c = 0; c < 3; ++c)
        {
            row[c] *= factors.GetArray()[c];
        }
    }
    return *this;
}

template <typename T>
C3DXfoMatTpl<T> & C3DXfoMatTpl<T>::SetScaling(C3DVector3Tpl<T> const & s)
{
    C3DRotMatTpl<T> rotation{C3DInitRequest_DoNotInitialize()};
    GetRotation(rotation);
    SetSclSignBits(s);
    T const smallest = k_SmallestScaleSet<T>;
    WriteScaledRows(this->m_Elements,
                    C3DVector3Tpl<T>(ClampScale(s.X, smallest), ClampScale(s.Y, smallest), ClampScale(s.Z, smallest)),
                    rotation);
    return *this;
}

template <typename T>
C3DXfoMatTpl<T> & C3DXfoMatTpl<T>::SetRotation(C3DRotMatTpl<T> const & r)
{
    C3DVector3Tpl<T> scaling;
    WriteScaledRows(this->m_Elements, GetScaling(scaling), r);
    return *this;
}

template <typename T>
void C3DXfoMatTpl<T>::SetScalingAndRotation(C3DVector3Tpl<T> const & s, C3DRotation & rotation)
{
    SetSclSignBits(s);
    WriteScaledRows(this->m_Elements, ClampScale(s), *rotation.GetMatrix());
}

template <typename T>
void C3DXfoMatTpl<T>::SetScalingAndRotation(C3DVector3Tpl<T> const & s, C3DRotation3Tpl<T> const & rotation)
{
    // A rotation without a known form or order writes no matrix and counts as the identity.
    C3DRotMatTpl<T> matrix;
    rotation.GetMatrix(matrix);
    SetSclSignBits(s);
    WriteScaledRows(this->m_Elements, ClampScale(s), matrix);
}

void F3DTransformPoints(C3DXfoMatTpl<double> const & m, C3DVector3Tpl<double> const * in, long n,
                        C3DVector3Tpl<double> * out)
{
    MapPoints(m, in, n, out);
}

static_assert(sizeof(C3DXfoMatTpl<float>) == 17 * sizeof(float));
static_assert(sizeof(C3DXfoMatTpl<double>) == 17 * sizeof(double));
static_assert(std::is_standard_layout_v<C3DXfoMatTpl<double>> && std::is_trivially_copyable_v<C3DXfoMatTpl<double>>);

template class C3DXfoMatTpl<float>;
template class C3DXfoMatTpl<double>;
template int AreAlmostEqual(C3DXfoMatTpl<float> const &, C3DXfoMatTpl<float> const &, float);
template int AreAlmostEqual(C3DXfoMatTpl<double> const &, C3DXfoMatTpl<double> const &, double);
