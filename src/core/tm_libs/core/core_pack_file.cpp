#include "core_pack_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <boost/format.hpp>
#include <cerrno>
#include <cstring>
#include <new>

#include "core_log.h"
#include "core_lzo.h"

namespace Core {
namespace {

// Without O_NONBLOCK a pipe given as a pack would wait for a writer; files ignore the flag.
int open_for_reading(const std::string& path) {
    return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
}

std::pair<dev_t, ino_t> identity(const struct stat& status) {
    return {status.st_dev, status.st_ino};
}

}  // namespace

PackFile::~PackFile() {
    for (const int handle : handles_)
        ::close(handle);
}

bool PackFile::load(const std::string& path) {
    // The detail log exists from the first pack on, so that options can address it.
    io_detail_log();
    path_ = path;
    if (!Detail::lzo_started()) return refuse("Cannot read " + path + ": LZO does not start");
    const int handle = open_for_reading(path);
    if (handle < 0) return refuse("Cannot open " + path + ": " + std::strerror(errno));
    // The handle that read the table serves the first entry opened.
    handles_.push_back(handle);

    struct stat status {};
    if (::fstat(handle, &status) != 0 || !S_ISREG(status.st_mode))
        return invalid("it is not a file");
    identity_ = identity(status);
    uint8_t header[PackTable::kHeaderSize];
    if (!read(handle, header, sizeof header)) return invalid("it is shorter than a pack header");
    const uint64_t length = PackTable::announced_length(header);
    const auto file_size = static_cast<uint64_t>(status.st_size);
    if (length > file_size)
        return invalid((boost::format("its table (%1% bytes) runs past the end of the file (%2% "
                                      "bytes)") %
                        length % file_size)
                           .str());

    std::unique_ptr<uint8_t[]> table(new (std::nothrow) uint8_t[static_cast<size_t>(length)]);
    if (!table) return refuse("Cannot load " + path + ": its table does not fit in memory");
    if (::lseek(handle, 0, SEEK_SET) != 0 ||
        !read(handle, table.get(), static_cast<size_t>(length)))
        return invalid("its table cannot be read whole");
    std::string reason;
    if (!table_.take(std::move(table), length, reason)) return invalid(reason);
    return true;
}

bool PackFile::refuse(std::string message) {
    error_ = std::move(message);
    return false;
}

bool PackFile::invalid(const std::string& reason) {
    return refuse(path_ + " is not a valid pack: " + reason);
}

int PackFile::take_handle() {
    if (handles_.empty()) return open_again();
    const int handle = handles_.back();
    handles_.pop_back();
    return handle;
}

// A file put in the pack's place since it was loaded does not match the table: it is not read.
int PackFile::open_again() const {
    const int handle = open_for_reading(path_);
    struct stat status {};
    if (handle < 0 || (::fstat(handle, &status) == 0 && identity(status) == identity_))
        return handle;
    ::close(handle);
    return -1;
}

bool PackFile::read(int handle, void* buffer, size_t count) {
    auto* into = static_cast<uint8_t*>(buffer);
    while (count > 0) {
        const ssize_t got = ::read(handle, into, count);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return false;
        into += got;
        count -= static_cast<size_t>(got);
    }
    return true;
}

}  // namespace Core
