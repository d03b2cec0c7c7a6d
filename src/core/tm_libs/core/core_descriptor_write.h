// Writing to a file descriptor from a process that may be in a bad state: the report files
// and the crash dump are written so, from buffers on the stack, with no stdio buffer that a
// crash could leave unwritten.
#pragma once

#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>

namespace Core::Detail {

// The raw system call: the kernel reads the bytes and answers EFAULT for memory that cannot
// be read, where a copy of our own would fault. It also stays out of the sanitizers' view of
// write(), which would take the guard zones between stack variables for a bad read.
inline ssize_t write_raw(int descriptor, const void* data, size_t size) {
    return syscall(SYS_write, descriptor, data, size);
}

// Writes all of `size` bytes, or answers false.
inline bool write_fully(int descriptor, const void* data, size_t size) {
    const char* at = static_cast<const char*>(data);
    while (size > 0) {
        const ssize_t written = write_raw(descriptor, at, size);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        at += written;
        size -= static_cast<size_t>(written);
    }
    return true;
}

}  // namespace Core::Detail
