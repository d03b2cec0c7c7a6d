#include "ImportRegionForm.h"

#include "NameCheck.h"
#include "model/identifier.h"

namespace {

std::string Quoted(const std::string& text) {
    return "\"" + text + "\" ";
}

// The file name of a path as either system writes it.
std::string FileNameOf(const std::string& path) {
    return path.substr(path.find_last_of("/\\") + 1);
}

char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

// Removes every ".tga", whatever its case.
void RemoveTgaExtensions(std::string& text) {
    static constexpr std::string_view kExtension = ".tga";
    for (size_t at = 0; at + kExtension.size() <= text.size();) {
        bool match = true;
        for (size_t i = 0; i < kExtension.size() && match; ++i)
            match = Lower(text[at + i]) == kExtension[i];
        if (match)
            text.erase(at, kExtension.size());
        else
            ++at;
    }
}

std::optional<std::string> EntryOrBox(const std::string& field, size_t index,
                                      framework::UserInterface& ui) {
    std::optional<std::string> entry = QuotedEntry(field, index);
    if (!entry)
        ui.MessageBox("Region index out of range - See Tobin", "Invalid request",
                      framework::MessageIcon::Warning, framework::MessageButtons::Ok);
    return entry;
}

}  // namespace

std::optional<std::string> QuotedEntry(const std::string& field, size_t index) {
    size_t open = field.find('"');
    for (size_t skipped = 0; open != std::string::npos; ++skipped) {
        const size_t close = field.find('"', open + 1);
        if (close == std::string::npos) return std::nullopt;
        if (skipped == index) return field.substr(open + 1, close - open - 1);
        open = field.find('"', close + 1);
    }
    return std::nullopt;
}

framework::FileDialogRequest ImportRegionForm::SourceRequest() {
    return {"Source File", "TGA Files (*.tga)", ".tga", "*.tga"};
}

ImportRegionForm::ImportRegionForm() : Form("Import Region") {
    using framework::ControlKind;
    Add({.id = kIdentifiers,
         .kind = ControlKind::Edit,
         .label = "Region identifier:",
         .cell = {0, 0, 1, 2}});
    Add({.id = kSourceFile,
         .kind = ControlKind::Button,
         .label = "Source File...",
         .cell = {1, 0}});
    Add({.id = kPaths, .kind = ControlKind::ReadOnly, .cell = {1, 1}});
}

void ImportRegionForm::ChooseFiles(const std::vector<std::string>& chosen) {
    std::string& paths = Mutable(kPaths).text;
    std::string& identifiers = Mutable(kIdentifiers).text;
    for (const std::string& path : chosen) {
        paths += Quoted(path);
        identifiers += Quoted(FileNameOf(path));
    }
    count_ += chosen.size();
    RemoveTgaExtensions(identifiers);
}

bool ImportRegionForm::OnPressed(int id, framework::UserInterface& ui) {
    if (id != kSourceFile) return false;
    const std::vector<std::string> chosen = ui.AskOpenFileNames(SourceRequest());
    // The lists hold each name in double quotes: a name holding one would split its entry.
    for (const std::string& path : chosen) {
        if (path.find('"') == std::string::npos) continue;
        ui.MessageBox("A file name may not hold the character \":\n\n" + path, "Error",
                      framework::MessageIcon::Warning, framework::MessageButtons::Ok);
        return false;
    }
    ChooseFiles(chosen);
    return false;
}

std::optional<std::string> ImportRegionForm::Identifier(size_t index,
                                                        framework::UserInterface& ui) const {
    return EntryOrBox(Text(kIdentifiers), index, ui);
}

std::optional<std::string> ImportRegionForm::Path(size_t index,
                                                  framework::UserInterface& ui) const {
    return EntryOrBox(Text(kPaths), index, ui);
}

bool ImportRegionForm::OnOk(framework::UserInterface& ui) {
    if (count_ == 0) {
        ui.MessageBox(kNothingChosenText, Caption(), framework::MessageIcon::Warning,
                      framework::MessageButtons::Ok);
        return false;
    }
    bool passed = true;
    for (size_t index = 0; index < count_; ++index) {
        const std::optional<std::string> identifier = Identifier(index, ui);
        if (!identifier) {
            passed = false;
        } else if (identifier->size() > kMaxNameLength) {
            ui.MessageBox("More than 32 characters in region:\n\n" + *identifier,
                          "Region name too long", framework::MessageIcon::Warning,
                          framework::MessageButtons::Ok);
            passed = false;
        } else if (!CheckIdentifier(*identifier, "Bad Region Name:" + *identifier, ui)) {
            passed = false;
        }
    }
    return passed;
}
