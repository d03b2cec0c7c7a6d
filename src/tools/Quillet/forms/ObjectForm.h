// What the dialogs that make UI objects share: the project they pick from, the name field
// and its checks, and how they start, as a new object, on an object to edit, or as a part
// of a slider whose name is fixed.
//
// A dialog never changes the project: after OK its caller takes the object from Build().
#pragma once

#include <memory>
#include <string>

#include "framework/Form.h"
#include "model/ui_objects.h"

class CQuilletDoc;

struct ObjectFormStart {
    // The object to edit, read only while the dialog is made; null for a new object.
    const UI_OBJECT* existing = nullptr;
    // A name the person cannot change (the parts of a slider); empty for one of their own.
    std::string fixed_name{};
};

class ObjectForm : public framework::Form {
public:
    static constexpr const char* kNameTakenText =
        "Object name is not unique.  Please enter a different name";

    // A dialog's name field: its id, its label and the caption of a refusal.
    struct NameField {
        int id;
        const char* label;
        const char* bad_caption;  // of the box for a name that is not an identifier
    };

    // The object the fields make, for the caller after OK; null when they make none.
    virtual std::unique_ptr<UI_OBJECT> Build() const = 0;

    // Started on an existing object: the name is read-only and the kind fixed.
    bool Editing() const { return editing_; }
    const std::string& Name() const { return Text(name_.id); }

protected:
    // Titled `edit_caption` when started on an existing object, else `add_caption`. The
    // project must outlive the dialog.
    ObjectForm(const CQuilletDoc& project, const ObjectFormStart& start, NameField name,
               const char* add_caption, const char* edit_caption);

    // Adds the name field: read-only with the object's or the fixed name, else an edit of
    // at most 32 characters.
    void AddNameField(framework::Cell cell);
    // A region picked while the object has no name yet gives it one.
    void ProposeName(const std::string& text);
    // OK's checks of the name: a valid identifier and, for an object new to the project, a
    // name that no object has. False after the box that says why.
    bool CheckName(framework::UserInterface& ui) const;

    const CQuilletDoc& Project() const { return *project_; }

private:
    const CQuilletDoc* project_;
    NameField name_;
    std::string start_name_;
    bool editing_;
    bool name_fixed_;
};
