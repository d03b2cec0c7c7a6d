// The frames of a walk, and the rules that end one: a walk stops at a frame whose stack
// pointer is 0, misaligned or not above its callee's (a loop in a damaged stack cannot hang
// it), whose code cannot be read, or after 256 frames.
//
// Failure style: a stack that cannot be unwound gives fewer frames, never an error.
// Thread safety: none; the walker's callers serialise it.
#pragma once

#include <cstdint>

#include "core_stack_session.h"

namespace Core::Detail {

// One frame, with the registers that the unwinder knows in it.
struct StackFrame {
    static constexpr unsigned kRegisterCount = 17;  // x86-64: rax..r15, return address

    std::uintptr_t pc = 0;
    // The first frame runs the instruction at pc; the others are about to return to it.
    bool activation = true;
    // The stack pointer in this frame: the frame's address in a walk.
    std::uintptr_t stack = 0;
    // The canonical frame address: the caller's stack pointer; 0 when the caller is unknown.
    std::uintptr_t cfa = 0;
    std::uint64_t registers[kRegisterCount] = {};
    std::uint32_t known_registers = 0;

    // The address that names the frame's function and line: inside the call instruction for
    // a caller, whose return address may already belong to the next line or function.
    std::uintptr_t lookup_pc() const { return activation ? pc : pc - 1; }
    // The value of DWARF register `number`, if the unwinder knows it.
    bool register_value(unsigned number, std::uintptr_t& value) const;
};

class FrameVisitor {
public:
    virtual ~FrameVisitor() = default;
    virtual void visit(const StackFrame& frame) = 0;
};

// Hands `visitor` each frame of the stack that `start` describes, leaving out the first
// `skip`. Without an unwinder only the first frame is known.
void visit_frames(StackSession& session, const StartRegisters& start, int skip,
                  FrameVisitor& visitor);

}  // namespace Core::Detail
