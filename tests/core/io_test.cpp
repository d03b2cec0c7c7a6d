#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <memory>

#include "TempDir.h"
#include "core_buffers.h"
#include "core_file_provider.h"
#include "core_folded_index.h"
#include "core_path_match.h"
#include "core_settings.h"

namespace {

// Each test runs in a folder of its own, as the program runs in its root folder.
class IoTest : public testing::Test {
protected:
    TempDir dir;
    std::filesystem::path previous = std::filesystem::current_path();

    void SetUp() override { std::filesystem::current_path(dir.Path()); }
    void TearDown() override { std::filesystem::current_path(previous); }
};

std::vector<std::string> Names(const std::vector<const char*>& found) {
    return std::vector<std::string>(found.begin(), found.end());
}

using Names_ = std::vector<std::string>;

TEST_F(IoTest, BareNameIsFalseFirstAndTrueAfter) {
    dir.Write("readme.txt", "x");
    Core::FileBufferProvider provider;
    EXPECT_FALSE(provider.exists("readme.txt"));
    EXPECT_TRUE(provider.exists("readme.txt"));
}

TEST_F(IoTest, FoldersSeenInAListingExistAndTheCacheIsNotRefreshed) {
    dir.Write("data/ui/button.tga", "x");
    Core::FileBufferProvider fresh;
    EXPECT_FALSE(fresh.exists("data/ui"));  // nothing listed yet

    Core::FileBufferProvider provider;
    EXPECT_TRUE(provider.exists("Data/Button.TGA") == false);
    EXPECT_TRUE(provider.exists("data/ui"));
    EXPECT_TRUE(provider.exists("DATA/UI/BUTTON.TGA"));
    dir.Write("data/ui/later.tga", "x");
    EXPECT_FALSE(provider.exists("data/ui/later.tga"));
    EXPECT_TRUE(provider.file_changed("data/ui/later.tga"));
    EXPECT_TRUE(provider.exists("data/ui/later.tga"));
    provider.clear_cache();
    EXPECT_EQ(provider.counters().lookups, 0u);
}

TEST_F(IoTest, WithoutTheCacheNewFilesAreSeenAtOnce) {
    Core::IOOptions& options = Core::io_options();
    options.disable_file_cache = true;
    Core::FileBufferProvider provider;
    EXPECT_FALSE(provider.exists("a/late.txt"));
    dir.Write("a/late.txt", "x");
    EXPECT_TRUE(provider.exists("a/late.txt"));
    EXPECT_TRUE(provider.exists("A/Late.TXT"));  // as open finds it
    EXPECT_FALSE(provider.exists("a"));          // a folder is no file
    options.disable_file_cache = false;
}

TEST_F(IoTest, FindStopsWhereASubfolderBeginsUnlessRecursive) {
    for (const char* name : {"data/a.tga", "data/art/x.tga", "data/b.tga", "data/c.png"})
        dir.Write(name, "x");
    Core::FileBufferProvider provider;
    EXPECT_EQ(Names(provider.find("data/*.tga", 0)), (Names_{"data/a.tga", "data/b.tga"}));
    // Once data/art is listed, a plain find stops at its first key: b.tga sorts behind it.
    provider.find("data/art/*", 0);
    EXPECT_EQ(Names(provider.find("data/*.tga", 0)), (Names_{"data/a.tga"}));
    Core::FileBufferProvider recursive;
    EXPECT_EQ(Names(recursive.find("data/*.tga", Core::IOManager::kFindRecursive)),
              (Names_{"data/a.tga", "data/art/x.tga", "data/b.tga"}));
}

TEST_F(IoTest, NamesAreFoundWithoutRegardToCaseAndHandedOutAsOnDisk) {
    dir.Write("Pages/UI Main.TGA", "x");
    Core::FileBufferProvider provider;
    EXPECT_EQ(Names(provider.find("pages/*.tga", 0)), (Names_{"Pages/UI Main.TGA"}));
    EXPECT_TRUE(provider.exists("PAGES/ui main.tga"));
    const auto buffer = provider.open(std::string("pages/ui main.tga"));
    ASSERT_TRUE(buffer);
    EXPECT_EQ(buffer->size(), 1u);
}

TEST_F(IoTest, OpenFindsAFileWrittenLaterInOtherCapitals) {
    dir.Write("pages/a.tga", "x");
    Core::FileBufferProvider provider;
    ASSERT_TRUE(provider.open(std::string("PAGES/A.TGA")));  // the folder is listed now
    EXPECT_FALSE(provider.open(std::string("PAGES/LATER.TGA")));
    dir.Write("pages/later.tga", "x");
    EXPECT_TRUE(provider.open(std::string("PAGES/LATER.TGA")));
}

// The count of read system calls this process has made so far.
uint64_t ReadCalls() {
    std::ifstream io("/proc/self/io");
    std::string key;
    uint64_t value = 0;
    while (io >> key >> value) {
        if (key == "syscr:") return value;
    }
    return 0;
}

TEST_F(IoTest, ByteReadsAreServedFromTheStreamBuffer) {
    const std::string bytes(1 << 20, 'q');
    dir.Write("large.bin", bytes);
    Core::FileBufferProvider provider;
    const auto buffer = provider.open(std::string("large.bin"));
    ASSERT_TRUE(buffer);
    const uint64_t before = ReadCalls();
    uint64_t sum = 0;
    for (int byte = buffer->get(); byte >= 0; byte = buffer->get())
        sum += static_cast<uint64_t>(byte);
    EXPECT_EQ(sum, uint64_t{'q'} << 20);
    // One call per buffer fill; a seek per byte would make it one per byte.
    EXPECT_LT(ReadCalls() - before, 1000u);
    // A seek moves the stream once, and reading goes on from there.
    ASSERT_TRUE(buffer->seek(5));
    EXPECT_EQ(buffer->get(), 'q');
    EXPECT_EQ(buffer->tell(), 6u);
}

TEST_F(IoTest, LinksThatLoopDoNotHangARecursiveScan) {
    dir.Write("tree/a.tga", "x");
    std::filesystem::create_directory_symlink(dir.Path() / "tree", dir.Path() / "tree/again");
    std::filesystem::create_symlink(dir.Path() / "gone", dir.Path() / "tree/broken");
    Core::FileBufferProvider provider;
    const auto found = Names(provider.find("tree/*.tga", Core::IOManager::kFindRecursive));
    EXPECT_EQ(found.front(), "tree/a.tga");
    EXPECT_LE(found.size(), 3u);
}

TEST_F(IoTest, DirectoryChangedForgetsTheFolderFiles) {
    dir.Write("pages/a.tga", "x");
    dir.Write("pages/b.tga", "x");
    Core::FileBufferProvider provider;
    EXPECT_TRUE(provider.exists("pages/a.tga"));
    std::filesystem::remove(dir.Path() / "pages/b.tga");
    provider.directory_changed("pages/b.tga");
    EXPECT_FALSE(provider.exists("pages/b.tga"));
    // As it stands: every file of the folder is forgotten until the cache is cleared.
    EXPECT_FALSE(provider.exists("pages/a.tga"));
}

TEST_F(IoTest, BuffersNeverReadPastTheEnd) {
    dir.Write("five.bin", "12345");
    Core::FileBufferProvider provider;
    const auto buffer = provider.open(std::string("five.bin"));
    ASSERT_TRUE(buffer);
    char bytes[8] = {};
    EXPECT_EQ(buffer->read(bytes, 3), 3u);
    EXPECT_EQ(buffer->get(), '4');
    EXPECT_EQ(buffer->read(bytes, 8), 1u);
    EXPECT_TRUE(buffer->eof());
    EXPECT_EQ(buffer->get(), -1);
    EXPECT_FALSE(buffer->seek(6));
    EXPECT_TRUE(buffer->skip(-5));
    EXPECT_FALSE(buffer->skip(-1));
    ASSERT_NE(buffer->data(), nullptr);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(buffer->data()), 5), "12345");
    EXPECT_EQ(buffer->tell(), 0u);
    EXPECT_FALSE(provider.open(std::string(".")));  // only regular files open
}

class IoManagerTest : public IoTest {
protected:
    std::unique_ptr<Core::IOManager> manager;
    void SetUp() override {
        IoTest::SetUp();
        manager = std::make_unique<Core::IOManager>();
    }
};

TEST_F(IoManagerTest, FilterLaterLinesOutrankEarlierOnes) {
    for (const char* name : {"ui/a.tga", "b.tga"})
        dir.Write(name, "x");
    manager->load_filter(dir.Write("filter.txt", "-*.tga\n+ui/*.tga\n"));
    EXPECT_TRUE(manager->filtered());
    EXPECT_FALSE(manager->excluded("ui/a.tga"));
    EXPECT_TRUE(manager->excluded("b.tga"));
    EXPECT_TRUE(manager->open("ui/a.tga"));
    EXPECT_FALSE(manager->open("b.tga"));
    EXPECT_TRUE(manager->open(L"b.tga"));  // wide paths are never filtered

    Core::IOManager reverse;
    reverse.load_filter(dir.Write("reverse.txt", "+ui/*.tga\n-*.tga\n"));
    EXPECT_TRUE(reverse.excluded("ui/a.tga"));
    EXPECT_TRUE(reverse.excluded("B.TGA"));
}

TEST_F(IoManagerTest, LongAndGarbageFilterLinesAreReadInPieces) {
    // A line of 2046 characters is two rules of 1023: an exclusion of "b.tga" and a piece of
    // x's; binary noise makes rules that match nothing.
    std::string filter = "-b.tga" + std::string(1017, 'x') + "+b.tga" + std::string(1017, 'y');
    filter += "\n\x01\xff\x80*\n";
    manager->load_filter(dir.Write("filter.txt", filter));
    EXPECT_FALSE(manager->excluded("b.tga"));  // the later piece includes it
    EXPECT_FALSE(manager->excluded("a.tga"));
    manager->load_filter(dir.File("missing.txt"));
    EXPECT_TRUE(manager->filtered());
}

TEST_F(IoManagerTest, OpenOrThrowAndInputBuffers) {
    dir.Write("text.txt", std::string("\xFF\xFE"
                                      "a",
                                      3));
    EXPECT_THROW(manager->open_or_throw("missing.txt"), std::ios_base::failure);
    Core::InputBuffer buffer;
    EXPECT_TRUE(buffer.open_skipping_signature(L"text.txt"));
    EXPECT_EQ(buffer.get(), 'a');
    EXPECT_FALSE(buffer.open("missing.txt"));
    testing::internal::CaptureStderr();
    EXPECT_TRUE(buffer.eof());
    EXPECT_EQ(buffer.read(nullptr, 4), 0u);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("Invalid INPUT_BUFFER!"),
              std::string::npos);
}

TEST_F(IoManagerTest, FindMergesProvidersAndMountingFollowsFileFirst) {
    struct Named : Core::InputBufferProvider {
        std::string label;
        std::vector<const char*> names;
        explicit Named(std::string text) : label(std::move(text)) {}
        std::shared_ptr<Core::InputBufferImpl> open(const std::wstring&) override { return {}; }
        std::shared_ptr<Core::InputBufferImpl> open(const std::string&) override { return {}; }
        bool exists(const std::string& path) override { return path == label; }
        std::vector<const char*> find(const std::string&, unsigned) override { return names; }
        const char* name() const override { return label.c_str(); }
    };
    dir.Write("a/x.tga", "x");
    auto pack = std::make_shared<Named>("pack");
    pack->names = {"a/x.tga", "a/w.tga"};
    manager->mount_provider(pack);
    EXPECT_EQ(Names(manager->find("A/*.tga", 0)), (Names_{"a/w.tga", "a/x.tga"}));
    EXPECT_TRUE(manager->exists("pack"));
    EXPECT_TRUE(manager->mount(""));
    EXPECT_TRUE(manager->mount("ui.pack"));  // neither a pack nor a folder of packs
}

TEST(PathMatchTest, DirectoriesComponentsAndAlternatives) {
    using Core::match;
    EXPECT_TRUE(match("*.tga", "ui/a.tga", false));  // no folder: the last component alone
    EXPECT_TRUE(match("ui/*.tga", "ui/a.tga", false));
    EXPECT_FALSE(match("ui/*.tga", "ui/sub/a.tga", false));
    EXPECT_TRUE(match("ui/*.tga", "ui/sub/a.tga", true));
    EXPECT_TRUE(match("ui/<", "ui/sub/a.tga", false));
    EXPECT_TRUE(match("*/a.tga", "ui/a.tga", false));
    EXPECT_FALSE(match("*/a.tga", "x/ui/a.tga", false));
    EXPECT_TRUE(match("u?/a.tga", "ui/a.tga", false));
    EXPECT_TRUE(match("ui\\b/a.tga", "ui/b/a.tga", false));
    EXPECT_FALSE(match("ui\\a.tga", "ui/a.tga", false));  // no '/': '\\' is a character
    EXPECT_TRUE(match("abc.*", "abc", false));
    EXPECT_TRUE(match("abc*.", "abc", false));
    EXPECT_FALSE(match("abc.x", "abc", false));
    EXPECT_TRUE(match("*.png;*.tga", "a.tga", false));
    EXPECT_FALSE(match("*.png;*.bmp", "a.tga", false));
    EXPECT_FALSE(match("a.tga", "A.tga", false));
    EXPECT_TRUE(match("*", "", false));
    EXPECT_EQ(Core::fold_path("Data/\xC3\x89T\xC3\xA9.TGA"), "data/\xC3\x89t\xC3\xA9.tga");
}

// The last bytes of a text are read by loads that overlap, a different way for each length:
// each length must fold its tail as fold_path does, without reading past the text (each text
// lies in a buffer of exactly its size, for the address sanitizer to watch).
TEST(PathMatchTest, FoldedHashAndEqualityAgreeWithFoldPathAtEveryLength) {
    const std::string letters = "Ab/Z\xC3\x89z@[`{.Q_9aMyFILE.Tga";
    for (size_t length = 0; length <= 24; ++length) {
        const std::string text = letters.substr(0, length);
        const std::unique_ptr<char[]> exact(new char[length]);
        std::copy(text.begin(), text.end(), exact.get());
        const std::string_view spelled(exact.get(), length);
        const std::string folded = Core::fold_path(text);

        uint64_t lanes = 0;
        for (size_t at = length / 8 * 8; at < length; ++at)
            lanes |= uint64_t{static_cast<uint8_t>(folded[at])} << (8 * (at % 8));
        EXPECT_EQ(Core::Detail::folded_tail(spelled), lanes) << length;
        EXPECT_EQ(Core::folded_hash(spelled), Core::folded_hash(folded)) << length;
        EXPECT_TRUE(Core::folded_equal(spelled, folded)) << length;
        // A change of any one byte, to a letter that does not fold to it, is seen.
        for (size_t at = 0; at < length; ++at) {
            std::string other = folded;
            other[at] = other[at] == 'x' ? 'y' : 'X';
            EXPECT_FALSE(Core::folded_equal(spelled, other)) << length << " at " << at;
        }
    }
}

// Removing from an open-addressed table shifts later members of a probe run back; a member
// left where a probe cannot reach it would be a file the cache no longer finds.
TEST(PathMatchTest, FoldedIndexFindsEveryKeyLeftAfterRemovals) {
    std::map<std::string, int> nodes;
    Core::FoldedIndex<std::map<std::string, int>::value_type> index;
    for (int number = 0; number < 3000; ++number)
        index.insert(&*nodes.emplace("d" + std::to_string(number) + "/f.tga", number).first);
    for (auto node = nodes.begin(); node != nodes.end();) {
        if (node->second % 3 != 0) {
            ++node;
            continue;
        }
        index.erase(&*node);
        node = nodes.erase(node);
    }
    for (int number = 0; number < 3000; ++number) {
        const auto* found = index.find("D" + std::to_string(number) + "/F.TGA");
        ASSERT_EQ(found != nullptr, number % 3 != 0) << number;
        if (found != nullptr) {
            EXPECT_EQ(found->second, number);
        }
    }
}

}  // namespace
