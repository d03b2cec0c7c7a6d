// The top level of the project file: the order of sections on write, the dispatch of
// section openers on read, and the <layout> section.
//
// Failure style: ReadProject throws the records of qlt_errors.h by value. It reads into
// records of its own, so a caller can keep what it had when a file does not read.
#pragma once

#include "framework/Archive.h"
#include "project_records.h"

using framework::Archive;

// The format's version, written with "%.2f".
constexpr float kQltFileVersion = 1.01f;

// Reads a whole file: project_base_dir must already belong to it.
void ReadProject(Archive& archive, ProjectRecords& records);
// Writes a whole file: project_base_dir must already belong to it.
void WriteProject(Archive& archive, const ProjectRecords& records);
