#pragma once

#include "math/implicit_geometry.h"
#include "math/platform/result.h"

namespace math::detail
{

/// Gives an interface of a wrapper, with one reference added. The identity is its read interface.
template <typename ReadInterface, typename Wrapper>
long QueryWrapper(Wrapper & wrapper, _GUID const & readId, _GUID const & iid, void ** out)
{
    if (out == nullptr)
    {
        return E_POINTER;
    }
    *out = nullptr;
    if (iid == IID_IUnknown || iid == readId)
    {
        *out = static_cast<ReadInterface *>(&wrapper);
    }
    else if (iid == IID_I3DImplicitGeometry)
    {
        *out = static_cast<I3DImplicitGeometry *>(&wrapper);
    }
    else
    {
        return E_NOINTERFACE;
    }
    wrapper.AddRef();
    return S_OK;
}

/// Gives a reference back. The last one deletes the wrapper.
template <typename Wrapper>
unsigned long ReleaseWrapper(Wrapper * wrapper, unsigned long & count)
{
    unsigned long const left = --count;
    if (left == 0)
    {
        delete wrapper;
    }
    return left;
}

} // namespace math::detail
