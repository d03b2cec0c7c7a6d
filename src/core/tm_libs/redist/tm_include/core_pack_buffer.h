// The stream over one entry of a pack: blocks are read through a handle of the entry's own
// and decoded into a window of one block, from which small reads are served. A read of a
// block or more decodes straight into the caller's memory, and a seek inside the decoded
// block reads nothing from the file.
//
// Failure style: a block that cannot be read whole, does not decompress, or decodes to
// another length than it holds makes the buffer failed(): the read answers the bytes
// delivered before it, and from then on every read answers none. Decompression is bounded
// by the window, so a corrupt pack never writes past it. A seek always succeeds; past the end
// a read answers no bytes.
// Thread safety: none; one thread reads a buffer.
#pragma once

#include <cstdint>
#include <memory>

#include "core_io.h"
#include "core_pack_file.h"

namespace Core {

class PackBufferCompressed : public InputBufferImpl {
public:
    // Entry `index` of `pack`, read through `handle` (from the pack's take_handle), which the
    // buffer gives back when it is closed.
    PackBufferCompressed(std::shared_ptr<PackFile> pack, uint32_t index, int handle);
    ~PackBufferCompressed() override;

    void close() override;
    uint64_t size() const override { return entry_.size; }
    uint64_t tell() const override { return position_; }
    bool eof() const override { return position_ >= entry_.size; }
    unsigned read(void* buffer, unsigned count) override;
    int get() override;
    bool seek(uint64_t position) override;
    // False (and no move) before the start.
    bool skip(int64_t offset) override;
    // Null for an empty entry, or when the entry cannot be read whole.
    const uint8_t* data() override;
    bool from_pack() const override { return true; }
    bool failed() const override { return failed_; }

private:
    // Decodes the block that begins at position_, which the handle stands on, into `into`
    // (room for a block); answers its length, or 0 after a fault.
    uint32_t decode_block(uint8_t* into);
    // Moves the handle to the block that holds `position` and decodes it into the window.
    void load_window(uint64_t position);
    // Makes the buffer failed for good; answers 0, the length of what could not be decoded.
    uint32_t fail();

    std::shared_ptr<PackFile> pack_;  // null once closed
    PackTable::Entry entry_;
    int handle_;
    uint64_t position_ = 0;
    std::unique_ptr<uint8_t[]> stored_;  // a compressed block as the file holds it
    std::unique_ptr<uint8_t[]> window_;  // the decoded block
    uint32_t window_length_ = 0;         // decoded bytes in the window; 0 when empty
    // The read position in the window: position_ - cursor_ is where the window's block
    // begins, or where the next block begins while the window is empty.
    uint32_t cursor_ = 0;
    std::unique_ptr<uint8_t[]> whole_;  // what data() hands out
    bool whole_loaded_ = false;
    bool failed_ = false;
};

}  // namespace Core
