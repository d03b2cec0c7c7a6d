// The scopes of the function that a frame runs: the function itself and, inwards, the blocks
// that hold the frame's code. Code inlined from another function is that function's scope,
// not the frame's, so it ends the list.
//
// Failure style: no function when the debug information has none for the code.
// Allocation: libdw hands out the list of scopes in allocated memory, freed here.
// Thread safety: none.
#pragma once

#include <elfutils/libdw.h>

namespace Core::Detail {

class FunctionScopes {
public:
    // The scopes at `pc`, an address of the unit's own (without the module's load bias).
    FunctionScopes(Dwarf_Die* unit, Dwarf_Addr pc);
    ~FunctionScopes();
    FunctionScopes(const FunctionScopes&) = delete;
    FunctionScopes& operator=(const FunctionScopes&) = delete;

    // The function's own DIE; null when the code is in no function.
    Dwarf_Die* function();

    // Calls `visit` with each scope of the function, the function first.
    template <typename Visit>
    void each(Visit visit) {
        for (int index = function_; index >= 0; --index) {
            if (index < function_ && is_inlined_call(index)) return;
            visit(&scopes_[index]);
        }
    }

private:
    bool is_inlined_call(int index);

    Dwarf_Die* scopes_ = nullptr;  // innermost first
    int count_ = 0;
    int function_ = -1;
};

}  // namespace Core::Detail
