// The real main window, offscreen, with the scripted person answering its boxes.
#include <QApplication>
#include <QStandardPaths>
#include <QTest>
#include <QTreeWidget>

#include "TempDir.h"
#include "framework/ScriptedUserInterface.h"
#include "model/QuilletDoc.h"
#include "qt/MainWindow.h"
#include "qt/MdiFrame.h"
#include "qt/QtProfileStore.h"
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
    void init() {
        ui_ = std::make_unique<framework::ScriptedUserInterface>();
        profile_ = std::make_unique<QtProfileStore>();
        profile_->Settings().clear();
        app_ = std::make_unique<CQuilletApp>(*ui_, *profile_);
        window_ = std::make_unique<MainWindow>(*app_, *profile_);
    }

    void cleanup() {
        window_.reset();
        app_.reset();
    }

    void opensChangesAndSavesAProject() {
        const std::string path = dir_.Write("ui.qlt", kEmptyProject);
        QVERIFY(app_->InitInstance({path}, window_.get()));
        QVERIFY(QTest::qWaitForWindowExposed(window_.get()));

        QCOMPARE(window_->MdiArea().subWindowList().size(), 1);
        auto* frame = qobject_cast<MdiFrame*>(window_->MdiArea().subWindowList().front());
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
        QCOMPARE(DimensionsNode(*tree), QStringLiteral("Dimensions: 1024x600"));
        QVERIFY(frame->isWindowModified());
        // The rebuilt tree keeps what was open and picked.
        QVERIFY(tree->topLevelItem(4)->isExpanded());
        QCOMPARE(tree->currentItem()->text(0), QStringLiteral("Common Paths"));

        window_->MdiArea().setActiveSubWindow(frame);
        window_->Action(commands::kFileSave)->trigger();
        QVERIFY(!frame->isWindowModified());
        QVERIFY(ReadFile(path).find("<layout_width>1024</layout_width>") != std::string::npos);
        QVERIFY(ui_->boxes.empty());

        QVERIFY(window_->close());
        QVERIFY(ui_->boxes.empty());
        QCOMPARE(GetProjectDoc(), nullptr);
    }

    void unreadableFileKeepsThePresentProject() {
        QVERIFY(app_->InitInstance({dir_.Write("ui.qlt", kEmptyProject)}, window_.get()));
        CQuilletDoc* present = GetProjectDoc();
        ui_->file_names.push_back(dir_.Write("bad.qlt", "nonsense\n"));
        window_->Action(commands::kFileOpen)->trigger();
        QCOMPARE(ui_->boxes.size(), size_t{1});
        QCOMPARE(ui_->boxes[0].text,
                 std::string("Cannot read project file: NOT_A_QLT_FILE at line 1"));
        QCOMPARE(GetProjectDoc(), present);
        QCOMPARE(window_->MdiArea().subWindowList().size(), 1);
    }

    void closingAModifiedProjectAsksAndCancelKeepsIt() {
        QVERIFY(app_->InitInstance({dir_.Write("ui.qlt", kEmptyProject)}, window_.get()));
        GetProjectDoc()->SetModifiedFlag(true);
        ui_->answers.push_back(framework::Answer::Cancel);
        QVERIFY(!window_->close());
        QCOMPARE(ui_->boxes.size(), size_t{1});
        QVERIFY(GetProjectDoc() != nullptr);

        // Closing the project's own window asks too; No closes it and writes nothing.
        ui_->answers.push_back(framework::Answer::No);
        window_->MdiArea().subWindowList().front()->close();
        QCOMPARE(ui_->boxes.size(), size_t{2});
        QCOMPARE(GetProjectDoc(), nullptr);
        QTRY_COMPARE(window_->MdiArea().subWindowList().size(), 0);
        QCOMPARE(ReadFile(dir_.File("ui.qlt")), kEmptyProject);
    }

private:
    TempDir dir_;
    std::unique_ptr<framework::ScriptedUserInterface> ui_;
    std::unique_ptr<QtProfileStore> profile_;
    std::unique_ptr<CQuilletApp> app_;
    std::unique_ptr<MainWindow> window_;
};

int main(int argc, char** argv) {
    // Settings go to a folder of the test's own.
    TempDir settings;
    qputenv("XDG_CONFIG_HOME", QByteArray::fromStdString(settings.Path().string()));
    QStandardPaths::setTestModeEnabled(true);
    QApplication application(argc, argv);
    MainWindowTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "main_window_test.moc"
