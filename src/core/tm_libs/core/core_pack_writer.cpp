#include "core_pack_writer.h"

#include <sys/stat.h>

#include <algorithm>
#include <boost/format.hpp>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <vector>

#include "core_file_transaction.h"
#include "core_lzo.h"
#include "core_pack_table.h"

namespace Core {
namespace {

namespace fs = std::filesystem;

constexpr uint32_t kBlockSize = PackTable::kBlockSize;
constexpr uint64_t kWordLimit = std::numeric_limits<uint32_t>::max();
// Blocks are gathered into writes of about this size.
constexpr size_t kWriteSize = size_t{1} << 20;
// LZO1X's bound on what a block of 65536 bytes can grow to.
constexpr size_t kCompressedLimit = kBlockSize + kBlockSize / 16 + 64 + 3;

struct Source {
    std::string name;  // relative to the folder, with '/'
    std::string path;
    uint32_t size;
    uint32_t first_block = 0;
    uint32_t data_offset = 0;
};

void put_word(std::string& out, uint32_t value) {
    for (int shift = 0; shift < 32; shift += 8)
        out += static_cast<char>((value >> shift) & 0xFF);
}

// The regular files under `folder` (links followed) with their names and sizes, leaving out
// the pack being written, whose old bytes would otherwise go into the new pack.
class SourceList {
public:
    SourceList(std::string folder, const std::string& pack_path) : folder_(std::move(folder)) {
        struct stat status {};
        if (::stat(pack_path.c_str(), &status) == 0)
            pack_identity_ = {status.st_dev, status.st_ino};
    }

    bool gather(std::vector<Source>& sources, std::string& error) const {
        std::error_code code;
        if (!fs::is_directory(folder_, code)) {
            error = folder_ + " is not a folder";
            return false;
        }
        fs::recursive_directory_iterator walk(folder_, code);
        for (; !code && walk != fs::recursive_directory_iterator(); walk.increment(code)) {
            if (!add(walk->path(), sources, error)) return false;
        }
        if (code) {
            error = "Cannot read " + folder_ + ": " + code.message();
            return false;
        }
        return ordered(sources, error);
    }

private:
    bool add(const fs::path& path, std::vector<Source>& sources, std::string& error) const {
        struct stat status {};
        if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return true;
        if (std::make_pair(status.st_dev, status.st_ino) == pack_identity_) return true;
        if (static_cast<uint64_t>(status.st_size) > kWordLimit) {
            error = path.string() + " is too large for a pack: an entry holds less than 4 GiB";
            return false;
        }
        sources.push_back({path.lexically_relative(folder_).generic_string(), path.string(),
                           static_cast<uint32_t>(status.st_size)});
        return true;
    }

    // Sorted as lookup expects; two names that only case tells apart would leave one of
    // them out of reach, so they are refused.
    bool ordered(std::vector<Source>& sources, std::string& error) const {
        if (sources.empty()) {
            error = folder_ + " holds no files, and a pack needs at least one";
            return false;
        }
        std::sort(sources.begin(), sources.end(), [](const Source& a, const Source& b) {
            return compare_pack_names(a.name.c_str(), b.name.c_str()) < 0;
        });
        const auto twins = std::adjacent_find(
            sources.begin(), sources.end(), [](const Source& a, const Source& b) {
                return compare_pack_names(a.name.c_str(), b.name.c_str()) == 0;
            });
        if (twins == sources.end()) return true;
        error = (boost::format("%1% and %2% differ only in case, and a pack finds names without "
                               "regard to case") %
                 twins->path % std::next(twins)->path)
                    .str();
        return false;
    }

    std::string folder_;
    std::pair<dev_t, ino_t> pack_identity_{};
};

// The sizes of the table's parts, known before any block is compressed.
struct Plan {
    uint64_t entries = 0;
    uint64_t blocks = 0;
    uint64_t records_size = 0;
    uint64_t table_length() const {
        return PackTable::kHeaderSize + 4 * (entries + blocks) + records_size;
    }
};

bool make_plan(std::vector<Source>& sources, Plan& plan, std::string& error) {
    plan.entries = sources.size();
    for (Source& source : sources) {
        source.first_block = static_cast<uint32_t>(plan.blocks);
        plan.blocks += PackTable::block_count(source.size);
        plan.records_size += PackTable::kRecordHeaderSize + source.name.size() + 1;
    }
    if (plan.entries > kWordLimit || plan.blocks > kWordLimit || plan.records_size > kWordLimit) {
        error = "There are too many files for one pack";
        return false;
    }
    return true;
}

std::string make_table(const std::vector<Source>& sources, const Plan& plan,
                       const std::vector<uint32_t>& block_sizes) {
    std::string table = "PACK";
    put_word(table, PackTable::kVersion);
    put_word(table, static_cast<uint32_t>(plan.entries));
    put_word(table, static_cast<uint32_t>(plan.records_size));
    put_word(table, static_cast<uint32_t>(plan.blocks));
    uint32_t record_offset = 0;
    for (const Source& source : sources) {
        put_word(table, record_offset);
        record_offset +=
            static_cast<uint32_t>(PackTable::kRecordHeaderSize + source.name.size() + 1);
    }
    for (const uint32_t stored : block_sizes)
        put_word(table, stored);
    for (const Source& source : sources) {
        put_word(table, source.data_offset);
        put_word(table, source.first_block);
        put_word(table, source.size);
        put_word(table, 0);  // reserved
        table += source.name;
        table += '\0';
    }
    return table;
}

// Streams the entries' blocks into the staged pack after its table and keeps the stored size
// of every block for the table.
class BlockWriter {
public:
    BlockWriter(StagedFile& file, uint64_t offset)
        : file_(file),
          offset_(offset),
          content_(std::make_unique_for_overwrite<uint8_t[]>(kBlockSize)),
          compressed_(std::make_unique_for_overwrite<uint8_t[]>(kCompressedLimit)),
          work_(std::make_unique_for_overwrite<lzo_align_t[]>(
              (LZO1X_1_MEM_COMPRESS + sizeof(lzo_align_t) - 1) / sizeof(lzo_align_t))) {}

    // Appends the blocks of `source`; false when a write fails, or (with `error`) when the
    // file cannot be read as it was listed.
    bool add(Source& source, std::string& error) {
        if (offset_ > kWordLimit) {
            error = "The pack would pass 4 GiB, where its entries can no longer be found";
            return false;
        }
        source.data_offset = static_cast<uint32_t>(offset_);
        std::ifstream stream(source.path, std::ios::binary);
        if (!stream) {
            error = "Cannot read " + source.path + ": " + std::strerror(errno);
            return false;
        }
        for (uint64_t block = 0; block < PackTable::block_count(source.size); ++block) {
            const uint32_t length = PackTable::block_content(source.size, block);
            stream.read(reinterpret_cast<char*>(content_.get()), length);
            if (stream.gcount() != length) return changed(source, error);
            if (!put_block(length)) return false;
        }
        if (!stream || stream.peek() != std::ifstream::traits_type::eof())
            return changed(source, error);
        return true;
    }

    bool flush() {
        const bool written = file_.write(pending_);
        pending_.clear();
        return written;
    }

    const std::vector<uint32_t>& block_sizes() const { return block_sizes_; }

private:
    // A block is kept compressed only when that makes it smaller: a stored size equal to
    // the content's is what marks a block raw.
    bool put_block(uint32_t length) {
        lzo_uint compressed = 0;
        lzo1x_1_compress(content_.get(), length, compressed_.get(), &compressed, work_.get());
        const bool raw = compressed >= length;
        const uint8_t* stored = raw ? content_.get() : compressed_.get();
        const size_t stored_size = raw ? length : compressed;
        pending_.append(reinterpret_cast<const char*>(stored), stored_size);
        block_sizes_.push_back(static_cast<uint32_t>(stored_size));
        offset_ += stored_size;
        return pending_.size() < kWriteSize || flush();
    }

    static bool changed(const Source& source, std::string& error) {
        error = source.path + " changed while it was packed";
        return false;
    }

    StagedFile& file_;
    uint64_t offset_;
    std::string pending_;
    std::vector<uint32_t> block_sizes_;
    std::unique_ptr<uint8_t[]> content_;
    std::unique_ptr<uint8_t[]> compressed_;
    std::unique_ptr<lzo_align_t[]> work_;
};

// The whole pack: the table's room first, then every entry's blocks, then the table over
// its room, now that the stored sizes are known.
bool write_entries(StagedFile& file, std::vector<Source>& sources, const Plan& plan,
                   std::string& error) {
    const uint64_t table_length = plan.table_length();
    if (!file.write(std::string(table_length, '\0'))) return false;
    BlockWriter blocks(file, table_length);
    for (Source& source : sources) {
        if (!blocks.add(source, error)) return false;
    }
    return blocks.flush() && file.write_at(0, make_table(sources, plan, blocks.block_sizes()));
}

}  // namespace

PackWriteResult write_pack(const std::string& pack_path, const std::string& folder,
                           std::string& error) {
    std::vector<Source> sources;
    Plan plan;
    if (!SourceList(folder, pack_path).gather(sources, error) || !make_plan(sources, plan, error))
        return PackWriteResult::input_failed;
    if (!Detail::lzo_started()) {
        error = "Cannot write " + pack_path + ": LZO does not start";
        return PackWriteResult::output_failed;
    }
    std::string input_error;
    FileTransaction transaction;
    if (transaction.stage(
            pack_path,
            [&](StagedFile& file) { return write_entries(file, sources, plan, input_error); }) &&
        transaction.commit())
        return PackWriteResult::written;
    if (!input_error.empty()) {
        error = input_error;
        return PackWriteResult::input_failed;
    }
    error = "Cannot write " + pack_path + ": " + transaction.failure().reason;
    return PackWriteResult::output_failed;
}

}  // namespace Core
