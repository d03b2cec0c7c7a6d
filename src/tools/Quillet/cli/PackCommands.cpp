#include "PackCommands.h"

#include <cstdio>
#include <iostream>
#include <memory>

#include "QltCommands.h"
#include "core_pack_provider.h"
#include "core_pack_writer.h"

namespace {

// Entries are copied out in pieces of this size, so that a large one needs little memory.
constexpr unsigned kCopySize = 1u << 20;

bool LoadPack(const std::string& path, Core::PackBufferProvider& provider) {
    if (provider.load(path.c_str())) return true;
    std::cerr << provider.error() << '\n';
    return false;
}

// Copies the whole of `entry` to standard output; false (with a message) when a block of it
// cannot be read, or the output cannot be written.
int CopyEntry(Core::InputBufferImpl& entry, const std::string& pack, const std::string& name) {
    const auto piece = std::make_unique_for_overwrite<char[]>(kCopySize);
    while (!entry.eof()) {
        const unsigned got = entry.read(piece.get(), kCopySize);
        if (got == 0) break;
        if (std::fwrite(piece.get(), 1, got, stdout) != got) {
            std::cerr << "Cannot write " << name << " to standard output\n";
            return kExitWrite;
        }
    }
    if (entry.failed() || !entry.eof()) {
        std::cerr << pack << " is corrupt: " << name << " cannot be read beyond byte "
                  << entry.tell() << " of " << entry.size() << '\n';
        return kExitFailure;
    }
    return std::fflush(stdout) == 0 ? kExitOk : kExitWrite;
}

}  // namespace

int RunPackCreate(const std::vector<std::string>& arguments) {
    if (arguments.size() != 2) {
        std::cerr << "usage: quillet-cli pack create OUT.pack DIR\n";
        return kExitUsage;
    }
    std::string error;
    const Core::PackWriteResult result = Core::write_pack(arguments[0], arguments[1], error);
    if (result == Core::PackWriteResult::written) return kExitOk;
    std::cerr << error << '\n';
    return result == Core::PackWriteResult::input_failed ? kExitFailure : kExitWrite;
}

int RunPackLs(const std::vector<std::string>& arguments) {
    if (arguments.size() != 1) {
        std::cerr << "usage: quillet-cli pack ls PACK\n";
        return kExitUsage;
    }
    Core::PackBufferProvider provider;
    if (!LoadPack(arguments[0], provider)) return kExitFailure;
    const Core::PackTable& table = provider.pack()->table();
    for (uint32_t index = 0; index < table.entry_count(); ++index) {
        const Core::PackTable::Entry entry = table.entry(index);
        std::cout << entry.size << ' ' << entry.name << '\n';
    }
    return std::cout.flush() ? kExitOk : kExitWrite;
}

int RunPackCat(const std::vector<std::string>& arguments) {
    if (arguments.size() != 2) {
        std::cerr << "usage: quillet-cli pack cat PACK NAME\n";
        return kExitUsage;
    }
    const std::string& pack = arguments[0];
    const std::string& name = arguments[1];
    Core::PackBufferProvider provider;
    if (!LoadPack(pack, provider)) return kExitFailure;
    const std::shared_ptr<Core::InputBufferImpl> entry = provider.open(name);
    if (!entry) {
        std::cerr << "No entry " << name << " in " << pack << '\n';
        return kExitFailure;
    }
    return CopyEntry(*entry, pack, name);
}
