#include "RecentFileList.h"

#include <algorithm>

namespace framework {

std::string RecentFileList::EntryName(int number) {
    return "File" + std::to_string(number);
}

void RecentFileList::Load(const ProfileStore& profile) {
    entries_.clear();
    for (size_t index = 0; index < capacity_; ++index) {
        std::string path = profile.GetString(kSection, EntryName(static_cast<int>(index + 1)), "");
        if (!path.empty()) entries_.push_back(std::move(path));
    }
}

void RecentFileList::Save(ProfileStore& profile) const {
    for (size_t index = 0; index < capacity_; ++index) {
        const std::string entry = EntryName(static_cast<int>(index + 1));
        if (index < entries_.size())
            profile.WriteString(kSection, entry, entries_[index]);
        else
            profile.RemoveEntry(kSection, entry);
    }
}

void RecentFileList::Add(const std::string& path) {
    std::erase(entries_, path);
    entries_.insert(entries_.begin(), path);
    if (entries_.size() > capacity_) entries_.resize(capacity_);
}

void RecentFileList::Remove(size_t index) {
    if (index < entries_.size()) entries_.erase(entries_.begin() + static_cast<long>(index));
}

}  // namespace framework
