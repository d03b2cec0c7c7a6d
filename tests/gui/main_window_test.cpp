// The real main window, offscreen, with the scripted person answering its boxes.
#include <QTest>
#include <QTreeWidget>

#include "GuiFixture.h"
#include "model/QuilletDoc.h"
#include "qt/MdiFrame.h"
#include "shell/CommandIds.h"

namespace {

const std::string kEmptyProject =
    "<version>1.01</version>\r\n<layout>\r\n  <layout_width>800</layout_width>\r\n"
    "  <layout_height>600</layout_height>\r\n  <piece_types_fname></piece_types_fname>\r\n"
    "  <piece_texts_fname></piece_texts_fname>\r\n</layout>\r\n";

QString DimensionsNode(const QTreeWidget& tree) {
    const QTreeWidgetItem* layouts = tree.topLevelItem(4);
    return layouts == nullptr ? QString() : layouts->child(0)->text(0);
}

}  // namespace

class MainWindowTest : public QObject {
    Q_OBJECT

private slots:
    void init() { gui_.Make(); }
    void cleanup() { gui_.Destroy(); }

    void opensChangesAndSavesAProject() {
        const std::string path = gui_.dir.Write("ui.qlt", kEmptyProject);
        QVERIFY(gui_.app->InitInstance({path}, gui_.window.get()));
        QVERIFY(QTest::qWaitForWindowExposed(gui_.window.get()));

        QCOMPARE(gui_.window->MdiArea().subWindowList().size(), 1);
        auto* frame = qobject_cast<MdiFrame*>(gui_.window->MdiArea().subWindowList().front());
        QVERIFY(frame != nullptr);
        auto* tree = frame->findChild<QTreeWidget*>();
        QVERIFY(tree != nullptr);
        QCOMPARE(tree->topLevelItemCount(), 5);
        QCOMPARE(DimensionsNode(*tree), QStringLiteral("Dimensions: 800x600"));
        QCOMPARE(frame->windowTitle(), QStringLiteral("ui.qlt[*]"));
        QVERIFY(!frame->isWindowModified());

        tree->topLevelItem(4)->setExpanded(true);
        tree->setCurrentItem(tree->topLevelItem(4)->child(2));
        CQuilletDoc* project = GetProjectDoc();
        project->qlt_file().layout_width = 1024;
        project->SetModifiedFlag(true);
        project->TakeSnapshot();
        project->UpdateAllViews(nullptr);
        // The tree follows once back in the event loop, renaming the one node.
        QTRY_COMPARE(DimensionsNode(*tree), QStringLiteral("Dimensions: 1024x600"));
        QVERIFY(frame->isWindowModified());
        // The tree keeps what was open and picked.
        QVERIFY(tree->topLevelItem(4)->isExpanded());
        QCOMPARE(tree->currentItem()->text(0), QStringLiteral("Common Paths"));

        gui_.window->MdiArea().setActiveSubWindow(frame);
        gui_.window->Action(commands::kFileSave)->trigger();
        QVERIFY(!frame->isWindowModified());
        QVERIFY(ReadFile(path).find("<layout_width>1024</layout_width>") != std::string::npos);
        QVERIFY(gui_.ui->boxes.empty());

        QVERIFY(gui_.window->close());
        QVERIFY(gui_.ui->boxes.empty());
        QCOMPARE(GetProjectDoc(), nullptr);
    }

    void unreadableFileKeepsThePresentProject() {
        QVERIFY(
            gui_.app->InitInstance({gui_.dir.Write("ui.qlt", kEmptyProject)}, gui_.window.get()));
        CQuilletDoc* present = GetProjectDoc();
        gui_.ui->file_names.push_back(gui_.dir.Write("bad.qlt", "nonsense\n"));
        gui_.window->Action(commands::kFileOpen)->trigger();
        QCOMPARE(gui_.ui->boxes.size(), size_t{1});
        QCOMPARE(gui_.ui->boxes[0].text,
                 std::string("Cannot read project file: NOT_A_QLT_FILE at line 1"));
        QCOMPARE(GetProjectDoc(), present);
        QCOMPARE(gui_.window->MdiArea().subWindowList().size(), 1);
    }

    void closingAModifiedProjectAsksAndCancelKeepsIt() {
        QVERIFY(
            gui_.app->InitInstance({gui_.dir.Write("ui.qlt", kEmptyProject)}, gui_.window.get()));
        GetProjectDoc()->SetModifiedFlag(true);
        gui_.ui->answers.push_back(framework::Answer::Cancel);
        QVERIFY(!gui_.window->close());
        QCOMPARE(gui_.ui->boxes.size(), size_t{1});
        QVERIFY(GetProjectDoc() != nullptr);

        // Closing the project's own window asks too; No closes it and writes nothing.
        gui_.ui->answers.push_back(framework::Answer::No);
        gui_.window->MdiArea().subWindowList().front()->close();
        QCOMPARE(gui_.ui->boxes.size(), size_t{2});
        QCOMPARE(GetProjectDoc(), nullptr);
        QTRY_COMPARE(gui_.window->MdiArea().subWindowList().size(), 0);
        QCOMPARE(ReadFile(gui_.dir.File("ui.qlt")), kEmptyProject);
    }

private:
    GuiFixture gui_;
};

int main(int argc, char** argv) {
    return RunGuiTest<MainWindowTest>(argc, argv);
}

#include "main_window_test.moc"
