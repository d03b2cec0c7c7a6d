// The main window: MDI area, menus, toolbar and status line. It turns commands into calls
// on the application and its documents, and gives each new document its window.
#pragma once

#include <QLabel>
#include <QMainWindow>
#include <QMap>
#include <QMdiArea>
#include <functional>

#include "framework/Application.h"
#include "shell/QuilletApp.h"

class QtProfileStore;

class MainWindow : public QMainWindow, public MainFrameHost, public framework::StatusPane {
    Q_OBJECT
public:
    MainWindow(CQuilletApp& app, QtProfileStore& profile);
    ~MainWindow() override;

    bool CreateMainFrame() override;
    framework::StatusPane* ShowMainFrame() override;
    void SetText(const std::string& text) override;

    // The action of a command number, or null.
    QAction* Action(int command) const { return actions_.value(command, nullptr); }
    QMdiArea& MdiArea() { return *mdi_area_; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    // A menu entry for `command`; without a handler it stays disabled, as a command that no
    // window handles.
    QAction* AddCommand(QMenu* menu, int command, const QString& text, const QString& prompt,
                        const QKeySequence& keys, std::function<void()> handler);
    void CreateMenus();
    void CreateViewMenu();
    // The menu of a kind of page window, shown while such a window is active.
    template <typename Window>
    QMenu* CreatePageMenu(const QString& title);
    void FillToolBar();
    void CreateFrameFactories();
    void RefreshRecentFiles();
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
    QMenu* recent_menu_ = nullptr;
    QMenu* texture_page_menu_ = nullptr;  // shown while a texture page window is active
    QMenu* layout_page_menu_ = nullptr;   // shown while a layout page window is active
    QToolBar* tool_bar_ = nullptr;
    QMap<int, QAction*> actions_;
};
