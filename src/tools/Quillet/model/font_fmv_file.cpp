#include "qlt_errors.h"
#include "qlt_paths.h"
#include "qlt_syntax.h"
#include "record_files.h"

namespace {

constexpr size_t kFontTagLength = 6;  // "<font>"
constexpr size_t kFmvTagLength = 5;   // "<fmv>"

void ExpectClose(Archive& archive, std::string& line, std::string_view close) {
    ReadTrimmedLine(archive, line);
    if (line != close) throw BAD_TAG();
}

std::string PathBehind(const std::string& line, size_t tag_length) {
    std::string path = TextAfter(line, tag_length);
    MakeAbsolutePath(path);
    return path;
}

std::string RelativeFormOf(std::string path) {
    MakeRelativePath(path);
    return path;
}

}  // namespace

FONT_PAGE ReadFontPage(Archive& archive, std::string& line) {
    FONT_PAGE font;
    font.path = PathBehind(line, kFontTagLength);
    font.identifier = ReadTaggedValue<NOT_A_FONT_PAGE>(archive, "<identifier>", "</identifier>");
    ReadTaggedNumber<NOT_A_FONT_PAGE>(archive, "<lf_height>", "</lf_height>", font.lf_height);
    ExpectClose(archive, line, "</font>");
    return font;
}

void WriteFontPage(Archive& archive, const FONT_PAGE& font) {
    WriteOpenLine(archive, "<font>", RelativeFormOf(font.path));
    WriteTagLine(archive, "<identifier>", font.identifier, "</identifier>");
    WriteTagLine(archive, "<lf_height>", FormatInt(font.lf_height), "</lf_height>");
    WriteCloseLine(archive, "</font>");
}

// The rectangle's wrong lines throw the region's record, which nothing catches around a
// movie: such a file does not load.
FMV_PAGE ReadFmvPage(Archive& archive, std::string& line) {
    FMV_PAGE movie;
    movie.path = PathBehind(line, kFmvTagLength);
    ReadTrimmedLine(archive, line);
    if (MatchTag(line, "<path>", "</path>")) {
        movie.folder = line;
        ReadTrimmedLine(archive, line);
    }
    if (!MatchTag(line, "<identifier>", "</identifier>")) throw NOT_A_FMV_PAGE();
    movie.identifier = line;
    ReadTaggedNumber<NOT_A_TREGION>(archive, "<left>", "</left>", movie.rect.left);
    ReadTaggedNumber<NOT_A_TREGION>(archive, "<top>", "</top>", movie.rect.top);
    ReadTaggedNumber<NOT_A_TREGION>(archive, "<right>", "</right>", movie.rect.right);
    ReadTaggedNumber<NOT_A_TREGION>(archive, "<bottom>", "</bottom>", movie.rect.bottom);
    ExpectClose(archive, line, "</fmv>");
    return movie;
}

void WriteFmvPage(Archive& archive, const FMV_PAGE& movie) {
    WriteOpenLine(archive, "<fmv>", RelativeFormOf(movie.path));
    if (!movie.folder.empty()) WriteTagLine(archive, "<path>", movie.folder, "</path>");
    WriteTagLine(archive, "<identifier>", movie.identifier, "</identifier>");
    WriteTagLine(archive, "<left>", FormatInt(movie.rect.left), "</left>");
    WriteTagLine(archive, "<top>", FormatInt(movie.rect.top), "</top>");
    WriteTagLine(archive, "<right>", FormatInt(movie.rect.right), "</right>");
    WriteTagLine(archive, "<bottom>", FormatInt(movie.rect.bottom), "</bottom>");
    WriteCloseLine(archive, "</fmv>");
}
