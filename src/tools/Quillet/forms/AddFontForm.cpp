#include "AddFontForm.h"

#include "NameCheck.h"
#include "model/identifier.h"
#include "model/qlt_types.h"

framework::FileDialogRequest AddFontForm::BrowseRequest(const std::string& folder) {
    return {"Font file", "font files (*.bgf *.ugf)", ".bgf", folder};
}

AddFontForm::AddFontForm(std::string browse_folder)
    : Form("Add Font"), browse_folder_(std::move(browse_folder)) {
    using framework::ControlKind;
    Add({.id = kFile,
         .kind = ControlKind::Edit,
         .label = "Font file:",
         .cell = {0, 0},
         .max_length = kFieldLength});
    Add({.id = kBrowse, .kind = ControlKind::Button, .label = "Browse", .cell = {0, 1}});
    Add({.id = kId,
         .kind = ControlKind::Edit,
         .label = "Font id:",
         .cell = {1, 0},
         .max_length = kFieldLength});
    Add({.id = kLineFeedHeight,
         .kind = ControlKind::Number,
         .label = "Line Feed Height:",
         .cell = {2, 0},
         .minimum = kLowestLineFeed,
         .maximum = kHighestLineFeed});
}

int AddFontForm::LineFeedHeight() const {
    int height = 0;
    framework::ParseDialogInt(Text(kLineFeedHeight), height);
    return height;
}

bool AddFontForm::OnPressed(int id, framework::UserInterface& ui) {
    if (id != kBrowse) return false;
    const std::optional<std::string> path = ui.AskOpenFileName(BrowseRequest(browse_folder_));
    if (!path) return false;
    // The limit is on what the person types: a chosen path is kept whole.
    Mutable(kFile).text = *path;
    // A font's id is made from its file name as a movie's is.
    Mutable(kId).text = FmvIdentifier(*path);
    return false;
}

bool AddFontForm::OnOk(framework::UserInterface& ui) {
    const std::string& id = FontId();
    if (id.size() > kMaxNameLength) {
        ui.MessageBox("More than 32 characters in font id:\n\n" + id, "font id is too long",
                      framework::MessageIcon::Warning, framework::MessageButtons::Ok);
        return false;
    }
    if (!CheckIdentifier(id, "Bad font id:" + id, ui)) return false;
    if (FontFile().empty()) {
        ui.MessageBox(kNoFileText, Caption(), framework::MessageIcon::Warning,
                      framework::MessageButtons::Ok);
        return false;
    }
    return true;
}
