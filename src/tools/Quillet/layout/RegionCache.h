// The pictures of the regions that pieces draw, cut once and kept for the life of a window:
// reading a texture page and converting its pixels is the costly part of drawing a layout
// page, and a piece's picture never depends on where the piece stands.
//
// An entry is known by its region's name alone and remembers the rectangle it was cut from;
// a region cut again to another rectangle makes its entry stale and is cut anew, while one
// re-cut to the same rectangle keeps its old picture until the window closes.
//
// Failure style: boxes captioned "Error", each text at most once for the life of the
// `BoxesOnce` given, and a null picture, which draws nothing.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "model/ui_objects.h"

class CQuilletDoc;

// Tells the person each text once: a page is drawn anew on every change, and a fault that
// stays would otherwise ask for a click each time.
class BoxesOnce {
public:
    void Tell(const std::string& text);
    // How many boxes were shown so far.
    size_t Told() const { return told_.size(); }

private:
    std::set<std::string> told_;
};

// Where a slot's pixels lie, found without any box, by the rule the project's own lookup
// follows: the slot's texture page if the project has it, else the movie that the slot's
// identifier names.
struct SlotSource {
    const TPAGE* page = nullptr;
    const TREGION* region = nullptr;  // the first of the slot's name on `page`
    const FMV_PAGE* movie = nullptr;  // only without `page`
};
SlotSource FindSlotSource(const CQuilletDoc& project, const UI_REGION& slot);

// The texture page files read while one picture of a layout page is drawn, so that the
// regions of one page share a single read.
class PageFiles {
public:
    explicit PageFiles(BoxesOnce& boxes) : boxes_(boxes) {}
    // The picture in the file's own format; null (told as "File not found:\r\nPATH") when
    // the file cannot be opened, and null when it is no picture.
    Core::Image* Picture(const std::string& path);

private:
    BoxesOnce& boxes_;
    std::map<std::string, ImagePtr> read_;
};

// One picture of the cache.
struct RegionImage {
    std::string region_name;  // the region's name, or the movie's identifier
    PageRect source_rect;     // where it was cut from
    ImagePtr image;           // PIXEL_FORMAT_8888, rows top to bottom
};

class RegionCache {
public:
    // Draws both placeholders.
    RegionCache();

    // The picture of a slot in 8888 form: cut from its region's own picture while the
    // region is not yet written to its page, else from the page's file; the movie
    // placeholder for a movie. Null, and told, when there is nothing to draw.
    Core::Image* PictureOf(const CQuilletDoc& project, const UI_REGION& slot, PageFiles& files,
                           BoxesOnce& boxes);
    // The empty object placeholder, cached under `name`: the object's first region's name,
    // "" for the built-in objects.
    Core::Image* EmptyPicture(const std::string& name);

    const std::vector<RegionImage>& Entries() const { return entries_; }

private:
    // The picture of `name` cut from `rect`; an entry of that name cut from elsewhere is
    // dropped. Null when there is none.
    Core::Image* Find(const std::string& name, const PageRect& rect);
    Core::Image* Add(const std::string& name, const PageRect& rect, ImagePtr picture);
    ImagePtr CutRegion(const TPAGE& page, const TREGION& region, PageFiles& files);

    std::vector<RegionImage> entries_;
    ImagePtr fmv_placeholder_;
    ImagePtr empty_placeholder_;
};
