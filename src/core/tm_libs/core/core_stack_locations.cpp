#include "core_stack_locations.h"

#include <dwarf.h>

namespace Core::Detail {

VariableLocator::VariableLocator(const StackFrame& frame, Dwarf_Addr bias, Dwarf_Die* function)
    : frame_(frame), bias_(bias), unit_pc_(frame.lookup_pc() - bias), function_(function) {}

Location VariableLocator::locate(Dwarf_Die* variable) const {
    Dwarf_Attribute attribute;
    Dwarf_Op* operations = nullptr;
    std::size_t count = 0;
    if (dwarf_attr(variable, DW_AT_location, &attribute) == nullptr ||
        dwarf_getlocation_addr(&attribute, unit_pc_, &operations, &count, 1) != 1)
        return {};
    return evaluate(operations, count, false);
}

Location VariableLocator::evaluate(const Dwarf_Op* operations, std::size_t count,
                                   bool in_frame_base) const {
    if (count != 1) return {};
    const Dwarf_Op& operation = operations[0];
    // Offsets are signed; unsigned addition wraps to the same address.
    const auto offset = static_cast<std::uintptr_t>(operation.number);
    const unsigned atom = operation.atom;
    if (atom >= DW_OP_reg0 && atom <= DW_OP_reg31) return Location::held_in(atom - DW_OP_reg0);
    if (atom >= DW_OP_breg0 && atom <= DW_OP_breg31)
        return register_plus(atom - DW_OP_breg0, offset);
    std::uintptr_t base = 0;
    switch (atom) {
        case DW_OP_regx:
            return Location::held_in(static_cast<unsigned>(operation.number));
        case DW_OP_bregx:
            return register_plus(static_cast<unsigned>(operation.number),
                                 static_cast<std::uintptr_t>(operation.number2));
        case DW_OP_fbreg:
            return !in_frame_base && frame_base(base) ? Location::memory(base + offset)
                                                      : Location{};
        case DW_OP_call_frame_cfa:
            return frame_.cfa != 0 ? Location::memory(frame_.cfa) : Location{};
        case DW_OP_addr:
            return Location::memory(static_cast<std::uintptr_t>(operation.number + bias_));
        default:
            return {};
    }
}

Location VariableLocator::register_plus(unsigned number, std::uintptr_t offset) const {
    std::uintptr_t value = 0;
    return frame_.register_value(number, value) ? Location::memory(value + offset) : Location{};
}

bool VariableLocator::frame_base(std::uintptr_t& base) const {
    Dwarf_Attribute attribute;
    Dwarf_Op* operations = nullptr;
    std::size_t count = 0;
    if (dwarf_attr_integrate(function_, DW_AT_frame_base, &attribute) == nullptr ||
        dwarf_getlocation_addr(&attribute, unit_pc_, &operations, &count, 1) != 1)
        return false;
    const Location location = evaluate(operations, count, true);
    // A frame base named by a register is the register's value.
    if (location.place == Location::Place::in_register)
        return frame_.register_value(location.number, base);
    base = location.address;
    return location.place == Location::Place::in_memory;
}

}  // namespace Core::Detail
