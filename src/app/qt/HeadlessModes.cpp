#include "app/qt/HeadlessModes.h"

#include <cstdio>
#include <string>

#include "alerts/qt/NotificationSimulation.h"
#include "mascot/qt/MascotDumpEncoder.h"
#include "metrics/qt/MetricsDump.h"
#include "snapshot/SnapshotRunner.h"
#include "updates/qt/UpdatesHarness.h"
#include "updates/qt/UserInstallCLI.h"

namespace trotlet::app {

int runNotificationSimulation(const cli::LaunchOptions&) {
    return alerts::NotificationSimulation::run();
}

int runHeadlessMode(const cli::LaunchOptions& options) {
    using Mode = cli::LaunchOptions::Mode;
    switch (options.mode) {
        case Mode::dumpMetrics:
            mascot::installMascotDumpEncoder();
            return metrics::MetricsDump::run(options);
        case Mode::benchMetrics:
            return metrics::MetricsBench::run(options);
        case Mode::simulateNotifications:
            return runNotificationSimulation(options);
        case Mode::moveCheck:
        case Mode::moveCopy:
            return updates::runUserInstallCLI(options);
        case Mode::snapshot:
            return snapshot::SnapshotRunner::run(options);
        case Mode::listScenes:
            return snapshot::SnapshotRunner::listScenes(options);
        case Mode::updatesCheck:
            return updates::runUpdatesHarness();
        case Mode::liveApp:
            break;
    }
    return 1;
}

}  // namespace trotlet::app
