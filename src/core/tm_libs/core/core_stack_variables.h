// The parameters and local variables of a frame, with their values, from the DWARF
// information of its function. A line per variable, "    name  type  value"; the members of
// a struct follow on lines of their own, four blanks deeper per level, down to the ninth
// level and at most 32 of them per struct.
//
// Failure style: a variable that the debug information does not place at this point of the
// code (optimised out, or kept in a form that is not evaluated here) is left out; memory is
// read only through read_own_memory, and what cannot be read prints as "????".
// Thread safety: none; the walker's callers serialise it.
#pragma once

#include <elfutils/libdwfl.h>

#include "core_stack_frames.h"
#include "core_stack_info.h"

namespace Core::Detail {

// Writes the parameters of `frame`'s function, and with `locals` its local variables too,
// leaving out those whose names begin with `skip_prefix` (may be null).
void write_variables(Dwfl* dwfl, const StackFrame& frame, StackInfo::Writer& writer, bool locals,
                     const char* skip_prefix);

}  // namespace Core::Detail
