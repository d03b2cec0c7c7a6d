// The exception codes that reports give fatal faults, and their names: the codes and names of
// the other platform's reports, so that reports from both read alike.
//
// Failure style: unknown values give 0 and null. Thread safety: constant tables.
#pragma once

#include <cstdint>

namespace Core::Detail {

constexpr uint32_t kCppExceptionCode = 0xE06D7363;  // an uncaught C++ exception

// SIGSEGV C0000005, SIGBUS C0000006, SIGILL C000001D, SIGFPE C0000094, SIGTRAP 80000003,
// SIGABRT 40000015; 0 for any other signal.
uint32_t exception_code(int signal);
// "EXCEPTION_ACCESS_VIOLATION" and the others of the table, or null for a code without a name.
const char* exception_name(uint32_t code);

}  // namespace Core::Detail
