// The last chance to report a fatal fault: handlers for the fatal signals, on a stack of
// their own, and for C++ exceptions that nothing caught. The first thread that crashes writes
// the report; then the process ends as it would have without us.
//
// What runs here is chosen for a process in a bad state: the report's files are written with
// write(2) from buffers on the handler's stack, and a watchdog ends the process if anything
// hangs. Not everything is async-signal-safe: the local time, the loader's module list behind
// the address lines, the stack walker's symbol lookup and the report callbacks may take locks
// or allocate. A crash inside them ends the process at once; a hang ends with the watchdog.
#include <sys/mman.h>
#include <unistd.h>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <exception>

#include "core_bug_report.h"
#include "core_exception_codes.h"
#include "core_report_files.h"
#include "core_reports.h"
#include "core_settings.h"

namespace Core {
namespace {

constexpr int kFatalSignals[] = {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGTRAP, SIGABRT};
constexpr size_t kSignalCount = sizeof kFatalSignals / sizeof kFatalSignals[0];
// Room for the stack walker, which reads debug information, after a stack overflow.
constexpr size_t kAlternateStackSize = 256 * 1024;
constexpr unsigned kWatchdogSeconds = 10;

struct sigaction earlier_actions[kSignalCount];
std::terminate_handler earlier_terminate = nullptr;

// The thread that reports the crash; 0 until one does. Once set it stays.
std::atomic<pid_t> crashing_thread{0};

// The first crashing thread claims the report. Any other answers false.
bool claim_crash() {
    pid_t none = 0;
    return crashing_thread.compare_exchange_strong(none, gettid());
}

// A report that hangs must not keep a dead program alive.
void start_watchdog() {
    std::signal(SIGALRM, SIG_DFL);
    alarm(kWatchdogSeconds);
}

size_t signal_index(int signal) {
    for (size_t i = 0; i < kSignalCount; ++i)
        if (kFatalSignals[i] == signal) return i;
    return kSignalCount;
}

// Hands the signal on: to the handler that was there before us when the search for another
// handler is asked for (core.exception_search without core.disable_dialogs), otherwise to the
// default action, which ends the process as it would have ended. The signal is blocked while
// its handler runs, so the raised one arrives as the handler returns.
void hand_on(int signal) {
    const BugReportOptions& options = bug_report_options();
    const size_t index = signal_index(signal);
    struct sigaction next {};
    next.sa_handler = SIG_DFL;
    if (options.exception_search && !options.disable_dialogs && index < kSignalCount)
        next = earlier_actions[index];
    sigaction(signal, &next, nullptr);
    raise(signal);
}

void on_signal(int signal, siginfo_t* /*info*/, void* raw_context) {
    const int error_number = errno;
    if (!claim_crash()) {
        // A fault inside our own report ends the process; another thread that crashes
        // meanwhile waits for the report to end it.
        if (crashing_thread.load() == gettid()) return hand_on(signal);
        for (;;)
            pause();
    }
    start_watchdog();
    Detail::Failure failure;
    failure.context = Detail::machine_context(*static_cast<const ucontext_t*>(raw_context));
    failure.signal = signal;
    failure.code = Detail::exception_code(signal);
    failure.error_number = error_number;
    Detail::write_exception_report(failure);
    errno = error_number;
    hand_on(signal);
}

// The text of the exception being handled: what() of a std::exception.
void describe_current_exception(char (&text)[512]) {
    std::snprintf(text, sizeof text, "%s", "unknown exception");
    const std::exception_ptr current = std::current_exception();
    if (!current) return;
    try {
        std::rethrow_exception(current);
    } catch (const std::exception& exception) {
        std::snprintf(text, sizeof text, "%s", exception.what());
    } catch (...) {
    }
}

[[noreturn]] void on_terminate() {
    if (claim_crash()) {
        start_watchdog();
        static char text[512];
        describe_current_exception(text);
        // getcontext() fills only the registers a call keeps; the others read 0.
        ucontext_t context{};
        getcontext(&context);
        Detail::Failure failure;
        failure.context = Detail::machine_context(context);
        failure.code = Detail::kCppExceptionCode;
        failure.cpp_text = text;
        failure.error_number = errno;
        Detail::write_exception_report(failure);
    }
    // The earlier handler (the library's prints the exception) ends the process, by abort.
    if (earlier_terminate != nullptr) earlier_terminate();
    std::abort();
}

// The handlers run on a stack of their own, so that a stack overflow can still be reported.
// This covers the thread that installs the handlers; other threads use their own stacks.
void install_alternate_stack() {
    void* memory = mmap(nullptr, kAlternateStackSize, PROT_READ | PROT_WRITE,
                        MAP_PRIVATE | MAP_ANONYMOUS | MAP_STACK, -1, 0);
    if (memory == MAP_FAILED) return;
    stack_t stack{};
    stack.ss_sp = memory;
    stack.ss_size = kAlternateStackSize;
    if (sigaltstack(&stack, nullptr) != 0) munmap(memory, kAlternateStackSize);
}

}  // namespace

bool in_crash() {
    return crashing_thread.load() != 0;
}

namespace BugReport {

void install_filter() {
    static bool installed = false;
    if (installed) return;
    installed = true;
    // Made here, so that the handler finds them made: the report's names and settings, and
    // the time zone, which the report's local time would otherwise read from a file.
    Detail::report_settings();
    tzset();
    install_alternate_stack();
    struct sigaction action {};
    action.sa_sigaction = on_signal;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    sigemptyset(&action.sa_mask);
    for (size_t i = 0; i < kSignalCount; ++i)
        sigaction(kFatalSignals[i], &action, &earlier_actions[i]);
    earlier_terminate = std::set_terminate(on_terminate);
}

}  // namespace BugReport
}  // namespace Core
