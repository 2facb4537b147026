#include "math/transformation.h"
#include "numeric/chunk_record.h"
#include "transform/component_mask.h"
#include "transform/scale_clamp.h"

using namespace math::detail;

unsigned long const C3DTransfo::k_dwTransfo = 0x54525346;
unsigned long const C3DTransfo::k_dwVersion = 0x30313031;
unsigned long const C3DTransfo::k_dwVersion10 = 0x30313030;
unsigned long const C3DTransfo::k_dwVersion40 = 0x30313031;

namespace
{

/// Does the steps of a record one after the other, up to the first that fails. \return its code
template <typename... Steps>
long DoInOrder(Steps... steps)
{
    long result = 0;
    static_cast<void>(((result = steps(), result >= 0) && ...));
    return result;
}

/// Reads a rotation behind a truth value that tells whether there is one.
long LoadOptional(CKVStreamHelper & helper, IStream * stream, C3DRotation & rotation)
{
    int isThere = 0;
    long const result = helper.GetBool(&isThere);
    return result >= 0 && isThere != 0 ? rotation.Load(stream) : result;
}

} // namespace

long C3DTransfo::Save(IStream * stream, int format)
{
    return SaveChunk(stream, k_dwTransfo, k_dwVersion,
                     [this, stream, format](CKVStreamHelper & helper)
                     {
                         FreshenComponents(k_AllComponents);
                         C3DRotation * const orientation = m_pScalingOrientation;
                         return DoInOrder([&] { return helper.PutBool(_IsQNScaling()); },
                                          [&] { return m_Scaling.Save(stream, format); },
                                          [&] { return m_Translation.Save(stream, format); },
                                          [&] { return m_Rotation.Save(stream, format); },
                                          [&] { return helper.PutBool(orientation != nullptr); },
                                          [&]
                                          { return orientation != nullptr ? orientation->Save(stream, format) : 0; });
                     });
}

long C3DTransfo::Load(IStream * stream)
{
    CKVStreamHelper helper(stream);
    if (stream == nullptr)
    {
        return E_INVALIDARG;
    }
    unsigned long version = 0;
    C3DRotation orientation;
    long const result =
        DoInOrder([&] { return helper.ChunkReadOpen(k_dwTransfo, &version); },
                  [&]
                  {
                      int qnScaling = 0;
                      long const read = helper.GetBool(&qnScaling);
                      _SetQNScaling(qnScaling);
                      return read;
                  },
                  [&] { return m_Scaling.Load(stream); }, [&] { return m_Translation.Load(stream); },
                  [&] { return m_Rotation.Load(stream); },
                  [&] { return version >= k_dwVersion40 ? LoadOptional(helper, stream, orientation) : 0; });
    if (result < 0)
    {
        return result;
    }
    m_Scaling = ClampScale(m_Scaling);
    StoreScalingOrientation(orientation);
    MarkComponentsAsSource();
    IsExactlyIdentity();
    return helper.ChunkReadClose();
}
