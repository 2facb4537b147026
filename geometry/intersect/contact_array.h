#pragma once

#include "math/contact_record.h"
#include "math/platform/task_memory.h"

#include <cstddef>
#include <cstdint>

namespace math::detail
{

/// An array of records for the caller to free, uninitialised; null when memory is short.
inline tagS3DGEOMINFO * AllocateContacts(std::size_t count)
{
    if (count > SIZE_MAX / sizeof(tagS3DGEOMINFO))
    {
        return nullptr;
    }
    return static_cast<tagS3DGEOMINFO *>(CoTaskMemAlloc(count * sizeof(tagS3DGEOMINFO)));
}

} // namespace math::detail
