// Reading the program's own memory without the risk of a fault: the stack walker looks at
// stacks and variables that may be damaged, so every read goes through the kernel, which
// answers "unreadable" instead of raising SIGSEGV.
//
// Failure style: false or 0 for memory that is not mapped or not readable; nothing is read in
// part. Thread safety: any thread; nothing is shared.
#pragma once

#include <cstddef>
#include <cstdint>

namespace Core::Detail {

// Copies `size` bytes at `address` into `buffer`; false, and `buffer` unspecified, when any
// of them cannot be read.
bool read_own_memory(std::uintptr_t address, void* buffer, std::size_t size);

// Copies the text at `address` into `buffer`, up to a zero byte or `limit` bytes (at most
// `capacity` - 1), and ends it with a zero. Returns false when not even its first byte can be
// read; a text that runs into unreadable memory ends there.
bool read_own_text(std::uintptr_t address, char* buffer, std::size_t capacity, std::size_t limit);

}  // namespace Core::Detail
