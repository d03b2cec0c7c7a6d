#include <gtest/gtest.h>

#include "framework/Application.h"
#include "framework/ScriptedUserInterface.h"

namespace {

class Plain : public framework::Document {
public:
    void Serialize(framework::Archive&) override {}
};

std::unique_ptr<framework::Document> MakePlain() {
    return std::make_unique<Plain>();
}

TEST(DocTemplateTest, DocumentStringFields) {
    framework::ScriptedUserInterface ui;
    framework::MemoryProfileStore profile;
    framework::Application app("test", ui, profile);
    using Field = framework::DocTemplate::DocString;
    framework::DocTemplate project(
        app, 129, "\nQlT\nQlT\nQlT Files (*.qlt)\n.qlt\nQlT\nQlT Document", MakePlain);
    EXPECT_EQ(project.GetDocString(Field::WindowTitle), "");
    EXPECT_EQ(project.GetDocString(Field::DocName), "QlT");
    EXPECT_EQ(project.GetDocString(Field::FilterName), "QlT Files (*.qlt)");
    EXPECT_EQ(project.GetDocString(Field::RegistryTypeName), "QlT Document");
    EXPECT_TRUE(project.MatchesExtension("/x/a.qlt"));
    EXPECT_FALSE(project.MatchesExtension("/x/a.QLT"));

    framework::DocTemplate page(app, 130, "Texture page", MakePlain);
    EXPECT_EQ(page.GetDocString(Field::WindowTitle), "Texture page");
    EXPECT_EQ(page.GetDocString(Field::FilterExtension), "");
    EXPECT_FALSE(page.MatchesExtension("a.qlt"));
}

TEST(DocTemplateTest, NewDocumentsAreNumberedAndCloseCleanly) {
    framework::ScriptedUserInterface ui;
    framework::MemoryProfileStore profile;
    framework::Application app("test", ui, profile);
    auto& plain = app.AddDocTemplate(std::make_unique<framework::DocTemplate>(
        app, 129, "\nQlT\nQlT\nQlT Files (*.qlt)\n.qlt", MakePlain));
    framework::Document* first = app.OnFileNew();
    framework::Document* second = app.OnFileNew();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->GetTitle(), "QlT1");
    EXPECT_EQ(second->GetTitle(), "QlT2");
    EXPECT_EQ(app.GetActiveDocument(), second);
    second->OnCloseDocument();
    EXPECT_EQ(app.GetActiveDocument(), nullptr);
    EXPECT_EQ(plain.GetDocuments(), std::vector<framework::Document*>{first});
}

}  // namespace
