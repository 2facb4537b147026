#pragma once

/// \file
/// Result codes of the operations that return `long`.
///
/// Zero or above is success, negative is failure; a caller tests the sign. The codes are 32-bit numbers, sign-extended
/// where `long` is wider, so that a failure is negative on every platform.

#include <cstdint>

namespace math::detail
{

/// The 32-bit code as a `long`: its top bit becomes the sign.
constexpr long MakeResult(std::uint32_t code)
{
    return static_cast<long>(static_cast<std::int32_t>(code));
}

} // namespace math::detail

inline constexpr long S_OK = 0;    ///< Success.
inline constexpr long S_FALSE = 1; ///< Success with nothing, or with less than was asked for, to report.

inline constexpr long E_NOTIMPL = math::detail::MakeResult(0x80004001U);     ///< These operands have no implementation.
inline constexpr long E_NOINTERFACE = math::detail::MakeResult(0x80004002U); ///< The object lacks the interface.
inline constexpr long E_POINTER = math::detail::MakeResult(0x80004003U);     ///< A null pointer where one is needed.
inline constexpr long E_FAIL = math::detail::MakeResult(0x80004005U);        ///< No result.
inline constexpr long E_UNEXPECTED = math::detail::MakeResult(0x8000FFFFU);  ///< A degenerate input.
inline constexpr long E_OUTOFMEMORY = math::detail::MakeResult(0x8007000EU); ///< An allocation failed.
inline constexpr long E_INVALIDARG = math::detail::MakeResult(0x80070057U);  ///< An argument out of its range.
