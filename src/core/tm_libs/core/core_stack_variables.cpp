#include "core_stack_variables.h"

#include <dwarf.h>

#include <cstring>

#include "core_dwarf_types.h"
#include "core_fixed_text.h"
#include "core_stack_locations.h"
#include "core_stack_memory.h"
#include "core_stack_scopes.h"

namespace Core::Detail {
namespace {

constexpr int kMaxDepth = 9;
constexpr int kMaxMembersRead = 512;
constexpr int kMaxMembersKept = 32;
constexpr std::size_t kTextLength = 31;

class VariableWriter {
public:
    VariableWriter(const VariableLocator& locator, StackInfo::Writer& writer, bool locals,
                   const char* skip_prefix)
        : locator_(locator),
          writer_(writer),
          locals_(locals),
          skip_prefix_(skip_prefix != nullptr && *skip_prefix != '\0' ? skip_prefix : nullptr) {}

    void write_scope(Dwarf_Die* scope) {
        Dwarf_Die child;
        if (dwarf_child(scope, &child) != 0) return;
        do {
            write_variable(&child);
        } while (dwarf_siblingof(&child, &child) == 0);
    }

private:
    void write_variable(Dwarf_Die* variable) {
        const int tag = dwarf_tag(variable);
        if (tag != DW_TAG_formal_parameter && !(locals_ && tag == DW_TAG_variable)) return;
        const char* name = dwarf_diename(variable);
        if (name == nullptr || skipped(name)) return;
        const Location where = locator_.locate(variable);
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

    bool skipped(const char* name) const {
        return skip_prefix_ != nullptr &&
               std::strncmp(name, skip_prefix_, std::strlen(skip_prefix_)) == 0;
    }

    void write_member(Dwarf_Die* member, std::uintptr_t address, int depth) {
        const char* name = member_name(member);
        line_.clear();
        line_.append("%*c%s", depth * 4, ' ', name != nullptr ? name : "");
        write_contents(member, address, depth);
    }

    // Ends the line of a variable (depth 1) or member with its type's name and its value, or
    // writes its members on the lines below.
    void write_contents(Dwarf_Die* typed, std::uintptr_t address, int depth) {
        Dwarf_Die type;
        Dwarf_Die layout;
        const bool known = type_of(typed, type) && layout_of(typed, layout);
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

    // The value by its size, as the reports have always shown it.
    void write_value(Dwarf_Die* layout, std::uintptr_t address) {
        Dwarf_Word size = 0;
        if (layout == nullptr || dwarf_aggregate_size(layout, &size) != 0) size = 0;
        unsigned char bytes[8] = {};
        if (!read_own_memory(address, bytes, size == 0 ? 1 : size < 8 ? size : 8)) {
            line_.append("  ????");
            return;
        }
        switch (size) {
            case 1:
                return line_.append("  %02X", bytes[0]);
            case 2:
                return line_.append("  %04X", load<std::uint16_t>(bytes));
            case 4:
                if (is_float(layout))
                    return line_.append("  %f", static_cast<double>(load<float>(bytes)));
                return line_.append("  %08X", load<std::uint32_t>(bytes));
            case 8:
                if (is_char_pointer(layout) &&
                    append_text(load<std::uintptr_t>(bytes), kTextLength))
                    return;
                // Of a double, the low half.
                if (is_float(layout)) return line_.append("  %08X", load<std::uint32_t>(bytes));
                return line_.append("  %016llX", load<unsigned long long>(bytes));
            default:
                if (size != 0 && is_char_array(layout) &&
                    append_text(address, size < kTextLength ? size : kTextLength))
                    return;
                line_.append("  {}");
        }
    }

    template <typename Value>
    static Value load(const unsigned char* bytes) {
        Value value;
        std::memcpy(&value, bytes, sizeof value);
        return value;
    }

    bool append_text(std::uintptr_t address, std::size_t limit) {
        char text[kTextLength + 1];
        if (!read_own_text(address, text, sizeof text, limit)) return false;
        line_.append("  '%.31s'", text);
        return true;
    }

    const VariableLocator& locator_;
    StackInfo::Writer& writer_;
    bool locals_;
    const char* skip_prefix_;
    FixedText line_;  // one line at a time: each is written before the members below it
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
    if (scopes.function() == nullptr) return;
    const VariableLocator locator(frame, bias, scopes.function());
    VariableWriter variables(locator, writer, locals, skip_prefix);
    scopes.each([&variables](Dwarf_Die* scope) { variables.write_scope(scope); });
}

}  // namespace Core::Detail
