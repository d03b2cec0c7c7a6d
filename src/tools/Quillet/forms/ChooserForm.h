// The chooser: one tree, from which the person picks a region of a texture page, or in paths
// mode a folder of texture pages or of movies. The project makes one of each mode and uses
// it again; the tree is filled from the project each time it is shown.
#pragma once

#include <string>

#include "framework/Form.h"

class CQuilletDoc;

class ChooserForm : public framework::Form {
public:
    enum Id : int { kTree = 1000 };
    enum class Mode { Regions, Paths };

    // The project must outlive the chooser.
    ChooserForm(const CQuilletDoc& project, Mode mode);

    // Empties the picks, fills the tree from the project as it stands and shows the dialog.
    // True on OK with a pick made, given back as `first` (a page's path; in paths mode
    // "Textures" or "FMVs") and `second` (a region; a folder); false, with both untouched,
    // otherwise.
    bool Choose(framework::UserInterface& ui, std::string& first, std::string& second);

    const std::string& FirstPick() const { return first_pick_; }
    const std::string& SecondPick() const { return second_pick_; }

private:
    void Fill();
    // A leaf sets the picks; any other item empties them.
    void OnChanged(int id, framework::UserInterface& ui) override;
    // A double click with a pick made is OK.
    bool OnPressed(int id, framework::UserInterface& ui) override;

    const CQuilletDoc* project_;
    Mode mode_;
    std::string first_pick_;
    std::string second_pick_;
};
