#include "core_stack_symbols.h"

#include <cxxabi.h>

#include <cstdlib>
#include <cstring>

namespace Core::Detail {
namespace {

// The parameter list is the last parenthesised group; the qualifiers behind it (" const",
// " &&") go with it, and so does a compiler's suffix for a copy it made (" [clone .cold]").
void drop_parameter_list(char* name) {
    char* end = std::strstr(name, " [clone ");
    if (end != nullptr) *end = '\0';
    char* close = std::strrchr(name, ')');
    int depth = 0;
    for (char* at = close; at != nullptr && at >= name; --at) {
        if (*at == ')') ++depth;
        if (*at == '(' && --depth == 0) {
            *at = '\0';
            return;
        }
    }
}

void append_readable_name(const char* symbol, FixedText& text) {
    // A versioned symbol ("memcpy@@GLIBC_2.14") is named without its version.
    FixedText bare;
    bare.append("%.*s", static_cast<int>(std::strcspn(symbol, "@")), symbol);
    int status = -1;
    char* demangled = abi::__cxa_demangle(bare.c_str(), nullptr, nullptr, &status);
    if (status == 0 && demangled != nullptr) {
        drop_parameter_list(demangled);
        text.append("%s", demangled);
    } else {
        text.append("%s", bare.c_str());
    }
    std::free(demangled);
}

}  // namespace

bool find_function(Dwfl* dwfl, std::uintptr_t address, FunctionName& name) {
    Dwfl_Module* module = dwfl != nullptr ? dwfl_addrmodule(dwfl, address) : nullptr;
    if (module == nullptr) return false;
    GElf_Off offset = 0;
    GElf_Sym symbol;
    const char* mangled =
        dwfl_module_addrinfo(module, address, &offset, &symbol, nullptr, nullptr, nullptr);
    if (mangled == nullptr || *mangled == '\0') return false;
    name.text.clear();
    append_readable_name(mangled, name.text);
    name.start = address - offset;
    return true;
}

bool find_source_line(Dwfl* dwfl, std::uintptr_t address, SourceLine& line) {
    Dwfl_Module* module = dwfl != nullptr ? dwfl_addrmodule(dwfl, address) : nullptr;
    Dwfl_Line* entry = module != nullptr ? dwfl_module_getsrc(module, address) : nullptr;
    if (entry == nullptr) return false;
    line.file = dwfl_lineinfo(entry, nullptr, &line.line, nullptr, nullptr, nullptr);
    return line.file != nullptr;
}

}  // namespace Core::Detail
