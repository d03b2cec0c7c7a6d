// The line syntax of the project file, shared by every record reader and writer.
//
// Lines are written with CRLF and indented 2 spaces per open block; readers trim the
// indent away. Values are bare: there is no escaping. Numbers are "%d", booleans
// "true"/"false".
//
// Failure style: readers throw the empty records of qlt_errors.h by value.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "framework/Archive.h"

using framework::Archive;

// Spaces before the next written line; each open block raises it by 2.
extern int32_t write_indent;

void WriteOpenTag(Archive& archive, std::string_view tag);
void WriteOpenLine(Archive& archive, std::string_view tag, std::string_view value);
void WriteTagLine(Archive& archive, std::string_view open, std::string_view value,
                  std::string_view close);
void WriteCloseLine(Archive& archive, std::string_view close);
// "%d"
std::string FormatInt(int32_t value);

// Reads the next line and trims spaces, tabs and line feeds from both ends. At the end of
// the file the line is empty.
void ReadTrimmedLine(Archive& archive, std::string& line);
// The same line as a view of the archive's input, valid while that input lives.
std::string_view ReadTrimmedView(Archive& archive);
// ReadTrimmedLine for a reader that waits for a close line: at the end of the file it
// throws UNEXPECTED_END_OF_FILE instead of handing out empty lines for ever.
void ReadAwaitedLine(Archive& archive, std::string& line);
bool IsBlankLine(const std::string& line);
// True when `line` begins with `open` and ends with `close`; then `line` keeps only the
// value between them. Case-sensitive; on false `line` is unchanged.
bool MatchTag(std::string& line, std::string_view open, std::string_view close);
// The test of MatchTag without changing `line`: on true the value goes to `value`.
bool TagValue(std::string_view line, std::string_view open, std::string_view close,
              std::string_view& value);
bool TagValue(std::string_view line, std::string_view open, std::string_view close,
              std::string& value);
// True when the first characters of `line` are the whole of `tag`.
bool BeginsWith(const std::string& line, std::string_view tag);
// The text from character `count` on; empty when the line is shorter.
std::string TextAfter(const std::string& line, size_t count);

// sscanf(text, "%d", &value): 1 when a number was read into `value`, 0 when the text does
// not begin like a number, -1 when it holds nothing but white space. An over-long number
// keeps its low 32 bits.
int ScanInt(std::string_view text, int32_t& value);
// Scans a tag's value into `value`; a value that does not begin like a number throws
// BAD_TAG, an empty one leaves `value` as it was.
void ReadIntValue(std::string_view text, int32_t& value);

// The next line as `open VALUE close`, trimmed; a wrong line throws `WrongLine`. The value
// views the archive's input.
template <typename WrongLine>
std::string_view ReadTaggedView(Archive& archive, std::string_view open, std::string_view close) {
    std::string_view value;
    if (!TagValue(ReadTrimmedView(archive), open, close, value)) throw WrongLine();
    return value;
}

// The next line as `open VALUE close`, trimmed; a wrong line throws `WrongLine`.
template <typename WrongLine>
std::string ReadTaggedValue(Archive& archive, std::string_view open, std::string_view close) {
    return std::string(ReadTaggedView<WrongLine>(archive, open, close));
}

// The same for a number, scanned as ReadIntValue does.
template <typename WrongLine>
void ReadTaggedNumber(Archive& archive, std::string_view open, std::string_view close,
                      int32_t& value) {
    ReadIntValue(ReadTaggedView<WrongLine>(archive, open, close), value);
}
