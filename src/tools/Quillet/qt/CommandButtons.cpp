#include "CommandButtons.h"

#include <QMenu>
#include <QPixmap>
#include <QToolBar>
#include <QVBoxLayout>

QIcon DrawnIcon(const std::function<void(QPainter&)>& draw) {
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    draw(painter);
    return QIcon(pixmap);
}

QIcon LabelIcon(const QString& label) {
    return DrawnIcon([&label](QPainter& painter) {
        QFont font = painter.font();
        font.setPixelSize(label.size() > 1 ? 8 : 11);
        font.setBold(true);
        painter.setFont(font);
        painter.setPen(QColor(0x20, 0x40, 0x90));
        painter.drawRect(0, 0, 15, 15);
        painter.drawText(QRect(0, 0, 16, 16), Qt::AlignCenter, label);
    });
}

PageWindow::PageWindow() {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    tool_bar_ = new QToolBar(this);
    tool_bar_->setIconSize(QSize(16, 16));
    layout->addWidget(tool_bar_);
}

void PageWindow::SetPage(QWidget* page, const PageCommands& commands,
                         std::function<void(int)> run) {
    static_cast<QVBoxLayout*>(layout())->addWidget(page, 1);
    AddCommandButtons(*tool_bar_, commands.buttons, commands.drawn,
                      [page, run = std::move(run)](int command) {
                          run(command);
                          page->setFocus();
                      });
}

void PageWindow::FillMenuWith(QMenu& menu, const PageCommands& commands,
                              std::function<PageWindow*()> active) {
    AddCommandButtons(menu, commands.buttons, commands.drawn,
                      [active = std::move(active)](int command) {
                          if (PageWindow* window = active()) window->Action(command)->trigger();
                      });
}

QAction* PageWindow::Action(int command) const {
    for (QAction* action : tool_bar_->actions()) {
        if (action->data().toInt() == command) return action;
    }
    return nullptr;
}
