#include "core_stack_variables.h"

#include <dwarf.h>
#include <elfutils/libdw.h>

#include <cstdlib>
#include <cstring>

#include "core_fixed_text.h"
#include "core_stack_memory.h"

namespace Core::Detail {
namespace {

constexpr int kMaxDepth = 9;
constexpr int kMaxMembersRead = 512;
constexpr int kMaxMembersKept = 32;
constexpr std::size_t kTextLength = 31;

// Where a variable is at the frame's point of the code.
struct Location {
    enum class Place { unknown, in_register, in_memory };
    Place place = Place::unknown;
    std::uintptr_t address = 0;  // in_memory
    unsigned number = 0;         // in_register: its DWARF number

    static Location memory(std::uintptr_t address) { return {Place::in_memory, address, 0}; }
    static Location held_in(unsigned number) { return {Place::in_register, 0, number}; }
};

bool follow(Dwarf_Die* die, unsigned attribute_name, Dwarf_Die& target) {
    Dwarf_Attribute attribute;
    return dwarf_attr_integrate(die, attribute_name, &attribute) != nullptr &&
           dwarf_formref_die(&attribute, &target) != nullptr;
}

bool is_qualifier(int tag) {
    return tag == DW_TAG_const_type || tag == DW_TAG_volatile_type || tag == DW_TAG_restrict_type ||
           tag == DW_TAG_atomic_type;
}

// The type of a variable, member or type, seen through const and volatile: a typedef keeps
// its name. False for void.
bool type_of(Dwarf_Die* die, Dwarf_Die& type) {
    if (!follow(die, DW_AT_type, type)) return false;
    while (is_qualifier(dwarf_tag(&type))) {
        if (!follow(&type, DW_AT_type, type)) return false;
    }
    return true;
}

// The type that says how a value is laid out: typedefs looked through as well.
bool layout_of(Dwarf_Die* die, Dwarf_Die& layout) {
    Dwarf_Die type;
    return type_of(die, type) && dwarf_peel_type(&type, &layout) == 0;
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

bool is_float(Dwarf_Die* layout) {
    return encoding_of(layout) == DW_ATE_float;
}

bool is_char(Dwarf_Die* layout) {
    const unsigned encoding = encoding_of(layout);
    return (encoding == DW_ATE_signed_char || encoding == DW_ATE_unsigned_char) &&
           dwarf_bytesize(layout) == 1;
}

// A pointer to characters, or an array of them.
bool refers_to_chars(Dwarf_Die* layout, int tag) {
    Dwarf_Die element;
    return dwarf_tag(layout) == tag && layout_of(layout, element) && is_char(&element);
}

bool has_members(Dwarf_Die* layout) {
    const int tag = dwarf_tag(layout);
    return (tag == DW_TAG_structure_type || tag == DW_TAG_class_type || tag == DW_TAG_union_type) &&
           dwarf_haschildren(layout) > 0;
}

// A non-static data member or a base class at a constant offset. Bit fields are left out:
// their bits do not fill whole bytes.
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

// The scopes of the function that a frame runs, from the function itself inwards to the
// innermost scope that holds the frame's code. Code inlined from another function is that
// function's scope, not the frame's: its variables are left out.
class FunctionScopes {
public:
    FunctionScopes(Dwarf_Die* unit, Dwarf_Addr pc) {
        count_ = dwarf_getscopes(unit, pc, &scopes_);
        // Inside inlined code the scopes go on with the inlined function's own definition;
        // the frame's function is among those that hold the innermost inlined call.
        for (int index = 0; index < count_; ++index) {
            if (dwarf_tag(&scopes_[index]) != DW_TAG_inlined_subroutine) continue;
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
    ~FunctionScopes() { std::free(scopes_); }
    FunctionScopes(const FunctionScopes&) = delete;
    FunctionScopes& operator=(const FunctionScopes&) = delete;

    // The function's own DIE; null when the code is in no function.
    Dwarf_Die* function() { return function_ >= 0 ? &scopes_[function_] : nullptr; }

    // Calls `visit` with each scope of the function, the function first.
    template <typename Visit>
    void each(Visit visit) {
        for (int index = function_; index >= 0; --index) {
            if (index < function_ && dwarf_tag(&scopes_[index]) == DW_TAG_inlined_subroutine)
                return;
            visit(&scopes_[index]);
        }
    }

private:
    Dwarf_Die* scopes_ = nullptr;
    int count_ = 0;
    int function_ = -1;
};

class VariableWriter {
public:
    VariableWriter(const StackFrame& frame, Dwarf_Addr bias, StackInfo::Writer& writer, bool locals,
                   const char* skip_prefix)
        : frame_(frame),
          bias_(bias),
          unit_pc_(frame.lookup_pc() - bias),
          writer_(writer),
          locals_(locals),
          skip_prefix_(skip_prefix != nullptr && *skip_prefix != '\0' ? skip_prefix : nullptr) {}

    void write_function(FunctionScopes& scopes) {
        function_ = scopes.function();
        if (function_ == nullptr) return;
        scopes.each([this](Dwarf_Die* scope) {
            Dwarf_Die child;
            if (dwarf_child(scope, &child) != 0) return;
            do {
                write_variable(&child);
            } while (dwarf_siblingof(&child, &child) == 0);
        });
    }

private:
    void write_variable(Dwarf_Die* variable) {
        const int tag = dwarf_tag(variable);
        if (tag != DW_TAG_formal_parameter && !(locals_ && tag == DW_TAG_variable)) return;
        const char* name = dwarf_diename(variable);
        if (name == nullptr) return;
        if (skip_prefix_ != nullptr &&
            std::strncmp(name, skip_prefix_, std::strlen(skip_prefix_)) == 0)
            return;
        const Location where = locate(variable);
        if (where.place == Location::Place::unknown) return;
        line_.clear();
        line_.append("    %s", name);
        if (where.place == Location::Place::in_register) {
            line_.append("  register");
            writer_.write_line(line_.c_str());
            return;
        }
        write_contents(variable, where.address, 1);
    }

    void write_member(Dwarf_Die* member, std::uintptr_t address, int depth) {
        const char* name = member_name(member);
        line_.clear();
        line_.append("%*c%s", depth * 4, ' ', name != nullptr ? name : "");
        write_contents(member, address, depth);
    }

    // Ends the line of a variable (depth 1) or member with its type's name and value, or
    // writes its members on the lines below.
    void write_contents(Dwarf_Die* typed, std::uintptr_t address, int depth) {
        Dwarf_Die type;
        Dwarf_Die layout;
        const bool known = type_of(typed, type) && dwarf_peel_type(&type, &layout) == 0;
        const bool structured = known && has_members(&layout);
        const char* type_name = known ? dwarf_diename(&type) : nullptr;
        // A variable names its type; a member names only the struct it opens.
        if (type_name != nullptr && (depth == 1 || structured)) line_.append("  %s", type_name);
        if (structured) {
            writer_.write_line(line_.c_str());
            write_members(&layout, address, depth + 1);
            return;
        }
        write_value(known ? &layout : nullptr, address);
        writer_.write_line(line_.c_str());
    }

    void write_members(Dwarf_Die* layout, std::uintptr_t address, int depth) {
        if (depth > kMaxDepth) return;
        Dwarf_Die member;
        if (dwarf_child(layout, &member) != 0) return;
        int read = 0;
        int kept = 0;
        do {
            if (++read > kMaxMembersRead || kept == kMaxMembersKept) return;
            std::uintptr_t offset = 0;
            if (!data_member_offset(&member, offset)) continue;
            ++kept;
            write_member(&member, address + offset, depth);
        } while (dwarf_siblingof(&member, &member) == 0);
    }

    void write_value(Dwarf_Die* layout, std::uintptr_t address) {
        Dwarf_Word size = 0;
        if (layout == nullptr || dwarf_aggregate_size(layout, &size) != 0) size = 0;
        unsigned char bytes[8] = {};
        if (!read_own_memory(address, bytes, size == 0 ? 1 : size < 8 ? size : 8)) {
            line_.append("  ????");
            return;
        }
        std::uint16_t two = 0;
        std::uint32_t four = 0;
        std::uint64_t eight = 0;
        float single = 0;
        switch (size) {
            case 1:
                line_.append("  %02X", bytes[0]);
                return;
            case 2:
                std::memcpy(&two, bytes, 2);
                line_.append("  %04X", two);
                return;
            case 4:
                std::memcpy(&four, bytes, 4);
                std::memcpy(&single, bytes, 4);
                if (is_float(layout))
                    line_.append("  %f", static_cast<double>(single));
                else
                    line_.append("  %08X", four);
                return;
            case 8:
                std::memcpy(&eight, bytes, 8);
                if (refers_to_chars(layout, DW_TAG_pointer_type) &&
                    append_text(static_cast<std::uintptr_t>(eight), kTextLength))
                    return;
                // Of a double, the low half, as the tool always printed it.
                if (is_float(layout))
                    line_.append("  %08X", static_cast<std::uint32_t>(eight));
                else
                    line_.append("  %016llX", static_cast<unsigned long long>(eight));
                return;
            default:
                if (refers_to_chars(layout, DW_TAG_array_type) &&
                    append_text(address, size < kTextLength ? size : kTextLength))
                    return;
                line_.append("  {}");
        }
    }

    bool append_text(std::uintptr_t address, std::size_t limit) {
        char text[kTextLength + 1];
        if (!read_own_text(address, text, sizeof text, limit)) return false;
        line_.append("  '%.31s'", text);
        return true;
    }

    Location locate(Dwarf_Die* variable) const {
        Dwarf_Attribute attribute;
        Dwarf_Op* operations = nullptr;
        std::size_t count = 0;
        if (dwarf_attr(variable, DW_AT_location, &attribute) == nullptr ||
            dwarf_getlocation_addr(&attribute, unit_pc_, &operations, &count, 1) != 1)
            return {};
        return evaluate(operations, count, false);
    }

    // The forms that compilers give to variables that live in memory or in a register for a
    // whole stretch of code; composite and computed locations are left out.
    Location evaluate(const Dwarf_Op* operations, std::size_t count, bool in_frame_base) const {
        if (count != 1) return {};
        const Dwarf_Op& operation = operations[0];
        // Offsets are signed; unsigned addition wraps to the same address.
        const auto offset = static_cast<std::uintptr_t>(operation.number);
        const unsigned atom = operation.atom;
        std::uintptr_t base = 0;
        if (atom >= DW_OP_reg0 && atom <= DW_OP_reg31) return Location::held_in(atom - DW_OP_reg0);
        if (atom >= DW_OP_breg0 && atom <= DW_OP_breg31)
            return frame_.register_value(atom - DW_OP_breg0, base) ? Location::memory(base + offset)
                                                                   : Location{};
        switch (atom) {
            case DW_OP_regx:
                return Location::held_in(static_cast<unsigned>(operation.number));
            case DW_OP_bregx:
                return frame_.register_value(static_cast<unsigned>(operation.number), base)
                           ? Location::memory(base + static_cast<std::uintptr_t>(operation.number2))
                           : Location{};
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

    bool frame_base(std::uintptr_t& base) const {
        Dwarf_Attribute attribute;
        Dwarf_Op* operations = nullptr;
        std::size_t count = 0;
        if (dwarf_attr_integrate(function_, DW_AT_frame_base, &attribute) == nullptr ||
            dwarf_getlocation_addr(&attribute, unit_pc_, &operations, &count, 1) != 1)
            return false;
        const Location location = evaluate(operations, count, true);
        // A frame base named by a register is that register's value.
        if (location.place == Location::Place::in_register)
            return frame_.register_value(location.number, base);
        base = location.address;
        return location.place == Location::Place::in_memory;
    }

    const StackFrame& frame_;
    Dwarf_Addr bias_;
    Dwarf_Addr unit_pc_;
    StackInfo::Writer& writer_;
    bool locals_;
    const char* skip_prefix_;
    Dwarf_Die* function_ = nullptr;
    FixedText line_;
};

}  // namespace

void write_variables(Dwfl* dwfl, const StackFrame& frame, StackInfo::Writer& writer, bool locals,
                     const char* skip_prefix) {
    Dwfl_Module* module = dwfl != nullptr ? dwfl_addrmodule(dwfl, frame.lookup_pc()) : nullptr;
    Dwarf_Addr bias = 0;
    Dwarf_Die* unit =
        module != nullptr ? dwfl_module_addrdie(module, frame.lookup_pc(), &bias) : nullptr;
    if (unit == nullptr) return;
    FunctionScopes scopes(unit, frame.lookup_pc() - bias);
    VariableWriter(frame, bias, writer, locals, skip_prefix).write_function(scopes);
}

}  // namespace Core::Detail
