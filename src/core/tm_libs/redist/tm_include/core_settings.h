// The plain settings of the core services, each bound to its option.
#pragma once

#include <string>

namespace Core {

class Options;

// "Debug options"
struct DebugOptions {
    bool window = true;            // debug.window: diagnostics on standard error
    bool default_no_dump = false;  // debug.default_no_dump
};
// "BugReport Options"
struct BugReportOptions {
    bool disable_dialogs = false;       // core.disable_dialogs
    bool assert_ignore_always = false;  // core.assert_ignore_always
    bool exception_search = false;      // core.exception_search
};
// "IO options"
struct IOOptions {
    bool disable_file_cache = false;  // io.disable_file_cache
    std::string packs_root;           // io.packs_root
    std::string filtered;             // io.filtered
    bool file_first = false;          // io.file_first
};

// "Memory options": declared with their defaults when first asked for.
struct MemoryOptions {
    MemoryOptions();
    int init = 205;           // mem.init
    bool leaks = true;        // mem.leaks
    int leak_depth = 24;      // mem.leak_depth
    bool crt = true;          // mem.crt
    bool accounting = false;  // mem.accounting
};

// The byte that fills memory for tracing; each parse sets it from mem.init (cut to a byte).
unsigned char memory_fill_value();
void set_memory_fill_value(unsigned char value);

DebugOptions& debug_options();
BugReportOptions& bug_report_options();
IOOptions& io_options();
MemoryOptions& memory_options();

// What static initialisers declare before main: debug.default_no_dump, then io.*.
void declare_startup_options(Options& registry);
// debug.window, declared by the application's start (once; later calls do nothing).
void declare_debug_window_option();
// core.*, declared by Core::init (once).
void declare_bug_report_options();

}  // namespace Core
