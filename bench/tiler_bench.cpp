// Region tiling: best fit (four passes) with the product's placement against the plain per-row
// scan, on pages of random interface art. The placements of both must be equal; each page's
// fit ratio by every order is printed once. The tightest order runs against best fit on the
// largest page; what each places is printed once.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "bench_table.h"
#include "texture/RegionTiler.h"
#include "texture/plain_tiler.h"

namespace {

struct Page {
    const char* name;
    PageSize size;
    int regions;
};

constexpr Page kSmall{"256x256_20", {256, 256}, 20};
constexpr Page kMedium{"1024x1024_300", {1024, 1024}, 300};
constexpr Page kLarge{"4096x4096_1000", {4096, 4096}, 1000};
constexpr unsigned kSpacing = 1;

// Interface art: 8 to 128 pixels a side, one region in twenty up to 512.
std::vector<TREGION> ArtRegions(const Page& page) {
    std::mt19937 random(static_cast<unsigned>(page.regions));
    std::uniform_int_distribution<int32_t> usual(8, 128);
    std::uniform_int_distribution<int32_t> large(8, 512);
    std::uniform_int_distribution<int> kind(0, 19);
    const auto side = [&] { return kind(random) == 0 ? large(random) : usual(random); };
    std::vector<TREGION> regions;
    for (int i = 0; i < page.regions; ++i) {
        const int32_t width = side();
        const int32_t height = side();
        regions.emplace_back("region_" + std::to_string(i), PageRect{0, 0, width, height}, nullptr);
    }
    return regions;
}

// The four passes of best fit, placed by the scan.
std::vector<std::vector<TileRecord>> ScanPasses(const std::vector<TREGION>& regions,
                                                PageSize page) {
    std::vector<std::vector<TileRecord>> passes;
    for (int order = TILE_BY_AREA; order <= TILE_BY_CIRCUMFERENCE; ++order) {
        passes.push_back(MakeTileRecords(regions, kSpacing, page));
        PlaceRegionsByScan(order, passes.back(), page);
    }
    return passes;
}

bool SamePlacement(const std::vector<TileRecord>& a, const std::vector<TileRecord>& b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
        if (a[i].name != b[i].name || !(a[i].rect == b[i].rect)) return false;
    }
    return true;
}

// Whether every pass and the kept one agree with the scan's.
bool AgreesWithScan(const std::vector<TREGION>& regions, PageSize page,
                    const std::vector<std::vector<TileRecord>>& scanned) {
    size_t best = 0;
    for (size_t order = 0; order < scanned.size(); ++order) {
        std::vector<TileRecord> placed = MakeTileRecords(regions, kSpacing, page);
        PlaceRegions(static_cast<int>(order), placed, page);
        if (!SamePlacement(placed, scanned[order])) return false;
        if (FitRatio(scanned[order]) < FitRatio(scanned[best])) best = order;
    }
    return SamePlacement(TileRecords(regions, TILE_BEST_FIT, kSpacing, page).records,
                         scanned[best]);
}

void PrintRatiosOnce(const Page& page, const std::vector<std::vector<TileRecord>>& passes) {
    static std::set<std::string> printed;
    if (!printed.insert(page.name).second) return;
    std::printf(
        "tiler %s fit ratio: area %.4f, height then width %.4f, width then height %.4f, "
        "circumference %.4f\n",
        page.name, FitRatio(passes[0]), FitRatio(passes[1]), FitRatio(passes[2]),
        FitRatio(passes[3]));
}

void BM_tiler(benchmark::State& state, const Page& page) {
    const std::vector<TREGION> regions = ArtRegions(page);
    for (auto _ : state)
        benchmark::DoNotOptimize(TileRecords(regions, TILE_BEST_FIT, kSpacing, page.size));
}

void BM_tiler_plain_scan(benchmark::State& state, const Page& page) {
    const std::vector<TREGION> regions = ArtRegions(page);
    std::vector<std::vector<TileRecord>> passes;
    for (auto _ : state) {
        passes = ScanPasses(regions, page.size);
        for (const std::vector<TileRecord>& pass : passes)
            benchmark::DoNotOptimize(FitRatio(pass));
    }
    // A fast wrong answer is no result: stop the whole run.
    if (!AgreesWithScan(regions, page.size, passes)) {
        std::fprintf(stderr, "tiler %s: placements differ from the plain scan's\n", page.name);
        std::abort();
    }
    PrintRatiosOnce(page, passes);
}

size_t PlacedOn(const Tiling& tiling, PageSize page) {
    return static_cast<size_t>(
        std::count_if(tiling.records.begin(), tiling.records.end(),
                      [page](const TileRecord& record) { return record.rect.left < page.width; }));
}

void BM_tiler_tightest(benchmark::State& state, const Page& page) {
    const std::vector<TREGION> regions = ArtRegions(page);
    Tiling tiling;
    for (auto _ : state)
        benchmark::DoNotOptimize(tiling = TileRecords(regions, TILE_TIGHTEST, kSpacing, page.size));
    static std::set<std::string> printed;
    if (!printed.insert(page.name).second) return;
    const Tiling best_fit = TileRecords(regions, TILE_BEST_FIT, kSpacing, page.size);
    std::printf("tiler %s placed of %zu: tightest %zu (fit ratio %.4f), best fit %zu (%.4f)\n",
                page.name, regions.size(), PlacedOn(tiling, page.size),
                static_cast<double>(tiling.fit_ratio), PlacedOn(best_fit, page.size),
                static_cast<double>(best_fit.fit_ratio));
}

BENCHMARK_CAPTURE(BM_tiler, 256x256_20, kSmall)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_tiler_plain_scan, 256x256_20, kSmall)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_tiler, 1024x1024_300, kMedium)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_tiler_plain_scan, 1024x1024_300, kMedium)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_tiler, 4096x4096_1000, kLarge)->Unit(benchmark::kMillisecond);
// About 20 s a run: once is enough.
BENCHMARK_CAPTURE(BM_tiler_plain_scan, 4096x4096_1000, kLarge)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);
BENCHMARK_CAPTURE(BM_tiler_tightest, 4096x4096_1000, kLarge)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    using bench::Figure;
    return bench::RunTable(
        argc, argv,
        {
            {"tiler_best_fit_256x256_20", "BM_tiler/256x256_20", "BM_tiler_plain_scan/256x256_20",
             Figure::Measure::NanosecondsPerIteration, "not slower",
             [](double value, double reference) { return value <= reference; }},
            {"tiler_best_fit_1024x1024_300", "BM_tiler/1024x1024_300",
             "BM_tiler_plain_scan/1024x1024_300", Figure::Measure::NanosecondsPerIteration,
             "faster", [](double value, double reference) { return value < reference; }},
            {"tiler_best_fit_4096x4096_1000", "BM_tiler/4096x4096_1000",
             "BM_tiler_plain_scan/4096x4096_1000", Figure::Measure::NanosecondsPerIteration,
             ">=300x faster",
             [](double value, double reference) { return value * 300.0 <= reference; }},
            // The ratio is reported; the target is absolute.
            {"tile_tightest_4096_1000", "BM_tiler_tightest/4096x4096_1000",
             "BM_tiler/4096x4096_1000", Figure::Measure::NanosecondsPerIteration, "under 1 s",
             [](double value, double /*reference*/) { return value < 1e9; }},
        });
}
