// The Add Button dialog, titled Edit Button when started on an existing button: a tree of
// the regions that texture pages in folders offer, and one row for each state of the
// button that takes the region picked there.
#pragma once

#include "ObjectForm.h"

class AddButtonForm : public ObjectForm {
public:
    enum Id : int {
        kRegions = 1024,
        kName = 1017,
        kEnabled = 3,
        kEnabledRegion = 1018,
        kEnabledPage = 1025,
        kHighlighted = 5,
        kHighlightedRegion = 1019,
        kHighlightedPage = 1026,
        kSelected = 4,
        kSelectedRegion = 1020,
        kSelectedPage = 1027,
        kChecked = 6,
        kCheckedRegion = 1021,
        kCheckedPage = 1028,
        kPush = 1022,
        kToggle = 1023,
    };

    static constexpr const char* kUnknownTypeText = "Unknown button type";

    // A new push button; or, started on a button, its name and style fixed and each state's
    // row loaded from the region of that state. A state the button lacks is reported (the
    // row stays empty).
    explicit AddButtonForm(const CQuilletDoc& project, const ObjectFormStart& start = {});

    // A push or toggle button of the name with the rows' regions in the order enabled,
    // highlighted, selected, and checked for a toggle button; an empty row gives a region of
    // empty names. Null when neither style is chosen.
    std::unique_ptr<UI_OBJECT> Build() const override;

private:
    // "Push Button" takes the Checked row away, "Toggle Button" gives it back.
    void ShowStyle();
    void OnChanged(int id, framework::UserInterface& ui) override;
    // A state's button takes the picked region into its row.
    bool OnPressed(int id, framework::UserInterface& ui) override;
    bool OnOk(framework::UserInterface& ui) override;
};
