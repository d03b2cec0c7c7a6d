// The Import Region dialog: pictures chosen as a list of quoted paths, and the region
// identifiers for them as a list of quoted names that the person may edit.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "framework/Form.h"
#include "framework/UserInterface.h"

class ImportRegionForm : public framework::Form {
public:
    // What "Source File..." asks for.
    static framework::FileDialogRequest SourceRequest();

    std::string identifiers;  // "Region identifier:", the entries in the form "a", "b",
    std::string file_names;   // the chosen files' names, shown read-only
    std::string paths;        // the chosen files, in the same form
    size_t count = 0;         // how many files were chosen

    // Takes the chosen files: their paths, their names, and as identifiers the names without
    // ".tga".
    void ChooseFiles(const std::vector<std::string>& chosen);

    // Entry `index` of the identifiers or paths; a box and nothing when the field has no such
    // entry.
    std::optional<std::string> Identifier(size_t index, framework::UserInterface& ui) const;
    std::optional<std::string> Path(size_t index, framework::UserInterface& ui) const;

    // Every identifier must be at most 32 characters and a valid identifier; each failure
    // is told, and any keeps the dialog open.
    bool OnOk(framework::UserInterface& ui) override;
};

// The `index`-th double-quoted string of `field`, or nothing.
std::optional<std::string> QuotedEntry(const std::string& field, size_t index);
