// The assertion dialog, offscreen: its answers by key and button, the save box, and that
// nothing but an answer closes it. Offscreen is also where Core must not be given it.
#include <QCheckBox>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTextEdit>
#include <thread>

#include "GuiFixture.h"
#include "core_assert.h"
#include "qt/AssertionDialog.h"

namespace {

const QString kText = QStringLiteral("layout.cpp(12):\nASSERT( piece != nullptr )\n");

QList<QPushButton*> Buttons(const AssertionDialog& dialog) {
    return dialog.findChildren<QPushButton*>();
}

}  // namespace

class AssertionDialogTest : public QObject {
    Q_OBJECT

private slots:
    void showsTheTextUnderItsTitleWithTheFourAnswersInARow() {
        AssertionDialog dialog(kText, true, nullptr);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Assertion"));
        QCOMPARE(dialog.findChild<QTextEdit*>()->toPlainText(), kText);
        const QList<QPushButton*> buttons = Buttons(dialog);
        QStringList captions;
        for (const QPushButton* button : buttons)
            captions << button->text();
        QCOMPARE(captions,
                 (QStringList{QStringLiteral("&Abort"), QStringLiteral("&Break"),
                              QStringLiteral("&Ignore"), QStringLiteral("I&gnore Always")}));
        QVERIFY(buttons[0]->isDefault());
        for (const QPushButton* button : buttons) {
            QCOMPARE(button->width(), buttons[3]->width());
            QVERIFY(button->width() >= 60);
            QVERIFY(button->width() >= button->sizeHint().width());
        }
        QVERIFY(!(dialog.windowFlags() & Qt::WindowCloseButtonHint));
    }

    void eachKeyGivesItsAnswerWithoutAlt() {
        const std::pair<Qt::Key, int> keys[] = {{Qt::Key_A, Core::kAssertAbort},
                                                {Qt::Key_B, Core::kAssertBreak},
                                                {Qt::Key_I, Core::kAssertIgnore},
                                                {Qt::Key_G, Core::kAssertIgnoreAlways}};
        for (const auto& [key, answer] : keys) {
            AssertionDialog dialog(kText, true, nullptr);
            dialog.show();
            // Typed on the focused button, the key reaches the dialog.
            QTest::keyClick(Buttons(dialog)[0], key);
            QVERIFY(!dialog.isVisible());
            QCOMPARE(dialog.result(), answer);
        }
    }

    void buttonsAndEnterAnswerToo() {
        AssertionDialog ignore(kText, true, nullptr);
        ignore.show();
        QTest::mouseClick(Buttons(ignore)[2], Qt::LeftButton);
        QCOMPARE(ignore.result(), int{Core::kAssertIgnore});

        AssertionDialog enter(kText, true, nullptr);
        enter.show();
        QTest::keyClick(&enter, Qt::Key_Return);
        QCOMPARE(enter.result(), int{Core::kAssertAbort});
    }

    void escapeAndClosingLeaveItOpen() {
        AssertionDialog dialog(kText, true, nullptr);
        dialog.show();
        QTest::keyClick(&dialog, Qt::Key_Escape);
        QVERIFY(dialog.isVisible());
        dialog.close();
        QVERIFY(dialog.isVisible());
        QTest::keyClick(&dialog, Qt::Key_X);
        QVERIFY(dialog.isVisible());
    }

    void theSaveBoxStartsAsToldAndIsReadAtTheEnd() {
        AssertionDialog unchecked(kText, false, nullptr);
        QVERIFY(!unchecked.SaveReport());
        AssertionDialog checked(kText, true, nullptr);
        auto* box = checked.findChild<QCheckBox*>();
        QCOMPARE(box->text(), QStringLiteral("Save report file"));
        QVERIFY(checked.SaveReport());
        box->setChecked(false);
        QVERIFY(!checked.SaveReport());
    }

    void longTextScrollsInsideTheLimits() {
        QString text;
        for (int line = 0; line < 400; ++line)
            text += QStringLiteral("line %1 of a long assertion message\n").arg(line);
        AssertionDialog dialog(text, true, nullptr);
        dialog.show();
        auto* area = dialog.findChild<QTextEdit*>();
        QVERIFY(area->height() <= 2048);
        QVERIFY(area->verticalScrollBar()->maximum() > 0);
        const QRect screen = dialog.screen()->availableGeometry();
        QVERIFY(area->width() <=
                screen.width() / 2 + 96 + area->verticalScrollBar()->sizeHint().width());
    }

    void coreIsToldThereIsNoDisplayOffscreenOrOffTheInterfaceThread() {
        bool save = true;
        QCOMPARE(ShowAssertionDialog("text", nullptr, &save), 0);
        int answer = -1;
        std::thread([&answer, &save] {
            answer = ShowAssertionDialog("text", nullptr, &save);
        }).join();
        QCOMPARE(answer, 0);
    }
};

int main(int argc, char** argv) {
    return RunGuiTest<AssertionDialogTest>(argc, argv);
}

#include "assertion_dialog_test.moc"
