#pragma once

/// \file
/// Two numbers side by side.

namespace math::detail
{

/// In a register that every x86-64 has. Each operation rounds either as it would alone.
typedef double Pair __attribute__((vector_size(16))); // NOLINT(modernize-use-using): takes the attribute

} // namespace math::detail
