#include "MainWindow.h"

#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QStatusBar>
#include <QStyle>
#include <QToolBar>

#include "LayoutPageWindow.h"
#include "MdiFrame.h"
#include "ProjectTreeView.h"
#include "QtProfileStore.h"
#include "QtText.h"
#include "TexturePageWindow.h"
#include "model/QuilletDoc.h"
#include "shell/CommandIds.h"

namespace {

constexpr int kProjectTemplate = 0;
constexpr int kTexturePageTemplate = 1;
constexpr int kLayoutPageTemplate = 2;

const QString kGeometryKey = QStringLiteral("MainWindow/geometry");
const QString kStateKey = QStringLiteral("MainWindow/state");

// Puts a new view of `document` in its own MDI window of the given size.
template <typename ViewType>
void OpenFrame(QMdiArea& area, framework::Document& document, QSize size) {
    auto* view = new ViewType;
    document.AddView(*view);
    auto* frame = new MdiFrame(*view, *view, view);
    area.addSubWindow(frame);
    frame->resize(size);
    frame->show();
    view->OnUpdate(nullptr, 0, nullptr);
}

// Puts a new page window of `document` in the MDI area; answers the window's view.
template <typename Window>
auto& OpenPageWindow(QMdiArea& area, framework::Document& document, QSize size) {
    auto* window = new Window;
    auto& view = window->Page().View();
    document.AddView(view);
    auto* frame = new MdiFrame(view, view, window);
    area.addSubWindow(frame);
    frame->resize(size);
    frame->show();
    return view;
}

}  // namespace

MainWindow::MainWindow(CQuilletApp& app, QtProfileStore& profile) : app_(app), profile_(profile) {}

MainWindow::~MainWindow() {
    // The MDI area still reports activations while the window's children are destroyed.
    if (mdi_area_ != nullptr) disconnect(mdi_area_, nullptr, this, nullptr);
}

bool MainWindow::CreateMainFrame() {
    setWindowTitle(QStringLiteral("quillet"));
    setAcceptDrops(true);
    mdi_area_ = new QMdiArea(this);
    mdi_area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    mdi_area_->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setCentralWidget(mdi_area_);
    connect(mdi_area_, &QMdiArea::subWindowActivated, this, &MainWindow::OnSubWindowActivated);

    message_pane_ = new QLabel(this);
    statusBar()->addWidget(message_pane_, 1);
    tool_bar_ = addToolBar(tr("Toolbar"));
    tool_bar_->setObjectName(QStringLiteral("MainToolBar"));
    CreateMenus();
    FillToolBar();
    CreateFrameFactories();
    if (!restoreGeometry(profile_.Settings().value(kGeometryKey).toByteArray())) resize(1100, 760);
    restoreState(profile_.Settings().value(kStateKey).toByteArray());
    return true;
}

framework::StatusPane* MainWindow::ShowMainFrame() {
    show();
    return this;
}

void MainWindow::SetText(const std::string& text) {
    message_pane_->setText(ToQString(text));
    // Shown at once: long work ("Calculating...") runs before the event loop is back.
    message_pane_->repaint();
}

QAction* MainWindow::AddCommand(QMenu* menu, int command, const QString& text,
                                const QString& prompt, const QKeySequence& keys,
                                std::function<void()> handler) {
    QAction* action = menu->addAction(text);
    action->setStatusTip(prompt);
    if (!keys.isEmpty()) action->setShortcut(keys);
    if (handler)
        connect(action, &QAction::triggered, this, std::move(handler));
    else
        action->setEnabled(false);
    actions_.insert(command, action);
    return action;
}

void MainWindow::CreateMenus() {
    using namespace commands;
    QMenu* file = menuBar()->addMenu(tr("&File"));
    AddCommand(file, kFileNew, tr("&New"), tr("Create a new document"), QKeySequence::New,
               [this] { app_.OnFileNew(); });
    AddCommand(file, kFileOpen, tr("&Open..."), tr("Open an existing document"), QKeySequence::Open,
               [this] { app_.OnFileOpen(); });
    AddCommand(file, kFileClose, tr("&Close"), tr("Close the active document"), {},
               [this] { OnFileClose(); });
    AddCommand(file, kFileSave, tr("&Save"), tr("Save the active document"), QKeySequence::Save,
               [this] { OnFileSave(); });
    AddCommand(file, kFileSaveAs, tr("Save &As..."), tr("Save the active document with a new name"),
               {}, [this] { OnFileSaveAs(); });
    file->addSeparator();
    recent_menu_ = file->addMenu(tr("Recent &Files"));
    connect(file, &QMenu::aboutToShow, this, &MainWindow::RefreshRecentFiles);
    file->addSeparator();
    AddCommand(file, kAppExit, tr("E&xit"), tr("Quit the application; prompts to save documents"),
               QKeySequence(Qt::CTRL | Qt::Key_Q), [this] { close(); });

    QMenu* edit = menuBar()->addMenu(tr("&Edit"));
    AddCommand(edit, kEditUndo, tr("&Undo"), tr("Undo the last action"), QKeySequence::Undo,
               [this] { app_.OnEditUndo(); });
    AddCommand(edit, kEditRedo, tr("&Redo"), tr("Redo the previously undone action"), {},
               [this] { app_.OnEditRedo(); })
        ->setShortcuts(
            {QKeySequence(Qt::CTRL | Qt::Key_Y), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z)});
    edit->addSeparator();
    AddCommand(edit, kEditCut, tr("Cu&t"), tr("Cut the selection and put it on the Clipboard"),
               QKeySequence::Cut, {});
    AddCommand(edit, kEditCopy, tr("&Copy"), tr("Copy the selection and put it on the Clipboard"),
               QKeySequence::Copy, {});
    AddCommand(edit, kEditPaste, tr("&Paste"), tr("Insert Clipboard contents"), QKeySequence::Paste,
               {});

    CreateViewMenu();
    texture_page_menu_ = CreatePageMenu<TexturePageWindow>(tr("&T-Page"));
    layout_page_menu_ = CreatePageMenu<LayoutPageWindow>(tr("&Layout"));

    QMenu* window = menuBar()->addMenu(tr("&Window"));
    AddCommand(window, kWindowCascade, tr("&Cascade"), tr("Arrange windows so they overlap"), {},
               [this] { mdi_area_->cascadeSubWindows(); });
    AddCommand(window, kWindowTile, tr("&Tile"), tr("Arrange windows as non-overlapping tiles"), {},
               [this] { mdi_area_->tileSubWindows(); });

    QMenu* help = menuBar()->addMenu(tr("&Help"));
    AddCommand(help, kAppAbout, tr("&About quillet..."),
               tr("Display program information, version number and copyright"), {},
               [this] { OnAppAbout(); });
}

void MainWindow::CreateViewMenu() {
    QMenu* view = menuBar()->addMenu(tr("&View"));
    QAction* toggle_tool_bar = tool_bar_->toggleViewAction();
    toggle_tool_bar->setText(tr("&Toolbar"));
    toggle_tool_bar->setStatusTip(tr("Show or hide the toolbar"));
    view->addAction(toggle_tool_bar);
    actions_.insert(commands::kViewToolbar, toggle_tool_bar);
    QAction* toggle_status = view->addAction(tr("&Status Bar"));
    toggle_status->setCheckable(true);
    toggle_status->setChecked(true);
    toggle_status->setStatusTip(tr("Show or hide the status bar"));
    connect(toggle_status, &QAction::toggled, statusBar(), &QStatusBar::setVisible);
    actions_.insert(commands::kViewStatusBar, toggle_status);
}

template <typename Window>
QMenu* MainWindow::CreatePageMenu(const QString& title) {
    QMenu* menu = menuBar()->addMenu(title);
    Window::FillMenu(*menu, [this] {
        QMdiSubWindow* active = mdi_area_->activeSubWindow();
        return active != nullptr ? qobject_cast<Window*>(active->widget()) : nullptr;
    });
    menu->menuAction()->setVisible(false);
    for (QAction* action : menu->actions()) {
        if (!action->isSeparator()) actions_.insert(action->data().toInt(), action);
    }
    return menu;
}

void MainWindow::FillToolBar() {
    using namespace commands;
    const struct {
        int command;
        const char* theme_icon;  // the desktop's icon, when it has one
        QStyle::StandardPixmap fallback;
        const char* tip;
    } buttons[] = {
        {kFileNew, "document-new", QStyle::SP_FileIcon, "New"},
        {kFileOpen, "document-open", QStyle::SP_DialogOpenButton, "Open"},
        {kFileSave, "document-save", QStyle::SP_DialogSaveButton, "Save"},
        {0, nullptr, {}, nullptr},
        {kEditCut, "edit-cut", QStyle::SP_DialogDiscardButton, "Cut"},
        {kEditCopy, "edit-copy", QStyle::SP_FileDialogDetailedView, "Copy"},
        {kEditPaste, "edit-paste", QStyle::SP_DialogApplyButton, "Paste"},
        {0, nullptr, {}, nullptr},
        {kAppAbout, "help-about", QStyle::SP_MessageBoxInformation, "About"},
    };
    for (const auto& button : buttons) {
        if (button.command == 0) {
            tool_bar_->addSeparator();
            continue;
        }
        QAction* action = Action(button.command);
        action->setIcon(QIcon::fromTheme(QString::fromLatin1(button.theme_icon),
                                         style()->standardIcon(button.fallback)));
        action->setToolTip(QString::fromLatin1(button.tip));
        tool_bar_->addAction(action);
    }
}

void MainWindow::CreateFrameFactories() {
    app_.Templates()[kProjectTemplate]->SetFrameFactory([this](framework::Document& document) {
        OpenFrame<ProjectTreeView>(*mdi_area_, document, QSize(340, 560));
    });
    app_.Templates()[kTexturePageTemplate]->SetFrameFactory([this](framework::Document& document) {
        auto& view = OpenPageWindow<TexturePageWindow>(*mdi_area_, document, QSize(560, 560));
        view.OnInitialUpdate();
        view.OnUpdate(nullptr, 0, nullptr);
    });
    // A layout page window stands empty until the project gives it its page.
    app_.Templates()[kLayoutPageTemplate]->SetFrameFactory([this](framework::Document& document) {
        OpenPageWindow<LayoutPageWindow>(*mdi_area_, document, QSize(560, 480));
    });
}

void MainWindow::RefreshRecentFiles() {
    recent_menu_->clear();
    const auto& entries = app_.RecentFiles().Entries();
    recent_menu_->setEnabled(!entries.empty());
    for (size_t index = 0; index < entries.size(); ++index) {
        const QString text =
            QStringLiteral("&%1 %2").arg(index + 1).arg(PathToQString(entries[index]));
        connect(recent_menu_->addAction(text), &QAction::triggered, this,
                [this, index] { app_.OpenRecentFile(index); });
    }
}

framework::Document* MainWindow::ActiveDocument() const {
    return app_.GetActiveDocument();
}

void MainWindow::OnFileClose() {
    framework::Document* document = ActiveDocument();
    if (document != nullptr && document->SaveModified()) document->OnCloseDocument();
}

framework::Document* MainWindow::DocumentToSave() const {
    // Page windows show the project: saving any of them saves the project, which writes its
    // pages, and Save As names the project, never a page.
    if (CQuilletDoc* project = GetProjectDoc()) return project;
    return ActiveDocument();
}

void MainWindow::OnFileSave() {
    if (framework::Document* document = DocumentToSave()) document->DoFileSave();
}

void MainWindow::OnFileSaveAs() {
    if (framework::Document* document = DocumentToSave()) document->DoSave({});
}

void MainWindow::OnAppAbout() {
    QMessageBox::about(this, tr("About quillet"),
                       tr("quillet version %1\nUser interface layout editor")
                           .arg(QStringLiteral(QUILLET_VERSION)));
}

void MainWindow::OnSubWindowActivated(QMdiSubWindow* window) {
    const QWidget* content = window != nullptr ? window->widget() : nullptr;
    texture_page_menu_->menuAction()->setVisible(qobject_cast<const TexturePageWindow*>(content) !=
                                                 nullptr);
    layout_page_menu_->menuAction()->setVisible(qobject_cast<const LayoutPageWindow*>(content) !=
                                                nullptr);
    auto* frame = qobject_cast<MdiFrame*>(window);
    if (frame != nullptr) app_.SetActiveDocument(frame->GetView().GetDocument());
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (!app_.SaveAllModified()) {
        event->ignore();
        return;
    }
    app_.CloseAllDocuments();
    profile_.Settings().setValue(kGeometryKey, saveGeometry());
    profile_.Settings().setValue(kStateKey, saveState());
    event->accept();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
    for (const QUrl& url : event->mimeData()->urls()) {
        if (url.isLocalFile()) app_.OpenDocumentFile(PathFromQString(url.toLocalFile()));
    }
    event->acceptProposedAction();
}
