// The first calls of the page on colours and descriptors. The program fails where they do not give what the page says.

//! [first call]
#include <math/color.h>
#include <math/shape_description.h>

#include <cmath>

int main()
{
    C3DColor4f orange(1, 0.5F, 0, 1);
    float hue = 0;
    float saturation = 0;
    float value = 0;
    float alpha = 0;
    orange.GetAsHSVA(hue, saturation, value, alpha); // 1/12 of a turn, 1, 1, 1
    C3DColor4f blue;
    blue.Set(hue + 0.5F, saturation, value, alpha, C3DColor4f::E3DCOLORTYPE_HSVA); // across the circle of hues

    C3DShapeDescription shape(C3DShapeDescription::E3DSHAPETYPE_CAPSULE);
    C3DShapeDescription copy;
    copy.Set(shape); // the type, and its parameters where it has some
    bool const isSame = copy == shape;
    return std::abs(hue - 1.0F / 12) < 1e-6F && std::abs(blue.B() - 1) < 1e-6F && isSame ? 0 : 1;
}
//! [first call]
