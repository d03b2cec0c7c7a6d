// Core::InputBuffer: the value that tool code holds to read a file through the IO manager.
//
// Failure style: open answers false. Using a buffer that is not open is an assertion
// ("Invalid INPUT_BUFFER!") and then reads as an empty file.
#pragma once

#include <cstdint>
#include <memory>

#include "core_io.h"

namespace Core {

class InputBuffer {
public:
    InputBuffer() = default;
    virtual ~InputBuffer() = default;

    // Asks the IO manager; replaces what was open; answers valid().
    virtual bool open(const char* path);
    virtual bool open(const wchar_t* path);
    virtual bool close();
    virtual bool valid() const { return impl_ != nullptr; }
    // Open, and no read has met content that cannot be delivered.
    virtual bool good() const { return valid() && !impl_->failed(); }
    virtual bool from_pack() const { return impl_ != nullptr && impl_->from_pack(); }

    // Reads from `impl` (a buffer over memory, say) instead of a file; answers valid().
    bool attach(std::shared_ptr<InputBufferImpl> impl) {
        impl_ = std::move(impl);
        return valid();
    }

    // Opens a wide path and steps over a UTF-16 byte-order signature (FF FE) at its start.
    bool open_skipping_signature(const wchar_t* path);

    bool eof() const;
    unsigned read(void* buffer, unsigned count);
    int get();
    bool seek(uint64_t position);
    bool skip(int64_t offset);
    uint64_t size() const;
    uint64_t tell() const;
    const uint8_t* data();

private:
    bool checked() const;

    std::shared_ptr<InputBufferImpl> impl_;
};

}  // namespace Core
