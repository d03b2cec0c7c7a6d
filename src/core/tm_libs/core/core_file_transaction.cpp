#include "core_file_transaction.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "core_atomic_file.h"
#include "core_io.h"

namespace Core {
namespace {

int steps_until_failure = 0;

// The seam of Detail::fail_file_step: true (with errno set) when this step is the one.
bool injected_failure() {
    if (steps_until_failure <= 0 || --steps_until_failure > 0) return false;
    errno = ENOSPC;
    return true;
}

std::string system_reason() {
    return std::strerror(errno);
}

bool write_all(int descriptor, std::string_view bytes) {
    if (injected_failure()) return false;
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        bytes.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

bool write_all_at(int descriptor, uint64_t offset, std::string_view bytes) {
    if (injected_failure()) return false;
    while (!bytes.empty()) {
        const ssize_t written =
            ::pwrite(descriptor, bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (written < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        bytes.remove_prefix(static_cast<size_t>(written));
        offset += static_cast<uint64_t>(written);
    }
    return true;
}

bool flush(int descriptor) {
    return !injected_failure() && ::fsync(descriptor) == 0;
}

// The mode a new file gets from the umask.
mode_t new_file_mode() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

// The file a chain of symbolic links ends at (which need not exist); false for a loop.
bool follow_links(const std::string& path, std::filesystem::path& target) {
    target = path;
    // As many links as the system itself follows before it gives up.
    for (int hops = 0; hops < 40; ++hops) {
        std::error_code code;
        if (!std::filesystem::is_symlink(std::filesystem::symlink_status(target, code)))
            return true;
        const std::filesystem::path next = std::filesystem::read_symlink(target, code);
        if (code) return true;
        target = next.is_absolute() ? next : target.parent_path() / next;
    }
    return false;
}

// Writes a new file `path` (which must not exist) holding `bytes`, flushed.
bool write_new_file(const std::string& path, std::string_view bytes, mode_t mode) {
    const int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    if (descriptor < 0) return false;
    const bool written = write_all(descriptor, bytes) && flush(descriptor);
    const int saved = errno;
    if (::close(descriptor) != 0 || !written) {
        if (!written) errno = saved;
        ::unlink(path.c_str());
        return false;
    }
    return true;
}

}  // namespace

namespace Detail {
void fail_file_step(int n) {
    steps_until_failure = n;
}
}  // namespace Detail

bool StagedFile::write(std::string_view bytes) {
    return succeeded(write_all(descriptor_, bytes));
}

bool StagedFile::write_at(uint64_t offset, std::string_view bytes) {
    return succeeded(write_all_at(descriptor_, offset, bytes));
}

bool StagedFile::succeeded(bool written) {
    if (!written && error_ == 0) error_ = errno;
    return written;
}

FileTransaction::~FileTransaction() {
    remove_leftovers();
}

bool FileTransaction::stage(const std::string& path, std::string_view bytes) {
    return stage(path, [bytes](StagedFile& file) { return file.write(bytes); });
}

bool FileTransaction::stage(const std::string& path,
                            const std::function<bool(StagedFile&)>& produce) {
    if (path.empty()) return fail(path, "the file has no name");
    std::filesystem::path target;
    if (!follow_links(path, target)) return fail(path, std::strerror(ELOOP));
    struct stat existing {};
    const bool exists = ::stat(target.c_str(), &existing) == 0;
    if (exists && S_ISDIR(existing.st_mode)) return fail(path, std::strerror(EISDIR));
    // A file that nobody may write was marked so on purpose, even for a process that could.
    if (exists && ((existing.st_mode & 0222) == 0 || ::access(target.c_str(), W_OK) != 0))
        return fail(path, "the file is read-only", true);

    // A short fixed name, so that a target whose name is as long as the system allows still
    // gets a temporary beside it.
    std::filesystem::path folder = target.parent_path();
    if (folder.empty()) folder = ".";
    std::string temporary = (folder / ".tmp~XXXXXX").string();
    const int descriptor = ::mkstemp(temporary.data());
    if (descriptor < 0) return fail(path, system_reason());
    staged_.push_back({path, target.string(), temporary, {}});

    const mode_t mode = exists ? existing.st_mode & 07777 : new_file_mode();
    StagedFile file(descriptor);
    std::string reason;
    bool written = produce(file);
    if (!written) {
        reason = file.failed() ? std::strerror(file.error()) : "the content could not be made";
    } else if (::fchmod(descriptor, mode) != 0 || !flush(descriptor)) {
        written = false;
        reason = system_reason();
    }
    if (::close(descriptor) != 0 && written) {
        written = false;
        reason = system_reason();
    }
    return written || fail(path, reason);
}

bool FileTransaction::commit() {
    for (size_t replaced = 0; replaced < staged_.size(); ++replaced) {
        Staged& file = staged_[replaced];
        if (!keep_old_file(file) || injected_failure() ||
            ::rename(file.temporary.c_str(), file.target.c_str()) != 0) {
            const std::string reason = system_reason();
            roll_back(replaced);
            return fail(file.path, reason);
        }
        file.temporary.clear();  // it is the target now
    }
    IOManager* manager = IOManager::get();
    for (Staged& file : staged_) {
        if (manager != nullptr) manager->file_changed(file.target);
    }
    remove_leftovers();
    return true;
}

// A second name for the old file, so that it survives the rename over it. Where the file
// system has no hard links, a copy does.
bool FileTransaction::keep_old_file(Staged& file) {
    struct stat existing {};
    if (::lstat(file.target.c_str(), &existing) != 0) return errno == ENOENT;
    const std::string backup = file.temporary + ".old";
    if (::link(file.target.c_str(), backup.c_str()) != 0) {
        std::string bytes;
        std::string reason;
        if (!read_whole_file(file.target, bytes, reason) ||
            !write_new_file(backup, bytes, existing.st_mode & 07777))
            return false;
    }
    file.backup = backup;
    return true;
}

// Puts back the first `replaced` files: the old file where there was one, none where there
// was none. An old file that cannot be put back stays under its temporary name rather than
// be removed with the leftovers.
void FileTransaction::roll_back(size_t replaced) {
    while (replaced > 0) {
        Staged& file = staged_[--replaced];
        if (file.backup.empty())
            ::unlink(file.target.c_str());
        else
            ::rename(file.backup.c_str(), file.target.c_str());
        file.backup.clear();
    }
}

void FileTransaction::remove_leftovers() {
    for (const Staged& file : staged_) {
        if (!file.temporary.empty()) ::unlink(file.temporary.c_str());
        if (!file.backup.empty()) ::unlink(file.backup.c_str());
    }
    staged_.clear();
}

bool FileTransaction::fail(const std::string& path, std::string reason, bool read_only) {
    failure_ = {path, std::move(reason), read_only};
    remove_leftovers();
    return false;
}

}  // namespace Core
