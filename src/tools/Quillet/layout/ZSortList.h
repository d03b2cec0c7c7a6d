// The z sort dialog's logic: the names of a page's pieces in list order, lowest first, as
// the dialog's rows, reordered by dragging rows, and the page's list rebuilt in that order.
#pragma once

#include <string>
#include <vector>

class ZSortList {
public:
    ZSortList(std::string page_name, std::vector<std::string> names)
        : page_name_(std::move(page_name)), names_(std::move(names)) {}

    const std::string& PageName() const { return page_name_; }
    const std::vector<std::string>& Names() const { return names_; }

private:
    std::string page_name_;
    std::vector<std::string> names_;
};
