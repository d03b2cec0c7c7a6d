// Named logs and the line object that writes to them.
//
//     CORE_LOG(Core::io_log(), Core::warning) << boost::format("open: %1% is missing") % path;
//
// A line below the log's level costs one comparison: nothing after the macro is evaluated.
// Failure style: logging never reports an error and never throws.
#pragma once

#include <memory>
#include <sstream>
#include <string>

#include "core_log_manager.h"

namespace Core {

using level_type = boost::logging::level_type;

// The levels. `debug` stands above `info`, as it always has.
enum : level_type {
    enable = 0,
    trace = 900,
    info = 1000,
    debug = 1100,
    warning = 1200,
    error = 1600,
    fatal = 2000,
    always = 4000,
    disable = 4294967295u,
};

// The level named by `text`: a number below 4294967295, or a name of the table in any case
// ("warn", "dbg", ...). Unknown text is `disable`.
level_type level_from_text(const std::string& text);
// "trace", "info", ... for the seven named levels; "unknown" for any other value.
const char* level_name(level_type level);

// A handle on a named log. Handles are made once and kept (see the accessors below).
class Log {
public:
    Log(const std::string& name, bool always_on);

    bool passes(level_type level) const { return !disabled_ && logger_->passes(level); }
    void write(const std::string& text, level_type level) const;
    const std::string& name() const { return logger_->name(); }

private:
    std::shared_ptr<boost::logging::logger_impl> logger_;
    bool disabled_;  // made while the manager was already gone: every line is dropped
};

// One line: collects text and sends it when the statement ends.
class LogLine {
public:
    LogLine(const Log& log, level_type level) : log_(log), level_(level) {}
    ~LogLine() { log_.write(stream_.str(), level_); }
    LogLine(const LogLine&) = delete;
    LogLine& operator=(const LogLine&) = delete;

    template <typename T>
    LogLine& operator<<(const T& value) {
        stream_ << value;
        return *this;
    }

private:
    const Log& log_;
    level_type level_;
    std::ostringstream stream_;
};

// The logs of the core services.
const Log& system_log();     // "system.log", always on
const Log& system_rpt();     // "system.rpt"
const Log& io_log();         // "system.io"
const Log& io_detail_log();  // "system.io.detail", always on
const Log& assert_log();     // "core.assert", always on
const Log& options_log();    // "core.options", always on

// Ends the start-up cache and flushes every log file: what an assertion does before it
// reports.
void flush_logs();

}  // namespace Core

#define CORE_LOG(log, level)    \
    if (!(log).passes(level)) { \
    } else                      \
        ::Core::LogLine(log, level)
