// The file records of texture pages, fonts and movies.
//
// Readers are given the line that began the record and return with the closing line in
// hand; they throw the records of qlt_errors.h as the format prescribes. project_base_dir
// must belong to the file.
#pragma once

#include <string>
#include <vector>

#include "framework/Archive.h"
#include "qlt_types.h"

TPAGE ReadTexturePage(framework::Archive& archive, std::string& line);
void WriteTexturePage(framework::Archive& archive, const TPAGE& page);

FONT_PAGE ReadFontPage(framework::Archive& archive, std::string& line);
void WriteFontPage(framework::Archive& archive, const FONT_PAGE& font);

FMV_PAGE ReadFmvPage(framework::Archive& archive, std::string& line);
void WriteFmvPage(framework::Archive& archive, const FMV_PAGE& movie);

// The size a piece was written with. A piece's scales come from it and from its object, and
// a file may hold the object, or the page of its regions, after the piece: the sizes are
// kept until the whole file is read, then the pieces are measured.
struct PieceSizeRead {
    int32_t width = 0;
    int32_t height = 0;
};

// The page with its pieces at scale 1; `sizes` gets the size read for each piece, in order.
LPAGE ReadLayoutPage(framework::Archive& archive, std::string& line,
                     std::vector<PieceSizeRead>& sizes);
// Gives each piece of `page` the scales that its size read asks for.
void ScalePiecesToSizes(LPAGE& page, const std::vector<PieceSizeRead>& sizes);
void WriteLayoutPage(framework::Archive& archive, const LPAGE& page);
