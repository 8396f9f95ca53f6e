#include "app/qt/Application.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include <QApplication>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include "app/DesktopTheme.h"
#include "app/qt/DisplayCheck.h"
#include "app/qt/HeadlessModes.h"
#include "app/qt/LiveApp.h"
#include "app/qt/SingleInstance.h"
#include "platform/freedesktop/TrayItem.h"
#include "snapshot/SnapshotRunner.h"
#include "updates/qt/Relaunch.h"

namespace trotlet::app {

namespace {

int runHeadless(const cli::LaunchOptions& options, int& argc, char** argv) {
    // No display is needed or opened: the modes print and exit from inside the event loop,
    // once the application has finished launching.
    // Snapshots paint widgets: they get a GUI application on the offscreen platform.
    if (options.mode == cli::LaunchOptions::Mode::snapshot) {
        snapshot::SnapshotRunner::prepareEnvironment();
        QApplication app(argc, argv);
        snapshot::SnapshotRunner::prepareApplication();
        QTimer::singleShot(0, &app,
                           [&options] { QCoreApplication::exit(runHeadlessMode(options)); });
        return app.exec();
    }
    QCoreApplication app(argc, argv);
    QTimer::singleShot(0, &app, [&options] { QCoreApplication::exit(runHeadlessMode(options)); });
    return app.exec();
}

// Started at login, the app can come up before the desktop's panel: give the tray a while.
// TROTLET_TRAY_WAIT_SECONDS changes the wait (0: don't wait).
int trayWaitSeconds() {
    const char* text = std::getenv("TROTLET_TRAY_WAIT_SECONDS");
    if (!text || !*text) return 60;
    char* end = nullptr;
    const long seconds = std::strtol(text, &end, 10);
    return *end == '\0' && seconds >= 0 ? static_cast<int>(std::min(seconds, 3600L)) : 60;
}

bool waitForTray(int seconds) {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (platform::TrayItem::hostPresent(bus)) return true;
    if (seconds <= 0) return false;
    std::fprintf(stderr, "trotlet: waiting up to %d s for a system tray\n", seconds);
    // A few bus and X round trips twice a second, only until a tray shows up.
    const QDeadlineTimer deadline{std::chrono::seconds(seconds)};
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (platform::TrayItem::hostPresent(bus) || deadline.hasExpired()) loop.quit();
    });
    poll.start(500);
    loop.exec();
    return platform::TrayItem::hostPresent(bus);
}

int runLive(const cli::LaunchOptions& options, int& argc, char** argv) {
    // A copy started by an update or an install takes over once the copy that started it quit.
    updates::waitForPreviousCopy();
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
    if (!waitForTray(trayWaitSeconds())) {
        std::fprintf(stderr,
                     "trotlet: no system tray is available on this desktop, and Trotlet "
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

int runApplication(const cli::LaunchOptions& options, int argc, char** argv) {
    return options.isHeadless() ? runHeadless(options, argc, argv) : runLive(options, argc, argv);
}

}  // namespace trotlet::app
