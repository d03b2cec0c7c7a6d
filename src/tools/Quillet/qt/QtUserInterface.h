// The person at the desk: real message boxes and file dialogs over the main window.
#pragma once

#include <QPointer>
#include <QWidget>

#include "framework/UserInterface.h"

class QtUserInterface : public framework::UserInterface {
public:
    void SetParentWindow(QWidget* parent) { parent_ = parent; }

    framework::Answer MessageBox(const std::string& text, const std::string& caption,
                                 framework::MessageIcon icon,
                                 framework::MessageButtons buttons) override;
    size_t Choose(const framework::ChoiceRequest& request) override;
    std::optional<std::string> AskOpenFileName(
        const framework::FileDialogRequest& request) override;
    std::optional<std::string> AskSaveFileName(
        const framework::FileDialogRequest& request) override;
    std::vector<std::string> AskOpenFileNames(const framework::FileDialogRequest& request) override;
    std::optional<framework::Rgb> AskColour(const framework::Rgb& initial) override;
    bool RunForm(framework::Form& form) override;
    void BeginWaitCursor() override;
    void EndWaitCursor() override;

private:
    QPointer<QWidget> parent_;
};
