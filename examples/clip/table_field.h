#pragma once

#include <string>

namespace clip
{

/// A text as it may stand between the commas of a table: quoted where it has a comma or a quote in it, and every quote
/// then doubled.
std::string QuotedField(std::string const & text);

} // namespace clip
