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
    enum Id : int { kIdentifiers = 1013, kPaths = 1015, kSourceFile = 3 };

    static constexpr const char* kNothingChosenText =
        "Choose the pictures to import with \"Source File...\".";

    // What "Source File..." asks for.
    static framework::FileDialogRequest SourceRequest();

    ImportRegionForm();

    // How many files were chosen.
    size_t Count() const { return count_; }
    // Appends the chosen files to the paths and their names, without ".tga" in any case, to
    // the identifiers, each in double quotes and followed by a blank.
    void ChooseFiles(const std::vector<std::string>& chosen);

    // Entry `index` of the identifiers or paths; a box and nothing when the field has no such
    // entry.
    std::optional<std::string> Identifier(size_t index, framework::UserInterface& ui) const;
    std::optional<std::string> Path(size_t index, framework::UserInterface& ui) const;

private:
    bool OnPressed(int id, framework::UserInterface& ui) override;
    // Every identifier must be at most 32 characters and a valid identifier; each failure
    // is told, and any keeps the dialog open. So does OK before any file was chosen.
    bool OnOk(framework::UserInterface& ui) override;

    size_t count_ = 0;
};

// The `index`-th double-quoted string of `field`, or nothing.
std::optional<std::string> QuotedEntry(const std::string& field, size_t index);
