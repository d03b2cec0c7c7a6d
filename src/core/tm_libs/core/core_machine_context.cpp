#include "core_machine_context.h"

#if !defined(__x86_64__)
#error "The registers of this machine are not mapped yet: add them to core_machine_context."
#endif

namespace Core::Detail {
namespace {

constexpr const char* kRegisterNames[kRegisterCount] = {
    "RAX", "RBX", "RCX", "RDX", "RSI", "RDI", "R8",  "R9",  "R10",
    "R11", "R12", "R13", "R14", "R15", "RIP", "RSP", "RBP", "Flags",
};

// Where each of our registers sits in the kernel's general register array.
constexpr int kGregIndex[kRegisterCount] = {
    REG_RAX, REG_RBX, REG_RCX, REG_RDX, REG_RSI, REG_RDI, REG_R8,  REG_R9,  REG_R10,
    REG_R11, REG_R12, REG_R13, REG_R14, REG_R15, REG_RIP, REG_RSP, REG_RBP, REG_EFL,
};

}  // namespace

const char* register_name(size_t index) {
    return index < kRegisterCount ? kRegisterNames[index] : "";
}

MachineContext machine_context(const ucontext_t& context) {
    MachineContext machine;
    for (size_t i = 0; i < kRegisterCount; ++i)
        machine.registers[i] = static_cast<uint64_t>(context.uc_mcontext.gregs[kGregIndex[i]]);
    machine.complete = true;
    return machine;
}

MachineContext site_context(uintptr_t pc, uintptr_t stack, uintptr_t frame) {
    MachineContext machine;
    machine.registers[kRip] = pc;
    machine.registers[kRsp] = stack;
    machine.registers[kRbp] = frame;
    return machine;
}

}  // namespace Core::Detail
