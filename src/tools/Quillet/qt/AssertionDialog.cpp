#include "AssertionDialog.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include <QApplication>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTextDocument>
#include <QTextEdit>
#include <QThread>
#include <QVBoxLayout>

#include "core_assert.h"

namespace {

constexpr int kMaxTextHeight = 2048;
constexpr int kMinButtonWidth = 60;

struct Answer {
    const char* caption;
    int id;
    int key;
};

constexpr Answer kAnswers[] = {
    {"&Abort", Core::kAssertAbort, Qt::Key_A},
    {"&Break", Core::kAssertBreak, Qt::Key_B},
    {"&Ignore", Core::kAssertIgnore, Qt::Key_I},
    {"I&gnore Always", Core::kAssertIgnoreAlways, Qt::Key_G},
};

QRect AvailableScreen(const QWidget* parent) {
    const QScreen* screen = parent != nullptr ? parent->screen() : QGuiApplication::primaryScreen();
    return screen != nullptr ? screen->availableGeometry() : QRect(0, 0, 1024, 768);
}

// The text is laid out in half the screen's width plus 96 pixels; longer text scrolls. The
// height stops at 2048, and on a smaller screen where the buttons still show.
QTextEdit* TextArea(const QString& text, const QRect& screen) {
    auto* area = new QTextEdit;
    area->setReadOnly(true);
    area->setPlainText(text);
    area->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    area->setFrameShape(QFrame::NoFrame);
    const int max_width = screen.width() / 2 + 96;
    const int max_height = std::min(kMaxTextHeight, screen.height() * 3 / 4);
    QTextDocument* document = area->document();
    document->setTextWidth(max_width);
    const int width = static_cast<int>(std::ceil(document->idealWidth()));
    const int height = static_cast<int>(std::ceil(document->size().height()));
    const int scroll_bar = height > max_height ? area->verticalScrollBar()->sizeHint().width() : 0;
    area->setFixedSize(width + scroll_bar, std::min(height, max_height));
    return area;
}

}  // namespace

AssertionDialog::AssertionDialog(const QString& text, bool save_report, QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint) {
    setWindowTitle(QStringLiteral("Assertion"));
    const QRect screen = AvailableScreen(parent);

    auto* row = new QHBoxLayout;
    std::vector<QPushButton*> buttons;
    for (const Answer& answer : kAnswers) {
        auto* button = new QPushButton(QString::fromLatin1(answer.caption));
        const int id = answer.id;
        connect(button, &QPushButton::clicked, this, [this, id] { done(id); });
        button->setAutoDefault(false);
        row->addWidget(button);
        buttons.push_back(button);
    }
    int width = kMinButtonWidth;
    for (const QPushButton* button : buttons)
        width = std::max(width, button->sizeHint().width());
    for (QPushButton* button : buttons)
        button->setFixedWidth(width);
    buttons.front()->setDefault(true);
    buttons.front()->setFocus();

    save_box_ = new QCheckBox(QStringLiteral("Save report file"));
    save_box_->setChecked(save_report);
    row->addWidget(save_box_);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(TextArea(text, screen));
    layout->addLayout(row);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    adjustSize();
    move(screen.center() - rect().center());
}

bool AssertionDialog::SaveReport() const {
    return save_box_->isChecked();
}

void AssertionDialog::reject() {}

void AssertionDialog::keyPressEvent(QKeyEvent* event) {
    const bool plain =
        (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) ==
        Qt::NoModifier;
    for (const Answer& answer : kAnswers) {
        if (plain && event->key() == answer.key) return done(answer.id);
    }
    QDialog::keyPressEvent(event);
}

int ShowAssertionDialog(const char* text, void* owner_window, bool* save_report) {
    const auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
    if (application == nullptr || QThread::currentThread() != application->thread()) return 0;
    const QString platform = QGuiApplication::platformName();
    if (platform == QLatin1String("offscreen") || platform == QLatin1String("minimal")) return 0;

    AssertionDialog dialog(QString::fromLocal8Bit(text), *save_report,
                           static_cast<QWidget*>(owner_window));
    const int answer = dialog.exec();
    *save_report = dialog.SaveReport();
    return answer;
}

AssertionDialogScope::AssertionDialogScope(QWidget* owner) {
    Core::set_assertion_dialog(ShowAssertionDialog);
    Core::set_assertion_owner_window(owner);
}

AssertionDialogScope::~AssertionDialogScope() {
    Core::set_assertion_owner_window(nullptr);
    Core::set_assertion_dialog(nullptr);
}
