// The buttons of a page window's toolbar, shared by its toolbar and the main window's menu
// for that window: a table of commands with their tips and pictures.
#pragma once

#include <QAction>
#include <QIcon>
#include <QPainter>
#include <QString>
#include <QWidget>
#include <functional>
#include <span>

class QMenu;
class QToolBar;

struct CommandButton {
    int command;             // 0: a separator
    const char* tip;         // the status line's prompt and the tooltip
    const char* theme_icon;  // the desktop's picture, if it has one
    const char* label;       // drawn when the desktop has no picture; empty for a drawing
    bool handled = true;     // false: no window handles it yet, so it stays disabled
};

// The commands of one kind of page window: its buttons, and the pictures drawn for those
// the desktop has none for (a null icon: the button's label).
struct PageCommands {
    std::span<const CommandButton> buttons;
    QIcon (*drawn)(int command);
};

// A 16 by 16 picture drawn by `draw` on a clear ground.
QIcon DrawnIcon(const std::function<void(QPainter&)>& draw);
// A short label in a frame, for a command without a picture of its own.
QIcon LabelIcon(const QString& label);

// Adds every button to `widget` (a toolbar or a menu) as an action that calls `run` with its
// command; `drawn` answers the picture of a button that has none from the desktop (a null
// icon: its label). The actions carry their command as data.
template <typename Widget>
void AddCommandButtons(Widget& widget, std::span<const CommandButton> buttons,
                       const std::function<QIcon(int)>& drawn,
                       const std::function<void(int)>& run) {
    for (const CommandButton& button : buttons) {
        if (button.command == 0) {
            widget.addSeparator();
            continue;
        }
        QIcon fallback = drawn(button.command);
        if (fallback.isNull()) fallback = LabelIcon(QString::fromLatin1(button.label));
        const QIcon icon = button.theme_icon != nullptr
                               ? QIcon::fromTheme(QString::fromLatin1(button.theme_icon), fallback)
                               : fallback;
        QAction* action = widget.addAction(icon, QString::fromLatin1(button.tip));
        action->setStatusTip(QString::fromLatin1(button.tip));
        action->setData(button.command);
        action->setEnabled(button.handled);
        const int command = button.command;
        QObject::connect(action, &QAction::triggered, &widget, [run, command] { run(command); });
    }
}

// A page window's content: the toolbar of the page's commands above the page.
class PageWindow : public QWidget {
    Q_OBJECT
public:
    // The action of a command of the toolbar, or null.
    QAction* Action(int command) const;

protected:
    PageWindow();
    // Puts `page` below the toolbar, taking all the room left, and fills the toolbar with
    // `commands`: each calls `run` with its command, then gives the page the focus.
    void SetPage(QWidget* page, const PageCommands& commands, std::function<void(int)> run);
    // Fills `menu` with `commands`, in the toolbar's order; each triggers its action in the
    // window that `active` answers when it is chosen (none: nothing happens).
    static void FillMenuWith(QMenu& menu, const PageCommands& commands,
                             std::function<PageWindow*()> active);

private:
    QToolBar* tool_bar_ = nullptr;
};
