#include "ProjectFile.h"

#include <cstdio>
#include <utility>
#include <vector>

#include "piece_files.h"
#include "qlt_errors.h"
#include "qlt_paths.h"
#include "qlt_syntax.h"
#include "record_files.h"

namespace {

using PieceFileLoader = bool (*)(QLT_FILE&, const std::string&);

std::string FormatVersion() {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", static_cast<double>(kQltFileVersion));
    return text;
}

// A piece file that does not load is forgotten without a word.
void ReadPieceFileName(Archive& archive, std::string_view open, std::string_view close,
                       QLT_FILE& qlt_file, std::string& name, PieceFileLoader load) {
    std::string path = ReadTaggedValue<NOT_A_LPAGE>(archive, open, close);
    MakeAbsolutePath(path);
    if (!load(qlt_file, path)) name.clear();
}

// The sizes read for the pieces of each page read, by the page's place in the layouts: the
// pieces are measured once the whole file is read.
using PendingSizes = std::vector<std::pair<size_t, std::vector<PieceSizeRead>>>;

void ReadPageInto(Archive& archive, std::string& line, QLT_FILE& qlt_file, PendingSizes& pending) {
    try {
        std::vector<PieceSizeRead> sizes;
        LPAGE page = ReadLayoutPage(archive, line, sizes);
        page.width = qlt_file.layout_width;
        page.height = qlt_file.layout_height;
        pending.emplace_back(qlt_file.layouts.size(), std::move(sizes));
        qlt_file.layouts.push_back(std::move(page));
    } catch (const NOT_A_UI_PIECE&) {
    } catch (const BAD_TAG&) {
    }
}

void ReadLayoutSection(Archive& archive, QLT_FILE& qlt_file, PendingSizes& pending) {
    ReadTaggedNumber<NOT_A_LPAGE>(archive, "<layout_width>", "</layout_width>",
                                  qlt_file.layout_width);
    ReadTaggedNumber<NOT_A_LPAGE>(archive, "<layout_height>", "</layout_height>",
                                  qlt_file.layout_height);
    ReadPieceFileName(archive, "<piece_types_fname>", "</piece_types_fname>", qlt_file,
                      qlt_file.piece_types_fname, LoadPieceTypesFile);
    ReadPieceFileName(archive, "<piece_texts_fname>", "</piece_texts_fname>", qlt_file,
                      qlt_file.piece_texts_fname, LoadPieceTextsFile);
    std::string line;
    ReadTrimmedLine(archive, line);
    while (MatchTag(line, "<texture_path>", "</texture_path>")) {
        qlt_file.common_texture_paths.push_back(line);
        ReadTrimmedLine(archive, line);
    }
    while (MatchTag(line, "<fmv_path>", "</fmv_path>")) {
        qlt_file.common_fmv_paths.push_back(line);
        ReadTrimmedLine(archive, line);
    }
    while (line != "</layout>") {
        if (!IsBlankLine(line)) ReadPageInto(archive, line, qlt_file, pending);
        ReadAwaitedLine(archive, line);
    }
    FlagAllInUse(qlt_file);
}

void WriteLayoutSection(Archive& archive, const QLT_FILE& qlt_file) {
    WriteOpenTag(archive, "<layout>");
    WriteTagLine(archive, "<layout_width>", FormatInt(qlt_file.layout_width), "</layout_width>");
    WriteTagLine(archive, "<layout_height>", FormatInt(qlt_file.layout_height), "</layout_height>");
    std::string types = qlt_file.piece_types_fname;
    MakeRelativePath(types);
    WriteTagLine(archive, "<piece_types_fname>", types, "</piece_types_fname>");
    std::string texts = qlt_file.piece_texts_fname;
    MakeRelativePath(texts);
    WriteTagLine(archive, "<piece_texts_fname>", texts, "</piece_texts_fname>");
    for (const std::string& path : qlt_file.common_texture_paths)
        WriteTagLine(archive, "<texture_path>", path, "</texture_path>");
    for (const std::string& path : qlt_file.common_fmv_paths)
        WriteTagLine(archive, "<fmv_path>", path, "</fmv_path>");
    for (const LPAGE& page : qlt_file.layouts)
        WriteLayoutPage(archive, page);
    WriteCloseLine(archive, "</layout>");
}

// One top-level line that opens a section; false when the line opens none. Each reader is
// caught where the format says: a record thrown out is dropped without a word. A texture
// page is not caught: what fails inside it stops the file, as dropping it would let its
// last lines be read as records of their own.
bool ReadSection(Archive& archive, std::string& line, ProjectRecords& records,
                 PendingSizes& pending) {
    if (BeginsWith(line, "<texture>")) {
        records.texture_pages.push_back(ReadTexturePage(archive, line));
    } else if (BeginsWith(line, "<font>")) {
        try {
            records.font_pages.push_back(ReadFontPage(archive, line));
        } catch (const NOT_A_FONT_PAGE&) {
        }
    } else if (BeginsWith(line, "<fmv>")) {
        try {
            records.fmv_pages.push_back(ReadFmvPage(archive, line));
        } catch (const NOT_A_FMV_PAGE&) {
        }
    } else if (BeginsWith(line, "<UI object>")) {
        try {
            records.ui_objects.push_back(ReadUiObject(archive, line));
        } catch (const NOT_A_UI_OBJECT&) {
        } catch (const BAD_TAG&) {
        }
    } else if (BeginsWith(line, "<layout>")) {
        // A second <layout> section reads into the same record: the two add up.
        try {
            ReadLayoutSection(archive, records.qlt_file, pending);
        } catch (const NOT_A_LPAGE&) {
        }
    } else {
        return false;
    }
    return true;
}

}  // namespace

void ReadProject(Archive& archive, ProjectRecords& records) {
    std::string line;
    PendingSizes pending;
    while (archive.ReadString(line)) {
        if (IsBlankLine(line)) continue;
        std::string version = line;
        if (MatchTag(version, "<version>", "</version>")) continue;  // read, never used
        if (!ReadSection(archive, line, records, pending)) throw NOT_A_QLT_FILE();
    }
    // Every object and page of the file is known now, wherever it stood.
    for (const auto& [index, sizes] : pending)
        ScalePiecesToSizes(records.qlt_file.layouts[index], sizes);
}

void WriteProject(Archive& archive, const ProjectRecords& records) {
    write_indent = 0;
    WriteTagLine(archive, "<version>", FormatVersion(), "</version>");
    for (const TPAGE& page : records.texture_pages)
        WriteTexturePage(archive, page);
    for (const FONT_PAGE& font : records.font_pages)
        WriteFontPage(archive, font);
    for (const FMV_PAGE& movie : records.fmv_pages)
        WriteFmvPage(archive, movie);
    for (const auto& object : records.ui_objects)
        object->Write(archive);
    WriteLayoutSection(archive, records.qlt_file);
}
