#include "math/space_mapping.h"

namespace
{

bool IsWithoutScale(tagE3DVECTORTYPE type)
{
    return type == E3DVECTORTYPE_NOSCALE || type == E3DVECTORTYPE_DIRECTION;
}

} // namespace

C3DXfoMatTpl<double> & GetMapSpaceToWorld(tagE3DVECTORTYPE type, C3DTransfo & space, C3DXfoMatTpl<double> & out)
{
    if (type == E3DVECTORTYPE_FULL)
    {
        space.GetMatrix(out);
    }
    if (IsWithoutScale(type))
    {
        out.Set(*space.GetRotation());
    }
    if (type == E3DVECTORTYPE_NOSCALE)
    {
        C3DVector3Tpl<double> translation;
        space.GetTranslation(translation);
        out.SetTranslation(translation);
    }
    return out;
}

C3DXfoMatTpl<double> & GetMapWorldToSpace(tagE3DVECTORTYPE type, C3DTransfo & space, C3DXfoMatTpl<double> & out)
{
    if (type == E3DVECTORTYPE_FULL)
    {
        space.GetInvMatrix(out);
    }
    if (IsWithoutScale(type))
    {
        out.SetWithTranspose(*space.GetRotation());
    }
    if (type == E3DVECTORTYPE_NOSCALE)
    {
        C3DVector3Tpl<double> translation;
        space.GetTranslation(translation);
        out.SetTranslation(translation.Mul(*space.GetRotation(), translation.Negate()));
    }
    return out;
}

C3DXfoMatTpl<double> & GetMapSpaceToSpace(tagE3DVECTORTYPE type, C3DTransfo & from, C3DTransfo & to,
                                          C3DXfoMatTpl<double> & out)
{
    C3DXfoMatTpl<double> toWorld;
    GetMapSpaceToWorld(type, from, toWorld);
    GetMapWorldToSpace(type, to, out);
    return out.Mul(toWorld, out);
}

C3DVector3Tpl<double> & MapDirSpaceToWorld(C3DRotation & r, C3DVector3Tpl<double> const & in,
                                           C3DVector3Tpl<double> & out)
{
    r.RotateVct(in, out);
    return out;
}

C3DVector3Tpl<double> & MapDirWorldToSpace(C3DRotation & r, C3DVector3Tpl<double> const & in,
                                           C3DVector3Tpl<double> & out)
{
    r.InvRotateVct(in, out);
    return out;
}

C3DVector3Tpl<double> & MapDirSpaceToSpace(C3DRotation & from, C3DRotation & to, C3DVector3Tpl<double> const & in,
                                           C3DVector3Tpl<double> & out)
{
    return MapDirWorldToSpace(to, MapDirSpaceToWorld(from, in, out), out);
}
