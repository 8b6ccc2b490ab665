#pragma once

#include <cstddef>

namespace velda {

// Text arrives from the database as bytes: UTF-8 when it is valid UTF-8,
// otherwise taken as Latin-1. The program's strings are Latin-1.

// Rewrites text[0..length) in place: valid UTF-8 becomes Latin-1 (characters
// beyond Latin-1 become '?'); anything else is left as Latin-1 bytes. When
// `cut` says the driver shortened the value, an incomplete UTF-8 sequence at
// the very end is dropped rather than spoiling the whole value. Writes a
// terminator and returns the new length.
size_t decodeFetchedText(char* text, size_t length, bool cut);

// Removes blanks, line feeds, tabs, form feeds and backspaces at both ends of
// text[0..length) in place (not carriage returns or vertical tabs). Writes a
// terminator and returns the new length.
size_t trimFetchedText(char* text, size_t length);

// Decodes and trims, in place, a value that the driver wrote into a bound
// buffer holding at most `capacity` bytes and a terminator. `reported` is the
// length the driver gave (negative when it did not know it): longer than
// what the buffer holds, the value was cut. Returns the new length.
size_t cleanBoundText(char* text, size_t capacity, long reported);

}  // namespace velda
