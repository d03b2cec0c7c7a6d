#include "core_assert.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>

#include <boost/assert.hpp>

#include "core_debugger.h"
#include "core_log.h"

namespace Core {
namespace {

// The whole assertion path runs under one lock. It is recursive so that a failure inside
// the handling of another on the same thread is seen (by in_assertion) instead of deadlocking.
std::recursive_mutex& assertion_lock() {
    static std::recursive_mutex lock;
    return lock;
}

bool in_assertion = false;
bool in_second_assertion = false;
bool assertions_disabled = false;

constexpr size_t kMessageBufferSize = 2048;

std::string format_arguments(const char* format, va_list arguments) {
    va_list measure;
    va_copy(measure, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measure);
    va_end(measure);
    if (length <= 0) return {};
    std::string text(static_cast<size_t>(length) + 1, '\0');
    std::vsnprintf(text.data(), text.size(), format, arguments);
    text.pop_back();
    return text;
}

void call_hook(void (*hook)()) {
    if (hook != nullptr) hook();
}

std::string describe(const AssertionRecord& record, const std::string& detail) {
    std::string text = std::string("Assertion failed: ") + record.expression + " (" + record.file +
                       ":" + std::to_string(record.line) + ")";
    if (record.message != nullptr && record.message[0] != '\0')
        text += std::string(" ") + record.message;
    if (!detail.empty()) text += " " + detail;
    return text;
}

void report_second_assertion(const AssertionRecord& record) {
    if (in_second_assertion) return;
    in_second_assertion = true;
    std::fprintf(stderr, "SECOND ASSERTION %s(%d):\nASSERT( %s )\n", record.file, record.line,
                 record.expression);
    std::fflush(stderr);
    in_second_assertion = false;
}

}  // namespace

AssertionHooks& assertion_hooks() {
    static AssertionHooks hooks;
    return hooks;
}

void set_assertions_disabled(bool disabled) {
    assertions_disabled = disabled;
}

void capture_error_state(AssertionRecord& record) {
    record.last_error = 0;
    record.error_number = errno;
}

char* format_assertion_message(const char* format, ...) {
    const int saved_errno = errno;
    char* buffer = static_cast<char*>(std::malloc(kMessageBufferSize));
    if (buffer != nullptr) {
        va_list arguments;
        va_start(arguments, format);
        std::vsnprintf(buffer, kMessageBufferSize, format, arguments);
        va_end(arguments);
    }
    errno = saved_errno;
    return buffer;
}

bool assertion_failed(AssertionRecord& record, const char* format, ...) {
    if (assertions_disabled) return false;
    std::lock_guard guard(assertion_lock());
    if (in_assertion) {
        report_second_assertion(record);
        return false;
    }
    in_assertion = true;
    if (record.message == nullptr) capture_error_state(record);

    std::string detail;
    if (format != nullptr && format[0] != '\0') {
        va_list arguments;
        va_start(arguments, format);
        detail = format_arguments(format, arguments);
        va_end(arguments);
    }
    const std::string text = describe(record, detail);
    std::free(record.message);
    record.message = nullptr;
    flush_logs();

    if (record.ignore != nullptr && *record.ignore) {
        in_assertion = false;
        return false;
    }
    // Until a program installs a dialog, the text on standard error stands for it and the
    // answer is always "Ignore".
    call_hook(assertion_hooks().on_dialog);
    std::fprintf(stderr, "%s\n", text.c_str());
    std::fflush(stderr);
    in_assertion = false;
    call_hook(assertion_hooks().on_continue);
    return false;
}

void break_into_debugger() {
    if (debugger_present()) raise_breakpoint();
}

}  // namespace Core

namespace {

// Boost's assertions all share one "Ignore Always" flag.
Core::AssertionRecord boost_assertion_record(char const* expression, char const* file, long line) {
    static bool ignore = false;
    Core::AssertionRecord record;
    record.expression = expression;
    record.file = file;
    record.line = static_cast<int>(line);
    record.ignore = &ignore;
    return record;
}

}  // namespace

namespace boost {

void assertion_failed(char const* expression, char const* /*function*/, char const* file,
                      long line) {
    Core::AssertionRecord record = boost_assertion_record(expression, file, line);
    if (Core::assertion_failed(record, nullptr)) Core::break_into_debugger();
}

void assertion_failed_msg(char const* expression, char const* message, char const* function,
                          char const* file, long line) {
    Core::AssertionRecord record = boost_assertion_record(expression, file, line);
    if (Core::assertion_failed(record, "%s (%s)", message, function)) Core::break_into_debugger();
}

}  // namespace boost
