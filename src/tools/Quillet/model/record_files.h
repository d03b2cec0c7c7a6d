// The file records of texture pages, fonts and movies.
//
// Readers are given the line that began the record and return with the closing line in
// hand; they throw the records of qlt_errors.h as the format prescribes. project_base_dir
// must belong to the file.
#pragma once

#include <string>

#include "framework/Archive.h"
#include "qlt_types.h"

TPAGE ReadTexturePage(framework::Archive& archive, std::string& line);
void WriteTexturePage(framework::Archive& archive, const TPAGE& page);

FONT_PAGE ReadFontPage(framework::Archive& archive, std::string& line);
void WriteFontPage(framework::Archive& archive, const FONT_PAGE& font);

FMV_PAGE ReadFmvPage(framework::Archive& archive, std::string& line);
void WriteFmvPage(framework::Archive& archive, const FMV_PAGE& movie);

// Pieces are measured through their objects, so those must be read first, as the writer's
// order gives.
LPAGE ReadLayoutPage(framework::Archive& archive, std::string& line);
void WriteLayoutPage(framework::Archive& archive, const LPAGE& page);
