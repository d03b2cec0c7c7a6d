#include <gtest/gtest.h>

#include "model/qlt_errors.h"
#include "model/qlt_syntax.h"

namespace {

TEST(SyntaxTest, MatchTagCutsBothTagsOrLeavesTheLine) {
    std::string line = "<x>12</x>";
    EXPECT_TRUE(MatchTag(line, "<x>", "</x>"));
    EXPECT_EQ(line, "12");

    line = "<x></x>";
    EXPECT_TRUE(MatchTag(line, "<x>", "</x>"));
    EXPECT_EQ(line, "");

    for (const char* unchanged : {"<X>1</X>", "<x>1", "1</x>", "<x>", "", " <x>1</x>"}) {
        line = unchanged;
        EXPECT_FALSE(MatchTag(line, "<x>", "</x>")) << unchanged;
        EXPECT_EQ(line, unchanged);
    }
    // A value holding the close tag's text is cut at the end only.
    line = "<x>a</x>b</x>";
    EXPECT_TRUE(MatchTag(line, "<x>", "</x>"));
    EXPECT_EQ(line, "a</x>b");
}

TEST(SyntaxTest, OverlappingTagsGiveTheEmptyText) {
    std::string line = "<ab>";
    EXPECT_TRUE(MatchTag(line, "<ab>", "b>"));
    EXPECT_EQ(line, "");
}

TEST(SyntaxTest, TrimmedLinesLoseSpacesTabsAndLineFeedsOnly) {
    framework::Archive archive = framework::Archive::ForLoading(" \t <a>x</a>\t \r\n\x0b<b>\n", {});
    std::string line;
    ReadTrimmedLine(archive, line);
    EXPECT_EQ(line, "<a>x</a>");
    ReadTrimmedLine(archive, line);
    EXPECT_EQ(line, "\x0b<b>");
    ReadTrimmedLine(archive, line);
    EXPECT_EQ(line, "");
    EXPECT_THROW(ReadAwaitedLine(archive, line), UNEXPECTED_END_OF_FILE);

    EXPECT_TRUE(IsBlankLine(" \t\n"));
    EXPECT_TRUE(IsBlankLine(""));
    EXPECT_FALSE(IsBlankLine(" \r"));
}

TEST(SyntaxTest, ScanIntFollowsPercentD) {
    int32_t value = 99;
    EXPECT_EQ(ScanInt("", value), -1);
    EXPECT_EQ(ScanInt("  \t", value), -1);
    EXPECT_EQ(value, 99);
    EXPECT_EQ(ScanInt("abc", value), 0);
    EXPECT_EQ(ScanInt("-", value), 0);
    EXPECT_EQ(ScanInt("+ 1", value), 0);
    EXPECT_EQ(value, 99);
    EXPECT_EQ(ScanInt(" -12px", value), 1);
    EXPECT_EQ(value, -12);
    EXPECT_EQ(ScanInt("+7", value), 1);
    EXPECT_EQ(value, 7);
    EXPECT_EQ(ScanInt("4294967297", value), 1);  // low 32 bits
    EXPECT_EQ(value, 1);
    EXPECT_EQ(ScanInt("-2147483648", value), 1);
    EXPECT_EQ(value, INT32_MIN);
}

TEST(SyntaxTest, NumberValuesKeepTheTargetWhenEmptyAndThrowWhenNotNumbers) {
    int32_t value = 5;
    ReadIntValue("", value);
    EXPECT_EQ(value, 5);
    EXPECT_THROW(ReadIntValue("abc", value), BAD_TAG);
    ReadIntValue("0", value);
    EXPECT_EQ(value, 0);
}

TEST(SyntaxTest, WritersIndentTwoSpacesPerBlock) {
    framework::Archive archive = framework::Archive::ForStoring({});
    write_indent = 0;
    WriteOpenTag(archive, "<a>");
    WriteOpenLine(archive, "<b>", "name");
    WriteTagLine(archive, "<c>", "1", "</c>");
    WriteCloseLine(archive, "</b>");
    WriteCloseLine(archive, "</a>");
    EXPECT_EQ(archive.Bytes(), "<a>\r\n  <b>name\r\n    <c>1</c>\r\n  </b>\r\n</a>\r\n");
    EXPECT_EQ(write_indent, 0);
}

TEST(SyntaxTest, TextAfterAndBeginsWith) {
    EXPECT_EQ(TextAfter("<texture>c:\\x.tga", 9), "c:\\x.tga");
    EXPECT_EQ(TextAfter("<tex", 9), "");
    EXPECT_EQ(TextAfter("<texture>", 9), "");
    EXPECT_TRUE(BeginsWith("<texture>c:\\x.tga", "<texture>"));
    EXPECT_FALSE(BeginsWith("<textur", "<texture>"));
}

TEST(SyntaxTest, ReadErrorNames) {
    EXPECT_STREQ(ReadErrorName(std::make_exception_ptr(NOT_A_LPAGE())), "NOT_A_LPAGE");
    EXPECT_STREQ(ReadErrorName(std::make_exception_ptr(UNEXPECTED_END_OF_FILE())),
                 "UNEXPECTED_END_OF_FILE");
    EXPECT_EQ(ReadErrorName(std::make_exception_ptr(42)), nullptr);
    static_assert(std::is_empty_v<BAD_TAG>);
}

}  // namespace
