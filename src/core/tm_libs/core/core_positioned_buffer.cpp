#include <algorithm>

#include "core_io.h"

namespace Core {

bool PositionedBufferImpl::seek(uint64_t position) {
    if (position > size()) return false;
    position_ = position;
    return true;
}

bool PositionedBufferImpl::skip(int64_t offset) {
    if (offset < 0 && static_cast<uint64_t>(-offset) > position_) return false;
    return seek(offset < 0 ? position_ - static_cast<uint64_t>(-offset)
                           : position_ + static_cast<uint64_t>(offset));
}

uint64_t PositionedBufferImpl::readable(uint64_t count) const {
    return std::min(count, size() - std::min(position_, size()));
}

}  // namespace Core
