#include "FormDialogs.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "QtText.h"
#include "forms/ImportRegionForm.h"
#include "forms/PageChooserForm.h"
#include "forms/TextureForm.h"

namespace {

QDialogButtonBox* OkCancel(QDialog& dialog) {
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    return buttons;
}

// Radio buttons in a box, one per (id, text); the button whose id is `checked` is on, and
// `picked` hears of each choice.
template <typename Picked>
QGroupBox* RadioBox(const QString& title, const std::vector<std::pair<int, QString>>& buttons,
                    int checked, Picked picked) {
    auto* box = new QGroupBox(title);
    auto* layout = new QVBoxLayout(box);
    auto* group = new QButtonGroup(box);
    for (const auto& [id, text] : buttons) {
        auto* radio = new QRadioButton(text);
        radio->setChecked(id == checked);
        group->addButton(radio, id);
        layout->addWidget(radio);
    }
    QObject::connect(group, &QButtonGroup::idClicked, box, picked);
    return box;
}

}  // namespace

bool RunFormDialog(framework::Form& form, framework::UserInterface& ui, QWidget* parent) {
    if (auto* texture = dynamic_cast<TextureForm*>(&form))
        return TextureDialog(*texture, ui, parent).exec() == QDialog::Accepted;
    if (auto* import = dynamic_cast<ImportRegionForm*>(&form))
        return ImportRegionDialog(*import, ui, parent).exec() == QDialog::Accepted;
    if (auto* chooser = dynamic_cast<PageChooserForm*>(&form))
        return PageChooserDialog(*chooser, parent).exec() == QDialog::Accepted;
    return false;
}

TextureDialog::TextureDialog(TextureForm& form, framework::UserInterface& ui, QWidget* parent)
    : QDialog(parent), form_(form), ui_(ui) {
    setWindowTitle(ToQString(form.Title()));
    std::vector<std::pair<int, QString>> sizes;
    for (const TextureForm::SizeButton& button : TextureForm::SizeButtons())
        sizes.emplace_back(button.control_id, QString::fromLatin1(button.text));
    width_ = new QLineEdit(QString::number(form.data.width));
    height_ = new QLineEdit(QString::number(form.data.height));
    for (QLineEdit* edit : {width_, height_})
        edit->setValidator(new QIntValidator(0, 65535, edit));
    auto* size_box =
        RadioBox(tr("Size"), sizes, static_cast<int>(form.data.size_choice), [this](int id) {
            form_.SelectSize(static_cast<uint32_t>(id));
            width_->setText(QString::number(form_.data.width));
            height_->setText(QString::number(form_.data.height));
        });
    auto* user_size = new QFormLayout;
    user_size->addRow(tr("Width:"), width_);
    user_size->addRow(tr("Height:"), height_);
    size_box->layout()->addItem(user_size);

    auto* depth_box =
        RadioBox(tr("Bit depth"), {{16, QStringLiteral("16")}, {32, QStringLiteral("32")}},
                 static_cast<int>(form.data.bit_depth),
                 [this](int id) { form_.data.bit_depth = static_cast<uint32_t>(id); });
    auto* alpha = new QCheckBox(tr("Alpha"));
    alpha->setChecked(form.data.alpha);
    connect(alpha, &QCheckBox::toggled, this, [this](bool on) { form_.data.alpha = on; });

    auto* layout = new QGridLayout(this);
    layout->addWidget(size_box, 0, 0, 2, 1);
    layout->addWidget(depth_box, 0, 1);
    layout->addWidget(alpha, 1, 1);
    layout->addWidget(OkCancel(*this), 2, 0, 1, 2);
}

void TextureDialog::accept() {
    // The size the person typed counts with "User"; a square's button sets it itself.
    if (form_.data.size_choice == TextureDialogData::kUserSize) {
        form_.data.width = static_cast<uint16_t>(width_->text().toUInt());
        form_.data.height = static_cast<uint16_t>(height_->text().toUInt());
    }
    if (form_.OnOk(ui_)) QDialog::accept();
}

ImportRegionDialog::ImportRegionDialog(ImportRegionForm& form, framework::UserInterface& ui,
                                       QWidget* parent)
    : QDialog(parent), form_(form), ui_(ui) {
    setWindowTitle(tr("Import Region"));
    identifiers_ = new QLineEdit(ToQString(form.identifiers));
    file_names_ = new QLineEdit(ToQString(form.file_names));
    file_names_->setReadOnly(true);
    auto* source = new QPushButton(tr("Source File..."));
    connect(source, &QPushButton::clicked, this, &ImportRegionDialog::ChooseFiles);
    auto* layout = new QFormLayout(this);
    layout->addRow(tr("Region identifier:"), identifiers_);
    layout->addRow(source, file_names_);
    layout->addRow(OkCancel(*this));
    setMinimumWidth(480);
}

void ImportRegionDialog::ChooseFiles() {
    form_.ChooseFiles(ui_.AskOpenFileNames(ImportRegionForm::SourceRequest()));
    identifiers_->setText(ToQString(form_.identifiers));
    file_names_->setText(ToQString(form_.file_names));
}

void ImportRegionDialog::accept() {
    form_.identifiers = FromQString(identifiers_->text());
    if (form_.OnOk(ui_)) QDialog::accept();
}

PageChooserDialog::PageChooserDialog(PageChooserForm& form, QWidget* parent) : QDialog(parent) {
    setWindowTitle(QString::fromLatin1(PageChooserForm::kTitle));
    auto* tree = new QTreeWidget;
    tree->setHeaderHidden(true);
    tree->setRootIsDecorated(false);
    for (const std::string& page : form.pages)
        new QTreeWidgetItem(tree, QStringList(ToQString(page)));
    connect(tree, &QTreeWidget::currentItemChanged, this, [&form](QTreeWidgetItem* item) {
        form.chosen = item != nullptr ? FromQString(item->text(0)) : std::string();
    });
    connect(tree, &QTreeWidget::itemDoubleClicked, this, &QDialog::accept);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tree);
    layout->addWidget(OkCancel(*this));
    resize(420, 320);
}
