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
    if (AtEnd()) {
        line.clear();
        return false;
    }
    const size_t end = input_.find('\n', position_);
    const size_t stop = end == std::string_view::npos ? input_.size() : end;
    std::string_view text = input_.substr(position_, stop - position_);
    if (end != std::string_view::npos && !text.empty() && text.back() == '\r')
        text.remove_suffix(1);
    line.assign(text);
    position_ = end == std::string_view::npos ? input_.size() : end + 1;
    ++line_number_;
    return true;
}

}  // namespace framework
