// Packs: reading every entry of a 200 MB pack against LZO alone on the same blocks, and
// finding names in a pack of 100,000 entries.
#include <benchmark/benchmark.h>
#include <lzo/lzo1x.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <unordered_set>
#include <vector>

#include "bench_table.h"
#include "core_pack_provider.h"
#include "core_pack_writer.h"

namespace {

namespace fs = std::filesystem;

constexpr size_t kEntrySize = size_t{1} << 20;
constexpr int kEntries = 200;
constexpr int kFolders = 1000;
constexpr int kFilesPerFolder = 100;

// Mixed data: log text that LZO shrinks well, bytes from a small alphabet that it shrinks a
// little, and noise that it cannot shrink (stored raw).
std::string EntryBytes(int index, std::mt19937& random) {
    std::string bytes;
    bytes.reserve(kEntrySize);
    switch (index % 4) {
        case 0:
        case 1:
            for (int line = 0; bytes.size() < kEntrySize; ++line)
                bytes += "entry " + std::to_string(index) + " frame " + std::to_string(line) +
                         " x=" + std::to_string(random() % 1000) + "\n";
            break;
        case 2:
            while (bytes.size() < kEntrySize)
                bytes += static_cast<char>('a' + random() % 8);
            break;
        default:
            while (bytes.size() < kEntrySize)
                bytes += static_cast<char>(random());
    }
    bytes.resize(kEntrySize);
    return bytes;
}

fs::path WritePack(const fs::path& root, const std::string& name,
                   const std::function<void(const fs::path&)>& fill) {
    const fs::path folder = root / (name + "-files");
    fill(folder);
    std::string error;
    const fs::path pack = root / (name + ".pack");
    if (Core::write_pack(pack.string(), folder.string(), error) != Core::PackWriteResult::written)
        throw std::runtime_error(error);
    fs::remove_all(folder);
    return pack;
}

// The two packs, written once by our writer into a folder of the benchmark's own.
class Packs {
public:
    static Packs& instance() {
        static Packs packs;
        return packs;
    }

    Core::PackBufferProvider large;
    Core::PackBufferProvider many;
    std::string large_bytes;         // the large pack's file, for the reference
    std::vector<std::string> names;  // of the many, in a shuffled order

private:
    Packs() {
        root_ = fs::temp_directory_path() / ("quillet-pack-bench-" + std::to_string(::getpid()));
        const fs::path large_path = WritePack(root_, "large", [](const fs::path& folder) {
            std::mt19937 random(200);
            fs::create_directories(folder);
            for (int index = 0; index < kEntries; ++index)
                std::ofstream(folder / ("e" + std::to_string(index)), std::ios::binary)
                    << EntryBytes(index, random);
        });
        const fs::path many_path = WritePack(root_, "many", [this](const fs::path& folder) {
            for (int index = 0; index < kFolders; ++index) {
                const std::string name = "d" + std::to_string(index);
                fs::create_directories(folder / name);
                for (int file = 0; file < kFilesPerFolder; ++file) {
                    names.push_back(name + "/f" + std::to_string(file) + ".tga");
                    std::ofstream(folder / names.back()).put('x');
                }
            }
        });
        std::shuffle(names.begin(), names.end(), std::mt19937(100));
        if (!large.load(large_path.c_str()) || !many.load(many_path.c_str()))
            throw std::runtime_error("the benchmark packs do not load");
        std::ifstream stream(large_path, std::ios::binary);
        large_bytes.assign(std::istreambuf_iterator<char>(stream), {});
    }
    ~Packs() {
        std::error_code ignored;
        fs::remove_all(root_, ignored);
    }

    fs::path root_;
};

void BM_pack_ReadEveryEntry(benchmark::State& state) {
    Core::PackBufferProvider& pack = Packs::instance().large;
    const Core::PackTable& table = pack.pack()->table();
    std::vector<uint8_t> entry(kEntrySize);
    for (auto _ : state) {
        for (uint32_t index = 0; index < table.entry_count(); ++index) {
            const auto buffer = pack.open(table.name(index));
            benchmark::DoNotOptimize(buffer->read(entry.data(), kEntrySize));
        }
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * kEntries * kEntrySize);
}
BENCHMARK(BM_pack_ReadEveryEntry)->Unit(benchmark::kMillisecond);

// The same blocks decoded from memory, with nothing but LZO (and a copy for raw blocks). The
// entries are whole blocks, so every block holds 65536 bytes.
void BM_pack_LzoReference(benchmark::State& state) {
    const Packs& packs = Packs::instance();
    const Core::PackTable& table = packs.large.pack()->table();
    const auto* file = reinterpret_cast<const uint8_t*>(packs.large_bytes.data());
    std::vector<uint8_t> entry(kEntrySize);
    for (auto _ : state) {
        for (uint32_t index = 0; index < table.entry_count(); ++index) {
            const Core::PackTable::Entry record = table.entry(index);
            const uint8_t* stored = file + record.data_offset;
            for (uint32_t block = 0; block < kEntrySize / Core::PackTable::kBlockSize; ++block) {
                const uint32_t size = table.block_size(record.first_block + block);
                uint8_t* into = entry.data() + size_t{block} * Core::PackTable::kBlockSize;
                lzo_uint length = Core::PackTable::kBlockSize;
                if (size == Core::PackTable::kBlockSize)
                    std::memcpy(into, stored, size);
                else
                    lzo1x_decompress_safe(stored, size, into, &length, nullptr);
                stored += size;
            }
            benchmark::DoNotOptimize(entry.data());
        }
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * kEntries * kEntrySize);
}
BENCHMARK(BM_pack_LzoReference)->Unit(benchmark::kMillisecond);

void BM_pack_Lookup100k(benchmark::State& state) {
    Packs& packs = Packs::instance();
    size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(packs.many.exists(packs.names[next]));
        next = next + 1 == packs.names.size() ? 0 : next + 1;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_pack_Lookup100k);

// What lookup in the table costs beside the same binary search over names held in strings,
// which keep each name next to its neighbours' pointers rather than behind an offset.
void BM_pack_SortedStringsReference(benchmark::State& state) {
    const Packs& packs = Packs::instance();
    std::vector<std::string> sorted = packs.names;
    const auto before = [](const std::string& a, const std::string& b) {
        return Core::compare_pack_names(a.c_str(), b.c_str()) < 0;
    };
    std::sort(sorted.begin(), sorted.end(), before);
    size_t next = 0;
    for (auto _ : state) {
        const std::string& wanted = packs.names[next];
        const auto found = std::lower_bound(sorted.begin(), sorted.end(), wanted, before);
        benchmark::DoNotOptimize(found != sorted.end() &&
                                 Core::compare_pack_names(found->c_str(), wanted.c_str()) == 0);
        next = next + 1 == packs.names.size() ? 0 : next + 1;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_pack_SortedStringsReference);

// A hash set, for scale: the table is searched where it lies, with nothing built on load.
void BM_pack_UnorderedSetReference(benchmark::State& state) {
    const Packs& packs = Packs::instance();
    const std::unordered_set<std::string> set(packs.names.begin(), packs.names.end());
    size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(set.count(packs.names[next]));
        next = next + 1 == packs.names.size() ? 0 : next + 1;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_pack_UnorderedSetReference);

}  // namespace

int main(int argc, char** argv) {
    using bench::Figure;
    return bench::RunTable(
        argc, argv,
        {
            {"pack_read_every_entry_200MB", "BM_pack_ReadEveryEntry", "BM_pack_LzoReference",
             Figure::Measure::MegabytesPerSecond, ">=0.8x LZO alone",
             [](double value, double reference) { return value >= 0.8 * reference; }},
            {"pack_lookup_100k", "BM_pack_Lookup100k", "BM_pack_SortedStringsReference",
             Figure::Measure::ItemsPerSecond, "within 2x",
             [](double value, double reference) { return value * 2.0 >= reference; }},
            {"pack_lookup_100k_vs_hash", "BM_pack_Lookup100k", "BM_pack_UnorderedSetReference",
             Figure::Measure::ItemsPerSecond, "none, for scale",
             [](double, double) { return true; }},
        });
}
