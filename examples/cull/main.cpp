#include "cull/cull.h"

#include <cstddef>
#include <iostream>
#include <span>

int main(int argumentCount, char ** arguments)
{
    // The first argument is the program's name, where the system gives one at all.
    std::span<char const * const> const all(arguments, static_cast<std::size_t>(argumentCount));
    return cull::Run(all.empty() ? all : all.subspan(1), std::cout, std::cerr);
}
