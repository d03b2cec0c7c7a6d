#include "core_dwarf_types.h"

#include <dwarf.h>

namespace Core::Detail {
namespace {

bool follow(Dwarf_Die* die, unsigned attribute_name, Dwarf_Die& target) {
    Dwarf_Attribute attribute;
    return dwarf_attr_integrate(die, attribute_name, &attribute) != nullptr &&
           dwarf_formref_die(&attribute, &target) != nullptr;
}

bool is_qualifier(int tag) {
    return tag == DW_TAG_const_type || tag == DW_TAG_volatile_type || tag == DW_TAG_restrict_type ||
           tag == DW_TAG_atomic_type;
}

unsigned encoding_of(Dwarf_Die* base_type) {
    Dwarf_Attribute attribute;
    Dwarf_Word encoding = 0;
    if (dwarf_tag(base_type) != DW_TAG_base_type ||
        dwarf_attr(base_type, DW_AT_encoding, &attribute) == nullptr ||
        dwarf_formudata(&attribute, &encoding) != 0)
        return 0;
    return static_cast<unsigned>(encoding);
}

bool is_char(Dwarf_Die* layout) {
    const unsigned encoding = encoding_of(layout);
    return (encoding == DW_ATE_signed_char || encoding == DW_ATE_unsigned_char) &&
           dwarf_bytesize(layout) == 1;
}

bool refers_to_chars(Dwarf_Die* layout, int tag) {
    Dwarf_Die element;
    return dwarf_tag(layout) == tag && layout_of(layout, element) && is_char(&element);
}

}  // namespace

bool type_of(Dwarf_Die* die, Dwarf_Die& type) {
    if (!follow(die, DW_AT_type, type)) return false;
    while (is_qualifier(dwarf_tag(&type))) {
        if (!follow(&type, DW_AT_type, type)) return false;
    }
    return true;
}

bool layout_of(Dwarf_Die* die, Dwarf_Die& layout) {
    Dwarf_Die type;
    return type_of(die, type) && dwarf_peel_type(&type, &layout) == 0;
}

bool is_float(Dwarf_Die* layout) {
    return encoding_of(layout) == DW_ATE_float;
}

bool is_char_pointer(Dwarf_Die* layout) {
    return refers_to_chars(layout, DW_TAG_pointer_type);
}

bool is_char_array(Dwarf_Die* layout) {
    return refers_to_chars(layout, DW_TAG_array_type);
}

bool has_members(Dwarf_Die* layout) {
    const int tag = dwarf_tag(layout);
    return (tag == DW_TAG_structure_type || tag == DW_TAG_class_type || tag == DW_TAG_union_type) &&
           dwarf_haschildren(layout) > 0;
}

bool data_member_offset(Dwarf_Die* member, std::uintptr_t& offset) {
    const int tag = dwarf_tag(member);
    if ((tag != DW_TAG_member && tag != DW_TAG_inheritance) ||
        dwarf_hasattr(member, DW_AT_bit_size) || dwarf_hasattr(member, DW_AT_declaration) ||
        dwarf_hasattr(member, DW_AT_external))
        return false;
    Dwarf_Attribute attribute;
    Dwarf_Word value = 0;
    if (dwarf_attr(member, DW_AT_data_member_location, &attribute) == nullptr) {
        offset = 0;  // a member of a union
        return true;
    }
    // A virtual base class is found by an expression, not at an offset.
    if (dwarf_formudata(&attribute, &value) != 0) return false;
    offset = static_cast<std::uintptr_t>(value);
    return true;
}

const char* member_name(Dwarf_Die* member) {
    Dwarf_Die base;
    if (dwarf_tag(member) == DW_TAG_inheritance)
        return type_of(member, base) ? dwarf_diename(&base) : nullptr;
    return dwarf_diename(member);
}

}  // namespace Core::Detail
