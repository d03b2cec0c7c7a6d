// "Z Sort": the modeless dialog over a page's pieces, one row per name, lowest first. A row
// is dragged onto another with the mouse; OK gives the page the rows' order.
//
// The dialog never deletes itself: however it closes, `on_closed` runs once afterwards,
// from the event loop, so that its owner may delete the dialog and the list then.
#pragma once

#include <QDialog>
#include <QIcon>
#include <cstddef>
#include <functional>
#include <optional>

class QMouseEvent;
class QTreeWidget;
class ZSortList;

class ZSortDialog : public QDialog {
    Q_OBJECT
public:
    // `list` must outlive the dialog.
    ZSortDialog(ZSortList& list, std::function<void()> on_closed, QWidget* parent);

    void accept() override;
    // Every way of closing ends here: OK, Cancel, Esc and the title bar's close.
    void done(int result) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Fill(std::optional<size_t> selected_row);
    std::optional<size_t> RowAt(const QMouseEvent& event) const;
    void BeginDrag(const QMouseEvent& event);
    void DragOver(const QMouseEvent& event);
    void Drop();
    void EndDrag();

    ZSortList& list_;
    std::function<void()> on_closed_;
    bool closed_ = false;
    QTreeWidget* tree_ = nullptr;
    QIcon row_icon_;
    std::optional<size_t> drag_row_;
    // The last row the pointer passed over; the drop lands there.
    std::optional<size_t> drop_row_;
};
