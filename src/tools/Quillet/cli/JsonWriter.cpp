#include "JsonWriter.h"

#include <charconv>
#include <cmath>

namespace {

// The length of the well-formed UTF-8 sequence starting at `at`, or 0: no overlong forms,
// no surrogates, nothing above U+10FFFF.
size_t Utf8Length(std::string_view text, size_t at) {
    const auto byte = [&text](size_t index) { return static_cast<unsigned char>(text[index]); };
    const unsigned char lead = byte(at);
    size_t length = 0;
    unsigned char low = 0x80;  // the range of the second byte; the others are 80 to BF
    unsigned char high = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        low = lead == 0xE0 ? 0xA0 : 0x80;
        high = lead == 0xED ? 0x9F : 0xBF;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        low = lead == 0xF0 ? 0x90 : 0x80;
        high = lead == 0xF4 ? 0x8F : 0xBF;
    }
    if (length == 0 || at + length > text.size()) return 0;
    if (byte(at + 1) < low || byte(at + 1) > high) return 0;
    for (size_t next = at + 2; next < at + length; ++next) {
        if (byte(next) < 0x80 || byte(next) > 0xBF) return 0;
    }
    return length;
}

void AppendCodePoint(std::string& json, unsigned char value) {
    static constexpr char kHex[] = "0123456789abcdef";
    json += "\\u00";
    json += kHex[value >> 4];
    json += kHex[value & 0xF];
}

std::string Quoted(std::string_view text) {
    std::string json = "\"";
    for (size_t at = 0; at < text.size();) {
        const auto byte = static_cast<unsigned char>(text[at]);
        if (byte == '"' || byte == '\\') {
            json += '\\';
            json += text[at++];
        } else if (byte < 0x20) {
            AppendCodePoint(json, byte);
            ++at;
        } else if (byte < 0x80) {
            json += text[at++];
        } else if (const size_t length = Utf8Length(text, at); length > 0) {
            json.append(text.substr(at, length));
            at += length;
        } else {
            AppendCodePoint(json, byte);
            ++at;
        }
    }
    return json + "\"";
}

}  // namespace

JsonWriter& JsonWriter::BeginObject() {
    return Open('{');
}

JsonWriter& JsonWriter::EndObject() {
    return Close('}');
}

JsonWriter& JsonWriter::BeginArray() {
    return Open('[');
}

JsonWriter& JsonWriter::EndArray() {
    return Close(']');
}

JsonWriter& JsonWriter::Key(std::string_view name) {
    Value(Quoted(name));
    text_ += ':';
    after_key_ = true;
    return *this;
}

JsonWriter& JsonWriter::String(std::string_view text) {
    return Value(Quoted(text));
}

JsonWriter& JsonWriter::Decimal(double value, int decimals) {
    if (!std::isfinite(value)) return Value("null");
    char digits[400];  // the largest double in fixed notation has 309 digits before the point
    const std::to_chars_result written =
        std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, decimals);
    return Value(std::string_view(digits, static_cast<size_t>(written.ptr - digits)));
}

JsonWriter& JsonWriter::Value(std::string_view json) {
    if (after_key_) {
        after_key_ = false;
    } else if (!empty_.empty()) {
        if (!empty_.back()) text_ += ',';
        empty_.back() = false;
    }
    text_ += json;
    return *this;
}

JsonWriter& JsonWriter::Open(char bracket) {
    Value(std::string_view(&bracket, 1));
    empty_.push_back(true);
    return *this;
}

JsonWriter& JsonWriter::Close(char bracket) {
    empty_.pop_back();
    text_ += bracket;
    return *this;
}
