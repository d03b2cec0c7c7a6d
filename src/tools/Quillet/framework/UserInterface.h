// Everything that asks a person: message boxes, file pickers, the wait cursor.
//
// The Qt layer answers with real dialogs; tests and the command line use
// ScriptedUserInterface. No code outside the Qt implementation opens a dialog itself.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace framework {

enum class MessageIcon { None, Information, Warning, Stop, Question };
enum class MessageButtons { Ok, OkCancel, YesNo, YesNoCancel, RetryCancel };
enum class Answer { Ok, Cancel, Retry, Yes, No };

// The answer a box gives when the person just presses Enter.
Answer DefaultAnswer(MessageButtons buttons);

// A box whose buttons say what they do ("Recover", "Discard", "Later").
struct ChoiceRequest {
    std::string text;
    std::string caption;
    MessageIcon icon = MessageIcon::Question;
    std::vector<std::string> choices;
    size_t default_choice = 0;  // what Enter presses
    size_t escape_choice = 0;   // what closing the box answers
};

struct FileDialogRequest {
    std::string title;
    std::string filter;             // "QlT Files (*.qlt)"
    std::string default_extension;  // ".qlt"
    std::string initial_path;
};

struct Rgb {
    uint8_t red = 0;
    uint8_t green = 0;
    uint8_t blue = 0;
    friend bool operator==(const Rgb&, const Rgb&) = default;
};

class Form;

class UserInterface {
public:
    virtual ~UserInterface() = default;

    virtual Answer MessageBox(const std::string& text, const std::string& caption, MessageIcon icon,
                              MessageButtons buttons) = 0;
    // The index of the choice the person pressed.
    virtual size_t Choose(const ChoiceRequest& request) = 0;
    // The chosen path, or nothing when the person cancelled.
    virtual std::optional<std::string> AskOpenFileName(const FileDialogRequest& request) = 0;
    virtual std::optional<std::string> AskSaveFileName(const FileDialogRequest& request) = 0;
    // Several files at once; empty when the person cancelled.
    virtual std::vector<std::string> AskOpenFileNames(const FileDialogRequest& request) = 0;
    // A colour, starting from `initial`; nothing when the person cancelled.
    virtual std::optional<Rgb> AskColour(const Rgb& initial) = 0;
    // Shows the form's dialog until OK passes the form's checks (true) or the person
    // cancels (false).
    virtual bool RunForm(Form& form) = 0;

    virtual void BeginWaitCursor() = 0;
    virtual void EndWaitCursor() = 0;
};

// Shows the wait cursor for as long as it lives.
class WaitCursor {
public:
    explicit WaitCursor(UserInterface& ui) : ui_(ui) { ui_.BeginWaitCursor(); }
    ~WaitCursor() { ui_.EndWaitCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;

private:
    UserInterface& ui_;
};

}  // namespace framework
