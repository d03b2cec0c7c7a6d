#include "Archive.h"

namespace framework {

Archive::Archive(Mode mode, std::string_view input, std::string path)
    : mode_(mode), input_(input), path_(std::move(path)) {}

Archive Archive::ForLoading(std::string_view bytes, std::string path) {
    return Archive(Mode::Load, bytes, std::move(path));
}

Archive Archive::ForStoring(std::string path) {
    return Archive(Mode::Store, {}, std::move(path));
}

bool Archive::ReadString(std::string& line) {
    std::string_view text;
    const bool read = ReadLine(text);
    line.assign(text);
    return read;
}

bool Archive::ReadLine(std::string_view& line) {
    if (AtEnd()) {
        line = {};
        return false;
    }
    const size_t end = input_.find('\n', position_);
    const size_t stop = end == std::string_view::npos ? input_.size() : end;
    line = input_.substr(position_, stop - position_);
    if (end != std::string_view::npos && !line.empty() && line.back() == '\r')
        line.remove_suffix(1);
    position_ = end == std::string_view::npos ? input_.size() : end + 1;
    ++line_number_;
    return true;
}

}  // namespace framework
