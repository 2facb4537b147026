#include "exports/exported.h"

#include "math/view_volume.h"

using exported::Constructor;
using exported::Member;

TEST(Exports, ViewVolume)
{
    using Volume = C3DViewVolume;
    using Vector = C3DVector3Tpl<double>;
    using Matrix = C3DXfoMatTpl<double>;
    Constructor<Volume>();
    Constructor<Volume>(Volume());
    Member<Volume &(Volume const &)>(&Volume::operator=);
    Member<void(int)>(&Volume::SetViewSpace);
    Member<void(double, double, double, double, double, double, Matrix const &, int)>(&Volume::Set);
    Member<void(double, double, double, double, double, double, Matrix const &)>(&Volume::SetOrtho);
    Member<void(double, double, double, double, double, double, Matrix const &)>(&Volume::SetFrustum);
    Member<void(double, double, double, double, Matrix const &)>(&Volume::SetPersp);
    Member<tagE3DVIEWINTERSECTION(Vector const *, Matrix const *) const>(&Volume::Classify);
}
