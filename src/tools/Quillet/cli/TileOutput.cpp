#include "TileOutput.h"

#include <filesystem>

#include "JsonWriter.h"

namespace {

// The report's members; the fill, ratio and time with the decimals their text shows.
void WriteReport(JsonWriter& json, const TilingReport& report) {
    json.Key("order").Number(report.order).Key("spacing").Number(report.spacing);
    json.Key("page").BeginObject();
    json.Key("width").Number(report.page.width).Key("height").Number(report.page.height);
    json.EndObject();
    json.Key("regions").Number(report.regions).Key("placed").Number(report.placed);
    json.Key("parked").BeginArray();
    for (const std::string& name : report.parked)
        json.String(name);
    json.EndArray();
    json.Key("fill").Decimal(report.fill, 1);
    json.Key("ratio").Decimal(static_cast<double>(report.fit_ratio), 2);
    json.Key("milliseconds").Decimal(report.milliseconds, 1);
}

std::string ReportText(const TilingReport& report) {
    return FitRatioLine(report.fit_ratio) + "\n" + PlacementLine(report) + "\n";
}

}  // namespace

std::string TileText(const TileOutcome& outcome) {
    std::string text = ReportText(outcome.report);
    for (const OverflowPage& page : outcome.overflow)
        text += MovedLine(page) + "\n" + ReportText(page.report);
    return text;
}

std::string TileJson(const TileOutcome& outcome) {
    JsonWriter json;
    json.BeginObject();
    WriteReport(json, outcome.report);
    if (outcome.overflow_asked) {
        json.Key("overflow").BeginArray();
        for (const OverflowPage& page : outcome.overflow) {
            json.BeginObject();
            json.Key("path").String(std::filesystem::path(page.path).filename().string());
            json.Key("moved").Number(page.moved);
            WriteReport(json, page.report);
            json.EndObject();
        }
        json.EndArray();
    }
    json.EndObject();
    return json.Text() + "\n";
}
