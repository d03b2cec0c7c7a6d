#include <gtest/gtest.h>

#include <sstream>

#include "TempDir.h"
#include "core_config_file_iterator.h"
#include "core_log_options.h"
#include "core_options.h"
#include "core_settings.h"

namespace {

namespace po = boost::program_options;

std::vector<std::pair<std::string, std::string>> ReadOptionFile(const std::string& text) {
    po::options_description description;
    description.add_options()("log.level", po::value<std::string>())("a", po::value<std::string>())(
        "key", po::value<std::string>())("name", po::value<std::string>())(
        "plugins.*", po::value<std::string>());
    std::istringstream stream(text);
    Core::core_config_file_iterator reader(description, stream);
    std::vector<std::pair<std::string, std::string>> items;
    po::option item;
    while (reader.get(item))
        items.emplace_back(item.string_key, item.value.front());
    return items;
}

using Items = std::vector<std::pair<std::string, std::string>>;

TEST(ConfigFileTest, SectionsPrefixNamesAndUnusableLinesAreSkipped) {
    EXPECT_EQ(ReadOptionFile("[log]\nlevel = x\n"), (Items{{"log.level", "x"}}));
    EXPECT_EQ(ReadOptionFile("[log.]\r\n level\t=  x  \r\n"), (Items{{"log.level", "x"}}));
    EXPECT_EQ(ReadOptionFile("# a = b\nkey\na = b # c\nname =\nunknown = 1\n"),
              (Items{{"a", "b"}}));
    EXPECT_EQ(ReadOptionFile("plugins.ui = on\n[]\na=1"),
              (Items{{"plugins.ui", "on"}, {"a", "1"}}));
}

TEST(ConfigFileTest, DescriptionsItCannotServeAreRefused) {
    std::istringstream stream;
    po::options_description overlapping;
    overlapping.add_options()("a.*", po::value<std::string>())("a.b*", po::value<std::string>());
    EXPECT_THROW(Core::core_config_file_iterator(overlapping, stream), po::error);
    po::options_description short_only;
    short_only.add_options()(",x", po::value<std::string>());
    EXPECT_THROW(Core::core_config_file_iterator(short_only, stream), po::error);
}

class OptionsTest : public testing::Test {
protected:
    // A parse hands log.to to the log options once; tests write no log file.
    void SetUp() override { Core::Detail::log_options().log_to.clear(); }

    // Options are declared once per process; each test uses names of its own.
    static void Declare(const char* name, std::string* variable) {
        Core::declare("Test options", name, Core::option(variable), "a test option");
    }
};

TEST_F(OptionsTest, FirstSourceWinsAndResponseFilesAreRead) {
    static std::string from_line, from_response, from_file, untouched = "start";
    Declare("test.line", &from_line);
    Declare("test.response", &from_response);
    Declare("test.file", &from_file);
    Declare("test.untouched", &untouched);
    TempDir dir;
    const std::string response = dir.Write("opts.txt", "[test]\nresponse = r\nline = late\n");
    const std::string file = dir.Write("options.ini", "test.file = f\ntest.response = late\n");

    // The registry outlives the test and calls back at every later parse: the count must too.
    static int callbacks = 0;
    callbacks = 0;
    Core::Options::instance().on_parsed([] { ++callbacks; });
    EXPECT_TRUE(
        Core::Options::instance().parse("--test.line first @" + response, nullptr, file.c_str()));
    EXPECT_EQ(from_line, "first");
    EXPECT_EQ(from_response, "r");
    EXPECT_EQ(from_file, "f");
    EXPECT_EQ(untouched, "start");
    EXPECT_EQ(callbacks, 1);
}

TEST_F(OptionsTest, FailedStagesMakeTheParseFalseAndLaterStagesStillRun) {
    static std::string single, later;
    Declare("test.single", &single);
    Declare("test.later", &later);
    TempDir dir;
    const std::string file = dir.Write("options.ini", "test.later = read\n");
    // The registry outlives the test and calls back at every later parse: the count must too.
    static int callbacks = 0;
    callbacks = 0;
    Core::Options::instance().on_parsed([] { ++callbacks; });
    EXPECT_FALSE(Core::Options::instance().parse("--test.single a --test.single b --nonsense",
                                                 nullptr, file.c_str()));
    EXPECT_EQ(later, "read");
    EXPECT_EQ(callbacks, 0);
    // A missing option file is no failure.
    EXPECT_TRUE(Core::Options::instance().parse("", nullptr, dir.File("none.ini").c_str()));
}

TEST_F(OptionsTest, EnvironmentWordsJoinTheCommandLine) {
    static std::string first, second;
    Declare("test.env_first", &first);
    Declare("test.env_second", &second);
    ::setenv("QUILLET_TEST_OPTIONS", "--test.env_first 'from env'", 1);
    const char* argv[] = {"program", "--test.env_second", "line"};
    EXPECT_TRUE(Core::Options::instance().parse(3, argv, "QUILLET_TEST_OPTIONS", nullptr));
    EXPECT_EQ(first, "from env");
    EXPECT_EQ(second, "line");
    ::unsetenv("QUILLET_TEST_OPTIONS");
}

TEST_F(OptionsTest, WritesEveryOptionAsAnOptionFile) {
    TempDir dir;
    const std::string path = dir.File("all.ini");
    ASSERT_TRUE(Core::Options::instance().write_file(path));
    const std::string text = ReadFile(path);
    EXPECT_EQ(text.find("response-file"), std::string::npos);
    EXPECT_NE(text.find("\n[io]\ndisable_file_cache = false [false]\n"), std::string::npos) << text;
    EXPECT_NE(text.find("file_first = false [false]\nfiltered = \npacks_root = \n"),
              std::string::npos);
    EXPECT_NE(text.find("[debug]\ndefault_no_dump = false [false]\n"), std::string::npos);
}

TEST_F(OptionsTest, LogOptionsApplyDuringTheParse) {
    TempDir dir;
    const std::string file = dir.File("applied.log");
    const std::string line =
        "--log.level 'test.applied error' --log.file 'test.filed " + file + "'";
    EXPECT_TRUE(Core::Options::instance().parse(line, nullptr, nullptr));
    auto& manager = boost::logging::manager::instance();
    EXPECT_EQ(manager.get_log("test.applied")->level(), Core::error);
    manager.write(*manager.get_log("test.filed"), "into the file", Core::warning);
    Core::flush_logs();
    const std::string written = ReadFile(file);
    EXPECT_TRUE(written.ends_with("[test.filed] [warning] into the file\n")) << written;
}

TEST_F(OptionsTest, MemoryOptionsStartAtTheirOwnValuesAndParseToTheirDefaults) {
    Core::MemoryOptions& memory = Core::memory_options();
    EXPECT_EQ(memory.leak_depth, 24);
    EXPECT_TRUE(memory.leaks);
    EXPECT_TRUE(Core::Options::instance().parse("", nullptr, nullptr));
    EXPECT_EQ(memory.leak_depth, 10);
    EXPECT_FALSE(memory.leaks);
    EXPECT_EQ(memory.init, 205);
}

TEST_F(OptionsTest, TheFillByteFollowsMemInitAfterAParse) {
    Core::memory_options();
    Core::set_memory_fill_value(0);
    EXPECT_EQ(Core::memory_fill_value(), 0);
    EXPECT_TRUE(Core::Options::instance().parse("--mem.init 171", nullptr, nullptr));
    EXPECT_EQ(Core::memory_fill_value(), 171);
}

TEST_F(OptionsTest, GarbageInOptionFilesIsSkipped) {
    static std::string kept;
    Declare("test.garbage", &kept);
    TempDir dir;
    std::string garbage(5000, 'x');
    garbage += "\n\x01\x02=\xff\n[\n]]]\n====\ntest.garbage = kept\n";
    garbage += std::string(100000, '=') + "\n";
    EXPECT_TRUE(
        Core::Options::instance().parse("", nullptr, dir.Write("bad.ini", garbage).c_str()));
    EXPECT_EQ(kept, "kept");
}

TEST(OptionItemTest, WritesTypesDefaultsAndMissingValues) {
    unsigned count = 10;
    Core::typed_option_item<unsigned> item("log.file_flush", &count, std::string("10"));
    std::ostringstream text;
    item.write(text, true, true);
    EXPECT_EQ(text.str(), "log.file_flush < unsigned int > = 10 [10]\n");
    EXPECT_EQ(item.group_prefix(), "log");
    EXPECT_EQ(item.short_name(), "file_flush");

    Core::typed_option_item<std::string> unbound("response-file", nullptr, std::nullopt);
    std::ostringstream none;
    unbound.write(none, false, false);
    EXPECT_EQ(none.str(), "response-file = #####\n");
}

}  // namespace
