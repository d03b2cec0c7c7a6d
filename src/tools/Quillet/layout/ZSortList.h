// The z sort dialog's logic: the names of a page's pieces in list order, lowest first, as
// the dialog's rows, reordered by dragging rows, and the page's list rebuilt in that order.
//
// Failure style: names the page no longer has are reported ("Piece not found") and skipped.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

class ZSortList {
public:
    ZSortList(std::string page_name, std::vector<std::string> names)
        : page_name_(std::move(page_name)), names_(std::move(names)) {}

    const std::string& PageName() const { return page_name_; }
    const std::vector<std::string>& Names() const { return names_; }

    // Row `source` dropped on row `target`: before it when the target lies above the source,
    // after it otherwise, so the moved row ends at index `target`. A drop on itself and a row
    // index past the end change nothing.
    void MoveRow(size_t source, size_t target);

    // OK: the page's pieces take the rows' order as one change with one undo step, and every
    // open window of the page lets go of what it held of the old pieces.
    void Apply() const;

private:
    std::string page_name_;
    std::vector<std::string> names_;
};
