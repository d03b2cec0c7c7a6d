// The table of a pack file: the header, the record offsets, the stored block sizes and the
// records, read whole from the start of the pack and searched where they lie.
//
// A pack (all numbers unsigned 32-bit little-endian):
//
//     0   "PACK"                  12  record area size R      20  E record offsets
//     4   version 0x00030000      16  block count B               B stored block sizes
//     8   entry count E                                           the record area
//
// A record, at its offset in the record area: the file position of the entry's first block,
// the index of that block in the block sizes, the entry's size, a reserved word, then the
// NUL-terminated name with `/` between folders. Records stand in name order. An entry is cut
// into blocks of 65536 bytes, its last one partial; a block is stored raw when its stored size
// is 65536, or when it is the partial last block stored at its content size, and as one
// LZO1X stream otherwise.
//
// Failure style: `take` refuses, with a reason, a table in which a later lookup or read would
// leave the table; once taken nothing fails. Thread safety: a taken table is only read.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Core {

// The order of pack names: bytes compared as unsigned after ASCII lower-casing, so that
// "UI/Back.TGA" finds "ui/back.tga". Lookup and the writer's sort both use it.
int compare_pack_names(const char* a, const char* b);

class PackTable {
public:
    static constexpr uint32_t kBlockSize = 65536;
    static constexpr size_t kHeaderSize = 20;
    static constexpr size_t kRecordHeaderSize = 16;
    static constexpr uint32_t kVersion = 0x00030000;

    struct Entry {
        uint32_t data_offset;
        uint32_t first_block;
        uint32_t size;
        const char* name;
    };

    // How a name was looked for. `outside` is the quick rejection: the name sorts before the
    // first entry or after the last, and only those two were compared.
    struct Lookup {
        enum class Result { found, outside, missing };
        Result result;
        uint32_t index;  // with `found`
    };

    // The length of the table that a header (its first kHeaderSize bytes) announces, in 64
    // bits so that no count can wrap it.
    static uint64_t announced_length(const uint8_t* header);
    // The number of blocks of an entry of `size` bytes.
    static uint64_t block_count(uint64_t size) { return (size + kBlockSize - 1) / kBlockSize; }
    // The content size of block `block` of an entry of `size` bytes.
    static uint32_t block_content(uint32_t size, uint64_t block);

    // Takes `bytes`, the first `length` bytes of a pack, where `length` must be what they
    // announce. Refuses (false, with `reason`) a table without entries, with a record or a name
    // that does not end inside the record area, with an entry whose blocks run past the block
    // table, or with a stored block size of 0 or above 65536.
    bool take(std::unique_ptr<uint8_t[]> bytes, uint64_t length, std::string& reason);

    uint32_t entry_count() const { return entry_count_; }
    uint32_t block_count() const { return block_count_; }
    Entry entry(uint32_t index) const;
    const char* name(uint32_t index) const;
    // The stored size of block `block` of the block table (not of one entry).
    uint32_t block_size(uint32_t block) const { return word(block_sizes_ + 4 * size_t{block}); }

    Lookup lookup(const char* name) const;
    // The names below the folder of `pattern` whose last component matches its file part, in
    // table order; flag IOManager::kFindRecursive takes deeper names too. The folder is
    // compared with case, as the names stand. The names belong to the table.
    std::vector<const char*> find(const std::string& pattern, unsigned flags) const;

private:
    uint32_t word(size_t offset) const;
    size_t record(uint32_t index) const { return records_ + word(kHeaderSize + 4 * size_t{index}); }
    // The first entry whose name does not sort before `name`.
    uint32_t lower_bound(const char* name) const;
    bool check_records(std::string& reason) const;
    bool check_blocks(std::string& reason) const;

    std::unique_ptr<uint8_t[]> bytes_;
    uint32_t entry_count_ = 0;
    uint32_t block_count_ = 0;
    uint32_t records_size_ = 0;
    size_t block_sizes_ = 0;  // where the block sizes begin
    size_t records_ = 0;      // where the record area begins
};

}  // namespace Core
