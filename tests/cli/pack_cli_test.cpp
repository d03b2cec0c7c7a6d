// quillet-cli pack create, ls and cat: a folder goes into a pack and comes back byte for byte.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <random>

#include "TempDir.h"
#include "core_pack_provider.h"
#include "core_pack_table.h"

namespace {

namespace fs = std::filesystem;

struct CliRun {
    int exit;
    std::string out;
    std::string error;
};

// Runs `command` through the shell with its output in files of `dir`.
CliRun Shell(const TempDir& dir, const std::string& command) {
    const std::string out = dir.File("stdout.txt");
    const std::string error = dir.File("stderr.txt");
    const int status = std::system((command + " >" + out + " 2>" + error).c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(out), ReadFile(error)};
}

CliRun RunCli(const TempDir& dir, const std::string& arguments) {
    return Shell(dir, std::string(QUILLET_CLI) + " " + arguments);
}

// A folder of a few thousand files: empty ones, whole multiples of 64 KiB, noise that does not
// compress, text that does, names in capitals, folders in folders.
std::map<std::string, std::string> MakeFolder(const TempDir& dir) {
    std::map<std::string, std::string> files;
    std::mt19937 random(2024);
    for (int i = 0; i < 2000; ++i) {
        std::string name = "d" + std::to_string(i % 7) + "/s" + std::to_string(i % 3) + "/f" +
                           std::to_string(i) + ".dat";
        if (i % 5 == 0) name = "UPPER/Case" + std::to_string(i) + ".BIN";
        if (i % 11 == 0) name = "top" + std::to_string(i);
        std::string bytes;
        if (i % 10 == 3) {
            bytes = "";
        } else if (i % 97 == 1) {
            bytes = std::string(size_t{65536} * (1 + i % 3), static_cast<char>('a' + i % 26));
        } else if (i % 13 == 2) {
            bytes.resize(1 + random() % 70000);
            for (char& byte : bytes)
                byte = static_cast<char>(random());
        } else {
            for (size_t line = 0; bytes.size() < static_cast<size_t>(i * 37 % 5000); ++line)
                bytes += "file " + std::to_string(i) + " line " + std::to_string(line) + "\n";
        }
        files[name] = bytes;
        dir.Write("in/" + name, bytes);
    }
    return files;
}

TEST(PackCliTest, AFolderComesBackFromItsPackByteForByte) {
    TempDir dir;
    const std::map<std::string, std::string> files = MakeFolder(dir);
    const std::string pack = dir.File("out.pack");
    const CliRun create = RunCli(dir, "pack create " + pack + " " + dir.File("in"));
    ASSERT_EQ(create.exit, 0) << create.error;
    EXPECT_EQ(create.out + create.error, "");

    std::vector<std::string> names;
    for (const auto& [name, bytes] : files)
        names.push_back(name);
    std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
        return Core::compare_pack_names(a.c_str(), b.c_str()) < 0;
    });
    std::string listing;
    for (const std::string& name : names)
        listing += std::to_string(files.at(name).size()) + " " + name + "\n";
    const CliRun ls = RunCli(dir, "pack ls " + pack);
    EXPECT_EQ(ls.exit, 0);
    EXPECT_EQ(ls.out, listing);

    // Every entry comes back whole through the reader the commands use.
    Core::PackBufferProvider reader;
    ASSERT_TRUE(reader.load(pack.c_str())) << reader.error();
    for (const std::string& name : names) {
        const auto buffer = reader.open(name);
        ASSERT_TRUE(buffer) << name;
        const uint8_t* bytes = buffer->data();
        const std::string& expected = files.at(name);
        ASSERT_EQ(bytes == nullptr ? std::string() : std::string(bytes, bytes + buffer->size()),
                  expected)
            << name;
    }

    // The command itself on every 16th entry, asked for in other capitals, into a file of its
    // own: a process each, so a sample keeps the test quick under the sanitizers.
    std::string script;
    std::vector<size_t> sample;
    for (size_t i = 0; i < names.size(); i += 16) {
        sample.push_back(i);
        std::string asked = names[i];
        std::transform(asked.begin(), asked.end(), asked.begin(),
                       [i](char c) { return static_cast<char>(i % 32 ? std::toupper(c) : c); });
        script += std::string(QUILLET_CLI) + " pack cat " + pack + " " + asked + " >" +
                  dir.File("cat/" + std::to_string(i)) + " || echo failed " + asked + "\n";
    }
    fs::create_directories(dir.File("cat"));
    const std::string script_path = dir.Write("cat.sh", script);
    const CliRun cat = Shell(dir, "sh " + script_path);
    EXPECT_EQ(cat.out, "");
    for (const size_t i : sample)
        ASSERT_EQ(ReadFile(dir.File("cat/" + std::to_string(i))), files.at(names[i])) << names[i];
}

TEST(PackCliTest, MissingEntriesAndFilesThatAreNoPacks) {
    TempDir dir;
    dir.Write("in/UI/Back.tga", "back");
    const std::string pack = dir.File("ui.pack");
    ASSERT_EQ(RunCli(dir, "pack create " + pack + " " + dir.File("in")).exit, 0);
    const CliRun found = RunCli(dir, "pack cat " + pack + " ui/BACK.TGA");
    EXPECT_EQ(found.exit, 0);
    EXPECT_EQ(found.out, "back");

    const CliRun missing = RunCli(dir, "pack cat " + pack + " ui/front.tga");
    EXPECT_EQ(missing.exit, 1);
    EXPECT_EQ(missing.error, "No entry ui/front.tga in " + pack + "\n");

    const std::string text = dir.Write("text.txt", "some words, and more than a header holds");
    for (const std::string& command : {"pack ls " + text, "pack cat " + text + " x"}) {
        const CliRun refused = RunCli(dir, command);
        EXPECT_EQ(refused.exit, 1) << command;
        EXPECT_EQ(refused.error.substr(0, text.size() + 21), text + " is not a valid pack:");
    }
    const CliRun absent = RunCli(dir, "pack ls " + dir.File("absent.pack"));
    EXPECT_EQ(absent.exit, 1);
    EXPECT_EQ(absent.error,
              "Cannot open " + dir.File("absent.pack") + ": No such file or directory\n");
    EXPECT_EQ(RunCli(dir, "pack ls").exit, 2);
    EXPECT_EQ(RunCli(dir, "pack create " + pack).exit, 2);
    const CliRun empty = RunCli(dir, "pack create " + dir.File("e.pack") + " " + dir.File("none"));
    EXPECT_EQ(empty.exit, 1);
    EXPECT_EQ(empty.error, dir.File("none") + " is not a folder\n");
}

TEST(PackCliTest, ACorruptPackFailsWithAMessage) {
    TempDir dir;
    std::string text;
    for (int line = 0; text.size() < 200000; ++line)
        text += "line " + std::to_string(line) + "\n";
    dir.Write("in/text", text);
    const std::string pack = dir.File("text.pack");
    ASSERT_EQ(RunCli(dir, "pack create " + pack + " " + dir.File("in")).exit, 0);
    const std::string good = ReadFile(pack);

    dir.Write("cut.pack", good.substr(0, good.size() - 1));
    const CliRun cut = RunCli(dir, "pack cat " + dir.File("cut.pack") + " text");
    EXPECT_EQ(cut.exit, 1);
    EXPECT_EQ(cut.error, dir.File("cut.pack") +
                             " is corrupt: text cannot be read beyond byte 196608 of " +
                             std::to_string(text.size()) + "\n");
    EXPECT_EQ(cut.out, text.substr(0, 196608));

    std::string flipped = good;
    flipped[11] = '\xFF';  // the entry count, far beyond what the file holds
    dir.Write("flipped.pack", flipped);
    const CliRun ls = RunCli(dir, "pack ls " + dir.File("flipped.pack"));
    EXPECT_EQ(ls.exit, 1);
    EXPECT_NE(ls.error.find("is not a valid pack"), std::string::npos) << ls.error;
}

TEST(PackCliTest, AnOutputThatCannotBeWrittenKeepsTheOldFile) {
    TempDir dir;
    dir.Write("in/a", "a");
    const std::string old = dir.Write("old.pack", "old");
    fs::permissions(old, fs::perms::owner_read);
    const CliRun read_only = RunCli(dir, "pack create " + old + " " + dir.File("in"));
    EXPECT_EQ(read_only.exit, 4);
    EXPECT_EQ(read_only.error, "Cannot write " + old + ": the file is read-only\n");
    EXPECT_EQ(ReadFile(old), "old");
    const CliRun no_folder =
        RunCli(dir, "pack create " + dir.File("no/x.pack") + " " + dir.File("in"));
    EXPECT_EQ(no_folder.exit, 4);
    EXPECT_EQ(no_folder.error,
              "Cannot write " + dir.File("no/x.pack") + ": No such file or directory\n");
}

}  // namespace
