// The rows of a run-length or colour-mapped TGA file, put together as they are decoded.
//
// Pixels of the file's format (`Bytes` each) are appended one run after another; each
// finished row is turned as the descriptor says and converted into its place. Rows land
// where decoding the whole picture, flipping it and converting it would have put them:
// file row r of a bottom-up file on row height - 1 - r, each row reversed over the file's
// width when it runs right to left, and only the part that fits the destination written.
// Pixels the file never delivers are zero, as they are in a fresh picture.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

#include "core_tga.h"
#include "pixel_rows.h"

namespace Core::Detail {

constexpr uint8_t kRightToLeft = 0x10;
constexpr uint8_t kTopToBottom = 0x20;

inline uint8_t* row_of(const UntypedPixels& view, uint32_t row) {
    return static_cast<uint8_t*>(view.pixels) + int64_t{view.stride_in_bytes} * row;
}

template <uint32_t Bytes>
class RowAssembler {
public:
    RowAssembler(const PixelsLock& destination, const TgaHeader& header, PixelFormat file_format)
        : view_(*destination.view),
          width_(header.width),
          rows_(header.width == 0 ? 0 : header.height),
          descriptor_(header.descriptor),
          convert_(conversion_refused(file_format, destination.format)
                       ? nullptr
                       : row_converter(file_format, destination.format)),
          row_(size_t{width_} * Bytes) {}

    bool done() const { return file_row_ == rows_; }

    void repeat(const uint8_t* pixel, uint64_t count) {
        while (count > 0 && !done()) {
            const uint32_t run = room(count);
            uint8_t* at = row_.data() + size_t{filled_} * Bytes;
            for (uint32_t index = 0; index < run; ++index)
                std::memcpy(at + size_t{index} * Bytes, pixel, Bytes);
            advance(run);
            count -= run;
        }
    }

    void append(const uint8_t* pixels, uint64_t count) {
        while (count > 0 && !done()) {
            const uint32_t run = room(count);
            std::memcpy(row_.data() + size_t{filled_} * Bytes, pixels, size_t{run} * Bytes);
            advance(run);
            pixels += size_t{run} * Bytes;
            count -= run;
        }
    }

    // Places the row in progress and every row after it.
    void finish() {
        if (done()) return;
        std::fill(row_.begin() + static_cast<std::ptrdiff_t>(size_t{filled_} * Bytes), row_.end(),
                  uint8_t{0});
        place_row();
        std::fill(row_.begin(), row_.end(), uint8_t{0});
        while (!done())
            place_row();
    }

private:
    uint32_t room(uint64_t wanted) const {
        return static_cast<uint32_t>(std::min<uint64_t>(wanted, width_ - filled_));
    }

    void advance(uint32_t count) {
        filled_ += count;
        if (filled_ == width_) place_row();
    }

    void place_row() {
        if (descriptor_ & kRightToLeft) reverse_pixels(row_.data(), width_, Bytes);
        const uint32_t row = descriptor_ & kTopToBottom ? file_row_ : rows_ - 1 - file_row_;
        if (convert_ != nullptr && row < view_.height)
            convert_(row_of(view_, row), row_.data(), std::min(width_, view_.width));
        ++file_row_;
        filled_ = 0;
    }

    const UntypedPixels& view_;
    const uint32_t width_;
    const uint32_t rows_;
    const uint8_t descriptor_;
    const RowConverter convert_;  // null for the one pair that is refused
    std::vector<uint8_t> row_;
    uint32_t filled_ = 0;
    uint32_t file_row_ = 0;
};

}  // namespace Core::Detail
