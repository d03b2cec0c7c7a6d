#include "core_settings.h"

#include <utility>

#include "core_options.h"

namespace Core {
namespace {

// Until the first parse, the value mem.init starts with.
unsigned char fill_value = 205;

}  // namespace

unsigned char memory_fill_value() {
    return fill_value;
}

void set_memory_fill_value(unsigned char value) {
    fill_value = value;
}

DebugOptions& debug_options() {
    static DebugOptions options;
    return options;
}

BugReportOptions& bug_report_options() {
    static BugReportOptions options;
    return options;
}

IOOptions& io_options() {
    static IOOptions options;
    return options;
}

MemoryOptions& memory_options() {
    static MemoryOptions options;
    return options;
}

// The declared defaults differ from the starting values: only a parse applies them.
MemoryOptions::MemoryOptions() {
    const auto with_default = [](auto* variable, auto value) {
        auto declared = option(variable);
        declared->default_value(value);
        return declared;
    };
    declare("Memory options", "mem.init", with_default(&init, 205),
            "Set initialisation value for memory");
    declare("Memory options", "mem.leaks", with_default(&leaks, false),
            "Enable extended memory leak tracing");
    declare("Memory options", "mem.leak_depth", with_default(&leak_depth, 10),
            "Extended memory leak tracing stack depth");
    declare("Memory options", "mem.crt", with_default(&crt, true),
            "Enable crt memory leak tracing");
    declare("Memory options", "mem.accounting", with_default(&accounting, false),
            "Enable memory accounting (requires 'leaks')");
    Options::instance().on_parsed(
        [this] { set_memory_fill_value(static_cast<unsigned char>(init)); });
}

void declare_startup_options(Options& registry) {
    declare(registry, "Debug options", "debug.default_no_dump",
            switch_option(&debug_options().default_no_dump));
    IOOptions& io = io_options();
    declare(registry, "IO options", "io.disable_file_cache", switch_option(&io.disable_file_cache),
            "Disable search file cache if present");
    declare(registry, "IO options", "io.packs_root", option(&io.packs_root), "Root path for packs");
    declare(registry, "IO options", "io.filtered", option(&io.filtered), "Filtered file list");
    declare(registry, "IO options", "io.file_first", switch_option(&io.file_first),
            "Enable file override for packs");
}

void declare_debug_window_option() {
    static bool declared = false;
    if (std::exchange(declared, true)) return;
    auto window = option(&debug_options().window);
    window->default_value(true);
    declare("Debug options", "debug.window", std::move(window),
            "Enable/disable debug window output");
}

void declare_bug_report_options() {
    static bool declared = false;
    if (std::exchange(declared, true)) return;
    BugReportOptions& report = bug_report_options();
    declare("BugReport Options", "core.disable_dialogs", switch_option(&report.disable_dialogs),
            "Disables displaying of dialogs");
    declare("BugReport Options", "core.assert_ignore_always",
            switch_option(&report.assert_ignore_always));
    declare("BugReport Options", "core.exception_search", switch_option(&report.exception_search));
}

}  // namespace Core
