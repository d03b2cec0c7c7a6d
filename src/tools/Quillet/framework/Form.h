// The logic of a modal dialog: its controls, what each does when the person works it, and
// what OK checks. A form knows nothing of windows. Like a dialog resource it lists its
// controls by id, with their kind, label and place in a grid; the Qt layer shows any form
// with one dialog class that reports every change back here and then shows the controls as
// the form left them. Tests work the controls through the same calls, without widgets.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace framework {

class UserInterface;

enum class ControlKind {
    Edit,      // one line of text, at most `max_length` characters when that is not 0
    ReadOnly,  // text the person can read and copy, not change
    Number,    // a whole number that OK checks against `minimum` and `maximum`
    Spin,      // text with up and down arrows that the form answers (OnSpin)
    DropList,  // a list of `rows`, one `selected`
    Check,     // a check box
    Radio,     // a radio button; those of one `group` exclude one another
    Button,    // a push button (OnPressed)
    Tree,      // a tree of `items`; `pick` is the selected item's path
};

struct TreeItem {
    std::string text;
    std::vector<TreeItem> children;
    friend bool operator==(const TreeItem&, const TreeItem&) = default;
};

// Where a control stands in the dialog's grid.
struct Cell {
    int row = 0;
    int column = 0;
    int row_span = 1;
    int column_span = 1;
};

struct Control {
    int id = 0;
    ControlKind kind = ControlKind::Edit;
    // Beside an edit, list or tree; on a button, check box or radio button.
    std::string label{};
    Cell cell{};
    bool enabled = true;
    std::string text{};     // Edit, ReadOnly, Number, Spin
    size_t max_length = 0;  // Edit: 0 for no limit
    int minimum = 0;        // Number
    int maximum = 0;
    std::vector<std::string> rows{};  // DropList
    int selected = -1;                // DropList: -1 for none
    bool checked = false;             // Check, Radio
    int group = 0;                    // Radio
    std::vector<TreeItem> items{};    // Tree
    // Tree: the texts from the top level down to the selected item; empty for none.
    std::vector<std::string> pick{};
};

// Adds `text` as a child of `items` and answers it: a tree filled node by node.
TreeItem& AddTreeItem(std::vector<TreeItem>& items, std::string text);
// The top-level item of that text, or null.
TreeItem* FindTreeItem(std::vector<TreeItem>& items, const std::string& text);

class Form {
public:
    virtual ~Form() = default;

    const std::string& Caption() const { return caption_; }
    const std::vector<Control>& Controls() const { return controls_; }
    // The control of that id; a form asked for an id it does not have is a programming error.
    const Control& At(int id) const;
    // Shorthands for tests and callers.
    const std::string& Text(int id) const { return At(id).text; }
    bool Enabled(int id) const { return At(id).enabled; }
    // The text of the selected row of a list; empty when none is selected.
    std::string SelectedText(int id) const;

    // What the person does. Each call changes the control as its widget would (an edit keeps
    // at most `max_length` characters; a radio button clears the others of its group) and
    // then lets the form answer. Calls on a disabled control do nothing, as a disabled
    // widget takes no input.
    void SetText(int id, const std::string& text, UserInterface& ui);
    void SelectRow(int id, int row, UserInterface& ui);
    // Selects the row of that text; false when the list has none.
    bool SelectRowText(int id, const std::string& text, UserInterface& ui);
    void SetChecked(int id, bool checked, UserInterface& ui);
    void SelectItem(int id, const std::vector<std::string>& path, UserInterface& ui);
    // A button pressed, or a tree item double-clicked. True when the form takes it as OK.
    bool Press(int id, UserInterface& ui);
    // The up (+1) or down (-1) arrow of a spin control.
    void Spin(int id, int steps, UserInterface& ui);

    // OK: every number within its limits (the first that is not is told and keeps the
    // dialog open), then the form's own checks. True closes the dialog.
    bool Accept(UserInterface& ui);

protected:
    explicit Form(std::string caption) : caption_(std::move(caption)) {}
    Form() = default;

    Control& Add(Control control);
    Control& Mutable(int id);
    void SetCaption(std::string caption) { caption_ = std::move(caption); }
    // Selects the row of that text, or row 0 when the list has none (-1 when it is empty),
    // without telling the form: how a dialog shows a record's value at its start.
    void ShowRow(int id, const std::string& text);
    // Radio buttons of one group: checks the one of `id`, clears the others.
    void CheckRadio(int id);
    // The id of the checked radio button of `group`; 0 when none is checked.
    int CheckedRadio(int group) const;

    // The person changed control `id` (its text, row, check or tree pick).
    virtual void OnChanged(int /*id*/, UserInterface& /*ui*/) {}
    // Answers true when the press stands for OK.
    virtual bool OnPressed(int /*id*/, UserInterface& /*ui*/) { return false; }
    virtual void OnSpin(int /*id*/, int /*steps*/, UserInterface& /*ui*/) {}
    // OK passed the number limits: true closes the dialog; false keeps it open after the
    // person was told why in a box.
    virtual bool OnOk(UserInterface& /*ui*/) { return true; }

private:
    std::string caption_;
    std::vector<Control> controls_;
};

// The text of a whole number as a dialog field holds it, and back: an optional sign and
// decimal digits that fit in 32 bits; nothing else parses.
bool ParseDialogInt(const std::string& text, int& value);

}  // namespace framework
