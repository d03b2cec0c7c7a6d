#include "core_pack_table.h"

#include <boost/format.hpp>
#include <cstring>

#include "core_io.h"
#include "core_path_match.h"

namespace Core {
namespace {

uint32_t little_endian(const uint8_t* bytes) {
    return uint32_t{bytes[0]} | uint32_t{bytes[1]} << 8 | uint32_t{bytes[2]} << 16 |
           uint32_t{bytes[3]} << 24;
}

}  // namespace

int compare_pack_names(const char* a, const char* b) {
    for (;; ++a, ++b) {
        const auto left = static_cast<unsigned char>(fold_char(*a));
        const auto right = static_cast<unsigned char>(fold_char(*b));
        if (left != right || left == 0) return left - right;
    }
}

uint64_t PackTable::announced_length(const uint8_t* header) {
    const uint64_t entries = little_endian(header + 8);
    const uint64_t records_size = little_endian(header + 12);
    const uint64_t blocks = little_endian(header + 16);
    return kHeaderSize + 4 * (entries + blocks) + records_size;
}

uint32_t PackTable::block_content(uint32_t size, uint64_t block) {
    return block == size / kBlockSize ? size % kBlockSize : kBlockSize;
}

bool PackTable::take(std::unique_ptr<uint8_t[]> bytes, uint64_t length, std::string& reason) {
    if (length < kHeaderSize || announced_length(bytes.get()) != length) {
        reason = "the table is not as long as its header says";
        return false;
    }
    bytes_ = std::move(bytes);
    entry_count_ = word(8);
    records_size_ = word(12);
    block_count_ = word(16);
    block_sizes_ = kHeaderSize + 4 * size_t{entry_count_};
    records_ = block_sizes_ + 4 * size_t{block_count_};
    if (entry_count_ == 0) {
        reason = "it has no entries";
        return false;
    }
    return check_records(reason) && check_blocks(reason);
}

// Every later lookup reads names in place up to their NUL, so each must end in the area.
bool PackTable::check_records(std::string& reason) const {
    const uint8_t* area = bytes_.get() + records_;
    for (uint32_t index = 0; index < entry_count_; ++index) {
        const uint64_t offset = word(kHeaderSize + 4 * size_t{index});
        if (offset + kRecordHeaderSize >= records_size_) {
            reason = (boost::format("record %1% does not fit in the record area") % index).str();
            return false;
        }
        const size_t name = static_cast<size_t>(offset) + kRecordHeaderSize;
        if (std::memchr(area + name, 0, records_size_ - name) == nullptr) {
            reason =
                (boost::format("the name of record %1% runs past the record area") % index).str();
            return false;
        }
    }
    return true;
}

// Reads decode whole blocks into buffers of one block, so every stored size must fit one.
bool PackTable::check_blocks(std::string& reason) const {
    for (uint32_t index = 0; index < entry_count_; ++index) {
        const Entry entry = this->entry(index);
        if (entry.first_block + block_count(entry.size) > block_count_) {
            reason =
                (boost::format("the blocks of entry %1% run past the block table") % index).str();
            return false;
        }
    }
    for (uint32_t block = 0; block < block_count_; ++block) {
        const uint32_t stored = block_size(block);
        if (stored == 0 || stored > kBlockSize) {
            reason = (boost::format("block %1% has a stored size of %2%") % block % stored).str();
            return false;
        }
    }
    return true;
}

uint32_t PackTable::word(size_t offset) const {
    return little_endian(bytes_.get() + offset);
}

PackTable::Entry PackTable::entry(uint32_t index) const {
    const size_t at = record(index);
    return {word(at), word(at + 4), word(at + 8), name(index)};
}

const char* PackTable::name(uint32_t index) const {
    return reinterpret_cast<const char*>(bytes_.get() + record(index) + kRecordHeaderSize);
}

PackTable::Lookup PackTable::lookup(const char* wanted) const {
    if (compare_pack_names(wanted, name(0)) < 0 ||
        compare_pack_names(wanted, name(entry_count_ - 1)) > 0)
        return {Lookup::Result::outside, 0};
    const uint32_t index = lower_bound(wanted);
    if (index < entry_count_ && compare_pack_names(wanted, name(index)) == 0)
        return {Lookup::Result::found, index};
    return {Lookup::Result::missing, 0};
}

uint32_t PackTable::lower_bound(const char* wanted) const {
    uint32_t first = 0;
    uint32_t count = entry_count_;
    while (count > 0) {
        const uint32_t half = count / 2;
        if (compare_pack_names(name(first + half), wanted) < 0) {
            first += half + 1;
            count -= half + 1;
        } else {
            count = half;
        }
    }
    return first;
}

std::vector<const char*> PackTable::find(const std::string& pattern, unsigned flags) const {
    const size_t slash = pattern.rfind('/');
    const std::string folder = slash == std::string::npos ? pattern : pattern.substr(0, slash);
    const std::string files = slash == std::string::npos ? pattern : pattern.substr(slash + 1);
    const bool recursive = (flags & IOManager::kFindRecursive) != 0;
    std::vector<const char*> found;
    for (uint32_t index = lower_bound(folder.c_str()); index < entry_count_; ++index) {
        const char* name = this->name(index);
        const char* last_slash = std::strrchr(name, '/');
        // Walks end where the folder's names end, in table order.
        if (last_slash == nullptr ||
            (!recursive && static_cast<size_t>(last_slash - name) != folder.size()) ||
            std::strncmp(name, folder.c_str(), folder.size()) != 0)
            break;
        if (match(files, last_slash + 1, false)) found.push_back(name);
    }
    return found;
}

}  // namespace Core
