#include "RegionCache.h"

#include <algorithm>

#include "Placeholders.h"
#include "core_tga.h"
#include "model/QuilletDoc.h"
#include "model/page_rect.h"
#include "model/region_pictures.h"
#include "model/report.h"

namespace {

// No page is larger: a rectangle beyond it comes from a damaged file, and its picture would
// be gigabytes of zeros.
constexpr int32_t kLargestCut = 16384;

constexpr const char* kNoPicture = "Failed to create tpage image buffer";

// The `rect` part of `source` in 8888 form. What lies outside the source is zero bytes in the
// source's own format before the conversion: opaque black on a page without alpha.
ImagePtr CutTo8888(Core::Image& source, const PageRect& rect) {
    const int32_t width = RectWidth(rect);
    const int32_t height = RectHeight(rect);
    if (width <= 0 || height <= 0 || width > kLargestCut || height > kLargestCut) return nullptr;
    const ImagePtr cut = CutRegion(source, rect);
    return cut == nullptr ? nullptr : ImagePtr(Core::copy_image(*cut, Core::PIXEL_FORMAT_8888));
}

ImagePtr In8888(Core::Image* placeholder) {
    return ImagePtr(
        placeholder == nullptr ? nullptr : Core::copy_image(*placeholder, Core::PIXEL_FORMAT_8888));
}

}  // namespace

void BoxesOnce::Tell(const std::string& text) {
    if (told_.insert(text).second) ReportUnless(false, text);
}

SlotSource FindSlotSource(const CQuilletDoc& project, const UI_REGION& slot) {
    SlotSource source;
    source.page = project.TextureIfAny(slot.page);
    if (source.page != nullptr) {
        const auto& regions = source.page->regions;
        const auto found =
            std::find_if(regions.begin(), regions.end(),
                         [&slot](const TREGION& region) { return region.name == slot.region; });
        if (found != regions.end()) source.region = &*found;
        return source;
    }
    const auto& movies = project.records().fmv_pages;
    const auto movie = std::find_if(movies.begin(), movies.end(), [&slot](const FMV_PAGE& each) {
        return each.identifier == slot.region;
    });
    if (movie != movies.end()) source.movie = &*movie;
    return source;
}

Core::Image* PageFiles::Picture(const std::string& path) {
    const auto known = read_.find(path);
    if (known != read_.end()) return known->second.get();
    Core::TgaReader reader;
    ImagePtr picture;
    if (reader.buffer.open(path.c_str()))
        picture.reset(Core::load_tga(reader));
    else
        boxes_.Tell("File not found:\r\n" + path);
    return read_.emplace(path, std::move(picture)).first->second.get();
}

RegionCache::RegionCache()
    : fmv_placeholder_(MakeFmvPlaceholder()), empty_placeholder_(MakeEmptyPlaceholder()) {}

Core::Image* RegionCache::PictureOf(const CQuilletDoc& project, const UI_REGION& slot,
                                    PageFiles& files, BoxesOnce& boxes) {
    const SlotSource source = FindSlotSource(project, slot);
    if (source.page != nullptr && source.region == nullptr) {
        boxes.Tell("TPage region not found");
        return nullptr;
    }
    if (source.region != nullptr) {
        // A region without area has nothing to show, and no file needs reading for it.
        if (IsRectEmpty(source.region->rect)) return nullptr;
        if (Core::Image* cached = Find(slot.region, source.region->rect)) return cached;
        ImagePtr picture = CutRegion(*source.page, *source.region, files);
        if (picture == nullptr) boxes.Tell(kNoPicture);
        return Add(slot.region, source.region->rect, std::move(picture));
    }
    if (source.movie != nullptr) {
        // A movie shows the whole placeholder, whatever rectangle it takes.
        if (Core::Image* cached = Find(slot.region, source.movie->rect)) return cached;
        return Add(slot.region, source.movie->rect, In8888(fmv_placeholder_.get()));
    }
    boxes.Tell("Unknown region");
    boxes.Tell(kNoPicture);
    return nullptr;
}

Core::Image* RegionCache::EmptyPicture(const std::string& name) {
    if (Core::Image* cached = Find(name, UI_OBJECT::EmptyRect())) return cached;
    return Add(name, UI_OBJECT::EmptyRect(), In8888(empty_placeholder_.get()));
}

Core::Image* RegionCache::Find(const std::string& name, const PageRect& rect) {
    const auto named = [&name](const RegionImage& entry) { return entry.region_name == name; };
    const auto found = std::find_if(entries_.begin(), entries_.end(), named);
    if (found == entries_.end()) return nullptr;
    if (found->source_rect == rect) return found->image.get();
    std::erase_if(entries_, named);
    return nullptr;
}

Core::Image* RegionCache::Add(const std::string& name, const PageRect& rect, ImagePtr picture) {
    if (picture == nullptr) return nullptr;
    entries_.push_back({name, rect, std::move(picture)});
    return entries_.back().image.get();
}

ImagePtr RegionCache::CutRegion(const TPAGE& page, const TREGION& region, PageFiles& files) {
    // A region imported and not yet written to its page carries its picture, from its origin.
    if (region.image != nullptr) return CutTo8888(*region.image, AtOrigin(region.rect));
    Core::Image* file = files.Picture(page.path);
    return file == nullptr ? nullptr : CutTo8888(*file, region.rect);
}
