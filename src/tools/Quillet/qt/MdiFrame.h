// The window of one view inside the main window's MDI area, and the part of every view that
// talks to its window.
#pragma once

#include <QMdiSubWindow>

#include "framework/View.h"

class MdiFrame;

// The part of a view that talks to the MdiFrame that shows it.
class FrameLink {
public:
    void SetFrame(MdiFrame* frame) { frame_ = frame; }

protected:
    void ActivateLinkedFrame();
    void CloseLinkedFrame();
    void UpdateLinkedTitle();

private:
    MdiFrame* frame_ = nullptr;
};

// A view shown in an MdiFrame: the frame's title follows the document, and the frame goes
// when the document closes.
template <typename ViewBase = framework::View>
class FramedView : public ViewBase, public FrameLink {
public:
    using ViewBase::ViewBase;
    void ActivateFrame() override { ActivateLinkedFrame(); }
    void CloseFrame() override { CloseLinkedFrame(); }
    void OnDocumentStatusChanged() override { UpdateLinkedTitle(); }
};

class MdiFrame : public QMdiSubWindow {
    Q_OBJECT
public:
    // Takes `widget`, which shows `view`, as the frame's content.
    MdiFrame(framework::View& view, FrameLink& link, QWidget* widget);

    framework::View& GetView() const { return view_; }
    // Title "NAME[*]", with the modified marker shown while the document is modified.
    void UpdateTitle();
    // The document closed: the window goes once control is back in the event loop.
    void CloseFromDocument();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    framework::View& view_;
    FrameLink& link_;
    bool closing_ = false;
};
