// A UserInterface that answers from queues and records every box it was shown.
// It stands for the person in tests and in the command-line tool.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "UserInterface.h"

namespace framework {

struct RecordedBox {
    std::string text;
    std::string caption;
    MessageIcon icon;
    MessageButtons buttons;
};

class ScriptedUserInterface : public UserInterface {
public:
    // Answers for the next boxes, in order. With the queue empty a box gets its default
    // answer, as if Enter was pressed.
    std::deque<Answer> answers;
    // Answers for the next choice boxes, as indexes. Empty queue: the default choice.
    std::deque<size_t> choices;
    // Answers for the next file pickers; nothing means Cancel. Empty queue: Cancel.
    std::deque<std::optional<std::string>> file_names;
    // Answers for the next multiple-file pickers; an empty list means Cancel.
    std::deque<std::vector<std::string>> file_lists;
    // Answers for the next colour pickers; nothing means Cancel. Empty queue: Cancel.
    std::deque<std::optional<Rgb>> colours;
    // The person at the next dialogs: each entry fills the form's fields and answers true for
    // OK, false for Cancel. A dialog whose OK fails its checks takes the next entry, as the
    // dialog stays open; with the queue empty it is cancelled.
    std::deque<std::function<bool(Form&)>> forms;

    std::vector<RecordedBox> boxes;
    std::vector<ChoiceRequest> choice_boxes;
    std::vector<FileDialogRequest> file_requests;
    int wait_cursor_depth = 0;

    Answer MessageBox(const std::string& text, const std::string& caption, MessageIcon icon,
                      MessageButtons buttons) override;
    size_t Choose(const ChoiceRequest& request) override;
    std::optional<std::string> AskOpenFileName(const FileDialogRequest& request) override;
    std::optional<std::string> AskSaveFileName(const FileDialogRequest& request) override;
    std::vector<std::string> AskOpenFileNames(const FileDialogRequest& request) override;
    std::optional<Rgb> AskColour(const Rgb& initial) override;
    bool RunForm(Form& form) override;
    void BeginWaitCursor() override { ++wait_cursor_depth; }
    void EndWaitCursor() override { --wait_cursor_depth; }

private:
    std::optional<std::string> NextFileName(const FileDialogRequest& request);
};

}  // namespace framework
