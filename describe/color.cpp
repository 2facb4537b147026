#include "math/color.h"

#include "numeric/plain_record.h"

#include <cmath>
#include <type_traits>

static_assert(sizeof(C3DColor4f) == 4 * sizeof(float));
static_assert(std::is_standard_layout_v<C3DColor4f> && std::is_trivially_copyable_v<C3DColor4f>);

C3DColor4f::C3DColor4f(float r, float g, float b, float a) : m_R(r), m_G(g), m_B(b), m_A(a) {}

C3DColor4f::C3DColor4f(float c1, float c2, float c3, float a, E3DColorType type) : C3DColor4f()
{
    Set(c1, c2, c3, a, type);
}

C3DColor4f & C3DColor4f::SetNull()
{
    return Set(0, 0, 0, 0);
}

C3DColor4f & C3DColor4f::Set(float r, float g, float b, float a)
{
    m_R = r;
    m_G = g;
    m_B = b;
    m_A = a;
    return *this;
}

C3DColor4f & C3DColor4f::Set(float c1, float c2, float c3, float a, E3DColorType type)
{
    switch (type)
    {
    case E3DCOLORTYPE_RGBA:
        return Set(c1, c2, c3, a);
    case E3DCOLORTYPE_HSVA:
        SetFromHSV(c1, c2, c3);
        break;
    case E3DCOLORTYPE_HLSA:
        SetFromHLS(c1, c2, c3);
        break;
    }
    m_A = a;
    return *this;
}

float & C3DColor4f::R()
{
    return m_R;
}

float const & C3DColor4f::R() const
{
    return m_R;
}

float & C3DColor4f::G()
{
    return m_G;
}

float const & C3DColor4f::G() const
{
    return m_G;
}

float & C3DColor4f::B()
{
    return m_B;
}

float const & C3DColor4f::B() const
{
    return m_B;
}

float & C3DColor4f::A()
{
    return m_A;
}

float const & C3DColor4f::A() const
{
    return m_A;
}

float & C3DColor4f::SetR(float r)
{
    return m_R = r;
}

float & C3DColor4f::SetG(float g)
{
    return m_G = g;
}

float & C3DColor4f::SetB(float b)
{
    return m_B = b;
}

float & C3DColor4f::SetA(float a)
{
    return m_A = a;
}

float * C3DColor4f::RGBA()
{
    return reinterpret_cast<float *>(this);
}

float const * C3DColor4f::RGBA() const
{
    return reinterpret_cast<float const *>(this);
}

C3DColor4f::operator float *()
{
    return RGBA();
}

void C3DColor4f::GetAsRGBA(float & r, float & g, float & b, float & a) const
{
    C3DColor4f const color = *this; // an output may be a component
    r = color.m_R;
    g = color.m_G;
    b = color.m_B;
    a = color.m_A;
}

C3DColor4f & C3DColor4f::Add(C3DColor4f const & other)
{
    return Set(m_R + other.m_R, m_G + other.m_G, m_B + other.m_B, m_A + other.m_A);
}

C3DColor4f & C3DColor4f::Sub(C3DColor4f const & other)
{
    return Set(m_R - other.m_R, m_G - other.m_G, m_B - other.m_B, m_A - other.m_A);
}

C3DColor4f & C3DColor4f::MulComp(C3DColor4f const & other)
{
    return Set(m_R * other.m_R, m_G * other.m_G, m_B * other.m_B, m_A * other.m_A);
}

C3DColor4f & C3DColor4f::Mul(float factor)
{
    return Set(m_R * factor, m_G * factor, m_B * factor, m_A * factor);
}

C3DColor4f & C3DColor4f::Negate()
{
    return Set(-m_R, -m_G, -m_B, -m_A);
}

C3DColor4f & C3DColor4f::InverseRGB()
{
    return Set(1 - m_R, 1 - m_G, 1 - m_B, m_A);
}

int C3DColor4f::IsNull(float eps) const
{
    return std::abs(m_R) <= eps && std::abs(m_G) <= eps && std::abs(m_B) <= eps && std::abs(m_A) <= eps;
}

bool C3DColor4f::operator==(C3DColor4f const & other) const
{
    return m_R == other.m_R && m_G == other.m_G && m_B == other.m_B && m_A == other.m_A;
}

bool C3DColor4f::operator!=(C3DColor4f const & other) const
{
    return !(*this == other);
}

float C3DColor4f::Brightness() const
{
    return (m_B + m_G + m_R) * 0.33333334F;
}

float C3DColor4f::BrightnessWithAlpha() const
{
    return (m_B + m_G + m_R) * m_A * 0.33333334F;
}

float C3DColor4f::Grayscale() const
{
    return m_B * 0.11F + m_G * 0.59F + m_R * 0.3F;
}

float C3DColor4f::GrayscaleWithAlpha() const
{
    return Grayscale() * m_A;
}

long C3DColor4f::Save(IStream * stream, int /*format*/) const
{
    return math::detail::SaveUnchecked(stream, RGBA(), 4);
}

long C3DColor4f::Load(IStream * stream)
{
    return math::detail::LoadUnchecked(stream, RGBA(), 4);
}
