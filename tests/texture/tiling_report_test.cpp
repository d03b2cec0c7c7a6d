// What a tiling reports: the regions wholly on the page, those parked, and the share of the
// page the placed ones fill.
#include <gtest/gtest.h>

#include "TexturePageFixture.h"
#include "texture/TilingReport.h"

namespace {

TEST(TilingReportTest, CountsRegionsWhollyOnThePageAndFillsWithTheirOwnAreas) {
    const TilingReport report = MeasurePlacement(RegionsOf({{"on", {0, 0, 32, 16}},
                                                            {"across", {60, 0, 70, 4}},
                                                            {"left_of", {-1, 0, 3, 4}},
                                                            {"edge", {48, 48, 64, 64}},
                                                            {"parked", {72, 0, 80, 8}}}),
                                                 {64, 64});
    EXPECT_EQ(report.regions, 5u);
    EXPECT_EQ(report.placed, 2u);
    EXPECT_EQ(report.parked, (std::vector<std::string>{"across", "left_of", "parked"}));
    EXPECT_DOUBLE_EQ(report.fill, 18.75);  // (512 + 256) of 4096
    EXPECT_EQ(PlacementLine(report), "Placed 2 of 5 regions, fill 18.8%");

    // An inverted region lies on the page but covers nothing; a page without area is
    // filled 0%, never divided by.
    const TilingReport odd = MeasurePlacement(RegionsOf({{"inverted", {8, 8, 4, 4}}}), {64, 64});
    EXPECT_EQ(odd.placed, 1u);
    EXPECT_EQ(odd.fill, 0);
    EXPECT_EQ(PlacementLine(MeasurePlacement({}, {0, 0})), "Placed 0 of 0 regions, fill 0.0%");
    EXPECT_EQ(FitRatioLine(1.234f), "Fit ratio = 1.23");
}

}  // namespace
