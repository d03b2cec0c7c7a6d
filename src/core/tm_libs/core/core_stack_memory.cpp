#include "core_stack_memory.h"

#include <sys/uio.h>
#include <unistd.h>

#include <cstring>

namespace Core::Detail {
namespace {

// The smallest page of the machine: a read that stays inside one such page stays inside one
// real page, whatever size the real pages are.
constexpr std::uintptr_t kPageSize = 4096;

}  // namespace

// process_vm_readv on our own process copies through the kernel and reports EFAULT for memory
// that is not mapped or not readable, where a plain read would fault. It honours page
// protections, unlike /proc/self/mem.
bool read_own_memory(std::uintptr_t address, void* buffer, std::size_t size) {
    if (size == 0) return true;
    iovec local{buffer, size};
    iovec remote{reinterpret_cast<void*>(address), size};
    return ::process_vm_readv(::getpid(), &local, 1, &remote, 1, 0) == static_cast<ssize_t>(size);
}

// A read of several bytes fails whole when one page of it cannot be read, so the text is read
// a page at a time: its readable start is kept.
bool read_own_text(std::uintptr_t address, char* buffer, std::size_t capacity, std::size_t limit) {
    if (capacity == 0) return false;
    const std::size_t wanted = limit < capacity - 1 ? limit : capacity - 1;
    std::size_t done = 0;
    while (done < wanted) {
        const std::uintptr_t at = address + done;
        const std::size_t to_page_end = static_cast<std::size_t>(kPageSize - at % kPageSize);
        const std::size_t chunk = wanted - done < to_page_end ? wanted - done : to_page_end;
        if (!read_own_memory(at, buffer + done, chunk)) break;
        const void* end = std::memchr(buffer + done, '\0', chunk);
        done += chunk;
        if (end != nullptr) return true;
    }
    buffer[done] = '\0';
    return done > 0;
}

}  // namespace Core::Detail
