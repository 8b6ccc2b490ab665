#pragma once

#include <ostream>
#include <string>
#include <string_view>

namespace velda {

// The fields of the CSV tables that statistics programs read. The program's
// texts are Latin-1 bytes; these tables are UTF-8.

// The Latin-1 text in UTF-8: every byte is the code point of its value.
std::string latin1ToUtf8(std::string_view latin1);

// Writes a name as one field, in UTF-8. The field is put between double
// quotes, with its own double quotes doubled, when the name holds a control
// character or any of the characters of quotedWhen.
void writeTextField(std::ostream& out, std::string_view latin1, std::string_view quotedWhen);

// Writes a real with the fewest digits that read back as the same double
// ("0.1", "1e+300", "nan", "-inf"), so nothing is lost on the way.
void writeNumber(std::ostream& out, double value);

}  // namespace velda
