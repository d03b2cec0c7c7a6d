// quillet: the editor.
#include <QApplication>
#include <clocale>
#include <string>
#include <vector>

#include "qt/MainWindow.h"
#include "qt/QtProfileStore.h"
#include "qt/QtUserInterface.h"
#include "shell/QuilletApp.h"

int main(int argc, char** argv) {
    QApplication qt_application(argc, argv);
    // Numbers in files are written with "%.2f" and read with "%d": never with a comma.
    std::setlocale(LC_NUMERIC, "C");

    QtUserInterface ui;
    QtProfileStore profile;
    CQuilletApp app(ui, profile);
    MainWindow main_window(app, profile);
    ui.SetParentWindow(&main_window);

    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (!app.InitInstance(arguments, &main_window)) return 1;
    const int result = QApplication::exec();
    app.ExitInstance();
    return result;
}
