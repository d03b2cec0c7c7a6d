#include "core_stack_scopes.h"

#include <dwarf.h>

#include <cstdlib>

namespace Core::Detail {

FunctionScopes::FunctionScopes(Dwarf_Die* unit, Dwarf_Addr pc) {
    count_ = dwarf_getscopes(unit, pc, &scopes_);
    // Inside inlined code libdw goes on with the scopes of the inlined function's own
    // definition; the frame's function is among those that hold the innermost inlined call.
    for (int index = 0; index < count_; ++index) {
        if (!is_inlined_call(index)) continue;
        Dwarf_Die call = scopes_[index];
        std::free(scopes_);
        scopes_ = nullptr;
        count_ = dwarf_getscopes_die(&call, &scopes_);
        break;
    }
    for (int index = 0; index < count_ && function_ < 0; ++index) {
        if (dwarf_tag(&scopes_[index]) == DW_TAG_subprogram) function_ = index;
    }
}

FunctionScopes::~FunctionScopes() {
    std::free(scopes_);
}

Dwarf_Die* FunctionScopes::function() {
    return function_ >= 0 ? &scopes_[function_] : nullptr;
}

bool FunctionScopes::is_inlined_call(int index) {
    return dwarf_tag(&scopes_[index]) == DW_TAG_inlined_subroutine;
}

}  // namespace Core::Detail
