// The sections of a report's text file, shared by the assertion report and the exception
// report, and the machine's description in its header.
//
// Failure style: writing never fails visibly; what cannot be written is left out. The stack
// walk and the callbacks may throw, and the reports catch it.
// Thread safety: none; reports are written under the assertion lock or by the one crashing
// thread.
#pragma once

#include <cstdint>

#include "core_bug_report.h"
#include "core_machine_context.h"

namespace Core::Detail {

// What a report is about.
struct Failure {
    MachineContext context;
    int signal = 0;                  // 0 for an assertion and an uncaught C++ exception
    uint32_t code = 0;               // the exception code; 0 for an assertion
    const char* cpp_text = nullptr;  // what() of an uncaught C++ exception
    unsigned last_error = 0;
    int error_number = 0;
};

// The local time as ctime() gives it without its line end, "Build: ", the processor and OS
// lines, and "Address: " with the address line of `address`.
void write_report_header(BugReport::ReportFile& file, uintptr_t address);
// "GetLastError() = %08X(%d), errno = %d" and an empty line.
void write_error_line(BugReport::ReportFile& file, unsigned last_error, int error_number);
// "Stack" and the frames from the context, then "Stack" again and the frames with their
// parameters and locals, leaving out names that begin with `skip_prefix` (may be null).
void write_stack_section(BugReport::ReportFile& file, const MachineContext& context,
                         const char* skip_prefix);
// Each callback behind a line end, and a line end after the last.
void write_callbacks(BugReport::ReportFile& file);

// "Processor: Architecture = %d, level = %d, rev = %04X, mask = %02X" for this machine.
void write_processor_line(BugReport::ReportFile& file);
// "OS: maj = %d, min = %d, build = %d, '%s'" for the running kernel.
void write_os_line(BugReport::ReportFile& file);

}  // namespace Core::Detail
