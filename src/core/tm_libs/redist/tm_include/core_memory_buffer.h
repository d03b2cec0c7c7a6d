// A readable buffer over bytes in memory: readers take memory as well as files.
#pragma once

#include <cstdint>
#include <vector>

#include "core_io.h"

namespace Core {

class MemoryBufferImpl : public PositionedBufferImpl {
public:
    explicit MemoryBufferImpl(std::vector<uint8_t> bytes) : bytes_(std::move(bytes)) {}

    void close() override;
    uint64_t size() const override { return bytes_.size(); }
    unsigned read(void* buffer, unsigned count) override;
    int get() override { return eof() ? -1 : bytes_[position_++]; }
    const uint8_t* data() override { return bytes_.empty() ? nullptr : bytes_.data(); }
    bool from_pack() const override { return false; }

private:
    std::vector<uint8_t> bytes_;
};

}  // namespace Core
