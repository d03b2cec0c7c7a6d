#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "framework/Archive.h"

namespace {

std::vector<std::string> ReadAll(std::string_view bytes) {
    framework::Archive archive = framework::Archive::ForLoading(bytes, {});
    std::vector<std::string> lines;
    std::string line;
    while (archive.ReadString(line))
        lines.push_back(line);
    EXPECT_TRUE(line.empty());
    EXPECT_EQ(archive.LineNumber(), static_cast<int>(lines.size()));
    return lines;
}

using Lines = std::vector<std::string>;

TEST(ArchiveTest, LinesEndAtLineFeedWithOneCarriageReturnDropped) {
    EXPECT_EQ(ReadAll("a\r\nb\nc"), (Lines{"a", "b", "c"}));
    EXPECT_EQ(ReadAll("a\r\r\n"), (Lines{"a\r"}));
    EXPECT_EQ(ReadAll("a\rb\n"), (Lines{"a\rb"}));
    EXPECT_EQ(ReadAll("last\r"), (Lines{"last\r"}));
    EXPECT_EQ(ReadAll("\n\n"), (Lines{"", ""}));
    EXPECT_EQ(ReadAll(""), Lines{});
}

TEST(ArchiveTest, ReadingPastTheEndGivesEmptyLinesAndFalse) {
    framework::Archive archive = framework::Archive::ForLoading("x\n", "p.qlt");
    std::string line;
    EXPECT_TRUE(archive.ReadString(line));
    EXPECT_TRUE(archive.AtEnd());
    line = "stale";
    EXPECT_FALSE(archive.ReadString(line));
    EXPECT_EQ(line, "");
    EXPECT_EQ(archive.GetFilePath(), "p.qlt");
}

TEST(ArchiveTest, StoringCollectsBytes) {
    framework::Archive archive = framework::Archive::ForStoring({});
    EXPECT_TRUE(archive.IsStoring());
    archive.WriteString("<a>");
    archive.WriteString("\r\n");
    EXPECT_EQ(archive.Bytes(), "<a>\r\n");
    EXPECT_EQ(archive.GetFilePath(), "");
}

}  // namespace
