// Loose files: the provider that is always mounted.
//
// `exists` and `find` answer from a cache of folded paths that fills one folder listing at
// a time and is never refreshed on its own (writers report changes through file_changed).
// `open`, and `exists` with the cache switched off, look at the disk itself: a path is
// found without regard to case, so a project written with other capitals still finds its
// files, and a file written a moment ago is found in any capitals. `find` hands out names
// as they are spelled on disk.
#pragma once

#include <cstdint>
#include <ctime>
#include <fstream>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core_folded_index.h"
#include "core_io.h"

namespace Core {

struct IOOptions;

class FileBufferImpl : public PositionedBufferImpl {
public:
    FileBufferImpl(std::ifstream stream, uint64_t size);

    void close() override;
    uint64_t size() const override { return size_; }
    unsigned read(void* buffer, unsigned count) override;
    int get() override;
    const uint8_t* data() override;
    bool from_pack() const override { return false; }

private:
    // Moves the stream to position_ if a seek left it elsewhere; false if it cannot.
    bool sync_stream();

    std::ifstream stream_;
    uint64_t stream_position_ = 0;  // where the stream stands: reads from there need no seek
    uint64_t size_;
    std::vector<uint8_t> content_;  // filled by data()
    bool content_loaded_ = false;
};

class FileBufferProvider : public InputBufferProvider {
public:
    // What a cache value says: a folder seen in a listing, a folder listed, or (2 and more)
    // a file and its last-write time.
    static constexpr uint64_t kFolderSeen = 0;
    static constexpr uint64_t kFolderListed = 1;

    struct Counters {
        uint32_t lookups = 0;
        uint32_t directories = 0;
        uint32_t hits = 0;
        uint32_t files = 0;
    };

    FileBufferProvider();

    std::shared_ptr<InputBufferImpl> open(const std::wstring& path) override;
    std::shared_ptr<InputBufferImpl> open(const std::string& path) override;
    bool exists(const std::string& path) override;
    void clear_cache() override;
    std::vector<const char*> find(const std::string& pattern, unsigned flags) override;
    const char* name() const override { return root_.c_str(); }
    bool file_changed(const std::string& path) override;
    void directory_changed(const std::string& path) override;

    const Counters& counters() const { return counters_; }

private:
    struct Entry {
        uint64_t value = kFolderSeen;
        // As spelled on disk; null when the key itself is. Kept apart, as most keys are, so
        // that entries stay small and lookups touch little memory.
        std::unique_ptr<std::string> disk_path;
    };
    // The cache: ordered by key for find's walks, with a folded hash index for exists.
    class Cache {
    public:
        using Map = std::map<std::string, Entry>;
        using iterator = Map::iterator;

        // The entry of `path`, folded or not.
        Entry* find(std::string_view path) {
            Map::value_type* node = index_.find(path);
            return node == nullptr ? nullptr : &node->second;
        }
        iterator find_ordered(const std::string& key) { return map_.find(key); }
        Entry& operator[](const std::string& key) {
            const auto [place, added] = map_.try_emplace(key);
            if (added) index_.insert(&*place);
            return place->second;
        }
        void erase(iterator place) {
            index_.erase(&*place);
            map_.erase(place);
        }
        void clear() {
            index_.clear();
            map_.clear();
        }
        iterator end() { return map_.end(); }

    private:
        Map map_;
        FoldedIndex<Map::value_type> index_;
    };

    // Records the spelling on disk of the entry `key`, unless it is the key itself.
    static void set_disk_path(Entry& entry, const std::string& key, std::string disk_path);
    static const char* disk_name(std::string_view key, const Entry& entry);

    // exists for a path the cache does not hold yet: lists its folder if need be.
    [[gnu::noinline]] bool exists_after_scan(const std::string& path);
    // Lists the folder `folder` (a folded key) into the cache; true when it was listed
    // before. Folders met on the way down are listed only once each.
    bool scan(const std::string& folder, bool recurse);
    bool scan(const std::string& folder, bool recurse,
              std::vector<std::pair<uint64_t, uint64_t>>& seen);
    // The cache entries that `pattern` finds, in key order.
    std::vector<Cache::iterator> find_entries(const std::string& pattern, unsigned flags);
    // The folder of the folded key `folder` as spelled on disk.
    std::string disk_folder(const std::string& folder);
    // `path` as spelled on disk, each component found without regard to case.
    std::string disk_path(const std::string& path);
    // The path of the regular file `path` names, found without regard to case; "" if none.
    std::string file_on_disk(const std::string& path);
    // The sorted names of a folder on disk, listed again when the folder has changed.
    const std::vector<std::string>& names_in(const std::string& folder);

    std::string root_;
    // Held rather than asked for on each call: exists runs in loops over many files.
    const IOOptions& options_;
    Cache cache_;
    struct FolderNames {
        std::vector<std::string> names;
        std::optional<timespec> modified;  // the folder's, when it was listed
    };
    std::map<std::string, FolderNames> folder_names_;
    Counters counters_;
};

}  // namespace Core
