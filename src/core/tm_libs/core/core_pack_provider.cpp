#include "core_pack_provider.h"

#include <boost/format.hpp>

#include "core_log.h"
#include "core_pack_buffer.h"
#include "core_text.h"

namespace Core {

bool PackBufferProvider::load(const char* path) {
    path_ = path;
    auto pack = std::make_shared<PackFile>();
    if (!pack->load(path_)) {
        error_ = pack->error();
        return false;
    }
    pack_ = std::move(pack);
    return true;
}

std::shared_ptr<InputBufferImpl> PackBufferProvider::open(const std::wstring& path) {
    return open(narrow_text(path));
}

std::shared_ptr<InputBufferImpl> PackBufferProvider::open(const std::string& path) {
    if (!pack_) return {};
    const PackTable::Lookup found = pack_->table().lookup(path.c_str());
    // A name outside the pack's range is no news: most names asked for are in other packs.
    if (found.result == PackTable::Lookup::Result::outside) return {};
    if (found.result == PackTable::Lookup::Result::missing) {
        CORE_LOG(io_log(), trace) << boost::format("pack open,%1%,%2%,,not found") % path_ % path;
        return {};
    }
    const int handle = pack_->take_handle();
    if (handle < 0) return {};
    auto buffer = std::make_shared<PackBufferCompressed>(pack_, found.index, handle);
    CORE_LOG(io_log(), trace) << boost::format("pack open,%1%,%2%,%3%") % path_ % path %
                                     buffer->size();
    return buffer;
}

bool PackBufferProvider::exists(const std::string& path) {
    return pack_ && pack_->table().lookup(path.c_str()).result == PackTable::Lookup::Result::found;
}

std::vector<const char*> PackBufferProvider::find(const std::string& pattern, unsigned flags) {
    if (!pack_) return {};
    return pack_->table().find(pattern, flags);
}

}  // namespace Core
