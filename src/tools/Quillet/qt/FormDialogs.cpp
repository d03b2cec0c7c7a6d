#include "FormDialogs.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "QtText.h"

namespace {

using framework::Control;
using framework::ControlKind;
using framework::TreeItem;

// Text with arrows whose steps the form answers, whatever the number in it.
class FormSpinBox : public QAbstractSpinBox {
public:
    explicit FormSpinBox(std::function<void(int)> step) : step_(std::move(step)) {}
    void stepBy(int steps) override { step_(steps); }

protected:
    StepEnabled stepEnabled() const override { return StepUpEnabled | StepDownEnabled; }

private:
    std::function<void(int)> step_;
};

bool IsLine(ControlKind kind) {
    return kind == ControlKind::Edit || kind == ControlKind::ReadOnly ||
           kind == ControlKind::Number || kind == ControlKind::Spin;
}

QLineEdit* LineOf(QWidget* widget) {
    if (auto* spin = qobject_cast<QAbstractSpinBox*>(widget)) return spin->findChild<QLineEdit*>();
    return qobject_cast<QLineEdit*>(widget);
}

void AddItems(QTreeWidgetItem* parent, const std::vector<TreeItem>& items) {
    for (const TreeItem& item : items)
        AddItems(new QTreeWidgetItem(parent, QStringList(ToQString(item.text))), item.children);
}

// The item that `path` names, from the top level down; null when there is none.
QTreeWidgetItem* ItemAt(QTreeWidget& tree, const std::vector<std::string>& path) {
    QTreeWidgetItem* item = tree.invisibleRootItem();
    for (const std::string& text : path) {
        QTreeWidgetItem* next = nullptr;
        for (int index = 0; index < item->childCount() && next == nullptr; ++index) {
            if (item->child(index)->text(0) == ToQString(text)) next = item->child(index);
        }
        if (next == nullptr) return nullptr;
        item = next;
    }
    return item == tree.invisibleRootItem() ? nullptr : item;
}

std::vector<std::string> PathOf(const QTreeWidgetItem* item) {
    std::vector<std::string> path;
    for (; item != nullptr; item = item->parent())
        path.insert(path.begin(), FromQString(item->text(0)));
    return path;
}

}  // namespace

bool RunFormDialog(framework::Form& form, framework::UserInterface& ui, QWidget* parent) {
    // A dialog opened from a dialog stands over it.
    if (QWidget* open = QApplication::activeModalWidget()) parent = open;
    return FormDialog(form, ui, parent).exec() == QDialog::Accepted;
}

FormDialog::FormDialog(framework::Form& form, framework::UserInterface& ui, QWidget* parent)
    : QDialog(parent), form_(form), ui_(ui) {
    auto* grid = new QGridLayout;
    for (const Control& control : form.Controls()) {
        QWidget* widget = MakeWidget(control);
        widgets_[control.id] = widget;
        QWidget* placed = widget;
        if (!control.label.empty() &&
            (IsLine(control.kind) || control.kind == ControlKind::DropList ||
             control.kind == ControlKind::Tree)) {
            auto* label = new QLabel(ToQString(control.label));
            label->setBuddy(widget);
            labels_[control.id] = label;
            placed = new QWidget;
            QBoxLayout* pair = control.kind == ControlKind::Tree
                                   ? static_cast<QBoxLayout*>(new QVBoxLayout(placed))
                                   : static_cast<QBoxLayout*>(new QHBoxLayout(placed));
            pair->setContentsMargins(0, 0, 0, 0);
            pair->addWidget(label);
            pair->addWidget(widget, 1);
        }
        grid->addWidget(placed, control.cell.row, control.cell.column, control.cell.row_span,
                        control.cell.column_span);
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid, 1);
    layout->addWidget(buttons);
    Refresh();
}

QWidget* FormDialog::MakeWidget(const Control& control) {
    const int id = control.id;
    switch (control.kind) {
        case ControlKind::Edit:
        case ControlKind::ReadOnly:
        case ControlKind::Number: {
            auto* edit = new QLineEdit;
            edit->setReadOnly(control.kind == ControlKind::ReadOnly);
            if (control.max_length != 0) edit->setMaxLength(static_cast<int>(control.max_length));
            if (control.kind == ControlKind::Number) edit->setMaximumWidth(90);
            connect(edit, &QLineEdit::textEdited, this, [this, id](const QString& text) {
                Report([&] { form_.SetText(id, FromQString(text), ui_); });
            });
            return edit;
        }
        case ControlKind::Spin: {
            auto* spin = new FormSpinBox(
                [this, id](int steps) { Report([&] { form_.Spin(id, steps, ui_); }); });
            connect(LineOf(spin), &QLineEdit::textEdited, this, [this, id](const QString& text) {
                Report([&] { form_.SetText(id, FromQString(text), ui_); });
            });
            return spin;
        }
        case ControlKind::DropList: {
            auto* list = new QComboBox;
            list->setSizeAdjustPolicy(QComboBox::AdjustToContents);
            connect(list, &QComboBox::activated, this,
                    [this, id](int row) { Report([&] { form_.SelectRow(id, row, ui_); }); });
            return list;
        }
        case ControlKind::Check:
        case ControlKind::Radio: {
            QAbstractButton* button = control.kind == ControlKind::Check
                                          ? static_cast<QAbstractButton*>(new QCheckBox)
                                          : static_cast<QAbstractButton*>(new QRadioButton);
            button->setText(ToQString(control.label));
            // The form keeps the groups: a radio button's click always checks it.
            button->setAutoExclusive(false);
            connect(button, &QAbstractButton::clicked, this, [this, id, button](bool checked) {
                const bool radio = qobject_cast<QRadioButton*>(button) != nullptr;
                Report([&] { form_.SetChecked(id, radio || checked, ui_); });
            });
            return button;
        }
        case ControlKind::Button: {
            auto* button = new QPushButton(ToQString(control.label));
            button->setAutoDefault(false);
            connect(button, &QPushButton::clicked, this, [this, id] {
                bool ok = false;
                Report([&] { ok = form_.Press(id, ui_); });
                if (ok) accept();
            });
            return button;
        }
        case ControlKind::Tree:
            return MakeTree(control);
    }
    return new QWidget;
}

QWidget* FormDialog::MakeTree(const Control& control) {
    const int id = control.id;
    auto* tree = new QTreeWidget;
    tree->setHeaderHidden(true);
    tree->setMinimumSize(240, 260);
    // Only the person's own selection counts: the item the tree makes current on its own
    // when it takes the focus is not a choice.
    connect(tree, &QTreeWidget::itemSelectionChanged, this, [this, id, tree] {
        const QList<QTreeWidgetItem*> selected = tree->selectedItems();
        const std::vector<std::string> path =
            selected.isEmpty() ? std::vector<std::string>() : PathOf(selected.front());
        Report([&] { form_.SelectItem(id, path, ui_); });
    });
    connect(tree, &QTreeWidget::itemActivated, this, [this, id] {
        bool ok = false;
        Report([&] { ok = form_.Press(id, ui_); });
        if (ok) accept();
    });
    return tree;
}

template <typename Change>
void FormDialog::Report(Change change) {
    if (refreshing_) return;
    change();
    Refresh();
}

void FormDialog::Refresh() {
    refreshing_ = true;
    setWindowTitle(ToQString(form_.Caption()));
    for (const Control& control : form_.Controls())
        RefreshControl(control);
    refreshing_ = false;
}

void FormDialog::RefreshControl(const Control& control) {
    QWidget* widget = widgets_.at(control.id);
    const QSignalBlocker blocker(widget);
    widget->setEnabled(control.enabled);
    if (QLabel* label = labels_.count(control.id) != 0 ? labels_.at(control.id) : nullptr)
        label->setEnabled(control.enabled);
    if (QLineEdit* line = LineOf(widget); line != nullptr && IsLine(control.kind)) {
        const QSignalBlocker line_blocker(line);
        if (line->text() != ToQString(control.text)) line->setText(ToQString(control.text));
    } else if (auto* list = qobject_cast<QComboBox*>(widget)) {
        if (shown_rows_[control.id] != control.rows) {
            list->clear();
            for (const std::string& row : control.rows)
                list->addItem(ToQString(row));
            shown_rows_[control.id] = control.rows;
        }
        list->setCurrentIndex(control.selected);
    } else if (auto* button = qobject_cast<QAbstractButton*>(widget);
               button != nullptr && button->isCheckable()) {
        button->setChecked(control.checked);
    } else if (auto* tree = qobject_cast<QTreeWidget*>(widget)) {
        RefreshTree(control, *tree);
    }
}

void FormDialog::RefreshTree(const Control& control, QTreeWidget& tree) {
    if (shown_items_[control.id] != control.items) {
        tree.clear();
        AddItems(tree.invisibleRootItem(), control.items);
        tree.expandAll();
        shown_items_[control.id] = control.items;
    }
    QTreeWidgetItem* picked = ItemAt(tree, control.pick);
    if (picked == nullptr) {
        tree.clearSelection();
    } else if (!picked->isSelected()) {
        tree.setCurrentItem(picked);
        tree.scrollToItem(picked);
    }
}

void FormDialog::accept() {
    if (form_.Accept(ui_)) QDialog::accept();
}

QWidget* FormDialog::ControlWidget(int id) const {
    const auto found = widgets_.find(id);
    return found != widgets_.end() ? found->second : nullptr;
}
