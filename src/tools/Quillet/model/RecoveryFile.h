// The recovery copy: everything an editor holds that no file has yet, kept beside the user's
// files so that a crash or a kill loses at most the last moments of work.
//
// A copy is one file of our own: a first line "QUILLET RECOVERY 1", then records, each a line
// naming it and the length of what follows, then that many bytes and a line end:
//
//   project N / title N / text N     the project's path, title and text
//   stamp N                          a file's path, then a line "EXISTS DEVICE INODE SIZE NS"
//   page N                           a page's path, then a line "FORMAT B G R A"
//   picture N                        the page's picture, a 32-bit TGA
//   region INDEX N                   the picture of the page's region INDEX, a 32-bit TGA
//   end 0                            the last record: a copy without it is not whole
//
// Failure style: false or nothing with a reason; a file that is not a whole copy never
// yields part of one.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "PageOutput.h"
#include "SaveGuard.h"

struct RegionPicture {
    uint32_t index = 0;  // in the page's region list
    ImagePtr image;
};

// A texture page with changes: what its save rebuilds it from, and the pictures its regions
// hold.
struct RecoveredPage {
    PageOutput output;
    std::vector<RegionPicture> regions;
};

struct RecoveryCopy {
    std::string project_path;  // absolute; empty for a project never saved
    std::string title;
    std::string text;  // the project as its snapshots write it: paths absolute
    // The files as this editor last read or wrote them, to notice later changes by others.
    std::vector<std::pair<std::string, DiskStamp>> stamps;
    std::vector<RecoveredPage> pages;
};

// The bytes of a copy; false when a picture cannot be written as a TGA.
bool EncodeRecoveryCopy(const RecoveryCopy& copy, std::string& bytes);
std::optional<RecoveryCopy> DecodeRecoveryCopy(std::string_view bytes, std::string& reason);

// Writes the copy into `file` atomically: the file is the old copy or the new one.
bool WriteRecoveryCopy(const std::string& file, const RecoveryCopy& copy, std::string& reason);
std::optional<RecoveryCopy> ReadRecoveryCopy(const std::string& file, std::string& reason);
