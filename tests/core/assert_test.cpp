#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include "core_assert.h"

namespace {

int dialogs = 0;
int continues = 0;

class AssertTest : public testing::Test {
protected:
    void SetUp() override {
        dialogs = 0;
        continues = 0;
        Core::assertion_hooks().on_dialog = [] { ++dialogs; };
        Core::assertion_hooks().on_continue = [] { ++continues; };
    }
    void TearDown() override { Core::assertion_hooks() = {}; }
};

void FailAt(int site_value) {
    CORE_ASSERT_MSG(site_value == 0, "site %d", site_value);
}

TEST_F(AssertTest, TrueConditionNeverReachesTheHandler) {
    int evaluated = 0;
    CORE_ASSERT(++evaluated == 1);
    EXPECT_EQ(evaluated, 1);
    EXPECT_EQ(dialogs, 0);
}

TEST_F(AssertTest, FailureWritesOneLineAndGoesOn) {
    testing::internal::CaptureStderr();
    const int line = __LINE__ + 1;
    CORE_ASSERT_MSG(1 + 1 == 3, "sum was %d", 2);
    const std::string text = testing::internal::GetCapturedStderr();
    EXPECT_EQ(text, "Assertion failed: 1 + 1 == 3 (" + std::string(__FILE__) + ":" +
                        std::to_string(line) + ") sum was 2\n");
    EXPECT_EQ(dialogs, 1);
    EXPECT_EQ(continues, 1);
}

TEST_F(AssertTest, MessageTextIsNeverAFormat) {
    testing::internal::CaptureStderr();
    const char* user_text = "%s%s%n";
    CORE_ASSERT_MSG(false, "%s", user_text);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("%s%s%n"), std::string::npos);
}

TEST_F(AssertTest, IgnoredSiteIsQuietAndOthersStillReport) {
    bool ignored_flag = true;
    bool other_flag = false;
    Core::AssertionRecord ignored{"a", "file.cpp", 1, &ignored_flag};
    Core::AssertionRecord other{"b", "file.cpp", 2, &other_flag};

    testing::internal::CaptureStderr();
    EXPECT_FALSE(Core::assertion_failed(ignored, nullptr));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(dialogs, 0);

    testing::internal::CaptureStderr();
    EXPECT_FALSE(Core::assertion_failed(other, nullptr));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Assertion failed: b (file.cpp:2)\n");
    EXPECT_EQ(dialogs, 1);
    EXPECT_FALSE(other_flag);
}

TEST_F(AssertTest, EarlyMessageIsFormattedAtTheSiteAndFreed) {
    testing::internal::CaptureStderr();
    const std::string name = "region";
    CORE_ASSERT_NOW(name.empty(), "name is %s", name.c_str());
    EXPECT_NE(testing::internal::GetCapturedStderr().find(") name is region\n"), std::string::npos);
}

TEST_F(AssertTest, DisabledAssertionsAnswerAtOnce) {
    Core::set_assertions_disabled(true);
    testing::internal::CaptureStderr();
    FailAt(7);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    Core::set_assertions_disabled(false);
    EXPECT_EQ(dialogs, 0);
}

}  // namespace
