// The dialogs bound to the forms: each shows its form's fields, writes them back on OK and
// closes only when the form's checks pass.
#pragma once

#include <QDialog>

#include "framework/UserInterface.h"

class ImportRegionForm;
class PageChooserForm;
class QLineEdit;
class TextureForm;

// Runs the dialog of `form`'s kind over `parent`; false when cancelled, or for a kind of form
// that has no dialog.
bool RunFormDialog(framework::Form& form, framework::UserInterface& ui, QWidget* parent);

// "Create Texture" or "Edit Texture".
class TextureDialog : public QDialog {
    Q_OBJECT
public:
    TextureDialog(TextureForm& form, framework::UserInterface& ui, QWidget* parent);
    void accept() override;

private:
    TextureForm& form_;
    framework::UserInterface& ui_;
    QLineEdit* width_ = nullptr;
    QLineEdit* height_ = nullptr;
};

// "Import Region".
class ImportRegionDialog : public QDialog {
    Q_OBJECT
public:
    ImportRegionDialog(ImportRegionForm& form, framework::UserInterface& ui, QWidget* parent);
    void accept() override;

private:
    void ChooseFiles();

    ImportRegionForm& form_;
    framework::UserInterface& ui_;
    QLineEdit* identifiers_ = nullptr;
    QLineEdit* file_names_ = nullptr;
};

// "All texture pages".
class PageChooserDialog : public QDialog {
    Q_OBJECT
public:
    PageChooserDialog(PageChooserForm& form, QWidget* parent);
};
