#include "ProfileStore.h"

namespace framework {

std::string MemoryProfileStore::GetString(const std::string& section, const std::string& entry,
                                          const std::string& fallback) const {
    const auto found = values_.find({section, entry});
    return found == values_.end() ? fallback : found->second;
}

void MemoryProfileStore::WriteString(const std::string& section, const std::string& entry,
                                     const std::string& value) {
    values_[{section, entry}] = value;
}

void MemoryProfileStore::RemoveEntry(const std::string& section, const std::string& entry) {
    values_.erase({section, entry});
}

}  // namespace framework
