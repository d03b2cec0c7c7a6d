#include "MdiFrame.h"

#include <QCloseEvent>
#include <QMdiArea>

#include "Icons.h"
#include "QtText.h"
#include "framework/Document.h"

void FrameLink::ActivateLinkedFrame() {
    if (frame_ != nullptr && frame_->mdiArea() != nullptr)
        frame_->mdiArea()->setActiveSubWindow(frame_);
}

void FrameLink::CloseLinkedFrame() {
    if (frame_ != nullptr) frame_->CloseFromDocument();
}

void FrameLink::UpdateLinkedTitle() {
    if (frame_ != nullptr) frame_->UpdateTitle();
}

MdiFrame::MdiFrame(framework::View& view, FrameLink& link, QWidget* widget)
    : view_(view), link_(link) {
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowIcon(ApplicationIcon());
    setWidget(widget);
    link_.SetFrame(this);
    UpdateTitle();
}

void MdiFrame::UpdateTitle() {
    const framework::Document* document = view_.GetDocument();
    if (document == nullptr) return;
    setWindowTitle(PathToQString(document->GetTitle()) + QStringLiteral("[*]"));
    setWindowModified(document->IsModified());
}

void MdiFrame::CloseFromDocument() {
    if (closing_) return;
    closing_ = true;
    QMetaObject::invokeMethod(this, &QWidget::close, Qt::QueuedConnection);
}

void MdiFrame::closeEvent(QCloseEvent* event) {
    if (closing_) {
        link_.SetFrame(nullptr);
        event->accept();
        return;
    }
    // The document decides: it asks to save, and closing it closes this frame.
    event->ignore();
    framework::Document* document = view_.GetDocument();
    if (document == nullptr || !document->CanCloseFrame(view_)) return;
    view_.OnCloseWindow();
    document->OnCloseDocument();
}
