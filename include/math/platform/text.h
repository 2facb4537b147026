#pragma once

/// \file
/// Wide text as narrow text.

#include "math/api.h"

#include <cstddef>

/// Converts wide text to narrow text, which is UTF-8.
///
/// Where `wchar_t` has 2 bytes the source is UTF-16, otherwise it is UTF-32. What is no character there (a lone
/// surrogate, a value above 0x10FFFF) becomes U+FFFD.
/// \param source text that ends with a zero
/// \param destination receives the text with its closing zero: `math::detail::GetNarrowSize(source)` bytes
/// \return 1; 0 when either is null, with nothing written
MATH_API int CharToOemW(wchar_t const * source, char * destination);

namespace math::detail
{

/// The bytes that `CharToOemW` writes for this text, the closing zero included: more than one per character where the
/// text leaves ASCII. 0 for null.
MATH_API std::size_t GetNarrowSize(wchar_t const * source);

} // namespace math::detail
