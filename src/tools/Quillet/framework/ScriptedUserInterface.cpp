#include "ScriptedUserInterface.h"

namespace framework {

Answer ScriptedUserInterface::MessageBox(const std::string& text, const std::string& caption,
                                         MessageIcon icon, MessageButtons buttons) {
    boxes.push_back({text, caption, icon, buttons});
    if (answers.empty()) return DefaultAnswer(buttons);
    const Answer answer = answers.front();
    answers.pop_front();
    return answer;
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

}  // namespace framework
