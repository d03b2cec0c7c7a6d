// The project window's logic: the tree kept node by node, its menus, deleting, moving pages
// between folders and the commands that add and create records.
#include "../model/ProjectFixture.h"
#include "forms/SmallForms.h"
#include "shell/CommandIds.h"
#include "shell/QuilletView.h"

namespace {

using namespace commands;

std::string Region(const std::string& name, int left) {
    return "<region>" + name + "\n<left>" + std::to_string(left) +
           "</left>\n<top>0</top>\n<right>" + std::to_string(left + 8) +
           "</right>\n<bottom>8</bottom>\n</region>\n";
}

// Pages "menus.tga" (folder "menus", regions "b" and "A") and "loose.tga" without a folder,
// a movie in folder "movies", a font, an art object and a menu "Main" with a piece.
const std::string kProject =
    "<texture>menus.tga\n<path>menus</path>\n" + Region("b", 0) + Region("A", 8) +
    "</texture>\n<texture>loose.tga\n</texture>\n"
    "<fmv>intro.mpg\n<path>movies</path>\n<identifier>intro_mpg</identifier>\n<left>0</left>\n"
    "<top>0</top>\n<right>64</right>\n<bottom>64</bottom>\n</fmv>\n"
    "<font>f.bgf\n<identifier>big</identifier>\n<lf_height>12</lf_height>\n</font>\n"
    "<UI object>logo\n<type>art</type>\n<UI region>art\n<page>menus.tga</page>\n"
    "<region>b</region>\n</UI region>\n</UI object>\n"
    "<layout>\n<layout_width>800</layout_width>\n<layout_height>600</layout_height>\n"
    "<piece_types_fname></piece_types_fname>\n<piece_texts_fname></piece_texts_fname>\n"
    "<texture_path>menus</texture_path>\n"
    "<lpage>Main\n<texture_path>menus</texture_path>\n<UI piece>head\n<identifier>i</identifier>\n"
    "<Parameters>\n<x>0</x>\n<y>0</y>\n<width>8</width>\n<height>8</height>\n</Parameters>\n"
    "<object_id>logo</object_id>\n</UI piece>\n</lpage>\n</layout>\n";

class Canvas : public WorkspaceCanvas, public WorkspaceObserver {
public:
    int syncs_posted = 0;
    int beeps = 0;
    std::vector<std::string> log;  // "+text", "-text", "=text"
    void PostSync() override { ++syncs_posted; }
    void Beep() override { ++beeps; }
    void NodeAdded(const WorkspaceNode& node) override { log.push_back("+" + node.text); }
    void NodeRemoving(const WorkspaceNode& node) override { log.push_back("-" + node.text); }
    void NodeRenamed(const WorkspaceNode& node) override { log.push_back("=" + node.text); }
};

class WorkspaceViewTest : public ProjectFixture {
protected:
    Canvas canvas;
    CQuilletView view{canvas};
    CQuilletDoc* project = nullptr;

    void SetUp() override {
        Start();
        project = Open("ui.qlt", kProject);
        ASSERT_NE(project, nullptr) << (ui.boxes.empty() ? "" : ui.boxes[0].text);
        project->AddView(view);
        view.OnInitialUpdate();
        view.Model().SetObserver(&canvas);
    }
    void TearDown() override {
        if (GetProjectDoc() != nullptr) GetProjectDoc()->RemoveView(view);
    }

    WorkspaceNode* Node(const std::vector<std::string>& path) { return view.Model().NodeAt(path); }
    WorkspaceNode& Select(const std::vector<std::string>& path) {
        WorkspaceNode* node = Node(path);
        EXPECT_NE(node, nullptr);
        view.Select(node);
        return *node;
    }
    std::vector<std::string> Children(const std::vector<std::string>& path) {
        std::vector<std::string> texts;
        const WorkspaceNode* node = path.empty() ? &view.Model().Root() : Node(path);
        EXPECT_NE(node, nullptr);
        if (node == nullptr) return texts;
        for (const auto& child : node->children)
            texts.push_back(child->text);
        return texts;
    }
    std::string Page(const std::string& name) { return dir.File(name); }
    // Runs the update the window would run once back in its event loop.
    void Settle() { view.SyncIfNeeded(); }
};

TEST_F(WorkspaceViewTest, TheTreeFollowsTheProjectNodeByNode) {
    EXPECT_EQ(Children({}),
              (std::vector<std::string>{"Textures", "Fonts", "FMVs", "UI Objects", "Layouts"}));
    EXPECT_EQ(Children({"Textures"}), (std::vector<std::string>{Page("loose.tga"), "menus"}));
    EXPECT_EQ(Children({"Textures", "menus", Page("menus.tga")}),
              (std::vector<std::string>{"A", "b"}));
    const WorkspaceNode* logo = Node({"UI Objects", "Art", "logo"});
    ASSERT_NE(logo, nullptr);
    view.Select(Node({"Layouts", "Menus", "Main", "Pieces", "head"}));

    // A piece renamed in its page: one node goes, one comes; the rest stay as they were.
    UI_PIECE piece = project->FindLayout("Main").FindPiece("head");
    piece.name = "title";
    project->ReplacePiece("Main", "head", piece);
    EXPECT_GT(canvas.syncs_posted, 0) << "the nodes follow once back in the event loop";
    Settle();
    EXPECT_EQ(canvas.log, (std::vector<std::string>{"-head", "+title"}));
    EXPECT_EQ(Node({"UI Objects", "Art", "logo"}), logo) << "untouched nodes are kept";
    EXPECT_EQ(view.Selected(), nullptr) << "a node that goes is no longer selected";

    canvas.log.clear();
    ChangeWidth(*project, 1024);
    Settle();
    EXPECT_EQ(canvas.log, (std::vector<std::string>{"=Dimensions: 1024x600"}));
}

TEST_F(WorkspaceViewTest, TreeOrderIgnoresCaseThenComparesBytes) {
    EXPECT_TRUE(TreeTextLess("apple", "Banana"));
    EXPECT_TRUE(TreeTextLess("B", "b")) << "ties go by bytes";
    EXPECT_FALSE(TreeTextLess("b", "B"));
    EXPECT_TRUE(TreeTextLess("_x", "a")) << "'_' is below the lower-case letters";
    WorkspaceModel model;
    WorkspaceNode& folder = model.Add(model.Root(), TreeNode{"f", {}, false, true});
    model.Add(folder, TreeNode{"b", {}, true, false});
    WorkspaceNode& first = model.Add(folder, TreeNode{"a", {}, true, false});
    WorkspaceNode& second = model.Add(folder, TreeNode{"a", {}, true, false});
    EXPECT_EQ(first.Index(), 0u);
    EXPECT_EQ(second.Index(), 1u) << "a new node stands after those equal to it";
}

TEST_F(WorkspaceViewTest, EveryNodeAnswersItsContextMenu) {
    const auto commands_of = [&](const std::vector<std::string>& path) {
        std::vector<int> ids;
        for (const MenuEntry& entry : view.ContextMenu(*Node(path)))
            ids.push_back(entry.command);
        return ids;
    };
    EXPECT_EQ(commands_of({"Textures"}),
              (std::vector<int>{kNewTextureFolder, kCreateTextureFromRoot, kAddExistingTexture}));
    EXPECT_EQ(commands_of({"Textures", "menus"}), std::vector<int>{kCreateTextureInFolder});
    EXPECT_EQ(commands_of({"Textures", "menus", Page("menus.tga")}),
              std::vector<int>{kViewTexturePage});
    EXPECT_EQ(commands_of({"Textures", Page("loose.tga")}), std::vector<int>{kViewTexturePage});
    EXPECT_TRUE(commands_of({"Textures", "menus", Page("menus.tga"), "b"}).empty());
    EXPECT_EQ(commands_of({"FMVs"}), (std::vector<int>{kAddFmv, kNewFmvFolder}));
    EXPECT_EQ(commands_of({"FMVs", "movies"}), std::vector<int>{kAddFmvToFolder});
    EXPECT_EQ(commands_of({"Fonts"}), std::vector<int>{kAddFont});
    EXPECT_EQ(commands_of({"UI Objects"}),
              (std::vector<int>{kAddArt, kAddButton, kAddSlider, kAddScrollBox}));
    EXPECT_TRUE(commands_of({"UI Objects", "Button", "Push"}).empty()) << "as it always was";
    EXPECT_EQ(commands_of({"UI Objects", "Art", "logo"}), std::vector<int>{kEditObject});
    EXPECT_EQ(commands_of({"Layouts", "Dimensions: 800x600"}),
              std::vector<int>{kEditDimensionsOfItem});
    EXPECT_EQ(commands_of({"Layouts", "Menus", "Main"}), (std::vector<int>{kViewMenu, kCopyMenu}));
    EXPECT_EQ(commands_of({"Layouts", "Menus", "Main", "Paths"}), std::vector<int>{kAddPagePath});
    EXPECT_TRUE(commands_of({"Layouts", "Menus", "Main", "Pieces"}).empty());
}

TEST_F(WorkspaceViewTest, DeleteFollowsTheNodeItIsPressedOn) {
    // Fixed nodes delete nothing.
    Select({"UI Objects", "Art"});
    view.DeleteSelected();
    EXPECT_TRUE(project->ObjectExists("logo"));

    Select({"Layouts", "Menus", "Main", "Pieces", "head"});
    view.DeleteSelected();
    EXPECT_FALSE(project->FindLayout("Main").PieceExists("head"));
    EXPECT_EQ(Node({"Layouts", "Menus", "Main", "Pieces", "head"}), nullptr);

    Select({"Layouts", "Menus", "Main", "Paths", "Textures", "menus"});
    view.DeleteSelected();
    EXPECT_TRUE(project->FindLayout("Main").texture_paths.empty());

    // The whole list of pages asks first; Cancel keeps every page.
    Select({"Textures"});
    ui.answers = {framework::Answer::Cancel};
    view.DeleteSelected();
    EXPECT_EQ(project->records().texture_pages.size(), 2u);
    EXPECT_EQ(ui.boxes.back().caption, "quillet");
}

TEST_F(WorkspaceViewTest, AFolderWithARefusedPageStays) {
    // "menus.tga" holds the region object "logo" uses: its deletion asks, and No keeps it.
    Select({"Textures", "menus"});
    ui.answers = {framework::Answer::No, framework::Answer::Cancel, framework::Answer::Cancel};
    view.DeleteSelected();
    EXPECT_TRUE(project->TextureExists(Page("menus.tga")));
    EXPECT_NE(Node({"Textures", "menus", Page("menus.tga")}), nullptr);
}

TEST_F(WorkspaceViewTest, PagesMoveOnlyIntoFolders) {
    const WorkspaceNode& loose = *Node({"Textures", Page("loose.tga")});
    view.Drop(loose, *Node({"Textures", "menus", Page("menus.tga"), "b"}));
    view.Drop(loose, *Node({"Textures", "menus", Page("menus.tga")}));
    view.Drop(loose, *Node({"Fonts"}));
    EXPECT_EQ(canvas.beeps, 3) << "onto a region, a page, another root";
    EXPECT_EQ(project->FindTexture(Page("loose.tga")).folder, "");

    view.Drop(loose, *Node({"Textures", "menus"}));
    EXPECT_EQ(project->FindTexture(Page("loose.tga")).folder, "menus");
    EXPECT_NE(Node({"Textures", "menus", Page("loose.tga")}), nullptr);

    // Out onto the root again; the folder stays, as a node of its own.
    const WorkspaceNode& menus_page = *Node({"Textures", "menus", Page("menus.tga")});
    view.Drop(menus_page, *Node({"Textures"}));
    view.Drop(*Node({"Textures", "menus", Page("loose.tga")}), *Node({"Textures"}));
    EXPECT_EQ(project->FindTexture(Page("menus.tga")).folder, "");
    EXPECT_TRUE(Children({"Textures", "menus"}).empty());

    const WorkspaceNode& movie = *Node({"FMVs", "movies", dir.File("intro.mpg")});
    view.Drop(movie, *Node({"FMVs"}));
    EXPECT_EQ(project->FindFmvByPath(dir.File("intro.mpg")).folder, "");
    EXPECT_FALSE(view.CanDrag(*Node({"Fonts", "big"})));
}

TEST_F(WorkspaceViewTest, NewFoldersAreCheckedAndLiveAsNodesUntilUsed) {
    const auto answer = [this](const std::string& name) {
        ui.forms.push_back([this, name](framework::Form& form) {
            form.SetText(NewFolderForm::kName, name, ui);
            return true;
        });
    };
    answer(std::string(33, 'x'));
    answer("menus");
    answer("art");
    view.OnCommand(kNewTextureFolder);
    ASSERT_EQ(ui.boxes.size(), 2u);
    EXPECT_EQ(ui.boxes[0].caption, "Folder name too long");
    EXPECT_EQ(ui.boxes[1].text, "This folder is already part of the project");
    EXPECT_NE(Node({"Textures", "art"}), nullptr);
    EXPECT_TRUE(project->IsModified());
    ChangeWidth(*project, 900);
    Settle();
    EXPECT_NE(Node({"Textures", "art"}), nullptr) << "an empty folder stays while open";
}

TEST_F(WorkspaceViewTest, AddingAPageTheProjectHasIsRefused) {
    ui.file_names = {Page("loose.tga")};
    view.OnCommand(kAddExistingTexture);
    ASSERT_EQ(ui.boxes.size(), 1u);
    EXPECT_EQ(ui.boxes[0].text, "This file is already part of the project");
    // The File menu's command has always added a box of its own.
    ui.file_names = {std::nullopt};
    view.OnCommand(kAddTexture);
    EXPECT_EQ(ui.boxes.back().text, "Drag and drop image list uninitialised");
}

TEST_F(WorkspaceViewTest, LayoutsAreCreatedCopiedAndSized) {
    const auto layout = [this](const std::string& name) {
        ui.forms.push_back([this, name](framework::Form& form) {
            form.SetText(CreateLayoutForm::kName, name, ui);
            form.SetText(CreateLayoutForm::kWidth, "1024", ui);
            return true;
        });
    };
    layout("Main");
    view.OnCommand(kCreateLayout);
    EXPECT_EQ(ui.boxes.back().text, "This layout is already part of the project");

    Select({"Layouts", "Menus", "Main"});
    layout("Copy");
    view.OnCommand(kCopyMenu);
    ASSERT_TRUE(project->LayoutExists("Copy"));
    EXPECT_TRUE(project->FindLayout("Copy").PieceExists("head"));
    EXPECT_NE(Node({"Layouts", "Menus", "Copy", "Pieces", "head"}), nullptr);

    ui.forms.push_back([this](framework::Form& form) {
        form.SetText(EditDimensionsForm::kHeight, "480", ui);
        return true;
    });
    view.OnCommand(kEditDimensions);
    EXPECT_EQ(project->qlt_file().layout_height, 480);
    EXPECT_NE(Node({"Layouts", "Dimensions: 800x480"}), nullptr);
}

TEST_F(WorkspaceViewTest, OpeningANodeOpensWhatItStandsFor) {
    Select({"Layouts", "Menus"});
    view.OpenSelected();
    EXPECT_TRUE(app.Templates()[2]->GetDocuments().empty());
    Select({"Layouts", "Menus", "Main"});
    view.OpenSelected();
    ASSERT_EQ(app.Templates()[2]->GetDocuments().size(), 1u);
    EXPECT_EQ(app.Templates()[2]->GetDocuments()[0]->GetTitle(), "Main");
}

TEST_F(WorkspaceViewTest, APieceFileThatDoesNotReadIsTold) {
    ui.file_names = {dir.File("missing.txt")};
    view.OnCommand(kBrowsePieceTypes);
    EXPECT_EQ(ui.boxes.back().text, "Invalid piece types description file");
    EXPECT_EQ(Children({"Layouts", "Pieces file"}),
              (std::vector<std::string>{"No file", "No file"}));
}

}  // namespace
