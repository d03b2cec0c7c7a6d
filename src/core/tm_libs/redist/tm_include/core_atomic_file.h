// Writing a whole file so that it is either the old file or the new one, never half of each.
//
// Failure style: false with a readable reason; the file on disk is then left as it was.
#pragma once

#include <string>
#include <string_view>

namespace Core {

// Replaces one file as a FileTransaction does (links followed, permissions kept, read-only
// files refused). On failure `error` says why and the file on disk is as it was.
bool write_file_atomically(const std::string& path, std::string_view bytes, std::string& error);

// Reads a whole regular file into `bytes`. On failure `error` says why.
bool read_whole_file(const std::string& path, std::string& bytes, std::string& error);

}  // namespace Core
