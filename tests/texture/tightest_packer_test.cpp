#include "texture/TightestPacker.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "model/page_rect.h"
#include "texture/plain_global_choice.h"

namespace {

using Sizes = std::vector<std::pair<int32_t, int32_t>>;

std::vector<TREGION> Regions(const Sizes& sizes) {
    std::vector<TREGION> regions;
    for (const auto& [width, height] : sizes) {
        regions.emplace_back("r" + std::to_string(regions.size()),
                             PageRect{-50, 9, -50 + width, 9 + height}, nullptr);
    }
    return regions;
}

size_t PlacedCount(const std::vector<TileRecord>& records, PageSize page) {
    return static_cast<size_t>(std::count_if(records.begin(), records.end(), [page](const auto& r) {
        return LiesOnPage(r.rect, page);
    }));
}

int64_t BoxPixels(const std::vector<TileRecord>& records, PageSize page) {
    PageRect box{0, 0, 0, 0};
    for (const TileRecord& record : records) {
        if (LiesOnPage(record.rect, page)) box = UnionRect(box, record.rect);
    }
    return int64_t{RectWidth(box)} * RectHeight(box);
}

// Every record with area lies wholly on the page or parked beside it, and none of those on
// the page overlap.
void ExpectSoundPacking(const std::vector<TileRecord>& records, PageSize page) {
    for (size_t i = 0; i < records.size(); ++i) {
        const PageRect& r = records[i].rect;
        if (RectWidth(r) <= 0 || RectHeight(r) <= 0) continue;
        if (!LiesOnPage(r, page)) {
            EXPECT_EQ(r.left, page.width + kOutsideMargin) << records[i].name;
            continue;
        }
        for (size_t j = 0; j < i; ++j) {
            const PageRect& other = records[j].rect;
            if (LiesOnPage(other, page) && RectWidth(other) > 0 && RectHeight(other) > 0) {
                EXPECT_TRUE(IsRectEmpty(IntersectRect(r, other)))
                    << records[i].name << " overlaps " << records[j].name;
            }
        }
    }
}

PageSize RandomPage(std::mt19937& random, int32_t least, int32_t most) {
    std::uniform_int_distribution<int32_t> side(least, most);
    const int32_t width = side(random);
    return {width, side(random)};
}

// Up to `most` regions, each side from `least` (0 or less: an empty region) to `largest`.
Sizes RandomSizes(std::mt19937& random, size_t most, int32_t least, int32_t largest) {
    Sizes sizes(std::uniform_int_distribution<size_t>(0, most)(random));
    std::uniform_int_distribution<int32_t> side(least, largest);
    for (auto& [width, height] : sizes)
        width = side(random), height = side(random);
    return sizes;
}

// A page cut again and again in two at random, as an artist's atlas is: the pieces tile it
// exactly. Each piece less `spacing` on its right and lower sides is a region.
Sizes CutPage(std::mt19937& random, PageSize page, int pieces, unsigned spacing) {
    const int32_t least = static_cast<int32_t>(spacing) + 1;
    std::vector<PageRect> cut{{0, 0, page.width, page.height}};
    for (int tries = 0; static_cast<int>(cut.size()) < pieces && tries < 20 * pieces; ++tries) {
        PageRect& piece = cut[std::uniform_int_distribution<size_t>(0, cut.size() - 1)(random)];
        const bool across = std::bernoulli_distribution(0.5)(random);
        const int32_t length = across ? RectWidth(piece) : RectHeight(piece);
        if (length < 2 * least) continue;
        const int32_t at = std::uniform_int_distribution<int32_t>(least, length - least)(random);
        PageRect other = piece;
        if (across)
            piece.right = other.left = piece.left + at;
        else
            piece.bottom = other.top = piece.top + at;
        cut.push_back(other);
    }
    Sizes sizes;
    for (const PageRect& piece : cut) {
        sizes.emplace_back(RectWidth(piece) - static_cast<int32_t>(spacing),
                           RectHeight(piece) - static_cast<int32_t>(spacing));
    }
    std::shuffle(sizes.begin(), sizes.end(), random);
    return sizes;
}

constexpr FreeRectScore kScores[] = {FreeRectScore::BestShortSide, FreeRectScore::BestLongSide,
                                     FreeRectScore::BestArea, FreeRectScore::TopLeft,
                                     FreeRectScore::MostContact};

TEST(TightestPackerTest, FillsAPageThatNoSortOrderFills) {
    // The eight pieces of a 6 by 8 page; best fit leaves one of them out.
    const PageSize page{6, 8};
    const std::vector<TREGION> regions =
        Regions({{3, 1}, {2, 1}, {1, 4}, {2, 1}, {3, 1}, {1, 7}, {1, 3}, {4, 6}});
    EXPECT_EQ(PlacedCount(TileRecords(regions, TILE_BEST_FIT, 0, page).records, page), 7u);
    const Tiling tightest = TileRecords(regions, TILE_TIGHTEST, 0, page);
    EXPECT_EQ(PlacedCount(tightest.records, page), 8u);
    ExpectSoundPacking(tightest.records, page);
    EXPECT_EQ(tightest.fit_ratio, 1.0f);
}

TEST(TightestPackerTest, SpacingLeavesGapsToTheRightAndBelow) {
    // Nine 2 by 2 regions fill a 9 by 9 page exactly with one pixel after each.
    const PageSize page{9, 9};
    const std::vector<TREGION> regions = Regions(Sizes(9, {2, 2}));
    const Tiling tiling = TileRecords(regions, TILE_TIGHTEST, 1, page);
    EXPECT_EQ(PlacedCount(tiling.records, page), 9u);
    ExpectSoundPacking(tiling.records, page);
    for (const TileRecord& record : tiling.records) {
        EXPECT_EQ(record.rect.left % 3, 0);
        EXPECT_EQ(record.rect.top % 3, 0);
    }
    // A tenth has no room: it is parked, and the region keeps its own size.
    const std::vector<TREGION> more = Regions(Sizes(10, {2, 2}));
    const Tiling crowded = TileRecords(more, TILE_TIGHTEST, 1, page);
    EXPECT_EQ(PlacedCount(crowded.records, page), 9u);
    ExpectSoundPacking(crowded.records, page);
}

TEST(TightestPackerTest, ParksAndPlacesEmptyRecordsAsTheSortOrdersDo) {
    // Too wide, empty, fitting, too tall, and flat but longer than the page.
    const std::vector<TREGION> regions = Regions({{40, 2}, {0, 5}, {8, 8}, {2, 33}, {50, 0}});
    const PageSize page{32, 32};
    const Tiling tiling = TileRecords(regions, TILE_TIGHTEST, 0, page);
    std::vector<std::pair<std::string, PageRect>> placement;
    for (const TileRecord& record : tiling.records)
        placement.emplace_back(record.name, record.rect);
    std::sort(placement.begin(), placement.end(),
              [](const auto& a, const auto& b) { return a.first < b.first; });
    EXPECT_EQ(placement, (std::vector<std::pair<std::string, PageRect>>{{"r0", {40, 0, 80, 2}},
                                                                        {"r1", {0, 0, 0, 5}},
                                                                        {"r2", {0, 0, 8, 8}},
                                                                        {"r3", {40, 0, 42, 33}},
                                                                        {"r4", {40, 0, 90, 0}}}));
    // A page without area takes nothing, and no region takes nothing.
    EXPECT_EQ(PlacedCount(TileRecords(Regions({{1, 1}}), TILE_TIGHTEST, 0, {0, 9}).records, {0, 9}),
              0u);
    EXPECT_EQ(TileRecords({}, TILE_TIGHTEST, 1, page).fit_ratio, 0.0f);
}

TEST(TightestPackerTest, GlobalChoicePlacesAsTheBruteForceDoes) {
    std::mt19937 random(160);
    for (int round = 0; round < 300; ++round) {
        const PageSize page = RandomPage(random, 1, 96);
        const Sizes sizes = RandomSizes(random, 30, -1, 40);
        const unsigned spacing = std::uniform_int_distribution<unsigned>(0, 2)(random);
        const std::vector<TREGION> regions = Regions(sizes);
        for (const FreeRectScore score : kScores) {
            std::vector<TileRecord> fast = MakeTileRecords(regions, spacing, page);
            std::vector<TileRecord> plain = fast;
            PlaceByGlobalChoice(score, fast, page);
            PlaceByGlobalChoiceByBruteForce(score, plain, page);
            for (size_t i = 0; i < fast.size(); ++i) {
                ASSERT_EQ(fast[i].rect, plain[i].rect)
                    << "round " << round << ", score " << static_cast<int>(score) << ", "
                    << fast[i].name;
            }
        }
    }
}

TEST(TightestPackerTest, NeverPlacesFewerNorBoxesLooserThanASortOrder) {
    std::mt19937 random(1616);
    for (int round = 0; round < 2000; ++round) {
        const PageSize page = RandomPage(random, 8, 200);
        const Sizes sizes = RandomSizes(random, 40, 1, 60);
        const unsigned spacing = std::uniform_int_distribution<unsigned>(0, 3)(random);
        const std::vector<TREGION> regions = Regions(sizes);

        const Tiling tightest = TileRecords(regions, TILE_TIGHTEST, spacing, page);
        ExpectSoundPacking(tightest.records, page);
        const size_t placed = PlacedCount(tightest.records, page);
        for (int order = TILE_BY_AREA; order <= TILE_BY_CIRCUMFERENCE; ++order) {
            const Tiling sorted = TileRecords(regions, order, spacing, page);
            const size_t sorted_placed = PlacedCount(sorted.records, page);
            ASSERT_GE(placed, sorted_placed) << "round " << round << ", order " << order;
            if (placed == sorted_placed) {
                ASSERT_LE(BoxPixels(tightest.records, page), BoxPixels(sorted.records, page))
                    << "round " << round << ", order " << order;
            }
        }
        // The same regions in the same order pack the same way.
        const Tiling again = TileRecords(regions, TILE_TIGHTEST, spacing, page);
        for (size_t i = 0; i < again.records.size(); ++i)
            ASSERT_EQ(again.records[i].rect, tightest.records[i].rect) << "round " << round;
    }
}

TEST(TightestPackerTest, NearlyFullPagesPlaceAsManyAsTheBestGlobalChoice) {
    std::mt19937 random(9100);
    size_t left_by_best_fit = 0;
    size_t left_by_tightest = 0;
    for (int round = 0; round < 300; ++round) {
        const PageSize page = RandomPage(random, 32, 160);
        const unsigned spacing = std::uniform_int_distribution<unsigned>(0, 2)(random);
        Sizes sizes =
            CutPage(random, page, std::uniform_int_distribution<int>(8, 40)(random), spacing);
        // Filled 90 to 100%: up to one piece in ten left out.
        sizes.resize(sizes.size() -
                     std::uniform_int_distribution<size_t>(0, sizes.size() / 10)(random));
        const std::vector<TREGION> regions = Regions(sizes);

        size_t best_global = 0;
        for (const FreeRectScore score : kScores) {
            std::vector<TileRecord> records = MakeTileRecords(regions, spacing, page);
            PlaceByGlobalChoiceByBruteForce(score, records, page);
            best_global = std::max(best_global, PlacedCount(records, page));
        }
        const size_t tightest =
            PlacedCount(TileRecords(regions, TILE_TIGHTEST, spacing, page).records, page);
        ASSERT_GE(tightest, best_global) << "round " << round;
        left_by_tightest += regions.size() - tightest;
        left_by_best_fit +=
            regions.size() -
            PlacedCount(TileRecords(regions, TILE_BEST_FIT, spacing, page).records, page);
    }
    EXPECT_LT(left_by_tightest * 2, left_by_best_fit);
}

}  // namespace
