// The stack walker's view of the running program through elfutils: the loaded modules with
// their symbols, lines and call frame information, and an unwinder that reads our own memory.
//
// Failure style: a session that could not start writes "The symbol handler failed to
// initialize ..." on the debugger's output and gives a null `dwfl()`; a session whose modules
// are known but that cannot unwind gives `can_unwind()` false.
// Thread safety: none; the walker's callers serialise it.
#pragma once

#include <elfutils/libdwfl.h>

#include <cstdint>

namespace Core::Detail {

// DWARF register numbers of x86-64 that a walk starts from.
constexpr unsigned kFramePointerRegister = 6;
constexpr unsigned kStackPointerRegister = 7;
constexpr unsigned kReturnAddressRegister = 16;

// The registers a walk starts from.
struct StartRegisters {
    std::uintptr_t pc = 0;
    std::uintptr_t stack = 0;
    std::uintptr_t frame = 0;
};

class StackSession {
public:
    StackSession() = default;
    ~StackSession();
    StackSession(const StackSession&) = delete;
    StackSession& operator=(const StackSession&) = delete;

    // Ends a running session and starts a new one over the modules loaded now.
    void prepare();
    bool prepared() const { return prepared_; }

    // The modules of the process; null when the session failed.
    Dwfl* dwfl() const { return dwfl_; }
    bool can_unwind() const { return attached_; }

    // Unwinds the stack that `start` describes, calling `callback` with each frame until it
    // returns something other than DWARF_CB_OK. Needs can_unwind().
    void unwind(const StartRegisters& start, int (*callback)(Dwfl_Frame*, void*), void* argument);

private:
    static pid_t next_thread(Dwfl* dwfl, void* session, void** thread_argument);
    static bool read_memory(Dwfl* dwfl, Dwarf_Addr address, Dwarf_Word* result, void* session);
    static bool set_initial_registers(Dwfl_Thread* thread, void* session);

    void end();
    void fail(int error);

    Dwfl* dwfl_ = nullptr;
    bool prepared_ = false;
    bool attached_ = false;
    StartRegisters start_;
};

}  // namespace Core::Detail
