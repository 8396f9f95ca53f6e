#include "settings/KeyedAccess.h"

#include <functional>

#include "settings/SettingsKeys.h"

namespace trotlet::settings::keyed {
namespace {

struct Entry {
    std::string key;
    std::function<SettingValue(const AppSettings&)> get;
    std::function<bool(AppSettings&, const SettingValue&)> set;
};

using S = AppSettings;

Entry flag(const std::string& key, std::function<bool(const S&)> get,
           std::function<void(S&, bool)> set) {
    return {key, [get](const S& s) { return SettingValue(get(s)); },
            [set](S& s, const SettingValue& v) {
                auto b = stored::asBool(v);
                if (b) set(s, *b);
                return b.has_value();
            }};
}

Entry whole(const std::string& key, std::function<int(const S&)> get,
            std::function<void(S&, int)> set) {
    return {key, [get](const S& s) { return SettingValue(get(s)); },
            [set](S& s, const SettingValue& v) {
                auto n = stored::asInt(v);
                if (n) set(s, *n);
                return n.has_value();
            }};
}

Entry real(const std::string& key, std::function<double(const S&)> get,
           std::function<void(S&, double)> set) {
    return {key, [get](const S& s) { return SettingValue(get(s)); },
            [set](S& s, const SettingValue& v) {
                auto d = stored::asDouble(v);
                if (d) set(s, *d);
                return d.has_value();
            }};
}

template <typename E, size_t N>
Entry choice(const std::string& key, const std::array<std::string_view, N>& names,
             std::function<E(const S&)> get, std::function<void(S&, E)> set) {
    return {key,
            [get, &names](const S& s) { return SettingValue(std::string(rawName(get(s), names))); },
            [set, &names](S& s, const SettingValue& v) {
                auto e = stored::asEnum<E>(v, names);
                if (e) set(s, *e);
                return e.has_value();
            }};
}

Entry optionalText(const std::string& key,
                   std::function<const std::optional<std::string>&(const S&)> get,
                   std::function<void(S&, std::optional<std::string>)> set) {
    return {key,
            [get](const S& s) {
                const auto& text = get(s);
                return text ? SettingValue(*text) : SettingValue(nullptr);
            },
            [set](S& s, const SettingValue& v) {
                if (v.is_null()) {
                    set(s, std::nullopt);
                    return true;
                }
                auto text = stored::asString(v);
                if (text) set(s, *text);
                return text.has_value();
            }};
}

const std::vector<Entry>& table() {
    static const std::vector<Entry> entries = {
        flag(
            keys::launchAtLogin, [](const S& s) { return s.general().launchAtLogin(); },
            [](S& s, bool v) { s.general().setLaunchAtLogin(v); }),
        choice<AppearancePreference>(
            keys::appearance, AppearancePreferenceNames,
            [](const S& s) { return s.general().appearance(); },
            [](S& s, AppearancePreference v) { s.general().setAppearance(v); }),
        flag(
            keys::globalShortcutEnabled,
            [](const S& s) { return s.general().globalShortcutEnabled(); },
            [](S& s, bool v) { s.general().setGlobalShortcutEnabled(v); }),
        whole(
            keys::globalShortcutKeyCode,
            [](const S& s) { return s.general().globalShortcutKeyCode(); },
            [](S& s, int v) { s.general().setGlobalShortcutKeyCode(v); }),
        whole(
            keys::globalShortcutModifiers,
            [](const S& s) { return s.general().globalShortcutModifiers(); },
            [](S& s, int v) { s.general().setGlobalShortcutModifiers(v); }),
        flag(
            keys::checkInReminders, [](const S& s) { return s.general().checkInReminders(); },
            [](S& s, bool v) { s.general().setCheckInReminders(v); }),
        flag(
            keys::hasCompletedOnboarding,
            [](const S& s) { return s.general().hasCompletedOnboarding(); },
            [](S& s, bool v) { s.general().setHasCompletedOnboarding(v); }),
        flag(
            keys::hasFinishedOnboardingOnce,
            [](const S& s) { return s.general().hasFinishedOnboardingOnce(); },
            [](S& s, bool v) { s.general().setHasFinishedOnboardingOnce(v); }),

        real(
            keys::updateInterval, [](const S& s) { return s.monitoring().updateInterval(); },
            [](S& s, double v) { s.monitoring().setUpdateInterval(v); }),
        choice<TemperatureUnit>(
            keys::temperatureUnit, TemperatureUnitNames,
            [](const S& s) { return s.monitoring().temperatureUnit(); },
            [](S& s, TemperatureUnit v) { s.monitoring().setTemperatureUnit(v); }),
        choice<NetworkUnit>(
            keys::networkUnit, NetworkUnitNames,
            [](const S& s) { return s.monitoring().networkUnit(); },
            [](S& s, NetworkUnit v) { s.monitoring().setNetworkUnit(v); }),
        flag(
            keys::showPerCoreCPU, [](const S& s) { return s.monitoring().showPerCoreCPU(); },
            [](S& s, bool v) { s.monitoring().setShowPerCoreCPU(v); }),
        {keys::hiddenCards, [](const S& s) { return SettingValue(s.monitoring().hiddenCards()); },
         [](S& s, const SettingValue& v) {
             auto list = stored::asStringList(v);
             if (list) s.monitoring().setHiddenCards(*list);
             return list.has_value();
         }},
        whole(
            keys::processListSize, [](const S& s) { return s.monitoring().processListSize(); },
            [](S& s, int v) { s.monitoring().setProcessListSize(v); }),

        flag(
            keys::showMascot, [](const S& s) { return s.menuBar().showMascot(); },
            [](S& s, bool v) { s.menuBar().setShowMascot(v); }),
        choice<MenuBarTextMetric>(
            keys::textMetric, MenuBarTextMetricNames,
            [](const S& s) { return s.menuBar().textMetric(); },
            [](S& s, MenuBarTextMetric v) { s.menuBar().setTextMetric(v); }),
        choice<MenuBarTextPosition>(
            keys::textPosition, MenuBarTextPositionNames,
            [](const S& s) { return s.menuBar().textPosition(); },
            [](S& s, MenuBarTextPosition v) { s.menuBar().setTextPosition(v); }),
        choice<LoadSource>(
            keys::speedSource, LoadSourceNames,
            [](const S& s) { return s.menuBar().speedSource(); },
            [](S& s, LoadSource v) { s.menuBar().setSpeedSource(v); }),
        real(
            keys::speedSensitivity, [](const S& s) { return s.menuBar().speedSensitivity(); },
            [](S& s, double v) { s.menuBar().setSpeedSensitivity(v); }),
        whole(
            keys::maxFPS, [](const S& s) { return s.menuBar().maxFPS(); },
            [](S& s, int v) { s.menuBar().setMaxFPS(v); }),
        flag(
            keys::saveEnergy, [](const S& s) { return s.menuBar().saveEnergy(); },
            [](S& s, bool v) { s.menuBar().setSaveEnergy(v); }),
        flag(
            keys::pauseAnimation, [](const S& s) { return s.menuBar().pauseAnimation(); },
            [](S& s, bool v) { s.menuBar().setPauseAnimation(v); }),
        flag(
            keys::animateWithReduceMotion,
            [](const S& s) { return s.menuBar().animateWithReduceMotion(); },
            [](S& s, bool v) { s.menuBar().setAnimateWithReduceMotion(v); }),

        flag(
            keys::stateReactions, [](const S& s) { return s.mascot().stateReactions(); },
            [](S& s, bool v) { s.mascot().setStateReactions(v); }),
        flag(
            keys::sleepWhenIdle, [](const S& s) { return s.mascot().sleepWhenIdle(); },
            [](S& s, bool v) { s.mascot().setSleepWhenIdle(v); }),
        flag(
            keys::showMoodLine, [](const S& s) { return s.mascot().showMoodLine(); },
            [](S& s, bool v) { s.mascot().setShowMoodLine(v); }),
        flag(
            keys::goldenFish, [](const S& s) { return s.mascot().goldenFish(); },
            [](S& s, bool v) { s.mascot().setGoldenFish(v); }),

        flag(
            keys::highCPU, [](const S& s) { return s.notifications().highCPU(); },
            [](S& s, bool v) { s.notifications().setHighCPU(v); }),
        real(
            keys::highCPUThreshold, [](const S& s) { return s.notifications().highCPUThreshold(); },
            [](S& s, double v) { s.notifications().setHighCPUThreshold(v); }),
        flag(
            keys::highTemperature, [](const S& s) { return s.notifications().highTemperature(); },
            [](S& s, bool v) { s.notifications().setHighTemperature(v); }),
        flag(
            keys::batteryLow, [](const S& s) { return s.notifications().batteryLow(); },
            [](S& s, bool v) { s.notifications().setBatteryLow(v); }),
        whole(
            keys::batteryLowThreshold,
            [](const S& s) { return s.notifications().batteryLowThreshold(); },
            [](S& s, int v) { s.notifications().setBatteryLowThreshold(v); }),
        flag(
            keys::batteryFull, [](const S& s) { return s.notifications().batteryFull(); },
            [](S& s, bool v) { s.notifications().setBatteryFull(v); }),
        flag(
            keys::diskAlmostFull, [](const S& s) { return s.notifications().diskAlmostFull(); },
            [](S& s, bool v) { s.notifications().setDiskAlmostFull(v); }),
        whole(
            keys::diskFreeThresholdGB,
            [](const S& s) { return s.notifications().diskFreeThresholdGB(); },
            [](S& s, int v) { s.notifications().setDiskFreeThresholdGB(v); }),
        flag(
            keys::memoryCritical, [](const S& s) { return s.notifications().memoryCritical(); },
            [](S& s, bool v) { s.notifications().setMemoryCritical(v); }),
        flag(
            keys::achievementUnlocked,
            [](const S& s) { return s.notifications().achievementUnlocked(); },
            [](S& s, bool v) { s.notifications().setAchievementUnlocked(v); }),

        optionalText(
            keys::weatherLocation,
            [](const S& s) -> const std::optional<std::string>& {
                return s.weather().encodedLocation();
            },
            [](S& s, std::optional<std::string> v) {
                s.weather().setEncodedLocation(std::move(v));
            }),
        flag(
            keys::weatherShowInHeader, [](const S& s) { return s.weather().showInHeader(); },
            [](S& s, bool v) { s.weather().setShowInHeader(v); }),
        flag(
            keys::weatherShowInMenuBar, [](const S& s) { return s.weather().showInMenuBar(); },
            [](S& s, bool v) { s.weather().setShowInMenuBar(v); }),

        optionalText(
            keys::layoutOverview,
            [](const S& s) -> const std::optional<std::string>& { return s.layout().overview(); },
            [](S& s, std::optional<std::string> v) { s.layout().setOverview(std::move(v)); }),
    };
    return entries;
}

const Entry* find(const std::string& key) {
    for (const Entry& e : table())
        if (e.key == key) return &e;
    return nullptr;
}

}  // namespace

const std::vector<std::string>& keys() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> out;
        for (const Entry& e : table()) out.push_back(e.key);
        return out;
    }();
    return names;
}

std::optional<SettingValue> value(const AppSettings& settings, const std::string& key) {
    const Entry* e = find(key);
    if (!e) return std::nullopt;
    return e->get(settings);
}

bool set(AppSettings& settings, const std::string& key, const SettingValue& value) {
    const Entry* e = find(key);
    return e && e->set(settings, value);
}

}  // namespace trotlet::settings::keyed
