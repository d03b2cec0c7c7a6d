#include <boost/filesystem/operations.hpp>
#include <boost/format.hpp>
#include <chrono>
#include <ctime>

#include "core_paths.h"

namespace fs = boost::filesystem;

namespace Core {
namespace {

// Random names that all exist mean something is wrong with the folder, not bad luck.
constexpr int kRandomAttempts = 100;

// The name made when there is no temporary folder: the running program's folder and the
// local time to the millisecond.
std::string time_based_name() {
    const auto now = std::chrono::system_clock::now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    const auto milliseconds =
        std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()) % 1000;
    std::tm local{};
    ::localtime_r(&seconds, &local);
    return (boost::format("%score_tmp_%02d-%02d-%02d-%03hu") % program_folder() % local.tm_hour %
            local.tm_min % local.tm_sec % milliseconds.count())
        .str();
}

}  // namespace

std::string temp_file_name() {
    boost::system::error_code error;
    const fs::path folder = fs::temp_directory_path(error);
    for (int attempt = 0; !error && attempt < kRandomAttempts; ++attempt) {
        // Each '%' becomes a random hexadecimal digit.
        const fs::path name = folder / fs::unique_path("core_tmp_%%%%%%", error);
        if (!error && fs::symlink_status(name, error).type() == fs::file_not_found)
            return name.string();
    }
    return time_based_name();
}

}  // namespace Core
