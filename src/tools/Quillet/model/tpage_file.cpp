#include <string_view>

#include "qlt_errors.h"
#include "qlt_paths.h"
#include "qlt_syntax.h"
#include "record_files.h"

namespace {

constexpr size_t kTextureTagLength = 9;  // "<texture>"
constexpr size_t kRegionTagLength = 8;   // "<region>"

// One side of a region. A file that ends here ends inside its page, which is not a wrong
// line but a truncated file.
void ReadSide(Archive& archive, std::string_view open, std::string_view close, int32_t& side) {
    if (archive.AtEnd()) throw UNEXPECTED_END_OF_FILE();
    ReadTaggedNumber<NOT_A_TREGION>(archive, open, close, side);
}

TREGION ReadRegion(Archive& archive, const std::string& first_line) {
    if (!BeginsWith(first_line, "<region>")) throw NOT_A_TREGION();
    TREGION region;
    region.name = TextAfter(first_line, kRegionTagLength);
    ReadSide(archive, "<left>", "</left>", region.rect.left);
    ReadSide(archive, "<top>", "</top>", region.rect.top);
    ReadSide(archive, "<right>", "</right>", region.rect.right);
    ReadSide(archive, "<bottom>", "</bottom>", region.rect.bottom);
    std::string line;
    ReadAwaitedLine(archive, line);
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
    ReadAwaitedLine(archive, line);
    if (MatchTag(line, "<path>", "</path>")) {
        page.folder = line;
        ReadAwaitedLine(archive, line);
    }
    // A region that does not read stops the whole file: skipping it would take the lines
    // behind it for new records and move regions between pages without a word.
    while (line != "</texture>") {
        page.regions.push_back(ReadRegion(archive, line));
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
