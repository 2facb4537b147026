#include "clip/table_field.h"

namespace clip
{

std::string QuotedField(std::string const & text)
{
    if (text.find_first_of(",\"") == std::string::npos)
    {
        return text;
    }
    std::string quoted = "\"";
    for (char const c : text)
    {
        quoted += c == '"' ? "\"\"" : std::string(1, c);
    }
    return quoted + '"';
}

} // namespace clip
