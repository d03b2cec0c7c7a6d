// The registers of the machine at a failure, in the order in which the report and the dump
// write them.
//
// Failure style: never fails. Only x86-64 is mapped; other machines fail to compile here.
// Thread safety: plain values.
#pragma once

#include <ucontext.h>
#include <cstddef>
#include <cstdint>

namespace Core::Detail {

enum Register : size_t {
    kRax,
    kRbx,
    kRcx,
    kRdx,
    kRsi,
    kRdi,
    kR8,
    kR9,
    kR10,
    kR11,
    kR12,
    kR13,
    kR14,
    kR15,
    kRip,
    kRsp,
    kRbp,
    kFlags,
    kRegisterCount
};

// "RAX", ..., "Flags".
const char* register_name(size_t index);

struct MachineContext {
    uint64_t registers[kRegisterCount] = {};
    // False for an assertion: only the site's instruction, stack and frame pointers are known.
    bool complete = false;

    uintptr_t pc() const { return static_cast<uintptr_t>(registers[kRip]); }
    uintptr_t stack() const { return static_cast<uintptr_t>(registers[kRsp]); }
    uintptr_t frame() const { return static_cast<uintptr_t>(registers[kRbp]); }
};

// Every register of a signal's context, or of getcontext().
MachineContext machine_context(const ucontext_t& context);
// The three registers an assertion site is known by.
MachineContext site_context(uintptr_t pc, uintptr_t stack, uintptr_t frame);

}  // namespace Core::Detail
