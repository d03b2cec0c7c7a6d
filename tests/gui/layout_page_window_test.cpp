// The layout page window, offscreen: a menu opened from the project tree and drawn, its
// pieces dragged, nudged, caught by a rubber band and aligned with the real mouse and keys,
// each step undone and redone, the project saved.
#include <QAction>
#include <QTest>
#include <QTreeWidget>

#include "GuiFixture.h"
#include "core_images.h"
#include "core_tga.h"
#include "model/QuilletDoc.h"
#include "qt/LayoutPageWindow.h"
#include "qt/MdiFrame.h"
#include "qt/ZSortDialog.h"
#include "shell/CommandIds.h"

namespace {

std::string Art(const std::string& name, const std::string& region) {
    return "<UI object>" + name +
           "\r\n<type>art</type>\r\n<UI region>art\r\n<page>page.tga</page>\r\n"
           "<region>" +
           region + "</region>\r\n</UI region>\r\n</UI object>\r\n";
}

std::string Piece(const std::string& name, const std::string& object, int x, int y) {
    return "<UI piece>" + name + "\r\n<identifier>i</identifier>\r\n<Parameters>\r\n<x>" +
           std::to_string(x) + "</x>\r\n<y>" + std::to_string(y) +
           "</y>\r\n<width>16</width>\r\n<height>16</height>\r\n</Parameters>\r\n<object_id>" +
           object + "</object_id>\r\n</UI piece>\r\n";
}

// A page of two 16 by 16 regions, an art object over each, and a menu of three pieces.
const std::string kProject =
    "<version>1.01</version>\r\n<texture>page.tga\r\n"
    "<region>a\r\n<left>0</left>\r\n<top>0</top>\r\n<right>16</right>\r\n<bottom>16</bottom>\r\n"
    "</region>\r\n"
    "<region>b\r\n<left>16</left>\r\n<top>0</top>\r\n<right>32</right>\r\n<bottom>16</bottom>\r\n"
    "</region>\r\n</texture>\r\n" +
    Art("art_a", "a") + Art("art_b", "b") +
    "<layout>\r\n<layout_width>200</layout_width>\r\n<layout_height>150</layout_height>\r\n"
    "<piece_types_fname></piece_types_fname>\r\n<piece_texts_fname></piece_texts_fname>\r\n"
    "<lpage>Main\r\n" +
    Piece("p1", "art_a", 10, 10) + Piece("p2", "art_b", 60, 10) + Piece("p3", "art_a", 10, 60) +
    "</lpage>\r\n</layout>\r\n";

// Pixel (x, y) of the page: blue x, green y, red 0x20.
Core::Colour Pixel(int x, int y) {
    return {static_cast<uint8_t>(x), static_cast<uint8_t>(y), 0x20, 0xFF};
}

QRgb Shown(const Core::Colour& colour) {
    return qRgb(colour.red, colour.green, colour.blue);
}

void WritePage(const std::string& path) {
    const ImagePtr image(Core::create_image(32, 16, Core::PIXEL_FORMAT_8888));
    for (uint32_t y = 0; y < 16; ++y) {
        for (uint32_t x = 0; x < 32; ++x)
            image->set_pixel(x, y, Pixel(static_cast<int>(x), static_cast<int>(y)));
    }
    Core::save_tga(*image, path.c_str(), Core::PIXEL_FORMAT_8888);
}

}  // namespace

class LayoutPageWindowTest : public QObject {
    Q_OBJECT

private slots:
    void init() { gui_.Make(); }
    void cleanup() { gui_.Destroy(); }

    void dragNudgeBandAlignUndoAndSave() {
        WritePage(gui_.dir.File("page.tga"));
        const std::string project_path = gui_.dir.Write("ui.qlt", kProject);
        QVERIFY(gui_.app->InitInstance({project_path}, gui_.window.get()));
        QVERIFY(QTest::qWaitForWindowExposed(gui_.window.get()));

        LayoutPageWindow* window = OpenMenuFromTree("Main");
        QVERIFY(window != nullptr);
        QCOMPARE(gui_.app->GetActiveDocument(), window->Page().View().GetDocument());
        QWidget* viewport = window->Page().viewport();
        // Drawn as the game draws it: the region's pixels at the piece, grey page around.
        QTRY_COMPARE(viewport->grab().toImage().pixel(13, 12), Shown(Pixel(3, 2)));
        QCOMPARE(viewport->grab().toImage().pixel(100, 100), qRgb(0xCD, 0xCD, 0xCD));

        // A drag from inside the piece, clear of its grab band.
        QTest::mousePress(viewport, Qt::LeftButton, {}, QPoint(18, 18));
        QTest::mouseMove(viewport, QPoint(38, 28));
        QTest::mouseRelease(viewport, Qt::LeftButton, {}, QPoint(38, 28));
        QCOMPARE(At("p1"), QPoint(30, 20));
        QTest::keyClick(&window->Page(), Qt::Key_Right);
        QCOMPARE(At("p1"), QPoint(31, 20));
        QTRY_COMPARE(viewport->grab().toImage().pixel(35, 25), Shown(Pixel(4, 5)));

        // A band from the empty corner touches all three.
        QTest::mousePress(viewport, Qt::LeftButton, {}, QPoint(190, 140));
        QTest::mouseMove(viewport, QPoint(5, 5));
        QTest::mouseRelease(viewport, Qt::LeftButton, {}, QPoint(5, 5));
        QCOMPARE(window->Page().View().Selection().pieces.size(), size_t{3});
        // Left to the average left edge: (31 + 60 + 10) / 3.
        window->Action(commands::kAlignLeft)->trigger();
        QCOMPARE(At("p1").x(), 33);
        QCOMPARE(At("p2").x(), 33);
        QCOMPARE(At("p3").x(), 33);

        gui_.window->Action(commands::kEditUndo)->trigger();
        QCOMPARE(At("p2").x(), 60);
        QCOMPARE(At("p1"), QPoint(31, 20));
        gui_.window->Action(commands::kEditRedo)->trigger();
        QCOMPARE(At("p2").x(), 33);

        gui_.window->Action(commands::kFileSave)->trigger();
        QVERIFY(!GetProjectDoc()->IsModified());
        const std::string saved = ReadFile(project_path);
        QCOMPARE(Count(saved, "<x>33</x>"), 3);

        // One z sort dialog per window.
        window->Action(commands::kZSort)->trigger();
        ZSortDialog* dialog = window->Page().ZSort();
        QVERIFY(dialog != nullptr && dialog->isVisible());
        window->Action(commands::kZSort)->trigger();
        QCOMPARE(window->Page().ZSort(), dialog);
        QVERIFY(gui_.ui->boxes.empty());
    }

private:
    static QPoint At(const std::string& piece) {
        const UI_PIECE& found = GetProjectDoc()->FindLayout("Main").FindPiece(piece);
        return {found.x, found.y};
    }

    static int Count(const std::string& text, const std::string& part) {
        int count = 0;
        for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
            ++count;
        return count;
    }

    // Presses Enter on the menu's node under Layouts > Menus and answers the window that opens.
    LayoutPageWindow* OpenMenuFromTree(const std::string& name) {
        auto* tree = gui_.window->findChild<QTreeWidget*>();
        if (tree == nullptr) return nullptr;
        QTreeWidgetItem* layouts = tree->topLevelItem(4);
        QTreeWidgetItem* menus = layouts != nullptr ? layouts->child(3) : nullptr;
        QTreeWidgetItem* menu = menus != nullptr ? menus->child(0) : nullptr;
        if (menu == nullptr || menu->text(0) != QString::fromStdString(name)) return nullptr;
        tree->setCurrentItem(menu);
        QTest::keyClick(tree, Qt::Key_Return);
        auto* frame = gui_.window->MdiArea().activeSubWindow();
        return frame != nullptr ? qobject_cast<LayoutPageWindow*>(frame->widget()) : nullptr;
    }

    GuiFixture gui_;
};

int main(int argc, char** argv) {
    return RunGuiTest<LayoutPageWindowTest>(argc, argv);
}

#include "layout_page_window_test.moc"
