// A line of text in a fixed buffer, for code that runs while the program may be in a bad
// state (the stack walker in a crash handler): appending never allocates, and what does not
// fit is cut off.
#pragma once

#include <cstddef>

namespace Core::Detail {

class FixedText {
public:
    static constexpr std::size_t kCapacity = 1024;

    // printf-style text behind what is there.
    void append(const char* format, ...) __attribute__((format(printf, 2, 3)));
    void clear();

    const char* c_str() const { return text_; }
    bool empty() const { return size_ == 0; }

private:
    char text_[kCapacity] = "";
    std::size_t size_ = 0;
};

}  // namespace Core::Detail
