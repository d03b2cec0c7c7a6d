// Packs made by our writer, read back through the provider and its buffers.
#include <gtest/gtest.h>

#include <fstream>
#include <random>

#include "PackTestSupport.h"
#include "TempDir.h"
#include "core_pack_buffer.h"
#include "core_pack_provider.h"
#include "core_pack_writer.h"

namespace {

constexpr uint32_t kBlock = 65536;

std::string Random(size_t size, unsigned seed) {
    std::mt19937 random(seed);
    std::string bytes(size, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

// Text that LZO shrinks, different at every offset so that a misplaced byte shows.
std::string Compressible(size_t size) {
    std::string bytes;
    for (size_t line = 0; bytes.size() < size; ++line)
        bytes += "line " + std::to_string(line) + " of the pack test\n";
    bytes.resize(size);
    return bytes;
}

class PackReaderTest : public testing::Test {
protected:
    TempDir dir;
    std::map<std::string, std::string> files = {
        {"empty", ""},
        {"one", "1"},
        {"Upper/Case.TXT", "capitals"},
        {"text/block", Compressible(kBlock)},
        {"text/two-blocks", Compressible(2 * kBlock)},
        {"text/long", Compressible(5 * kBlock + 1234)},
        {"noise/block-and-one", Random(kBlock + 1, 1)},
        {"noise/three-blocks", Random(3 * kBlock, 2)},
        {"mixed", Random(kBlock, 3) + Compressible(kBlock) + Random(777, 4)},
    };
    Core::PackBufferProvider provider;

    void SetUp() override {
        for (const auto& [name, bytes] : files)
            dir.Write("in/" + name, bytes);
        std::string error;
        ASSERT_EQ(Core::write_pack(dir.File("test.pack"), dir.File("in"), error),
                  Core::PackWriteResult::written)
            << error;
        ASSERT_TRUE(provider.load(dir.File("test.pack").c_str())) << provider.error();
    }

    std::shared_ptr<Core::InputBufferImpl> Open(const std::string& name) {
        auto buffer = provider.open(name);
        EXPECT_TRUE(buffer) << name;
        return buffer;
    }

    // The stored sizes of the blocks of `name`.
    std::vector<uint32_t> StoredSizes(const std::string& name) {
        const Core::PackTable& table = provider.pack()->table();
        const auto found = table.lookup(name.c_str());
        const Core::PackTable::Entry entry = table.entry(found.index);
        std::vector<uint32_t> sizes;
        for (uint64_t block = 0; block < Core::PackTable::block_count(entry.size); ++block)
            sizes.push_back(table.block_size(static_cast<uint32_t>(entry.first_block + block)));
        return sizes;
    }
};

TEST_F(PackReaderTest, EveryEntryReadsBackWholeInAnyPieceSize) {
    for (const auto& [name, bytes] : files) {
        for (const unsigned piece : {1u, 1000u, kBlock - 1, kBlock, kBlock + 1, 1u << 20}) {
            if (piece == 1 && bytes.size() > 3 * kBlock) continue;  // slow and nothing new
            const auto buffer = Open(name);
            EXPECT_EQ(buffer->size(), bytes.size());
            EXPECT_EQ(ReadRest(*buffer, piece), bytes) << name << " in pieces of " << piece;
            EXPECT_TRUE(buffer->eof());
            EXPECT_FALSE(buffer->failed());
            EXPECT_TRUE(buffer->from_pack());
        }
    }
}

TEST_F(PackReaderTest, BlocksThatDoNotShrinkAreStoredRaw) {
    EXPECT_EQ(StoredSizes("one"), std::vector<uint32_t>{1});
    EXPECT_EQ(StoredSizes("noise/three-blocks"), std::vector<uint32_t>(3, kBlock));
    EXPECT_EQ(StoredSizes("noise/block-and-one"), (std::vector<uint32_t>{kBlock, 1}));
    const std::vector<uint32_t> mixed = StoredSizes("mixed");
    ASSERT_EQ(mixed.size(), 3u);
    EXPECT_EQ(mixed[0], kBlock);
    EXPECT_LT(mixed[1], kBlock / 4);
    EXPECT_EQ(mixed[2], 777u);
    for (const uint32_t stored : StoredSizes("text/long"))
        EXPECT_LT(stored, kBlock / 4);
    EXPECT_TRUE(StoredSizes("empty").empty());
}

TEST_F(PackReaderTest, SeeksInsideAndAcrossBlocks) {
    const std::string& bytes = files["text/long"];
    const auto buffer = Open("text/long");
    char piece[10];
    std::mt19937 random(7);
    for (int step = 0; step < 300; ++step) {
        const uint64_t at = random() % (bytes.size() + 1);
        ASSERT_TRUE(buffer->seek(at));
        ASSERT_EQ(buffer->tell(), at);
        const unsigned got = buffer->read(piece, sizeof piece);
        ASSERT_EQ(std::string(piece, got), bytes.substr(at, sizeof piece)) << "at " << at;
    }
    // The window's end and the next block's start are the same place.
    ASSERT_TRUE(buffer->seek(kBlock - 2));
    EXPECT_EQ(ReadRest(*buffer, 2).size(), bytes.size() - kBlock + 2);
    ASSERT_TRUE(buffer->seek(kBlock));
    EXPECT_EQ(buffer->get(), static_cast<unsigned char>(bytes[kBlock]));
    EXPECT_TRUE(buffer->skip(-2));
    EXPECT_EQ(buffer->get(), static_cast<unsigned char>(bytes[kBlock - 1]));
    EXPECT_FALSE(buffer->skip(-static_cast<int64_t>(kBlock) - 1));
    EXPECT_EQ(buffer->tell(), kBlock);
    EXPECT_FALSE(buffer->failed());
}

TEST_F(PackReaderTest, SeekingPastTheEndReadsNothing) {
    const auto buffer = Open("text/two-blocks");
    for (const uint64_t beyond : {2 * uint64_t{kBlock}, 2 * uint64_t{kBlock} + 5, ~uint64_t{0}}) {
        EXPECT_TRUE(buffer->seek(beyond));
        EXPECT_TRUE(buffer->eof());
        char byte = 0;
        EXPECT_EQ(buffer->read(&byte, 1), 0u);
        EXPECT_EQ(buffer->get(), -1);
    }
    EXPECT_TRUE(buffer->seek(3));
    EXPECT_EQ(buffer->get(), static_cast<unsigned char>(files["text/two-blocks"][3]));
    EXPECT_FALSE(buffer->failed());
}

// A seek inside the decoded block must not go to the file: after the file's blocks are
// overwritten, such a seek still reads the bytes it had, and a seek to another block reads
// what the file holds now.
TEST_F(PackReaderTest, ASeekInsideTheDecodedBlockReadsNothingFromTheFile) {
    const std::string& bytes = files["noise/three-blocks"];
    const auto buffer = Open("noise/three-blocks");
    ASSERT_TRUE(buffer->seek(100));
    ASSERT_EQ(buffer->get(), static_cast<unsigned char>(bytes[100]));
    {
        const Core::PackTable::Entry entry = provider.pack()->table().entry(
            provider.pack()->table().lookup("noise/three-blocks").index);
        std::fstream pack(dir.File("test.pack"), std::ios::binary | std::ios::in | std::ios::out);
        pack.seekp(entry.data_offset);
        pack << std::string(3 * kBlock, 'X');
    }
    for (const uint64_t at : {uint64_t{0}, uint64_t{kBlock - 1}, uint64_t{5000}}) {
        ASSERT_TRUE(buffer->seek(at));
        EXPECT_EQ(buffer->get(), static_cast<unsigned char>(bytes[at]));
    }
    ASSERT_TRUE(buffer->seek(kBlock));
    EXPECT_EQ(buffer->get(), 'X');
    ASSERT_TRUE(buffer->seek(0));
    EXPECT_EQ(buffer->get(), 'X');
}

TEST_F(PackReaderTest, TwoBuffersOnOneEntryReadApartAndGiveTheirHandlesBack) {
    const std::string& bytes = files["mixed"];
    EXPECT_EQ(provider.pack()->spare_handles(), 1u);  // the handle that read the table
    {
        const auto first = Open("mixed");
        const auto second = Open("MIXED");
        EXPECT_EQ(provider.pack()->spare_handles(), 0u);
        char piece[3];
        ASSERT_TRUE(first->seek(kBlock + 7));
        ASSERT_EQ(second->read(piece, 3), 3u);
        EXPECT_EQ(std::string(piece, 3), bytes.substr(0, 3));
        ASSERT_EQ(first->read(piece, 3), 3u);
        EXPECT_EQ(std::string(piece, 3), bytes.substr(kBlock + 7, 3));
        EXPECT_EQ(ReadRest(*second, 5000), bytes.substr(3));
    }
    EXPECT_EQ(provider.pack()->spare_handles(), 2u);
    const auto again = Open("mixed");
    EXPECT_EQ(provider.pack()->spare_handles(), 1u);
}

// The table in memory belongs to the file that was loaded: a pack written over it since is
// not read through that table.
TEST_F(PackReaderTest, APackReplacedOnDiskIsNotReadThroughTheOldTable) {
    const auto first = Open("one");  // takes the handle that read the table
    dir.Write("other/one", "another pack");
    std::string error;
    ASSERT_EQ(Core::write_pack(dir.File("test.pack"), dir.File("other"), error),
              Core::PackWriteResult::written);
    EXPECT_FALSE(provider.open("text/long"));
    EXPECT_EQ(ReadRest(*first, 10), "1");
    first->close();
    EXPECT_EQ(ReadRest(*Open("text/long"), 4096), files["text/long"]);
}

TEST_F(PackReaderTest, DataHoldsTheWholeEntryAndKeepsThePosition) {
    const std::string& bytes = files["text/two-blocks"];
    const auto buffer = Open("text/two-blocks");
    ASSERT_TRUE(buffer->seek(kBlock + 10));
    const uint8_t* whole = buffer->data();
    ASSERT_NE(whole, nullptr);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(whole), bytes.size()), bytes);
    EXPECT_EQ(buffer->data(), whole);
    EXPECT_EQ(buffer->tell(), kBlock + 10u);
    EXPECT_EQ(buffer->get(), static_cast<unsigned char>(bytes[kBlock + 10]));
    EXPECT_EQ(Open("empty")->data(), nullptr);
}

TEST_F(PackReaderTest, OpenDataAndCloseAreLogged) {
    IoLines lines;
    auto buffer = Open("One");
    buffer->data();
    buffer.reset();
    const std::string pack = dir.File("test.pack");
    EXPECT_EQ(lines.Take(),
              (std::vector<std::string>{"pack open," + pack + ",One,1", "pack data(),,one,,,1",
                                        "pack close,,one,,,-1"}));
}

TEST_F(PackReaderTest, ABufferOutlivesItsProviderAndReadsNothingOnceClosed) {
    std::shared_ptr<Core::InputBufferImpl> buffer;
    {
        Core::PackBufferProvider short_lived;
        ASSERT_TRUE(short_lived.load(dir.File("test.pack").c_str()));
        buffer = short_lived.open("text/long");
    }
    EXPECT_EQ(ReadRest(*buffer, 4096), files["text/long"]);
    buffer->close();
    EXPECT_EQ(buffer->size(), 0u);
    EXPECT_TRUE(buffer->seek(0));
    EXPECT_EQ(buffer->get(), -1);
    EXPECT_EQ(buffer->data(), nullptr);
}

}  // namespace
