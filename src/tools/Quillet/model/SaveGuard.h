// What a project save checks and holds before it writes anything: the person's say on what
// would be overwritten or lost, and the project held against other writers until its files
// are in place.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core_file_lock.h"
#include "qlt_types.h"

// How long a save, or a command that changes a project, waits for another process to finish
// changing it before giving up.
inline constexpr std::chrono::milliseconds kOtherWriterWait{5000};

// "PROJECT is being changed by another process"
std::string BusyMessage(const std::string& project);

// The regions of `page` that do not lie wholly on a page of `size`, in list order: writing
// the page keeps only their part on it, and a region parked beside the page loses all.
std::vector<std::string> RegionsOutside(const TPAGE& page, PageSize size);
// "a, b, c"
std::string JoinNames(const std::vector<std::string>& names);
// The count followed by `one` when it is 1, else by `many`: "3 regions do not fit".
std::string Counted(size_t count, const std::string& one, const std::string& many);

// A file as it stood on disk; an absent file has a stamp of its own.
struct DiskStamp {
    bool exists = false;
    uint64_t device = 0;
    uint64_t inode = 0;  // an atomic replacement always makes a new one
    int64_t size = 0;
    int64_t modified_ns = 0;
    friend bool operator==(const DiskStamp&, const DiskStamp&) = default;
};
DiskStamp StampOnDisk(const std::string& path);

class SaveGuard {
public:
    // Holds the project's lock (which may be empty where none can be made) and notes the
    // files about to be written as they stand now.
    SaveGuard(Core::FileLock lock, const std::vector<std::string>& files);
    // Files the save replaced are remembered as it left them; files it did not touch keep
    // what was remembered, so a change by someone else is still noticed next time.
    ~SaveGuard();
    SaveGuard(const SaveGuard&) = delete;
    SaveGuard& operator=(const SaveGuard&) = delete;

    // Remembers the file at `path` as it stands, as this editor read or wrote it.
    static void RememberOnDisk(const std::string& path);
    // Whether the file changed since it was last remembered; false for a file never
    // remembered.
    static bool ChangedOnDisk(const std::string& path);
    // What is remembered of the file at `path`, if anything.
    static std::optional<DiskStamp> StampRemembered(const std::string& path);
    // Remembers `stamp` for the file: what a recovered copy's editor knew of it.
    static void RememberStamp(const std::string& path, const DiskStamp& stamp);

private:
    Core::FileLock lock_;
    std::vector<std::pair<std::string, DiskStamp>> files_;
};
