#include "texture/TilingReport.h"

#include <algorithm>
#include <cstdio>

#include "model/page_rect.h"

TilingReport MeasurePlacement(const std::vector<TREGION>& regions, PageSize page) {
    TilingReport report;
    report.page = page;
    report.regions = regions.size();
    double covered = 0;
    for (const TREGION& region : regions) {
        if (!LiesOnPage(region.rect, page)) {
            report.parked.push_back(region.name);
            continue;
        }
        ++report.placed;
        // A region on the page has edges within it, so its sides fit in 32 bits; one a file
        // gave inverted sides covers nothing.
        covered += static_cast<double>(std::max(RectWidth(region.rect), 0)) *
                   static_cast<double>(std::max(RectHeight(region.rect), 0));
    }
    const double area = static_cast<double>(page.width) * static_cast<double>(page.height);
    if (area > 0) report.fill = covered / area * 100;
    return report;
}

std::string PlacementLine(const TilingReport& report) {
    char fill[32];
    std::snprintf(fill, sizeof fill, "%.1f", report.fill);
    return "Placed " + std::to_string(report.placed) + " of " + std::to_string(report.regions) +
           " regions, fill " + fill + "%";
}

std::string FitRatioLine(float fit_ratio) {
    char text[64];
    std::snprintf(text, sizeof text, "Fit ratio = %.2f", static_cast<double>(fit_ratio));
    return text;
}
