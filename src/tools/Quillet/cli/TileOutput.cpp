#include "TileOutput.h"

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

}  // namespace

std::string TileText(const TilingReport& report) {
    return FitRatioLine(report.fit_ratio) + "\n" + PlacementLine(report) + "\n";
}

std::string TileJson(const TilingReport& report) {
    JsonWriter json;
    json.BeginObject();
    WriteReport(json, report);
    json.EndObject();
    return json.Text() + "\n";
}
