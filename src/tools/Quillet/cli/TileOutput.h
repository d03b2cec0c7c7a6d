// What `quillet-cli tile` prints on standard output: the report of the page's tiling, as
// lines of text or as one JSON object.
#pragma once

#include <string>

#include "texture/TilingReport.h"

// "Fit ratio = R" and "Placed P of N regions, fill F%", each line ending in a line feed.
std::string TileText(const TilingReport& report);
// {"order":5,"spacing":0,"page":{"width":W,"height":H},"regions":N,"placed":P,
// "parked":["a"],"fill":91.4,"ratio":1.23,"milliseconds":12.3} on one line.
std::string TileJson(const TilingReport& report);
