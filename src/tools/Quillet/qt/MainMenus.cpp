// The main window's menus, keys and the enabling of their commands.
#include <QApplication>
#include <QKeyEvent>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>
#include <QWhatsThis>

#include "LayoutPageWindow.h"
#include "MainWindow.h"
#include "MdiFrame.h"
#include "ProjectTreeView.h"
#include "QtText.h"
#include "TexturePageWindow.h"
#include "model/QuilletDoc.h"
#include "shell/CommandIds.h"

namespace {

using namespace commands;

QKeySequence Keys(QKeyCombination combination) {
    return QKeySequence(combination);
}

// The X11 modifier bits of Caps Lock and Num Lock.
constexpr quint32 kCapsLockBit = 0x2;
constexpr quint32 kNumLockBit = 0x10;

// The commands a project answers in every window.
constexpr int kProjectCommands[] = {kAddTexture, kCreateTexture, kCreateLayout, kReloadAndRefresh};

}  // namespace

QAction* MainWindow::AddCommand(QMenu* menu, int command, const QString& text,
                                const QString& prompt, std::initializer_list<QKeySequence> keys,
                                std::function<void()> handler) {
    auto* action = new QAction(text, this);
    action->setStatusTip(prompt);
    action->setData(command);
    action->setShortcuts(QList<QKeySequence>(keys));
    if (menu != nullptr)
        menu->addAction(action);
    else
        addAction(action);  // keys without a menu entry
    if (handler) {
        connect(action, &QAction::triggered, this, std::move(handler));
    } else {
        action->setEnabled(false);
    }
    actions_.insert(command, action);
    return action;
}

void MainWindow::CreateMenus() {
    CreateFileMenu();
    CreateEditMenu();
    CreateViewMenu();
    texture_page_menu_ = CreatePageMenu<TexturePageWindow>(tr("&T-Page"));
    layout_page_menu_ = CreatePageMenu<LayoutPageWindow>(tr("&Layout"));
    CreateWindowMenu();
    CreateHelpMenu();
    CreateKeysWithoutEntries();
    UpdateMenus();
}

void MainWindow::CreateFileMenu() {
    file_menu_ = menuBar()->addMenu(tr("&File"));
    QMenu* file = file_menu_;
    AddCommand(file, kFileNew, tr("&New"), tr("Create a new document"),
               {Keys(Qt::CTRL | Qt::Key_N)}, [this] { app_.OnFileNew(); });
    AddCommand(file, kFileOpen, tr("&Open..."), tr("Open an existing document"),
               {Keys(Qt::CTRL | Qt::Key_O)}, [this] { app_.OnFileOpen(); });
    document_entries_ = {
        AddCommand(file, kFileClose, tr("&Close"), tr("Close the active document"), {},
                   [this] { OnFileClose(); }),
        AddCommand(file, kFileSave, tr("&Save"), tr("Save the active document"),
                   {Keys(Qt::CTRL | Qt::Key_S)}, [this] { OnFileSave(); }),
        AddCommand(file, kFileSaveAs, tr("Save &As..."),
                   tr("Save the active document with a new name"), {}, [this] { OnFileSaveAs(); })};
    recent_start_ = file->addSeparator();
    recent_end_ = file->addSeparator();
    connect(file, &QMenu::aboutToShow, this, &MainWindow::FillRecentFiles);
    document_entries_ +=
        {AddCommand(file, kAddTexture, tr("A&dd texture..."),
                    tr("Add a texture page to the project"), {Keys(Qt::CTRL | Qt::Key_D)},
                    [this] { RunProjectCommand(kAddTexture); }),
         AddCommand(file, kCreateTexture, tr("Create &texture..."),
                    tr("Create a new texture for the project"), {Keys(Qt::CTRL | Qt::Key_T)},
                    [this] { RunProjectCommand(kCreateTexture); }),
         // The entry shows Ctrl+L, which has always gone to a command that does nothing.
         AddCommand(file, kCreateLayout, tr("Create &layout...\tCtrl+L"),
                    tr("Create a new layout for the project"), {},
                    [this] { RunProjectCommand(kCreateLayout); }),
         file->addSeparator()};
    AddCommand(file, kAppExit, tr("E&xit"), tr("Quit the application; prompts to save documents"),
               {Keys(Qt::CTRL | Qt::Key_Q)}, [this] { close(); });
}

void MainWindow::CreateEditMenu() {
    edit_menu_ = menuBar()->addMenu(tr("&Edit"));
    QMenu* edit = edit_menu_;
    AddCommand(edit, kEditUndo, tr("&Undo"), tr("Undo the last action"),
               {Keys(Qt::CTRL | Qt::Key_Z)}, [this] {
                   app_.OnEditUndo();
                   UpdateCommandStates();
               });
    AddCommand(edit, kEditRedo, tr("&Redo"), tr("Redo the previously undone action"),
               {Keys(Qt::CTRL | Qt::Key_Y), Keys(Qt::CTRL | Qt::SHIFT | Qt::Key_Z)}, [this] {
                   app_.OnEditRedo();
                   UpdateCommandStates();
               });
    edit->addSeparator();
    AddCommand(edit, kEditCut, tr("Cu&t"), tr("Cut the selection and put it on the Clipboard"),
               {Keys(Qt::CTRL | Qt::Key_X), Keys(Qt::SHIFT | Qt::Key_Delete)}, {});
    AddCommand(edit, kEditCopy, tr("&Copy"), tr("Copy the selection and put it on the Clipboard"),
               {Keys(Qt::CTRL | Qt::Key_C), Keys(Qt::CTRL | Qt::Key_Insert)}, {});
    AddCommand(edit, kEditPaste, tr("&Paste"), tr("Insert Clipboard contents"),
               {Keys(Qt::CTRL | Qt::Key_V), Keys(Qt::SHIFT | Qt::Key_Insert)}, {});
}

void MainWindow::CreateViewMenu() {
    QMenu* view = menuBar()->addMenu(tr("&View"));
    QAction* toggle_tool_bar = tool_bar_->toggleViewAction();
    toggle_tool_bar->setText(tr("&Toolbar"));
    toggle_tool_bar->setStatusTip(tr("Show or hide the toolbar"));
    view->addAction(toggle_tool_bar);
    actions_.insert(kViewToolbar, toggle_tool_bar);
    QAction* toggle_status = view->addAction(tr("&Status Bar"));
    toggle_status->setCheckable(true);
    toggle_status->setChecked(true);
    toggle_status->setStatusTip(tr("Show or hide the status bar"));
    connect(toggle_status, &QAction::toggled, statusBar(), &QStatusBar::setVisible);
    actions_.insert(kViewStatusBar, toggle_status);
}

template <typename Window>
QMenu* MainWindow::CreatePageMenu(const QString& title) {
    QMenu* menu = menuBar()->addMenu(title);
    Window::FillMenu(*menu, [this] {
        QMdiSubWindow* active = mdi_area_->activeSubWindow();
        return active != nullptr ? qobject_cast<Window*>(active->widget()) : nullptr;
    });
    for (QAction* action : menu->actions()) {
        if (!action->isSeparator()) actions_.insert(action->data().toInt(), action);
    }
    return menu;
}

void MainWindow::CreateWindowMenu() {
    window_menu_ = menuBar()->addMenu(tr("&Window"));
    QMenu* window = window_menu_;
    // One window for each document: a second would show the same tree or page twice.
    AddCommand(window, kWindowNew, tr("&New Window"),
               tr("Open another window for the active document"), {}, {});
    AddCommand(window, kWindowCascade, tr("&Cascade"), tr("Arrange windows so they overlap"), {},
               [this] { mdi_area_->cascadeSubWindows(); });
    AddCommand(window, kWindowTile, tr("&Tile"), tr("Arrange windows as non-overlapping tiles"), {},
               [this] { mdi_area_->tileSubWindows(); });
    // The MDI area keeps minimised windows in a row along its bottom itself.
    AddCommand(window, kWindowArrange, tr("&Arrange Icons"),
               tr("Arrange icons at the bottom of the window"), {}, {});
    window_list_start_ = window->addSeparator();
    connect(window, &QMenu::aboutToShow, this, &MainWindow::FillWindowList);
}

void MainWindow::CreateHelpMenu() {
    QMenu* help = menuBar()->addMenu(tr("&Help"));
    AddCommand(help, kHelpTopics, tr("&Help Topics"), tr("List Help topics"), {}, {});
    help->addSeparator();
    AddCommand(help, kAppAbout, tr("&About quillet..."),
               tr("Display program information, version number and copyright"), {},
               [this] { OnAppAbout(); });
}

void MainWindow::CreateKeysWithoutEntries() {
    AddCommand(nullptr, kAddLayoutKey, {}, tr("Add a layout to the project"),
               {Keys(Qt::CTRL | Qt::Key_L)}, {});
    AddCommand(nullptr, kImportImageKey, {}, tr("Import an image into the texture page"),
               {Keys(Qt::CTRL | Qt::Key_I)}, {});
    AddCommand(nullptr, kHelp, {}, tr("Display help for current task or command"),
               {Keys(Qt::Key_F1)}, {});
    AddCommand(nullptr, kContextHelp, tr("Help"),
               tr("Display help for clicked on buttons, menus and windows"),
               {Keys(Qt::SHIFT | Qt::Key_F1)}, [] { QWhatsThis::enterWhatsThisMode(); });
    AddCommand(nullptr, kNextPane, {}, tr("Switch to the next window pane"), {Keys(Qt::Key_F6)},
               {});
    AddCommand(nullptr, kPreviousPane, {}, tr("Switch back to the previous window pane"),
               {Keys(Qt::SHIFT | Qt::Key_F6)}, {});
    AddCommand(nullptr, kReloadAndRefresh, {}, {}, {Keys(Qt::Key_F12)},
               [this] { RunProjectCommand(kReloadAndRefresh); });
    AddCommand(nullptr, kFilePrint, tr("Print"), {}, {}, {});
}

void MainWindow::FillRecentFiles() {
    for (QAction* entry : recent_entries_)
        delete entry;
    recent_entries_.clear();
    const auto& entries = app_.RecentFiles().Entries();
    for (size_t index = 0; index < entries.size(); ++index) {
        auto* entry = new QAction(
            QStringLiteral("&%1 %2").arg(index + 1).arg(PathToQString(entries[index])), this);
        connect(entry, &QAction::triggered, this, [this, index] { app_.OpenRecentFile(index); });
        file_menu_->insertAction(recent_end_, entry);
        recent_entries_.append(entry);
    }
    recent_end_->setVisible(!entries.empty());
}

void MainWindow::FillWindowList() {
    for (QAction* entry : window_entries_)
        delete entry;
    window_entries_.clear();
    const QList<QMdiSubWindow*> windows = mdi_area_->subWindowList();
    window_list_start_->setVisible(!windows.isEmpty());
    for (qsizetype index = 0; index < windows.size(); ++index) {
        QMdiSubWindow* window = windows[index];
        QString title = window->windowTitle();
        title.replace(QStringLiteral("[*]"),
                      window->isWindowModified() ? QStringLiteral("*") : QString());
        auto* entry = window_menu_->addAction(QStringLiteral("&%1 %2").arg(index + 1).arg(title));
        entry->setCheckable(true);
        entry->setChecked(window == mdi_area_->activeSubWindow());
        connect(entry, &QAction::triggered, this,
                [this, window] { mdi_area_->setActiveSubWindow(window); });
        window_entries_.append(entry);
    }
}

void MainWindow::UpdateMenus() {
    const bool open = ActiveDocument() != nullptr || GetProjectDoc() != nullptr;
    const QWidget* content =
        mdi_area_->activeSubWindow() != nullptr ? mdi_area_->activeSubWindow()->widget() : nullptr;
    for (QAction* entry : document_entries_)
        entry->setVisible(open);
    edit_menu_->menuAction()->setVisible(open);
    window_menu_->menuAction()->setVisible(open);
    texture_page_menu_->menuAction()->setVisible(qobject_cast<const TexturePageWindow*>(content) !=
                                                 nullptr);
    layout_page_menu_->menuAction()->setVisible(qobject_cast<const LayoutPageWindow*>(content) !=
                                                nullptr);
    UpdateCommandStates();
}

void MainWindow::UpdateCommandStates() {
    const CQuilletDoc* project = GetProjectDoc();
    for (const int command : kProjectCommands) {
        if (QAction* action = Action(command)) action->setEnabled(project != nullptr);
    }
    for (const int command : {kFileClose, kFileSave, kFileSaveAs})
        Action(command)->setEnabled(ActiveDocument() != nullptr || project != nullptr);
    // Undo and Redo look alive only when they would do something.
    Action(kEditUndo)->setEnabled(project != nullptr && project->CanUndo());
    Action(kEditRedo)->setEnabled(project != nullptr && project->CanRedo());
    const bool windows = !mdi_area_->subWindowList().isEmpty();
    Action(kWindowCascade)->setEnabled(windows);
    Action(kWindowTile)->setEnabled(windows);
}

void MainWindow::RunProjectCommand(int command) {
    CQuilletDoc* project = GetProjectDoc();
    if (project == nullptr) return;
    if (auto* tree = dynamic_cast<CQuilletView*>(project->GetFirstView())) tree->OnCommand(command);
    UpdateCommandStates();
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease)
        return QMainWindow::eventFilter(watched, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    // The lock keys' states ride on every key event as the windowing system's modifiers.
    const quint32 native = key->nativeModifiers();
    // Scroll Lock is no modifier there: its pane follows its presses.
    lock_panes_.value(Qt::Key_CapsLock)->setEnabled((native & kCapsLockBit) != 0);
    lock_panes_.value(Qt::Key_NumLock)->setEnabled((native & kNumLockBit) != 0);
    if (key->key() == Qt::Key_ScrollLock && event->type() == QEvent::KeyPress) {
        QLabel* scroll = lock_panes_.value(Qt::Key_ScrollLock);
        scroll->setEnabled(!scroll->isEnabled());
    }
    // A key of a disabled command does nothing: it must not reach the window under it as a
    // plain key (Shift+Delete is Cut, never Delete). Dialogs keep their keys.
    auto* widget = qobject_cast<QWidget*>(watched);
    if (event->type() != QEvent::KeyPress || widget == nullptr || widget->window() != this ||
        QApplication::activeModalWidget() != nullptr)
        return false;
    const QKeySequence pressed(key->keyCombination());
    for (const QAction* action : actions_) {
        if (!action->isEnabled() && action->shortcuts().contains(pressed)) return true;
    }
    return false;
}
