#include "math/color.h"

#include <limits>

namespace
{

/// Truncated towards zero. What no `long` can hold, and a NaN, is the smallest one.
long Truncate(float x)
{
    constexpr auto least = std::numeric_limits<long>::min();
    constexpr auto limit = -static_cast<float>(least);
    return x >= -limit && x < limit ? static_cast<long>(x) : least;
}

} // namespace

long C3DColor4f::RoundDown(float x) const
{
    long const whole = Truncate(x);
    // Just above -1, -2, -4 and so on x - 1 rounds down, and the result is one below the floor. No hue there counts.
    return x >= 0 || x == static_cast<float>(whole) ? whole : Truncate(x - 1);
}

void C3DColor4f::MinMax(float & min, float & max) const
{
    // Each comparison that is false, as every one with a NaN is, takes its second operand for the greater one.
    if (m_R > m_G)
    {
        bool const isRedGreatest = m_R > m_B;
        max = isRedGreatest ? m_R : m_B;
        min = isRedGreatest && m_G > m_B ? m_B : m_G;
    }
    else
    {
        bool const isGreenGreatest = m_G > m_B;
        max = isGreenGreatest ? m_G : m_B;
        min = isGreenGreatest && m_R > m_B ? m_B : m_R;
    }
}

float C3DColor4f::HueOf(float min, float max) const
{
    float const d = max - min;
    float u = (m_B - m_R) / d + 2.0F;
    if (m_R == max)
    {
        u = (m_G - m_B) / d;
    }
    else if (m_G != max)
    {
        u = (m_R - m_G) / d + 4.0F;
    }
    u *= 60.0F;
    if (!(u >= 0))
    {
        u += 360.0F;
    }
    return u * 0.0027777778F;
}

/// The six sectors of the hue, between red, yellow, green, cyan, blue and magenta. In each one component is high, one
/// low and one between, which rises in even sectors and falls in odd ones. A hue of 1 is red again; others stay out.
void C3DColor4f::SetBySector(long sector, float high, float low, float rising, float falling)
{
    switch (sector)
    {
    case 0:
    case 6:
        Set(high, rising, low, m_A);
        break;
    case 1:
        Set(falling, high, low, m_A);
        break;
    case 2:
        Set(low, high, rising, m_A);
        break;
    case 3:
        Set(low, falling, high, m_A);
        break;
    case 4:
        Set(rising, low, high, m_A);
        break;
    case 5:
        Set(high, low, falling, m_A);
        break;
    default:
        break;
    }
}

void C3DColor4f::SetFromHSV(float h, float s, float v)
{
    if (s == 0)
    {
        Set(v, v, v, m_A);
        return;
    }
    float const x = h * 6;
    long const sector = RoundDown(x);
    float const f = x - static_cast<float>(sector);
    SetBySector(sector, v, (1 - s) * v, (1 - (1 - f) * s) * v, (1 - f * s) * v);
}

void C3DColor4f::SetFromHLS(float h, float l, float s)
{
    float const high = l > 0.5F ? l + s - l * s : (s + 1) * l;
    if (high == 0)
    {
        Set(0, 0, 0, m_A);
        return;
    }
    float const x = h * 6;
    long const sector = RoundDown(x);
    float const f = x - static_cast<float>(sector);
    float const low = 2 * l - high;
    float const way = (high - low) * f;
    SetBySector(sector, high, low, way + low, high - way);
}

void C3DColor4f::GetAsHSVA(float & h, float & s, float & v, float & a) const
{
    C3DColor4f const color = *this; // an output may be a component
    float min = 0;
    float max = 0;
    color.MinMax(min, max);
    float const saturation = max == 0 ? 0 : (max - min) / max;
    h = saturation == 0 ? 0 : color.HueOf(min, max);
    s = saturation;
    v = max;
    a = color.m_A;
}

void C3DColor4f::GetAsHLSA(float & h, float & l, float & s, float & a) const
{
    C3DColor4f const color = *this;
    float min = 0;
    float max = 0;
    color.MinMax(min, max);
    float const d = max - min;
    float const sum = max + min;
    l = sum * 0.5F;
    a = color.m_A;
    float saturation = 0;
    if (d != 0)
    {
        saturation = l > 0.5F ? d / (2.0F - sum) : d / sum;
    }
    s = saturation;
    h = saturation == 0 ? 0 : color.HueOf(min, max);
}

float C3DColor4f::H() const
{
    float min = 0;
    float max = 0;
    MinMax(min, max);
    return max == 0 || max - min == 0 ? 0 : HueOf(min, max);
}

float C3DColor4f::L() const
{
    float min = 0;
    float max = 0;
    MinMax(min, max);
    return (min + max) * 0.5F;
}

float C3DColor4f::V() const
{
    float min = 0;
    float max = 0;
    MinMax(min, max);
    return max;
}

float C3DColor4f::S_HSVA() const
{
    float min = 0;
    float max = 0;
    MinMax(min, max);
    return max == 0 ? 0 : (max - min) / max;
}

float C3DColor4f::S_HLSA() const
{
    float min = 0;
    float max = 0;
    MinMax(min, max);
    float const d = max - min;
    float const sum = max + min;
    if (d == 0)
    {
        return 0;
    }
    return sum > 1.0F ? d / (2.0F - sum) : d / sum;
}
