#include "QtUserInterface.h"

#include <algorithm>

#include <QApplication>
#include <QColorDialog>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>

#include "FormDialogs.h"
#include "QtText.h"
#include "model/QuilletDoc.h"

namespace {

using framework::Answer;
using framework::MessageButtons;
using framework::MessageIcon;

QMessageBox::Icon ToQtIcon(MessageIcon icon) {
    switch (icon) {
        case MessageIcon::Information:
            return QMessageBox::Information;
        case MessageIcon::Warning:
            return QMessageBox::Warning;
        case MessageIcon::Stop:
            return QMessageBox::Critical;
        case MessageIcon::Question:
            return QMessageBox::Question;
        case MessageIcon::None:
            break;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons ToQtButtons(MessageButtons buttons) {
    switch (buttons) {
        case MessageButtons::OkCancel:
            return QMessageBox::Ok | QMessageBox::Cancel;
        case MessageButtons::YesNo:
            return QMessageBox::Yes | QMessageBox::No;
        case MessageButtons::YesNoCancel:
            return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
        case MessageButtons::RetryCancel:
            return QMessageBox::Retry | QMessageBox::Cancel;
        case MessageButtons::Ok:
            break;
    }
    return QMessageBox::Ok;
}

Answer FromQtButton(int button) {
    switch (button) {
        case QMessageBox::Cancel:
            return Answer::Cancel;
        case QMessageBox::Retry:
            return Answer::Retry;
        case QMessageBox::Yes:
            return Answer::Yes;
        case QMessageBox::No:
            return Answer::No;
        default:
            return Answer::Ok;
    }
}

// The filter with each pattern in both cases: pictures and lists made on other systems
// often carry their extension in capitals.
QString FilterText(const framework::FileDialogRequest& request) {
    QString filter = ToQString(request.filter);
    static const QRegularExpression kPattern(QStringLiteral("\\*\\.[A-Za-z0-9]+"));
    QString both;
    qsizetype last = 0;
    for (const QRegularExpressionMatch& match : kPattern.globalMatch(filter)) {
        both += filter.mid(last, match.capturedStart() - last);
        const QString pattern = match.captured();
        both += pattern.toLower() + QLatin1Char(' ') + pattern.toUpper();
        last = match.capturedEnd();
    }
    both += filter.mid(last);
    return both + QStringLiteral(";;All Files (*)");
}

// Where a dialog starts: the folder the request names, else the open project's folder.
QString StartPath(const framework::FileDialogRequest& request) {
    const QString named = PathToQString(request.initial_path);
    if (!QFileInfo(named).path().isEmpty() && QFileInfo(named).path() != QStringLiteral("."))
        return named;
    const CQuilletDoc* project = GetProjectDoc();
    if (project == nullptr || project->GetPathName().empty()) return named;
    const QString folder = QFileInfo(PathToQString(project->GetPathName())).absolutePath();
    return named.isEmpty() ? folder : QDir(folder).filePath(named);
}

// A box must never fight a drag for the mouse.
void ReleaseMouse() {
    if (QWidget* grabber = QWidget::mouseGrabber()) grabber->releaseMouse();
}

}  // namespace

Answer QtUserInterface::MessageBox(const std::string& text, const std::string& caption,
                                   MessageIcon icon, MessageButtons buttons) {
    ReleaseMouse();
    QMessageBox box(ToQtIcon(icon), ToQString(caption), ToQString(text), ToQtButtons(buttons),
                    parent_);
    return FromQtButton(box.exec());
}

size_t QtUserInterface::Choose(const framework::ChoiceRequest& request) {
    ReleaseMouse();
    QMessageBox box(ToQtIcon(request.icon), ToQString(request.caption), ToQString(request.text),
                    QMessageBox::NoButton, parent_);
    std::vector<QPushButton*> buttons;
    for (const std::string& choice : request.choices)
        buttons.push_back(box.addButton(ToQString(choice), QMessageBox::ActionRole));
    if (request.default_choice < buttons.size())
        box.setDefaultButton(buttons[request.default_choice]);
    if (request.escape_choice < buttons.size()) box.setEscapeButton(buttons[request.escape_choice]);
    box.exec();
    const auto pressed = std::find(buttons.begin(), buttons.end(), box.clickedButton());
    return pressed == buttons.end() ? request.escape_choice
                                    : static_cast<size_t>(pressed - buttons.begin());
}

std::optional<std::string> QtUserInterface::AskOpenFileName(
    const framework::FileDialogRequest& request) {
    ReleaseMouse();
    const QString path = QFileDialog::getOpenFileName(parent_, ToQString(request.title),
                                                      StartPath(request), FilterText(request));
    if (path.isEmpty()) return std::nullopt;
    return PathFromQString(path);
}

std::optional<std::string> QtUserInterface::AskSaveFileName(
    const framework::FileDialogRequest& request) {
    ReleaseMouse();
    QString path = QFileDialog::getSaveFileName(parent_, ToQString(request.title),
                                                StartPath(request), FilterText(request));
    if (path.isEmpty()) return std::nullopt;
    if (QFileInfo(path).suffix().isEmpty()) {
        // The dialog asked about the name as typed; the name with its extension is asked
        // about here.
        path += ToQString(request.default_extension);
        if (QFileInfo::exists(path) &&
            QMessageBox::question(parent_, ToQString(request.title),
                                  QStringLiteral("%1 already exists.\nDo you want to replace it?")
                                      .arg(QFileInfo(path).fileName())) != QMessageBox::Yes)
            return std::nullopt;
    }
    return PathFromQString(path);
}

std::vector<std::string> QtUserInterface::AskOpenFileNames(
    const framework::FileDialogRequest& request) {
    ReleaseMouse();
    std::vector<std::string> paths;
    for (const QString& path : QFileDialog::getOpenFileNames(
             parent_, ToQString(request.title), StartPath(request), FilterText(request)))
        paths.push_back(PathFromQString(path));
    return paths;
}

std::optional<framework::Rgb> QtUserInterface::AskColour(const framework::Rgb& initial) {
    ReleaseMouse();
    const QColor chosen =
        QColorDialog::getColor(QColor(initial.red, initial.green, initial.blue), parent_);
    if (!chosen.isValid()) return std::nullopt;
    return framework::Rgb{static_cast<uint8_t>(chosen.red()), static_cast<uint8_t>(chosen.green()),
                          static_cast<uint8_t>(chosen.blue())};
}

bool QtUserInterface::RunForm(framework::Form& form) {
    ReleaseMouse();
    return RunFormDialog(form, *this, parent_);
}

void QtUserInterface::BeginWaitCursor() {
    QApplication::setOverrideCursor(Qt::WaitCursor);
}

void QtUserInterface::EndWaitCursor() {
    QApplication::restoreOverrideCursor();
}
