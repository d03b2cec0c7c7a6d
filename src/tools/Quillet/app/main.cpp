// quillet: the editor.
#include <QApplication>
#include <clocale>
#include <string>
#include <vector>

#include "qt/EditorMain.h"

int main(int argc, char** argv) {
    QApplication qt_application(argc, argv);
    // Numbers in files are written with "%.2f" and read with "%d": never with a comma.
    std::setlocale(LC_NUMERIC, "C");
    return RunEditor(std::vector<std::string>(argv + 1, argv + argc));
}
