// The buttons of a page window's toolbar, shared by its toolbar and the main window's menu
// for that window: a table of commands with their tips and pictures.
#pragma once

#include <QAction>
#include <QIcon>
#include <QPalette>
#include <QString>
#include <QWidget>
#include <functional>
#include <span>

class QMenu;
class QToolBar;

struct CommandButton {
    int command;             // 0: a separator
    const char* tip;         // the status line's prompt and the tooltip
    const char* theme_icon;  // the desktop theme's standard name for it, if there is one
};

// The picture of a button inked for `palette`: the desktop theme's by its name when it has
// one, else the program's drawing (Icons.h).
QIcon ButtonIcon(const CommandButton& button, const QPalette& palette);

// Adds every button to `widget` (a toolbar or a menu) as an action that calls `run` with its
// command. The actions carry their command as data.
template <typename Widget>
void AddCommandButtons(Widget& widget, std::span<const CommandButton> buttons,
                       const std::function<void(int)>& run) {
    for (const CommandButton& button : buttons) {
        if (button.command == 0) {
            widget.addSeparator();
            continue;
        }
        QAction* action =
            widget.addAction(ButtonIcon(button, widget.palette()), QString::fromLatin1(button.tip));
        action->setStatusTip(QString::fromLatin1(button.tip));
        action->setData(button.command);
        const int command = button.command;
        QObject::connect(action, &QAction::triggered, &widget, [run, command] { run(command); });
    }
}

// Gives the actions of `widget` that carry a command of `buttons` their pictures anew, for
// the widget's palette.
void ReinkCommandButtons(QWidget& widget, std::span<const CommandButton> buttons);

// A page window's content: the toolbar of the page's commands above the page.
class PageWindow : public QWidget {
    Q_OBJECT
public:
    // The action of a command of the toolbar, or null.
    QAction* Action(int command) const;

protected:
    PageWindow();
    // Puts `page` below the toolbar, taking all the room left, and fills the toolbar with
    // `buttons`: each calls `run` with its command, then gives the page the focus.
    void SetPage(QWidget* page, std::span<const CommandButton> buttons,
                 std::function<void(int)> run);
    // Fills `menu` with `buttons`, in the toolbar's order; each triggers its action in the
    // window that `active` answers when it is chosen (none: nothing happens).
    static void FillMenuWith(QMenu& menu, std::span<const CommandButton> buttons,
                             std::function<PageWindow*()> active);
    // The toolbar's palette changed: every button takes its picture anew in the new ink.
    virtual void ReinkButtons();
    QToolBar& ToolBar() const { return *tool_bar_; }

private:
    QToolBar* tool_bar_ = nullptr;
    std::span<const CommandButton> buttons_;
};
