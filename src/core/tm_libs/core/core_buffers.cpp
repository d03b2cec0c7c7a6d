#include "core_buffers.h"

#include "core_assert.h"

namespace Core {

bool InputBuffer::open(const char* path) {
    IOManager* manager = IOManager::get();
    impl_ = manager != nullptr ? manager->open(path) : nullptr;
    return valid();
}

bool InputBuffer::open(const wchar_t* path) {
    IOManager* manager = IOManager::get();
    impl_ = manager != nullptr ? manager->open(path) : nullptr;
    return valid();
}

bool InputBuffer::close() {
    impl_.reset();
    return true;
}

bool InputBuffer::open_skipping_signature(const wchar_t* path) {
    if (!open(path)) return false;
    if (!eof() && get() == 0xFF && !eof() && get() == 0xFE) return true;
    seek(0);
    return true;
}

bool InputBuffer::checked() const {
    CORE_ASSERT_MSG(valid(), "Invalid INPUT_BUFFER!");
    return valid();
}

bool InputBuffer::eof() const {
    return !checked() || impl_->eof();
}

unsigned InputBuffer::read(void* buffer, unsigned count) {
    return checked() ? impl_->read(buffer, count) : 0;
}

int InputBuffer::get() {
    return checked() ? impl_->get() : -1;
}

bool InputBuffer::seek(uint64_t position) {
    return checked() && impl_->seek(position);
}

bool InputBuffer::skip(int64_t offset) {
    return checked() && impl_->skip(offset);
}

uint64_t InputBuffer::size() const {
    return checked() ? impl_->size() : 0;
}

uint64_t InputBuffer::tell() const {
    return checked() ? impl_->tell() : 0;
}

const uint8_t* InputBuffer::data() {
    return checked() ? impl_->data() : nullptr;
}

}  // namespace Core
