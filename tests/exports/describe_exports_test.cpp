#include "describe/color_inspector.h"
#include "exports/exported.h"

#include "math/icon_description.h"
#include "math/shape_description.h"

using exported::Constructor;
using exported::Data;
using exported::Function;
using exported::Member;
using math::detail::ColorInspector;

TEST(Exports, Color)
{
    using C = C3DColor4f;
    Constructor<C>();
    Constructor<C>(1.0F, 2.0F, 3.0F, 4.0F);
    Constructor<C>(1.0F, 2.0F, 3.0F, 4.0F, C::E3DCOLORTYPE_HSVA);
    Member(&C::SetNull);
    Member<C &(float, float, float, float)>(&C::Set);
    Member<C &(float, float, float, float, C::E3DColorType)>(&C::Set);
    Member<float &()>(&C::R);
    Member<float &()>(&C::G);
    Member<float &()>(&C::B);
    Member<float &()>(&C::A);
    Member<float const &() const>(&C::R);
    Member<float const &() const>(&C::G);
    Member<float const &() const>(&C::B);
    Member<float const &() const>(&C::A);
    Member<float &(float)>(&C::SetR);
    Member<float &(float)>(&C::SetG);
    Member<float &(float)>(&C::SetB);
    Member<float &(float)>(&C::SetA);
    Member<float *()>(&C::RGBA);
    Member<float const *() const>(&C::RGBA);
    Member(&C::operator float *);
    Member(&C::GetAsRGBA);
    Member(&C::GetAsHSVA);
    Member(&C::GetAsHLSA);
    Member(&C::H);
    Member(&C::L);
    Member(&C::V);
    Member(&C::S_HSVA);
    Member(&C::S_HLSA);
    Member(&C::Add);
    Member(&C::Sub);
    Member(&C::MulComp);
    Member(&C::Mul);
    Member(&C::Negate);
    Member(&C::InverseRGB);
    Member<int(float) const>(&C::IsNull);
    Member<bool(C const &) const>(&C::operator==);
    Member<bool(C const &) const>(&C::operator!=);
    Member(&C::Brightness);
    Member(&C::BrightnessWithAlpha);
    Member(&C::Grayscale);
    Member(&C::GrayscaleWithAlpha);
    Member<long(IStream *, int) const>(&C::Save);
    Member<long(IStream *)>(&C::Load);
    Member(ColorInspector::RoundDown);
    Member(ColorInspector::MinMax);
}

TEST(Exports, Icon_description)
{
    using D = C3DIconDescription;
    Constructor<D>();
    D const icon;
    Constructor<D>(icon);
    Member<D &(D const &)>(&D::operator=);
    Member(&D::Set);
    Member<bool(D const &) const>(&D::operator==);
    Member(&D::IsAlmostEqual);
    Member(&D::GetIconType);
    Member(&D::SetIconType);
    Function<CQNString(D::E3DIconType)>(&D::GetIconTypeName);
    Member<CQNString() const>(&D::GetIconTypeName);
    Member<long(IStream *, int) const>(&D::Save);
    Member<long(IStream *)>(&D::Load);
}

TEST(Exports, Shape_description)
{
    using D = C3DShapeDescription;
    Constructor<D>();
    Constructor<D>(D::E3DSHAPETYPE_BOX);
    D const shape;
    Constructor<D>(shape);
    Member<D &(D const &)>(&D::operator=);
    Member(&D::Set);
    Member<bool(D const &) const>(&D::operator==);
    Member(&D::IsAlmostEqual);
    Member(&D::IsTrivial);
    Member(&D::GetType);
    Member(&D::SetAsTrivial);
    Member(&D::SetAsInstance);
    Member(&D::SetAsReference);
    Member(&D::GetInstanceDescription);
    Member(&D::GetReferenceDescription);
    Function(&D::GetShapeTypeName);
    Member<long(IStream *, int) const>(&D::Save);
    Member<long(IStream *)>(&D::Load);
    Data(D::k_ShapeTypeNameMaxSize);
}
