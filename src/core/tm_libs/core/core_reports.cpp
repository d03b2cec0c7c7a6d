#include "core_reports.h"

#include <unistd.h>
#include <boost/format.hpp>
#include <cerrno>
#include <cstring>

#include "core_crash_dump.h"
#include "core_exception_codes.h"
#include "core_log.h"
#include "core_report_files.h"

namespace Core::Detail {
namespace {

void note_missing_file(const char* extension) {
    CORE_LOG(assert_log(), error) << boost::format("Cannot create the report file %1%%2%: %3%") %
                                         report_settings().base_name % extension %
                                         std::strerror(errno);
}

// The .dmp; answers the number the .txt is to carry.
int write_dump_file(const Failure& failure, bool note_failure) {
    int number = 0;
    const int descriptor = open_report_file(".dmp", number);
    if (descriptor < 0) {
        if (note_failure) note_missing_file(".dmp");
        return number;
    }
    write_dump(descriptor, failure);
    ::close(descriptor);
    return number;
}

void write_registers(BugReport::ReportFile& file, const MachineContext& context) {
    const auto value = [&](Register which) {
        return static_cast<unsigned long long>(context.registers[which]);
    };
    file.write_line("Registers");
    file.print("RAX=%016llX  RBX=%016llX  RCX=%016llX  RDX=%016llX  RSI=%016llX  RDI=%016llX\r\n",
               value(kRax), value(kRbx), value(kRcx), value(kRdx), value(kRsi), value(kRdi));
    file.print("R8=%016llX  R9=%016llX  R10=%016llX  R11=%016llX\r\n", value(kR8), value(kR9),
               value(kR10), value(kR11));
    file.print("R12=%016llX  R13=%016llX  R14=%016llX  R15=%016llX\r\n", value(kR12), value(kR13),
               value(kR14), value(kR15));
    file.print("RIP=%016llX\r\n", value(kRip));
    file.print("RSP=%016llX  RBP=%016llX\r\n", value(kRsp), value(kRbp));
    file.print("Flags=%08llX\r\n", value(kFlags));
    file.write_line("");
}

}  // namespace

void write_assertion_report(const char* text, const AssertionRecord& record,
                            const MachineContext& site) {
    if (report_settings().dump_type < 0) return;
    Failure failure;
    failure.context = site;
    failure.last_error = record.last_error;
    failure.error_number = record.error_number;
    int number = write_dump_file(failure, true);
    const int descriptor = open_report_file(".txt", number);
    if (descriptor < 0) return note_missing_file(".txt");
    BugReport::ReportFile file(descriptor);
    try {
        write_report_header(file, site.pc());
        file.write_line("Assertion failed");
        file.write_line(text);
        write_error_line(file, record.last_error, record.error_number);
        write_stack_section(file, site, "_assert_");
        write_callbacks(file);
        flush_logs();
    } catch (...) {
        file.write_line("AssertionReport has thrown an exception");
    }
    ::close(descriptor);
}

void write_exception_report(const Failure& failure) {
    if (report_settings().dump_type < 0) return;
    int number = write_dump_file(failure, false);
    const int descriptor = open_report_file(".txt", number);
    if (descriptor < 0) return;
    BugReport::ReportFile file(descriptor);
    try {
        write_report_header(file, failure.context.pc());
        const char* name = exception_name(failure.code);
        file.print("Exception %08X  %s\r\n", failure.code, name != nullptr ? name : "");
        if (failure.cpp_text != nullptr) {
            file.write("CPP exception: ");
            file.write_line(failure.cpp_text);
        }
        write_error_line(file, failure.last_error, failure.error_number);
        write_registers(file, failure.context);
        write_stack_section(file, failure.context, nullptr);
        write_callbacks(file);
    } catch (...) {
        // Nothing more can be done from inside a crash.
    }
    ::close(descriptor);
}

}  // namespace Core::Detail
