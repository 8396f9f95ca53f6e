#include "app/qt/HeadlessModes.h"

#include <cstdio>
#include <string>

#include <nlohmann/json.hpp>

#include "alerts/qt/NotificationSimulation.h"
#include "mascot/qt/MascotDumpEncoder.h"
#include "metrics/qt/MetricsDump.h"
#include "settings/Platform.h"
#include "snapshot/SnapshotRunner.h"

namespace trotlet::app {

namespace {

int unavailable(const char* flag) {
    std::fprintf(stderr, "trotlet: %s is not available in this build\n", flag);
    return 1;
}

void printJson(const nlohmann::ordered_json& document) {
    const std::string text =
        document.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

std::string notApplicableReason() {
    return "Moving into an Applications folder is not applicable on " +
           std::string(settings::systemName);
}

}  // namespace

int runNotificationSimulation(const cli::LaunchOptions&) {
    return alerts::NotificationSimulation::run();
}

int runMoveToApplications(const cli::LaunchOptions& options) {
    if (options.mode == cli::LaunchOptions::Mode::moveCopy) {
        nlohmann::ordered_json result;
        result["app"] = options.moveCopyApp;
        result["destination"] = options.moveCopyFolder;
        result["applicable"] = false;
        result["copied"] = false;
        result["reason"] = notApplicableReason();
        printJson(result);
        return 0;
    }
    nlohmann::ordered_json results = nlohmann::ordered_json::array();
    for (const auto& path : options.moveCheckPaths) {
        nlohmann::ordered_json result;
        result["path"] = path;
        result["applicable"] = false;
        result["shouldOffer"] = false;
        result["reason"] = notApplicableReason();
        results.push_back(result);
    }
    printJson(results);
    return 0;
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
            return runMoveToApplications(options);
        case Mode::snapshot:
            return snapshot::SnapshotRunner::run(options);
        case Mode::listScenes:
            return snapshot::SnapshotRunner::listScenes(options);
        case Mode::updatesCheck:
            return unavailable("--updates-check");
        case Mode::liveApp:
            break;
    }
    return 1;
}

}  // namespace trotlet::app
