#include "qlt_syntax.h"

#include <algorithm>

#include "qlt_errors.h"

int32_t write_indent = 0;

namespace {

constexpr std::string_view kLineEnd = "\r\n";

void WriteIndent(Archive& archive) {
    if (write_indent > 0) archive.WriteString(std::string(static_cast<size_t>(write_indent), ' '));
}

bool IsTrimmed(char c) {
    return c == ' ' || c == '\t' || c == '\n';
}

std::string_view Trimmed(std::string_view line) {
    while (!line.empty() && IsTrimmed(line.back()))
        line.remove_suffix(1);
    while (!line.empty() && IsTrimmed(line.front()))
        line.remove_prefix(1);
    return line;
}

bool IsScanSpace(unsigned char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

bool IsDigit(unsigned char c) {
    return c >= '0' && c <= '9';
}

}  // namespace

void WriteOpenTag(Archive& archive, std::string_view tag) {
    WriteIndent(archive);
    archive.WriteString(tag);
    archive.WriteString(kLineEnd);
    write_indent += 2;
}

void WriteOpenLine(Archive& archive, std::string_view tag, std::string_view value) {
    WriteIndent(archive);
    archive.WriteString(tag);
    archive.WriteString(value);
    archive.WriteString(kLineEnd);
    write_indent += 2;
}

void WriteTagLine(Archive& archive, std::string_view open, std::string_view value,
                  std::string_view close) {
    WriteIndent(archive);
    archive.WriteString(open);
    archive.WriteString(value);
    archive.WriteString(close);
    archive.WriteString(kLineEnd);
}

void WriteCloseLine(Archive& archive, std::string_view close) {
    write_indent -= 2;
    WriteIndent(archive);
    archive.WriteString(close);
    archive.WriteString(kLineEnd);
}

std::string FormatInt(int32_t value) {
    return std::to_string(value);
}

std::string_view ReadTrimmedView(Archive& archive) {
    std::string_view line;
    archive.ReadLine(line);
    return Trimmed(line);
}

void ReadTrimmedLine(Archive& archive, std::string& line) {
    line.assign(ReadTrimmedView(archive));
}

void ReadAwaitedLine(Archive& archive, std::string& line) {
    if (archive.AtEnd()) throw UNEXPECTED_END_OF_FILE();
    ReadTrimmedLine(archive, line);
}

bool IsBlankLine(const std::string& line) {
    return std::all_of(line.begin(), line.end(), IsTrimmed);
}

bool MatchTag(std::string& line, std::string_view open, std::string_view close) {
    const std::string_view text = line;
    if (!text.starts_with(open) || !text.ends_with(close)) return false;
    line.resize(line.size() - close.size());
    line.erase(0, std::min(open.size(), line.size()));
    return true;
}

bool TagValue(std::string_view line, std::string_view open, std::string_view close,
              std::string_view& value) {
    if (!line.starts_with(open) || !line.ends_with(close)) return false;
    line.remove_suffix(close.size());
    line.remove_prefix(std::min(open.size(), line.size()));
    value = line;
    return true;
}

bool TagValue(std::string_view line, std::string_view open, std::string_view close,
              std::string& value) {
    std::string_view view;
    if (!TagValue(line, open, close, view)) return false;
    value.assign(view);
    return true;
}

bool BeginsWith(const std::string& line, std::string_view tag) {
    return std::string_view(line).starts_with(tag);
}

std::string TextAfter(const std::string& line, size_t count) {
    return count < line.size() ? line.substr(count) : std::string();
}

int ScanInt(std::string_view text, int32_t& value) {
    size_t at = 0;
    while (at < text.size() && IsScanSpace(static_cast<unsigned char>(text[at])))
        ++at;
    if (at == text.size()) return -1;
    const bool negative = text[at] == '-';
    if (text[at] == '-' || text[at] == '+') ++at;
    if (at == text.size() || !IsDigit(static_cast<unsigned char>(text[at]))) return 0;
    uint32_t magnitude = 0;
    for (; at < text.size() && IsDigit(static_cast<unsigned char>(text[at])); ++at)
        magnitude = magnitude * 10u + static_cast<uint32_t>(text[at] - '0');
    value = static_cast<int32_t>(negative ? 0u - magnitude : magnitude);
    return 1;
}

void ReadIntValue(std::string_view text, int32_t& value) {
    if (ScanInt(text, value) == 0) throw BAD_TAG();
}
