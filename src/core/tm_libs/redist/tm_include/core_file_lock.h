// One writer at a time: an advisory lock that the processes changing one file agree on.
//
// The lock is flock(2) on a small file beside the guarded one, "NAME.lock". A lock belongs
// to an open file, so the kernel lets go of it however the process ends, and a lock file
// that a killed process left behind blocks nobody; the last holder removes it. The guarded
// file itself is not locked, because an atomic save renames a new file over it and a lock on
// the old one would then guard nothing.
//
// Within one process the lock is shared: taking it again while this process holds it
// succeeds at once, so a command that holds a project from load to save can save through
// code that takes the same lock. A child forked without a new program shares its parent's
// lock, as flock has it; the lock file is not passed on to programs started by exec.
//
// Failure style: the state of the lock says how taking it went; `reason()` says why it could
// not be tried, in the words of the system.
#pragma once

#include <chrono>
#include <memory>
#include <string>

namespace Core {

class FileLock {
public:
    enum class State {
        none,         // not taken, or let go
        held,         // this process holds the lock
        busy,         // another process held it for the whole wait
        unavailable,  // the lock file cannot be made or opened: see reason()
    };

    FileLock() = default;
    ~FileLock();
    FileLock(FileLock&& other) noexcept;
    FileLock& operator=(FileLock&& other) noexcept;
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    // Takes the lock that guards `path` (which need not exist yet; symbolic links are
    // followed, so every name of one file shares one lock), waiting at most `wait` while
    // another process holds it.
    static FileLock acquire(const std::string& path, std::chrono::milliseconds wait);

    // The lock file that guards `path`: "NAME.lock" beside the file the path leads to. A name
    // too long for the system is shortened and given a hash of the whole name.
    static std::string lock_path_of(const std::string& path);

    State state() const { return state_; }
    bool held() const { return state_ == State::held; }
    const std::string& reason() const { return reason_; }
    // Lets go now rather than at destruction.
    void release();

private:
    struct Holder;
    State state_ = State::none;
    std::string reason_;
    std::shared_ptr<Holder> holder_;
};

}  // namespace Core
