#pragma once

#include <cstddef>
#include <string>

/// How often a text has a part, overlaps not counted.
inline std::size_t Count(std::string const & text, std::string const & part)
{
    std::size_t count = 0;
    for (std::size_t place = 0; (place = text.find(part, place)) != std::string::npos; place += part.size())
    {
        ++count;
    }
    return count;
}
