// The writers' lock between processes: a forked child stands for the other writer.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "ChildLockHolder.h"
#include "TempDir.h"
#include "core_file_lock.h"

namespace {

using Core::FileLock;
using namespace std::chrono_literals;

int WaitFor(pid_t child) {
    int status = 0;
    ::waitpid(child, &status, 0);
    return status;
}

TEST(FileLock, AnotherProcessWaitsAndGivesUpOrTakesItWhenLetGo) {
    TempDir dir;
    const std::string project = dir.File("menu.qlt");
    const pid_t holder = ChildHolding(project, 400ms);

    const FileLock refused = FileLock::acquire(project, 50ms);
    EXPECT_EQ(refused.state(), FileLock::State::busy);

    const auto start = std::chrono::steady_clock::now();
    const FileLock taken = FileLock::acquire(project, 5000ms);
    EXPECT_TRUE(taken.held());
    EXPECT_LT(std::chrono::steady_clock::now() - start, 4000ms);
    WaitFor(holder);
}

TEST(FileLock, AKilledHolderBlocksNobody) {
    TempDir dir;
    const std::string project = dir.File("menu.qlt");
    const pid_t holder = ChildHolding(project, 60000ms);
    EXPECT_EQ(FileLock::acquire(project, 20ms).state(), FileLock::State::busy);

    ::kill(holder, SIGKILL);
    WaitFor(holder);
    // The killed holder could not remove its lock file; it must not matter.
    EXPECT_TRUE(std::filesystem::exists(FileLock::lock_path_of(project)));
    FileLock lock = FileLock::acquire(project, 0ms);
    EXPECT_TRUE(lock.held());
    lock.release();
    EXPECT_FALSE(std::filesystem::exists(FileLock::lock_path_of(project)));
}

TEST(FileLock, OneProcessSharesItsLockUntilTheLastHolderLetsGo) {
    TempDir dir;
    const std::string project = dir.File("menu.qlt");
    FileLock command = FileLock::acquire(project, 0ms);
    FileLock save = FileLock::acquire(project, 0ms);
    EXPECT_TRUE(command.held());
    EXPECT_TRUE(save.held());

    save.release();
    EXPECT_EQ(save.state(), FileLock::State::none);
    EXPECT_TRUE(std::filesystem::exists(FileLock::lock_path_of(project)));
    {
        const FileLock moved = std::move(command);
        EXPECT_TRUE(moved.held());
        EXPECT_FALSE(command.held());
        EXPECT_TRUE(std::filesystem::exists(FileLock::lock_path_of(project)));
    }
    EXPECT_FALSE(std::filesystem::exists(FileLock::lock_path_of(project)));
}

TEST(FileLock, EveryNameOfAFileFindsOneLockFile) {
    TempDir dir;
    const std::string project = dir.Write("real/menu.qlt", "x");
    std::filesystem::create_symlink(project, dir.File("link.qlt"));
    EXPECT_EQ(FileLock::lock_path_of(dir.File("link.qlt")), project + ".lock");
    EXPECT_EQ(FileLock::lock_path_of(dir.File("real/../real/menu.qlt")), project + ".lock");

    // A name as long as the system allows still has a lock file of its own.
    const std::string long_name(250, 'n');
    const std::string long_path = dir.File(long_name + ".qlt");
    const std::string lock_path = FileLock::lock_path_of(long_path);
    const std::string lock_name = std::filesystem::path(lock_path).filename().string();
    EXPECT_EQ(lock_name.size(), 255u);
    EXPECT_EQ(lock_name.substr(0, 200), long_name.substr(0, 200));
    EXPECT_NE(lock_path, FileLock::lock_path_of(dir.File(long_name + ".qlx")));
    EXPECT_TRUE(FileLock::acquire(long_path, 0ms).held());
}

TEST(FileLock, AFolderThatCannotHoldTheLockFileSaysWhy) {
    TempDir dir;
    const FileLock lock = FileLock::acquire(dir.File("missing/menu.qlt"), 0ms);
    EXPECT_EQ(lock.state(), FileLock::State::unavailable);
    EXPECT_EQ(lock.reason(), "No such file or directory");
    EXPECT_EQ(FileLock::acquire("", 0ms).state(), FileLock::State::unavailable);
}

}  // namespace
