#include "core_pack_buffer.h"

#include <lzo/lzo1x.h>
#include <unistd.h>

#include <algorithm>
#include <boost/format.hpp>
#include <cstring>
#include <new>

#include "core_log.h"

namespace Core {
namespace {

constexpr uint32_t kBlockSize = PackTable::kBlockSize;

}  // namespace

PackBufferCompressed::PackBufferCompressed(std::shared_ptr<PackFile> pack, uint32_t index,
                                           int handle)
    : pack_(std::move(pack)),
      entry_(pack_->table().entry(index)),
      handle_(handle),
      stored_(std::make_unique_for_overwrite<uint8_t[]>(kBlockSize)),
      window_(std::make_unique_for_overwrite<uint8_t[]>(kBlockSize)) {
    if (::lseek(handle_, entry_.data_offset, SEEK_SET) < 0) fail();
}

PackBufferCompressed::~PackBufferCompressed() {
    close();
}

void PackBufferCompressed::close() {
    if (!pack_) return;
    CORE_LOG(io_log(), trace) << boost::format("pack close,,%1%,,,-%2%") % entry_.name %
                                     entry_.size;
    pack_->give_back(handle_);
    pack_.reset();
    // A closed buffer reads as an empty entry.
    entry_ = {};
    position_ = 0;
    window_length_ = 0;
    cursor_ = 0;
    stored_.reset();
    window_.reset();
    whole_.reset();
    whole_loaded_ = true;
}

unsigned PackBufferCompressed::read(void* buffer, unsigned count) {
    auto* into = static_cast<uint8_t*>(buffer);
    unsigned delivered = 0;
    while (delivered < count && !failed_) {
        if (cursor_ < window_length_) {
            const unsigned taken = std::min(window_length_ - cursor_, count - delivered);
            std::memcpy(into + delivered, window_.get() + cursor_, taken);
            cursor_ += taken;
            position_ += taken;
            delivered += taken;
            continue;
        }
        if (position_ >= entry_.size) break;
        // The window is used up: position_ is where the next block begins.
        cursor_ = 0;
        window_length_ = 0;
        if (count - delivered >= kBlockSize) {
            // A block or more is wanted: decode it where it goes, sparing a copy.
            const uint32_t decoded = decode_block(into + delivered);
            position_ += decoded;
            delivered += decoded;
        } else {
            window_length_ = decode_block(window_.get());
        }
    }
    return delivered;
}

int PackBufferCompressed::get() {
    uint8_t byte = 0;
    return read(&byte, 1) == 1 ? byte : -1;
}

bool PackBufferCompressed::seek(uint64_t position) {
    const uint64_t window_start = position_ - cursor_;
    if (position >= window_start && position - window_start <= window_length_) {
        // Inside the decoded block, its end included: no file access.
        cursor_ = static_cast<uint32_t>(position - window_start);
        position_ = position;
        return true;
    }
    position_ = position;
    window_length_ = 0;
    cursor_ = 0;
    if (position < entry_.size && !failed_) load_window(position);
    return true;
}

bool PackBufferCompressed::skip(int64_t offset) {
    const uint64_t distance = offset < 0 ? 0 - static_cast<uint64_t>(offset) : 0;
    if (distance > position_) return false;
    return seek(position_ + static_cast<uint64_t>(offset));
}

const uint8_t* PackBufferCompressed::data() {
    if (whole_loaded_) return whole_.get();
    whole_loaded_ = true;
    CORE_LOG(io_log(), trace) << boost::format("pack data(),,%1%,,,%2%") % entry_.name %
                                     entry_.size;
    if (entry_.size == 0) return nullptr;
    whole_.reset(new (std::nothrow) uint8_t[entry_.size]);
    if (!whole_) return nullptr;
    const uint64_t kept = position_;
    seek(0);
    if (read(whole_.get(), entry_.size) != entry_.size) whole_.reset();
    seek(kept);
    return whole_.get();
}

void PackBufferCompressed::load_window(uint64_t position) {
    const uint64_t block = position / kBlockSize;
    uint64_t stored_offset = entry_.data_offset;
    for (uint64_t before = 0; before < block; ++before)
        stored_offset +=
            pack_->table().block_size(static_cast<uint32_t>(entry_.first_block + before));
    if (::lseek(handle_, static_cast<off_t>(stored_offset), SEEK_SET) < 0) {
        fail();
        return;
    }
    position_ = block * kBlockSize;
    window_length_ = decode_block(window_.get());
    position_ = position;
    if (!failed_) cursor_ = static_cast<uint32_t>(position % kBlockSize);
}

uint32_t PackBufferCompressed::decode_block(uint8_t* into) {
    const uint64_t block = position_ / kBlockSize;
    const uint32_t stored =
        pack_->table().block_size(static_cast<uint32_t>(entry_.first_block + block));
    const uint32_t content = PackTable::block_content(entry_.size, block);
    // Raw: a whole block stored whole, or the partial last block stored at its length. It is
    // read where it goes.
    const bool raw = stored == kBlockSize || stored == content;
    if (raw && stored != content) return fail();
    if (!PackFile::read(handle_, raw ? into : stored_.get(), stored)) return fail();
    if (raw) return stored;
    lzo_uint decoded = content;
    if (lzo1x_decompress_safe(stored_.get(), stored, into, &decoded, nullptr) != LZO_E_OK ||
        decoded != content)
        return fail();
    return content;
}

uint32_t PackBufferCompressed::fail() {
    failed_ = true;
    window_length_ = 0;
    cursor_ = 0;
    return 0;
}

}  // namespace Core
