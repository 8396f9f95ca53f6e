#pragma once

#include <array>
#include <bitset>
#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "alerts/AlertKind.h"
#include "alerts/AppEvent.h"
#include "menubar/DisplayUnits.h"
#include "metrics/MetricsSnapshot.h"

namespace trotlet::alerts {

using metrics::Timestamp;
using Json = nlohmann::ordered_json;

// Decides, sample by sample and event by event, which desktop notifications are due. A plain
// value with no clock and no side effects: the notification controller feeds it and posts what
// comes back, and the notification simulation replays scripted timelines through it.
//
// Each kind is armed until it fires; firing disarms it, and it re-arms only when its condition
// has clearly gone away, so a reading hovering at a threshold never repeats. On top of that a
// kind has a cooldown, the metric kinds share an hourly budget and the fun kinds another, and
// while the panel is open a metric alert is held (stays armed) while an event is dropped.
class AlertRules {
public:
    struct Preferences {
        bool highCPU = false;
        double highCPUThreshold = 0.9;    // fraction of all cores together
        double highCPUHoldSeconds = 120;  // not a setting
        bool highTemperature = true;
        bool batteryLow = true;
        int batteryLowThreshold = 15;     // percent
        bool batteryFull = false;
        bool diskAlmostFull = true;
        int diskFreeThresholdGB = 10;     // decimal gigabytes
        bool memoryCritical = true;
        bool achievementUnlocked = true;

        bool operator==(const Preferences&) const = default;
    };

    struct Alert {
        AlertKind kind = AlertKind::highTemperature;
        std::string title;
        std::string body;

        std::string identifier() const { return notificationIdentifier(kind); }
        bool operator==(const Alert&) const = default;
    };

    // Either a post carrying its alert, or a suppression naming the kind and why.
    struct Decision {
        enum class Type { post, suppressed };
        Type type = Type::post;
        Alert alert;          // post: the alert; suppressed: only `alert.kind` is meaningful
        std::string reason;   // suppressed only

        static Decision post(Alert alert);
        static Decision suppressed(AlertKind kind, std::string reason);

        AlertKind kind() const { return alert.kind; }
        bool isPost() const { return type == Type::post; }
        bool operator==(const Decision&) const = default;
    };

    static constexpr double temperatureEnterC = 108;
    static constexpr double temperatureRearmBelowC = 90;
    static constexpr double memoryCriticalHoldSeconds = 10;
    static constexpr int batteryLowRearmMargin = 5;    // percent above the threshold
    static constexpr int batteryFullRearmBelow = 95;   // percent
    static constexpr int diskRearmMarginGB = 2;
    static constexpr double cpuRearmMargin = 0.1;      // fraction below the threshold
    static constexpr double budgetWindowSeconds = 3600;

    AlertRules() : AlertRules(Preferences{}, "") {}
    AlertRules(Preferences preferences, std::string mascotName,
               menubar::TemperatureUnit unit = menubar::TemperatureUnit::celsius);

    // Runs the six metric rules in their fixed order and returns their decisions in that order.
    std::vector<Decision> evaluate(const metrics::MetricsSnapshot& snapshot, Timestamp now,
                                   bool panelOpen);

    // Turns an app event into an achievement or purchase alert. An event while the panel is open
    // is dropped, not held: the user is looking at the panel that already shows it.
    std::vector<Decision> event(const AppEvent& event, Timestamp now, bool panelOpen);

    // Settings changes keep the arming and budget state, so toggling a switch cannot replay
    // alerts that already fired.
    void setPreferences(const Preferences& preferences) { preferences_ = preferences; }
    void setMascotName(std::string name) { mascotName_ = std::move(name); }
    void setTemperatureUnit(menubar::TemperatureUnit unit) { temperatureUnit_ = unit; }
    // The busiest-process sentence never names the monitor itself.
    void setOwnProcessId(std::optional<std::int32_t> pid) { ownPid_ = pid; }

    const Preferences& preferences() const { return preferences_; }
    const std::string& mascotName() const { return mascotName_; }
    bool isArmed(AlertKind kind) const { return armed_.test(index(kind)); }
    bool isHeld(AlertKind kind) const { return held_.test(index(kind)); }
    std::optional<Timestamp> lastPosted(AlertKind kind) const { return lastPosted_[index(kind)]; }
    std::size_t postsInBudget(AlertBudget budget) const {
        return budget == AlertBudget::alert ? alertPostTimes_.size() : funPostTimes_.size();
    }
    std::optional<Timestamp> memoryCriticalSince() const { return memoryCriticalSince_; }
    std::optional<Timestamp> highCPUSince() const { return highCPUSince_; }

    // The state in field order, for traces and the simulation.
    Json stateJson() const;

    // The firing step every rule ends in. Public so that tests can spend a budget directly.
    std::optional<Decision> fire(AlertKind kind, std::string title, std::string body,
                                 Timestamp now, bool panelOpen, bool eventWhilePanelOpen);

private:
    static std::size_t index(AlertKind kind) { return static_cast<std::size_t>(kind); }
    void arm(AlertKind kind) { armed_.set(index(kind)); }
    void disarm(AlertKind kind) { armed_.reset(index(kind)); }

    void ruleHighTemperature(const metrics::MetricsSnapshot& s, Timestamp now, bool panelOpen,
                             std::vector<Decision>& out);
    void ruleBatteryLow(const metrics::MetricsSnapshot& s, Timestamp now, bool panelOpen,
                        std::vector<Decision>& out);
    void ruleBatteryFull(const metrics::MetricsSnapshot& s, Timestamp now, bool panelOpen,
                         std::vector<Decision>& out);
    void ruleMemoryCritical(const metrics::MetricsSnapshot& s, Timestamp now, bool panelOpen,
                            std::vector<Decision>& out);
    void ruleDiskAlmostFull(const metrics::MetricsSnapshot& s, Timestamp now, bool panelOpen,
                            std::vector<Decision>& out);
    void ruleHighCPU(const metrics::MetricsSnapshot& s, Timestamp now, bool panelOpen,
                     std::vector<Decision>& out);

    Preferences preferences_;
    std::string mascotName_;
    menubar::TemperatureUnit temperatureUnit_ = menubar::TemperatureUnit::celsius;
    std::optional<std::int32_t> ownPid_;

    std::bitset<alertKindCount> armed_;
    std::array<std::optional<Timestamp>, alertKindCount> lastPosted_{};
    std::deque<Timestamp> alertPostTimes_;
    std::deque<Timestamp> funPostTimes_;
    std::bitset<alertKindCount> held_;
    std::optional<Timestamp> memoryCriticalSince_;
    std::optional<Timestamp> highCPUSince_;
};

Json toJson(const AlertRules::Preferences& preferences);
Json toJson(const AlertRules::Alert& alert);
// {"post": {alert}} or {"suppressed": {"kind": ..., "reason": ...}}.
Json toJson(const AlertRules::Decision& decision);
Json toJson(const std::vector<AlertRules::Decision>& decisions);

// One line for the debug log: "post highCPU: <title>" or "suppressed batteryLow: <reason>".
std::string describe(const AlertRules::Decision& decision);

}  // namespace trotlet::alerts
