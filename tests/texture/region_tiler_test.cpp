#include "texture/RegionTiler.h"

#include <gtest/gtest.h>

#include <climits>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "texture/plain_tiler.h"

namespace {

// Regions of the given sizes, named a, b, c... and lying wherever a project may have left
// them: tiling must not depend on where they were.
std::vector<TREGION> Regions(const std::vector<std::pair<int32_t, int32_t>>& sizes) {
    std::vector<TREGION> regions;
    int32_t somewhere = -1000;
    for (const auto& [width, height] : sizes) {
        const std::string name(1, static_cast<char>('a' + regions.size()));
        regions.emplace_back(name, PageRect{somewhere, 7, somewhere + width, 7 + height}, nullptr);
        somewhere += 333;
    }
    return regions;
}

using Placement = std::vector<std::pair<std::string, PageRect>>;

Placement PlacementOf(const std::vector<TileRecord>& records) {
    Placement placement;
    for (const TileRecord& record : records)
        placement.emplace_back(record.name, record.rect);
    return placement;
}

// The placement of one pass, and the scan's of the same records.
std::pair<Placement, Placement> PlacedAndScanned(const std::vector<TREGION>& regions,
                                                 unsigned spacing, PageSize page, int order) {
    std::vector<TileRecord> placed = MakeTileRecords(regions, spacing, page);
    std::vector<TileRecord> scanned = placed;
    PlaceRegions(order, placed, page);
    PlaceRegionsByScan(order, scanned, page);
    FitRatio(placed);  // whatever the edges, its arithmetic stays defined
    return {PlacementOf(placed), PlacementOf(scanned)};
}

std::string NamesOf(const std::vector<TileRecord>& records) {
    std::string names;
    for (const TileRecord& record : records)
        names += record.name;
    return names;
}

constexpr PageSize kPage256{256, 256};

TEST(RegionTilerTest, PageWithoutRegionsHasRatioZero) {
    for (int order = TILE_BY_AREA; order <= TILE_BEST_FIT; ++order) {
        const Tiling tiling = TileRecords({}, order, 2, kPage256);
        EXPECT_TRUE(tiling.records.empty());
        EXPECT_EQ(tiling.fit_ratio, 0.0f);
    }
}

TEST(RegionTilerTest, SpacingCountsAgainstThePageEdges) {
    const std::vector<TREGION> whole_page = Regions({{256, 256}});
    const Tiling flush = TileRecords(whole_page, TILE_BY_AREA, 0, kPage256);
    EXPECT_EQ(flush.records[0].rect, (PageRect{0, 0, 256, 256}));
    EXPECT_EQ(flush.fit_ratio, 1.0f);

    // Alone on the page, it would fit, but its enlarged rectangle does not.
    const Tiling spaced = TileRecords(whole_page, TILE_BY_AREA, 1, kPage256);
    EXPECT_EQ(spaced.records[0].rect, (PageRect{264, 0, 521, 257}));
}

TEST(RegionTilerTest, TouchingRegionsShareTheWidthExactly) {
    const Tiling tiling = TileRecords(Regions({{40, 50}, {60, 50}}), TILE_BY_AREA, 0, {100, 50});
    EXPECT_EQ(PlacementOf(tiling.records),
              (Placement{{"b", {0, 0, 60, 50}}, {"a", {60, 0, 100, 50}}}));
    EXPECT_EQ(tiling.fit_ratio, 1.0f);
}

TEST(RegionTilerTest, SpacingLeavesGapsOnlyToTheRightAndBelow) {
    const Tiling tiling =
        TileRecords(Regions({{10, 10}, {10, 10}, {10, 10}, {10, 10}}), TILE_BY_AREA, 2, {24, 24});
    EXPECT_EQ(PlacementOf(tiling.records), (Placement{{"a", {0, 0, 12, 12}},
                                                      {"b", {12, 0, 24, 12}},
                                                      {"c", {0, 12, 12, 24}},
                                                      {"d", {12, 12, 24, 24}}}));
}

TEST(RegionTilerTest, RecordsThatReachBelowThePageAreParked) {
    // Taller than the page, though the first row has room for it.
    const Tiling tall = TileRecords(Regions({{10, 60}}), TILE_BY_AREA, 0, {100, 50});
    EXPECT_EQ(tall.records[0].rect, (PageRect{108, 0, 118, 60}));

    // The first row with room for b lies below a, and from there b reaches below the page.
    const Tiling below = TileRecords(Regions({{20, 15}, {10, 10}}), TILE_BY_AREA, 0, {20, 20});
    EXPECT_EQ(PlacementOf(below.records),
              (Placement{{"a", {0, 0, 20, 15}}, {"b", {28, 0, 38, 10}}}));
}

TEST(RegionTilerTest, FitRatioCountsParkedRecordsAndWrapsAreas) {
    const Tiling tiling = TileRecords(Regions({{10, 10}, {5, 5}}), TILE_BY_AREA, 0, {10, 10});
    EXPECT_EQ(tiling.records[1].rect, (PageRect{18, 0, 23, 5}));
    // The bounding rectangle 23 by 10 over the areas 100 + 25.
    EXPECT_EQ(tiling.fit_ratio, 230.0f / 125.0f);

    // 65536 by 65537 is 65536 as a wrapped 32-bit product.
    EXPECT_EQ(FitRatio({{"a", {0, 0, 65536, 65537}}}), 65537.0f);
}

TEST(RegionTilerTest, BestFitKeepsTheFirstOfTheSmallestRatios) {
    // By area, c is parked; by height then width, everything fits.
    const std::vector<TREGION> regions = Regions({{5, 2}, {4, 7}, {2, 9}});
    const Tiling by_area = TileRecords(regions, TILE_BY_AREA, 0, {10, 10});
    const Tiling by_height = TileRecords(regions, TILE_BY_HEIGHT_THEN_WIDTH, 0, {10, 10});
    const Tiling best = TileRecords(regions, TILE_BEST_FIT, 0, {10, 10});
    EXPECT_GT(by_area.fit_ratio, by_height.fit_ratio);
    EXPECT_EQ(PlacementOf(best.records), PlacementOf(by_height.records));
    EXPECT_EQ(best.fit_ratio, 63.0f / 56.0f);

    // Area and width then height put b first, the other two keys a; every packing is 11 by
    // 50, so all four ratios are equal and the area packing stays.
    const std::vector<TREGION> equal = Regions({{1, 50}, {10, 10}});
    const Tiling kept = TileRecords(equal, TILE_BEST_FIT, 0, {11, 50});
    EXPECT_EQ(PlacementOf(kept.records),
              (Placement{{"b", {0, 0, 10, 10}}, {"a", {10, 0, 11, 50}}}));
    EXPECT_EQ(TileRecords(equal, TILE_BY_CIRCUMFERENCE, 0, {11, 50}).fit_ratio, kept.fit_ratio);
}

TEST(RegionTilerTest, SortsLargestFirstKeepingEqualKeysInListOrder) {
    // c has the area of the others, but is wider and flatter.
    const std::vector<TREGION> regions = Regions({{8, 8}, {8, 8}, {16, 4}, {8, 8}});
    EXPECT_EQ(NamesOf(TileRecords(regions, TILE_BY_AREA, 0, kPage256).records), "abcd");
    EXPECT_EQ(NamesOf(TileRecords(regions, TILE_BY_HEIGHT_THEN_WIDTH, 0, kPage256).records),
              "abdc");
    EXPECT_EQ(NamesOf(TileRecords(regions, TILE_BY_WIDTH_THEN_HEIGHT, 0, kPage256).records),
              "cabd");
    EXPECT_EQ(NamesOf(TileRecords(regions, TILE_BY_CIRCUMFERENCE, 0, kPage256).records), "cabd");

    // Equal keys answer -1 both ways: the comparison never answers 0.
    const TileRecord a{"a", {0, 0, 8, 8}};
    const TileRecord c{"c", {0, 0, 16, 4}};
    EXPECT_EQ(CompareTileRecords(TILE_BY_AREA, a, c), -1);
    EXPECT_EQ(CompareTileRecords(TILE_BY_AREA, c, a), -1);

    // Keys are exact: 65536 squared is 0 as a 32-bit product, and INT32_MAX + 1 negative.
    std::vector<TileRecord> by_area{{"small", {0, 0, 10, 10}}, {"huge", {0, 0, 65536, 65536}}};
    SortTileRecords(TILE_BY_AREA, by_area);
    EXPECT_EQ(NamesOf(by_area), "hugesmall");
    std::vector<TileRecord> by_circumference{{"b", {0, 0, 2, 2}}, {"a", {0, 0, INT32_MAX, 1}}};
    SortTileRecords(TILE_BY_CIRCUMFERENCE, by_circumference);
    EXPECT_EQ(NamesOf(by_circumference), "ab");
}

TEST(RegionTilerTest, RecordsOfOneNameStaySeparate) {
    std::vector<TREGION> regions = Regions({{10, 10}, {20, 20}});
    regions[1].name = "a";
    const Tiling tiling = TileRecords(regions, TILE_BY_AREA, 0, {64, 64});
    EXPECT_EQ(PlacementOf(tiling.records),
              (Placement{{"a", {0, 0, 20, 20}}, {"a", {20, 0, 30, 10}}}));
}

TEST(RegionTilerTest, EmptyRecordsAreNeverObstacles) {
    // Inverted and flat regions land at (0, 0) unless their size passes the page's, where
    // they are parked. f, inverted both ways, sorts first by its positive area, and d still
    // goes to (0, 0).
    const std::vector<TREGION> regions =
        Regions({{-5, 3}, {4, 0}, {0, 40}, {6, 6}, {40, -2}, {-3, -20}});
    const Tiling tiling = TileRecords(regions, TILE_BY_AREA, 0, {32, 32});
    EXPECT_EQ(PlacementOf(tiling.records), (Placement{{"f", {0, 0, -3, -20}},
                                                      {"d", {0, 0, 6, 6}},
                                                      {"b", {0, 0, 4, 0}},
                                                      {"c", {40, 0, 40, 40}},
                                                      {"a", {0, 0, -5, 3}},
                                                      {"e", {40, 0, 80, -2}}}));
    // Empty records add nothing to the bounding rectangle (that of d), yet their areas count:
    // 60 + 36 - 15 - 80.
    EXPECT_EQ(tiling.fit_ratio, 36.0f);
}

TEST(RegionTilerTest, ExtremeRectanglesAndPagesPlaceAsTheScanDoes) {
    const std::vector<PageRect> rects{{INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX},
                                      {INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN},
                                      {0, 0, INT32_MAX, 3},
                                      {-7, -7, 5, INT32_MAX},
                                      {10, 10, 10, 10},
                                      {0, 0, 30, 20},
                                      {0, 0, 1, 1}};
    std::vector<TREGION> regions;
    for (const PageRect& rect : rects)
        regions.emplace_back("r", rect, nullptr);
    const std::vector<PageSize> pages{{0, 0},      {-5, 40},   {40, -5},      {1, 1},
                                      {65535, 64}, {64, 4096}, {1 << 24, 100}};
    for (const PageSize page : pages) {
        for (unsigned spacing : {0u, 1u, 3u}) {
            for (int order = TILE_BY_AREA; order <= TILE_BY_CIRCUMFERENCE + 1; ++order) {
                const auto [placed, scanned] = PlacedAndScanned(regions, spacing, page, order);
                EXPECT_EQ(placed, scanned) << "page " << page.width << " x " << page.height
                                           << ", spacing " << spacing << ", order " << order;
            }
        }
    }
}

// Region sizes as artists make them, a few far larger, and now and then an empty one.
std::vector<TREGION> RandomRegions(std::mt19937& random) {
    std::uniform_int_distribution<int32_t> count(0, 40);
    std::uniform_int_distribution<int32_t> usual(1, 128);
    std::uniform_int_distribution<int32_t> large(1, 600);
    std::uniform_int_distribution<int32_t> empty(-3, 0);
    std::uniform_int_distribution<int32_t> kind(0, 99);
    const auto size = [&] {
        const int32_t k = kind(random);
        return k < 3 ? empty(random) : k < 10 ? large(random) : usual(random);
    };
    std::vector<std::pair<int32_t, int32_t>> sizes(static_cast<size_t>(count(random)));
    for (auto& [width, height] : sizes)
        width = size(), height = size();
    return Regions(sizes);
}

TEST(RegionTilerTest, PlacesAsThePlainScanOnRandomPages) {
    std::mt19937 random(20240607);
    std::uniform_int_distribution<int32_t> page_size(1, 256);
    std::uniform_int_distribution<unsigned> spacing(0, 3);
    for (int round = 0; round < 300; ++round) {
        const std::vector<TREGION> regions = RandomRegions(random);
        const PageSize page{page_size(random), page_size(random)};
        const unsigned gap = spacing(random);
        for (int order = TILE_BY_AREA; order <= TILE_BY_CIRCUMFERENCE; ++order) {
            const auto [placed, scanned] = PlacedAndScanned(regions, gap, page, order);
            ASSERT_EQ(placed, scanned) << "round " << round << ", page " << page.width << " x "
                                       << page.height << ", spacing " << gap << ", order " << order;
        }
    }
}

}  // namespace
