// The piece types file and the piece texts file named by a project: which kinds of piece
// exist, by object category, and which text ids.
//
// Failure style: false when a file cannot be read; the lists then stay as they were.
#pragma once

#include <string>
#include <vector>

#include "qlt_types.h"

// Reads the piece types file at `path` (absolute) into the five lists and takes the name.
bool LoadPieceTypesFile(QLT_FILE& qlt_file, const std::string& path);
// Reads the piece texts file at `path` (absolute) and takes the name.
bool LoadPieceTextsFile(QLT_FILE& qlt_file, const std::string& path);
// Reads the named files again; false when no file is named or it cannot be read.
bool ReloadPieceTypes(QLT_FILE& qlt_file);
bool ReloadPieceTexts(QLT_FILE& qlt_file);

// The list of an object type tag; reports "Unknown object type" and answers null for any
// other tag.
std::vector<PIECE_TYPE>* PieceTypeList(QLT_FILE& qlt_file, const std::string& type_tag);
// Adds a piece type the project used but the file lacked, to the list and to the end of
// the file, with the arguments "default". False when it could not be added.
bool AppendPieceType(QLT_FILE& qlt_file, const std::string& type_tag, const std::string& name);
// Sets `in_use` of the first entry of that name, searching the lists in category order.
void FlagPieceType(QLT_FILE& qlt_file, const std::string& name, bool in_use);
// Flags every identifier that a piece of a page uses.
void FlagAllInUse(QLT_FILE& qlt_file);
