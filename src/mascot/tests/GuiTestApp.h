#pragma once

#include <QGuiApplication>

namespace trotlet::mascot::testing {

// One application object for every suite in the executable: Qt allows only one. It is never
// destroyed, so no test's statics can outlive it at exit.
inline QGuiApplication& guiApp() {
    static int argc = 1;
    static char name[] = "mascot_tests";
    static char* argv[] = {name, nullptr};
    // Headless unless a test run asks for a real display.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    static QGuiApplication* app = new QGuiApplication(argc, argv);
    return *app;
}

}  // namespace trotlet::mascot::testing
