#include "qlt_paths.h"

#include <utility>

#include "core_paths.h"

std::string project_base_dir;

void SetProjectBaseDir(const std::string& path) {
    const size_t slash = path.rfind('/');
    project_base_dir = slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

std::string RelativeToBase(const std::string& path, const std::string& base) {
    if (path.size() <= 2 || base.empty()) return path;
    std::string climbing = base;
    size_t shared = climbing.size() - 1;
    int depth = 0;
    bool has_separator = climbing.find('\\') != std::string::npos;
    while (has_separator) {
        if (path.compare(0, shared, climbing, 0, shared) == 0) break;
        const size_t separator = climbing.rfind('\\');
        has_separator = separator != std::string::npos;
        if (has_separator) climbing.erase(separator);
        shared = climbing.size();
        ++depth;
    }
    if (!has_separator) return path;
    std::string relative;
    for (int level = 0; level < depth; ++level)
        relative += "..\\";
    if (shared + 1 < path.size()) relative += path.substr(shared + 1);
    return relative;
}

void MakeRelativePath(std::string& path) {
    path = RelativeToBase(ToFileForm(path), ToFileForm(project_base_dir));
}

void MakeAbsolutePath(std::string& path) {
    path = project_base_dir + FromFileForm(path);
}

std::string ToFileForm(std::string path) {
    return Core::backslashes(std::move(path));
}

std::string FromFileForm(std::string path) {
    return Core::slashes(std::move(path));
}
