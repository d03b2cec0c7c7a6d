#include <gtest/gtest.h>

#include "TempDir.h"
#include "core_log.h"
#include "core_log_options.h"

namespace {

using boost::logging::mask_matches;

struct Captured {
    std::vector<std::string> lines;
    boost::logging::appender_function appender() {
        return [this](const std::string& log, const std::string& text, unsigned level) {
            lines.push_back(log + ":" + text + ":" + std::to_string(level));
        };
    }
};

TEST(LogMaskTest, PiecesStandInOrderAndUnstarredEndsAreAnchored) {
    EXPECT_TRUE(mask_matches("system.*", "system.io"));
    EXPECT_TRUE(mask_matches("system.*", "system.io.detail"));
    EXPECT_TRUE(mask_matches("*.io", "system.io"));
    EXPECT_FALSE(mask_matches("*.io", "system.io.detail"));
    EXPECT_TRUE(mask_matches("*", "x"));
    EXPECT_TRUE(mask_matches("", "x"));
    EXPECT_TRUE(mask_matches("core.options", "core.options"));
    EXPECT_FALSE(mask_matches("core.options", "core.options2"));
    EXPECT_TRUE(mask_matches("s*t*m", "system"));
    EXPECT_FALSE(mask_matches("a*a", "a"));  // the pieces may not overlap
    EXPECT_FALSE(mask_matches("sys*", "xsystem"));
}

TEST(LogLevelTest, NamesNumbersAndTheUnknown) {
    EXPECT_EQ(Core::level_from_text("warn"), 1200u);
    EXPECT_EQ(Core::level_from_text("1200"), 1200u);
    EXPECT_EQ(Core::level_from_text("DBG"), 1100u);
    EXPECT_EQ(Core::level_from_text("enable"), 0u);
    EXPECT_EQ(Core::level_from_text("loud"), Core::disable);
    EXPECT_EQ(Core::level_from_text("4294967295"), Core::disable);
    EXPECT_EQ(Core::level_from_text("99999999999"), Core::disable);
    EXPECT_STREQ(Core::level_name(1100), "debug");
    EXPECT_STREQ(Core::level_name(1101), "unknown");
}

TEST(LogManagerTest, LastMatchingLevelRuleWinsAndAlwaysOnLogsIgnoreRules) {
    boost::logging::manager manager;
    manager.flush_log_cache();
    Captured captured;
    manager.add_appender("*", "capture", captured.appender(), 100);
    auto io = manager.get_log("system.io");
    auto always = manager.get_log("core.assert", true);
    EXPECT_EQ(io->level(), Core::info);
    manager.set_level("system.*", Core::error);
    manager.set_level("*.io", Core::debug);
    EXPECT_EQ(io->level(), Core::debug);
    // info is below debug: debug stands above info.
    manager.write(*io, "quiet", Core::info);
    manager.write(*io, "heard", Core::warning);
    manager.set_level("*", Core::disable);
    manager.write(*always, "always", Core::trace);
    EXPECT_EQ(captured.lines,
              (std::vector<std::string>{"system.io:heard:1200", "core.assert:always:900"}));
}

TEST(LogManagerTest, NewLogsTakeTheRulesAndAppendersRunByPriority) {
    boost::logging::manager manager;
    manager.flush_log_cache();
    std::vector<std::string> order;
    manager.add_appender(
        "a.*", "late", [&](auto&, auto&, auto) { order.push_back("late"); }, 200);
    manager.add_appender(
        "a.*", "early", [&](auto&, auto&, auto) { order.push_back("early"); }, 100);
    manager.add_modifier(
        "a.*", "upper", [](std::string& text) { text += "!"; }, 100);
    manager.add_appender(
        "*", "text", [&](auto&, const std::string& text, auto) { order.push_back(text); }, 300);
    auto log = manager.get_log("a.b");
    manager.write(*log, "x", Core::info);
    EXPECT_EQ(order, (std::vector<std::string>{"early", "late", "x!"}));
    manager.remove_appender("a.*", "late");
    order.clear();
    manager.write(*log, "y", Core::info);
    EXPECT_EQ(order, (std::vector<std::string>{"early", "y!"}));
}

TEST(LogManagerTest, RemovingAnAppenderTakesBackOnlyThatMasksRule) {
    boost::logging::manager manager;
    manager.flush_log_cache();
    std::vector<std::string> heard;
    const auto to = [&heard](const char* target) {
        return [&heard, target](auto&, auto&, auto) { heard.push_back(target); };
    };
    auto io = manager.get_log("system.io");
    manager.add_appender("system.io", "file", to("own"), 100);
    manager.add_appender("*", "file", to("global"), 100);
    manager.remove_appender("*", "file");
    manager.write(*io, "x", Core::info);
    EXPECT_EQ(heard, (std::vector<std::string>{"own"}));
    manager.add_appender("*", "file", to("global again"), 100);
    manager.remove_appender("system.io", "file");
    heard.clear();
    manager.write(*io, "y", Core::info);
    EXPECT_EQ(heard, (std::vector<std::string>{"global again"}));
}

TEST(LogManagerTest, CacheKeepsLinesUntilOneLogOverflowsThenFlushesByLogName) {
    boost::logging::manager manager;
    Captured captured;
    manager.add_appender("*", "capture", captured.appender(), 100);
    auto zeta = manager.get_log("zeta");
    auto alpha = manager.get_log("alpha");
    manager.write(*zeta, "z1", Core::info);
    manager.write(*alpha, "below", Core::trace);  // never cached: below the level
    manager.write(*alpha, "a1", Core::info);
    for (unsigned line = 1; line < manager.default_cache_limit; ++line)
        manager.write(*zeta, "more", Core::info);
    EXPECT_TRUE(captured.lines.empty());
    EXPECT_TRUE(manager.caching());
    manager.write(*zeta, "overflow", Core::info);  // the 257th line of one log
    EXPECT_FALSE(manager.caching());
    ASSERT_EQ(captured.lines.size(), 258u);
    EXPECT_EQ(captured.lines.front(), "alpha:a1:1000");
    EXPECT_EQ(captured.lines[1], "zeta:z1:1000");
    EXPECT_EQ(captured.lines.back(), "zeta:overflow:1000");
}

TEST(LogManagerTest, AThrowingAppenderDoesNotStopTheProgram) {
    boost::logging::manager manager;
    manager.flush_log_cache();
    manager.add_appender(
        "*", "broken", [](auto&, auto&, auto) { throw std::runtime_error("x"); }, 100);
    auto log = manager.get_log("x");
    EXPECT_NO_THROW(manager.write(*log, "text", Core::info));
}

TEST(LogFormatTest, LineParts) {
    Core::Detail::LogFormat& format = Core::Detail::log_format();
    const Core::Detail::LogFormat saved = format;
    format.timestamp = false;
    EXPECT_EQ(Core::Detail::format_line("system.io", "open", Core::warning),
              "[system.io] [warning] open\n");
    format.show_level = false;
    EXPECT_EQ(Core::Detail::format_line("system.io", "open", Core::warning), "[system.io] open\n");
    format.timestamp = true;
    format.show_level = true;
    const std::string stamped = Core::Detail::format_line("a", "b", Core::info);
    ASSERT_EQ(stamped.size(), 13u + 13u);  // "HH:MM:SS.mmm " then "[a] [info] b\n"
    EXPECT_EQ(stamped[2], ':');
    EXPECT_EQ(stamped[8], '.');
    EXPECT_EQ(stamped.substr(12), " [a] [info] b\n");
    format = saved;
}

TEST(LogFileTest, LogsNamingOneFileShareItsWriter) {
    TempDir dir;
    const std::string path = dir.File("shared.log");
    Core::Detail::LogFormat& format = Core::Detail::log_format();
    const Core::Detail::LogFormat saved = format;
    format.timestamp = false;
    format.file_flush = 0;  // every line: never a division by zero
    boost::logging::manager manager;
    manager.flush_log_cache();
    manager.add_appender("one", "file", Core::Detail::WriteToFile{Core::Detail::file_writer(path)},
                         100);
    manager.add_appender("two", "file", Core::Detail::WriteToFile{Core::Detail::file_writer(path)},
                         100);
    manager.write(*manager.get_log("one"), "first", Core::info);
    manager.write(*manager.get_log("two"), "second", Core::error);
    EXPECT_EQ(ReadFile(path), "[one] [info] first\n[two] [error] second\n");
    format = saved;
}

TEST(LogFormatTest, DebuggerTextIsCutAt512Bytes) {
    testing::internal::CaptureStderr();
    Core::Detail::debug_printf("%s", std::string(600, 'x').c_str());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), std::string(511, 'x'));
}

TEST(LogLineTest, ALineBelowTheLevelIsNeverBuilt) {
    int built = 0;
    auto text = [&built] {
        ++built;
        return "text";
    };
    CORE_LOG(Core::io_log(), Core::trace) << text();
    EXPECT_EQ(built, 0);
    CORE_LOG(Core::io_log(), Core::error) << text();
    EXPECT_EQ(built, 1);
}

}  // namespace
