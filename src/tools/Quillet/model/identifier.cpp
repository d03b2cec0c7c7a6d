#include "identifier.h"

namespace {
bool IsAsciiLetterOrDigit(unsigned char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}
}  // namespace

bool IsValidIdentifier(const std::string& text) {
    if (text.empty() || (text[0] >= '0' && text[0] <= '9')) return false;
    for (size_t index = 1; index < text.size(); ++index) {
        const auto c = static_cast<unsigned char>(text[index]);
        if (!IsAsciiLetterOrDigit(c) && c != '_') return false;
    }
    return true;
}
