#include "qlt_errors.h"
#include "qlt_paths.h"
#include "qlt_syntax.h"
#include "record_files.h"

namespace {

constexpr size_t kTextureTagLength = 9;  // "<texture>"
constexpr size_t kRegionTagLength = 8;   // "<region>"

// The loop of its page does not look at the opening tag: any line starts a region.
TREGION ReadRegion(Archive& archive, const std::string& first_line) {
    TREGION region;
    region.name = TextAfter(first_line, kRegionTagLength);
    ReadTaggedNumber<NOT_A_TREGION>(archive, "<left>", "</left>", region.rect.left);
    ReadTaggedNumber<NOT_A_TREGION>(archive, "<top>", "</top>", region.rect.top);
    ReadTaggedNumber<NOT_A_TREGION>(archive, "<right>", "</right>", region.rect.right);
    ReadTaggedNumber<NOT_A_TREGION>(archive, "<bottom>", "</bottom>", region.rect.bottom);
    std::string line;
    ReadTrimmedLine(archive, line);
    if (line != "</region>") throw BAD_TAG();
    return region;
}

void WriteRegion(Archive& archive, const TREGION& region) {
    WriteOpenLine(archive, "<region>", region.name);
    WriteTagLine(archive, "<left>", FormatInt(region.rect.left), "</left>");
    WriteTagLine(archive, "<top>", FormatInt(region.rect.top), "</top>");
    WriteTagLine(archive, "<right>", FormatInt(region.rect.right), "</right>");
    WriteTagLine(archive, "<bottom>", FormatInt(region.rect.bottom), "</bottom>");
    WriteCloseLine(archive, "</region>");
}

}  // namespace

TPAGE ReadTexturePage(Archive& archive, std::string& line) {
    TPAGE page;
    page.path = TextAfter(line, kTextureTagLength);
    MakeAbsolutePath(page.path);
    ReadTrimmedLine(archive, line);
    if (MatchTag(line, "<path>", "</path>")) {
        page.folder = line;
        ReadTrimmedLine(archive, line);
    }
    while (line != "</texture>") {
        try {
            page.regions.push_back(ReadRegion(archive, line));
        } catch (const NOT_A_TREGION&) {
        } catch (const BAD_TAG&) {
        }
        ReadAwaitedLine(archive, line);
    }
    return page;
}

void WriteTexturePage(Archive& archive, const TPAGE& page) {
    std::string path = page.path;
    MakeRelativePath(path);
    WriteOpenLine(archive, "<texture>", path);
    if (!page.folder.empty()) WriteTagLine(archive, "<path>", page.folder, "</path>");
    for (const TREGION& region : page.regions)
        WriteRegion(archive, region);
    WriteCloseLine(archive, "</texture>");
}
