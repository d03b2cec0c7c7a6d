// The one dialog that shows any form: a widget per control, placed in the form's grid, with
// OK and Cancel below. Every change the person makes goes to the form, and the dialog then
// shows every control as the form left it; OK closes only when the form accepts.
#pragma once

#include <QDialog>
#include <map>
#include <string>
#include <vector>

#include "framework/Form.h"
#include "framework/UserInterface.h"

class QLabel;
class QTreeWidget;

// Runs the dialog of `form` over `parent`, or over the dialog that is open now; false when
// cancelled.
bool RunFormDialog(framework::Form& form, framework::UserInterface& ui, QWidget* parent);

class FormDialog : public QDialog {
    Q_OBJECT
public:
    FormDialog(framework::Form& form, framework::UserInterface& ui, QWidget* parent);

    void accept() override;
    // The widget that shows control `id`; null for an id the form does not have.
    QWidget* ControlWidget(int id) const;

private:
    QWidget* MakeWidget(const framework::Control& control);
    QWidget* MakeTree(const framework::Control& control);
    // Runs what the person did, then shows the form's controls as they now stand.
    template <typename Change>
    void Report(Change change);
    void Refresh();
    void RefreshControl(const framework::Control& control);
    void RefreshTree(const framework::Control& control, QTreeWidget& tree);

    framework::Form& form_;
    framework::UserInterface& ui_;
    std::map<int, QWidget*> widgets_;
    std::map<int, QLabel*> labels_;
    // What each list and tree shows, so that they are filled again only when that changes.
    std::map<int, std::vector<std::string>> shown_rows_;
    std::map<int, std::vector<framework::TreeItem>> shown_items_;
    bool refreshing_ = false;
};
