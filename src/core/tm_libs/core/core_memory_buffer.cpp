#include "core_memory_buffer.h"

#include <cstring>

namespace Core {

void MemoryBufferImpl::close() {
    bytes_.clear();
    position_ = 0;
}

unsigned MemoryBufferImpl::read(void* buffer, unsigned count) {
    const auto taken = static_cast<unsigned>(readable(count));
    if (taken > 0) std::memcpy(buffer, bytes_.data() + position_, taken);
    position_ += taken;
    return taken;
}

}  // namespace Core
