#include "Form.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

#include "Application.h"
#include "UserInterface.h"

namespace framework {

TreeItem& AddTreeItem(std::vector<TreeItem>& items, std::string text) {
    items.push_back(TreeItem{std::move(text), {}});
    return items.back();
}

TreeItem* FindTreeItem(std::vector<TreeItem>& items, const std::string& text) {
    const auto found = std::find_if(items.begin(), items.end(),
                                    [&](const TreeItem& item) { return item.text == text; });
    return found != items.end() ? &*found : nullptr;
}

bool ParseDialogInt(const std::string& text, int& value) {
    const char* first = text.data();
    const char* last = text.data() + text.size();
    if (first != last && *first == '+') ++first;
    const auto [end, error] = std::from_chars(first, last, value);
    return error == std::errc() && end == last;
}

const Control& Form::At(int id) const {
    const auto found = std::find_if(controls_.begin(), controls_.end(),
                                    [id](const Control& control) { return control.id == id; });
    if (found == controls_.end())
        throw std::logic_error("the form has no control " + std::to_string(id));
    return *found;
}

Control& Form::Mutable(int id) {
    return const_cast<Control&>(std::as_const(*this).At(id));
}

Control& Form::Add(Control control) {
    controls_.push_back(std::move(control));
    return controls_.back();
}

std::string Form::SelectedText(int id) const {
    const Control& list = At(id);
    if (list.selected < 0 || static_cast<size_t>(list.selected) >= list.rows.size()) return {};
    return list.rows[static_cast<size_t>(list.selected)];
}

void Form::SetText(int id, const std::string& text, UserInterface& ui) {
    Control& control = Mutable(id);
    if (!control.enabled) return;
    control.text = control.max_length != 0 ? text.substr(0, control.max_length) : text;
    OnChanged(id, ui);
}

void Form::SelectRow(int id, int row, UserInterface& ui) {
    Control& list = Mutable(id);
    if (!list.enabled || row < -1 || row >= static_cast<int>(list.rows.size())) return;
    list.selected = row;
    OnChanged(id, ui);
}

bool Form::SelectRowText(int id, const std::string& text, UserInterface& ui) {
    const std::vector<std::string>& rows = At(id).rows;
    const auto found = std::find(rows.begin(), rows.end(), text);
    if (found == rows.end()) return false;
    SelectRow(id, static_cast<int>(found - rows.begin()), ui);
    return true;
}

void Form::SetChecked(int id, bool checked, UserInterface& ui) {
    Control& control = Mutable(id);
    if (!control.enabled) return;
    if (control.kind == ControlKind::Radio && checked)
        CheckRadio(id);
    else
        control.checked = checked;
    OnChanged(id, ui);
}

void Form::SelectItem(int id, const std::vector<std::string>& path, UserInterface& ui) {
    Control& tree = Mutable(id);
    if (!tree.enabled) return;
    tree.pick = path;
    OnChanged(id, ui);
}

bool Form::Press(int id, UserInterface& ui) {
    return At(id).enabled && OnPressed(id, ui);
}

void Form::Spin(int id, int steps, UserInterface& ui) {
    if (At(id).enabled) OnSpin(id, steps, ui);
}

void Form::ShowRow(int id, const std::string& text) {
    Control& list = Mutable(id);
    const auto found = std::find(list.rows.begin(), list.rows.end(), text);
    list.selected = found != list.rows.end() ? static_cast<int>(found - list.rows.begin())
                    : list.rows.empty()      ? -1
                                             : 0;
}

void Form::CheckRadio(int id) {
    const int group = At(id).group;
    for (Control& control : controls_) {
        if (control.kind == ControlKind::Radio && control.group == group)
            control.checked = control.id == id;
    }
}

int Form::CheckedRadio(int group) const {
    for (const Control& control : controls_) {
        if (control.kind == ControlKind::Radio && control.group == group && control.checked)
            return control.id;
    }
    return 0;
}

bool Form::Accept(UserInterface& ui) {
    for (const Control& control : controls_) {
        if (control.kind != ControlKind::Number || !control.enabled) continue;
        int value = 0;
        if (ParseDialogInt(control.text, value) && value >= control.minimum &&
            value <= control.maximum)
            continue;
        const Application* app = Application::Instance();
        ui.MessageBox("Please enter an integer between " + std::to_string(control.minimum) +
                          " and " + std::to_string(control.maximum) + ".",
                      app != nullptr ? app->Name() : std::string("quillet"), MessageIcon::Warning,
                      MessageButtons::Ok);
        return false;
    }
    return OnOk(ui);
}

}  // namespace framework
