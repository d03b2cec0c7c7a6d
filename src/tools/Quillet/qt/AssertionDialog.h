// "Assertion": the dialog of a failing assertion, with Abort, Break, Ignore, Ignore Always and
// the "Save report file" box. Core has no windows of its own; the editor gives it this one.
//
// The dialog closes only by one of its four answers: Escape and the title bar do nothing, so
// no assertion is answered by accident. A, B, I and G answer without Alt.
#pragma once

#include <QDialog>

class QCheckBox;
class QKeyEvent;
class QString;

class AssertionDialog : public QDialog {
    Q_OBJECT
public:
    // `save_report` is the start state of "Save report file".
    AssertionDialog(const QString& text, bool save_report, QWidget* parent);

    // The state of "Save report file".
    bool SaveReport() const;
    void reject() override;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QCheckBox* save_box_ = nullptr;
};

// Core's assertion dialog: shows AssertionDialog modally over `owner_window` (a QWidget*, or
// null) and answers the button's id, 20 to 23. Answers 0, "no dialog here", when there is no
// display to show it on (the offscreen and minimal platforms) or when called from a thread
// other than the interface's: Core then writes the text to standard error.
int ShowAssertionDialog(const char* text, void* owner_window, bool* save_report);

// Installs ShowAssertionDialog over `owner` for as long as the object lives.
class AssertionDialogScope {
public:
    explicit AssertionDialogScope(QWidget* owner);
    ~AssertionDialogScope();
    AssertionDialogScope(const AssertionDialogScope&) = delete;
    AssertionDialogScope& operator=(const AssertionDialogScope&) = delete;
};
