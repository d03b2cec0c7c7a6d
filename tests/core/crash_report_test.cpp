// A real crash in a child process, with the crash handler installed: the child dies as it
// would have, and its report names the function and the line that crashed.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <csignal>
#include <cstring>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "TempDir.h"

extern char** environ;

namespace {

struct ChildRun {
    int status = 0;
    std::string error_output;
    std::string report;
    std::string dump;
};

std::vector<std::string> ChildEnvironment() {
    std::vector<std::string> variables;
    for (char** at = environ; *at != nullptr; ++at) {
        const std::string variable = *at;
        if (variable.rfind("USERNAME=", 0) != 0 && variable.rfind("ASAN_OPTIONS=", 0) != 0)
            variables.push_back(variable);
    }
    variables.push_back("USERNAME=tester");
    // Under AddressSanitizer the crash must reach our handler, not the sanitizer's.
    variables.push_back(
        "ASAN_OPTIONS=handle_segv=0:handle_sigbus=0:handle_sigill=0:handle_sigfpe=0:"
        "handle_abort=0:detect_leaks=0");
    return variables;
}

ChildRun RunCrashChild(const std::string& mode, const TempDir& dir) {
    const std::string error_path = dir.File("stderr.txt");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 2, error_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0644);
    std::vector<std::string> arguments = {CRASH_CHILD, mode, dir.Path().string() + "/"};
    std::vector<std::string> variables = ChildEnvironment();
    std::vector<char*> argv, envp;
    for (std::string& argument : arguments)
        argv.push_back(argument.data());
    for (std::string& variable : variables)
        envp.push_back(variable.data());
    argv.push_back(nullptr);
    envp.push_back(nullptr);

    ChildRun run;
    pid_t child = 0;
    const int spawned =
        posix_spawn(&child, CRASH_CHILD, &actions, nullptr, argv.data(), envp.data());
    posix_spawn_file_actions_destroy(&actions);
    EXPECT_EQ(spawned, 0) << std::strerror(spawned);
    if (spawned == 0) waitpid(child, &run.status, 0);
    run.error_output = ReadFile(error_path);
    run.report = ReadFile(dir.File("report-tester.txt"));
    run.dump = ReadFile(dir.File("report-tester.dmp"));
    return run;
}

// The line of crash_child.cpp that carries "crash here: MARK".
int MarkedLine(const std::string& mark) {
    std::istringstream source(ReadFile(CRASH_CHILD_SOURCE));
    std::string line;
    for (int number = 1; std::getline(source, line); ++number)
        if (line.find("crash here: " + mark) != std::string::npos) return number;
    return 0;
}

// True when one line of the report names `function` and the marked line of the child.
bool NamesTheCrash(const std::string& report, const std::string& function,
                   const std::string& mark) {
    const std::string place = "crash_child.cpp(" + std::to_string(MarkedLine(mark)) + ")";
    std::istringstream lines(report);
    std::string line;
    while (std::getline(lines, line))
        if (line.find(function) != std::string::npos && line.find(place) != std::string::npos)
            return true;
    return false;
}

// The records of a dump: tag -> contents.
std::map<std::string, std::string> DumpRecords(const std::string& dump) {
    std::map<std::string, std::string> records;
    if (dump.size() < 16 || dump.compare(0, 4, "QDMP") != 0) return records;
    for (size_t at = 16; at + 16 <= dump.size();) {
        uint64_t size = 0;
        std::memcpy(&size, dump.data() + at + 8, sizeof size);
        if (size > dump.size() - at - 16) break;
        records[dump.substr(at, 4)] = dump.substr(at + 16, size);
        at += 16 + size;
    }
    return records;
}

uint64_t ReportedRegister(const std::string& report, const std::string& name) {
    const size_t at = report.find(name + "=");
    return at == std::string::npos
               ? 0
               : std::stoull(report.substr(at + name.size() + 1, 16), nullptr, 16);
}

uint64_t U64At(const std::string& bytes, size_t offset) {
    uint64_t value = 0;
    if (offset + sizeof value <= bytes.size())
        std::memcpy(&value, bytes.data() + offset, sizeof value);
    return value;
}

TEST(CrashReportTest, ANullWriteIsReportedWithItsRegistersStackAndDump) {
    TempDir dir;
    const ChildRun run = RunCrashChild("null", dir);
    ASSERT_TRUE(WIFSIGNALED(run.status)) << run.status << run.error_output;
    EXPECT_EQ(WTERMSIG(run.status), SIGSEGV);

    EXPECT_NE(run.report.find("Build: crash-test\r\n"), std::string::npos);
    EXPECT_NE(run.report.find("\r\n\r\nException C0000005  EXCEPTION_ACCESS_VIOLATION\r\n"
                              "GetLastError() = 00000000(0), errno = "),
              std::string::npos)
        << run.report;
    EXPECT_NE(run.report.find("\r\n\r\nRegisters\r\nRAX="), std::string::npos);
    const uint64_t rip = ReportedRegister(run.report, "RIP");
    const uint64_t rsp = ReportedRegister(run.report, "RSP");
    char address[32];
    std::snprintf(address, sizeof address, "Address: %016llX  ",
                  static_cast<unsigned long long>(rip));
    EXPECT_NE(run.report.find(address), std::string::npos) << run.report;
    EXPECT_TRUE(NamesTheCrash(run.report, "CrashByNullWrite", "null")) << run.report;

    std::map<std::string, std::string> records = DumpRecords(run.dump);
    ASSERT_EQ(records.size(), 5u);
    EXPECT_EQ(records["END "], "");
    EXPECT_EQ(records["CAUS"].substr(0, 8), std::string("\x0b\0\0\0\x05\0\0\xc0", 8));
    const std::string& registers = records["REGS"];
    ASSERT_EQ(registers.size(), 8u + 18 * 8);
    EXPECT_EQ(registers.substr(0, 8), std::string("\x12\0\0\0\x01\0\0\0", 8));
    EXPECT_EQ(U64At(registers, 8 + 14 * 8), rip);
    EXPECT_NE(records["MAPS"].find("crash_child"), std::string::npos);
    EXPECT_EQ(U64At(records["STAK"], 0), rsp);
    EXPECT_GT(records["STAK"].size(), 8u);
}

TEST(CrashReportTest, AnAbortIsReportedAndStillEndsTheProcessByItsSignal) {
    TempDir dir;
    const ChildRun run = RunCrashChild("abort", dir);
    ASSERT_TRUE(WIFSIGNALED(run.status)) << run.status << run.error_output;
    EXPECT_EQ(WTERMSIG(run.status), SIGABRT);
    EXPECT_NE(run.report.find("\r\nException 40000015  \r\n"), std::string::npos) << run.report;
    EXPECT_TRUE(NamesTheCrash(run.report, "CrashByAbort", "abort")) << run.report;
}

TEST(CrashReportTest, AnUncaughtExceptionIsReportedWithItsText) {
    TempDir dir;
    const ChildRun run = RunCrashChild("throw", dir);
    ASSERT_TRUE(WIFSIGNALED(run.status)) << run.status << run.error_output;
    EXPECT_EQ(WTERMSIG(run.status), SIGABRT);
    EXPECT_NE(run.report.find("\r\nException E06D7363  \r\nCPP exception: nobody catches this\r\n"),
              std::string::npos)
        << run.report;
    EXPECT_TRUE(NamesTheCrash(run.report, "CrashByThrow", "throw")) << run.report;
    // The library's own handler still has its say.
    EXPECT_NE(run.error_output.find("nobody catches this"), std::string::npos);
}

TEST(CrashReportTest, WithTheSearchOnTheEarlierHandlerGetsTheFaultAfterTheReport) {
    TempDir dir;
    const ChildRun run = RunCrashChild("search", dir);
    ASSERT_TRUE(WIFEXITED(run.status)) << run.status << run.error_output;
    EXPECT_EQ(WEXITSTATUS(run.status), 5);
    EXPECT_EQ(run.error_output, "the earlier handler ran\n");
    EXPECT_TRUE(NamesTheCrash(run.report, "CrashByNullWrite", "null")) << run.report;
}

TEST(CrashReportTest, AssertionsInsideTheCrashHandlerStaySilent) {
    TempDir dir;
    const ChildRun run = RunCrashChild("assert-in-crash", dir);
    ASSERT_TRUE(WIFSIGNALED(run.status)) << run.status << run.error_output;
    EXPECT_EQ(WTERMSIG(run.status), SIGSEGV);
    EXPECT_NE(run.report.find("\r\nthe callback went on\r\n"), std::string::npos) << run.report;
    EXPECT_EQ(run.error_output.find("ASSERT("), std::string::npos) << run.error_output;
}

}  // namespace
