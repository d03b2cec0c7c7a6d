#include "core_atomic_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace Core {
namespace {

std::string system_reason() {
    return std::strerror(errno);
}

bool write_all(int descriptor, std::string_view bytes) {
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

// The mode a new file would get from the umask, or the mode of the file being replaced.
mode_t mode_for(const std::string& path) {
    struct stat existing {};
    if (::stat(path.c_str(), &existing) == 0) return existing.st_mode & 07777;
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

}  // namespace

bool write_file_atomically(const std::string& path, std::string_view bytes, std::string& error) {
    const std::filesystem::path target(path);
    std::filesystem::path folder = target.parent_path();
    if (folder.empty()) folder = ".";
    // A hidden name beside the target, ".NAME.XXXXXX", for mkstemp to fill in.
    std::filesystem::path hidden = ".";
    hidden += target.filename();
    hidden += ".XXXXXX";
    std::string temporary = (folder / hidden).string();

    const int descriptor = ::mkstemp(temporary.data());
    if (descriptor < 0) {
        error = system_reason();
        return false;
    }
    const bool written = write_all(descriptor, bytes) &&
                         ::fchmod(descriptor, mode_for(path)) == 0 && ::fsync(descriptor) == 0;
    const std::string reason = written ? std::string() : system_reason();
    const bool closed = ::close(descriptor) == 0;
    if (!written || !closed || ::rename(temporary.c_str(), path.c_str()) != 0) {
        error = !reason.empty() ? reason : system_reason();
        ::unlink(temporary.c_str());
        return false;
    }
    return true;
}

bool read_whole_file(const std::string& path, std::string& bytes, std::string& error) {
    std::error_code code;
    const auto status = std::filesystem::status(path, code);
    if (status.type() != std::filesystem::file_type::regular) {
        error = status.type() == std::filesystem::file_type::not_found ? "No such file"
                : code                                                 ? code.message()
                                                                       : "Not a regular file";
        return false;
    }
    std::ifstream stream(path, std::ios::binary | std::ios::ate);
    if (!stream) {
        error = system_reason();
        return false;
    }
    // One read of the whole size; a file that shrinks meanwhile gives what is there.
    bytes.resize(static_cast<size_t>(std::max<std::streamoff>(stream.tellg(), 0)));
    stream.seekg(0);
    stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<size_t>(std::max<std::streamsize>(stream.gcount(), 0)));
    if (stream.bad()) {
        error = system_reason();
        return false;
    }
    return true;
}

}  // namespace Core
