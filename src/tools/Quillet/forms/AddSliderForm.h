// The Add Slider dialog, titled Edit Slider when started on an existing slider. A slider is
// made of four parts, each made in a dialog of its own that lives as long as this one: an
// art object named "Art" and three buttons named "Thumb", "Decrease" and "Increase".
#pragma once

#include "AddArtForm.h"
#include "AddButtonForm.h"
#include "ObjectForm.h"

class AddSliderForm : public ObjectForm {
public:
    enum Id : int {
        kName = 1027,
        kCreateArt = 1033,
        kCreateThumb = 1023,
        kCreateDecrease = 1030,
        kCreateIncrease = 1031,
        kHorizontal = 1028,
        kVertical = 1029,
    };

    // A new horizontal slider; or, started on a slider, its name and orientation fixed and
    // each part's dialog started on that part.
    explicit AddSliderForm(const CQuilletDoc& project, const ObjectFormStart& start = {});

    // The slider of the name with its parts in the order art, thumb, decrease, increase,
    // laid out. Null when the art has no region, or when a button has no style.
    std::unique_ptr<UI_OBJECT> Build() const override;

    // The parts' dialogs as they stand.
    const AddArtForm& Art() const { return art_; }
    const AddButtonForm& Thumb() const { return thumb_; }
    const AddButtonForm& Decrease() const { return decrease_; }
    const AddButtonForm& Increase() const { return increase_; }

private:
    // Each "Create ..." button runs its part's dialog; a cancelled dialog keeps what the part
    // had before.
    bool OnPressed(int id, framework::UserInterface& ui) override;
    bool OnOk(framework::UserInterface& ui) override { return CheckName(ui); }

    AddArtForm art_;
    AddButtonForm thumb_;
    AddButtonForm decrease_;
    AddButtonForm increase_;
};
