#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "alerts/AlertRules.h"
#include "alerts/SyntheticSample.h"

namespace trotlet::alerts {

// The scripted timelines behind `--simulate-notifications`: short scenarios, each replayed
// through a fresh `AlertRules` from a fixed start time, with the decisions every step must
// give. The replay checks them itself, so the harness fails on its own when a rule regresses.

struct PanelChange {
    bool open = false;
};

struct ScriptStep {
    double offsetSeconds = 0;  // from the start time
    std::string note;
    std::variant<SyntheticSample, AppEvent, PanelChange> input;
    // The step's decisions in brief form, in order: "post highCPU",
    // "suppressed batteryLow: cooldown 20 min". Empty: no decision at all.
    std::vector<std::string> expected;
    // Text that the step's first post must carry in its title or body (empty: not checked).
    std::string expectedText;
};

struct Scenario {
    std::string name;
    std::vector<ScriptStep> steps;
};

struct ScriptReplay {
    Json output;  // preferences, then each scenario's steps with time, input and decisions
    int checks = 0;
    std::optional<std::string> failure;  // the first expectation that did not hold
};

class NotificationScript {
public:
    static Timestamp startTime();  // 2026-01-05T09:00:00Z
    static constexpr const char* mascotName = "Miso";
    // The defaults, with the two alerts that start switched off turned on so every rule runs.
    static AlertRules::Preferences preferences();
    // Every edge case of the alert rules, in scenarios.
    static std::vector<Scenario> scenarios();

    static ScriptReplay replay(const std::vector<Scenario>& scenarios,
                               const AlertRules::Preferences& preferences, Timestamp start);

    // "post highCPU" or "suppressed batteryLow: cooldown 20 min".
    static std::string brief(const AlertRules::Decision& decision);
};

}  // namespace trotlet::alerts
