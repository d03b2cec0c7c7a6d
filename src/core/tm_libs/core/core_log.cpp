#include "core_log.h"

#include <algorithm>
#include <cstdlib>

#include "core_log_options.h"

namespace Core {
namespace {

struct NamedLevel {
    const char* name;
    level_type level;
};

constexpr NamedLevel kLevelNames[] = {
    {"trace", trace},     {"info", info},     {"debug", debug},     {"dbg", debug},
    {"warning", warning}, {"warn", warning},  {"error", error},     {"err", error},
    {"fatal", fatal},     {"always", always}, {"disable", disable}, {"enable", enable},
};

bool IsNumber(const std::string& text) {
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

level_type level_from_text(const std::string& text) {
    if (IsNumber(text) && text.size() <= 10) {
        const unsigned long long value = std::strtoull(text.c_str(), nullptr, 10);
        if (value < disable) return static_cast<level_type>(value);
    }
    std::string lower = text;
    for (char& c : lower) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    for (const NamedLevel& named : kLevelNames) {
        if (lower == named.name) return named.level;
    }
    return disable;
}

const char* level_name(level_type level) {
    switch (level) {
        case trace:
            return "trace";
        case info:
            return "info";
        case debug:
            return "debug";
        case warning:
            return "warning";
        case error:
            return "error";
        case fatal:
            return "fatal";
        case always:
            return "always";
        default:
            return "unknown";
    }
}

Log::Log(const std::string& name, bool always_on)
    : disabled_(boost::logging::manager::destroyed()) {
    // The log options set the default logging up before the first log is made.
    if (!disabled_) {
        Detail::log_options();
        logger_ = boost::logging::manager::instance().get_log(name, always_on);
    }
}

void Log::write(const std::string& text, level_type level) const {
    if (disabled_ || boost::logging::manager::destroyed()) return;
    boost::logging::manager::instance().write(*logger_, text, level);
}

#define CORE_DEFINE_LOG(accessor, name, always_on) \
    const Log& accessor() {                        \
        static const Log log(name, always_on);     \
        return log;                                \
    }
CORE_DEFINE_LOG(system_log, "system.log", true)
CORE_DEFINE_LOG(system_rpt, "system.rpt", false)
CORE_DEFINE_LOG(io_log, "system.io", false)
CORE_DEFINE_LOG(io_detail_log, "system.io.detail", true)
CORE_DEFINE_LOG(assert_log, "core.assert", true)
CORE_DEFINE_LOG(options_log, "core.options", true)
#undef CORE_DEFINE_LOG

void flush_logs() {
    if (boost::logging::manager::destroyed()) return;
    boost::logging::manager::instance().flush_log_cache();
    Detail::flush_file_writers();
}

}  // namespace Core
