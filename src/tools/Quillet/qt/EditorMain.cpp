#include "EditorMain.h"

#include <QApplication>

#include "AssertionDialog.h"
#include "Icons.h"
#include "MainWindow.h"
#include "QtProfileStore.h"
#include "QtUserInterface.h"
#include "RecoveryTimer.h"
#include "shell/ProjectRecovery.h"
#include "shell/QuilletApp.h"

int RunEditor(const std::vector<std::string>& arguments) {
    QApplication::setWindowIcon(ApplicationIcon());
    // The desktop finds the icon and name by the installed quillet.desktop.
    QGuiApplication::setDesktopFileName(QStringLiteral("quillet"));
    QtUserInterface ui;
    QtProfileStore profile;
    CQuilletApp app(ui, profile);
    MainWindow main_window(app, profile);
    // A failing assertion asks the person, over the main window, while the window stands.
    AssertionDialogScope assertion_dialog(&main_window);
    ui.SetParentWindow(&main_window);
    app.EnableRecovery(ProjectRecovery::DefaultFolder());
    RecoveryTimer recovery_timer(app, *app.Recovery());

    if (!app.InitInstance(arguments, &main_window)) return 1;
    const int result = QApplication::exec();
    app.ExitInstance();
    return result;
}
