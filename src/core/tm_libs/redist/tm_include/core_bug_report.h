// Core::BugReport: the report files of a failing assertion and of a fatal fault.
//
// A program opts in: init() names the files, install_filter() installs the crash handler.
// Until init() or set_dump_type() set a level of 0 or more, no file is written. A report is
// FOLDER/report-USER[-PID-YY-MM_DD][-N].txt, the text, and the .dmp of the same name and
// number beside it (docs/crash-dump.md).
//
// Failure style: nothing throws. A report file that cannot be made is skipped and noted in
// the log "core.assert"; the assertion or the crash goes on as it would have.
// Thread safety: init, set_dump_type, add_callback and install_filter belong to the start of
// the program, on one thread. Reports are written under the assertion lock, or by the crash
// handler of the one thread that crashed first.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "core_stack_info.h"

namespace Core::BugReport {

// An open report file, as callbacks get it. Writes go straight to the file descriptor, with
// no buffer that a crash could leave unwritten; line ends are "\r\n" as everywhere in a report.
class ReportFile {
public:
    explicit ReportFile(int descriptor) : descriptor_(descriptor) {}

    void write(std::string_view text);
    void write_line(std::string_view text);
    // printf-style text, cut at 1023 bytes. `format` is the programmer's, never user text.
    void print(const char* format, ...) __attribute__((format(printf, 2, 3)));

private:
    int descriptor_;
};

// The stack walker's writer over a report file.
class WriteStackWriter : public StackInfo::Writer {
public:
    explicit WriteStackWriter(ReportFile& file) : file_(file) {}

    void write(const char* text) override;
    void write_line(const char* text) override;
    // The address line, without its line end: "ADDRESS  SEGMENT:OFFSET  MODULE", where the
    // segment is the module's loaded segment that holds the address, counted from 1, or
    // "ADDRESS  Module not found".
    void write_address(uintptr_t address) override;

private:
    ReportFile& file_;
};

// Writes an extra section of every report. It may throw: the section then ends with a line
// that says so. It runs inside the crash handler too, so it should not allocate or lock.
using Callback = std::function<void(ReportFile& file)>;

// Names the report files. `path` is the folder (null: the temporary folder; also when it is
// too long to leave room for a file name), `build` the build's name (null: "development").
// With `overwrite` every report has the same name; otherwise the name carries the process id
// and the date, and a name in use moves on to the next number. Reads COREOPS for the dump
// level when none was set.
void init(const char* path, const char* build, bool overwrite);
// Installs the crash handler, once: fatal signals and uncaught C++ exceptions write a report
// and then end the process as they would have.
void install_filter();
// Adds a writer of an extra report section.
void add_callback(Callback callback);
// Stores a level of 0 or more; a negative one reads COREOPS (a number; 0 when it is not set).
void set_dump_type(int level);

}  // namespace Core::BugReport
