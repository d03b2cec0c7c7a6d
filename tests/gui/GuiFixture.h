// What every test of the real windows starts from: the scripted person, settings of the
// test's own, the application and its main window, made anew for each test function.
#pragma once

#include <QApplication>
#include <QStandardPaths>
#include <QTest>
#include <memory>

#include "TempDir.h"
#include "framework/ScriptedUserInterface.h"
#include "qt/MainWindow.h"
#include "qt/QtProfileStore.h"

struct GuiFixture {
    // For a test class's init().
    void Make() {
        ui = std::make_unique<framework::ScriptedUserInterface>();
        profile = std::make_unique<QtProfileStore>();
        profile->Settings().clear();
        app = std::make_unique<CQuilletApp>(*ui, *profile);
        window = std::make_unique<MainWindow>(*app, *profile);
    }
    // For a test class's cleanup(): the window goes before the application it shows.
    void Destroy() {
        window.reset();
        app.reset();
    }

    TempDir dir;
    std::unique_ptr<framework::ScriptedUserInterface> ui;
    std::unique_ptr<QtProfileStore> profile;
    std::unique_ptr<CQuilletApp> app;
    std::unique_ptr<MainWindow> window;
};

// The main() of a test program of the real windows: offscreen as CTest sets it, with the
// settings in a folder of the program's own.
template <typename Test>
int RunGuiTest(int argc, char** argv) {
    TempDir settings;
    qputenv("XDG_CONFIG_HOME", QByteArray::fromStdString(settings.Path().string()));
    QStandardPaths::setTestModeEnabled(true);
    QApplication application(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}
