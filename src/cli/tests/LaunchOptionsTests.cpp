#include "cli/LaunchOptions.h"

#include <cmath>
#include <sstream>

#include <gtest/gtest.h>

#include "BuildInfo.h"

namespace trotlet::cli {
namespace {

using Mode = LaunchOptions::Mode;

LaunchParse parseWords(std::vector<std::string> words) {
    words.insert(words.begin(), "/usr/bin/trotlet");
    return LaunchOptions::parseArguments(words);
}

LaunchOptions options(std::vector<std::string> words) {
    auto outcome = parseWords(words);
    if (auto* failure = std::get_if<LaunchFailure>(&outcome))
        ADD_FAILURE() << "unexpected failure: " << failure->message;
    if (std::holds_alternative<HelpRequested>(outcome)) ADD_FAILURE() << "unexpected help";
    auto* parsed = std::get_if<LaunchOptions>(&outcome);
    return parsed ? *parsed : LaunchOptions{};
}

std::string failureOf(std::vector<std::string> words) {
    auto outcome = parseWords(words);
    auto* failure = std::get_if<LaunchFailure>(&outcome);
    return failure ? failure->message : "<no failure>";
}

TEST(LaunchOptions, EveryErrorMessage) {
    const std::string tabs = "--tab needs one of: overview, processes, shop, settings";
    const std::string details =
        "--detail needs one of: cpu, memory, network, disk, battery, heat, weather, pawreport, gpu";
    const std::string fixtures =
        "--fixture needs one of: normal, idle, busy, panic, hot, lowBattery, offline, desktop, "
        "stress";
    const std::string idle = "--idle-seconds needs a number of seconds (>= 0)";
    struct Case {
        std::vector<std::string> words;
        std::string message;
    };
    const std::vector<Case> cases = {
        {{"--snapshot"}, "--snapshot needs a directory"},
        {{"--snapshot", "--mock"}, "--snapshot needs a directory"},
        {{"--only"}, "--only needs a scene name prefix"},
        {{"--list-scenes", "--only", "--mock"}, "--only needs a scene name prefix"},
        {{"--bench-metrics", "0"},
         "--bench-metrics takes an optional positive iteration count, got \"0\""},
        {{"--bench-metrics", "ten"},
         "--bench-metrics takes an optional positive iteration count, got \"ten\""},
        {{"--bench-metrics", "-3"},
         "--bench-metrics takes an optional positive iteration count, got \"-3\""},
        {{"--bench-metrics", "2.5"},
         "--bench-metrics takes an optional positive iteration count, got \"2.5\""},
        {{"--bench-metrics", "99999999999"},
         "--bench-metrics takes an optional positive iteration count, got \"99999999999\""},
        {{"--move-check"}, "--move-check needs an app path"},
        {{"--move-check", "--mock"}, "--move-check needs an app path"},
        {{"--move-copy"}, "--move-copy needs an app path and a folder"},
        {{"--move-copy", "/opt/A.app"}, "--move-copy needs an app path and a folder"},
        {{"--move-copy", "/opt/A.app", "--mock"}, "--move-copy needs an app path and a folder"},
        {{"--fixture"}, fixtures},
        {{"--fixture", "Hot"}, fixtures},
        {{"--fixture", "--mock"}, fixtures},
        {{"--tab", "Overview"}, tabs},
        {{"--tab"}, tabs},
        {{"--tab", "--mock"}, tabs},
        {{"--detail", "CPU"}, details},
        {{"--detail"}, details},
        {{"--idle-seconds"}, idle},
        {{"--idle-seconds", "-1"}, idle},
        {{"--idle-seconds", "soon"}, idle},
        {{"--idle-seconds", "nan"}, idle},
        {{"--idle-seconds", "inf"}, idle},
        {{"--idle-seconds", "5s"}, idle},
        {{"--idle-seconds", "--mock"}, idle},
        {{"--frobnicate"}, "unknown option --frobnicate"},
        {{"--Help"}, "unknown option --Help"},
        {{"--"}, "unknown option --"},
        {{"overview"}, "unexpected argument \"overview\""},
        {{"-v"}, "unexpected argument \"-v\""},
        {{"-monitoring.updateInterval", "5"}, "unexpected argument \"-monitoring.updateInterval\""},
        {{"-"}, "unexpected argument \"-\""},
        {{""}, "unexpected argument \"\""},
        {{"--dump-metrics", "--only", "panel-"},
         "--only only applies to --snapshot or --list-scenes"},
        {{"--only", "panel-"}, "--only only applies to --snapshot or --list-scenes"},
        {{"--only", "hero", "--snapshot", "/tmp/s", "--dump-metrics"},
         "--only only applies to --snapshot or --list-scenes"},
        // The first fault is the one reported.
        {{"--tab", "Shop", "--frobnicate"}, tabs},
        {{"stray", "--tab", "Shop"}, "unexpected argument \"stray\""},
    };
    for (const auto& c : cases) {
        std::string joined;
        for (auto& w : c.words) joined += w + " ";
        EXPECT_EQ(failureOf(c.words), c.message) << joined;
    }
}

TEST(LaunchOptions, FailureTextForm) {
    EXPECT_EQ(LaunchOptions::failureText("unknown option --x"),
              "trotlet: unknown option --x\nRun `Trotlet --help` for usage.\n");
}

TEST(LaunchOptions, NoArgumentsIsTheLiveAppWithDefaults) {
    auto o = options({});
    EXPECT_EQ(o.mode, Mode::liveApp);
    EXPECT_FALSE(o.isHeadless());
    EXPECT_FALSE(o.fixture);
    EXPECT_FALSE(o.mock || o.openPanel || o.keepPanelOpen || o.skipOnboarding || o.checkUpdates ||
                 o.updateNow);
    EXPECT_FALSE(o.tab || o.detail || o.idleSeconds);
    EXPECT_TRUE(o.onlyPrefixes.empty());
    // Even no executable path at all is no crash.
    EXPECT_TRUE(std::holds_alternative<LaunchOptions>(LaunchOptions::parseArguments({})));
}

TEST(LaunchOptions, HelpWinsOnlyBeforeTheFirstFault) {
    struct Case {
        std::vector<std::string> words;
        bool help;
    };
    const std::vector<Case> cases = {
        {{"--help"}, true},
        {{"-h"}, true},
        {{"--help", "--tab", "Overview"}, true},
        {{"--mock", "-h", "bogus"}, true},
        {{"--only", "x", "--help"}, true},  // the --only check runs after the pass
        {{"--tab", "Overview", "--help"}, false},
        {{"bogus", "-h"}, false},
        {{"--idle-seconds", "-1", "--help"}, false},
    };
    for (size_t i = 0; i < cases.size(); ++i) {
        const auto& c = cases[i];
        EXPECT_EQ(std::holds_alternative<HelpRequested>(parseWords(c.words)), c.help) << i;
    }
    // An option's value is taken as a value even when it is "-h": the tab name is then wrong.
    EXPECT_EQ(failureOf({"--tab", "-h"}),
              "--tab needs one of: overview, processes, shop, settings");
}

TEST(LaunchOptions, ModesAndTheirPayloads) {
    auto snapshot =
        options({"--snapshot", "/tmp/shots", "--only", "panel-,menubar", "--only", "hero"});
    EXPECT_EQ(snapshot.mode, Mode::snapshot);
    EXPECT_EQ(snapshot.snapshotDirectory, "/tmp/shots");
    EXPECT_EQ(snapshot.onlyPrefixes, (std::vector<std::string>{"panel-", "menubar", "hero"}));

    auto list = options({"--only", "panel-,,", "--list-scenes"});
    EXPECT_EQ(list.mode, Mode::listScenes);
    EXPECT_EQ(list.onlyPrefixes, std::vector<std::string>{"panel-"});

    EXPECT_EQ(options({"--dump-metrics"}).mode, Mode::dumpMetrics);
    EXPECT_EQ(options({"--simulate-notifications"}).mode, Mode::simulateNotifications);
    EXPECT_EQ(options({"--updates-check"}).mode, Mode::updatesCheck);

    auto check = options({"--move-check", "/opt/A.app", "--move-check", "/opt/B.app"});
    EXPECT_EQ(check.mode, Mode::moveCheck);
    EXPECT_EQ(check.moveCheckPaths, (std::vector<std::string>{"/opt/A.app", "/opt/B.app"}));

    auto copy = options({"--move-copy", "/opt/A.app", "/tmp/dest"});
    EXPECT_EQ(copy.mode, Mode::moveCopy);
    EXPECT_EQ(copy.moveCopyApp, "/opt/A.app");
    EXPECT_EQ(copy.moveCopyFolder, "/tmp/dest");

    // A later mode flag replaces an earlier one.
    EXPECT_EQ(options({"--dump-metrics", "--bench-metrics"}).mode, Mode::benchMetrics);
    EXPECT_EQ(options({"--bench-metrics", "--dump-metrics"}).mode, Mode::dumpMetrics);
    EXPECT_EQ(options({"--snapshot", "/tmp/s", "--list-scenes", "--only", "a"}).mode,
              Mode::listScenes);
}

TEST(LaunchOptions, BenchMetricsCount) {
    struct Case {
        std::vector<std::string> words;
        int iterations;
        bool mock;
    };
    const std::vector<Case> cases = {
        {{"--bench-metrics"}, 30, false},
        {{"--bench-metrics", "5"}, 5, false},
        {{"--bench-metrics", "+7"}, 7, false},
        {{"--bench-metrics", "--mock"}, 30, true},
        {{"--bench-metrics", "100", "--mock"}, 100, true},
        {{"--bench-metrics", "5", "--bench-metrics"}, 30, false},
    };
    for (const auto& c : cases) {
        auto o = options(c.words);
        EXPECT_EQ(o.mode, Mode::benchMetrics);
        EXPECT_EQ(o.benchIterations, c.iterations);
        EXPECT_EQ(o.mock, c.mock);
    }
}

TEST(LaunchOptions, LiveAppFlags) {
    auto o = options({"--fixture", "lowBattery", "--mock", "--open-panel", "--tab", "shop",
                      "--detail", "pawreport", "--keep-panel-open", "--skip-onboarding",
                      "--check-updates", "--update-now", "--idle-seconds", "90.5"});
    EXPECT_EQ(o.mode, Mode::liveApp);
    EXPECT_EQ(o.fixture, metrics::MetricsFixture::lowBattery);
    EXPECT_TRUE(o.mock && o.openPanel && o.keepPanelOpen && o.skipOnboarding && o.checkUpdates &&
                o.updateNow);
    EXPECT_EQ(o.tab, panel::PanelTab::shop);
    EXPECT_EQ(o.detail, panel::MetricDetail::pawreport);
    EXPECT_EQ(o.idleSeconds, 90.5);
}

TEST(LaunchOptions, IdleSecondsZeroEqualsAwake) {
    EXPECT_EQ(options({"--idle-seconds", "0"}).idleSeconds, options({"--awake"}).idleSeconds);
    EXPECT_EQ(options({"--awake"}).idleSeconds, 0.0);
    EXPECT_EQ(options({"--idle-seconds", "-0"}).idleSeconds, 0.0);
    EXPECT_FALSE(std::signbit(*options({"--idle-seconds", "-0"}).idleSeconds));
    EXPECT_EQ(options({"--awake", "--idle-seconds", "30"}).idleSeconds, 30.0);
    EXPECT_EQ(options({"--idle-seconds", "1e2"}).idleSeconds, 100.0);
}

TEST(LaunchOptions, ForeignArgumentsAreSkipped) {
    struct Case {
        std::vector<std::string> words;
    };
    const std::vector<Case> cases = {
        {{"-psn_0_12345"}},
        {{"--mock", "-psn_0_1", "--open-panel"}},
        {{"--dump-shop", "midGame"}},
        {{"--dump-shop", "anything-at-all", "--mock"}},
        {{"--grant-fish", "500"}},
        {{"--shop-demo", "rich"}},
        {{"--shop-file", "/tmp/shop.json"}},
        {{"--simulate-economy"}},
        {{"--verify-shop-persistence"}},
        {{"--dump-layout"}},
    };
    for (const auto& c : cases) {
        auto outcome = parseWords(c.words);
        EXPECT_TRUE(std::holds_alternative<LaunchOptions>(outcome)) << c.words.front();
    }
    // The value after an external flag is skipped even when it looks like a flag of ours.
    EXPECT_EQ(options({"--shop-demo", "--dump-metrics"}).mode, Mode::liveApp);
    // The simulator's own words after its flag are not skipped: they are ours to reject.
    EXPECT_EQ(failureOf({"--simulate-economy", "days=3"}), "unexpected argument \"days=3\"");
}

// The help checked against its layout rules rather than a copy of the text: the version line,
// the sections in order, every flag and variable named, the two columns lined up.
TEST(LaunchOptions, HelpTextLines) {
    const std::string help = LaunchOptions::usage();
    EXPECT_NE(help.back(), '\n');
    std::vector<std::string> lines;
    std::istringstream in(help);
    for (std::string line; std::getline(in, line);) lines.push_back(line);

    EXPECT_EQ(lines.front(), std::string("Trotlet ") + build::version + " (" + build::buildNumber +
                                 "): a menu bar system monitor with a running mascot.");
    EXPECT_EQ(lines.back(), "  -h, --help                print this help");
    std::vector<std::string> sections;
    for (const auto& line : lines)
        if (!line.empty() && line[0] != ' ') sections.push_back(line.substr(0, line.find(' ')));
    EXPECT_EQ(sections,
              (std::vector<std::string>{"Trotlet", "Usage:", "Modes", "Shop", "Overview", "Weather",
                                        "Data:", "Live", "Environment:", "Signals:"}));
    for (const char* word : {"Applications", "Gatekeeper", "quarantine", "Sparkle", "test bundle"})
        EXPECT_EQ(help.find(word), std::string::npos) << word;
    for (const char* variable : {"TROTLET_DEBUG_LOG ", "TROTLET_NOTIFY_FAKE_DATA ",
                                 "TROTLET_WEATHER_CACHE ", "TROTLET_UPDATES ", "kill -USR1"})
        EXPECT_NE(help.find(variable), std::string::npos) << variable;

    // Every flag the parser or a harness owns is documented, each in the two-column layout.
    for (const char* flag : {"--snapshot",        "--only",
                             "--list-scenes",     "--dump-metrics",
                             "--bench-metrics",   "--simulate-notifications",
                             "--move-check",      "--move-copy",
                             "--updates-check",   "--simulate-economy",
                             "--dump-shop",       "--verify-shop-persistence",
                             "--dump-layout",     "--weather-search",
                             "--weather-dump",    "--weather-e2e",
                             "--weather-polish",  "--weather-recovery",
                             "--fixture",         "--mock",
                             "--open-panel",      "--tab",
                             "--detail",          "--keep-panel-open",
                             "--skip-onboarding", "--awake",
                             "--idle-seconds",    "--check-updates",
                             "--update-now",      "--grant-fish",
                             "--shop-demo",       "--shop-file"})
        EXPECT_NE(help.find(std::string(flag) + " "), std::string::npos) << flag;
    for (const auto& line : lines) {
        if (line.rfind("  --", 0) != 0 && line.rfind("    --", 0) != 0) continue;
        const size_t flagEnd = line.find(' ', line.find("--"));
        const bool wideFlag = line.find("  ", flagEnd) == std::string::npos;  // own line
        if (wideFlag) continue;
        EXPECT_EQ(line.find_first_not_of(' ', line.find("  ", flagEnd)), 28u) << line;
    }
}

}  // namespace
}  // namespace trotlet::cli
