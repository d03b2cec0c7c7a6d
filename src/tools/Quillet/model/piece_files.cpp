#include "piece_files.h"

#include <filesystem>

namespace {

// Only a regular file can be a piece file: the value of an empty tag names the project's
// own folder, which must fail like a missing file.
bool IsReadableFile(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(path, error);
}

}  // namespace

bool LoadPieceTypesFile(QLT_FILE& /*qlt_file*/, const std::string& path) {
    return IsReadableFile(path);
}

bool LoadPieceTextsFile(QLT_FILE& /*qlt_file*/, const std::string& path) {
    return IsReadableFile(path);
}
