#include "core_text.h"

namespace Core {

std::string narrow_text(const std::wstring& text) {
    std::string narrow;
    narrow.reserve(text.size());
    for (const wchar_t character : text) {
        const auto code = static_cast<uint32_t>(character);
        if (code < 0x80) {
            narrow += static_cast<char>(code);
        } else if (code < 0x800) {
            narrow += static_cast<char>(0xC0 | (code >> 6));
            narrow += static_cast<char>(0x80 | (code & 0x3F));
        } else if (code < 0x10000 && (code < 0xD800 || code > 0xDFFF)) {
            narrow += static_cast<char>(0xE0 | (code >> 12));
            narrow += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
            narrow += static_cast<char>(0x80 | (code & 0x3F));
        } else if (code >= 0x10000 && code < 0x110000) {
            narrow += static_cast<char>(0xF0 | (code >> 18));
            narrow += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
            narrow += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
            narrow += static_cast<char>(0x80 | (code & 0x3F));
        } else {
            narrow += '?';
        }
    }
    return narrow;
}

}  // namespace Core
