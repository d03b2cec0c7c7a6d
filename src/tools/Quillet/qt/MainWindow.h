// The main window: MDI area, menus, toolbar and status line. It turns commands into calls
// on the application and its documents, and gives each new document its window.
//
// The menus follow the active window's kind: File, View and Help with nothing open; Edit and
// Window beside them once a document is open; "T-Page" or "Layout" while such a page is
// active. Every command has its number; one with no handler stays disabled, and its keys
// do nothing at all.
#pragma once

#include <QLabel>
#include <QMainWindow>
#include <QMap>
#include <QMdiArea>
#include <QMenu>
#include <functional>
#include <initializer_list>

#include "framework/Application.h"
#include "shell/QuilletApp.h"

class QtProfileStore;
class ZoomScrollArea;

class MainWindow : public QMainWindow,
                   public MainFrameHost,
                   public framework::StatusPane,
                   public framework::ChangeListener {
    Q_OBJECT
public:
    MainWindow(CQuilletApp& app, QtProfileStore& profile);
    ~MainWindow() override;

    bool CreateMainFrame() override;
    framework::StatusPane* ShowMainFrame() override;
    void SetText(const std::string& text) override;
    void OnDocumentsChanged() override { UpdateCommandStates(); }

    // The action of a command number, or null.
    QAction* Action(int command) const { return actions_.value(command, nullptr); }
    QMdiArea& MdiArea() { return *mdi_area_; }
    // The pane that shows the page coordinates under the pointer.
    const QLabel& CoordinatesPane() const { return *coordinates_pane_; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    // Swallows the keys of disabled commands and follows the lock keys.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // A command with its keys; without a handler it stays disabled, as a command that no
    // window handles. Added to `menu`, or to the window alone for keys without an entry.
    QAction* AddCommand(QMenu* menu, int command, const QString& text, const QString& prompt,
                        std::initializer_list<QKeySequence> keys, std::function<void()> handler);
    // MainMenus.cpp
    void CreateMenus();
    void CreateFileMenu();
    void CreateEditMenu();
    void CreateViewMenu();
    void CreateWindowMenu();
    void CreateHelpMenu();
    void CreateKeysWithoutEntries();
    // The menu of a kind of page window, shown while such a window is active.
    template <typename Window>
    QMenu* CreatePageMenu(const QString& title);
    void FillRecentFiles();
    void FillWindowList();
    // Shows the menus of the active window's kind.
    void UpdateMenus();
    void UpdateCommandStates();
    // A project-level command runs in the project window's logic, whatever window is active.
    void RunProjectCommand(int command);

    void CreateStatusPanes();
    void FillToolBar();
    void CreateFrameFactories();
    // Shows the page coordinates `area` reports under the pointer.
    void FollowPointer(ZoomScrollArea& area);
    framework::Document* ActiveDocument() const;
    framework::Document* DocumentToSave() const;

    void OnFileClose();
    void OnFileSave();
    void OnFileSaveAs();
    void OnAppAbout();
    void OnSubWindowActivated(QMdiSubWindow* window);

    CQuilletApp& app_;
    QtProfileStore& profile_;
    QMdiArea* mdi_area_ = nullptr;
    QLabel* message_pane_ = nullptr;
    QLabel* coordinates_pane_ = nullptr;
    QMap<int, QLabel*> lock_panes_;  // by Qt key: caps, num and scroll lock
    QMenu* file_menu_ = nullptr;
    QAction* recent_start_ = nullptr;  // the separators around the recent files
    QAction* recent_end_ = nullptr;
    QList<QAction*> recent_entries_;
    QList<QAction*> document_entries_;  // File entries shown only with a document open
    QMenu* edit_menu_ = nullptr;
    QMenu* window_menu_ = nullptr;
    QAction* window_list_start_ = nullptr;
    QList<QAction*> window_entries_;
    QMenu* texture_page_menu_ = nullptr;  // shown while a texture page window is active
    QMenu* layout_page_menu_ = nullptr;   // shown while a layout page window is active
    QToolBar* tool_bar_ = nullptr;
    QMap<int, QAction*> actions_;
};
