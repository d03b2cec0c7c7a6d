#include "core_file_provider.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <boost/format.hpp>
#include <climits>
#include <optional>
#include <set>

#include "core_log.h"
#include "core_path_match.h"
#include "core_settings.h"
#include "core_text.h"

namespace Core {
namespace {

struct Listed {
    std::string name;
    bool folder;
    uint64_t modified;
    std::pair<uint64_t, uint64_t> identity;  // device and inode
};

std::string join(const std::string& folder, const std::string& name) {
    if (folder.empty()) return name;
    if (folder == "/") return "/" + name;
    return folder + "/" + name;
}

// The key of `name` inside the folder key `folder` ("" is the root of absolute paths).
std::string key_in(const std::string& folder, const std::string& name) {
    return folder + "/" + fold_path(name);
}

// The entries of a folder, dot files included, links followed and broken links left out,
// sorted by name so that of two names that fold alike the byte-smallest comes first.
bool list_folder(const std::string& folder, std::vector<Listed>& listed) {
    const std::string path = folder.empty() ? "." : folder;
    DIR* directory = ::opendir(path.c_str());
    if (directory == nullptr) return false;
    while (const dirent* item = ::readdir(directory)) {
        const std::string name = item->d_name;
        if (name == "." || name == "..") continue;
        struct stat status {};
        if (::stat(join(path, name).c_str(), &status) != 0) continue;
        listed.push_back({name,
                          S_ISDIR(status.st_mode),
                          std::max<uint64_t>(static_cast<uint64_t>(status.st_mtime), 2),
                          {status.st_dev, status.st_ino}});
    }
    ::closedir(directory);
    std::sort(listed.begin(), listed.end(),
              [](const Listed& a, const Listed& b) { return a.name < b.name; });
    return true;
}

// The names in a folder, sorted, without looking at what they are.
std::vector<std::string> list_names(const std::string& folder) {
    std::vector<std::string> names;
    DIR* directory = ::opendir(folder.empty() ? "." : folder.c_str());
    if (directory == nullptr) return names;
    while (const dirent* item = ::readdir(directory)) {
        const std::string name = item->d_name;
        if (name != "." && name != "..") names.push_back(name);
    }
    ::closedir(directory);
    std::sort(names.begin(), names.end());
    return names;
}

bool is_regular_file(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

std::optional<timespec> modification_time(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return std::nullopt;
    return status.st_mtim;
}

bool same_time(const timespec& a, const timespec& b) {
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

std::string current_directory() {
    std::vector<char> buffer(PATH_MAX);
    return ::getcwd(buffer.data(), buffer.size()) != nullptr ? buffer.data() : "";
}

std::string last_component(const std::string& key) {
    const size_t slash = key.rfind('/');
    return slash == std::string::npos ? key : key.substr(slash + 1);
}

std::string folder_of(const std::string& key) {
    const size_t slash = key.rfind('/');
    return slash == std::string::npos ? key : key.substr(0, slash);
}

}  // namespace

void FileBufferProvider::set_disk_path(Entry& entry, const std::string& key,
                                       std::string disk_path) {
    if (disk_path == key)
        entry.disk_path.reset();
    else
        entry.disk_path = std::make_unique<std::string>(std::move(disk_path));
}

const char* FileBufferProvider::disk_name(std::string_view key, const Entry& entry) {
    return entry.disk_path ? entry.disk_path->c_str() : key.data();
}

FileBufferProvider::FileBufferProvider() : root_(current_directory()), options_(io_options()) {}

std::shared_ptr<InputBufferImpl> FileBufferProvider::open(const std::wstring& path) {
    return open(narrow_text(path));
}

std::string FileBufferProvider::file_on_disk(const std::string& path) {
    if (is_regular_file(path)) return path;
    std::string actual = disk_path(path);
    return is_regular_file(actual) ? actual : std::string();
}

std::shared_ptr<InputBufferImpl> FileBufferProvider::open(const std::string& path) {
    const std::string actual = file_on_disk(path);
    std::ifstream stream;
    if (!actual.empty()) stream.open(actual, std::ios::binary);
    std::streamoff size = -1;
    if (stream.is_open() && stream.seekg(0, std::ios::end)) {
        size = stream.tellg();
        if (!stream.seekg(0, std::ios::beg)) size = -1;
    }
    if (size < 0) {
        CORE_LOG(io_log(), trace) << boost::format("file open,,%1%,,not found") % path;
        return {};
    }
    CORE_LOG(io_log(), trace) << boost::format("file open,,%1%,%2%") % path % size;
    return std::make_shared<FileBufferImpl>(std::move(stream), static_cast<uint64_t>(size));
}

bool FileBufferProvider::exists(const std::string& path) {
    if (options_.disable_file_cache) return !file_on_disk(path).empty();
    ++counters_.lookups;
    if (cache_.find(path) != nullptr) {
        ++counters_.hits;
        return true;
    }
    return exists_after_scan(path);
}

bool FileBufferProvider::exists_after_scan(const std::string& path) {
    const std::string key = fold_path(path);
    if (scan(folder_of(key), false)) {
        ++counters_.hits;
        return false;
    }
    const Entry* found = cache_.find(key);
    return found != nullptr && found->value > kFolderListed;
}

void FileBufferProvider::clear_cache() {
    cache_.clear();
    folder_names_.clear();
    counters_ = {};
}

bool FileBufferProvider::scan(const std::string& folder, bool recurse) {
    std::vector<std::pair<uint64_t, uint64_t>> seen;
    return scan(folder, recurse, seen);
}

bool FileBufferProvider::scan(const std::string& folder, bool recurse,
                              std::vector<std::pair<uint64_t, uint64_t>>& seen) {
    if (const Entry* found = cache_.find(folder); found != nullptr && found->value == kFolderListed)
        return true;
    const std::string on_disk = disk_folder(folder);
    Entry& entry = cache_[folder];
    entry.value = kFolderListed;
    set_disk_path(entry, folder, on_disk);
    ++counters_.directories;
    CORE_LOG(io_log(), trace) << boost::format("exists: %1%: caching directory: %2%") %
                                     counters_.directories % (folder + "/*");
    std::vector<Listed> listed;
    if (!list_folder(on_disk, listed)) {
        CORE_LOG(io_log(), info) << boost::format("exists: directory non-existant: %1%") %
                                        (folder + "/*");
        return false;
    }
    std::set<std::string> keys_of_this_listing;
    for (const Listed& item : listed) {
        const std::string key = key_in(folder, item.name);
        if (!keys_of_this_listing.insert(key).second) continue;  // folds like a smaller name
        Entry& child = cache_[key];
        set_disk_path(child, key, join(on_disk, item.name));
        if (!item.folder) {
            child.value = item.modified;
        } else if (recurse && std::find(seen.begin(), seen.end(), item.identity) == seen.end()) {
            // A link back up the tree must not make the scan run for ever.
            seen.push_back(item.identity);
            scan(key, true, seen);
        }
        ++counters_.files;
        CORE_LOG(io_log(), trace) << boost::format("exists: %1%: caching file: %2% (%3%)") %
                                         counters_.files % key % item.modified;
    }
    return false;
}

std::vector<FileBufferProvider::Cache::iterator> FileBufferProvider::find_entries(
    const std::string& pattern, unsigned flags) {
    const std::string folded = fold_path(pattern);
    const std::string folder = folder_of(folded);
    const std::string tail = last_component(folded);
    const bool recursive = (flags & IOManager::kFindRecursive) != 0;
    scan(folder, recursive);

    std::vector<Cache::iterator> found;
    auto entry = cache_.find_ordered(folder);
    if (entry == cache_.end()) return found;
    for (++entry; entry != cache_.end(); ++entry) {
        const std::string_view key = entry->first;
        const size_t slash = key.rfind('/');
        if (slash == std::string_view::npos || !key.starts_with(folder)) break;
        if (!recursive && slash != folder.size()) break;
        if (entry->second.value > kFolderListed && match(tail, key.substr(slash + 1), false))
            found.push_back(entry);
    }
    return found;
}

std::vector<const char*> FileBufferProvider::find(const std::string& pattern, unsigned flags) {
    std::vector<const char*> names;
    for (const auto& entry : find_entries(pattern, flags))
        names.push_back(disk_name(entry->first, entry->second));
    return names;
}

bool FileBufferProvider::file_changed(const std::string& path) {
    const std::string key = fold_path(path);
    struct stat status {};
    if (::stat(disk_path(path).c_str(), &status) != 0) {
        // Gone: forget it rather than keep a stale time.
        if (const auto place = cache_.find_ordered(key); place != cache_.end()) cache_.erase(place);
        return true;
    }
    Entry& entry = cache_[key];
    entry.value = std::max<uint64_t>(static_cast<uint64_t>(status.st_mtime), 2);
    set_disk_path(entry, key, disk_path(path));
    return true;
}

void FileBufferProvider::directory_changed(const std::string& path) {
    const std::string folder = fold_path(folder_of(path));
    cache_[folder].value = kFolderSeen;
    for (const auto& entry : find_entries(folder + "/*", 0))
        cache_.erase(entry);
}

std::string FileBufferProvider::disk_folder(const std::string& folder) {
    if (folder.empty()) return "/";
    if (const Entry* found = cache_.find(folder); found != nullptr && found->value <= kFolderListed)
        return disk_name(folder, *found);
    return disk_path(folder);
}

std::string FileBufferProvider::disk_path(const std::string& path) {
    const size_t slash = path.rfind('/');
    const std::string parent =
        slash == std::string::npos ? std::string() : disk_folder(fold_path(path.substr(0, slash)));
    const std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    if (name.empty() || name == "." || name == "..") return join(parent, name);
    // The names come sorted: of two that fold alike the byte-smallest is met first.
    for (const std::string& candidate : names_in(parent)) {
        if (folded_equal(candidate, name)) return join(parent, candidate);
    }
    return join(parent, name);
}

const std::vector<std::string>& FileBufferProvider::names_in(const std::string& folder) {
    // A listing stands while the folder's modification time does: a file written or removed
    // since is found, or missed, on the next lookup.
    const std::optional<timespec> modified = modification_time(folder.empty() ? "." : folder);
    FolderNames& names = folder_names_[folder];
    if (!names.modified || !modified || !same_time(*names.modified, *modified)) {
        names.names = list_names(folder);
        names.modified = modified;
    }
    return names.names;
}

}  // namespace Core
