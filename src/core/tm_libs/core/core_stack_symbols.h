// Names, files and lines of code addresses, from the modules of a stack session.
//
// Failure style: false when the address has no symbol or no line; nothing throws.
// Allocation: demangling allocates (the C++ runtime's demangler has no other form); the
// texts themselves are kept in fixed buffers.
// Thread safety: none; the walker's callers serialise it.
#pragma once

#include <elfutils/libdwfl.h>

#include <cstdint>

#include "core_fixed_text.h"

namespace Core::Detail {

struct FunctionName {
    FixedText text;  // demangled, without its parameter list
    std::uintptr_t start = 0;
};

// The function whose code holds `address`.
bool find_function(Dwfl* dwfl, std::uintptr_t address, FunctionName& name);

struct SourceLine {
    const char* file = nullptr;  // owned by the session
    int line = 0;
};

// The source line of the code at `address`.
bool find_source_line(Dwfl* dwfl, std::uintptr_t address, SourceLine& line);

}  // namespace Core::Detail
