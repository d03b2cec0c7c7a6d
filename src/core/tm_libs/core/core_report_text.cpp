#include "core_report_text.h"

#include <cstring>
#include <ctime>

#include "core_report_files.h"
#include "core_stack_info.h"

namespace Core::Detail {

void write_report_header(BugReport::ReportFile& file, uintptr_t address) {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    char time_text[32] = {};
    if (localtime_r(&now, &local) != nullptr && asctime_r(&local, time_text) != nullptr)
        time_text[std::strcspn(time_text, "\n")] = '\0';
    file.write_line(time_text);
    file.print("Build: %s\r\n", report_settings().build_name.c_str());
    write_processor_line(file);
    write_os_line(file);
    file.write_line("");
    file.write("Address: ");
    BugReport::WriteStackWriter(file).write_address(address);
    file.write_line("");
    file.write_line("");
}

void write_error_line(BugReport::ReportFile& file, unsigned last_error, int error_number) {
    file.print("GetLastError() = %08X(%d), errno = %d\r\n\r\n", last_error,
               static_cast<int16_t>(last_error & 0xFFFF), error_number);
}

void write_stack_section(BugReport::ReportFile& file, const MachineContext& context,
                         const char* skip_prefix) {
    StackInfo& stack = StackInfo::instance();
    stack.prepare();
    BugReport::WriteStackWriter writer(file);
    for (const int mode : {StackInfo::kFrames, StackInfo::kParametersAndLocals}) {
        file.write_line("\r\nStack");
        stack.walk(nullptr, context.pc(), context.stack(), context.frame(), writer, mode,
                   skip_prefix);
    }
}

void write_callbacks(BugReport::ReportFile& file) {
    try {
        for (const BugReport::Callback& callback : report_settings().callbacks) {
            file.write("\r\n");
            callback(file);
        }
        file.write("\r\n");
    } catch (...) {
        file.write_line("Report Callback has thrown an exception");
    }
}

}  // namespace Core::Detail
