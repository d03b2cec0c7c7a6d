// Core services: log lines below the level, and the loose-file cache of the IO manager.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <unordered_set>
#include <vector>

#include "bench_table.h"
#include "core_file_provider.h"
#include "core_log.h"
#include "core_path_match.h"

namespace {

namespace fs = std::filesystem;

constexpr int kFolders = 1000;
constexpr int kFilesPerFolder = 100;
constexpr int kBigFolderFiles = 10000;

// A tree of 100,000 files in 1,000 folders and one folder of 10,000, made once.
class Tree {
public:
    static Tree& instance() {
        static Tree tree;
        return tree;
    }
    const std::vector<std::string>& keys() const { return keys_; }

private:
    Tree() {
        root_ = fs::temp_directory_path() / ("quillet-bench-" + std::to_string(::getpid()));
        fs::create_directories(root_ / "big");
        for (int folder = 0; folder < kFolders; ++folder) {
            const std::string name = "d" + std::to_string(folder);
            fs::create_directory(root_ / name);
            for (int file = 0; file < kFilesPerFolder; ++file) {
                const std::string key = name + "/f" + std::to_string(file) + ".tga";
                std::ofstream(root_ / key).put('x');
                keys_.push_back(key);
            }
        }
        for (int file = 0; file < kBigFolderFiles; ++file)
            std::ofstream(root_ / "big" /
                          ("p" + std::to_string(file) + (file % 2 ? ".tga" : ".png")))
                .put('x');
        fs::current_path(root_);
    }
    ~Tree() {
        std::error_code ignored;
        fs::remove_all(root_, ignored);
    }

    fs::path root_;
    std::vector<std::string> keys_;
};

void BM_LogLineBelowLevel(benchmark::State& state) {
    const Core::Log& log = Core::io_log();
    for (auto _ : state)
        CORE_LOG(log, Core::trace) << "never built";
}
BENCHMARK(BM_LogLineBelowLevel);

void BM_EmptyLoop(benchmark::State& state) {
    int counter = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(++counter);
}
BENCHMARK(BM_EmptyLoop);

void BM_ExistsWarmCache(benchmark::State& state) {
    const auto& keys = Tree::instance().keys();
    Core::FileBufferProvider provider;
    for (const std::string& key : keys)
        provider.exists(key);
    size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(provider.exists(keys[next]));
        next = next + 1 == keys.size() ? 0 : next + 1;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_ExistsWarmCache);

void BM_UnorderedSetCount(benchmark::State& state) {
    const auto& keys = Tree::instance().keys();
    const std::unordered_set<std::string> set(keys.begin(), keys.end());
    size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(set.count(keys[next]));
        next = next + 1 == keys.size() ? 0 : next + 1;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_UnorderedSetCount);

void BM_FindTgaWarm(benchmark::State& state) {
    Tree::instance();
    Core::FileBufferProvider provider;
    provider.find("big/*.tga", 0);
    for (auto _ : state)
        benchmark::DoNotOptimize(provider.find("big/*.tga", 0));
}
BENCHMARK(BM_FindTgaWarm)->Unit(benchmark::kMicrosecond);

void BM_DirectoryWalkTga(benchmark::State& state) {
    Tree::instance();
    for (auto _ : state) {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator("big")) {
            const std::string name = entry.path().string();
            if (entry.is_regular_file() && Core::match("*.tga", Core::fold_path(name), false))
                names.push_back(name);
        }
        benchmark::DoNotOptimize(names);
    }
}
BENCHMARK(BM_DirectoryWalkTga)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
    using bench::Figure;
    return bench::RunTable(
        argc, argv,
        {
            {"log_line_below_level", "BM_LogLineBelowLevel", "BM_EmptyLoop",
             Figure::Measure::NanosecondsPerIteration, "<5ns",
             [](double value, double) { return value < 5.0; }},
            {"exists_warm_100k", "BM_ExistsWarmCache", "BM_UnorderedSetCount",
             Figure::Measure::ItemsPerSecond, "within 3x",
             [](double value, double reference) { return value * 3.0 >= reference; }},
            {"find_tga_warm_10k", "BM_FindTgaWarm", "BM_DirectoryWalkTga",
             Figure::Measure::NanosecondsPerIteration, "faster",
             [](double value, double reference) { return value < reference; }},
        });
}
