// What the Add Art and Add Scroll Box dialogs share: an object of one region, picked in a
// tree with the "->" button or a double click on a leaf, and shown in two read-only fields.
#pragma once

#include "ObjectForm.h"

class SingleRegionForm : public ObjectForm {
public:
    // What sets one dialog apart from the other.
    struct Kind {
        int tree;
        int pick;  // the "->" button
        int region;
        int page;
        NameField name_field;
        const char* add_caption;
        const char* edit_caption;
        const char* slot;  // the region's name in the object
        // Movies may stand for a region: the tree has a root "FMVs" beside "Textures".
        bool movies;
        std::unique_ptr<UI_REGION_OBJECT> (*make)(std::string name);
    };

    // The region and the page (or movie file) of the object; empty until one is picked.
    const std::string& RegionName() const { return Text(kind_->region); }
    const std::string& PageName() const { return Text(kind_->page); }

    // The object of the name with its one region; null while region or page is empty.
    std::unique_ptr<UI_OBJECT> Build() const override;

protected:
    // Started on an object, its first region is shown. `kind` is a constant of the dialog.
    SingleRegionForm(const CQuilletDoc& project, const ObjectFormStart& start, const Kind& kind);

private:
    bool OnPressed(int id, framework::UserInterface& ui) override;
    bool OnOk(framework::UserInterface& ui) override { return CheckName(ui); }

    const Kind* kind_;
};
