// The report file's writers: plain text, and the stack walker's lines.
#include <link.h>
#include <unistd.h>
#include <algorithm>
#include <climits>
#include <cstdarg>
#include <cstdio>

#include "core_bug_report.h"
#include "core_descriptor_write.h"

namespace Core::BugReport {
namespace {

constexpr std::string_view kLineEnd = "\r\n";

// Where an address lies: the module and its loaded segment (PT_LOAD), counted from 1.
struct ModuleSearch {
    uintptr_t address = 0;
    bool found = false;
    unsigned segment = 0;
    uintptr_t offset = 0;
    char path[PATH_MAX] = {};
};

void copy_path(char (&path)[PATH_MAX], const char* name) {
    // The program itself has no name in the loader's list.
    if (name == nullptr || name[0] == '\0') {
        const ssize_t length = ::readlink("/proc/self/exe", path, sizeof path - 1);
        path[length > 0 ? length : 0] = '\0';
        return;
    }
    std::snprintf(path, sizeof path, "%s", name);
}

int find_segment(dl_phdr_info* info, size_t /*size*/, void* data) {
    ModuleSearch& search = *static_cast<ModuleSearch*>(data);
    unsigned segment = 0;
    for (ElfW(Half) i = 0; i < info->dlpi_phnum; ++i) {
        const ElfW(Phdr)& header = info->dlpi_phdr[i];
        if (header.p_type != PT_LOAD) continue;
        ++segment;
        const uintptr_t start = info->dlpi_addr + header.p_vaddr;
        if (search.address < start || search.address - start >= header.p_memsz) continue;
        search.found = true;
        search.segment = segment;
        search.offset = search.address - start;
        copy_path(search.path, info->dlpi_name);
        return 1;
    }
    return 0;
}

}  // namespace

void ReportFile::write(std::string_view text) {
    Detail::write_fully(descriptor_, text.data(), text.size());
}

void ReportFile::write_line(std::string_view text) {
    write(text);
    write(kLineEnd);
}

void ReportFile::print(const char* format, ...) {
    char text[1024];
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    if (length > 0)
        write(std::string_view(text, std::min(sizeof text - 1, static_cast<size_t>(length))));
}

void WriteStackWriter::write(const char* text) {
    file_.write(text);
}

void WriteStackWriter::write_line(const char* text) {
    file_.write_line(text);
}

void WriteStackWriter::write_address(uintptr_t address) {
    ModuleSearch search;
    search.address = address;
    dl_iterate_phdr(find_segment, &search);
    const auto value = static_cast<unsigned long long>(address);
    if (!search.found) return file_.print("%016llX  Module not found", value);
    file_.print("%016llX  %04X:%016llX  ", value, search.segment,
                static_cast<unsigned long long>(search.offset));
    file_.write(search.path);
}

}  // namespace Core::BugReport
