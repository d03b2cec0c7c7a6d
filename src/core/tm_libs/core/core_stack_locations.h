// Where a variable of a frame is, from its DWARF location at the frame's point of the code.
// The forms that compilers give to a variable that lives in memory or in a register for a
// stretch of code are understood: DW_OP_fbreg against the function's frame base (itself
// DW_OP_call_frame_cfa, a register, or a register plus an offset), DW_OP_breg* and DW_OP_bregx
// with the registers the unwinder knows, DW_OP_addr, and DW_OP_reg*/DW_OP_regx. Composite,
// computed and optimised-out locations are unknown.
//
// Failure style: Place::unknown. Thread safety: none.
#pragma once

#include <elfutils/libdw.h>

#include <cstdint>

#include "core_stack_frames.h"

namespace Core::Detail {

struct Location {
    enum class Place { unknown, in_register, in_memory };
    Place place = Place::unknown;
    std::uintptr_t address = 0;  // in_memory
    unsigned number = 0;         // in_register: its DWARF number

    static Location memory(std::uintptr_t address) { return {Place::in_memory, address, 0}; }
    static Location held_in(unsigned number) { return {Place::in_register, 0, number}; }
};

class VariableLocator {
public:
    // `function` is the DIE of the frame's function; `bias` is its module's load bias.
    VariableLocator(const StackFrame& frame, Dwarf_Addr bias, Dwarf_Die* function);

    Location locate(Dwarf_Die* variable) const;

private:
    Location evaluate(const Dwarf_Op* operations, std::size_t count, bool in_frame_base) const;
    Location register_plus(unsigned number, std::uintptr_t offset) const;
    bool frame_base(std::uintptr_t& base) const;

    const StackFrame& frame_;
    Dwarf_Addr bias_;
    Dwarf_Addr unit_pc_;  // the frame's code address as the debug information counts it
    Dwarf_Die* function_;
};

}  // namespace Core::Detail
