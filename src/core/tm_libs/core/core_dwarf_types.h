// Questions about DWARF types that printing a variable asks: what a variable's type is and
// how it is laid out, whether it holds a float or characters, and which members a struct has.
//
// Failure style: false or null for what the debug information does not say.
// Thread safety: none; libdw's caches are not guarded.
#pragma once

#include <elfutils/libdw.h>

#include <cstdint>

namespace Core::Detail {

// The type of a variable, member or type, seen through const and volatile; a typedef keeps
// its name. False for void.
bool type_of(Dwarf_Die* die, Dwarf_Die& type);
// The type that says how a value is laid out: typedefs looked through as well.
bool layout_of(Dwarf_Die* die, Dwarf_Die& layout);

bool is_float(Dwarf_Die* layout);
// A pointer to single-byte characters.
bool is_char_pointer(Dwarf_Die* layout);
// An array of single-byte characters.
bool is_char_array(Dwarf_Die* layout);
// A struct, class or union that has members.
bool has_members(Dwarf_Die* layout);

// For a non-static data member or a base class at a constant offset, that offset. Bit fields
// are not data members here: their bits do not fill whole bytes.
bool data_member_offset(Dwarf_Die* member, std::uintptr_t& offset);
// The name of a data member, or of a base class's type.
const char* member_name(Dwarf_Die* member);

}  // namespace Core::Detail
