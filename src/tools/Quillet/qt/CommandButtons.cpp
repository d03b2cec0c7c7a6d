#include "CommandButtons.h"

#include <QPixmap>

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
