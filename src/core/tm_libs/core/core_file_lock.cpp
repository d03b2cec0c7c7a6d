#include "core_file_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <map>
#include <mutex>
#include <thread>

namespace Core {

namespace {

namespace fs = std::filesystem;

constexpr size_t kNameMax = 255;
constexpr std::string_view kSuffix = ".lock";
constexpr auto kRetryPause = std::chrono::milliseconds(10);

uint64_t name_hash(const std::string& text) {
    uint64_t hash = 0xcbf29ce484222325ULL;
    for (const char c : text) {
        hash ^= static_cast<unsigned char>(c);
        hash *= 0x100000001b3ULL;
    }
    return hash;
}

std::string hex(uint64_t value) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string text(16, '0');
    for (size_t at = text.size(); at-- > 0; value >>= 4)
        text[at] = kDigits[value & 0xF];
    return text;
}

// Where the path leads, so that every name of one file finds the same lock file.
fs::path resolved(const std::string& path) {
    std::error_code error;
    fs::path full = fs::weakly_canonical(fs::path(path), error);
    if (error) full = fs::absolute(fs::path(path), error).lexically_normal();
    return full;
}

// Whether `fd` is still the file at `path`: the last holder removes the lock file, and a
// waiter that opened the removed one must start again with the new one.
bool still_at_path(int fd, const std::string& path) {
    struct stat opened {};
    struct stat named {};
    return ::fstat(fd, &opened) == 0 && ::stat(path.c_str(), &named) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

struct Attempt {
    FileLock::State state = FileLock::State::none;
    int fd = -1;
    std::string reason;
};

Attempt lock_file(const std::string& lock_path, std::chrono::milliseconds wait) {
    const auto deadline = std::chrono::steady_clock::now() + wait;
    for (;;) {
        const int fd = ::open(lock_path.c_str(), O_RDONLY | O_CREAT | O_CLOEXEC, 0666);
        if (fd < 0) {
            if (errno == EINTR) continue;
            return {FileLock::State::unavailable, -1, std::strerror(errno)};
        }
        if (::flock(fd, LOCK_EX | LOCK_NB) == 0) {
            if (still_at_path(fd, lock_path)) return {FileLock::State::held, fd, {}};
            ::close(fd);
            continue;
        }
        const int error = errno;
        ::close(fd);
        if (error != EWOULDBLOCK && error != EINTR)
            return {FileLock::State::unavailable, -1, std::strerror(error)};
        if (std::chrono::steady_clock::now() >= deadline) return {FileLock::State::busy, -1, {}};
        std::this_thread::sleep_for(kRetryPause);
    }
}

}  // namespace

struct FileLock::Holder {
    std::string path;
    int fd;
    Holder(std::string lock_path, int lock_fd) : path(std::move(lock_path)), fd(lock_fd) {}
    Holder(const Holder&) = delete;
    Holder& operator=(const Holder&) = delete;
    // Removed while still held, so no one can take a lock on a file that is going away
    // without noticing.
    ~Holder() {
        ::unlink(path.c_str());
        ::close(fd);
    }
};

FileLock::~FileLock() {
    release();
}

FileLock::FileLock(FileLock&& other) noexcept
    : state_(other.state_), reason_(std::move(other.reason_)), holder_(std::move(other.holder_)) {
    other.state_ = State::none;
}

FileLock& FileLock::operator=(FileLock&& other) noexcept {
    if (this != &other) {
        release();
        state_ = other.state_;
        reason_ = std::move(other.reason_);
        holder_ = std::move(other.holder_);
        other.state_ = State::none;
    }
    return *this;
}

void FileLock::release() {
    holder_.reset();
    if (state_ == State::held) state_ = State::none;
}

std::string FileLock::lock_path_of(const std::string& path) {
    if (path.empty()) return {};
    const fs::path full = resolved(path);
    std::string name = full.filename().string();
    if (name.size() + kSuffix.size() > kNameMax) {
        const std::string tag = "-" + hex(name_hash(name));
        name = name.substr(0, kNameMax - kSuffix.size() - tag.size()) + tag;
    }
    return (full.parent_path() / (name + std::string(kSuffix))).string();
}

FileLock FileLock::acquire(const std::string& path, std::chrono::milliseconds wait) {
    // The holders of this process, by lock file: a second taker shares the first one's lock,
    // since flock would make it wait for its own process.
    static std::mutex mutex;
    static std::map<std::string, std::weak_ptr<Holder>> held_here;

    FileLock lock;
    const std::string lock_path = lock_path_of(path);
    if (lock_path.empty()) {
        lock.state_ = State::unavailable;
        lock.reason_ = "No file name";
        return lock;
    }
    const std::lock_guard<std::mutex> guard(mutex);
    std::erase_if(held_here, [](const auto& entry) { return entry.second.expired(); });
    if (std::shared_ptr<Holder> shared = held_here[lock_path].lock()) {
        lock.holder_ = std::move(shared);
        lock.state_ = State::held;
        return lock;
    }
    Attempt attempt = lock_file(lock_path, wait);
    lock.state_ = attempt.state;
    lock.reason_ = std::move(attempt.reason);
    if (attempt.state == State::held) {
        lock.holder_ = std::make_shared<Holder>(lock_path, attempt.fd);
        held_here[lock_path] = lock.holder_;
    }
    return lock;
}

}  // namespace Core
