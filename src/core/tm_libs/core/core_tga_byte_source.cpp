#include "tga_byte_source.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace Core::Detail {

TgaByteSource::TgaByteSource(TgaReader& reader)
    : buffer_(reader.buffer),
      taken_(std::min(reader.buffer.tell(), reader.buffer.size())),
      end_(reader.buffer.size()),
      window_(kWindow) {}

TgaByteSource::~TgaByteSource() {
    buffer_.seek(taken_);
}

bool TgaByteSource::refill(uint32_t count) {
    if (count > kWindow) return false;
    const uint32_t kept = window_end_ - window_at_;
    std::memmove(window_.data(), window_.data() + window_at_, kept);
    window_at_ = 0;
    window_end_ = kept;
    const auto wanted = static_cast<unsigned>(
        std::min<uint64_t>(kWindow - kept, end_ - std::min(end_, taken_ + kept)));
    const unsigned got = wanted == 0 ? 0 : buffer_.read(window_.data() + kept, wanted);
    // A read that comes up short (a damaged pack block) ends the file there.
    if (got < wanted) end_ = taken_ + kept + got;
    window_end_ = kept + got;
    return window_end_ >= count;
}

void TgaByteSource::copy_to(uint8_t* destination, uint64_t count) {
    count = std::min(count, remaining());
    const uint32_t buffered =
        static_cast<uint32_t>(std::min<uint64_t>(count, window_end_ - window_at_));
    std::memcpy(destination, window_.data() + window_at_, buffered);
    window_at_ += buffered;
    taken_ += buffered;
    destination += buffered;
    count -= buffered;
    while (count > 0) {
        const auto wanted =
            static_cast<unsigned>(std::min<uint64_t>(count, std::numeric_limits<unsigned>::max()));
        const unsigned got = buffer_.read(destination, wanted);
        taken_ += got;
        if (got < wanted) {
            end_ = taken_;
            return;
        }
        destination += got;
        count -= got;
    }
}

void TgaByteSource::skip(uint64_t count) {
    count = std::min(count, remaining());
    const uint64_t buffered = window_end_ - window_at_;
    if (count <= buffered) {
        window_at_ += static_cast<uint32_t>(count);
    } else {
        window_at_ = window_end_ = 0;
        buffer_.seek(taken_ + count);
    }
    taken_ += count;
}

}  // namespace Core::Detail
