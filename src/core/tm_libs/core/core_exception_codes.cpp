#include "core_exception_codes.h"

#include <csignal>

namespace Core::Detail {
namespace {

struct CodeName {
    uint32_t code;
    const char* name;
};

constexpr CodeName kNames[] = {
    {0x80000001, "EXCEPTION_GUARD_PAGE"},
    {0x80000002, "EXCEPTION_DATATYPE_MISALIGNMENT"},
    {0x80000003, "EXCEPTION_BREAKPOINT"},
    {0x80000004, "EXCEPTION_SINGLE_STEP"},
    {0xC0000005, "EXCEPTION_ACCESS_VIOLATION"},
    {0xC0000006, "EXCEPTION_IN_PAGE_ERROR"},
    {0xC0000008, "EXCEPTION_INVALID_HANDLE"},
    {0xC000001D, "EXCEPTION_ILLEGAL_INSTRUCTION"},
    {0xC0000025, "EXCEPTION_NONCONTINUABLE_EXCEPTION"},
    {0xC0000026, "EXCEPTION_INVALID_DISPOSITION"},
    {0xC000008C, "EXCEPTION_ARRAY_BOUNDS_EXCEEDED"},
    {0xC000008D, "EXCEPTION_FLT_DENORMAL_OPERAND"},
    {0xC000008E, "EXCEPTION_FLT_DIVIDE_BY_ZERO"},
    {0xC000008F, "EXCEPTION_FLT_INEXACT_RESULT"},
    {0xC0000090, "EXCEPTION_FLT_INVALID_OPERATION"},
    {0xC0000091, "EXCEPTION_FLT_OVERFLOW"},
    {0xC0000092, "EXCEPTION_FLT_STACK_CHECK"},
    {0xC0000093, "EXCEPTION_FLT_UNDERFLOW"},
    {0xC0000094, "EXCEPTION_INT_DIVIDE_BY_ZERO"},
    {0xC0000095, "EXCEPTION_INT_OVERFLOW"},
    {0xC0000096, "EXCEPTION_PRIV_INSTRUCTION"},
    {0xC00000FD, "EXCEPTION_STACK_OVERFLOW"},
    {0xC00002B4, "EXCEPTION_FLOAT_MULTIPLE_FAULTS"},
    {0xC00002B5, "EXCEPTION_FLOAT_MULTIPLE_TRAPS"},
};

}  // namespace

uint32_t exception_code(int signal) {
    switch (signal) {
        case SIGSEGV:
            return 0xC0000005;
        case SIGBUS:
            return 0xC0000006;
        case SIGILL:
            return 0xC000001D;
        case SIGFPE:
            return 0xC0000094;
        case SIGTRAP:
            return 0x80000003;
        case SIGABRT:
            return 0x40000015;
        default:
            return 0;
    }
}

const char* exception_name(uint32_t code) {
    for (const CodeName& entry : kNames)
        if (entry.code == code) return entry.name;
    return nullptr;
}

}  // namespace Core::Detail
