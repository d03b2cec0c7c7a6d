#include "core_stack_frames.h"

#include "core_stack_memory.h"

namespace Core::Detail {
namespace {

constexpr int kMaxFrames = 256;

bool plausible(const StackFrame& frame) {
    std::uint64_t code = 0;
    return frame.stack != 0 && frame.stack % sizeof(std::uintptr_t) == 0 &&
           read_own_memory(frame.pc, &code, sizeof code);
}

bool read_frame(Dwfl_Frame* state, StackFrame& frame) {
    Dwarf_Addr pc = 0;
    if (!dwfl_frame_pc(state, &pc, &frame.activation)) return false;
    frame.pc = pc;
    for (unsigned number = 0; number < StackFrame::kRegisterCount; ++number) {
        Dwarf_Word value = 0;
        if (dwfl_frame_reg(state, number, &value) != 0) continue;
        frame.registers[number] = value;
        frame.known_registers |= 1u << number;
    }
    return frame.register_value(kStackPointerRegister, frame.stack);
}

// Frames reach the visitor one behind the unwinder: a frame's CFA is its caller's stack
// pointer, known only once the caller has been unwound.
class FrameRules {
public:
    FrameRules(int skip, FrameVisitor& visitor) : skip_(skip), visitor_(visitor) {}

    static int on_frame(Dwfl_Frame* state, void* rules) {
        return static_cast<FrameRules*>(rules)->take(state);
    }

    int take(Dwfl_Frame* state) {
        StackFrame frame;
        if (!read_frame(state, frame)) return DWARF_CB_ABORT;
        const bool grows = !has_pending_ || frame.stack > pending_.stack;
        if (has_pending_) hand_out(grows ? frame.stack : 0);
        if (!grows || !plausible(frame) || accepted_ == skip_ + kMaxFrames) return DWARF_CB_ABORT;
        accept(frame);
        return DWARF_CB_OK;
    }

    void accept(const StackFrame& frame) {
        pending_ = frame;
        has_pending_ = true;
        ++accepted_;
    }

    // The last frame, whose caller is unknown.
    void finish() {
        if (has_pending_) hand_out(0);
    }

private:
    void hand_out(std::uintptr_t cfa) {
        pending_.cfa = cfa;
        has_pending_ = false;
        if (handed_out_++ >= skip_) visitor_.visit(pending_);
    }

    int skip_;
    FrameVisitor& visitor_;
    StackFrame pending_;
    bool has_pending_ = false;
    int accepted_ = 0;
    int handed_out_ = 0;
};

StackFrame first_frame(const StartRegisters& start) {
    StackFrame frame;
    frame.pc = start.pc;
    frame.stack = start.stack;
    frame.registers[kFramePointerRegister] = start.frame;
    frame.registers[kStackPointerRegister] = start.stack;
    frame.registers[kReturnAddressRegister] = start.pc;
    frame.known_registers =
        1u << kFramePointerRegister | 1u << kStackPointerRegister | 1u << kReturnAddressRegister;
    return frame;
}

}  // namespace

bool StackFrame::register_value(unsigned number, std::uintptr_t& value) const {
    if (number >= kRegisterCount || (known_registers & 1u << number) == 0) return false;
    value = registers[number];
    return true;
}

void visit_frames(StackSession& session, const StartRegisters& start, int skip,
                  FrameVisitor& visitor) {
    FrameRules rules(skip, visitor);
    if (session.can_unwind()) {
        session.unwind(start, FrameRules::on_frame, &rules);
    } else {
        const StackFrame frame = first_frame(start);
        if (plausible(frame)) rules.accept(frame);
    }
    rules.finish();
}

}  // namespace Core::Detail
