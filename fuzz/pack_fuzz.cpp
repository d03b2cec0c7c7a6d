// Any bytes as a pack file: loading it and reading every entry, in pieces and after seeks,
// must stay inside the table, the file and the buffers.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "core_pack_provider.h"

namespace {

// One file per process, rewritten for every input and removed at the end.
class PackFile {
public:
    PackFile()
        : path_((std::filesystem::temp_directory_path() /
                 ("quillet-pack-fuzz-" + std::to_string(::getpid())))
                    .string()) {}
    ~PackFile() { std::filesystem::remove(path_); }
    const std::string& path() const { return path_; }

private:
    std::string path_;
};

const std::string& PackPath() {
    static const PackFile file;
    return file.path();
}

void ReadEntry(Core::InputBufferImpl& entry, size_t seed) {
    std::vector<uint8_t> piece(1 + seed % 200000);
    while (entry.read(piece.data(), static_cast<unsigned>(piece.size())) > 0) {
    }
    entry.seek(seed % (entry.size() + 2));
    entry.get();
    entry.data();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::ofstream(PackPath(), std::ios::binary | std::ios::trunc)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    Core::PackBufferProvider provider;
    if (!provider.load(PackPath().c_str())) return 0;
    const Core::PackTable& table = provider.pack()->table();
    // Enough entries to meet every kind of damage, few enough to keep each run short.
    for (uint32_t index = 0; index < table.entry_count() && index < 64; ++index) {
        if (const auto entry = provider.open(table.name(index))) ReadEntry(*entry, size + index);
    }
    provider.find("*", Core::IOManager::kFindRecursive);
    return 0;
}
