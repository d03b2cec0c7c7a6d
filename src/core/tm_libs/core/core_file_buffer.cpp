#include <algorithm>

#include "core_file_provider.h"

namespace Core {

FileBufferImpl::FileBufferImpl(std::ifstream stream, uint64_t size)
    : stream_(std::move(stream)), size_(size) {}

void FileBufferImpl::close() {
    stream_.close();
    size_ = 0;
    position_ = 0;
}

unsigned FileBufferImpl::read(void* buffer, unsigned count) {
    const auto wanted = static_cast<std::streamsize>(readable(count));
    if (wanted == 0) return 0;
    stream_.clear();
    stream_.seekg(static_cast<std::streamoff>(position_));
    stream_.read(static_cast<char*>(buffer), wanted);
    const auto got = static_cast<uint64_t>(std::max<std::streamsize>(stream_.gcount(), 0));
    position_ += got;
    return static_cast<unsigned>(got);
}

int FileBufferImpl::get() {
    unsigned char byte = 0;
    return read(&byte, 1) == 1 ? byte : -1;
}

const uint8_t* FileBufferImpl::data() {
    if (!content_loaded_) {
        content_loaded_ = true;
        content_.resize(size_);
        const uint64_t keep = position_;
        position_ = 0;
        const unsigned chunk = 1u << 30;
        for (uint64_t done = 0; done < size_;) {
            const unsigned got =
                read(content_.data() + done,
                     static_cast<unsigned>(std::min<uint64_t>(chunk, size_ - done)));
            if (got == 0) break;
            done += got;
        }
        position_ = keep;
    }
    return content_.empty() ? nullptr : content_.data();
}

}  // namespace Core
