#include "math/platform/stream.h"

#include "math/platform/result.h"

namespace math::detail
{

long CountedStream::QueryInterface(_GUID const & iid, void ** out)
{
    if (out == nullptr)
    {
        return E_POINTER;
    }
    *out = nullptr;
    if (iid != IID_IUnknown && iid != IID_IStream)
    {
        return E_NOINTERFACE;
    }
    *out = static_cast<IStream *>(this);
    AddRef();
    return S_OK;
}

unsigned long CountedStream::AddRef()
{
    return ++m_references;
}

unsigned long CountedStream::Release()
{
    unsigned long const references = --m_references;
    if (references == 0)
    {
        delete this;
    }
    return references;
}

} // namespace math::detail
