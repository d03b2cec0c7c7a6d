#include "ScriptedUserInterface.h"

#include "Form.h"

namespace framework {

Answer ScriptedUserInterface::MessageBox(const std::string& text, const std::string& caption,
                                         MessageIcon icon, MessageButtons buttons) {
    boxes.push_back({text, caption, icon, buttons});
    if (answers.empty()) return DefaultAnswer(buttons);
    const Answer answer = answers.front();
    answers.pop_front();
    return answer;
}

size_t ScriptedUserInterface::Choose(const ChoiceRequest& request) {
    choice_boxes.push_back(request);
    if (choices.empty()) return request.default_choice;
    const size_t choice = choices.front();
    choices.pop_front();
    return choice;
}

std::optional<std::string> ScriptedUserInterface::NextFileName(const FileDialogRequest& request) {
    file_requests.push_back(request);
    if (file_names.empty()) return std::nullopt;
    std::optional<std::string> name = std::move(file_names.front());
    file_names.pop_front();
    return name;
}

std::optional<std::string> ScriptedUserInterface::AskOpenFileName(
    const FileDialogRequest& request) {
    return NextFileName(request);
}

std::optional<std::string> ScriptedUserInterface::AskSaveFileName(
    const FileDialogRequest& request) {
    return NextFileName(request);
}

std::vector<std::string> ScriptedUserInterface::AskOpenFileNames(const FileDialogRequest& request) {
    file_requests.push_back(request);
    if (file_lists.empty()) return {};
    std::vector<std::string> names = std::move(file_lists.front());
    file_lists.pop_front();
    return names;
}

std::optional<Rgb> ScriptedUserInterface::AskColour(const Rgb& /*initial*/) {
    if (colours.empty()) return std::nullopt;
    const std::optional<Rgb> colour = colours.front();
    colours.pop_front();
    return colour;
}

bool ScriptedUserInterface::RunForm(Form& form) {
    while (!forms.empty()) {
        const std::function<bool(Form&)> person = std::move(forms.front());
        forms.pop_front();
        if (!person(form)) return false;
        if (form.Accept(*this)) return true;
    }
    return false;
}

}  // namespace framework
