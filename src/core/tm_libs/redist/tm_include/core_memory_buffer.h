// A readable buffer over bytes in memory: readers take memory as well as files.
#pragma once

#include <cstdint>
#include <vector>

#include "core_io.h"

namespace Core {

class MemoryBufferImpl : public InputBufferImpl {
public:
    explicit MemoryBufferImpl(std::vector<uint8_t> bytes) : bytes_(std::move(bytes)) {}

    void close() override {
        bytes_.clear();
        position_ = 0;
    }
    uint64_t size() const override { return bytes_.size(); }
    uint64_t tell() const override { return position_; }
    bool eof() const override { return position_ >= bytes_.size(); }
    unsigned read(void* buffer, unsigned count) override;
    int get() override { return eof() ? -1 : bytes_[position_++]; }
    bool seek(uint64_t position) override;
    bool skip(int64_t offset) override;
    const uint8_t* data() override { return bytes_.empty() ? nullptr : bytes_.data(); }
    bool from_pack() const override { return false; }

private:
    std::vector<uint8_t> bytes_;
    uint64_t position_ = 0;
};

}  // namespace Core
