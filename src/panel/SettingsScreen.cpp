#include "panel/SettingsScreen.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <functional>

#include "layout/LayoutStore.h"
#include "menubar/Format.h"
#include "menubar/TickerText.h"
#include "panel/SensitivityScale.h"
#include "settings/AppSettings.h"
#include "settings/KeyedAccess.h"
#include "settings/Platform.h"
#include "settings/RawEnum.h"
#include "settings/SettingsKeys.h"
#include "weather/WeatherText.h"

namespace trotlet::panel {
namespace {

namespace keys = settings::keys;
using settings::SettingValue;

SettingsRow toggle(const settings::AppSettings& s, const std::string& key, std::string title,
                   std::string detail = {}) {
    SettingsRow row;
    row.id = key;
    row.kind = RowKind::toggle;
    row.key = key;
    row.title = std::move(title);
    row.detail = std::move(detail);
    const auto value = settings::keyed::value(s, key);
    row.on = value && value->is_boolean() && value->get<bool>();
    return row;
}

SettingsRow choice(const settings::AppSettings& s, const std::string& key, RowKind kind,
                   std::string title, std::vector<RowOption> options, std::string detail = {}) {
    SettingsRow row;
    row.id = key;
    row.kind = kind;
    row.key = key;
    row.title = std::move(title);
    row.detail = std::move(detail);
    row.options = std::move(options);
    if (const auto value = settings::keyed::value(s, key))
        row.selected = optionMatching(row.options, *value);
    return row;
}

template <typename E, std::size_t N>
RowOption named(E value, const std::array<std::string_view, N>& names, std::string label,
                std::string spoken = {}) {
    return {std::move(label), SettingValue(std::string(settings::rawName(value, names))),
            std::move(spoken)};
}

SettingsRow button(RowAction action, std::string id, std::string title, std::string label,
                   std::string detail = {}) {
    SettingsRow row;
    row.id = std::move(id);
    row.kind = RowKind::button;
    row.title = std::move(title);
    row.detail = std::move(detail);
    row.action = action;
    row.actionLabel = std::move(label);
    return row;
}

std::string seconds(double s) {
    // 2 → "2 s", 1.5 → "1.5 s": the interval is a double and a hand-edited one may be fractional.
    return menubar::Format::fixed(s == std::floor(s) ? 0 : 1, s) + " s";
}

std::string percentText(double fraction) { return menubar::Format::percent(fraction); }

std::string join(const std::vector<std::string>& parts, std::string_view separator = " · ") {
    std::string out;
    for (const auto& p : parts) {
        if (p.empty()) continue;
        if (!out.empty()) out += separator;
        out += p;
    }
    return out;
}

const char* readingName(settings::MenuBarTextMetric metric) {
    using M = settings::MenuBarTextMetric;
    switch (metric) {
        case M::none:
            return "None";
        case M::cpu:
            return "CPU";
        case M::memory:
            return "Memory";
        case M::gpu:
            return "GPU";
        case M::cpuTemperature:
            return "Temperature";
        case M::network:
            return "Network";
        case M::battery:
            return "Battery";
    }
    return "None";
}

const char* sourceName(settings::LoadSource source) {
    using L = settings::LoadSource;
    switch (source) {
        case L::cpu:
            return "CPU";
        case L::gpu:
            return "GPU";
        case L::memory:
            return "Memory";
        case L::network:
            return "Network";
        case L::busiest:
            return "Busiest";
    }
    return "CPU";
}

std::vector<SettingsBlock> general(const settings::AppSettings& s, const SettingsFacts& f) {
    std::vector<SettingsBlock> blocks;

    SettingsBlock startup;
    SettingsRow login = toggle(s, keys::launchAtLogin, "Launch at login",
                               "Start Trotlet when you log in to your desktop");
    if (!f.autostartProblem.empty()) {
        login.detail = f.autostartProblem;
        login.warning = true;
    }
    startup.rows.push_back(login);
    using A = settings::AppearancePreference;
    startup.rows.push_back(choice(s, keys::appearance, RowKind::segmented, "Appearance",
                                  {named(A::system, settings::AppearancePreferenceNames, "System"),
                                   named(A::light, settings::AppearancePreferenceNames, "Light"),
                                   named(A::dark, settings::AppearancePreferenceNames, "Dark")}));
    blocks.push_back(startup);

    SettingsBlock keyboard;
    keyboard.title = "Keyboard";
    keyboard.rows.push_back(toggle(s, keys::globalShortcutEnabled, "Global shortcut",
                                   "Opens and closes the panel from any app"));
    if (s.general().globalShortcutEnabled()) {
        SettingsRow recorder;
        recorder.id = "shortcut";
        recorder.kind = RowKind::shortcut;
        recorder.title = "Shortcut";
        recorder.key = keys::globalShortcutKeyCode;
        recorder.valueText = f.shortcutText.empty() ? "Not set" : f.shortcutText;
        switch (f.shortcutStatus) {
            case ShortcutStatus::pending:
                recorder.detail = "Waiting for the desktop to confirm";
                break;
            case ShortcutStatus::unavailable:
                recorder.detail =
                    f.shortcutProblem.empty() ? "Not available on this desktop" : f.shortcutProblem;
                recorder.warning = true;
                break;
            case ShortcutStatus::off:
            case ShortcutStatus::active:
                recorder.detail = "Click to record a new one";
                break;
        }
        keyboard.rows.push_back(recorder);
    }
    blocks.push_back(keyboard);

    SettingsBlock habits;
    habits.title = "Check-in";
    habits.rows.push_back(
        toggle(s, keys::checkInReminders, "Check-in reminders",
               "One nudge in the evening while today's check-in Fish are still waiting"));
    blocks.push_back(habits);

    SettingsBlock tour;
    tour.rows.push_back(button(RowAction::showOnboarding, "showOnboarding", "Welcome tour",
                               "Show again", "Meet " + f.mascotName + " and the basics once more"));
    blocks.push_back(tour);
    return blocks;
}

std::vector<SettingsBlock> menuBar(const settings::AppSettings& s, const SettingsFacts& f) {
    using M = settings::MenuBarTextMetric;
    using L = settings::LoadSource;
    const auto& names = settings::MenuBarTextMetricNames;
    std::vector<SettingsBlock> blocks;

    SettingsBlock preview;
    SettingsRow item;
    item.id = "preview";
    item.kind = RowKind::preview;
    item.title = "Preview";
    preview.rows.push_back(item);
    blocks.push_back(preview);

    SettingsBlock shown;
    shown.title = "In the menu bar";
    shown.rows.push_back(toggle(s, keys::showMascot, "Show " + f.mascotName));
    shown.rows.push_back(choice(s, keys::textMetric, RowKind::chips, "Reading",
                                {named(M::none, names, "None"), named(M::cpu, names, "CPU"),
                                 named(M::memory, names, "Memory"), named(M::gpu, names, "GPU"),
                                 named(M::cpuTemperature, names, "Temperature", "CPU temperature"),
                                 named(M::network, names, "Network", "Download speed"),
                                 named(M::battery, names, "Battery")},
                                "A short number beside " + f.mascotName));
    const bool hasText = s.menuBar().textMetric() != M::none || s.weather().showInMenuBar();
    if (hasText) {
        using P = settings::MenuBarTextPosition;
        shown.rows.push_back(choice(
            s, keys::textPosition, RowKind::segmented, "Reading position",
            {named(P::left, settings::MenuBarTextPositionNames, "Left", "Left of the mascot"),
             named(P::right, settings::MenuBarTextPositionNames, "Right", "Right of the mascot")}));
    }
    blocks.push_back(shown);

    SettingsBlock speed;
    speed.title = "Speed";
    const auto& sources = settings::LoadSourceNames;
    speed.rows.push_back(
        choice(s, keys::speedSource, RowKind::chips, "Speed follows",
               {named(L::cpu, sources, "CPU"), named(L::gpu, sources, "GPU"),
                named(L::memory, sources, "Memory"), named(L::network, sources, "Network"),
                named(L::busiest, sources, "Busiest", "The busiest of them")}));
    SettingsRow sensitivity;
    sensitivity.id = keys::speedSensitivity;
    sensitivity.kind = RowKind::slider;
    sensitivity.key = keys::speedSensitivity;
    sensitivity.title = "Sensitivity";
    sensitivity.detail = "How quickly " + f.mascotName + " speeds up as the load rises";
    for (int step = 0; step <= SensitivityScale::steps; ++step) {
        const double exponent = SensitivityScale::exponentAtStep(step);
        sensitivity.options.push_back({menubar::Format::fixed(1, step * SensitivityScale::stepSize),
                                       SettingValue(exponent), SensitivityScale::word(exponent)});
    }
    const double exponent = s.menuBar().speedSensitivity();
    sensitivity.selected = std::size_t(SensitivityScale::stepFor(exponent));
    sensitivity.valueText = SensitivityScale::word(exponent);
    sensitivity.startLabel = "Steady";
    sensitivity.endLabel = "Eager";
    speed.rows.push_back(sensitivity);
    blocks.push_back(speed);

    SettingsBlock animation;
    animation.title = "Animation";
    std::vector<RowOption> rates;
    for (double fps : ladderWith({12, 24, 30}, s.menuBar().maxFPS()))
        rates.push_back({menubar::Format::fixed(0, fps) + " fps", SettingValue(int(fps)),
                         menubar::Format::fixed(0, fps) + " frames a second"});
    animation.rows.push_back(
        choice(s, keys::maxFPS, RowKind::segmented, "Frame rate limit", std::move(rates)));
    animation.rows.push_back(toggle(s, keys::saveEnergy, "Save Energy",
                                    "Fewer frames in power-saver mode and on a low battery"));
    animation.rows.push_back(toggle(s, keys::pauseAnimation, "Pause animation",
                                    f.mascotName + " stands still in the menu bar"));
    animation.rows.push_back(toggle(s, keys::animateWithReduceMotion, "Animate with reduced motion",
                                    "Keep running when the desktop asks for less motion"));
    blocks.push_back(animation);
    return blocks;
}

std::vector<SettingsBlock> mascot(const settings::AppSettings& s, const SettingsFacts& f) {
    SettingsBlock behaviour;
    behaviour.rows.push_back(toggle(s, keys::stateReactions, "React to the machine",
                                    "Panics under heavy load, pants when hot, slows on a low "
                                    "battery"));
    behaviour.rows.push_back(toggle(s, keys::sleepWhenIdle, "Nap when you're away",
                                    "Sits, then sleeps, while you're gone and all is calm"));
    behaviour.rows.push_back(
        toggle(s, keys::showMoodLine, "Mood line",
               "A line under " + f.mascotName + "'s name about what's going on"));
    behaviour.rows.push_back(toggle(s, keys::goldenFish, "Golden Fish",
                                    "Now and then one swims across the header. Catch it for "
                                    "Fish"));
    return {behaviour};
}

std::vector<SettingsBlock> monitoring(const settings::AppSettings& s, const SettingsFacts& f) {
    std::vector<SettingsBlock> blocks;
    SettingsBlock sampling;
    std::vector<RowOption> intervals;
    for (double sec : ladderWith({1, 2, 3, 5}, s.monitoring().updateInterval()))
        intervals.push_back({seconds(sec), SettingValue(sec), "every " + seconds(sec)});
    sampling.rows.push_back(choice(s, keys::updateInterval, RowKind::segmented, "Update every",
                                   std::move(intervals), "While the panel is open"));
    using T = settings::TemperatureUnit;
    using N = settings::NetworkUnit;
    sampling.rows.push_back(
        choice(s, keys::temperatureUnit, RowKind::segmented, "Temperature",
               {named(T::celsius, settings::TemperatureUnitNames, "°C", "Celsius"),
                named(T::fahrenheit, settings::TemperatureUnitNames, "°F", "Fahrenheit")}));
    sampling.rows.push_back(
        choice(s, keys::networkUnit, RowKind::segmented, "Network speed",
               {named(N::bytes, settings::NetworkUnitNames, "MB/s", "Bytes a second"),
                named(N::bits, settings::NetworkUnitNames, "Mbps", "Bits a second")}));
    sampling.rows.push_back(
        toggle(s, keys::showPerCoreCPU, "Per-core CPU", "A bar for every core in the CPU details"));
    std::vector<RowOption> sizes;
    for (double n : ladderWith({5, 8, 12, 20}, s.monitoring().processListSize()))
        sizes.push_back({menubar::Format::fixed(0, n), SettingValue(int(n)),
                         menubar::Format::fixed(0, n) + " processes"});
    sampling.rows.push_back(
        choice(s, keys::processListSize, RowKind::segmented, "Processes listed", std::move(sizes)));
    blocks.push_back(sampling);

    SettingsBlock cards;
    cards.title = "Overview cards";
    for (const auto& card : f.cards) {
        SettingsRow row;
        row.id = "card." + card.id;
        row.kind = RowKind::cardToggle;
        row.title = card.title;
        row.cardId = card.id;
        row.on = card.visible;
        cards.rows.push_back(row);
    }
    if (f.canResetLayout)
        cards.rows.push_back(button(RowAction::resetLayout, "resetLayout", "Reset layout", "Reset",
                                    "Back to the original cards, sizes and order"));
    blocks.push_back(cards);
    return blocks;
}

SettingsRow stops(const settings::AppSettings& s, const std::string& key, std::string title,
                  const std::vector<double>& ladder, double current,
                  const std::function<std::string(double)>& label, bool whole) {
    SettingsRow row;
    row.id = key;
    row.kind = RowKind::slider;
    row.key = key;
    row.title = std::move(title);
    for (double v : ladderWith(ladder, current))
        row.options.push_back(
            {label(v), whole ? SettingValue(int(std::lround(v))) : SettingValue(v), label(v)});
    if (const auto value = settings::keyed::value(s, key))
        row.selected = optionMatching(row.options, *value);
    row.valueText = label(current);
    row.startLabel = row.options.front().label;
    row.endLabel = row.options.back().label;
    return row;
}

std::vector<SettingsBlock> notifications(const settings::AppSettings& s, const SettingsFacts& f) {
    const auto& n = s.notifications();
    std::vector<SettingsBlock> blocks;

    SettingsBlock machine;
    machine.title = "Alerts";
    machine.rows.push_back(
        toggle(s, keys::highCPU, "High CPU", "When the CPU stays above the level for two minutes"));
    if (n.highCPU()) {
        std::vector<double> ladder;
        for (int p = 50; p <= 95; p += 5) ladder.push_back(p / 100.0);
        machine.rows.push_back(stops(s, keys::highCPUThreshold, "CPU level", ladder,
                                     n.highCPUThreshold(), percentText, false));
    }
    const std::string hot =
        menubar::Format::temperatureParts(108, s.monitoring().temperatureUnit()).joined();
    machine.rows.push_back(toggle(s, keys::highTemperature, "Overheating",
                                  "Above " + hot + ", or when the system reports serious heat"));
    machine.rows.push_back(
        toggle(s, keys::memoryCritical, "Memory pressure",
               "When the " + std::string(settings::machineNoun) + " starts swapping hard"));
    machine.rows.push_back(toggle(s, keys::diskAlmostFull, "Disk almost full",
                                  "When the system disk runs low on space"));
    if (n.diskAlmostFull())
        machine.rows.push_back(stops(
            s, keys::diskFreeThresholdGB, "Free space below", {1, 2, 5, 10, 20, 50, 100},
            n.diskFreeThresholdGB(),
            [](double gb) { return menubar::Format::fixed(0, gb) + " GB"; }, true));
    blocks.push_back(machine);

    SettingsBlock battery;
    battery.title = "Battery";
    const std::string noBattery =
        f.hasBattery ? ""
                     : "This " + std::string(settings::machineNoun) + " has no battery right now";
    battery.rows.push_back(
        toggle(s, keys::batteryLow, "Low battery",
               f.hasBattery ? "When the battery runs down off the charger" : noBattery));
    if (n.batteryLow()) {
        std::vector<double> ladder;
        for (int p = 5; p <= 50; p += 5) ladder.push_back(p);
        battery.rows.push_back(stops(
            s, keys::batteryLowThreshold, "Battery level", ladder, n.batteryLowThreshold(),
            [](double p) { return menubar::Format::fixed(0, p) + "%"; }, true));
    }
    battery.rows.push_back(toggle(s, keys::batteryFull, "Fully charged",
                                  f.hasBattery ? "When you can unplug" : noBattery));
    blocks.push_back(battery);

    SettingsBlock fun;
    fun.title = "Fun";
    fun.rows.push_back(toggle(s, keys::achievementUnlocked, "Achievements",
                              "When " + f.mascotName + " earns a badge and its Fish"));
    SettingsRow test = button(RowAction::testNotification, "testNotification", "Try it out",
                              "Send a test notification");
    test.detail = f.testNotificationResult.empty() ? "See how notifications look on this desktop"
                                                   : f.testNotificationResult;
    fun.rows.push_back(test);
    blocks.push_back(fun);
    return blocks;
}

std::vector<SettingsBlock> weather(const settings::AppSettings& s, const SettingsFacts& f) {
    std::vector<SettingsBlock> blocks;
    SettingsBlock city;
    city.title = "City";
    if (f.placeName) {
        SettingsRow place;
        place.id = "place";
        place.kind = RowKind::place;
        place.title = *f.placeName;
        place.detail = "Weather for this place";
        place.action = RowAction::clearPlace;
        place.actionLabel = "Clear";
        city.rows.push_back(place);
    }
    SettingsRow search;
    search.id = "placeSearch";
    search.kind = RowKind::placeSearch;
    search.key = keys::weatherLocation;
    search.title = f.placeName ? "Change city" : "Search for a city";
    city.rows.push_back(search);
    city.footer = std::string(weatherPrivacySentence);
    blocks.push_back(city);

    SettingsBlock where;
    where.title = "Show the weather";
    where.rows.push_back(toggle(s, keys::weatherShowInHeader, "In the panel header",
                                "The sky and the temperature above the tabs"));
    where.rows.push_back(toggle(s, keys::weatherShowInMenuBar, "In the menu bar",
                                "The temperature beside " + f.mascotName));
    blocks.push_back(where);
    return blocks;
}

std::vector<SettingsBlock> about(const SettingsFacts& f) {
    std::vector<SettingsBlock> blocks;
    SettingsBlock app;
    SettingsRow name;
    name.id = "about";
    name.kind = RowKind::about;
    name.title = "Trotlet";
    name.detail = "Version " + f.version + (f.build.empty() ? "" : " (build " + f.build + ")");
    name.valueText = "A menu bar system monitor with a running mascot";
    app.rows.push_back(name);
    if (f.updatesAvailable) {
        app.rows.push_back(
            button(RowAction::checkForUpdates, "checkForUpdates", "Updates", "Check for updates",
                   f.updateLine.empty() ? "Look for a newer version now" : f.updateLine));
    }
    blocks.push_back(app);

    SettingsBlock files;
    files.title = "Files";
    SettingsRow config;
    config.id = "configFolder";
    config.kind = RowKind::path;
    config.title = "Settings";
    config.path = f.configDir;
    config.action = RowAction::openConfigFolder;
    config.actionLabel = "Open";
    SettingsRow data = config;
    data.id = "dataFolder";
    data.title = "Fish and weather";
    data.path = f.dataDir;
    data.action = RowAction::openDataFolder;
    // An in-memory session writes no files: there is no folder to open.
    for (SettingsRow* row : {&config, &data}) {
        if (!row->path.empty()) continue;
        row->path = "Kept in memory for this session";
        row->action = RowAction::none;
        row->actionLabel.clear();
    }
    files.rows.push_back(config);
    files.rows.push_back(data);
    blocks.push_back(files);

    SettingsBlock legal;
    SettingsRow licence;
    licence.id = "licence";
    licence.kind = RowKind::licence;
    licence.title = "MIT licence";
    licence.detail = "Free to use, copy, change and share";
    licence.actionLabel = "Show";
    legal.rows.push_back(licence);
    SettingsRow quit = button(RowAction::quit, "quit", "Quit Trotlet", "Quit",
                              f.mascotName + " leaves the menu bar until you start Trotlet again");
    quit.destructive = true;
    legal.rows.push_back(quit);
    blocks.push_back(legal);
    return blocks;
}

}  // namespace

SectionLook sectionLook(SettingsSection section) {
    switch (section) {
        case SettingsSection::general:
            return {"General", "gearshape.fill", "blue"};
        case SettingsSection::menuBar:
            return {"Menu bar", "menubar.rectangle", "indigo"};
        case SettingsSection::mascot:
            return {"Mascot", "pawprint.fill", "orange"};
        case SettingsSection::monitoring:
            return {"Monitoring", "gauge", "teal"};
        case SettingsSection::notifications:
            return {"Notifications", "bell.fill", "pink"};
        case SettingsSection::weather:
            return {"Weather", "cloud.sun.fill", "cyan"};
        case SettingsSection::about:
            return {"About", "info.circle.fill", "purple"};
    }
    return {};
}

std::vector<SettingsFacts::Card> cardFacts(const layout::LayoutStore& layout) {
    std::vector<SettingsFacts::Card> cards;
    const auto resolved = layout.layout();
    for (const auto& kind : layout.registry().all()) {
        bool visible = kind.defaultVisible;
        for (const auto& card : resolved.cards)
            if (card.id == kind.id) visible = !card.hidden;
        cards.push_back({kind.id, kind.title, visible});
    }
    return cards;
}

std::vector<SettingsBlock> settingsBlocks(SettingsSection section,
                                          const settings::AppSettings& settings,
                                          const SettingsFacts& facts) {
    switch (section) {
        case SettingsSection::general:
            return general(settings, facts);
        case SettingsSection::menuBar:
            return menuBar(settings, facts);
        case SettingsSection::mascot:
            return mascot(settings, facts);
        case SettingsSection::monitoring:
            return monitoring(settings, facts);
        case SettingsSection::notifications:
            return notifications(settings, facts);
        case SettingsSection::weather:
            return weather(settings, facts);
        case SettingsSection::about:
            return about(facts);
    }
    return {};
}

std::string sectionSummary(SettingsSection section, const settings::AppSettings& s,
                           const SettingsFacts& f) {
    switch (section) {
        case SettingsSection::general:
            return join({s.general().launchAtLogin() ? "Starts at login" : "Starts by hand",
                         s.general().globalShortcutEnabled() && !f.shortcutText.empty()
                             ? f.shortcutText
                             : "No shortcut"});
        case SettingsSection::menuBar: {
            const auto metric = s.menuBar().textMetric();
            std::string shown = !s.menuBar().showMascot() ? "Reading only"
                                : metric == settings::MenuBarTextMetric::none
                                    ? f.mascotName + " alone"
                                    : f.mascotName + " and " + readingName(metric);
            if (!s.menuBar().showMascot() && metric == settings::MenuBarTextMetric::none)
                shown = "Still icon";
            return join(
                {shown, std::string("Speed follows ") + sourceName(s.menuBar().speedSource())});
        }
        case SettingsSection::mascot: {
            std::vector<std::string> on;
            if (s.mascot().stateReactions()) on.push_back("Reactions");
            if (s.mascot().sleepWhenIdle()) on.push_back("naps");
            if (s.mascot().showMoodLine()) on.push_back("mood line");
            if (s.mascot().goldenFish()) on.push_back("Golden Fish");
            if (on.empty()) return "Just running";
            on.front()[0] = char(std::toupper(static_cast<unsigned char>(on.front()[0])));
            return join(on, ", ");
        }
        case SettingsSection::monitoring: {
            const bool f2 =
                s.monitoring().temperatureUnit() == settings::TemperatureUnit::fahrenheit;
            const bool bits = s.monitoring().networkUnit() == settings::NetworkUnit::bits;
            return join({"Every " + seconds(s.monitoring().updateInterval()), f2 ? "°F" : "°C",
                         bits ? "Mbps" : "MB/s"});
        }
        case SettingsSection::notifications: {
            const auto& n = s.notifications();
            const int on = int(n.highCPU()) + int(n.highTemperature()) + int(n.memoryCritical()) +
                           int(n.diskAlmostFull()) + int(n.batteryLow()) + int(n.batteryFull());
            const std::string alerts = on == 0   ? "All alerts off"
                                       : on == 1 ? "1 alert on"
                                                 : std::to_string(on) + " alerts on";
            return join({alerts, n.achievementUnlocked() ? "achievements" : ""}, ", ");
        }
        case SettingsSection::weather:
            return f.placeName ? *f.placeName : "No city chosen";
        case SettingsSection::about:
            return "Version " + f.version;
    }
    return {};
}

std::vector<double> ladderWith(std::vector<double> ladder, double current) {
    if (!std::isfinite(current)) return ladder;
    for (double v : ladder)
        if (std::abs(v - current) < 1e-9) return ladder;
    ladder.insert(std::upper_bound(ladder.begin(), ladder.end(), current), current);
    return ladder;
}

std::optional<std::size_t> optionMatching(const std::vector<RowOption>& options,
                                          const SettingValue& value) {
    for (std::size_t i = 0; i < options.size(); ++i) {
        const SettingValue& o = options[i].value;
        if (o.is_number() && value.is_number()) {
            if (std::abs(o.get<double>() - value.get<double>()) < 1e-9) return i;
        } else if (o == value) {
            return i;
        }
    }
    return std::nullopt;
}

NotificationText testNotification(const std::string& mascotName) {
    return {mascotName + " says hello",
            "This is how Trotlet's notifications look. Choose which ones you get in Settings."};
}

TrayPreview trayPreview(const settings::AppSettings& s, const metrics::MetricsSnapshot* sample,
                        std::optional<double> weatherCelsius) {
    TrayPreview preview;
    preview.mascot = s.menuBar().showMascot();
    preview.textFirst = s.menuBar().textPosition() == settings::MenuBarTextPosition::left;
    if (sample)
        preview.text =
            menubar::tickerText(s.menuBar().textMetric(), *sample, s.monitoring().temperatureUnit(),
                                s.monitoring().networkUnit());
    if (weatherCelsius && s.weather().showInMenuBar()) {
        const bool fahrenheit =
            s.monitoring().temperatureUnit() == settings::TemperatureUnit::fahrenheit;
        preview.text += (preview.text.empty() ? "" : "  ") +
                        weather::temperatureText(*weatherCelsius, fahrenheit);
    }
    return preview;
}

PlaceLine placeLine(const weather::WeatherLocation& place) {
    std::vector<std::string> where;
    // "Land Berlin" for Berlin, "Tokyo" for Tokyo: a region that repeats the name says nothing.
    if (place.region && !place.region->empty() &&
        place.region->find(place.name) == std::string::npos)
        where.push_back(*place.region);
    if (place.country && !place.country->empty()) where.push_back(*place.country);
    return {place.name, join(where, ", ")};
}

std::string placeWords(const weather::WeatherLocation& place) {
    const PlaceLine line = placeLine(place);
    return line.where.empty() ? line.name : line.name + ", " + line.where;
}

std::string placeSearchLine(PlaceSearchPhase phase, const std::string& query,
                            const std::string& errorMessage) {
    switch (phase) {
        case PlaceSearchPhase::idle:
        case PlaceSearchPhase::results:
            return {};
        case PlaceSearchPhase::loading:
        case PlaceSearchPhase::searching:
            return "Searching…";
        case PlaceSearchPhase::empty:
            return "No place called “" + query + "”";
        case PlaceSearchPhase::failed:
            return errorMessage;
    }
    return {};
}

ShortcutVerdict judgeShortcut(bool keyKnown, int modifiers) {
    constexpr int command = 256, option = 2048, control = 4096;
    if (!(modifiers & (command | option | control)))
        return {false, "Add Ctrl, Alt or Super, so the keys stay free for typing"};
    if (!keyKnown) return {false, "That key can't be part of a shortcut. Try a letter or a number"};
    return {true, {}};
}

std::string recordingPrompt(int modifiers) {
    std::string held;
    if (modifiers & 256) held += "Super+";
    if (modifiers & 4096) held += "Ctrl+";
    if (modifiers & 2048) held += "Alt+";
    if (modifiers & 512) held += "Shift+";
    return held.empty() ? "Press a shortcut" : held + "…";
}

}  // namespace trotlet::panel
