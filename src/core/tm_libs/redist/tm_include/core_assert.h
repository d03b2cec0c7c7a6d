// The assertion macro: the one check for programming errors in all code of the suite.
//
// Failure style: an assertion never throws. A failing site fills an AssertionRecord on its
// stack and calls assertion_failed(); a true answer means "break here", false means "go on
// behind the macro". What assertion_failed shows (a dialog, a report) is decided behind it;
// until a program installs more, it writes one line to standard error and goes on.
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

// Called at the site before a break, after Ignore / Ignore Always, before the dialog and
// before the process ends on Abort. Each is an empty function until a program sets it.
struct AssertionHooks {
    void (*on_break)() = nullptr;
    void (*on_continue)() = nullptr;
    void (*on_dialog)() = nullptr;
    void (*on_abort)() = nullptr;
};
AssertionHooks& assertion_hooks();

// Returns true when the site should break into the debugger. `format` is a printf-style
// format written by the programmer, never user text; it may be null.
bool assertion_failed(AssertionRecord& record, const char* format, ...)
    __attribute__((format(printf, 2, 3)));

// Formats `format` into a new 2048-byte heap buffer for AssertionRecord::message, or
// answers null while a crash is being reported.
char* format_assertion_message(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Turns every assertion off (assertion_failed then answers false at once).
void set_assertions_disabled(bool disabled);

// Stops in the debugger at the calling site if one is attached; does nothing otherwise.
void break_into_debugger();

// Fills the error fields of a record from the platform's state at this moment.
void capture_error_state(AssertionRecord& record);

}  // namespace Core

// `prepare` runs on failure, before assertion_failed, with the record in scope as
// core_assert_record_.
#define CORE_ASSERT_IMPL_(condition, prepare, ...)                            \
    do {                                                                      \
        if (!(condition)) {                                                   \
            static bool core_assert_ignore_ = false;                          \
            ::Core::AssertionRecord core_assert_record_;                      \
            core_assert_record_.expression = #condition;                      \
            core_assert_record_.file = __FILE__;                              \
            core_assert_record_.line = __LINE__;                              \
            core_assert_record_.ignore = &core_assert_ignore_;                \
            prepare;                                                          \
            if (::Core::assertion_failed(core_assert_record_, __VA_ARGS__)) { \
                if (::Core::assertion_hooks().on_break != nullptr)            \
                    ::Core::assertion_hooks().on_break();                     \
                ::Core::break_into_debugger();                                \
            }                                                                 \
        }                                                                     \
    } while (false)

// CORE_ASSERT(condition)
#define CORE_ASSERT(condition) CORE_ASSERT_IMPL_(condition, (void)0, nullptr)

// CORE_ASSERT_MSG(condition, "format", args...): the message is formatted only after the
// error state was taken inside assertion_failed.
#define CORE_ASSERT_MSG(condition, ...) CORE_ASSERT_IMPL_(condition, (void)0, __VA_ARGS__)

// CORE_ASSERT_NOW(condition, "format", args...): the error state and the message are taken
// at the site, before anything else can change errno.
#define CORE_ASSERT_NOW(condition, ...)                                                            \
    CORE_ASSERT_IMPL_(condition, ::Core::capture_error_state(core_assert_record_);                 \
                      core_assert_record_.message = ::Core::format_assertion_message(__VA_ARGS__), \
                      nullptr)
