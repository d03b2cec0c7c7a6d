// Names of records: the test behind "Please use a valid C identifier".
#pragma once

#include <string>

// False for the empty text and a first character from '0' to '9'; any other first
// character passes. Every later character must be an ASCII letter, a digit or '_'.
bool IsValidIdentifier(const std::string& text);

// Names of records hold at most this many characters (the dialogs enforce it).
constexpr size_t kMaxNameLength = 32;

// What a box says of a name that fails the test.
inline constexpr const char* kInvalidIdentifierText =
    "Please use a valid C identifier:\n\nNo spaces or tab characters\nStart with a letter\n"
    "Only use letters, numbers and the underscore character.";
