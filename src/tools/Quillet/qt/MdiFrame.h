// The window of one view inside the main window's MDI area, and the part of every view that
// talks to its window.
#pragma once

#include <QMdiSubWindow>

#include "framework/View.h"

class MdiFrame;

// A view shown in an MdiFrame: the frame's title follows the document, and the frame goes
// when the document closes.
class FramedView : public framework::View {
public:
    void ActivateFrame() override;
    void CloseFrame() override;
    void OnDocumentStatusChanged() override;

    void SetFrame(MdiFrame* frame) { frame_ = frame; }

private:
    MdiFrame* frame_ = nullptr;
};

class MdiFrame : public QMdiSubWindow {
    Q_OBJECT
public:
    // Takes `widget` (which is `view`) as the frame's content.
    MdiFrame(FramedView& view, QWidget* widget);

    framework::View& GetView() const { return view_; }
    // Title "NAME[*]", with the modified marker shown while the document is modified.
    void UpdateTitle();
    // The document closed: the window goes once control is back in the event loop.
    void CloseFromDocument();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    FramedView& view_;
    bool closing_ = false;
};
