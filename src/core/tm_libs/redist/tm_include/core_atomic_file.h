// Writing a whole file so that it is either the old file or the new one, never half of each.
//
// Failure style: false with a readable reason; the file on disk is then left as it was.
#pragma once

#include <string>
#include <string_view>

namespace Core {

// Writes `bytes` to a temporary file in the folder of `path`, flushes it to the disk and
// renames it over `path`. A file that existed keeps its permissions. On failure `error`
// says why (in the words of the system) and the temporary file is removed.
bool write_file_atomically(const std::string& path, std::string_view bytes, std::string& error);

// Reads a whole regular file into `bytes`. On failure `error` says why.
bool read_whole_file(const std::string& path, std::string& bytes, std::string& error);

}  // namespace Core
