// The assertion macro: the one check for programming errors in all code of the suite.
//
// Failure style: an assertion never throws. A failing site fills an AssertionRecord on its
// stack and calls assertion_failed(); a true answer means "break here", false means "go on
// behind the macro". assertion_failed shows the dialog a program installed (or writes the
// text to standard error when there is none), may save a report (core_bug_report.h) and, on
// Abort, ends the process.
// Thread safety: assertions may fail on any thread; one recursive lock serialises them, and a
// thread that fails again while handling its own failure gets the short "SECOND ASSERTION".
#pragma once

namespace Core {

// What one failing site hands to assertion_failed. All pointers are owned by the site,
// except `message`, which is a heap buffer that assertion_failed frees.
struct AssertionRecord {
    const char* expression = nullptr;
    const char* file = nullptr;
    int line = 0;
    bool* ignore = nullptr;   // one static per site, set by "Ignore Always"
    char* message = nullptr;  // formatted early by CORE_ASSERT_NOW, or null
    unsigned last_error = 0;  // the platform's last error; always 0 on Linux
    int error_number = 0;     // errno at the failure
};

// The four answers of the assertion dialog. The numbers are the dialog's control ids.
enum AssertionAnswer : int {
    kAssertAbort = 20,
    kAssertBreak = 21,
    kAssertIgnore = 22,
    kAssertIgnoreAlways = 23,
};

// Called at the site before a break, after Ignore / Ignore Always, before the dialog and
// before the process ends on Abort. Each is an empty function until a program sets it.
struct AssertionHooks {
    void (*on_break)() = nullptr;
    void (*on_continue)() = nullptr;
    void (*on_dialog)() = nullptr;
    void (*on_abort)() = nullptr;
};
AssertionHooks& assertion_hooks();

// The dialog of a failing assertion, for a program with a display. `text` is the assertion's
// text, `owner_window` what set_assertion_owner_window stored. `save_report` comes in as the
// start state of the "Save report file" box and goes out as the person left it. Answers an
// AssertionAnswer, or 0 or below when no dialog can be shown here (no display, wrong thread):
// the text then goes to standard error and the assertion is ignored once.
using AssertionDialog = int (*)(const char* text, void* owner_window, bool* save_report);

// Returns true when the site should break into the debugger. `format` is a printf-style
// format written by the programmer, never user text; it may be null.
bool assertion_failed(AssertionRecord& record, const char* format, ...)
    __attribute__((format(printf, 2, 3)));

// Formats `format` into a new 2048-byte heap buffer for AssertionRecord::message, or
// answers null while a crash is being reported.
char* format_assertion_message(const char* format, ...) __attribute__((format(printf, 1, 2)));

// True once a fatal fault is being reported; it never goes back. Assertions then do nothing.
bool in_crash();

// Turns every assertion off (assertion_failed then answers false at once).
void set_assertions_disabled(bool disabled);
// The dialog to show; null (the start) means none: the text goes to standard error.
void set_assertion_dialog(AssertionDialog function);
// Handed to the dialog as its parent; opaque to Core. Null when there is none.
void set_assertion_owner_window(void* window);
// Whether a report is saved when the options answer instead of a dialog
// (core.disable_dialogs or core.assert_ignore_always).
void set_report_without_dialog(bool save);
// Whether a second failure while one is being handled ends the process with exit code 1.
void set_exit_on_second_assertion(bool enabled);

// Stops in the debugger at the calling site if one is attached; does nothing otherwise.
void break_into_debugger();

// Fills the error fields of a record from the platform's state at this moment.
void capture_error_state(AssertionRecord& record);

}  // namespace Core

// The site's own names begin with "_assert_", which keeps them out of the variables that a
// bug report lists. `text` is the condition as written: each form stringizes its own argument,
// before macros in it (errno) are expanded on the way in here. `when` is tested after the
// condition failed; `prepare` runs then, before assertion_failed, with the record in scope as
// _assert_record.
#define CORE_ASSERT_IMPL_(condition, text, when, prepare, ...)           \
    do {                                                                 \
        if (!(condition) && (when)) {                                    \
            static bool _assert_ignore = false;                          \
            ::Core::AssertionRecord _assert_record;                      \
            _assert_record.expression = text;                            \
            _assert_record.file = __FILE__;                              \
            _assert_record.line = __LINE__;                              \
            _assert_record.ignore = &_assert_ignore;                     \
            prepare;                                                     \
            if (::Core::assertion_failed(_assert_record, __VA_ARGS__)) { \
                if (::Core::assertion_hooks().on_break != nullptr)       \
                    ::Core::assertion_hooks().on_break();                \
                ::Core::break_into_debugger();                           \
            }                                                            \
        }                                                                \
    } while (false)

// CORE_ASSERT(condition)
#define CORE_ASSERT(condition) CORE_ASSERT_IMPL_(condition, #condition, true, (void)0, nullptr)

// CORE_ASSERT_MSG(condition, "format", args...): the message is formatted only after the
// error state was taken inside assertion_failed.
#define CORE_ASSERT_MSG(condition, ...) \
    CORE_ASSERT_IMPL_(condition, #condition, true, (void)0, __VA_ARGS__)

// CORE_ASSERT_NOW(condition, "format", args...): the error state and the message are taken
// at the site, before anything else can change errno. While a crash is being reported it
// does nothing at all: formatting would allocate inside a crash handler.
#define CORE_ASSERT_NOW(condition, ...)                                                          \
    CORE_ASSERT_IMPL_(                                                                           \
        condition, #condition, !::Core::in_crash(), ::Core::capture_error_state(_assert_record); \
        _assert_record.message = ::Core::format_assertion_message(__VA_ARGS__), nullptr)
