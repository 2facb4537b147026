#pragma once

#include <ostream>
#include <span>

namespace cull
{

/// The program, from the arguments behind its name to its exit status: 0 done, 1 a file could not be read or written or
/// the strategies contradict each other, 2 a clip or the command line are wrong.
int Run(std::span<char const * const> arguments, std::ostream & output, std::ostream & errors);

} // namespace cull
