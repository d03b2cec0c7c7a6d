#include "core_stack_session.h"

#include <unistd.h>

#include "core_log_options.h"
#include "core_stack_memory.h"

#if !defined(__x86_64__)
#error "The stack walker sets up x86-64 registers for the unwinder"
#endif

namespace Core::Detail {
namespace {

static_assert(kStackPointerRegister == kFramePointerRegister + 1, "set together below");

// Separate debug files are looked for by build ID under /usr/lib/debug only. The standard
// search would also ask a debuginfod server when DEBUGINFOD_URLS is set, and a crash report
// must not wait on the network.
char* debuginfo_path = nullptr;
const Dwfl_Callbacks kModuleCallbacks = {
    dwfl_linux_proc_find_elf,
    dwfl_build_id_find_debuginfo,
    nullptr,
    &debuginfo_path,
};

}  // namespace

StackSession::~StackSession() {
    end();
}

// A new session rather than the modules reported again into the old one: the old session's
// own mappings of the files it has read would show up in /proc as modules of their own.
void StackSession::prepare() {
    end();
    prepared_ = true;
    dwfl_ = dwfl_begin(&kModuleCallbacks);
    if (dwfl_ == nullptr) return fail(dwfl_errno());
    dwfl_report_begin(dwfl_);
    // 0, -1 for an error of elfutils, or the errno of reading /proc.
    int error = dwfl_linux_proc_report(dwfl_, ::getpid());
    if (error < 0) error = dwfl_errno();
    if (dwfl_report_end(dwfl_, nullptr, nullptr) != 0 && error == 0) error = dwfl_errno();
    if (error != 0) {
        end();
        return fail(error);
    }
    static const Dwfl_Thread_Callbacks kThreadCallbacks = {
        next_thread, nullptr, read_memory, set_initial_registers, nullptr, nullptr,
    };
    attached_ = dwfl_attach_state(dwfl_, nullptr, ::getpid(), &kThreadCallbacks, this);
    // Symbols and lines still serve describe(); only walks lose their callers.
    if (!attached_) fail(dwfl_errno());
}

void StackSession::unwind(const StartRegisters& start, int (*callback)(Dwfl_Frame*, void*),
                          void* argument) {
    start_ = start;
    dwfl_getthread_frames(dwfl_, ::getpid(), callback, argument);
}

void StackSession::end() {
    if (dwfl_ != nullptr) dwfl_end(dwfl_);
    dwfl_ = nullptr;
    attached_ = false;
}

void StackSession::fail(int error) {
    debug_printf(
        "The symbol handler failed to initialize (error=%lu). Stack trace will not be "
        "available.\n",
        static_cast<unsigned long>(error));
}

// The process is unwound as one thread: the walk is given its registers, and every thread's
// stack is in our own memory.
pid_t StackSession::next_thread(Dwfl*, void* session, void** thread_argument) {
    if (*thread_argument != nullptr) return 0;
    *thread_argument = session;
    return ::getpid();
}

bool StackSession::read_memory(Dwfl*, Dwarf_Addr address, Dwarf_Word* result, void*) {
    return read_own_memory(address, result, sizeof *result);
}

bool StackSession::set_initial_registers(Dwfl_Thread* thread, void* session) {
    const StartRegisters& start = static_cast<StackSession*>(session)->start_;
    const Dwarf_Word frame_and_stack[] = {start.frame, start.stack};
    const Dwarf_Word pc = start.pc;
    return dwfl_thread_state_registers(thread, kFramePointerRegister, 2, frame_and_stack) &&
           dwfl_thread_state_registers(thread, kReturnAddressRegister, 1, &pc);
}

}  // namespace Core::Detail
