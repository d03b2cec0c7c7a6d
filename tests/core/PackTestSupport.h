// What the pack tests share: packs laid out by hand, whole reads, and the lines of "system.io".
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core_io.h"
#include "core_log.h"

// The four little-endian bytes of a field.
inline std::string Word(uint32_t value) {
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>((value >> shift) & 0xFF);
    return bytes;
}

// A record: data offset, first block, size, reserved, name.
inline std::string Record(uint32_t data_offset, uint32_t first_block, uint32_t size,
                          const std::string& name) {
    return Word(data_offset) + Word(first_block) + Word(size) + Word(0) + name + '\0';
}

// The header of a pack with these counts.
inline std::string Header(uint32_t entries, uint32_t records_size, uint32_t blocks) {
    return "PACK" + Word(0x00030000) + Word(entries) + Word(records_size) + Word(blocks);
}

// Everything `buffer` gives from where it stands, read in pieces of `piece` bytes.
inline std::string ReadRest(Core::InputBufferImpl& buffer, unsigned piece) {
    std::string bytes;
    std::vector<char> chunk(piece);
    while (const unsigned got = buffer.read(chunk.data(), piece))
        bytes.append(chunk.data(), got);
    return bytes;
}

// The lines written to "system.io" while it lives, the trace lines included.
class IoLines {
public:
    IoLines() {
        auto& manager = boost::logging::manager::instance();
        manager.flush_log_cache();
        manager.set_level("system.io", Core::trace);
        manager.add_appender(
            "system.io", "pack-test",
            [this](const std::string&, const std::string& text, unsigned) {
                lines_.push_back(text);
            },
            100);
    }
    ~IoLines() {
        auto& manager = boost::logging::manager::instance();
        manager.remove_appender("system.io", "pack-test");
        manager.set_level("system.io", Core::info);
    }
    IoLines(const IoLines&) = delete;
    IoLines& operator=(const IoLines&) = delete;

    // The lines so far that begin with `prefix`, forgetting all.
    std::vector<std::string> Take(const std::string& prefix = "") {
        std::vector<std::string> taken;
        for (std::string& line : lines_) {
            if (line.compare(0, prefix.size(), prefix) == 0) taken.push_back(std::move(line));
        }
        lines_.clear();
        return taken;
    }

private:
    std::vector<std::string> lines_;
};
