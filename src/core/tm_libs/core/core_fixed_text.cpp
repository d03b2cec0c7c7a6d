#include "core_fixed_text.h"

#include <cstdarg>
#include <cstdio>

namespace Core::Detail {

void FixedText::append(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int wanted = std::vsnprintf(text_ + size_, kCapacity - size_, format, arguments);
    va_end(arguments);
    if (wanted < 0) {
        text_[size_] = '\0';
        return;
    }
    const std::size_t room = kCapacity - 1 - size_;
    size_ += static_cast<std::size_t>(wanted) < room ? static_cast<std::size_t>(wanted) : room;
}

void FixedText::clear() {
    size_ = 0;
    text_[0] = '\0';
}

}  // namespace Core::Detail
