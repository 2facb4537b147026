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

/// Writes or reads the scalars in order, up to the first that fails. \return its code, or that of the last
template <typename T>
long PutScalars(CKVStreamHelper & helper, T const * values, std::size_t count)
{
    long result = 0;
    for (std::size_t i = 0; i < count && result >= 0; ++i)
    {
        result = PutScalar(helper, values[i]);
    }
    return result;
}
template <typename T>
long GetScalars(CKVStreamHelper & helper, T * values, std::size_t count)
{
    long result = 0;
    for (std::size_t i = 0; i < count && result >= 0; ++i)
    {
        result = GetScalar(helper, values + i);
    }
    return result;
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
