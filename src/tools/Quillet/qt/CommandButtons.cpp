#include "CommandButtons.h"

#include <QMenu>
#include <QToolBar>
#include <QVBoxLayout>

#include "Icons.h"

QIcon ButtonIcon(const CommandButton& button, const QPalette& palette) {
    return ThemedCommandIcon(button.theme_icon, button.command, palette);
}

void ReinkCommandButtons(QWidget& widget, std::span<const CommandButton> buttons) {
    for (QAction* action : widget.actions()) {
        const int command = action->data().toInt();
        for (const CommandButton& button : buttons) {
            if (button.command != 0 && button.command == command)
                action->setIcon(ButtonIcon(button, widget.palette()));
        }
    }
}

PageWindow::PageWindow() {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    tool_bar_ = new QToolBar(this);
    tool_bar_->setIconSize(QSize(16, 16));
    layout->addWidget(tool_bar_);
    FollowPalette(*tool_bar_, [this] { ReinkButtons(); });
}

void PageWindow::SetPage(QWidget* page, std::span<const CommandButton> buttons,
                         std::function<void(int)> run) {
    static_cast<QVBoxLayout*>(layout())->addWidget(page, 1);
    buttons_ = buttons;
    AddCommandButtons(*tool_bar_, buttons, [page, run = std::move(run)](int command) {
        run(command);
        page->setFocus();
    });
}

void PageWindow::FillMenuWith(QMenu& menu, std::span<const CommandButton> buttons,
                              std::function<PageWindow*()> active) {
    AddCommandButtons(menu, buttons, [active = std::move(active)](int command) {
        if (PageWindow* window = active()) window->Action(command)->trigger();
    });
    FollowPalette(menu, [&menu, buttons] { ReinkCommandButtons(menu, buttons); });
}

void PageWindow::ReinkButtons() {
    ReinkCommandButtons(*tool_bar_, buttons_);
}

QAction* PageWindow::Action(int command) const {
    for (QAction* action : tool_bar_->actions()) {
        if (action->data().toInt() == command) return action;
    }
    return nullptr;
}
