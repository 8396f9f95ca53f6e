#pragma once

#include <QApplication>

namespace trotlet::ui {

// The one QApplication of the ui tests, offscreen. Never destroyed: Qt's input devices must
// outlive it, and they are torn down at exit.
inline QApplication& application() {
    static int argc = 1;
    static char name[] = "ui_tests";
    static char* argv[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static auto* app = new QApplication(argc, argv);
    return *app;
}

}  // namespace trotlet::ui
