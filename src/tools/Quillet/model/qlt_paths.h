// Paths in the project file.
//
// In memory every file path is native and absolute. In the file, paths below the project's
// folder are relative and use the format's '\' separators, so files move between platforms;
// reading turns '\' back into '/'. The relative form follows the format's own rule, quirks
// included: a path above the base climbs one level more than it needs.
#pragma once

#include <string>

// The folder that paths in the file are relative to, native, with a trailing '/'; empty
// while a memory snapshot is read or written.
extern std::string project_base_dir;

// Takes the folder of `path` (an absolute native path, or empty for memory) as the base.
void SetProjectBaseDir(const std::string& path);

// The rule of the format on paths in the '\' form: `path` relative to `base` (which ends
// in '\'), or `path` unchanged when it is short, the base is empty, or nothing is shared.
std::string RelativeToBase(const std::string& path, const std::string& base);

// A native path as it is written to the file: relative to project_base_dir, '\' form.
void MakeRelativePath(std::string& path);
// A path as read from the file, made native and put behind project_base_dir, with no test
// of any kind: an empty or absolute value gets the base too.
void MakeAbsolutePath(std::string& path);

// '/' to '\' and back.
std::string ToFileForm(std::string path);
std::string FromFileForm(std::string path);
