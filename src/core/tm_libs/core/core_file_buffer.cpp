#include <algorithm>

#include "core_file_provider.h"

namespace Core {

FileBufferImpl::FileBufferImpl(std::ifstream stream, uint64_t size)
    : stream_(std::move(stream)), size_(size) {}

void FileBufferImpl::close() {
    stream_.close();
    size_ = 0;
    position_ = 0;
    stream_position_ = 0;
}

bool FileBufferImpl::sync_stream() {
    if (stream_position_ == position_) return true;
    std::filebuf& file = *stream_.rdbuf();
    if (file.pubseekpos(static_cast<std::streamoff>(position_), std::ios::in) < 0) return false;
    stream_position_ = position_;
    return true;
}

unsigned FileBufferImpl::read(void* buffer, unsigned count) {
    const auto wanted = static_cast<std::streamsize>(readable(count));
    if (wanted == 0 || !sync_stream()) return 0;
    const std::streamsize got = stream_.rdbuf()->sgetn(static_cast<char*>(buffer), wanted);
    position_ += static_cast<uint64_t>(std::max<std::streamsize>(got, 0));
    stream_position_ = position_;
    return static_cast<unsigned>(std::max<std::streamsize>(got, 0));
}

// Byte by byte readers (the piece files are read so) take each byte from the stream's
// buffer: a system call per buffer, not per byte.
int FileBufferImpl::get() {
    if (eof() || !sync_stream()) return -1;
    const int byte = stream_.rdbuf()->sbumpc();
    if (byte == std::char_traits<char>::eof()) return -1;
    ++position_;
    ++stream_position_;
    return byte;
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
