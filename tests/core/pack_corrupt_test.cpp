// Corrupt packs: each is refused when it is loaded, or its buffers fail cleanly; none makes
// a read leave its memory (the sanitizer build runs these too).
#include <gtest/gtest.h>

#include <random>

#include "PackTestSupport.h"
#include "TempDir.h"
#include "core_buffers.h"
#include "core_pack_provider.h"
#include "core_pack_writer.h"

namespace {

constexpr uint32_t kBlock = 65536;

// Offsets in the pack that the tests below write: two entries, "a" of two compressed blocks
// and a compressed partial one, "b" of one raw byte.
constexpr size_t kTableLength = 20 + 4 * (2 + 4) + (16 + 2) * 2;

class PackCorruptTest : public testing::Test {
protected:
    TempDir dir;
    std::string a;
    std::string good;

    void SetUp() override {
        for (int line = 0; a.size() < 2 * kBlock + 5000; ++line)
            a += "entry a, line " + std::to_string(line) + "\n";
        a.resize(2 * kBlock + 5000);
        dir.Write("in/a", a);
        dir.Write("in/b", "b");
        std::string error;
        ASSERT_EQ(Core::write_pack(dir.File("good.pack"), dir.File("in"), error),
                  Core::PackWriteResult::written);
        good = ReadFile(dir.File("good.pack"));
        ASSERT_GT(good.size(), kTableLength);
    }

    // Loads `bytes` as a pack; its error when refused, "" when loaded.
    std::string Refusal(const std::string& bytes, Core::PackBufferProvider& provider) {
        const std::string path = dir.Write("bad.pack", bytes);
        return provider.load(path.c_str()) ? "" : provider.error().substr(path.size() + 1);
    }
    std::string Refusal(const std::string& bytes) {
        Core::PackBufferProvider provider;
        return Refusal(bytes, provider);
    }

    static std::string With(std::string bytes, size_t offset, const std::string& field) {
        bytes.replace(offset, field.size(), field);
        return bytes;
    }
};

TEST_F(PackCorruptTest, TablesThatWouldBeReadOutsideThemselvesAreRefused) {
    EXPECT_EQ(Refusal(good), "");
    EXPECT_EQ(Refusal(good.substr(0, kTableLength - 1)),
              "is not a valid pack: its table (80 bytes) runs past the end of the file (79 bytes)");
    EXPECT_EQ(
        Refusal(With(good, 8, Word(0xFFFFFFFF))),
        "is not a valid pack: its table (" + std::to_string(20 + 4 * (0xFFFFFFFFull + 4) + 36) +
            " bytes) runs past the end of the file (" + std::to_string(good.size()) + " bytes)");
    EXPECT_EQ(Refusal(With(good, 12, Word(0xFFFFFFF0))).substr(0, 37),
              "is not a valid pack: its table (42949");
    EXPECT_EQ(Refusal(With(good, 20, Word(20))),
              "is not a valid pack: record 0 does not fit in the record area");
    EXPECT_EQ(Refusal(With(good, 24, Word(0xFFFFFFF0))),
              "is not a valid pack: record 1 does not fit in the record area");
    // The last name's NUL is the last byte of the table.
    EXPECT_EQ(Refusal(With(good, kTableLength - 1, "x")),
              "is not a valid pack: the name of record 1 runs past the record area");
    // "a" has three blocks from block 0; from block 2 they would run past the table.
    EXPECT_EQ(Refusal(With(good, 44 + 4, Word(2))),
              "is not a valid pack: the blocks of entry 0 run past the block table");
    EXPECT_EQ(Refusal(With(good, 44 + 8, Word(0xFFFFFFFF))),
              "is not a valid pack: the blocks of entry 0 run past the block table");
    EXPECT_EQ(Refusal(With(good, 28, Word(0))),
              "is not a valid pack: block 0 has a stored size of 0");
    EXPECT_EQ(Refusal(With(good, 40, Word(kBlock + 1))),
              "is not a valid pack: block 3 has a stored size of 65537");
}

// Reads every entry of a pack that loaded, in pieces and after seeks: a buffer either gives
// its whole size or fails, and never claims more than it has.
void ReadEverything(Core::PackBufferProvider& provider, std::mt19937& random) {
    const Core::PackTable& table = provider.pack()->table();
    for (uint32_t index = 0; index < table.entry_count(); ++index) {
        const std::string name = table.name(index);
        const auto buffer = provider.open(name);
        if (!buffer) continue;  // a name that the corruption put out of order
        const std::string bytes =
            ReadRest(*buffer, static_cast<unsigned>(1 + random() % (3 * kBlock)));
        EXPECT_TRUE(bytes.size() == buffer->size() || buffer->failed());
        EXPECT_LE(buffer->tell(), buffer->size());
        buffer->seek(random() % (buffer->size() + 2));
        char piece[100];
        EXPECT_LE(buffer->read(piece, sizeof piece), sizeof piece);
        const uint8_t* whole = buffer->data();
        EXPECT_TRUE(whole != nullptr || buffer->size() == 0 || buffer->failed());
    }
}

// What a damaged "a" gives: a beginning of its bytes, then nothing, and failed().
void ExpectFailedAfterAPrefix(Core::InputBufferImpl& buffer, const std::string& a) {
    const std::string read = ReadRest(buffer, 4096);
    EXPECT_TRUE(buffer.failed());
    EXPECT_LT(read.size(), a.size());
    EXPECT_EQ(read, a.substr(0, read.size()));
    EXPECT_EQ(buffer.get(), -1);
    EXPECT_EQ(buffer.data(), nullptr);
}

TEST_F(PackCorruptTest, DamagedBlocksFailTheirBufferAndNothingElse) {
    // The first block of "a" said to be one byte shorter, and its end marker overwritten.
    const uint32_t first = static_cast<uint8_t>(good[28]) | static_cast<uint8_t>(good[29]) << 8;
    for (const std::string& bytes :
         {With(good, 28, Word(first - 1)), With(good, kTableLength + first - 3, "\xFF\xFF\xFF")}) {
        Core::PackBufferProvider damaged;
        ASSERT_EQ(Refusal(bytes, damaged), "");
        ExpectFailedAfterAPrefix(*damaged.open("a"), a);
        EXPECT_EQ(ReadRest(*damaged.open("b"), 10), "b");
    }
    // Cut short: the last block of "a" and the byte of "b" cannot be read whole.
    Core::PackBufferProvider short_pack;
    ASSERT_EQ(Refusal(good.substr(0, good.size() - 2), short_pack), "");
    ExpectFailedAfterAPrefix(*short_pack.open("a"), a);
    Core::InputBuffer b;
    ASSERT_TRUE(b.attach(short_pack.open("b")));
    EXPECT_TRUE(b.good());
    char byte = 0;
    EXPECT_EQ(b.read(&byte, 1), 0u);
    EXPECT_FALSE(b.good());
}

TEST_F(PackCorruptTest, RandomDamageNeverReadsOutsideThePack) {
    std::mt19937 random(14);
    for (int round = 0; round < 400; ++round) {
        std::string bytes = good;
        const int flips = 1 + static_cast<int>(random() % 4);
        for (int flip = 0; flip < flips; ++flip) {
            // Most damage goes to the table and the first bytes of the blocks.
            const size_t range = random() % 2 ? kTableLength : bytes.size();
            bytes[random() % range] = static_cast<char>(random());
        }
        if (random() % 8 == 0) bytes.resize(random() % bytes.size());
        Core::PackBufferProvider provider;
        if (Refusal(bytes, provider).empty()) ReadEverything(provider, random);
    }
}

}  // namespace
