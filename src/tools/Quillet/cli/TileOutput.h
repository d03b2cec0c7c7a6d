// What `quillet-cli tile` prints on standard output: the report of the page's tiling and of
// each overflow page, as lines of text or as one JSON object.
#pragma once

#include <string>
#include <vector>

#include "texture/OverflowPages.h"
#include "texture/TilingReport.h"

struct TileOutcome {
    TilingReport report;          // the page's own tiling
    bool overflow_asked = false;  // --overflow was given
    std::vector<OverflowPage> overflow;
};

// "Fit ratio = R" and "Placed P of N regions, fill F%"; then for each overflow page its
// "Moved K regions to NEW.tga" and its own two lines. Each line ends in a line feed.
std::string TileText(const TileOutcome& outcome);
// {"order":5,"spacing":0,"page":{"width":W,"height":H},"regions":N,"placed":P,
// "parked":["a"],"fill":91.4,"ratio":1.23,"milliseconds":12.3}, with
// "overflow":[{"path":"NEW.tga","moved":K, and the same members}] when it was asked for;
// one line.
std::string TileJson(const TileOutcome& outcome);
