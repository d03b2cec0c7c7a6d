#include <gtest/gtest.h>

#include <unistd.h>
#include <cerrno>
#include <cstdio>
#include <string>

#include "AssertionScript.h"
#include "core_assert.h"
#include "core_settings.h"

namespace {

int dialogs = 0;
int continues = 0;
int breaks = 0;

const std::string kTooLong = " ... Text too long";

class AssertTest : public testing::Test {
protected:
    void SetUp() override {
        AssertionScript::Install();
        dialogs = continues = breaks = 0;
        Core::assertion_hooks().on_dialog = [] { ++dialogs; };
        Core::assertion_hooks().on_continue = [] { ++continues; };
        Core::assertion_hooks().on_break = [] { ++breaks; };
    }
    void TearDown() override { AssertionScript::Uninstall(); }

    AssertionScript& script = AssertionScript::current();
};

const int kFailAtLine = __LINE__ + 2;
void FailAt(int site_value) {
    CORE_ASSERT_MSG(site_value == 0, "site %d", site_value);
}

// The text a dialog shows for a failure of `expression` in "f.cpp" at line 7, with `detail`
// as the site's printf-style text (none when null).
std::string TextFor(const std::string& expression, const char* detail) {
    AssertionScript& script = AssertionScript::current();
    script.answers.push_back(Core::kAssertIgnore);
    bool ignore = false;
    Core::AssertionRecord record{expression.c_str(), "f.cpp", 7, &ignore};
    if (detail != nullptr)
        Core::assertion_failed(record, "%s", detail);
    else
        Core::assertion_failed(record, nullptr);
    return script.texts.back();
}

// An expression that makes the head "f.cpp(7):\nASSERT( EXPR )\n" exactly `size` bytes long.
std::string ExpressionForHead(size_t size) {
    const size_t frame = std::string("f.cpp(7):\nASSERT(  )\n").size();
    return std::string(size - frame, 'e');
}

std::string Head(const std::string& expression) {
    return "f.cpp(7):\nASSERT( " + expression + " )\n";
}

TEST_F(AssertTest, TrueConditionNeverReachesTheHandler) {
    int evaluated = 0;
    CORE_ASSERT(++evaluated == 1);
    EXPECT_EQ(evaluated, 1);
    EXPECT_EQ(dialogs, 0);
}

TEST_F(AssertTest, WithoutADialogTheTextGoesToStandardErrorAndTheSiteGoesOn) {
    Core::set_assertion_dialog(nullptr);
    testing::internal::CaptureStderr();
    const int line = __LINE__ + 1;
    CORE_ASSERT_MSG(1 + 1 == 3, "sum was %d", 2);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              std::string(__FILE__) + "(" + std::to_string(line) + "):\nASSERT( 1 + 1 == 3 )\n" +
                  "sum was 2\n");
    EXPECT_EQ(dialogs, 1);
    EXPECT_EQ(continues, 1);
}

TEST_F(AssertTest, ADialogThatCannotBeShownFallsBackOnStandardError) {
    script.answers = {0, -1};
    for (int i = 0; i < 2; ++i) {
        testing::internal::CaptureStderr();
        FailAt(3);
        EXPECT_NE(
            testing::internal::GetCapturedStderr().find("ASSERT( site_value == 0 )\nsite 3\n"),
            std::string::npos);
    }
    EXPECT_EQ(script.texts.size(), 2u);
    EXPECT_EQ(continues, 2);
}

TEST_F(AssertTest, TheDialogGetsTheTextTheOwnerAndTheStartOfTheSaveBox) {
    int owner = 0;
    Core::set_assertion_owner_window(&owner);
    script.answers = {Core::kAssertIgnore, Core::kAssertIgnore};
    testing::internal::CaptureStderr();
    FailAt(4);
    Core::debug_options().default_no_dump = true;
    FailAt(5);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");

    ASSERT_EQ(script.texts.size(), 2u);
    EXPECT_EQ(script.texts[0], std::string(__FILE__) + "(" + std::to_string(kFailAtLine) +
                                   "):\nASSERT( site_value == 0 )\nsite 4");
    EXPECT_EQ(script.owners[0], &owner);
    EXPECT_TRUE(script.save_at_start[0]);
    EXPECT_FALSE(script.save_at_start[1]);
    EXPECT_EQ(continues, 2);
}

TEST_F(AssertTest, IgnoreAlwaysSilencesOnlyItsOwnSite) {
    script.answers = {Core::kAssertIgnoreAlways, Core::kAssertIgnore};
    for (int round = 0; round < 3; ++round)
        CORE_ASSERT(round < 0);
    FailAt(1);
    EXPECT_EQ(script.texts.size(), 2u);
    EXPECT_EQ(dialogs, 2);
    // Ignore Always counts as going on; the silenced rounds do not.
    EXPECT_EQ(continues, 2);
}

TEST_F(AssertTest, IgnoredSiteStillFormatsButShowsNothing) {
    bool ignored_flag = true;
    Core::AssertionRecord ignored{"a", "file.cpp", 1, &ignored_flag};
    ignored.message = Core::format_assertion_message("early");
    testing::internal::CaptureStderr();
    EXPECT_FALSE(Core::assertion_failed(ignored, "late %d", 1));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(ignored.message, nullptr);
    EXPECT_EQ(dialogs, 0);
    EXPECT_EQ(continues, 0);
}

TEST_F(AssertTest, BreakWithoutADebuggerIsOneIgnore) {
    script.answers = {Core::kAssertBreak};
    FailAt(2);
    EXPECT_EQ(breaks, 0);
    EXPECT_EQ(continues, 1);
}

TEST_F(AssertTest, MessageTextIsNeverAFormat) {
    script.answers = {Core::kAssertIgnore};
    const char* user_text = "%s%s%n";
    CORE_ASSERT_MSG(false, "%s", user_text);
    EXPECT_NE(script.texts.back().find("%s%s%n"), std::string::npos);
}

TEST_F(AssertTest, EarlyMessageKeepsTheErrorOfTheSite) {
    script.answers = {Core::kAssertIgnore};
    const std::string name = "region";
    errno = ENOENT;
    CORE_ASSERT_NOW(name.empty(), "name is %s", name.c_str());
    EXPECT_EQ(script.texts.back().substr(script.texts.back().find("ASSERT(")),
              "ASSERT( name.empty() )\nname is region\n");
}

TEST_F(AssertTest, DisabledAssertionsAnswerAtOnce) {
    Core::set_assertions_disabled(true);
    FailAt(7);
    EXPECT_EQ(dialogs, 0);
    EXPECT_TRUE(script.texts.empty());
}

TEST_F(AssertTest, AHeadOfTheLimitOrMoreIsCutAtTheLimit) {
    for (const size_t size : {size_t{2029}, size_t{3000}}) {
        const std::string expression = ExpressionForHead(size);
        const std::string text = TextFor(expression, "never seen");
        EXPECT_EQ(text, Head(expression).substr(0, 2029) + kTooLong) << size;
    }
    // One byte less fits whole; the one byte left cannot take a text, and the marker then
    // lands at offset 1.
    const std::string expression = ExpressionForHead(2028);
    EXPECT_EQ(TextFor(expression, nullptr), Head(expression));
    EXPECT_EQ(TextFor(expression, "ab"), "f" + kTooLong);
}

TEST_F(AssertTest, TextThatDoesNotFitIsMarkedAtTheRoomThatWasLeft) {
    const std::string short_expression = ExpressionForHead(100);
    const std::string short_head = Head(short_expression);
    // 1929 bytes were left: a text of exactly that size fits.
    const std::string fits(1929, 'x');
    EXPECT_EQ(TextFor(short_expression, fits.c_str()), short_head + fits);
    const std::string longer(1930, 'x');
    EXPECT_EQ(TextFor(short_expression, longer.c_str()),
              short_head + std::string(1929 - 100, 'x') + kTooLong);

    // 529 bytes were left, so the marker goes at 529, inside the head.
    const std::string long_expression = ExpressionForHead(1500);
    EXPECT_EQ(TextFor(long_expression, std::string(600, 'y').c_str()),
              Head(long_expression).substr(0, 529) + kTooLong);
}

TEST_F(AssertTest, AFailureWhileTheDialogIsShownIsASecondAssertion) {
    script.answers = {Core::kAssertIgnore};
    script.while_shown = [] {
        bool ignore = false;
        Core::AssertionRecord inner{"inner", "g.cpp", 9, &ignore};
        EXPECT_FALSE(Core::assertion_failed(inner, nullptr));
    };
    testing::internal::CaptureStderr();
    FailAt(8);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "SECOND ASSERTION g.cpp(9):\nASSERT( inner )\n");
    EXPECT_EQ(script.texts.size(), 1u);
    EXPECT_EQ(continues, 1);
}

TEST_F(AssertTest, OptionsAnswerIgnoreAlwaysWithoutADialog) {
    Core::bug_report_options().assert_ignore_always = true;
    bool ignore = false;
    Core::AssertionRecord record{"x", "h.cpp", 3, &ignore};
    EXPECT_FALSE(Core::assertion_failed(record, nullptr));
    EXPECT_TRUE(ignore);
    EXPECT_TRUE(script.texts.empty());
    EXPECT_EQ(dialogs, 0);
}

using AssertDeathTest = AssertTest;

TEST_F(AssertDeathTest, DisabledDialogsEndTheProcessWithExitCodeOne) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            Core::bug_report_options().disable_dialogs = true;
            // A dialog would end the child with 7.
            Core::set_assertion_dialog([](const char*, void*, bool*) -> int { _exit(7); });
            Core::assertion_hooks().on_abort = [] { std::fputs("on_abort ran\n", stderr); };
            FailAt(9);
        },
        testing::ExitedWithCode(1), "on_abort ran");
}

TEST_F(AssertDeathTest, AbortEndsTheProcessWithExitCodeOne) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            AssertionScript::current().answers = {Core::kAssertAbort};
            FailAt(10);
        },
        testing::ExitedWithCode(1), "");
}

TEST_F(AssertDeathTest, ASecondAssertionCanEndTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            Core::set_exit_on_second_assertion(true);
            AssertionScript::current().answers = {Core::kAssertIgnore};
            AssertionScript::current().while_shown = [] { FailAt(12); };
            FailAt(11);
        },
        testing::ExitedWithCode(1), "SECOND ASSERTION");
}

}  // namespace
