// Runs quillet-cli on every folder of e2e/ and compares what it wrote with what is expected.
//
// A folder holds `command` (the arguments; {in} is the folder, {out} a fresh folder),
// optionally `input/` (files copied into {out} first, for commands that change files in
// place), `exit` (the expected exit code, 0 if absent), `stdout` and `stderr` (the expected
// output), and `expected/` with the files that must appear in {out}, byte for byte.
// On a mismatch the actual output is written beside the expected one as NAME.actual.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>

#include "TempDir.h"

namespace {

namespace fs = std::filesystem;

std::string Trimmed(std::string text) {
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r'))
        text.pop_back();
    return text;
}

std::string Substitute(std::string text, const std::string& key, const std::string& value) {
    for (size_t at = text.find(key); at != std::string::npos;
         at = text.find(key, at + value.size()))
        text.replace(at, key.size(), value);
    return text;
}

void ExpectSame(const fs::path& expected, const std::string& actual) {
    const std::string wanted = ReadFile(expected.string());
    const fs::path beside = expected.string() + ".actual";
    if (wanted == actual) {
        fs::remove(beside);
        return;
    }
    std::ofstream(beside, std::ios::binary) << actual;
    ADD_FAILURE() << expected << " differs; the actual output is in " << beside;
}

class GoldenTest : public testing::TestWithParam<std::string> {};

TEST_P(GoldenTest, Matches) {
    const fs::path folder = fs::path(GOLDEN_DIR) / GetParam();
    TempDir out;
    if (fs::exists(folder / "input")) fs::copy(folder / "input", out.Path());
    const std::string arguments = Substitute(
        Substitute(Trimmed(ReadFile((folder / "command").string())), "{in}", folder.string()),
        "{out}", out.Path().string());
    const std::string error_file = out.File("stderr.txt");
    const std::string output_file = out.File("stdout.txt");
    const std::string command =
        std::string(QUILLET_CLI) + " " + arguments + " 2>" + error_file + " >" + output_file;
    const int status = std::system(command.c_str());
    ASSERT_TRUE(WIFEXITED(status)) << command;

    const int expected_exit =
        fs::exists(folder / "exit") ? std::stoi(ReadFile((folder / "exit").string())) : 0;
    EXPECT_EQ(WEXITSTATUS(status), expected_exit) << command;
    const std::string errors = Substitute(Substitute(ReadFile(error_file), folder.string(), "{in}"),
                                          out.Path().string(), "{out}");
    if (fs::exists(folder / "stderr")) ExpectSame(folder / "stderr", errors);
    if (fs::exists(folder / "stdout")) ExpectSame(folder / "stdout", ReadFile(output_file));
    if (!fs::exists(folder / "expected")) return;
    for (const auto& entry : fs::directory_iterator(folder / "expected")) {
        if (entry.path().extension() == ".actual") continue;
        const fs::path produced = out.Path() / entry.path().filename();
        EXPECT_TRUE(fs::exists(produced)) << produced << " was not written";
        ExpectSame(entry.path(), ReadFile(produced.string()));
    }
}

std::vector<std::string> Cases() {
    std::vector<std::string> cases;
    for (const auto& entry : fs::directory_iterator(GOLDEN_DIR))
        if (entry.is_directory()) cases.push_back(entry.path().filename().string());
    std::sort(cases.begin(), cases.end());
    return cases;
}

INSTANTIATE_TEST_SUITE_P(E2E, GoldenTest, testing::ValuesIn(Cases()),
                         [](const testing::TestParamInfo<std::string>& test) {
                             std::string name = test.param;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

}  // namespace
