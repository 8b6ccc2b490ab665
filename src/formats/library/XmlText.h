#pragma once

#include <string>
#include <string_view>

namespace velda::symlib {

// Appends a text value through the library's escape table; a text that
// begins with '<' and ends with '>' is appended as it stands.
void AppendXmlEscaped(std::string& out, std::string_view text);

// Decodes the character references and entities of an XML text or
// attribute value: the table's own references by their inverse, other
// numeric references numerically (above 255 as '?'), and the five
// standard entities. Anything else is kept as written.
std::string DecodeXmlText(std::string_view text);

}  // namespace velda::symlib
