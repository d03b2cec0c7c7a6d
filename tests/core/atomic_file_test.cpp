#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <vector>

#include "TempDir.h"
#include "core_atomic_file.h"
#include "core_file_transaction.h"

namespace {

TEST(AtomicFileTest, ReplacesContentAndKeepsPermissions) {
    TempDir dir;
    const std::string path = dir.Write("page.qlt", "old");
    std::filesystem::permissions(path, std::filesystem::perms(0640));
    std::string error;
    ASSERT_TRUE(Core::write_file_atomically(path, "new\r\n", error)) << error;
    EXPECT_EQ(ReadFile(path), "new\r\n");
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0640));
    // Nothing is left behind beside the file.
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.Path()),
                            std::filesystem::directory_iterator()),
              1);
}

TEST(AtomicFileTest, FailedRenameLeavesTargetAndNoTemporary) {
    TempDir dir;
    // A folder in the way cannot be replaced by a file.
    dir.Write("page.qlt/keep", "kept");
    std::string error;
    EXPECT_FALSE(Core::write_file_atomically(dir.File("page.qlt"), "new", error));
    EXPECT_FALSE(error.empty());
    EXPECT_EQ(ReadFile(dir.File("page.qlt/keep")), "kept");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.Path()),
                            std::filesystem::directory_iterator()),
              1);
}

TEST(AtomicFileTest, FolderThatDoesNotExistFails) {
    TempDir dir;
    std::string error;
    EXPECT_FALSE(Core::write_file_atomically(dir.File("missing/x.qlt"), "x", error));
    EXPECT_FALSE(error.empty());
}

TEST(AtomicFileTest, ReadsOnlyRegularFiles) {
    TempDir dir;
    std::string bytes;
    std::string error;
    EXPECT_TRUE(Core::read_whole_file(dir.Write("a.qlt", std::string("a\0b", 3)), bytes, error));
    EXPECT_EQ(bytes, std::string("a\0b", 3));
    EXPECT_FALSE(Core::read_whole_file(dir.Path().string(), bytes, error));
    EXPECT_EQ(error, "Not a regular file");
    EXPECT_FALSE(Core::read_whole_file(dir.File("none.qlt"), bytes, error));
    EXPECT_EQ(error, "No such file");
}

}  // namespace

namespace {

using Core::FileTransaction;

size_t EntriesIn(const std::filesystem::path& folder) {
    return static_cast<size_t>(std::distance(std::filesystem::directory_iterator(folder),
                                             std::filesystem::directory_iterator()));
}

TEST(FileTransactionTest, ALinkIsFollowedAndItsTargetReplaced) {
    TempDir dir;
    const std::string target = dir.Write("pages/real.tga", "old");
    std::filesystem::create_symlink("pages/real.tga", dir.File("link.tga"));
    FileTransaction transaction;
    ASSERT_TRUE(transaction.stage(dir.File("link.tga"), "new"));
    ASSERT_TRUE(transaction.commit()) << transaction.failure().reason;
    EXPECT_TRUE(std::filesystem::is_symlink(dir.File("link.tga")));
    EXPECT_EQ(ReadFile(target), "new");
    EXPECT_EQ(EntriesIn(dir.Path() / "pages"), 1u);
}

// Read-only means no write bit at all, for a process that could write anyway as well.
TEST(FileTransactionTest, ReadOnlyFilesFoldersAndEmptyNamesAreRefusedBeforeAnyWrite) {
    TempDir dir;
    const std::string locked = dir.Write("locked.qlt", "kept");
    std::filesystem::permissions(locked, std::filesystem::perms(0444));
    const std::string page = dir.Write("page.tga", "page");
    std::filesystem::create_directory(dir.File("folder.qlt"));

    FileTransaction transaction;
    ASSERT_TRUE(transaction.stage(page, "new page"));
    EXPECT_FALSE(transaction.stage(locked, "new"));
    EXPECT_TRUE(transaction.failure().read_only);
    EXPECT_EQ(transaction.failure().path, locked);
    EXPECT_EQ(ReadFile(locked), "kept");
    EXPECT_EQ(ReadFile(page), "page");
    EXPECT_EQ(EntriesIn(dir.Path()), 3u) << "the page's temporary is gone";

    FileTransaction folder;
    EXPECT_FALSE(folder.stage(dir.File("folder.qlt"), "x"));
    EXPECT_EQ(folder.failure().reason, "Is a directory");
    FileTransaction unnamed;
    EXPECT_FALSE(unnamed.stage("", "x"));
    EXPECT_EQ(unnamed.failure().reason, "the file has no name");
    std::string error;
    EXPECT_FALSE(Core::write_file_atomically(locked, "x", error));
    EXPECT_EQ(error, "the file is read-only");
}

TEST(FileTransactionTest, NamesAsLongAsTheSystemAllowsStillSave) {
    TempDir dir;
    const std::string path = dir.Write(std::string(251, 'p') + ".tga", "old");
    std::filesystem::permissions(path, std::filesystem::perms(0604));
    std::string error;
    ASSERT_TRUE(Core::write_file_atomically(path, "new", error)) << error;
    EXPECT_EQ(ReadFile(path), "new");
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0604));
}

// Every write, flush and rename of a transaction of three files, made to fail in turn: the
// folder afterwards holds exactly what it held before, a new file included.
TEST(FileTransactionTest, AFailureAtAnyStepLeavesEveryFileAsItWas) {
    TempDir dir;
    const std::string first = dir.Write("1.tga", "one");
    const std::string second = dir.Write("2.tga", "two");
    const std::string fresh = dir.File("new.qlt");
    const std::vector<std::string> failing = {first, first, second, second, fresh,
                                              fresh, first, second, fresh};
    for (size_t step = 1; step <= failing.size(); ++step) {
        FileTransaction transaction;
        Core::Detail::fail_file_step(static_cast<int>(step));
        const bool done = transaction.stage(first, "ONE") && transaction.stage(second, "TWO") &&
                          transaction.stage(fresh, "NEW") && transaction.commit();
        Core::Detail::fail_file_step(0);
        EXPECT_FALSE(done) << "step " << step;
        EXPECT_EQ(transaction.failure().path, failing[step - 1]) << "step " << step;
        EXPECT_EQ(transaction.failure().reason, std::strerror(ENOSPC));
        EXPECT_EQ(ReadFile(first), "one") << "step " << step;
        EXPECT_EQ(ReadFile(second), "two") << "step " << step;
        EXPECT_FALSE(std::filesystem::exists(fresh)) << "step " << step;
        EXPECT_EQ(EntriesIn(dir.Path()), 2u) << "step " << step;
    }
    FileTransaction transaction;
    ASSERT_TRUE(transaction.stage(first, "ONE") && transaction.stage(fresh, "NEW") &&
                transaction.commit());
    EXPECT_EQ(ReadFile(first), "ONE");
    EXPECT_EQ(ReadFile(fresh), "NEW");
    EXPECT_EQ(EntriesIn(dir.Path()), 3u);
}

TEST(FileTransactionTest, ATransactionNeverCommittedLeavesNothingBehind) {
    TempDir dir;
    const std::string path = dir.Write("page.tga", "old");
    {
        FileTransaction transaction;
        ASSERT_TRUE(transaction.stage(path, "new"));
        EXPECT_EQ(EntriesIn(dir.Path()), 2u);
    }
    EXPECT_EQ(ReadFile(path), "old");
    EXPECT_EQ(EntriesIn(dir.Path()), 1u);
}

}  // namespace
