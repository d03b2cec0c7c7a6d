#include "core_assert.h"

#include <unistd.h>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>

#include <boost/assert.hpp>

#include "core_assert_text.h"
#include "core_debugger.h"
#include "core_log.h"
#include "core_log_options.h"
#include "core_reports.h"
#include "core_settings.h"

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
bool report_without_dialog = false;
bool exit_on_second_assertion = false;
AssertionDialog dialog = nullptr;
void* owner_window = nullptr;

// Kept out of the stack, as the second assertion's text is: the path may run when the stack
// is nearly spent.
char text[Detail::kAssertionTextSize];

void call_hook(void (*hook)()) {
    if (hook != nullptr) hook();
}

// A failure while this thread handles another: one short line, and never a second dialog.
bool handle_second_assertion(AssertionRecord& record) {
    std::free(record.message);
    record.message = nullptr;
    if (!in_second_assertion) {
        in_second_assertion = true;
        static char second[Detail::kAssertionTextSize];
        std::snprintf(second, sizeof second, "SECOND ASSERTION %s(%d):\nASSERT( %s )\n",
                      record.file, record.line, record.expression);
        Detail::debug_printf("%s", second);
        flush_logs();
        in_second_assertion = false;
    }
    if (exit_on_second_assertion) std::exit(1);
    return false;
}

// Without a usable display the text on standard error stands for the dialog, and the
// answer is Ignore with no report.
int show_without_display() {
    std::fputs(text, stderr);
    if (text[0] != '\0' && text[std::strlen(text) - 1] != '\n') std::fputc('\n', stderr);
    std::fflush(stderr);
    return kAssertIgnore;
}

// A report is worth saving unless a debugger is there to look at the failure itself, or the
// person asked for none.
bool report_wanted() {
    return !debugger_present() && !debug_options().default_no_dump;
}

int show_dialog(bool& save_report) {
    call_hook(assertion_hooks().on_dialog);
    save_report = report_wanted();
    const int answer = dialog != nullptr ? dialog(text, owner_window, &save_report) : 0;
    if (answer >= kAssertAbort && answer <= kAssertIgnoreAlways) return answer;
    save_report = false;
    return show_without_display();
}

// The dialog's answer, or the options' when they say no dialog is to be shown.
int ask(bool& save_report) {
    const BugReportOptions& options = bug_report_options();
    if (!options.disable_dialogs && !options.assert_ignore_always) return show_dialog(save_report);
    save_report = report_without_dialog && report_wanted();
    return options.assert_ignore_always ? kAssertIgnoreAlways : kAssertAbort;
}

[[noreturn]] void abort_now() {
    call_hook(assertion_hooks().on_abort);
    // No leak list from a process that is stopped on purpose.
    memory_options().leaks = false;
    _exit(1);
}

// What the site does after the answer: true breaks there.
bool act_on(int answer, const AssertionRecord& record) {
    // Break needs a debugger to stop in; without one it is one Ignore.
    if (answer == kAssertBreak && debugger_present()) return true;
    if (answer == kAssertAbort) abort_now();
    if (answer == kAssertIgnoreAlways && record.ignore != nullptr) *record.ignore = true;
    call_hook(assertion_hooks().on_continue);
    return false;
}

}  // namespace

AssertionHooks& assertion_hooks() {
    static AssertionHooks hooks;
    return hooks;
}

void set_assertions_disabled(bool disabled) {
    assertions_disabled = disabled;
}

void set_assertion_dialog(AssertionDialog function) {
    dialog = function;
}

void set_assertion_owner_window(void* window) {
    owner_window = window;
}

void set_report_without_dialog(bool save) {
    report_without_dialog = save;
}

void set_exit_on_second_assertion(bool enabled) {
    exit_on_second_assertion = enabled;
}

void capture_error_state(AssertionRecord& record) {
    record.last_error = 0;
    record.error_number = errno;
}

char* format_assertion_message(const char* format, ...) {
    if (in_crash()) return nullptr;
    const int saved_errno = errno;
    char* buffer = static_cast<char*>(std::malloc(Detail::kAssertionTextSize));
    if (buffer != nullptr) {
        va_list arguments;
        va_start(arguments, format);
        std::vsnprintf(buffer, Detail::kAssertionTextSize, format, arguments);
        va_end(arguments);
    }
    errno = saved_errno;
    return buffer;
}

bool assertion_failed(AssertionRecord& record, const char* format, ...) {
    const int error_number = errno;
    if (in_crash() || assertions_disabled) return false;
    // The site's registers, for the report's stack walk: this function keeps a frame pointer
    // (it asks for its frame), so the caller's is saved at the frame's base, and the caller's
    // stack pointer is where it was before the call pushed the return address.
    const auto* frame = static_cast<const uintptr_t*>(__builtin_frame_address(0));
    const Detail::MachineContext site =
        Detail::site_context(reinterpret_cast<uintptr_t>(__builtin_return_address(0)),
                             reinterpret_cast<uintptr_t>(frame + 2), frame[0]);

    std::unique_lock lock(assertion_lock());
    if (in_assertion) return handle_second_assertion(record);
    in_assertion = true;
    if (record.message == nullptr) {
        record.last_error = 0;
        record.error_number = error_number;
    }

    va_list arguments;
    va_start(arguments, format);
    Detail::format_assertion_text(text, record, format, arguments);
    va_end(arguments);
    std::free(record.message);
    record.message = nullptr;
    flush_logs();

    if (record.ignore != nullptr && *record.ignore) {
        in_assertion = false;
        return false;
    }
    bool save_report = false;
    const int answer = ask(save_report);
    if (save_report) Detail::write_assertion_report(text, record, site);
    in_assertion = false;
    lock.unlock();
    return act_on(answer, record);
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
