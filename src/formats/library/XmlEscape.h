#pragma once

#include <string>
#include <string_view>

namespace velda::symlib {

// The longest run of a text on one line of an XML file, well under the
// reader's line limit once the element's tags and indentation are added.
constexpr size_t kMaxXmlTextLine = 2500;

// Appends a text value through the library's escape table, every
// character of it (a text in angle brackets too: written as it stands it
// would be markup). Control characters other than the line break become
// blanks. A text that would
// run past kMaxXmlTextLine characters is broken over several lines, at its
// last blank before the limit where there is one (that blank becomes the
// line break), else at the limit.
void AppendXmlEscaped(std::string& out, std::string_view text);

// Decodes the character references and entities of an XML text or
// attribute value: the table's own references by their inverse, other
// numeric references numerically (above 255 as '?'), and the five
// standard entities. Anything else is kept as written.
std::string DecodeXmlText(std::string_view text);

}  // namespace velda::symlib
