#include "MainWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QPointer>
#include <QStatusBar>
#include <QStyle>
#include <QToolBar>
#include <utility>
#include <vector>

#include "CommandButtons.h"
#include "Icons.h"
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

// Puts `widget`, which shows `view` of `document`, in an MDI window of its own. The window
// keeps its frame even while another one is maximised.
template <typename ViewType>
void OpenFrame(QMdiArea& area, framework::Document& document, ViewType& view, QWidget* widget,
               QSize size) {
    document.AddView(view);
    auto* frame = new MdiFrame(view, view, widget);
    if (QMdiSubWindow* active = area.activeSubWindow(); active != nullptr && active->isMaximized())
        active->showNormal();
    area.addSubWindow(frame);
    frame->resize(size);
    frame->show();
}

}  // namespace

MainWindow::MainWindow(CQuilletApp& app, QtProfileStore& profile) : app_(app), profile_(profile) {}

MainWindow::~MainWindow() {
    qApp->removeEventFilter(this);
    app_.RemoveChangeListener(*this);
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

    CreateStatusPanes();
    tool_bar_ = addToolBar(tr("Toolbar"));
    tool_bar_->setObjectName(QStringLiteral("MainToolBar"));
    CreateMenus();
    FillToolBar();
    CreateFrameFactories();
    app_.AddChangeListener(*this);
    qApp->installEventFilter(this);
    if (!restoreGeometry(profile_.Settings().value(kGeometryKey).toByteArray())) resize(1100, 760);
    restoreState(profile_.Settings().value(kStateKey).toByteArray());
    return true;
}

void MainWindow::CreateStatusPanes() {
    message_pane_ = new QLabel(this);
    statusBar()->addWidget(message_pane_, 1);
    coordinates_pane_ = new QLabel(this);
    coordinates_pane_->setMinimumWidth(90);
    coordinates_pane_->setToolTip(tr("Page coordinates under the pointer"));
    statusBar()->addPermanentWidget(coordinates_pane_);
    for (const auto& [key, text] :
         {std::pair{Qt::Key_CapsLock, "CAP"}, std::pair{Qt::Key_NumLock, "NUM"},
          std::pair{Qt::Key_ScrollLock, "SCRL"}}) {
        auto* pane = new QLabel(QString::fromLatin1(text), this);
        pane->setEnabled(false);  // shown dim while the lock is off
        statusBar()->addPermanentWidget(pane);
        lock_panes_.insert(key, pane);
    }
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

void MainWindow::FillToolBar() {
    using namespace commands;
    static const CommandButton kButtons[] = {
        {kFileNew, "New", "document-new"},       {kFileOpen, "Open", "document-open"},
        {kFileSave, "Save", "document-save"},    {0, nullptr, nullptr},
        {kEditCut, "Cut", "edit-cut"},           {kEditCopy, "Copy", "edit-copy"},
        {kEditPaste, "Paste", "edit-paste"},     {0, nullptr, nullptr},
        {kFilePrint, "Print", "document-print"}, {0, nullptr, nullptr},
        {kAppAbout, "About", "help-about"},      {kContextHelp, "Help", "help-contextual"},
    };
    std::vector<std::pair<QPointer<QAction>, const CommandButton*>> shown;
    for (const CommandButton& button : kButtons) {
        if (button.command == 0) {
            tool_bar_->addSeparator();
            continue;
        }
        QAction* action = Action(button.command);
        if (action == nullptr) {
            // No menu has the command yet: its button shows, disabled, as nothing handles it.
            action = new QAction(tool_bar_);
            action->setData(button.command);
            action->setEnabled(false);
        }
        action->setIcon(ButtonIcon(button, tool_bar_->palette()));
        action->setToolTip(QString::fromLatin1(button.tip));
        tool_bar_->addAction(action);
        shown.emplace_back(action, &button);
    }
    FollowPalette(*tool_bar_, [this, shown] {
        for (const auto& [action, button] : shown) {
            if (action != nullptr) action->setIcon(ButtonIcon(*button, tool_bar_->palette()));
        }
    });
}

void MainWindow::CreateFrameFactories() {
    app_.Templates()[kProjectTemplate]->SetFrameFactory([this](framework::Document& document) {
        auto* tree = new ProjectTreeView;
        OpenFrame(*mdi_area_, document, tree->View(), tree, QSize(340, 560));
        tree->View().OnInitialUpdate();
    });
    app_.Templates()[kTexturePageTemplate]->SetFrameFactory([this](framework::Document& document) {
        auto* window = new TexturePageWindow;
        OpenFrame(*mdi_area_, document, window->Page().View(), window, QSize(560, 560));
        FollowPointer(window->Page());
        window->Page().View().OnInitialUpdate();
        window->Page().View().OnUpdate(nullptr, 0, nullptr);
    });
    // A layout page window stands empty until the project gives it its page.
    app_.Templates()[kLayoutPageTemplate]->SetFrameFactory([this](framework::Document& document) {
        auto* window = new LayoutPageWindow;
        OpenFrame(*mdi_area_, document, window->Page().View(), window, QSize(560, 480));
        FollowPointer(window->Page());
    });
}

void MainWindow::FollowPointer(ZoomScrollArea& area) {
    connect(&area, &ZoomScrollArea::PointerMoved, coordinates_pane_, [this](int x, int y) {
        coordinates_pane_->setText(QStringLiteral("%1, %2").arg(x).arg(y));
    });
    connect(&area, &ZoomScrollArea::PointerLeft, coordinates_pane_, &QLabel::clear);
}

framework::Document* MainWindow::ActiveDocument() const {
    return app_.GetActiveDocument();
}

// As the window's close box: a page window runs its closing rule, and the project window
// asks to save and closes the project with all its windows.
void MainWindow::OnFileClose() {
    if (QMdiSubWindow* window = mdi_area_->activeSubWindow()) window->close();
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
    QMessageBox box(
        QMessageBox::NoIcon, tr("About quillet"),
        tr("quillet version %1\nUser interface layout editor").arg(QStringLiteral(QUILLET_VERSION)),
        QMessageBox::Ok, this);
    box.setIconPixmap(ApplicationIcon().pixmap(64));
    box.exec();
}

void MainWindow::OnSubWindowActivated(QMdiSubWindow* window) {
    auto* frame = qobject_cast<MdiFrame*>(window);
    if (frame != nullptr) app_.SetActiveDocument(frame->GetView().GetDocument());
    UpdateMenus();
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
