// The piece types file and the piece texts file named by a project.
//
// Failure style: false when the file cannot be read; the project then forgets its name.
#pragma once

#include <string>

#include "qlt_types.h"

// Loads the piece types file at `path` (absolute) into `qlt_file`.
bool LoadPieceTypesFile(QLT_FILE& qlt_file, const std::string& path);
// Loads the piece texts file at `path` (absolute) into `qlt_file`.
bool LoadPieceTextsFile(QLT_FILE& qlt_file, const std::string& path);
