#include "qlt_syntax.h"

#include "qlt_errors.h"

int32_t write_indent = 0;

namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kTrimmed = " \t\n";

void WriteIndent(Archive& archive) {
    if (write_indent > 0) archive.WriteString(std::string(static_cast<size_t>(write_indent), ' '));
}

void Trim(std::string& line) {
    const size_t last = line.find_last_not_of(kTrimmed);
    if (last == std::string::npos) {
        line.clear();
        return;
    }
    line.erase(last + 1);
    line.erase(0, line.find_first_not_of(kTrimmed));
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

void ReadTrimmedLine(Archive& archive, std::string& line) {
    archive.ReadString(line);
    Trim(line);
}

void ReadAwaitedLine(Archive& archive, std::string& line) {
    if (archive.AtEnd()) throw UNEXPECTED_END_OF_FILE();
    ReadTrimmedLine(archive, line);
}

bool IsBlankLine(const std::string& line) {
    return line.find_first_not_of(kTrimmed) == std::string::npos;
}

bool MatchTag(std::string& line, std::string_view open, std::string_view close) {
    const std::string_view text = line;
    if (!text.starts_with(open) || !text.ends_with(close)) return false;
    line.resize(line.size() - close.size());
    line = TextAfter(line, open.size());
    return true;
}

bool BeginsWith(const std::string& line, std::string_view tag) {
    return std::string_view(line).starts_with(tag);
}

std::string TextAfter(const std::string& line, size_t count) {
    return count < line.size() ? line.substr(count) : std::string();
}

int ScanInt(const std::string& text, int32_t& value) {
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

void ReadIntValue(const std::string& text, int32_t& value) {
    if (ScanInt(text, value) == 0) throw BAD_TAG();
}
