// Any bytes as a project file: the reader must end, with records or with a reader record,
// and never read or write out of bounds. What it accepts must save the same twice: the text
// written, read back and written again, is the text written.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "model/ProjectFile.h"
#include "model/RecordIndex.h"
#include "model/qlt_errors.h"
#include "model/qlt_paths.h"

namespace {

constexpr const char* kPath = "/fuzz/ui.qlt";

// Reads `bytes` as the project at kPath and writes it again; throws what the reader throws.
std::string Resave(std::string_view bytes) {
    ProjectRecords records;
    const RecordIndex index{&records};
    const ScopedRecordLookup scope(index);
    SetProjectBaseDir(kPath);
    framework::Archive in = framework::Archive::ForLoading(bytes, kPath);
    ReadProject(in, records);
    framework::Archive out = framework::Archive::ForStoring(kPath);
    WriteProject(out, records);
    return out.TakeBytes();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    std::string saved;
    try {
        saved = Resave(bytes);
    } catch (const QLT_READ_ERROR&) {
        return 0;
    }
    // A file this program wrote must read: a reader record here is a fault too.
    if (Resave(saved) != saved) {
        std::fprintf(stderr, "A second save differs from the first:\n%s\n", saved.c_str());
        std::abort();
    }
    return 0;
}
