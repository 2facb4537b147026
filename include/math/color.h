#pragma once

/// \file
/// The colour.

#include "math/api.h"

class IStream;

namespace math::detail
{

class ColorInspector;

} // namespace math::detail

/// A colour of red, green, blue and alpha, with conversions to and from hue, saturation and value, and hue, lightness
/// and saturation. Everything lies in 0 to 1, hue too, which is red at 0 and at 1; nothing is clamped, so that what
/// lies outside passes through.
///
/// Methods write into the colour and return it. (A. R. Smith, "Color gamut transform pairs", SIGGRAPH 1978.)
class MATH_API C3DColor4f
{
public:
    /// What the first three arguments mean.
    enum E3DColorType : int
    {
        E3DCOLORTYPE_RGBA = 0, ///< red, green, blue
        E3DCOLORTYPE_HSVA = 1, ///< hue, saturation, value
        E3DCOLORTYPE_HLSA = 2  ///< hue, lightness, saturation
    };

    /// \name Construction and access
    ///@{

    /// Black without alpha where nothing is given.
    C3DColor4f(float r = 0, float g = 0, float b = 0, float a = 0); // NOLINT(google-explicit-constructor)

    /// As `Set` with the same arguments; what that leaves is 0.
    C3DColor4f(float c1, float c2, float c3, float a, E3DColorType type);

    /// Black without alpha.
    C3DColor4f & SetNull();
    /// Stores the four components as they are.
    C3DColor4f & Set(float r, float g, float b, float a);

    /// Stores a colour that is told by hue, or by red, green and blue.
    /// \param c1,c2,c3 by `type`
    /// \param a alpha, always stored
    /// \param type a value that names none leaves red, green and blue
    ///
    /// A hue below 0, from 7/6 on, or a NaN leaves red, green and blue too; from 1 to 7/6 it goes round again. Two
    /// kinds of colour have no hue, and take any: a grey in the value model (saturation 0), and black in the lightness
    /// model (a highest component of 0). **A grey in the lightness model is not among them.**
    C3DColor4f & Set(float c1, float c2, float c3, float a, E3DColorType type);

    /// References to a component.
    ///@{
    float & R();
    float const & R() const;
    float & G();
    float const & G() const;
    float & B();
    float const & B() const;
    float & A();
    float const & A() const;
    ///@}

    /// Store a component and give a reference to it.
    ///@{
    float & SetR(float r);
    float & SetG(float g);
    float & SetB(float b);
    float & SetA(float a);
    ///@}

    /// The four components as an array, valid as long as the colour is.
    ///@{
    float * RGBA();
    float const * RGBA() const;
    operator float *(); // NOLINT(google-explicit-constructor): colours pass where four numbers are wanted
    ///@}

    /// The four components. The outputs may be components of the colour.
    void GetAsRGBA(float & r, float & g, float & b, float & a) const;
    ///@}

    /// \name Hue, saturation, value and lightness
    /// A grey has hue 0 and saturation 0. A greatest component of 0 counts as black in the value model, and for `H`,
    /// whatever the others. Outside the unit range the saturation of the lightness model can be negative, and infinite
    /// where the greatest and the smallest component sum to 0 or to 2. A hue just below a whole turn rounds to 1. The
    /// outputs may be components of the colour.
    ///@{

    /// Hue, saturation and value; alpha as it is.
    void GetAsHSVA(float & h, float & s, float & v, float & a) const;
    /// Hue, lightness and saturation; alpha as it is.
    void GetAsHLSA(float & h, float & l, float & s, float & a) const;
    /// The hue of the value model.
    float H() const;
    /// The mean of the greatest and the smallest component.
    float L() const;
    /// The greatest component.
    float V() const;
    /// The saturation of either model.
    ///@{
    float S_HSVA() const;
    float S_HLSA() const;
    ///@}
    ///@}

    /// \name Arithmetic
    /// Component by component, alpha included.
    ///@{
    C3DColor4f & Add(C3DColor4f const & other);
    C3DColor4f & Sub(C3DColor4f const & other);
    C3DColor4f & MulComp(C3DColor4f const & other);
    C3DColor4f & Mul(float factor);
    C3DColor4f & Negate();

    /// The complement of red, green and blue; alpha stays.
    C3DColor4f & InverseRGB();
    ///@}

    /// \name Tests and brightness
    ///@{

    /// 1 where the magnitude of all four components is at most `eps`, else 0, for a NaN too.
    int IsNull(float eps) const;

    /// Exact comparison of all four. A NaN differs from itself.
    ///@{
    bool operator==(C3DColor4f const & other) const;
    bool operator!=(C3DColor4f const & other) const;
    ///@}

    /// The mean of red, green and blue.
    float Brightness() const;
    /// The same times alpha.
    float BrightnessWithAlpha() const;

    /// Red, green and blue weighted as the eye does: 0.3, 0.59, 0.11.
    float Grayscale() const;
    /// The same times alpha.
    float GrayscaleWithAlpha() const;
    ///@}

    /// \name Persistence
    ///@{

    /// Writes and reads the four components as plain `float`s. What cannot be read stays; the result is always 0.
    ///@{
    long Save(IStream * stream, int format) const;
    long Load(IStream * stream);
    ///@}
    ///@}

private:
    friend class math::detail::ColorInspector;

    /// The floor, by truncation: just above -1, -2, -4 and so on, where x - 1 rounds, one below it. What no `long` can
    /// hold, and a NaN, is the least one.
    long RoundDown(float x) const;
    /// The smallest and the greatest of red, green and blue. A comparison with a NaN takes its second operand for the
    /// greater.
    void MinMax(float & min, float & max) const;
    /// The hue of a colour that is no grey, from what MinMax gives.
    float HueOf(float min, float max) const;
    void SetFromHSV(float h, float s, float v);
    void SetFromHLS(float h, float l, float s);
    void SetBySector(long sector, float high, float low, float rising, float falling);

    float m_R;
    float m_G;
    float m_B;
    float m_A;
};
