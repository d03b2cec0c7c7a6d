#include <gtest/gtest.h>

#include "framework/ProfileStore.h"
#include "framework/RecentFileList.h"

namespace {

using Entries = std::vector<std::string>;

TEST(RecentFileListTest, NewestFirstWithoutDuplicatesUpToCapacity) {
    framework::RecentFileList list(3);
    for (const char* path : {"/a.qlt", "/b.qlt", "/c.qlt", "/a.qlt", "/d.qlt"})
        list.Add(path);
    EXPECT_EQ(list.Entries(), (Entries{"/d.qlt", "/a.qlt", "/c.qlt"}));
    list.Remove(1);
    list.Remove(9);
    EXPECT_EQ(list.Entries(), (Entries{"/d.qlt", "/c.qlt"}));
}

TEST(RecentFileListTest, SavesAsNumberedEntriesAndRemovesStaleOnes) {
    framework::MemoryProfileStore profile;
    profile.WriteString("Recent File List", "File3", "/old.qlt");
    framework::RecentFileList list(4);
    list.Add("/b.qlt");
    list.Add("/a.qlt");
    list.Save(profile);
    EXPECT_EQ(profile.GetString("Recent File List", "File1", ""), "/a.qlt");
    EXPECT_EQ(profile.GetString("Recent File List", "File2", ""), "/b.qlt");
    EXPECT_EQ(profile.GetString("Recent File List", "File3", "none"), "none");

    framework::RecentFileList loaded(4);
    loaded.Load(profile);
    EXPECT_EQ(loaded.Entries(), list.Entries());
}

}  // namespace
