// The bytes behind a TGA reader's position, read through its buffer in slices: small pieces
// (packet headers, run elements, indices, parts of a row to convert) come out of a window,
// and large reads go straight to where they belong, so no copy of the whole file is made.
// Nothing past the buffer's end is read, and the reader is left just behind what was taken.
#pragma once

#include <cstdint>
#include <vector>

#include "core_tga.h"

namespace Core::Detail {

class TgaByteSource {
public:
    static constexpr uint32_t kWindow = 64 * 1024;

    explicit TgaByteSource(TgaReader& reader);
    ~TgaByteSource();
    TgaByteSource(const TgaByteSource&) = delete;
    TgaByteSource& operator=(const TgaByteSource&) = delete;

    // Bytes from here to the end of the file (or to where a read came up short).
    uint64_t remaining() const { return end_ - taken_; }
    // The next `count` bytes, at most kWindow of them, valid until the next call; null (and
    // nothing taken) when the file ends first.
    const uint8_t* take(uint32_t count) {
        if (window_end_ - window_at_ < count && !refill(count)) return nullptr;
        const uint8_t* at = window_.data() + window_at_;
        window_at_ += count;
        taken_ += count;
        return at;
    }
    // Copies the next `count` bytes, no more than remaining(), to `destination`.
    void copy_to(uint8_t* destination, uint64_t count);
    // Passes over `count` bytes, or all that are left.
    void skip(uint64_t count);

private:
    // Reads until the window holds `count` bytes; false when the file ends first.
    bool refill(uint32_t count);

    InputBuffer& buffer_;
    uint64_t taken_;  // the file position of the next byte to hand out
    uint64_t end_;
    std::vector<uint8_t> window_;
    // The window's bytes not taken yet are [window_at_, window_end_); the buffer stands
    // just behind them.
    uint32_t window_at_ = 0;
    uint32_t window_end_ = 0;
};

}  // namespace Core::Detail
