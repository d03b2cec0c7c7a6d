#include "core_log_options.h"

#include <sys/time.h>

#include <cstdarg>
#include <cstdio>
#include <ctime>
#include <map>
#include <mutex>

#include "core_options.h"
#include "core_settings.h"

namespace Core::Detail {
namespace {

constexpr int kAppenderPriority = 100;

std::recursive_mutex& writers_lock() {
    static std::recursive_mutex lock;
    return lock;
}

std::map<std::string, std::shared_ptr<FileWriter>>& file_writers() {
    static std::map<std::string, std::shared_ptr<FileWriter>> writers;
    return writers;
}

std::string timestamp() {
    timeval now{};
    ::gettimeofday(&now, nullptr);
    std::tm local{};
    ::localtime_r(&now.tv_sec, &local);
    char text[32];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d.%03hu ", local.tm_hour, local.tm_min,
                  local.tm_sec, static_cast<unsigned short>(now.tv_usec / 1000));
    return text;
}

boost::logging::manager& log_manager() {
    return boost::logging::manager::instance();
}

void add_debug_window(const std::string& mask, level_type threshold) {
    log_manager().add_appender(mask, "debug_wnd",
                               WriteToDebugWnd{std::make_shared<level_type>(threshold)},
                               kAppenderPriority);
}

}  // namespace

FileWriter::FileWriter(const std::string& path) : stream_(path, std::ios::out | std::ios::trunc) {}

void FileWriter::write(const std::string& line) {
    stream_ << line;
    const unsigned count = ++lines_;
    const unsigned every = log_format().file_flush;
    if (every == 0 || count % every == 0) stream_.flush();
}

void FileWriter::flush() {
    stream_.flush();
}

std::shared_ptr<FileWriter> file_writer(const std::string& path) {
    std::lock_guard guard(writers_lock());
    auto& writer = file_writers()[path];
    if (!writer) writer = std::make_shared<FileWriter>(path);
    return writer;
}

void flush_file_writers() {
    std::lock_guard guard(writers_lock());
    for (auto& [path, writer] : file_writers())
        writer->flush();
}

std::string format_line(const std::string& log_name, const std::string& text, level_type level) {
    const LogFormat& format = log_format();
    std::string line;
    if (format.timestamp) line += timestamp();
    if (format.show_log_name) line += "[" + log_name + "] ";
    if (format.show_level) line += std::string("[") + level_name(level) + "] ";
    line += text;
    line += '\n';
    return line;
}

void WriteToFile::operator()(const std::string& log_name, const std::string& text,
                             level_type level) const {
    writer->write(format_line(log_name, text, level));
}

void WriteToDebugWnd::operator()(const std::string& log_name, const std::string& text,
                                 level_type level) const {
    if (level < *threshold || !debug_options().window) return;
    std::fputs(format_line(log_name, text, level).c_str(), stderr);
}

LogFormat& log_format() {
    static LogFormat format;
    return format;
}

LogOptions& log_options() {
    static LogOptions options;
    return options;
}

LogOptions::LogOptions() {
    LogFormat& format = log_format();
    declare("Log options", "log.to", option(&log_to), "Set global log file");
    auto flush = option(&format.file_flush);
    flush->default_value(10);
    declare("Log options", "log.file_flush", std::move(flush),
            "Set file flush count (how many times log system is called before it flushes file "
            "buffer)");
    auto stamp = option(&format.timestamp);
    stamp->default_value(true);
    declare("Log options", "log.timestamp", std::move(stamp), "Enable/disable log timestamp");

    auto level_option = option(&levels);
    level_option->notifier([](const std::vector<LogLevelOption>& values) {
        for (const LogLevelOption& value : values) {
            if (!value.name.empty()) log_manager().set_level(value.name, value.level);
        }
    });
    declare("Log options", "log.level", std::move(level_option),
            "Set levels for different parts of logging system in form of \"<log_name> <level>\"");
    auto file_option = option(&files);
    file_option->notifier([this](const std::vector<LogOutputOption>& values) {
        for (const LogOutputOption& value : values) {
            // A later parse names the same targets again: each is added once.
            if (!value.name.empty() && file_targets_.emplace(value.name, value.file).second)
                log_manager().add_appender(value.name, "file", WriteToFile{file_writer(value.file)},
                                           kAppenderPriority);
        }
    });
    declare("Log options", "log.file", std::move(file_option),
            "Set output file for different parts of logging system in form of \"<log_name> "
            "<file_name>\"");
    auto window_option = option(&debug_windows);
    window_option->notifier([this](const std::vector<LogDbgWndOption>& values) {
        for (const LogDbgWndOption& value : values) {
            if (!std::exchange(debug_window_replaced_, true))
                log_manager().remove_appender("*", "debug_wnd");
            if (value.name.empty()) continue;
            log_manager().remove_appender(value.name, "debug_wnd");
            add_debug_window(value.name, value.level);
        }
    });
    declare("Log options", "log.dbgwnd", std::move(window_option),
            "Enables output to debug window for different parts of logging system in form of "
            "\"<log_name> <level>\"");
    Options::instance().on_parsed([this] { apply_after_parse(); });

    log_manager().set_level("*", info);
    add_debug_window("*", 0);
    log_manager().set_level("core.options", info);
}

void LogOptions::apply_after_parse() {
    if (std::exchange(applied, true)) return;
    set_file(log_to);
    log_manager().flush_log_cache();
    flush_file_writers();
}

void LogOptions::set_file(const std::string& file) {
    if (file == current_file) return;
    log_manager().remove_appender("*", "file");
    if (!file.empty())
        log_manager().add_appender("*", "file", WriteToFile{file_writer(file)}, kAppenderPriority);
    current_file = file;
}

void debug_printf(const char* format, ...) {
    if (!debug_options().window) return;
    char text[512];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    std::fputs(text, stderr);
}

}  // namespace Core::Detail
