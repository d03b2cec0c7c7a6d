// The most recently used files, newest first, kept in the profile as
// "Recent File List" / File1, File2, ...
#pragma once

#include <string>
#include <vector>

#include "ProfileStore.h"

namespace framework {

class RecentFileList {
public:
    static constexpr const char* kSection = "Recent File List";

    explicit RecentFileList(size_t capacity) : capacity_(capacity) {}

    // The profile entry name of place `number` (from 1).
    static std::string EntryName(int number);

    void Load(const ProfileStore& profile);
    void Save(ProfileStore& profile) const;

    // Puts `path` first; an equal entry further down goes, the oldest falls off the end.
    void Add(const std::string& path);
    void Remove(size_t index);
    const std::vector<std::string>& Entries() const { return entries_; }

private:
    size_t capacity_;
    std::vector<std::string> entries_;
};

}  // namespace framework
