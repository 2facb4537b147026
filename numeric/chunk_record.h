#pragma once

/// \file
/// Saving an object as a chunk, all or nothing as far as the stream's position goes.

#include "math/platform/result.h"
#include "math/platform/stream_helper.h"

namespace math::detail
{

/// Writes a chunk whose content `writeContent` writes, with the helper that it is given or another on the same stream;
/// it returns a result code. On any failure the stream is taken back to where it stood, and the code of the failure is
/// returned.
template <typename WriteContent>
long SaveChunk(IStream * stream, unsigned long tag, unsigned long version, WriteContent writeContent)
{
    CKVStreamHelper helper(stream);
    if (stream == nullptr)
    {
        return E_INVALIDARG;
    }
    unsigned long start = 0;
    long result = helper.GetPos(&start);
    bool const startIsKnown = result >= 0;
    if (result >= 0)
    {
        result = helper.ChunkWriteOpen(tag, version);
    }
    if (result >= 0)
    {
        result = writeContent(helper);
    }
    if (result >= 0)
    {
        result = helper.ChunkWriteClose();
    }
    if (result < 0)
    {
        helper.ChunkWriteClose();
        unsigned long now = 0;
        if (startIsKnown && helper.GetPos(&now) >= 0)
        {
            helper.MovePos(STMHELPERDIR_BACK, now - start);
        }
    }
    return result;
}

} // namespace math::detail
