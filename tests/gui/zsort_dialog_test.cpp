// The z sort dialog, offscreen, over a real project's page: rows dragged with the real
// mouse, OK and every way of closing.
#include <QDialogButtonBox>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

#include "GuiFixture.h"
#include "layout/ZSortList.h"
#include "model/QuilletDoc.h"
#include "qt/ZSortDialog.h"

namespace {

using Names = std::vector<std::string>;

std::string Piece(const std::string& name) {
    return "<UI piece>" + name +
           "\n<identifier>button</identifier>\n<Parameters>\n<x>10</x>\n<y>20</y>\n"
           "<width>64</width>\n<height>64</height>\n<locked>false</locked>\n</Parameters>\n"
           "<object_data></object_data>\n<object_id>empty_art</object_id>\n</UI piece>\n";
}

const std::string kProject =
    "<layout>\n<layout_width>800</layout_width>\n<layout_height>600</layout_height>\n"
    "<piece_types_fname></piece_types_fname>\n<piece_texts_fname></piece_texts_fname>\n"
    "<lpage>Main\n" +
    Piece("a") + Piece("b") + Piece("c") + "</lpage>\n</layout>\n";

Names Order() {
    Names names;
    for (const UI_PIECE& piece : GetProjectDoc()->qlt_file().FindPage("Main").pieces)
        names.push_back(piece.name);
    return names;
}

}  // namespace

class ZSortDialogTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        gui_.Make();
        QVERIFY(gui_.app->InitInstance({gui_.dir.Write("ui.qlt", kProject)}, gui_.window.get()));
        list_ = std::make_unique<ZSortList>("Main", Order());
        closings_ = 0;
        // As the owner does: the dialog goes once it has closed.
        dialog_ = new ZSortDialog(
            *list_,
            [this] {
                ++closings_;
                delete dialog_;
                dialog_ = nullptr;
            },
            gui_.window.get());
        dialog_->show();
        QVERIFY(QTest::qWaitForWindowExposed(dialog_));
        tree_ = dialog_->findChild<QTreeWidget*>();
        QVERIFY(tree_ != nullptr);
    }
    void cleanup() {
        delete dialog_;
        dialog_ = nullptr;
        gui_.Destroy();
    }

    void draggingTheBottomRowToTheTopAndOkReordersThePage() {
        QCOMPARE(dialog_->windowTitle(), QStringLiteral("Z Sort"));
        QCOMPARE(Rows(),
                 (QStringList{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}));
        QWidget* viewport = tree_->viewport();
        QTest::mousePress(viewport, Qt::LeftButton, {}, RowCentre(2));
        QTest::mouseMove(viewport, RowCentre(1));
        QTest::mouseMove(viewport, RowCentre(0));
        // Below the rows the drop still lands on the last row passed over.
        const QPoint below(RowCentre(2).x(), viewport->height() - 2);
        QTest::mouseMove(viewport, below);
        QTest::mouseRelease(viewport, Qt::LeftButton, {}, below);
        QCOMPARE(Rows(),
                 (QStringList{QStringLiteral("c"), QStringLiteral("a"), QStringLiteral("b")}));
        QCOMPARE(tree_->currentItem(), tree_->topLevelItem(0));
        QCOMPARE(Order(), (Names{"a", "b", "c"}));

        Button(QDialogButtonBox::Ok)->click();
        QCOMPARE(Order(), (Names{"c", "a", "b"}));
        QVERIFY(GetProjectDoc()->IsModified());
        QTRY_COMPARE(closings_, 1);
        QVERIFY(dialog_ == nullptr);
        QCoreApplication::processEvents();
        QCOMPARE(closings_, 1);
        QVERIFY(gui_.ui->boxes.empty());
    }

    // A press and release on one row, even after wandering off the rows, moves nothing.
    void aClickWithoutPassingAnotherRowLeavesTheRowWhereItWas() {
        QWidget* viewport = tree_->viewport();
        QTest::mousePress(viewport, Qt::LeftButton, {}, RowCentre(1));
        QTest::mouseMove(viewport, QPoint(RowCentre(1).x(), viewport->height() - 2));
        QTest::mouseRelease(viewport, Qt::LeftButton, {}, RowCentre(1));
        QCOMPARE(Rows(),
                 (QStringList{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}));
        QCOMPARE(tree_->currentItem(), tree_->topLevelItem(1));
    }

    void cancelChangesNothingAndTellsTheOwnerOnce() {
        QTest::mousePress(tree_->viewport(), Qt::LeftButton, {}, RowCentre(0));
        QTest::mouseMove(tree_->viewport(), RowCentre(2));
        QTest::mouseRelease(tree_->viewport(), Qt::LeftButton, {}, RowCentre(2));
        const size_t steps = GetProjectDoc()->undo_list.size();
        Button(QDialogButtonBox::Cancel)->click();
        // A second close before the owner heard of the first.
        dialog_->reject();
        QCOMPARE(closings_, 0);
        QTRY_COMPARE(closings_, 1);
        QCoreApplication::processEvents();
        QCOMPARE(closings_, 1);
        QCOMPARE(Order(), (Names{"a", "b", "c"}));
        QCOMPARE(GetProjectDoc()->undo_list.size(), steps);
    }

    void escapeAndTheTitleBarCloseTellTheOwner() {
        QTest::keyClick(tree_, Qt::Key_Escape);
        QTRY_COMPARE(closings_, 1);

        dialog_ = new ZSortDialog(
            *list_, [this] { ++closings_; }, gui_.window.get());
        dialog_->show();
        QVERIFY(QTest::qWaitForWindowExposed(dialog_));
        QVERIFY(dialog_->close());
        QTRY_COMPARE(closings_, 2);
        QCOMPARE(Order(), (Names{"a", "b", "c"}));
    }

private:
    QStringList Rows() const {
        QStringList rows;
        for (int row = 0; row < tree_->topLevelItemCount(); ++row)
            rows << tree_->topLevelItem(row)->text(0);
        return rows;
    }
    QPoint RowCentre(int row) const {
        return tree_->visualItemRect(tree_->topLevelItem(row)).center();
    }
    QPushButton* Button(QDialogButtonBox::StandardButton which) const {
        return dialog_->findChild<QDialogButtonBox*>()->button(which);
    }

    GuiFixture gui_;
    std::unique_ptr<ZSortList> list_;
    ZSortDialog* dialog_ = nullptr;
    QTreeWidget* tree_ = nullptr;
    int closings_ = 0;
};

int main(int argc, char** argv) {
    return RunGuiTest<ZSortDialogTest>(argc, argv);
}

#include "zsort_dialog_test.moc"
