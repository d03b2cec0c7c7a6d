#include "core_atomic_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "core_file_transaction.h"

namespace Core {
namespace {

std::string system_reason() {
    return std::strerror(errno);
}

}  // namespace

bool write_file_atomically(const std::string& path, std::string_view bytes, std::string& error) {
    FileTransaction transaction;
    if (transaction.stage(path, bytes) && transaction.commit()) return true;
    error = transaction.failure().reason;
    return false;
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
