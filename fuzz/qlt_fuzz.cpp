// Any bytes as a project file: the reader must end, with records or with a reader record,
// and never read or write out of bounds.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "model/ProjectFile.h"
#include "model/RecordIndex.h"
#include "model/qlt_errors.h"
#include "model/qlt_paths.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    ProjectRecords records;
    const RecordIndex index{&records};
    const ScopedRecordLookup scope(index);
    SetProjectBaseDir("/fuzz/ui.qlt");
    framework::Archive archive = framework::Archive::ForLoading(bytes, "/fuzz/ui.qlt");
    try {
        ReadProject(archive, records);
    } catch (const QLT_READ_ERROR&) {
        return 0;
    }
    // What was read must write again.
    framework::Archive out = framework::Archive::ForStoring("/fuzz/ui.qlt");
    WriteProject(out, records);
    return 0;
}
