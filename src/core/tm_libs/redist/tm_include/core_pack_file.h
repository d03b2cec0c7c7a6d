// One pack file on disk: its table, loaded whole in one read, and the read handles that its
// open entries use, one each, each with its own file position.
//
// The pack's provider and every buffer open on it share this object, so a buffer still open
// when its provider is gone reads on safely.
//
// Failure style: load answers false and error() says why; take_handle answers -1.
// Thread safety: none; a pack and its buffers are used from one thread.
#pragma once

#include <sys/types.h>

#include <string>
#include <utility>
#include <vector>

#include "core_pack_table.h"

namespace Core {

class PackFile {
public:
    PackFile() = default;
    // Closes every handle.
    ~PackFile();
    PackFile(const PackFile&) = delete;
    PackFile& operator=(const PackFile&) = delete;

    // Opens `path` and reads its table. Refuses a file shorter than a header, one whose table
    // would run past its end, and every table that PackTable refuses. Call once.
    bool load(const std::string& path);
    const std::string& path() const { return path_; }
    const std::string& error() const { return error_; }
    const PackTable& table() const { return table_; }

    // A handle for one more open entry: a spare one, or a new one when all are in use, so
    // that files are opened only when more entries are open at once than ever before. -1
    // when the file cannot be opened again, or is no longer the file that was loaded.
    int take_handle();
    // Gives a handle from take_handle back for the next entry.
    void give_back(int handle) { handles_.push_back(handle); }
    size_t spare_handles() const { return handles_.size(); }

    // Reads `count` bytes at the handle's position; false on an error or an early end.
    static bool read(int handle, void* buffer, size_t count);

private:
    int open_again() const;
    bool refuse(std::string message);
    bool invalid(const std::string& reason);

    std::string path_;
    std::string error_;
    PackTable table_;
    std::vector<int> handles_;  // spare: no open entry reads through them
    std::pair<dev_t, ino_t> identity_{};
};

}  // namespace Core
