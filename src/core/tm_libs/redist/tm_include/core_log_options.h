// Core's writers and the "Log options": log files shared between logs, debugger output
// (standard error here), the line format, and the options that set them up.
#pragma once

#include <atomic>
#include <fstream>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "core_log.h"
#include "core_option_values.h"

namespace Core::Detail {

// One log file, shared by every log that names it. Opening replaces an earlier file; a file
// that cannot be opened leaves a writer that discards.
class FileWriter {
public:
    explicit FileWriter(const std::string& path);
    void write(const std::string& line);
    void flush();

private:
    std::ofstream stream_;
    std::atomic<unsigned> lines_{0};
};

// The writer of `path`, made on first use.
std::shared_ptr<FileWriter> file_writer(const std::string& path);
void flush_file_writers();

// The appender that writes formatted lines to a file.
struct WriteToFile {
    std::shared_ptr<FileWriter> writer;
    void operator()(const std::string& log_name, const std::string& text, level_type level) const;
};

// The appender that writes formatted lines to standard error from a threshold on, while
// debug.window is on.
struct WriteToDebugWnd {
    std::shared_ptr<level_type> threshold;
    void operator()(const std::string& log_name, const std::string& text, level_type level) const;
};

// "HH:MM:SS.mmm [name] [level] text\n", each part as the format flags say.
std::string format_line(const std::string& log_name, const std::string& text, level_type level);

struct LogFormat {
    bool timestamp = true;     // log.timestamp
    unsigned file_flush = 10;  // log.file_flush: flush every this many lines (0: every line)
    bool show_log_name = true;
    bool show_level = true;
};
LogFormat& log_format();

// The "Log options": declared, with the default logging set up, on first use.
class LogOptions {
public:
    LogOptions();

    // Sends every log to `file` ("" for none) instead of the file set before.
    void set_file(const std::string& file);

    std::string current_file;
    std::string log_to = "system.log.txt";
    bool applied = false;
    std::vector<LogLevelOption> levels;
    std::vector<LogOutputOption> files;
    std::vector<LogDbgWndOption> debug_windows;

private:
    void apply_after_parse();
    bool debug_window_replaced_ = false;
    std::set<std::pair<std::string, std::string>> file_targets_;  // log.file: log, file
};
LogOptions& log_options();

// printf-style text straight to the debugger's output, cut at 512 bytes, while debug.window
// is on.
void debug_printf(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace Core::Detail
