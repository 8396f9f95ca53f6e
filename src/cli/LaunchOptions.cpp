#include "cli/LaunchOptions.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

#include "BuildInfo.h"
#include "settings/RawEnum.h"

namespace trotlet::cli {

namespace {

bool startsWith(std::string_view text, std::string_view prefix) {
    return text.substr(0, prefix.size()) == prefix;
}

bool contains(const std::vector<std::string>& list, const std::string& word) {
    return std::find(list.begin(), list.end(), word) != list.end();
}

// Base-10, whole text, an optional leading "+"; nothing when it does not fit an int.
std::optional<long long> wholeNumber(std::string_view text) {
    if (startsWith(text, "+")) text.remove_prefix(1);
    if (text.empty()) return std::nullopt;
    long long value = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

// A decimal number in the "C" locale; "nan" and the infinities are no number of seconds.
std::optional<double> finiteNumber(std::string_view text) {
    if (startsWith(text, "+")) text.remove_prefix(1);
    if (text.empty()) return std::nullopt;
    double value = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::vector<std::string> splitPrefixes(const std::string& text) {
    std::vector<std::string> pieces;
    size_t start = 0;
    while (start <= text.size()) {
        size_t comma = text.find(',', start);
        if (comma == std::string::npos) comma = text.size();
        // Empty pieces ("a,,b", a trailing comma) name no prefix.
        if (comma > start) pieces.push_back(text.substr(start, comma - start));
        start = comma + 1;
    }
    return pieces;
}

// One help line: the flag in a column 28 characters wide (counting the two leading blanks),
// then the description. A flag too wide for the column gets a line of its own.
constexpr size_t flagColumn = 28;

void addRow(std::string& out, std::string_view flag, std::string_view description,
            size_t indent = 2) {
    std::string row(indent, ' ');
    row += flag;
    if (row.size() >= flagColumn) {
        out += row;
        out += '\n';
        row.assign(flagColumn, ' ');
    } else {
        row.resize(flagColumn, ' ');
    }
    out += row;
    out += description;
    out += '\n';
}

void addContinuation(std::string& out, std::string_view description) {
    out.append(flagColumn, ' ');
    out += description;
    out += '\n';
}

}  // namespace

const std::vector<std::string>& LaunchOptions::externalFlagsWithValue() {
    static const std::vector<std::string> flags = {"--grant-fish", "--shop-demo", "--shop-file",
                                                   "--dump-shop"};
    return flags;
}

const std::vector<std::string>& LaunchOptions::externalFlags() {
    static const std::vector<std::string> flags = {"--simulate-economy",
                                                   "--verify-shop-persistence", "--dump-layout"};
    return flags;
}

LaunchParse LaunchOptions::parseArguments(const std::vector<std::string>& args) {
    LaunchOptions options;
    const size_t count = args.size();
    // The argument after index i when it can be a value: present and not another "--" flag.
    auto valueAfter = [&](size_t i) -> std::optional<std::string> {
        if (i + 1 >= count || startsWith(args[i + 1], "--")) return std::nullopt;
        return args[i + 1];
    };
    auto failure = [](std::string message) {
        return LaunchParse(LaunchFailure{std::move(message)});
    };

    for (size_t i = 1; i < count; ++i) {
        const std::string& arg = args[i];
        if (contains(externalFlagsWithValue(), arg)) {
            ++i;
        } else if (contains(externalFlags(), arg)) {
        } else if (startsWith(arg, "-psn_")) {
            // A process serial number that a launcher may add; it means nothing here.
        } else if (arg == "-h" || arg == "--help") {
            return HelpRequested{};
        } else if (arg == "--snapshot") {
            auto dir = valueAfter(i);
            if (!dir) return failure("--snapshot needs a directory");
            options.mode = Mode::snapshot;
            options.snapshotDirectory = *dir;
            ++i;
        } else if (arg == "--only") {
            auto list = valueAfter(i);
            if (!list) return failure("--only needs a scene name prefix");
            for (auto& prefix : splitPrefixes(*list)) options.onlyPrefixes.push_back(prefix);
            ++i;
        } else if (arg == "--list-scenes") {
            options.mode = Mode::listScenes;
        } else if (arg == "--dump-metrics") {
            options.mode = Mode::dumpMetrics;
        } else if (arg == "--simulate-notifications") {
            options.mode = Mode::simulateNotifications;
        } else if (arg == "--updates-check") {
            options.mode = Mode::updatesCheck;
        } else if (arg == "--bench-metrics") {
            options.mode = Mode::benchMetrics;
            options.benchIterations = 30;
            if (auto word = valueAfter(i)) {
                auto n = wholeNumber(*word);
                if (!n || *n <= 0 || *n > std::numeric_limits<int>::max())
                    return failure(
                        "--bench-metrics takes an optional positive iteration count, got \"" +
                        *word + "\"");
                options.benchIterations = static_cast<int>(*n);
                ++i;
            }
        } else if (arg == "--move-check") {
            auto path = valueAfter(i);
            if (!path) return failure("--move-check needs an app path");
            if (options.mode != Mode::moveCheck) options.moveCheckPaths.clear();
            options.mode = Mode::moveCheck;
            options.moveCheckPaths.push_back(*path);
            ++i;
        } else if (arg == "--move-copy") {
            auto app = valueAfter(i);
            auto folder = app ? valueAfter(i + 1) : std::nullopt;
            if (!app || !folder) return failure("--move-copy needs an app path and a folder");
            options.mode = Mode::moveCopy;
            options.moveCopyApp = *app;
            options.moveCopyFolder = *folder;
            i += 2;
        } else if (arg == "--fixture") {
            auto name = valueAfter(i);
            auto fixture = name ? settings::fromRawName<metrics::MetricsFixture>(
                                      *name, metrics::MetricsFixtureNames)
                                : std::nullopt;
            if (!fixture)
                return failure("--fixture needs one of: " +
                               settings::joinedNames(metrics::MetricsFixtureNames));
            options.fixture = fixture;
            ++i;
        } else if (arg == "--mock") {
            options.mock = true;
        } else if (arg == "--open-panel") {
            options.openPanel = true;
        } else if (arg == "--keep-panel-open") {
            options.keepPanelOpen = true;
        } else if (arg == "--skip-onboarding") {
            options.skipOnboarding = true;
        } else if (arg == "--check-updates") {
            options.checkUpdates = true;
        } else if (arg == "--update-now") {
            options.updateNow = true;
        } else if (arg == "--tab") {
            auto name = valueAfter(i);
            auto tab = name ? settings::fromRawName<panel::PanelTab>(*name, panel::PanelTabNames)
                            : std::nullopt;
            if (!tab)
                return failure("--tab needs one of: " +
                               settings::joinedNames(panel::PanelTabNames));
            options.tab = tab;
            ++i;
        } else if (arg == "--detail") {
            auto name = valueAfter(i);
            auto detail =
                name ? settings::fromRawName<panel::MetricDetail>(*name, panel::MetricDetailNames)
                     : std::nullopt;
            if (!detail)
                return failure("--detail needs one of: " +
                               settings::joinedNames(panel::MetricDetailNames));
            options.detail = detail;
            ++i;
        } else if (arg == "--awake") {
            options.idleSeconds = 0.0;
        } else if (arg == "--idle-seconds") {
            auto word = valueAfter(i);
            auto seconds = word ? finiteNumber(*word) : std::nullopt;
            if (!seconds || *seconds < 0)
                return failure("--idle-seconds needs a number of seconds (>= 0)");
            options.idleSeconds = *seconds == 0 ? 0.0 : *seconds;  // -0 reads as 0
            ++i;
        } else if (startsWith(arg, "--")) {
            return failure("unknown option " + arg);
        } else {
            return failure("unexpected argument \"" + arg + "\"");
        }
    }

    if (!options.onlyPrefixes.empty() && options.mode != Mode::snapshot &&
        options.mode != Mode::listScenes)
        return failure("--only only applies to --snapshot or --list-scenes");
    return options;
}

std::string LaunchOptions::failureText(const std::string& message) {
    return "trotlet: " + message + "\nRun `Trotlet --help` for usage.\n";
}

std::string LaunchOptions::usage() {
    std::string out;
    out += std::string("Trotlet ") + build::version + " (" + build::buildNumber +
           "): a menu bar system monitor with a running mascot.\n";
    out += "\nUsage: Trotlet [mode] [options]\n";

    out += "\nModes (headless, exit when done):\n";
    addRow(out, "--snapshot <dir>",
           "render snapshot scenes (light + dark, @2x PNG) and index.json into <dir>");
    addRow(out, "--only <prefix>[,...]",
           "only scenes whose name starts with a prefix (repeatable), e.g. --only panel-,menubar",
           4);
    addRow(out, "--list-scenes", "print every snapshot scene name (respects --only)");
    addRow(out, "--dump-metrics", "print one JSON metrics sample (+ mascot state) to stdout");
    addRow(out, "--bench-metrics [n]",
           "measure real sampling cost per metric kind (n iterations, default 30), print JSON");
    addRow(out, "--simulate-notifications",
           "replay a scripted alert timeline through the notification rules, print JSON");
    addRow(out, "--move-check <path>",
           "print the \"Install for this user?\" decision for an app path as JSON (repeatable)");
    addRow(out, "--move-copy <app> <dir>",
           "install an app into <dir> as \"Install for this user\" does (launcher, icon);");
    addContinuation(
        out, "JSON on whether the system runs the source and the copy (exec, noexec, libraries)");
    addRow(out, "--updates-check",
           "replay update sessions, What's new decisions, bundled release notes; print JSON");

    out += "\nShop harnesses (headless, print JSON, exit before the app starts):\n";
    addRow(out,
           "--simulate-economy [days=30] [profile=engaged|casual|maneki|tamper|all] [seed=7] "
           "[buy=cheapest|none]",
           "simulate days of Fish earning and spending for a user profile");
    addRow(out, "--dump-shop [newUser|midGame|streak29|saverUsed|rich|complete]",
           "print a demo shop state (a new user's by default) as JSON");
    addRow(out, "--verify-shop-persistence",
           "round-trip shop.json through save/load in a temp directory");

    out += "\nOverview layout harness (headless, prints JSON, exits 1 on a failed check):\n";
    addRow(out, "--dump-layout",
           "check the card registry, packing, migration and edits of the Overview grid");

    out +=
        "\nWeather harnesses (headless, live Open-Meteo, print JSON; never touch your settings "
        "or cache):\n";
    addRow(out, "--weather-search \"<name>\" [--lang xx]",
           "search places by name (results in language xx)");
    addRow(out, "--weather-dump \"<name>\"", "look up a place and print its forecast");
    addRow(out, "--weather-e2e", "search, fetch and decode a forecast end to end");
    addRow(out, "--weather-polish [dir]",
           "check the weather texts and conditions (table and pictures into [dir])");
    addRow(out, "--weather-recovery", "check refresh, backoff and cache recovery after failures");

    out += "\nData:\n";
    out += "  --fixture <name>          deterministic data: " +
           settings::joinedNames(metrics::MetricsFixtureNames);
    out +=
        "\n  --mock                    animated fake data (CPU bursts every 40 s) instead of the "
        "real readers\n\nLive app (QA, screen recordings, make perf):\n  --open-panel         "
        "     open the panel 0.6 s after launch\n  --tab <name>              tab to open on: " +
        settings::joinedNames(panel::PanelTabNames);
    out += "\n  --detail <name>           open a metric detail on top of Overview: " +
           settings::joinedNames(panel::MetricDetailNames);
    out += '\n';
    addRow(out, "--keep-panel-open",
           "don't auto-close the panel on outside clicks, focus loss, or Space switches");
    addRow(out, "--skip-onboarding",
           "in-memory session: onboarding done, demo shop, ephemeral settings (never");
    addContinuation(out, "touches your defaults or shop.json)");
    addRow(out, "--awake",
           "keep the mascot awake (treat the user as active; same as --idle-seconds 0)");
    addRow(out, "--idle-seconds <n>",
           "pretend the last keyboard/mouse event was n seconds ago (idle-nap QA)");
    addRow(out, "--check-updates",
           "check for updates right after launch (the result on stderr and in the panel)");
    addRow(out, "--update-now",
           "background check, download, verify, then install and relaunch at once");
    addContinuation(out,
                    "(release E2E; pair with a test feed in the updates.feedURLOverride setting)");
    out += "  Debug builds only: --grant-fish <n>, --shop-demo <state>, --shop-file <path>\n";

    out += "\nEnvironment:\n";
    addRow(out, "TROTLET_DEBUG_LOG",
           "=1 log panel, shortcut, hotkey, and notification decisions to stderr");
    addRow(out, "TROTLET_NOTIFY_FAKE_DATA",
           "=1 allow metric notifications with --fixture / --mock (off by default)");
    addRow(out, "TROTLET_WEATHER_CACHE",
           "=<path> weather cache file (in-memory sessions keep none by default)");
    addRow(
        out, "TROTLET_UPDATES",
        "=1 run automatic update checks in a Debug build (off by default there); 0 keeps them off");
    out += "\nSignals: kill -USR1 <pid> toggles the panel (QA scripts).\n";
    addRow(out, "-h, --help", "print this help");

    out.pop_back();  // the caller ends the text
    return out;
}

}  // namespace trotlet::cli
