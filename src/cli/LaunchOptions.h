#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "metrics/MetricsFixture.h"
#include "panel/PanelRoute.h"

namespace trotlet::cli {

struct LaunchOptions;

// What one pass over the command line found: options to run with, a request for the help
// (which wins only when it comes before the first fault), or the first fault's message.
struct HelpRequested {};
struct LaunchFailure {
    std::string message;
};
using LaunchParse = std::variant<LaunchOptions, HelpRequested, LaunchFailure>;

// The parsed command line, built once and handed to the application by value.
struct LaunchOptions {
    enum class Mode {
        liveApp,
        snapshot,    // payload: snapshotDirectory, onlyPrefixes
        listScenes,  // payload: onlyPrefixes
        dumpMetrics,
        benchMetrics,  // payload: benchIterations
        simulateNotifications,
        moveCheck,  // payload: moveCheckPaths
        moveCopy,   // payload: moveCopyApp, moveCopyFolder
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
    std::optional<panel::PanelTab> tab;
    std::optional<panel::MetricDetail> detail;
    bool keepPanelOpen = false;
    bool skipOnboarding = false;
    std::optional<double> idleSeconds;  // --awake sets 0
    bool checkUpdates = false;
    bool updateNow = false;
    std::vector<std::string> onlyPrefixes;

    bool isHeadless() const { return mode != Mode::liveApp; }

    // Parses the arguments (the first, the executable path, is dropped). Prints the help and
    // exits 0, or fails and exits 2; see `fail`.
    static LaunchOptions parse(const std::vector<std::string>& args);
    // The same pass without printing or exiting.
    static LaunchParse parseArguments(const std::vector<std::string>& args);
    // The help text, without a final newline.
    static std::string usage();
    // "trotlet: <message>" and the pointer to the help on stderr, then exit status 2.
    [[noreturn]] static void fail(const std::string& message);
    // The text `fail` writes.
    static std::string failureText(const std::string& message);

    // Flags owned by the harnesses that run before this parser; skipped when they reach it.
    static const std::vector<std::string>& externalFlagsWithValue();
    static const std::vector<std::string>& externalFlags();
};

}  // namespace trotlet::cli
