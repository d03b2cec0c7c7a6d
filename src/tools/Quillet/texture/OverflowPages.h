// Overflow pages: the regions that a tiling parks beside a texture page move to new pages of
// the same size and file format, each tiled as the page was, and on to further pages while
// any still does not fit. UI objects keep showing their regions: their slots follow the
// regions to the new pages, so no object or piece is asked about or removed.
//
// The plan is plain logic over regions and tells beforehand how many pages a move makes, so
// that every name is checked before the first file is written.
//
// Failure style: the plan lists the regions that cannot move; OverflowRefusal says why pages
// cannot be made; moving asks nothing. Model layer: no windows.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "TilingReport.h"
#include "model/qlt_types.h"

class CQuilletDoc;
class CTexturePageDoc;

// The path of overflow page `index` (0 the first) when the first is at `first`: NEW.tga,
// NEW-2.tga, NEW-3.tga... in the same folder, the number before the extension.
std::string OverflowPagePath(const std::string& first, size_t index);
// The first `count` of them.
std::vector<std::string> OverflowPagePaths(const std::string& first, size_t count);

struct OverflowPlan {
    // Parked regions that stay where they are: too large for an empty page of the size with
    // the spacing, which would make new pages without end; or sharing their name with another
    // region of the page, from which a move by name cannot tell them apart.
    std::vector<std::string> oversized;
    std::vector<std::string> same_named;
    // The regions each new page receives, in the page's list order: the first all that can
    // move, every next one those that the one before it parks.
    std::vector<std::vector<std::string>> pages;
};

// Where the regions that lie off a page of `size` would go when pages of that size are tiled
// by `order` with `spacing`. The regions are the page's, in its list order.
OverflowPlan PlanOverflow(const std::vector<TREGION>& regions, PageSize size, int order,
                          unsigned spacing);

// Why no new pages can be made at `paths` (absolute): the first that is a page of the project
// already, or anything on disk, which must never be overwritten. Empty when all can be.
std::string OverflowRefusal(const CQuilletDoc& project, const std::vector<std::string>& paths);

// A first overflow path beside `page` for `count` pages, STEM-K.EXT with K the smallest from
// 2 up for which all `count` paths are free.
std::string ProposedOverflowPath(const CQuilletDoc& project, const std::string& page, size_t count);

struct OverflowPage {
    std::string path;
    size_t moved = 0;     // regions moved onto the page
    TilingReport report;  // its tiling
};

// "Moved K regions to NAME.tga" (the file's name), or "Moved 1 region to ...".
std::string MovedLine(const OverflowPage& page);

// Makes the planned pages at `paths`, one for each, with the size, file format and unused
// colour of `source` (opened as new pages open), and moves the regions there: each page takes
// its regions from the page before it and is tiled by `order` with `spacing`. One undo step.
// Answers the pages made.
std::vector<OverflowPage> MoveToOverflowPages(CTexturePageDoc& source, const OverflowPlan& plan,
                                              const std::vector<std::string>& paths, int order,
                                              unsigned spacing);
