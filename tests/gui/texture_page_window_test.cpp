// The texture page window, offscreen: a page opened from the project tree, pictures imported,
// a region dragged and nudged with the real mouse and keys, the page tiled, saved and
// opened again.
#include <QAction>
#include <QMenu>
#include <QTest>
#include <QToolBar>
#include <QTreeWidget>
#include <algorithm>

#include "GuiFixture.h"
#include "core_images.h"
#include "core_tga.h"
#include "forms/ImportRegionForm.h"
#include "model/QuilletDoc.h"
#include "qt/MdiFrame.h"
#include "qt/TexturePageWindow.h"
#include "shell/CommandIds.h"

namespace {

const std::string kProject =
    "<version>1.01</version>\r\n<texture>page.tga\r\n</texture>\r\n<layout>\r\n"
    "  <layout_width>800</layout_width>\r\n  <layout_height>600</layout_height>\r\n"
    "  <piece_types_fname></piece_types_fname>\r\n  <piece_texts_fname></piece_texts_fname>\r\n"
    "</layout>\r\n";

// Pixel (x, y) of picture `tag`: blue x, green y, red the tag.
Core::Colour Pixel(int x, int y, int tag) {
    return {static_cast<uint8_t>(x), static_cast<uint8_t>(y), static_cast<uint8_t>(tag), 0xFF};
}

void WritePicture(const std::string& path, int width, int height, int tag) {
    const ImagePtr image(Core::create_image(
        static_cast<uint32_t>(width), static_cast<uint32_t>(height), Core::PIXEL_FORMAT_8888));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image->set_pixel(static_cast<uint32_t>(x), static_cast<uint32_t>(y), Pixel(x, y, tag));
    }
    Core::save_tga(*image, path.c_str(), Core::PIXEL_FORMAT_8888);
}

ImagePtr LoadPicture(const std::string& path) {
    Core::TgaReader reader;
    if (!reader.buffer.open(path.c_str())) return nullptr;
    return ImagePtr(Core::load_tga(reader, Core::PIXEL_FORMAT_8888));
}

QRgb Shown(const Core::Colour& colour) {
    return qRgb(colour.red, colour.green, colour.blue);
}

}  // namespace

class TexturePageWindowTest : public QObject {
    Q_OBJECT

private slots:
    void init() { gui_.Make(); }
    void cleanup() { gui_.Destroy(); }

    void importDragNudgeTileSaveAndReopen() {
        const std::string page_path = gui_.dir.File("page.tga");
        WritePicture(page_path, 64, 64, 0x10);
        const std::string one = gui_.dir.File("one.tga");
        const std::string two = gui_.dir.File("two.tga");
        WritePicture(one, 8, 8, 0x20);
        WritePicture(two, 16, 4, 0x30);
        QVERIFY(gui_.app->InitInstance({gui_.dir.Write("ui.qlt", kProject)}, gui_.window.get()));
        QVERIFY(QTest::qWaitForWindowExposed(gui_.window.get()));

        TexturePageWindow* window = OpenPageFromTree(page_path);
        QVERIFY(window != nullptr);
        QWidget* viewport = window->Page().viewport();

        gui_.ui->forms.push_back([one, two](framework::Form& form) {
            dynamic_cast<ImportRegionForm&>(form).ChooseFiles({one, two});
            return true;
        });
        window->Action(commands::kImportRegions)->trigger();
        QCoreApplication::processEvents();
        CQuilletDoc* project = GetProjectDoc();
        QCOMPARE(Rect(*project, page_path, "one"), (PageRect{0, 0, 8, 8}));
        QCOMPARE(Rect(*project, page_path, "two"), (PageRect{8, 0, 24, 4}));
        QTRY_COMPARE(viewport->grab().toImage().pixel(10, 1), Shown(Pixel(2, 1, 0x30)));

        QTest::mousePress(viewport, Qt::LeftButton, {}, QPoint(2, 2));
        QTest::mouseMove(viewport, QPoint(32, 34));
        QTest::mouseRelease(viewport, Qt::LeftButton, {}, QPoint(32, 34));
        QCOMPARE(Rect(*project, page_path, "one"), (PageRect{30, 32, 38, 40}));
        QTest::keyClick(&window->Page(), Qt::Key_Right);
        QCOMPARE(Rect(*project, page_path, "one"), (PageRect{31, 32, 39, 40}));
        // Inside the selection's outline, which is drawn over its edges.
        QTRY_COMPARE(viewport->grab().toImage().pixel(33, 34), Shown(Pixel(2, 2, 0x20)));

        window->Action(commands::kZoomIn)->trigger();
        QTRY_COMPARE(viewport->grab().toImage().pixel(67, 69), Shown(Pixel(2, 2, 0x20)));
        // The main window's T-Page menu runs the commands of the active page window.
        QAction* tile = gui_.window->Action(commands::kTileByHeightThenWidth);
        QVERIFY(tile != nullptr);
        auto* menu = qobject_cast<QMenu*>(tile->parent());
        QVERIFY(menu != nullptr && menu->menuAction()->isVisible());
        tile->trigger();
        QCOMPARE(Rect(*project, page_path, "one"), (PageRect{0, 0, 8, 8}));
        QCOMPARE(Rect(*project, page_path, "two"), (PageRect{8, 0, 24, 4}));

        gui_.window->Action(commands::kFileSave)->trigger();
        QVERIFY(!project->IsModified());
        const ImagePtr saved = LoadPicture(page_path);
        QVERIFY(saved != nullptr);
        QVERIFY(saved->get_pixel(7, 7) == Pixel(7, 7, 0x20));
        QVERIFY(saved->get_pixel(9, 1) == Pixel(1, 1, 0x30));
        // The page had no regions to cut, so the unused colour is still the starting grey.
        QVERIFY(saved->get_pixel(9, 5) == (Core::Colour{0xCD, 0xCD, 0xCD, 0xFF}));

        // Closed and opened again, the page is cut from the file it was saved to.
        qobject_cast<MdiFrame*>(window->parentWidget())->close();
        QTRY_COMPARE(gui_.window->MdiArea().subWindowList().size(), 1);
        window = OpenPageFromTree(page_path);
        QVERIFY(window != nullptr);
        QTRY_COMPARE(window->Page().viewport()->grab().toImage().pixel(9, 1),
                     Shown(Pixel(1, 1, 0x30)));
        QVERIFY(gui_.ui->boxes.empty());
    }

    void tightestFollowsBestFitWithAPictureOfItsOwn() {
        QVERIFY(gui_.app->InitInstance({}, gui_.window.get()));
        TexturePageWindow window;
        const auto* tool_bar = window.findChild<QToolBar*>(QString(), Qt::FindDirectChildrenOnly);
        QVERIFY(tool_bar != nullptr);
        const QList<QAction*> actions = tool_bar->actions();
        const auto best_fit = std::find_if(actions.begin(), actions.end(), [](QAction* action) {
            return action->data().toInt() == commands::kTileBestFit;
        });
        QVERIFY(best_fit != actions.end() && best_fit + 1 != actions.end());
        const QAction* tightest = *(best_fit + 1);
        QCOMPARE(tightest->data().toInt(), commands::kTileTightest);
        QCOMPARE(tightest->toolTip(),
                 QStringLiteral("Tile Region tightest (most regions, smallest box)"));
        QVERIFY(!tightest->icon().isNull());
        QVERIFY2(gui_.window->Action(commands::kTileTightest) != nullptr, "in the T-Page menu");
    }

private:
    static PageRect Rect(CQuilletDoc& project, const std::string& page, const std::string& name) {
        return project.RegionOfTexture(page, name).rect;
    }

    // Presses Enter on the page's node under "Textures" and answers the window that opens.
    TexturePageWindow* OpenPageFromTree(const std::string& page_path) {
        auto* tree = gui_.window->findChild<QTreeWidget*>();
        if (tree == nullptr) return nullptr;
        QTreeWidgetItem* textures = tree->topLevelItem(0);
        textures->setExpanded(true);
        QTreeWidgetItem* page = textures->child(0);
        if (page == nullptr || page->text(0) != QString::fromStdString(page_path)) return nullptr;
        tree->setCurrentItem(page);
        QTest::keyClick(tree, Qt::Key_Return);
        auto* frame = gui_.window->MdiArea().activeSubWindow();
        return frame != nullptr ? qobject_cast<TexturePageWindow*>(frame->widget()) : nullptr;
    }

    GuiFixture gui_;
};

int main(int argc, char** argv) {
    return RunGuiTest<TexturePageWindowTest>(argc, argv);
}

#include "texture_page_window_test.moc"
