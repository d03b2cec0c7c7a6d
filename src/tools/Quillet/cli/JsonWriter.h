// A small writer of JSON text for the command line's machine-readable output: objects,
// arrays, strings and numbers, with the commas between members placed by the writer.
//
// Strings are the project's 8-bit text. Quotes, backslashes and control characters are
// escaped (control characters as \u00XX); valid UTF-8 passes through, and any other byte is
// written as the Latin-1 character of its value, so the text is always valid JSON whatever a
// file name holds. Numbers that are not finite are written as null, which JSON has instead.
//
// Failure style: none; a value written where JSON allows none is the caller's error.
#pragma once

#include <concepts>
#include <string>
#include <string_view>
#include <vector>

class JsonWriter {
public:
    JsonWriter& BeginObject();
    JsonWriter& EndObject();
    JsonWriter& BeginArray();
    JsonWriter& EndArray();
    // The name of the object's next member; its value follows.
    JsonWriter& Key(std::string_view name);
    JsonWriter& String(std::string_view text);
    template <std::integral Integer>
    JsonWriter& Number(Integer value) {
        return Value(std::to_string(value));
    }
    // `value` in fixed notation with `decimals` digits after the point.
    JsonWriter& Decimal(double value, int decimals);

    const std::string& Text() const { return text_; }

private:
    // Writes `json` as the next value: after a comma when its array already holds one.
    JsonWriter& Value(std::string_view json);
    JsonWriter& Open(char bracket);
    JsonWriter& Close(char bracket);

    std::string text_;
    std::vector<bool> empty_;  // for each array or object open: nothing written in it yet
    bool after_key_ = false;   // a member's name is written and awaits its value
};
