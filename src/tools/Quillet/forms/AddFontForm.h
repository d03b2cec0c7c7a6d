// The Add Font dialog: a font file of the game, the id that pieces use for it, and its line
// feed height.
#pragma once

#include <string>

#include "framework/Form.h"
#include "framework/UserInterface.h"

class AddFontForm : public framework::Form {
public:
    enum Id : int { kFile = 1063, kBrowse = 1064, kId = 1067, kLineFeedHeight = 1065 };

    static constexpr size_t kFieldLength = 256;
    static constexpr int kLowestLineFeed = 1;
    static constexpr int kHighestLineFeed = 1000;
    static constexpr const char* kNoFileText = "Choose the font file with \"Browse\".";

    // What "Browse" asks for, starting in `folder`.
    static framework::FileDialogRequest BrowseRequest(const std::string& folder);

    // "Browse" starts in `browse_folder` (the project's folder; empty for the current one).
    explicit AddFontForm(std::string browse_folder = {});

    // What OK let through.
    const std::string& FontFile() const { return Text(kFile); }
    const std::string& FontId() const { return Text(kId); }
    // Within 1 to 1000 after OK.
    int LineFeedHeight() const;

private:
    // "Browse" sets the file and proposes its name, dots made underscores, as the id.
    bool OnPressed(int id, framework::UserInterface& ui) override;
    bool OnOk(framework::UserInterface& ui) override;

    std::string browse_folder_;
};
