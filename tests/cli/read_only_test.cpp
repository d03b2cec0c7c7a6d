// What quillet-cli does with an output it must not replace; the golden folders cannot hold
// a read-only file.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>

#include "TempDir.h"

namespace {

const char kProject[] =
    "<version>1.01</version>\r\n<layout>\r\n  <layout_width>800</layout_width>\r\n"
    "  <layout_height>600</layout_height>\r\n  <piece_types_fname></piece_types_fname>\r\n"
    "  <piece_texts_fname></piece_texts_fname>\r\n</layout>\r\n";

// Runs quillet-cli with `arguments`; answers the exit code, standard error in `error`.
int RunCli(const TempDir& dir, const std::string& arguments, std::string& error) {
    const std::string error_file = dir.File("stderr.txt");
    const int status = std::system(
        (std::string(QUILLET_CLI) + " " + arguments + " 2>" + error_file + " >/dev/null").c_str());
    error = ReadFile(error_file);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(CliReadOnlyTest, RoundtripRefusesAReadOnlyOutputAndAnEmptyOne) {
    TempDir dir;
    const std::string in = dir.Write("in.qlt", kProject);
    const std::string out = dir.Write("out.qlt", "kept");
    std::filesystem::permissions(out, std::filesystem::perms(0444));
    std::string error;
    EXPECT_EQ(RunCli(dir, "qlt roundtrip " + in + " " + out, error), 4);
    EXPECT_EQ(error, "Error: " + out + " is read-only\n");
    EXPECT_EQ(ReadFile(out), "kept");

    EXPECT_EQ(RunCli(dir, "qlt roundtrip " + in + " ''", error), 4);
    EXPECT_EQ(error, "Error: Cannot save: the file has no name\n");
}

}  // namespace
