#include "page_rect.h"
#include "piece_geometry.h"
#include "qlt_errors.h"
#include "qlt_paths.h"
#include "qlt_syntax.h"
#include "record_files.h"
#include "ui_objects.h"

namespace {

constexpr size_t kPageTagLength = 7;    // "<lpage>"
constexpr size_t kPieceTagLength = 10;  // "<UI piece>"
constexpr size_t kTextTagLength = 9;    // "<UI text>"
constexpr int32_t kWorkingSize = 10;    // the width and height a piece starts reading with

const char* const kAlignWords[] = {"left", "centre", "right"};

// When the line in hand is `open VALUE close`: the value into `value`, and the next line.
bool TakeOptional(Archive& archive, std::string& line, std::string_view open,
                  std::string_view close, std::string& value) {
    if (!TagValue(line, open, close, value)) return false;
    ReadTrimmedLine(archive, line);
    return true;
}

// The attributes in their fixed order: a tag out of order is not seen here.
void ReadAttributes(Archive& archive, std::string& line, PIECE_ATTRIBUTES& attributes) {
    TakeOptional(archive, line, "<menu_id>", "</menu_id>", attributes.menu_id);
    if (!TakeOptional(archive, line, "<toggle_group_id>", "</toggle_group_id>",
                      attributes.group_id))
        TakeOptional(archive, line, "<group_id>", "</group_id>", attributes.group_id);
    if (TakeOptional(archive, line, "<hot_spot>", "</hot_spot>", attributes.hot_spot))
        MakeAbsolutePath(attributes.hot_spot);
    std::string delta;
    if (TakeOptional(archive, line, "<delta>", "</delta>", delta))
        ReadIntValue(delta, attributes.delta);
    TakeOptional(archive, line, "<hz_slider>", "</hz_slider>", attributes.hz_slider);
    TakeOptional(archive, line, "<vt_slider>", "</vt_slider>", attributes.vt_slider);
    TakeOptional(archive, line, "<menu_id>", "</menu_id>", attributes.scroll_menu_id);
    if (BeginsWith(line, "<UI text>")) {
        attributes.text_id = TextAfter(line, kTextTagLength);
        attributes.font_id = ReadTaggedValue<NOT_A_UI_PIECE>(archive, "<font_id>", "</font_id>");
        const std::string align = ReadTaggedValue<NOT_A_UI_PIECE>(archive, "<align>", "</align>");
        attributes.align = align == "left" ? 0 : align == "centre" ? 1 : 2;
        ReadTrimmedLine(archive, line);
        if (!BeginsWith(line, "</UI text>")) throw NOT_A_UI_PIECE();
        ReadTrimmedLine(archive, line);
    }
    TakeOptional(archive, line, "<tool_tip_id>", "</tool_tip_id>", attributes.tool_tip_id);
}

UI_PIECE ReadPiece(Archive& archive, const std::string& first_line, PieceSizeRead& size) {
    UI_PIECE piece;
    piece.name = TextAfter(first_line, kPieceTagLength);
    int32_t width = kWorkingSize;
    int32_t height = kWorkingSize;
    piece.piece_identifier =
        ReadTaggedValue<NOT_A_UI_PIECE>(archive, "<identifier>", "</identifier>");
    std::string line;
    ReadTrimmedLine(archive, line);
    if (!BeginsWith(line, "<Parameters>")) throw NOT_A_UI_PIECE();
    ReadTaggedNumber<NOT_A_UI_PIECE>(archive, "<x>", "</x>", piece.x);
    ReadTaggedNumber<NOT_A_UI_PIECE>(archive, "<y>", "</y>", piece.y);
    ReadTaggedNumber<NOT_A_UI_PIECE>(archive, "<width>", "</width>", width);
    ReadTaggedNumber<NOT_A_UI_PIECE>(archive, "<height>", "</height>", height);
    ReadTrimmedLine(archive, line);
    ReadAttributes(archive, line, piece.attributes);
    std::string ignored;
    TakeOptional(archive, line, "<range>", "</range>", ignored);  // written, never read
    std::string locked;
    if (TakeOptional(archive, line, "<locked>", "</locked>", locked))
        piece.locked = locked != "false";
    if (!BeginsWith(line, "</Parameters>")) throw NOT_A_UI_PIECE();
    ReadTrimmedLine(archive, line);
    TakeOptional(archive, line, "<object_data>", "</object_data>", piece.object_data);
    if (!MatchTag(line, "<object_id>", "</object_id>")) throw NOT_A_UI_PIECE();
    piece.object_id = line;
    ReadAwaitedLine(archive, line);
    while (line != "</UI piece>") {
        std::string group = line;
        if (MatchTag(group, "<edit_group_id>", "</edit_group_id>")) piece.edit_group_id = group;
        ReadAwaitedLine(archive, line);
    }
    size = {width, height};
    return piece;
}

void WriteIfSet(Archive& archive, std::string_view open, const std::string& value,
                std::string_view close) {
    if (!value.empty()) WriteTagLine(archive, open, value, close);
}

void WritePiece(Archive& archive, const UI_PIECE& piece) {
    const PageRect rect = PieceRect(piece);
    const PIECE_ATTRIBUTES& a = piece.attributes;
    WriteOpenLine(archive, "<UI piece>", piece.name);
    WriteTagLine(archive, "<identifier>", piece.piece_identifier, "</identifier>");
    WriteOpenTag(archive, "<Parameters>");
    WriteTagLine(archive, "<x>", FormatInt(piece.x), "</x>");
    WriteTagLine(archive, "<y>", FormatInt(piece.y), "</y>");
    WriteTagLine(archive, "<width>", FormatInt(RectWidth(rect)), "</width>");
    WriteTagLine(archive, "<height>", FormatInt(RectHeight(rect)), "</height>");
    WriteIfSet(archive, "<menu_id>", a.menu_id, "</menu_id>");
    WriteIfSet(archive, "<group_id>", a.group_id, "</group_id>");
    std::string hot_spot = a.hot_spot;
    if (!hot_spot.empty()) MakeRelativePath(hot_spot);
    WriteIfSet(archive, "<hot_spot>", hot_spot, "</hot_spot>");
    if (a.delta != 0) WriteTagLine(archive, "<delta>", FormatInt(a.delta), "</delta>");
    WriteIfSet(archive, "<hz_slider>", a.hz_slider, "</hz_slider>");
    WriteIfSet(archive, "<vt_slider>", a.vt_slider, "</vt_slider>");
    WriteIfSet(archive, "<menu_id>", a.scroll_menu_id, "</menu_id>");
    if (!a.text_id.empty()) {
        WriteOpenLine(archive, "<UI text>", a.text_id);
        WriteTagLine(archive, "<font_id>", a.font_id, "</font_id>");
        WriteTagLine(archive, "<align>",
                     kAlignWords[a.align == 0   ? 0
                                 : a.align == 1 ? 1
                                                : 2],
                     "</align>");
        WriteCloseLine(archive, "</UI text>");
    }
    WriteIfSet(archive, "<tool_tip_id>", a.tool_tip_id, "</tool_tip_id>");
    if (const UI_OBJECT* object = ObjectNamed(piece.object_id)) {
        const int64_t range =
            int64_t{object->RangeX(piece.scale_x)} + object->RangeY(piece.scale_y);
        if (range != 0)
            WriteTagLine(archive, "<range>",
                         FormatInt(static_cast<int32_t>(static_cast<uint32_t>(range))), "</range>");
    }
    WriteTagLine(archive, "<locked>", piece.locked ? "true" : "false", "</locked>");
    WriteCloseLine(archive, "</Parameters>");
    WriteTagLine(archive, "<object_data>", piece.object_data, "</object_data>");
    WriteTagLine(archive, "<object_id>", piece.object_id, "</object_id>");
    WriteIfSet(archive, "<edit_group_id>", piece.edit_group_id, "</edit_group_id>");
    WriteCloseLine(archive, "</UI piece>");
}

}  // namespace

LPAGE ReadLayoutPage(Archive& archive, std::string& line, std::vector<PieceSizeRead>& sizes) {
    LPAGE page;
    page.name = TextAfter(line, kPageTagLength);
    ReadTrimmedLine(archive, line);
    while (MatchTag(line, "<texture_path>", "</texture_path>")) {
        page.texture_paths.push_back(line);
        ReadTrimmedLine(archive, line);
    }
    while (MatchTag(line, "<fmv_path>", "</fmv_path>")) {
        page.fmv_paths.push_back(line);
        ReadTrimmedLine(archive, line);
    }
    while (line != "</lpage>") {
        if (!IsBlankLine(line)) {
            try {
                PieceSizeRead size;
                page.pieces.push_back(ReadPiece(archive, line, size));
                sizes.push_back(size);
            } catch (const NOT_A_UI_PIECE&) {
            } catch (const BAD_TAG&) {
            }
        }
        ReadAwaitedLine(archive, line);
    }
    return page;
}

void ScalePiecesToSizes(LPAGE& page, const std::vector<PieceSizeRead>& sizes) {
    for (size_t index = 0; index < page.pieces.size() && index < sizes.size(); ++index)
        ScalePieceToSize(page.pieces[index], sizes[index].width, sizes[index].height);
}

void WriteLayoutPage(Archive& archive, const LPAGE& page) {
    WriteOpenLine(archive, "<lpage>", page.name);
    for (const std::string& path : page.texture_paths)
        WriteTagLine(archive, "<texture_path>", path, "</texture_path>");
    for (const std::string& path : page.fmv_paths)
        WriteTagLine(archive, "<fmv_path>", path, "</fmv_path>");
    for (const UI_PIECE& piece : page.pieces)
        WritePiece(archive, piece);
    WriteCloseLine(archive, "</lpage>");
}
