// A menu built from nothing on the real windows, as an artist builds one: File > New, a
// folder and a texture page in it, pictures imported, an art object, a push button with three
// states and a slider, a layout page with those objects as pieces, the pieces aligned, one
// piece's attributes edited and pasted onto another, saved, opened again: everything in place.
//
// With QUILLET_SCREENSHOT set, the finished editor is also written there as a PNG.
#include <QMdiSubWindow>
#include <QMenu>
#include <QTimer>
#include <QTreeWidget>
#include <algorithm>
#include <functional>

#include "GuiFixture.h"
#include "core_images.h"
#include "core_tga.h"
#include "forms/AddArtForm.h"
#include "forms/AddButtonForm.h"
#include "forms/AddSliderForm.h"
#include "forms/ChooserForm.h"
#include "forms/CreateGroupForm.h"
#include "forms/EditPieceForm.h"
#include "forms/ImportRegionForm.h"
#include "forms/InsertObjectForm.h"
#include "forms/SmallForms.h"
#include "forms/TextureForm.h"
#include "model/QuilletDoc.h"
#include "qt/LayoutPageWindow.h"
#include "qt/ProjectTreeView.h"
#include "qt/TexturePageWindow.h"
#include "shell/CommandIds.h"

namespace {

using namespace commands;

struct Picture {
    const char* name;
    int width;
    int height;
};

// The artist's pictures; each pixel tells its picture and place.
constexpr Picture kPictures[] = {{"backdrop", 96, 48},  {"play_up", 32, 12}, {"play_over", 32, 12},
                                 {"play_down", 32, 12}, {"bar", 64, 8},      {"knob", 8, 8},
                                 {"arrow", 8, 8}};

// Each picture in a colour of its own, shaded along its diagonal.
Core::Colour Pixel(int x, int y, int tag) {
    static constexpr Core::Colour kBase[] = {{0x60, 0x30, 0x20, 0xFF}, {0xC0, 0x80, 0x30, 0xFF},
                                             {0xE0, 0xA0, 0x40, 0xFF}, {0x90, 0x50, 0x20, 0xFF},
                                             {0x50, 0x50, 0x50, 0xFF}, {0x30, 0xC0, 0xF0, 0xFF},
                                             {0xA0, 0xA0, 0xA0, 0xFF}};
    const Core::Colour base = kBase[tag];
    const auto shade = [x, y](uint8_t channel) {
        return static_cast<uint8_t>(std::min(255, channel + (x + y) / 2));
    };
    return {shade(base.blue), shade(base.green), shade(base.red), 0xFF};
}

// Shows the dialog's form to `fill` and presses OK.
template <typename FormType>
std::function<bool(framework::Form&)> Answer(std::function<void(FormType&)> fill) {
    return [fill](framework::Form& form) {
        fill(dynamic_cast<FormType&>(form));
        return true;
    };
}

}  // namespace

class UserStoryTest : public QObject {
    Q_OBJECT

private slots:
    void init() { gui_.Make(); }
    void cleanup() { gui_.Destroy(); }

    void buildsAMenuSavesAndFindsItAgain() {
        QVERIFY(gui_.app->InitInstance({}, gui_.window.get()));
        QVERIFY(QTest::qWaitForWindowExposed(gui_.window.get()));
        gui_.window->Action(kFileNew)->trigger();
        QVERIFY(GetProjectDoc() != nullptr);
        // The new project's window; the start's empty project's window is on its way out.
        for (ProjectTreeView* tree : gui_.window->findChildren<ProjectTreeView*>()) {
            if (tree->View().GetDocument() == GetProjectDoc()) tree_ = tree;
        }
        QVERIFY(tree_ != nullptr);

        MakeTexturePage();
        MakeObjects();
        LayOutTheMenu();
        EditAndPasteAttributes();

        // A new project has no name yet: Save asks for one.
        gui_.ui->file_names.push_back(Path("menu.qlt"));
        gui_.window->Action(kFileSave)->trigger();
        QVERIFY(!GetProjectDoc()->IsModified());
        if (const QByteArray shot = qgetenv("QUILLET_SCREENSHOT"); !shot.isEmpty())
            QVERIFY(gui_.window->grab().save(QString::fromLocal8Bit(shot)));

        // Closed and opened again: everything is where it was left.
        gui_.app->CloseAllDocuments();
        QVERIFY(gui_.app->OpenDocumentFile(Path("menu.qlt")) != nullptr);
        CheckEverythingInPlace();
        QCOMPARE(Boxes(), std::vector<std::string>{});
    }

private:
    void MakeTexturePage() {
        Next<NewFolderForm>(
            [this](NewFolderForm& form) { form.SetText(NewFolderForm::kName, "menus", *gui_.ui); });
        RunInTree({"Textures"}, kNewTextureFolder);
        Next<TextureForm>([](TextureForm&) {});  // 256 by 256, 32 bits with alpha
        gui_.ui->file_names.push_back(Path("menus.tga"));
        RunInTree({"Textures", "menus"}, kCreateTextureInFolder);
        auto* page = ActiveWindow<TexturePageWindow>();
        QVERIFY(page != nullptr);

        std::vector<std::string> files;
        for (int tag = 0; const Picture& picture : kPictures) {
            const ImagePtr image(Core::create_image(static_cast<uint32_t>(picture.width),
                                                    static_cast<uint32_t>(picture.height),
                                                    Core::PIXEL_FORMAT_8888));
            for (int y = 0; y < picture.height; ++y) {
                for (int x = 0; x < picture.width; ++x)
                    image->set_pixel(static_cast<uint32_t>(x), static_cast<uint32_t>(y),
                                     Pixel(x, y, tag));
            }
            files.push_back(Path(std::string(picture.name) + ".tga"));
            QVERIFY(Core::save_tga(*image, files.back().c_str(), Core::PIXEL_FORMAT_8888));
            ++tag;
        }
        Next<ImportRegionForm>([files](ImportRegionForm& form) { form.ChooseFiles(files); });
        page->Action(kImportRegions)->trigger();
        QCOMPARE(GetProjectDoc()->FindTexture(Path("menus.tga")).regions.size(),
                 std::size(kPictures));

        // The layout pages may show what lies in the folder.
        Next<ChooserForm>([this](ChooserForm& form) {
            form.SelectItem(ChooserForm::kTree, {"Textures", "menus"}, *gui_.ui);
        });
        RunInTree({"Layouts"}, kAddCommonPath);
        gui_.ui->file_names.push_back(gui_.dir.Write("types.txt",
                                                     "art,plain,default\r\npush_btn,ok,default\r\n"
                                                     "slider,bar,default\r\n"));
        RunInTree({"Layouts", "Pieces file"}, kBrowsePieceTypes);
    }

    void MakeObjects() {
        const std::string page = Path("menus.tga");
        Next<AddArtForm>([this, page](AddArtForm& form) {
            form.SelectItem(AddArtForm::kTree, {"Textures", "menus", page, "backdrop"}, *gui_.ui);
            form.Press(AddArtForm::kPick, *gui_.ui);
        });
        RunInTree({"UI Objects"}, kAddArt);

        Next<AddButtonForm>([this, page](AddButtonForm& form) {
            for (const auto& [state, region] : {std::pair{AddButtonForm::kEnabled, "play_up"},
                                                std::pair{AddButtonForm::kHighlighted, "play_over"},
                                                std::pair{AddButtonForm::kSelected, "play_down"}}) {
                form.SelectItem(AddButtonForm::kRegions, {"menus", page, region}, *gui_.ui);
                form.Press(state, *gui_.ui);
            }
            form.SetText(AddButtonForm::kName, "play", *gui_.ui);
        });
        RunInTree({"UI Objects"}, kAddButton);

        // The slider's dialog opens one dialog for each of its parts.
        Next<AddSliderForm>([this](AddSliderForm& form) {
            form.SetText(AddSliderForm::kName, "volume", *gui_.ui);
            for (const int part : {AddSliderForm::kCreateArt, AddSliderForm::kCreateThumb,
                                   AddSliderForm::kCreateDecrease, AddSliderForm::kCreateIncrease})
                form.Press(part, *gui_.ui);
        });
        Next<AddArtForm>([this, page](AddArtForm& form) {
            form.SelectItem(AddArtForm::kTree, {"Textures", "menus", page, "bar"}, *gui_.ui);
            form.Press(AddArtForm::kPick, *gui_.ui);
        });
        for (const char* region : {"knob", "arrow", "arrow"}) {
            Next<AddButtonForm>([this, page, region](AddButtonForm& form) {
                form.SelectItem(AddButtonForm::kRegions, {"menus", page, region}, *gui_.ui);
                form.Press(AddButtonForm::kEnabled, *gui_.ui);
            });
        }
        RunInTree({"UI Objects"}, kAddSlider);
        for (const char* object : {"backdrop", "play", "volume"})
            QVERIFY2(GetProjectDoc()->ObjectIfAny(object) != nullptr, object);
    }

    void LayOutTheMenu() {
        Next<CreateLayoutForm>([this](CreateLayoutForm& form) {
            form.SetText(CreateLayoutForm::kName, "MainMenu", *gui_.ui);
        });
        gui_.window->Action(kCreateLayout)->trigger();
        layout_ = ActiveWindow<LayoutPageWindow>();
        QVERIFY(layout_ != nullptr);
        const auto insert = [this](std::vector<std::string> object, const std::string& name) {
            Next<InsertObjectForm>([this, object, name](InsertObjectForm& form) {
                form.SelectItem(InsertObjectForm::kObjects, object, *gui_.ui);
                form.Press(InsertObjectForm::kTakePick, *gui_.ui);
                form.SetText(InsertObjectForm::kPieceName, name, *gui_.ui);
            });
            layout_->Action(kInsertObject)->trigger();
        };
        // Each piece lands at the page's middle; the arrows take it down below the others.
        const auto down = [this](int steps) {
            for (int step = 0; step < steps; ++step)
                QTest::keyClick(&layout_->Page(), Qt::Key_Down);
        };
        insert({"Art", "backdrop"}, "background");
        insert({"Button", "Push", "play"}, "play_game");
        down(60);
        insert({"Button", "Push", "play"}, "quit_game");
        down(80);
        insert({"Slider", "volume"}, "music_volume");
        down(100);
        QCOMPARE(Page().pieces.size(), size_t{4});

        // A band around all of them, then one left edge.
        QWidget* viewport = layout_->Page().viewport();
        QTest::mousePress(viewport, Qt::LeftButton, {}, QPoint(300, 200));
        QTest::mouseMove(viewport, QPoint(viewport->width() - 2, viewport->height() - 2));
        QTest::mouseRelease(viewport, Qt::LeftButton, {},
                            QPoint(viewport->width() - 2, viewport->height() - 2));
        QCOMPARE(layout_->Page().View().Selection().pieces.size(), size_t{4});
        layout_->Action(kAlignLeft)->trigger();
        for (const UI_PIECE& piece : Page().pieces)
            QCOMPARE(piece.x, Page().pieces.front().x);
    }

    void EditAndPasteAttributes() {
        Next<CreateGroupForm>([this](CreateGroupForm& form) {
            form.SetText(CreateGroupForm::kName, "main_buttons", *gui_.ui);
        });
        layout_->Action(kCreateEditGroup)->trigger();
        Next<EditPieceForm>([this](EditPieceForm& form) {
            QCOMPARE(form.Text(EditPieceForm::kName), std::string("play_game"));
            form.SetText(EditPieceForm::kPieceData, "start", *gui_.ui);
            QVERIFY(form.SelectRowText(EditPieceForm::kEditGroup, "main_buttons", *gui_.ui));
        });
        RightClickMenu("play_game", QStringLiteral("Edit..."));
        RightClickMenu("play_game", QStringLiteral("Copy Attributes"));
        RightClickMenu("quit_game", QStringLiteral("Paste Attributes"));
        QCOMPARE(Piece("quit_game").edit_group_id, std::string("main_buttons"));
        // The piece keeps its own data.
        QCOMPARE(Piece("quit_game").object_data, std::string());
    }

    void CheckEverythingInPlace() {
        CQuilletDoc* project = GetProjectDoc();
        QVERIFY(project != nullptr);
        const TPAGE& page = project->FindTexture(Path("menus.tga"));
        QCOMPARE(page.folder, std::string("menus"));
        QCOMPARE(page.regions.size(), std::size(kPictures));
        // Every region's pixels stand in the written page where its rectangle says.
        Core::TgaReader reader;
        QVERIFY(reader.buffer.open(Path("menus.tga").c_str()));
        const ImagePtr written(Core::load_tga(reader, Core::PIXEL_FORMAT_8888));
        QVERIFY(written != nullptr);
        for (int tag = 0; const Picture& picture : kPictures) {
            const TREGION& region = project->RegionOfTexture(page.path, picture.name);
            const PageRect& r = region.rect;
            QCOMPARE(r.right - r.left, picture.width);
            for (const auto& [x, y] :
                 {std::pair{0, 0}, std::pair{picture.width - 1, picture.height - 1}})
                QCOMPARE(written->get_pixel(static_cast<uint32_t>(r.left + x),
                                            static_cast<uint32_t>(r.top + y)),
                         Pixel(x, y, tag));
            ++tag;
        }
        QCOMPARE(project->qlt_file().common_texture_paths, std::vector<std::string>{"menus"});
        QCOMPARE(project->FindObject("play").TypeTag(), std::string("push_button"));
        QCOMPARE(project->FindObject("volume").TypeTag(), std::string("UI_H_Slider"));
        const LPAGE& menu = project->FindLayout("MainMenu");
        QCOMPARE(menu.pieces.size(), size_t{4});
        for (const UI_PIECE& piece : menu.pieces)
            QCOMPARE(piece.x, menu.pieces.front().x);
        QCOMPARE(Piece("play_game").object_data, std::string("start"));
        QCOMPARE(Piece("play_game").piece_identifier, std::string("ok"));
        QCOMPARE(Piece("quit_game").edit_group_id, std::string("main_buttons"));
    }

    // Right-clicks the piece and chooses `entry` from its menu.
    void RightClickMenu(const std::string& piece, const QString& entry) {
        const UI_PIECE& found = Piece(piece);
        QWidget* viewport = layout_->Page().viewport();
        const Point scroll = layout_->Page().ScrollPosition();
        const QPoint at(found.x + 2 - scroll.x, found.y + 2 - scroll.y);
        QTimer::singleShot(0, this, [entry] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            QVERIFY(menu != nullptr);
            for (QAction* action : menu->actions()) {
                if (action->text() == entry) menu->setActiveAction(action);
            }
            QTest::keyClick(menu, Qt::Key_Return);
        });
        QTest::mousePress(viewport, Qt::RightButton, {}, at);
        QTest::mouseRelease(viewport, Qt::RightButton, {}, at);
    }

    void RunInTree(const std::vector<std::string>& path, int command) {
        const WorkspaceNode* node = tree_->View().Model().NodeAt(path);
        QVERIFY(node != nullptr);
        tree_->RunMenuCommand(tree_->ItemOf(*node), command);
    }

    template <typename FormType>
    void Next(std::function<void(FormType&)> fill) {
        gui_.ui->forms.push_back(Answer<FormType>(std::move(fill)));
    }

    template <typename Window>
    Window* ActiveWindow() const {
        QMdiSubWindow* active = gui_.window->MdiArea().activeSubWindow();
        return active != nullptr ? qobject_cast<Window*>(active->widget()) : nullptr;
    }

    static const LPAGE& Page() { return GetProjectDoc()->FindLayout("MainMenu"); }
    static const UI_PIECE& Piece(const std::string& name) {
        return GetProjectDoc()->FindLayout("MainMenu").FindPiece(name);
    }
    std::string Path(const std::string& name) const { return gui_.dir.File(name); }

    // Every box shown, as "caption: text".
    std::vector<std::string> Boxes() const {
        std::vector<std::string> texts;
        for (const framework::RecordedBox& box : gui_.ui->boxes)
            texts.push_back(box.caption + ": " + box.text);
        return texts;
    }

    GuiFixture gui_;
    ProjectTreeView* tree_ = nullptr;
    LayoutPageWindow* layout_ = nullptr;
};

int main(int argc, char** argv) {
    return RunGuiTest<UserStoryTest>(argc, argv);
}

#include "user_story_test.moc"
