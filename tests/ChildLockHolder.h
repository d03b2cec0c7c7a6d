// Another process holding a writers' lock: a forked child. Fork only while this process runs
// no other thread.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <thread>

#include "core_file_lock.h"

// A child process that takes the lock on `path`, says so through a pipe, and then holds it
// for `hold` (or until it is killed). Answers its pid once it holds the lock.
inline pid_t ChildHolding(const std::string& path, std::chrono::milliseconds hold) {
    int ready[2];
    if (::pipe(ready) != 0) return -1;
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(ready[0]);
        Core::FileLock lock = Core::FileLock::acquire(path, std::chrono::milliseconds(0));
        const char state = lock.held() ? 'y' : 'n';
        if (::write(ready[1], &state, 1) != 1) ::_exit(2);
        std::this_thread::sleep_for(hold);
        ::_exit(0);
    }
    ::close(ready[1]);
    char state = 'n';
    const bool told = ::read(ready[0], &state, 1) == 1;
    ::close(ready[0]);
    EXPECT_TRUE(told && state == 'y') << "the child could not take the lock";
    return child;
}
