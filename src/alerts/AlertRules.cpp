#include "alerts/AlertRules.h"

#include <algorithm>
#include <cmath>

#include "alerts/AlertTexts.h"
#include "metrics/IsoTime.h"

namespace trotlet::alerts {

namespace {

double secondsBetween(Timestamp from, Timestamp to) {
    return std::chrono::duration<double>(to - from).count();
}

// The mascot's reading rule: the CPU package when the machine reports one, else the hottest
// reading. A non-finite value from a broken sensor counts as no reading.
std::optional<double> primaryTemperature(const metrics::ThermalMetrics& thermal) {
    std::optional<double> t = thermal.cpuC ? thermal.cpuC : thermal.hottestC();
    if (t && !std::isfinite(*t)) t.reset();
    return t;
}

// The busiest process other than the monitor, as the latest sample has it.
std::optional<std::string> busiestProcess(const metrics::ProcessMetrics& processes,
                                          std::optional<std::int32_t> ownPid) {
    const std::vector<metrics::ProcessRow>& rows =
        !processes.topCPU.empty() || !processes.all ? processes.topCPU : *processes.all;
    const metrics::ProcessRow* best = nullptr;
    for (const metrics::ProcessRow& row : rows) {
        if (ownPid && row.pid == *ownPid) continue;
        if (row.name.empty()) continue;
        if (!best || row.cpuPercent > best->cpuPercent) best = &row;
    }
    if (!best) return std::nullopt;
    return best->name;
}

}  // namespace

AlertRules::Decision AlertRules::Decision::post(Alert alert) {
    Decision d;
    d.type = Type::post;
    d.alert = std::move(alert);
    return d;
}

AlertRules::Decision AlertRules::Decision::suppressed(AlertKind kind, std::string reason) {
    Decision d;
    d.type = Type::suppressed;
    d.alert.kind = kind;
    d.reason = std::move(reason);
    return d;
}

AlertRules::AlertRules(Preferences preferences, std::string mascotName,
                       menubar::TemperatureUnit unit)
    : preferences_(preferences), mascotName_(std::move(mascotName)), temperatureUnit_(unit) {
    armed_.set();
}

std::optional<AlertRules::Decision> AlertRules::fire(AlertKind kind, std::string title,
                                                     std::string body, Timestamp now,
                                                     bool panelOpen, bool eventWhilePanelOpen) {
    if (!isArmed(kind)) return std::nullopt;

    if (eventWhilePanelOpen) {
        disarm(kind);
        return Decision::suppressed(kind, "panel open");
    }

    if (panelOpen) {
        const bool wasHeld = isHeld(kind);
        held_.set(index(kind));
        if (wasHeld) return std::nullopt;
        return Decision::suppressed(kind, "panel open (held, stays armed)");
    }

    held_.reset(index(kind));
    const auto cooldown = cooldownOf(kind);
    if (const auto& last = lastPosted_[index(kind)];
        last && now - *last < std::chrono::duration_cast<Timestamp::duration>(cooldown)) {
        disarm(kind);
        const auto minutes = std::chrono::duration_cast<std::chrono::minutes>(cooldown).count();
        return Decision::suppressed(kind, "cooldown " + std::to_string(minutes) + " min");
    }

    const AlertBudget budget = budgetOf(kind);
    std::deque<Timestamp>& posts = budget == AlertBudget::alert ? alertPostTimes_ : funPostTimes_;
    std::erase_if(posts, [&](Timestamp t) { return secondsBetween(t, now) >= budgetWindowSeconds; });
    disarm(kind);
    if (posts.size() < budgetLimit(budget)) {
        lastPosted_[index(kind)] = now;
        posts.push_back(now);
        return Decision::post(Alert{kind, std::move(title), std::move(body)});
    }
    return Decision::suppressed(kind, std::string(rawName(budget)) + " budget " +
                                          std::to_string(budgetLimit(budget)) + "/h");
}

std::vector<AlertRules::Decision> AlertRules::evaluate(const metrics::MetricsSnapshot& snapshot,
                                                       Timestamp now, bool panelOpen) {
    std::vector<Decision> out;
    ruleHighTemperature(snapshot, now, panelOpen, out);
    ruleBatteryLow(snapshot, now, panelOpen, out);
    ruleBatteryFull(snapshot, now, panelOpen, out);
    ruleMemoryCritical(snapshot, now, panelOpen, out);
    ruleDiskAlmostFull(snapshot, now, panelOpen, out);
    ruleHighCPU(snapshot, now, panelOpen, out);
    return out;
}

namespace {
void append(std::vector<AlertRules::Decision>& out, std::optional<AlertRules::Decision> d) {
    if (d) out.push_back(std::move(*d));
}
}  // namespace

void AlertRules::ruleHighTemperature(const metrics::MetricsSnapshot& s, Timestamp now,
                                     bool panelOpen, std::vector<Decision>& out) {
    const std::optional<double> t = primaryTemperature(s.thermal);
    const bool stateHot = s.thermal.state >= metrics::ThermalState::serious;
    const bool hot = stateHot || (t && *t >= temperatureEnterC);
    if (hot) {
        if (!preferences_.highTemperature) return;
        std::optional<double> hottest = s.thermal.hottestC();
        if (!hottest || !std::isfinite(*hottest)) hottest = t;
        append(out, fire(AlertKind::highTemperature, texts::highTemperatureTitle(mascotName_),
                         texts::highTemperatureBody(hottest, s.thermal.state, temperatureUnit_),
                         now, panelOpen, false));
        return;
    }
    // Between the two levels with a calm thermal state: a long compile can sit at 100 °C for
    // an hour, and that is neither news nor a reason to re-arm.
    if (!t || *t < temperatureRearmBelowC) arm(AlertKind::highTemperature);
}

void AlertRules::ruleBatteryLow(const metrics::MetricsSnapshot& s, Timestamp now, bool panelOpen,
                                std::vector<Decision>& out) {
    const metrics::BatteryMetrics& b = s.battery;
    if (!b.present) return;
    const int threshold = preferences_.batteryLowThreshold;
    if (!b.pluggedIn && !b.charging && b.percent <= threshold) {
        if (!preferences_.batteryLow) return;
        append(out, fire(AlertKind::batteryLow, texts::batteryLowTitle(b.percent),
                         texts::batteryLowBody(mascotName_, b.timeRemainingMin), now, panelOpen,
                         false));
        return;
    }
    if (b.pluggedIn || b.charging || b.percent >= std::int64_t(threshold) + batteryLowRearmMargin)
        arm(AlertKind::batteryLow);
}

void AlertRules::ruleBatteryFull(const metrics::MetricsSnapshot& s, Timestamp now, bool panelOpen,
                                 std::vector<Decision>& out) {
    const metrics::BatteryMetrics& b = s.battery;
    if (!b.present) return;
    const bool full = b.fullyCharged || b.percent > 99;
    // A battery held at a charge limit (say 80 %) reports itself full below 95 %; re-arming
    // there would post again after every cooldown, so a battery that still says full stays
    // disarmed.
    if (b.percent < batteryFullRearmBelow && !(b.pluggedIn && full)) arm(AlertKind::batteryFull);
    if (!b.pluggedIn) return;
    arm(AlertKind::batteryLow);
    if (preferences_.batteryFull && full)
        append(out, fire(AlertKind::batteryFull, texts::batteryFullTitle(), texts::batteryFullBody(),
                         now, panelOpen, false));
}

void AlertRules::ruleMemoryCritical(const metrics::MetricsSnapshot& s, Timestamp now,
                                    bool panelOpen, std::vector<Decision>& out) {
    const metrics::MemoryPressure pressure = s.memory.pressure;
    if (pressure == metrics::MemoryPressure::unknown) return;
    if (pressure == metrics::MemoryPressure::critical) {
        if (!memoryCriticalSince_) memoryCriticalSince_ = now;
        if (preferences_.memoryCritical &&
            secondsBetween(*memoryCriticalSince_, now) >= memoryCriticalHoldSeconds)
            append(out, fire(AlertKind::memoryCritical, texts::memoryCriticalTitle(),
                             texts::memoryCriticalBody(), now, panelOpen, false));
        return;
    }
    memoryCriticalSince_.reset();
    if (pressure == metrics::MemoryPressure::normal) arm(AlertKind::memoryCritical);
}

void AlertRules::ruleDiskAlmostFull(const metrics::MetricsSnapshot& s, Timestamp now,
                                    bool panelOpen, std::vector<Decision>& out) {
    const std::optional<metrics::VolumeInfo> root = s.disks.rootVolume();
    if (!root || !root->hasSpace()) return;  // unknown space neither fires nor re-arms
    const double freeGB = double(*root->availableBytes) / 1e9;
    const double threshold = preferences_.diskFreeThresholdGB;
    if (freeGB < threshold) {
        if (!preferences_.diskAlmostFull) return;
        append(out, fire(AlertKind::diskAlmostFull, texts::diskAlmostFullTitle(root->name),
                         texts::diskAlmostFullBody(*root->availableBytes), now, panelOpen, false));
        return;
    }
    if (freeGB >= threshold + diskRearmMarginGB) arm(AlertKind::diskAlmostFull);
}

void AlertRules::ruleHighCPU(const metrics::MetricsSnapshot& s, Timestamp now, bool panelOpen,
                             std::vector<Decision>& out) {
    const double c = s.cpu.total;
    const double threshold = preferences_.highCPUThreshold;
    if (!(c >= threshold)) {
        highCPUSince_.reset();
        if (c < threshold - cpuRearmMargin) arm(AlertKind::highCPU);
        return;
    }
    if (!highCPUSince_) highCPUSince_ = now;
    const double held = secondsBetween(*highCPUSince_, now);
    if (!preferences_.highCPU || held < preferences_.highCPUHoldSeconds) return;
    append(out, fire(AlertKind::highCPU, texts::highCPUTitle(mascotName_),
                     texts::highCPUBody(c, std::int64_t(std::floor(held / 60)),
                                        busiestProcess(s.processes, ownPid_)),
                     now, panelOpen, false));
}

std::vector<AlertRules::Decision> AlertRules::event(const AppEvent& event, Timestamp now,
                                                    bool panelOpen) {
    std::vector<Decision> out;
    if (const auto* a = std::get_if<AchievementUnlocked>(&event)) {
        if (!preferences_.achievementUnlocked) return out;
        // Each event is news of its own, so it arms its kind; no metric rule ever would.
        arm(AlertKind::achievement);
        append(out, fire(AlertKind::achievement, texts::achievementTitle(*a),
                         texts::achievementBody(*a), now, panelOpen, panelOpen));
    } else if (const auto* r = std::get_if<CheckInReminder>(&event)) {
        arm(AlertKind::checkInReminder);
        append(out, fire(AlertKind::checkInReminder, texts::checkInReminderTitle(),
                         texts::checkInReminderBody(*r), now, panelOpen, panelOpen));
    } else if (const auto* p = std::get_if<MascotPurchased>(&event)) {
        arm(AlertKind::purchase);
        append(out, fire(AlertKind::purchase, texts::purchaseTitle(*p), texts::purchaseBody(), now,
                         panelOpen, panelOpen));
    }
    return out;
}

Json AlertRules::stateJson() const {
    Json armed = Json::array();
    Json held = Json::array();
    Json last = Json::object();
    for (std::size_t i = 0; i < alertKindCount; ++i) {
        const auto kind = static_cast<AlertKind>(i);
        if (isArmed(kind)) armed.push_back(rawName(kind));
        if (isHeld(kind)) held.push_back(rawName(kind));
        if (lastPosted_[i]) last[std::string(rawName(kind))] = metrics::formatIso8601(*lastPosted_[i]);
    }
    auto times = [](const std::deque<Timestamp>& list) {
        Json a = Json::array();
        for (Timestamp t : list) a.push_back(metrics::formatIso8601(t));
        return a;
    };
    Json j;
    j["mascotName"] = mascotName_;
    j["armed"] = armed;
    j["lastPosted"] = last;
    j["alertPostTimes"] = times(alertPostTimes_);
    j["funPostTimes"] = times(funPostTimes_);
    j["held"] = held;
    if (memoryCriticalSince_) j["memoryCriticalSince"] = metrics::formatIso8601(*memoryCriticalSince_);
    if (highCPUSince_) j["highCPUSince"] = metrics::formatIso8601(*highCPUSince_);
    return j;
}

Json toJson(const AlertRules::Preferences& p) {
    Json j;
    j["highCPU"] = p.highCPU;
    j["highCPUThreshold"] = p.highCPUThreshold;
    j["highCPUHoldSeconds"] = p.highCPUHoldSeconds;
    j["highTemperature"] = p.highTemperature;
    j["batteryLow"] = p.batteryLow;
    j["batteryLowThreshold"] = p.batteryLowThreshold;
    j["batteryFull"] = p.batteryFull;
    j["diskAlmostFull"] = p.diskAlmostFull;
    j["diskFreeThresholdGB"] = p.diskFreeThresholdGB;
    j["memoryCritical"] = p.memoryCritical;
    j["achievementUnlocked"] = p.achievementUnlocked;
    return j;
}

Json toJson(const AlertRules::Alert& alert) {
    Json j;
    j["kind"] = rawName(alert.kind);
    j["title"] = alert.title;
    j["body"] = alert.body;
    return j;
}

Json toJson(const AlertRules::Decision& decision) {
    Json j;
    if (decision.isPost()) {
        j["post"] = toJson(decision.alert);
    } else {
        Json s;
        s["kind"] = rawName(decision.kind());
        s["reason"] = decision.reason;
        j["suppressed"] = s;
    }
    return j;
}

Json toJson(const std::vector<AlertRules::Decision>& decisions) {
    Json a = Json::array();
    for (const auto& d : decisions) a.push_back(toJson(d));
    return a;
}

std::string describe(const AlertRules::Decision& decision) {
    std::string line = decision.isPost() ? "post " : "suppressed ";
    line += rawName(decision.kind());
    line += ": ";
    line += decision.isPost() ? decision.alert.title + " / " + decision.alert.body : decision.reason;
    return line;
}

}  // namespace trotlet::alerts
