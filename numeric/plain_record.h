#pragma once

/// \file
/// Plain records: scalars in a stream, with no tag, length or version.

#include "math/platform/stream_helper.h"

#include <cstddef>

namespace math::detail
{

inline long PutScalar(CKVStreamHelper & helper, float value)
{
    return helper.PutFloat(value);
}
inline long PutScalar(CKVStreamHelper & helper, double value)
{
    return helper.PutDouble(value);
}
inline long GetScalar(CKVStreamHelper & helper, float * value)
{
    return helper.GetFloat(value);
}
inline long GetScalar(CKVStreamHelper & helper, double * value)
{
    return helper.GetDouble(value);
}

/// Writes the scalars in order. Most plain records do not look at the stream's results: callers rely on their success.
template <typename T>
long SaveUnchecked(IStream * stream, T const * values, std::size_t count)
{
    CKVStreamHelper helper(stream);
    for (std::size_t i = 0; i < count; ++i)
    {
        static_cast<void>(PutScalar(helper, values[i]));
    }
    return 0;
}

/// Reads the scalars in order; one that cannot be read keeps its value.
template <typename T>
long LoadUnchecked(IStream * stream, T * values, std::size_t count)
{
    CKVStreamHelper helper(stream);
    for (std::size_t i = 0; i < count; ++i)
    {
        static_cast<void>(GetScalar(helper, values + i));
    }
    return 0;
}

} // namespace math::detail
