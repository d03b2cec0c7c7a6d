// The project window and the main frame, driven as a person drives them: the tree's context
// menus, Delete with its question, a page dragged into a folder, the menus of each kind of
// window, Undo's state and the keys of commands that do nothing.
#include <QContextMenuEvent>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QTimer>
#include <QTreeWidget>

#include "GuiFixture.h"
#include "forms/SmallForms.h"
#include "model/QuilletDoc.h"
#include "qt/LayoutPageWindow.h"
#include "qt/MdiFrame.h"
#include "qt/ProjectTreeView.h"
#include "shell/CommandIds.h"

namespace {

std::string Region(const std::string& name, int left) {
    return "<region>" + name + "\n<left>" + std::to_string(left) +
           "</left>\n<top>0</top>\n<right>" + std::to_string(left + 8) +
           "</right>\n<bottom>8</bottom>\n</region>\n";
}

const std::string kProject =
    "<texture>menus.tga\n<path>menus</path>\n" + Region("b", 0) + "</texture>\n" +
    "<texture>loose.tga\n" + Region("spare", 0) + "</texture>\n" +
    "<layout>\n<layout_width>640</layout_width>\n<layout_height>480</layout_height>\n"
    "<piece_types_fname></piece_types_fname>\n<piece_texts_fname></piece_texts_fname>\n"
    "<lpage>Main\n</lpage>\n</layout>\n";

QTreeWidgetItem* Child(QTreeWidgetItem* item, const QString& text) {
    for (int index = 0; index < item->childCount(); ++index) {
        if (item->child(index)->text(0) == text) return item->child(index);
    }
    return nullptr;
}

}  // namespace

class WorkspaceWindowTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        gui_.Make();
        QVERIFY(gui_.app->InitInstance({gui_.dir.Write("ui.qlt", kProject)}, gui_.window.get()));
        QVERIFY(QTest::qWaitForWindowExposed(gui_.window.get()));
        tree_ = gui_.window->findChild<ProjectTreeView*>();
        QVERIFY(tree_ != nullptr);
        textures_ = tree_->topLevelItem(0);
    }
    void cleanup() { gui_.Destroy(); }

    void contextMenuRunsTheEntryChosen() {
        gui_.ui->forms.push_back([this](framework::Form& form) {
            form.SetText(NewFolderForm::kName, "art", *gui_.ui);
            return true;
        });
        QStringList entries;
        // The menu is modal: the entry is chosen from inside it.
        QTimer::singleShot(0, this, [&entries] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            QVERIFY(menu != nullptr);
            for (const QAction* action : menu->actions())
                entries.append(action->text());
            menu->setActiveAction(menu->actions().at(0));
            QTest::keyClick(menu, Qt::Key_Return);
        });
        const QPoint at = tree_->visualItemRect(textures_).center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, tree_->viewport()->mapToGlobal(at));
        QApplication::sendEvent(tree_->viewport(), &event);
        QCOMPARE(entries,
                 (QStringList{QStringLiteral("New Folder..."), QStringLiteral("Create Texture..."),
                              QStringLiteral("Add Texture...")}));
        QVERIFY(Child(textures_, QStringLiteral("art")) != nullptr);
    }

    void deleteAsksAndRemovesTheNode() {
        QTreeWidgetItem* page = Child(textures_, PathText("loose.tga"));
        QVERIFY(page != nullptr);
        page->setExpanded(true);
        tree_->setCurrentItem(Child(page, QStringLiteral("spare")));
        QTest::keyClick(tree_, Qt::Key_Delete);
        QTRY_VERIFY(Child(page, QStringLiteral("spare")) == nullptr);
        QVERIFY(!GetProjectDoc()->RegionExists("spare"));

        // The whole list of pages: Cancel keeps them all.
        tree_->setCurrentItem(textures_);
        gui_.ui->answers = {framework::Answer::Cancel};
        QTest::keyClick(tree_, Qt::Key_Delete);
        QCOMPARE(gui_.ui->boxes.back().buttons, framework::MessageButtons::OkCancel);
        QCOMPARE(GetProjectDoc()->records().texture_pages.size(), size_t{2});
    }

    void aPageDraggedOntoAFolderMovesIntoIt() {
        QTreeWidgetItem* page = Child(textures_, PathText("loose.tga"));
        QTreeWidgetItem* folder = Child(textures_, QStringLiteral("menus"));
        QVERIFY(page != nullptr && folder != nullptr);
        std::unique_ptr<QMimeData> data(ProjectTreeView::DragData(*tree_->NodeOf(page)));
        const QPoint at = tree_->visualItemRect(folder).center();
        QDragEnterEvent enter(at, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(tree_->viewport(), &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent drop(at, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(tree_->viewport(), &drop);
        QTRY_COMPARE(GetProjectDoc()->FindTexture(Path("loose.tga")).folder, std::string("menus"));
        QTRY_VERIFY(Child(folder, PathText("loose.tga")) != nullptr);
        QVERIFY(Child(textures_, PathText("loose.tga")) == nullptr);
    }

    void menusUndoAndKeysFollowTheActiveWindow() {
        const auto shown = [this](const QString& title) {
            for (QAction* menu : gui_.window->menuBar()->actions()) {
                if (menu->text() == title) return menu->isVisible();
            }
            return false;
        };
        QVERIFY(shown(QStringLiteral("&Edit")) && !shown(QStringLiteral("&Layout")));
        QVERIFY(!gui_.window->Action(commands::kEditUndo)->isEnabled());
        QVERIFY(!gui_.window->Action(commands::kWindowNew)->isEnabled());

        GetProjectDoc()->OpenLayout("Main");
        QTRY_VERIFY(shown(QStringLiteral("&Layout")));
        auto* page =
            qobject_cast<LayoutPageWindow*>(gui_.window->MdiArea().activeSubWindow()->widget());
        QVERIFY(page != nullptr);
        QVERIFY2(!gui_.window->Action(commands::kEditUndo)->isEnabled(), "nothing to undo");
        GetProjectDoc()->qlt_file().layout_width = 800;
        GetProjectDoc()->SetModifiedFlag(true);
        GetProjectDoc()->TakeSnapshot();
        GetProjectDoc()->UpdateAllViews(nullptr);
        QVERIFY(gui_.window->Action(commands::kEditUndo)->isEnabled());

        // Shift+Delete is Cut, which nothing handles: it never reaches the page as Delete.
        page->Page().setFocus();
        const size_t boxes = gui_.ui->boxes.size();
        QTest::keyClick(&page->Page(), Qt::Key_Delete, Qt::ShiftModifier);
        QCOMPARE(gui_.ui->boxes.size(), boxes);

        // File > Close on the project window closes the project with its page windows.
        gui_.window->MdiArea().setActiveSubWindow(gui_.window->MdiArea().subWindowList().front());
        gui_.ui->answers = {framework::Answer::No};
        gui_.window->Action(commands::kFileClose)->trigger();
        QCOMPARE(GetProjectDoc(), nullptr);
        QTRY_COMPARE(gui_.window->MdiArea().subWindowList().size(), 0);
        QVERIFY(!shown(QStringLiteral("&Edit")));
    }

private:
    std::string Path(const std::string& name) const { return gui_.dir.File(name); }
    QString PathText(const std::string& name) const { return QString::fromStdString(Path(name)); }

    GuiFixture gui_;
    ProjectTreeView* tree_ = nullptr;
    QTreeWidgetItem* textures_ = nullptr;
};

int main(int argc, char** argv) {
    return RunGuiTest<WorkspaceWindowTest>(argc, argv);
}

#include "workspace_window_test.moc"
