#include "app/qt/Application.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include <QApplication>
#include <QCoreApplication>
#include <QSystemTrayIcon>
#include <QTimer>

#include "app/DesktopTheme.h"
#include "app/qt/DisplayCheck.h"
#include "app/qt/HeadlessModes.h"
#include "app/qt/LiveApp.h"
#include "app/qt/SingleInstance.h"

namespace trotlet::app {

namespace {

int runHeadless(const LaunchOptions& options, int& argc, char** argv) {
    // No display is needed or opened: the modes print and exit from inside the event loop,
    // once the application has finished launching.
    QCoreApplication app(argc, argv);
    QTimer::singleShot(0, &app, [&options] { QCoreApplication::exit(runHeadlessMode(options)); });
    return app.exec();
}

int runLive(const LaunchOptions& options, int& argc, char** argv) {
    const bool single = !SingleInstance::multipleAllowed();
    if (single && SingleInstance::askRunningCopyToOpenPanel()) {
        std::fprintf(stderr, "trotlet: Trotlet is already running; asked it to open its panel\n");
        return 0;
    }
    if (auto problem = displayProblem()) {
        std::fprintf(stderr, "trotlet: %s\n", problem->c_str());
        return 1;
    }
    const std::vector<std::string> args(argv, argv + argc);
    const auto env = [](const char* name) { return std::getenv(name) ? std::getenv(name) : ""; };
    if (shouldSkipGtkThemePlugin(env("XDG_CURRENT_DESKTOP"), env("QT_QPA_PLATFORMTHEME")))
        QGuiApplication::setDesktopSettingsAware(false);
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Trotlet"));
    // The app lives in the tray: closing the panel must not end it.
    QApplication::setQuitOnLastWindowClosed(false);
    if (!QSystemTrayIcon::isSystemTrayAvailable()) {
        std::fprintf(stderr, "trotlet: no system tray is available on this desktop, and Trotlet "
                             "lives in the tray\n");
        return 1;
    }
    LiveApp live(options, args);
    std::unique_ptr<SingleInstance> instance;
    if (single)
        instance = std::make_unique<SingleInstance>(
            [&live] { live.openPanel(QStringLiteral("second launch")); });
    return app.exec();
}

}  // namespace

int runApplication(const LaunchOptions& options, int argc, char** argv) {
    return options.isHeadless() ? runHeadless(options, argc, argv) : runLive(options, argc, argv);
}

}  // namespace trotlet::app
