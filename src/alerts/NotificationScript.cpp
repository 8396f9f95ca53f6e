#include "alerts/NotificationScript.h"

#include <algorithm>

#include "metrics/IsoTime.h"

namespace trotlet::alerts {

namespace {

using metrics::MemoryPressure;
using metrics::ThermalState;

constexpr double kMinute = 60;
constexpr double kHour = 3600;
// The simulated monitor's own process, which a busiest-process sentence must never name.
constexpr std::int32_t kOwnPid = 4242;

using Expect = std::vector<std::string>;

ScriptStep sample(double at, std::string note, SyntheticSample s, Expect expected = {},
                  std::string text = {}) {
    return ScriptStep{at, std::move(note), std::move(s), std::move(expected), std::move(text)};
}

ScriptStep event(double at, std::string note, AppEvent e, Expect expected, std::string text = {}) {
    return ScriptStep{at, std::move(note), std::move(e), std::move(expected), std::move(text)};
}

ScriptStep panel(double at, bool open) {
    return ScriptStep{at, open ? "the user opens the panel" : "the user closes the panel",
                      PanelChange{open}, {}, {}};
}

std::string joined(const std::vector<std::string>& parts) {
    std::string out;
    for (const auto& p : parts) out += (out.empty() ? "" : " | ") + p;
    return out.empty() ? "(nothing)" : out;
}

Json inputJson(const ScriptStep& step) {
    Json j;
    if (const auto* s = std::get_if<SyntheticSample>(&step.input)) {
        j["sample"] = s->summary();
    } else if (const auto* e = std::get_if<AppEvent>(&step.input)) {
        Json ev;
        if (const auto* a = std::get_if<AchievementUnlocked>(e)) {
            ev["type"] = "achievementUnlocked";
            ev["title"] = a->title;
            ev["detail"] = a->detail;
            ev["fishReward"] = a->fishReward;
        } else if (const auto* r = std::get_if<CheckInReminder>(e)) {
            ev["type"] = "checkInReminder";
            ev["reward"] = r->reward;
            ev["streakDay"] = r->streakDay;
        } else {
            ev["type"] = "purchase";
            ev["mascotName"] = std::get<MascotPurchased>(*e).mascotName;
        }
        j["event"] = ev;
    } else {
        j["panel"] = std::get<PanelChange>(step.input).open ? "open" : "closed";
    }
    return j;
}

}  // namespace

Timestamp NotificationScript::startTime() {
    return *metrics::parseIso8601("2026-01-05T09:00:00Z");
}

AlertRules::Preferences NotificationScript::preferences() {
    AlertRules::Preferences p;
    p.highCPU = true;
    p.batteryFull = true;
    return p;
}

std::string NotificationScript::brief(const AlertRules::Decision& d) {
    std::string out = d.isPost() ? "post " : "suppressed ";
    out += rawName(d.kind());
    if (!d.isPost()) out += ": " + d.reason;
    return out;
}

std::vector<Scenario> NotificationScript::scenarios() {
    const SyntheticSample calm{};
    const SyntheticSample hot = calm.withTemperature(97, ThermalState::serious);
    const SyntheticSample cool = calm.withTemperature(85);
    const SyntheticSample trouble =
        calm.withBattery(9).withRootFree(6).withPressure(MemoryPressure::critical).withCpu(0.95);
    const SyntheticSample busy = calm.withCpu(0.94);
    const SyntheticSample critical = calm.withPressure(MemoryPressure::critical);
    const AppEvent nightOwl = AchievementUnlocked{"Night Owl", "Use the computer after midnight", 25};

    std::vector<Scenario> all;

    all.push_back({"highTemperature: cooldown, then the alert budget, then a post", {
        sample(0, "thermal state serious at 97 °C", hot, {"post highTemperature"}, "It's 97°C in here."),
        sample(60, "cools to 85 °C: re-armed", cool),
        sample(10 * kMinute, "hot again 10 min after the post", hot,
               {"suppressed highTemperature: cooldown 30 min"}),
        sample(11 * kMinute, "still hot: disarmed, silent", hot),
        sample(12 * kMinute, "cools again: re-armed", cool),
        sample(kHour + 100, "four other alerts, an hour after the first post",
               trouble, {"post batteryLow", "post diskAlmostFull"}),
        sample(kHour + 110, "memory critical for 10 s", trouble, {"post memoryCritical"}),
        sample(kHour + 220, "CPU high for 120 s", trouble, {"post highCPU"}),
        sample(kHour + 300, "hot after the cooldown, four alerts in the last hour",
               trouble.withTemperature(97, ThermalState::serious),
               {"suppressed highTemperature: alert budget 4/h"}),
        sample(kHour + 400, "cools: re-armed", trouble.withTemperature(85)),
        sample(2 * kHour + 99, "hot, the oldest of the four is 3599 s old",
               trouble.withTemperature(97, ThermalState::serious),
               {"suppressed highTemperature: alert budget 4/h"}),
        sample(2 * kHour + 99.5, "cools: re-armed", trouble.withTemperature(85)),
        sample(2 * kHour + 100, "hot once the oldest of the four is an hour old",
               trouble.withTemperature(97, ThermalState::serious), {"post highTemperature"}),
    }});

    all.push_back({"highTemperature: a long compile at 101.7 °C never alerts", {
        sample(0, "101.7 °C, thermal state nominal", calm.withTemperature(101.7)),
        sample(30 * kMinute, "still 101.7 °C", calm.withTemperature(101.7)),
        sample(kHour, "still 101.7 °C", calm.withTemperature(101.7)),
        sample(kHour + 60, "108 °C", calm.withTemperature(108), {"post highTemperature"}),
    }});

    all.push_back({"batteryLow: held while the panel is open, posted on close", {
        panel(0, true),
        sample(1, "battery at 9 %", calm.withBattery(9),
               {"suppressed batteryLow: panel open (held, stays armed)"}),
        sample(3, "still 9 %, panel open: the hold is reported once", calm.withBattery(9)),
        sample(5, "still 9 %", calm.withBattery(9)),
        panel(6, false),
        sample(7, "first sample after closing", calm.withBattery(9), {"post batteryLow"},
               "Battery low: 9%"),
    }});

    all.push_back({"batteryLow: hovering around the threshold gives one alert", {
        sample(0, "14 %", calm.withBattery(14), {"post batteryLow"}),
        sample(60, "16 %", calm.withBattery(16)),
        sample(120, "14 %", calm.withBattery(14)),
        sample(180, "16 %", calm.withBattery(16)),
        sample(240, "19 %: not yet re-armed", calm.withBattery(19)),
        sample(300, "15 %", calm.withBattery(15)),
        sample(360, "20 %: re-armed", calm.withBattery(20)),
        sample(30 * kMinute, "14 % after the cooldown", calm.withBattery(14), {"post batteryLow"}),
    }});

    all.push_back({"batteryFull: once at 100 %, again only after falling below 95 %", {
        sample(0, "plugged in, charging, 96 %", calm.withBattery(96, true, true)),
        sample(60, "99 %", calm.withBattery(99, true, true)),
        sample(120, "100 %", calm.withBattery(100, true, true), {"post batteryFull"}, "Fully charged"),
        sample(180, "reports fully charged", calm.withBattery(100, true, false, true)),
        sample(kHour, "unplugged at 97 %", calm.withBattery(97)),
        sample(kHour + 60, "plugged in again, full", calm.withBattery(100, true, false, true)),
        sample(2 * kHour, "unplugged, down to 94 %: re-armed", calm.withBattery(94)),
        sample(2 * kHour + 60, "plugged in, full", calm.withBattery(100, true, false, true),
               {"post batteryFull"}),
    }});

    all.push_back({"highCPU: 94 % for two minutes names the busiest process at firing time", {
        sample(0, "94 %, make busiest", busy.withProcesses({{100, "make", 90}})),
        sample(60, "cc1plus busiest", busy.withProcesses({{100, "make", 20}, {101, "cc1plus", 95}})),
        sample(119, "held 119 s", busy.withProcesses({{101, "cc1plus", 95}})),
        sample(120, "held 120 s; the monitor itself tops the list, then ld",
               busy.withProcesses({{kOwnPid, "trotlet", 300}, {102, "ld", 99}, {101, "cc1plus", 3}}),
               {"post highCPU"}, "CPU at 94% for 2 min. ld is the busiest."),
        sample(200, "85 %: below the threshold, not re-armed", calm.withCpu(0.85)),
        sample(40 * kMinute, "94 % again: disarmed", busy),
        sample(45 * kMinute, "79 %: re-armed", calm.withCpu(0.79)),
        sample(46 * kMinute, "94 %: the hold starts again", busy),
        sample(48 * kMinute, "held 120 s", busy, {"post highCPU"}),
    }});

    all.push_back({"memoryCritical: critical for 10 s; only normal pressure re-arms", {
        sample(0, "critical", critical),
        sample(9, "critical for 9 s", critical),
        sample(10, "critical for 10 s", critical, {"post memoryCritical"},
               "Your computer is swapping hard."),
        sample(20, "warning: not re-armed", calm.withPressure(MemoryPressure::warning)),
        sample(kHour, "critical again", critical),
        sample(kHour + 10, "critical for 10 s, disarmed", critical),
        sample(kHour + 20, "normal: re-armed", calm),
        sample(kHour + 30, "critical", critical),
        sample(kHour + 40, "critical for 10 s", critical, {"post memoryCritical"}),
    }});

    all.push_back({"diskAlmostFull: at most once per 24 h, re-armed at 12 GB free", {
        sample(0, "6 GB free", calm.withRootFree(6), {"post diskAlmostFull"}, "is almost full"),
        sample(kHour, "still 6 GB", calm.withRootFree(6)),
        sample(kHour + 60, "11.9 GB: not re-armed", calm.withRootFree(11.9)),
        sample(kHour + 120, "6 GB", calm.withRootFree(6)),
        sample(kHour + 180, "12 GB: re-armed", calm.withRootFree(12)),
        sample(2 * kHour, "6 GB inside the day", calm.withRootFree(6),
               {"suppressed diskAlmostFull: cooldown 1440 min"}),
        sample(2 * kHour + 60, "12 GB: re-armed", calm.withRootFree(12)),
        sample(24 * kHour, "6 GB a day after the post", calm.withRootFree(6), {"post diskAlmostFull"}),
    }});

    all.push_back({"missing data skips rules without changing their state", {
        sample(0, "battery 9 %, 5 GB free, memory critical",
               calm.withBattery(9).withRootFree(5).withPressure(MemoryPressure::critical),
               {"post batteryLow", "post diskAlmostFull"}),
        sample(5, "no battery, unknown pressure, no root size, no temperature",
               calm.withoutBattery()
                   .withPressure(MemoryPressure::unknown)
                   .withRootFree(std::nullopt)
                   .withTemperature(std::nullopt)),
        sample(10, "battery and disk back as before: still disarmed; memory hold kept",
               calm.withBattery(9).withRootFree(5).withPressure(MemoryPressure::critical),
               {"post memoryCritical"}),
        sample(20, "no temperature, thermal state serious",
               calm.withTemperature(std::nullopt, ThermalState::serious), {"post highTemperature"},
               "The system reports a serious thermal state."),
    }});

    all.push_back({"achievement: dropped while the panel is open, posted when closed", {
        panel(0, true),
        event(1, "achievement unlocked, panel open", nightOwl,
              {"suppressed achievement: panel open"}),
        panel(2, false),
        sample(3, "first sample after closing: nothing was held", calm),
        event(4, "achievement unlocked, panel closed", nightOwl, {"post achievement"},
              "You earned 25 Fish."),
        event(5, "a mascot bought", MascotPurchased{"Kibo the Shiba"}, {"post purchase"},
              "Welcome home, Kibo the Shiba"),
    }});

    std::vector<ScriptStep> fun;
    for (int i = 0; i < 7; ++i) {
        fun.push_back(event(i * kMinute, "achievement " + std::to_string(i + 1) + " within the hour",
                            AchievementUnlocked{"Level " + std::to_string(i + 1), "", 5},
                            {i < 6 ? "post achievement" : "suppressed achievement: fun budget 6/h"}));
    }
    fun.push_back(event(kHour, "a purchase once the first is an hour old",
                        MascotPurchased{"Pip the Hamster"}, {"post purchase"}));
    fun.push_back(event(kHour + kMinute, "the evening's check-in reminder shares the fun budget",
                        CheckInReminder{mascotName, 25, 4}, {"post checkInReminder"},
                        "25 Fish and day 4 of your streak"));
    all.push_back({"fun alerts: six an hour", fun});

    return all;
}

ScriptReplay NotificationScript::replay(const std::vector<Scenario>& scenarios,
                                        const AlertRules::Preferences& preferences,
                                        Timestamp start) {
    ScriptReplay result;
    result.output["start"] = metrics::formatIso8601(start);
    result.output["mascotName"] = mascotName;
    result.output["preferences"] = toJson(preferences);
    Json scenariosJson = Json::array();
    int posts = 0;
    int suppressed = 0;

    for (const Scenario& scenario : scenarios) {
        AlertRules rules(preferences, mascotName);
        rules.setOwnProcessId(kOwnPid);
        bool panelOpen = false;
        Json steps = Json::array();
        for (std::size_t i = 0; i < scenario.steps.size(); ++i) {
            const ScriptStep& step = scenario.steps[i];
            const Timestamp now =
                start + std::chrono::duration_cast<Timestamp::duration>(
                            std::chrono::duration<double>(step.offsetSeconds));
            std::vector<AlertRules::Decision> decisions;
            if (const auto* s = std::get_if<SyntheticSample>(&step.input))
                decisions = rules.evaluate(s->snapshot(now), now, panelOpen);
            else if (const auto* e = std::get_if<AppEvent>(&step.input))
                decisions = rules.event(*e, now, panelOpen);
            else
                panelOpen = std::get<PanelChange>(step.input).open;

            Json line;
            line["time"] = metrics::formatIso8601(now);
            line["offsetSeconds"] = step.offsetSeconds;
            line["note"] = step.note;
            line["panelOpen"] = panelOpen;
            line["input"] = inputJson(step);
            line["decisions"] = toJson(decisions);
            steps.push_back(line);

            std::vector<std::string> got;
            for (const auto& d : decisions) {
                got.push_back(brief(d));
                (d.isPost() ? posts : suppressed) += 1;
            }
            const std::string where = "\"" + scenario.name + "\" step " + std::to_string(i + 1) +
                                      " (" + step.note + ")";
            ++result.checks;
            if (!result.failure && got != step.expected)
                result.failure = where + ": expected " + joined(step.expected) + ", got " + joined(got);
            if (!step.expectedText.empty()) {
                ++result.checks;
                const auto post = std::find_if(decisions.begin(), decisions.end(),
                                               [](const auto& d) { return d.isPost(); });
                const bool found = post != decisions.end() &&
                                   (post->alert.title.find(step.expectedText) != std::string::npos ||
                                    post->alert.body.find(step.expectedText) != std::string::npos);
                if (!result.failure && !found)
                    result.failure = where + ": expected a post saying \"" + step.expectedText + "\"";
            }
        }
        Json s;
        s["name"] = scenario.name;
        s["steps"] = steps;
        scenariosJson.push_back(s);
    }
    result.output["scenarios"] = scenariosJson;
    Json summary;
    summary["scenarios"] = scenarios.size();
    summary["posts"] = posts;
    summary["suppressed"] = suppressed;
    summary["checks"] = result.checks;
    summary["failure"] = result.failure ? Json(*result.failure) : Json(nullptr);
    result.output["summary"] = summary;
    return result;
}

}  // namespace trotlet::alerts
