#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/PanelRoute.h"
#include "metrics/MetricsFixture.h"

namespace trotlet::app {

// The parsed command line, built once and handed to the application by value.
struct LaunchOptions {
    enum class Mode {
        liveApp,
        snapshot,               // payload: snapshotDirectory, onlyPrefixes
        listScenes,             // payload: onlyPrefixes
        dumpMetrics,
        benchMetrics,           // payload: benchIterations
        simulateNotifications,
        moveCheck,              // payload: moveCheckPaths
        moveCopy,               // payload: moveCopyApp, moveCopyFolder
        updatesCheck,
    };

    Mode mode = Mode::liveApp;
    std::string snapshotDirectory;
    int benchIterations = 30;
    std::vector<std::string> moveCheckPaths;
    std::string moveCopyApp;
    std::string moveCopyFolder;

    std::optional<metrics::MetricsFixture> fixture;
    bool mock = false;
    bool openPanel = false;
    std::optional<PanelTab> tab;
    std::optional<MetricDetail> detail;
    bool keepPanelOpen = false;
    bool skipOnboarding = false;
    std::optional<double> idleSeconds;  // --awake sets 0
    bool checkUpdates = false;
    bool updateNow = false;
    std::vector<std::string> onlyPrefixes;

    // Parses the arguments (the first, the executable path, is dropped). Prints the help and
    // exits 0, or fails and exits 2; see `fail`.
    static LaunchOptions parse(const std::vector<std::string>& args);
};

}  // namespace trotlet::app
