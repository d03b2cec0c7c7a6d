#include <gtest/gtest.h>

#include <unistd.h>
#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <optional>
#include <regex>
#include <stdexcept>
#include <string>
#include <vector>

#include "AssertionScript.h"
#include "TempDir.h"
#include "core_bug_report.h"
#include "core_report_files.h"

namespace {

namespace fs = std::filesystem;

// Sets an environment variable for the life of the object (unset when `value` is null).
class ScopedEnvironment {
public:
    ScopedEnvironment(const char* name, const char* value) : name_(name) {
        if (const char* old = std::getenv(name)) old_ = old;
        if (value != nullptr)
            setenv(name, value, 1);
        else
            unsetenv(name);
    }
    ~ScopedEnvironment() {
        if (old_)
            setenv(name_.c_str(), old_->c_str(), 1);
        else
            unsetenv(name_.c_str());
    }

private:
    std::string name_;
    std::optional<std::string> old_;
};

class BugReportTest : public testing::Test {
protected:
    void SetUp() override { AssertionScript::Install(); }
    void TearDown() override { AssertionScript::Uninstall(); }

    // Opens and closes one report file; answers the number it used.
    int Open(const char* extension, int number = 0) {
        const int descriptor = Core::Detail::open_report_file(extension, number);
        EXPECT_GE(descriptor, 0) << extension << " " << number;
        if (descriptor >= 0) close(descriptor);
        return number;
    }

    std::vector<std::string> Files() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(dir.Path()))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    TempDir dir;
    ScopedEnvironment user{"USERNAME", "tester"};
    ScopedEnvironment coreops{"COREOPS", nullptr};
};

std::string Today(const char* format) {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char text[64];
    std::snprintf(text, sizeof text, format, static_cast<int>(getpid()), local.tm_year % 100,
                  local.tm_mon + 1, local.tm_mday);
    return text;
}

TEST_F(BugReportTest, NamesCarryTheUserAndWithoutOverwriteTheProcessAndDate) {
    Core::BugReport::init(dir.Path().c_str(), nullptr, false);
    EXPECT_EQ(Core::Detail::report_settings().base_name,
              dir.Path().string() + "/report-tester" + Today("-%d-%02d_%02d_%02d"));
    EXPECT_EQ(Core::Detail::report_settings().build_name, "development");

    Core::BugReport::init((dir.Path().string() + "\\").c_str(), "nightly", true);
    EXPECT_EQ(Core::Detail::report_settings().base_name, dir.Path().string() + "\\report-tester");
    EXPECT_EQ(Core::Detail::report_settings().build_name, "nightly");

    ScopedEnvironment no_username("USERNAME", nullptr);
    ScopedEnvironment plain_user("USER", "second");
    Core::BugReport::init((dir.Path().string() + "/").c_str(), nullptr, true);
    EXPECT_EQ(Core::Detail::report_settings().base_name, dir.Path().string() + "/report-second");
}

TEST_F(BugReportTest, APathWithoutRoomForTheNameFallsBackOnTheTemporaryFolder) {
    ScopedEnvironment temporary("TMPDIR", dir.Path().c_str());
    const std::string long_path = "/" + std::string(249, 'p');
    Core::BugReport::init(long_path.c_str(), nullptr, true);
    EXPECT_EQ(Core::Detail::report_settings().base_name, dir.Path().string() + "/report-tester");
    Core::BugReport::init(nullptr, nullptr, true);
    EXPECT_EQ(Core::Detail::report_settings().base_name, dir.Path().string() + "/report-tester");
}

TEST_F(BugReportTest, TheDumpLevelComesFromCoreopsWhenNoneIsGiven) {
    EXPECT_EQ(Core::Detail::report_settings().dump_type, -1);
    int number = 0;
    EXPECT_EQ(Core::Detail::open_report_file(".txt", number), -1);

    ScopedEnvironment level("COREOPS", "2");
    Core::BugReport::set_dump_type(-1);
    EXPECT_EQ(Core::Detail::report_settings().dump_type, 2);
    Core::BugReport::set_dump_type(1);
    Core::BugReport::init(dir.Path().c_str(), nullptr, true);
    EXPECT_EQ(Core::Detail::report_settings().dump_type, 1);

    ScopedEnvironment no_level("COREOPS", nullptr);
    Core::BugReport::set_dump_type(-5);
    EXPECT_EQ(Core::Detail::report_settings().dump_type, 0);
}

TEST_F(BugReportTest, ANameInUseMovesOnThroughTheNumbersAndWrapsAfterAHundred) {
    Core::BugReport::init(dir.Path().c_str(), nullptr, true);
    Core::Detail::report_settings().overwrite = false;  // plain names, easy to list
    Core::BugReport::set_dump_type(0);
    const std::string base = "report-tester";

    EXPECT_EQ(Open(".dmp"), 0);
    fs::permissions(dir.File(base + ".dmp"), fs::perms::owner_read);
    EXPECT_EQ(Open(".dmp"), 1);
    // The text of a report carries the number of its dump, and replaces what is there.
    EXPECT_EQ(Open(".txt", 1), 1);
    EXPECT_EQ(Open(".txt", 1), 1);
    EXPECT_EQ(Files(), (std::vector<std::string>{base + "-1.dmp", base + "-1.txt", base + ".dmp"}));

    for (int expected = 2; expected <= 100; ++expected)
        EXPECT_EQ(Open(".dmp"), expected);
    EXPECT_EQ(Open(".dmp"), 1);
    EXPECT_EQ(Files().size(), 102u);
}

TEST_F(BugReportTest, OverwriteKeepsOneName) {
    Core::BugReport::init(dir.Path().c_str(), nullptr, true);
    Core::BugReport::set_dump_type(0);
    EXPECT_EQ(Open(".txt"), 0);
    EXPECT_EQ(Open(".txt", 3), 0);
    EXPECT_EQ(Files(), std::vector<std::string>{"report-tester.txt"});
}

// The text file of a report, split at its "\r\n" line ends.
std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    size_t start = 0;
    for (size_t end; (end = text.find("\r\n", start)) != std::string::npos; start = end + 2)
        lines.push_back(text.substr(start, end - start));
    lines.push_back(text.substr(start));
    return lines;
}

TEST_F(BugReportTest, AnAssertionReportHasItsSectionsInOrder) {
    Core::BugReport::init(dir.Path().c_str(), "nightly", true);
    Core::BugReport::set_dump_type(0);
    Core::BugReport::add_callback(
        [](Core::BugReport::ReportFile& file) { file.print("first callback %d", 1); });
    Core::BugReport::add_callback(
        [](Core::BugReport::ReportFile&) { throw std::runtime_error("callback failed"); });
    Core::BugReport::add_callback(
        [](Core::BugReport::ReportFile& file) { file.write("never written"); });
    AssertionScript::current().answers = {Core::kAssertIgnore};
    AssertionScript::current().save_report = true;

    errno = ENOENT;
    const int line = __LINE__ + 1;
    CORE_ASSERT_MSG(errno == 0, "errno was %d", errno);

    const std::vector<std::string> lines = Lines(ReadFile(dir.File("report-tester.txt")));
    ASSERT_GT(lines.size(), 16u);
    EXPECT_TRUE(
        std::regex_match(lines[0], std::regex(R"(\w{3} \w{3} [ \d]\d \d\d:\d\d:\d\d \d{4})")))
        << lines[0];
    EXPECT_EQ(lines[1], "Build: nightly");
    EXPECT_TRUE(std::regex_match(
        lines[2],
        std::regex(
            R"(Processor: Architecture = 9, level = \d+, rev = [0-9A-F]{4,}, mask = [0-9A-F]{2,})")))
        << lines[2];
    EXPECT_TRUE(
        std::regex_match(lines[3], std::regex(R"(OS: maj = \d+, min = \d+, build = \d+, '.*')")))
        << lines[3];
    EXPECT_EQ(lines[4], "");
    // The failure's address lies in this program's code.
    EXPECT_TRUE(std::regex_match(
        lines[5], std::regex(R"(Address: [0-9A-F]{16}  \d{4}:[0-9A-F]{16}  .*core_report_tests)")))
        << lines[5];
    EXPECT_EQ(lines[6], "");
    EXPECT_EQ(lines[7], "Assertion failed");
    EXPECT_EQ(lines[8], std::string(__FILE__) + "(" + std::to_string(line) + "):\n" +
                            "ASSERT( errno == 0 )\nerrno was 2");
    EXPECT_EQ(lines[9], "GetLastError() = 00000000(0), errno = 2");
    EXPECT_EQ(lines[10], "");
    EXPECT_EQ(lines[11], "");
    EXPECT_EQ(lines[12], "Stack");
    // The walk starts at the failing site; the macro's own variables stay out of it.
    EXPECT_NE(lines[13].find("AnAssertionReportHasItsSectionsInOrder"), std::string::npos);
    EXPECT_NE(lines[13].find("bug_report_test.cpp(" + std::to_string(line) + ")"),
              std::string::npos)
        << lines[13];
    EXPECT_EQ(ReadFile(dir.File("report-tester.txt")).find("_assert_"), std::string::npos);
    const auto second_stack = std::find(lines.begin() + 13, lines.end(), "Stack");
    ASSERT_NE(second_stack, lines.end());
    EXPECT_EQ(*(second_stack - 1), "");
    const std::vector<std::string> tail(lines.end() - 4, lines.end());
    EXPECT_EQ(tail, (std::vector<std::string>{"", "first callback 1",
                                              "Report Callback has thrown an exception", ""}));
    EXPECT_EQ(ReadFile(dir.File("report-tester.dmp")).substr(0, 4), "QDMP");
}

TEST_F(BugReportTest, TheOptionsSaveAReportWhenAskedTo) {
    Core::BugReport::init(dir.Path().c_str(), nullptr, true);
    Core::BugReport::set_dump_type(0);
    Core::bug_report_options().assert_ignore_always = true;
    CORE_ASSERT(dir.Path().empty());
    EXPECT_TRUE(Files().empty());

    Core::set_report_without_dialog(true);
    CORE_ASSERT(!dir.Path().empty() && dir.Path().empty());
    EXPECT_EQ(Files(), (std::vector<std::string>{"report-tester.dmp", "report-tester.txt"}));
}

TEST_F(BugReportTest, AReportThatCannotBeMadeLeavesTheAssertionAsItWas) {
    Core::BugReport::init(dir.File("missing").c_str(), nullptr, true);
    Core::BugReport::set_dump_type(0);
    AssertionScript::current().answers = {Core::kAssertIgnore};
    AssertionScript::current().save_report = true;
    bool ignore = false;
    Core::AssertionRecord record{"x", "f.cpp", 1, &ignore};
    EXPECT_FALSE(Core::assertion_failed(record, nullptr));
    EXPECT_TRUE(Files().empty());
}

}  // namespace
