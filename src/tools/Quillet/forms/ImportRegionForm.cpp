#include "ImportRegionForm.h"

#include "model/identifier.h"

namespace {

std::string Quoted(const std::string& text) {
    return "\"" + text + "\", ";
}

void RemoveAll(std::string& text, const std::string& part) {
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at))
        text.erase(at, part.size());
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

void ImportRegionForm::ChooseFiles(const std::vector<std::string>& chosen) {
    for (const std::string& path : chosen) {
        paths += Quoted(path);
        file_names += Quoted(path.substr(path.find_last_of('/') + 1));
    }
    count += chosen.size();
    identifiers = file_names;
    RemoveAll(identifiers, ".tga");
}

std::optional<std::string> ImportRegionForm::Identifier(size_t index,
                                                        framework::UserInterface& ui) const {
    return EntryOrBox(identifiers, index, ui);
}

std::optional<std::string> ImportRegionForm::Path(size_t index,
                                                  framework::UserInterface& ui) const {
    return EntryOrBox(paths, index, ui);
}

bool ImportRegionForm::OnOk(framework::UserInterface& ui) {
    bool passed = true;
    for (size_t index = 0; index < count; ++index) {
        const std::optional<std::string> identifier = Identifier(index, ui);
        if (!identifier) {
            passed = false;
        } else if (identifier->size() > kMaxNameLength) {
            ui.MessageBox("More than 32 characters in region:\n\n" + *identifier,
                          "Region name too long", framework::MessageIcon::Warning,
                          framework::MessageButtons::Ok);
            passed = false;
        } else if (!IsValidIdentifier(*identifier)) {
            ui.MessageBox(kInvalidIdentifierText, "Bad Region Name:" + *identifier,
                          framework::MessageIcon::Warning, framework::MessageButtons::Ok);
            passed = false;
        }
    }
    return passed;
}
