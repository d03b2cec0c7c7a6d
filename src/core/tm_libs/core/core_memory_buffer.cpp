#include "core_memory_buffer.h"

#include <algorithm>
#include <cstring>

namespace Core {

unsigned MemoryBufferImpl::read(void* buffer, unsigned count) {
    const uint64_t available = bytes_.size() - std::min<uint64_t>(position_, bytes_.size());
    const auto taken = static_cast<unsigned>(std::min<uint64_t>(count, available));
    if (taken > 0) std::memcpy(buffer, bytes_.data() + position_, taken);
    position_ += taken;
    return taken;
}

bool MemoryBufferImpl::seek(uint64_t position) {
    if (position > bytes_.size()) return false;
    position_ = position;
    return true;
}

bool MemoryBufferImpl::skip(int64_t offset) {
    if (offset < 0 && static_cast<uint64_t>(-offset) > position_) return false;
    return seek(offset < 0 ? position_ - static_cast<uint64_t>(-offset)
                           : position_ + static_cast<uint64_t>(offset));
}

}  // namespace Core
