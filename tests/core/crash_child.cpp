// A program that crashes on purpose, with the crash handler installed: the crash report tests
// start it with a mode and a folder for its report. Each crash is in a function of its own,
// on a line marked "crash here", so that the test can find the line the report must name.
//
//     crash_child null|abort|throw|assert-in-crash|search FOLDER
#include <unistd.h>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "core_assert.h"
#include "core_bug_report.h"
#include "core_settings.h"

namespace {

// Read at run time, so that the compiler cannot see the null and turn the write into a trap.
int* volatile target = nullptr;

// The sanitizer's null check would stop the write before it faults.
__attribute__((noinline, no_sanitize("null"))) void CrashByNullWrite() {
    *target = 1;  // crash here: null
}

__attribute__((noinline)) void CrashByAbort() {
    std::abort();  // crash here: abort
}

__attribute__((noinline)) void CrashByThrow() {
    throw std::runtime_error("nobody catches this");  // crash here: throw
}

// Assertions inside the crash handler must stay silent: the report goes on behind them.
void AssertWhileReporting(Core::BugReport::ReportFile& file) {
    CORE_ASSERT_NOW(target != nullptr, "never formatted %d", 1);
    CORE_ASSERT(target != nullptr);
    file.write_line("the callback went on");
}

// A handler that was there before ours: it gets the fault when the search goes on.
void EarlierHandler(int) {
    constexpr char kText[] = "the earlier handler ran\n";
    write(2, kText, sizeof kText - 1);
    _exit(5);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: crash_child null|abort|throw|assert-in-crash|search FOLDER\n");
        return 2;
    }
    const char* mode = argv[1];
    Core::BugReport::init(argv[2], "crash-test", true);
    Core::BugReport::set_dump_type(0);
    const bool search = std::strcmp(mode, "search") == 0;
    if (search) {
        std::signal(SIGSEGV, EarlierHandler);
        Core::bug_report_options().exception_search = true;
    }
    Core::BugReport::install_filter();
    if (std::strcmp(mode, "null") == 0 || search) CrashByNullWrite();
    if (std::strcmp(mode, "abort") == 0) CrashByAbort();
    if (std::strcmp(mode, "throw") == 0) CrashByThrow();
    if (std::strcmp(mode, "assert-in-crash") == 0) {
        Core::BugReport::add_callback(AssertWhileReporting);
        CrashByNullWrite();
    }
    return 3;
}
