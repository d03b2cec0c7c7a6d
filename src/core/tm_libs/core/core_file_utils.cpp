#include <boost/filesystem/operations.hpp>
#include <filesystem>

#include "core_atomic_file.h"
#include "core_paths.h"

namespace fs = boost::filesystem;

namespace Core {

fs::path current_directory() {
    boost::system::error_code error;
    fs::path folder = fs::current_path(error);
    return error ? fs::path() : folder;
}

bool ensure_directory(const fs::path& directory) {
    boost::system::error_code error;
    if (fs::is_directory(directory, error)) return true;
    fs::create_directories(directory, error);
    return fs::is_directory(directory, error);
}

bool touch(const fs::path& file) {
    // std::filesystem sets the time to the nanosecond; Boost's only to the second.
    const std::filesystem::path native(file.native());
    std::error_code error;
    if (!std::filesystem::is_regular_file(native, error)) return false;
    std::filesystem::last_write_time(native, std::filesystem::file_time_type::clock::now(), error);
    return !error;
}

bool copy_file(const fs::path& from, const fs::path& to) {
    std::string bytes;
    std::string error;
    if (!read_whole_file(from.string(), bytes, error)) return false;
    if (to.has_parent_path() && !ensure_directory(to.parent_path())) return false;
    // The atomic writer makes a new file, so the copy already carries the time of copying.
    return write_file_atomically(to.string(), bytes, error);
}

std::string file_version(const fs::path& /*file*/) {
    return {};
}

}  // namespace Core
