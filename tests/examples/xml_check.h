#pragma once

#include <string>
#include <string_view>

/// What keeps a text from being a well-formed XML document of elements, attributes and text, or nothing where it is
/// one. It knows as much of XML as the drawings use: no declarations, comments or sections.
std::string FindXmlFault(std::string_view text);
