// The alert rules stepped over scripted timelines: each step is a time offset, the readings (or
// an event), whether the panel is open, and the decisions expected in a compact form. The
// timelines of the built-in notification script (the cooldown and budget of the temperature
// alert, a hold while the panel is open, a full battery, the busiest process, missing data) are
// replayed in NotificationScriptTests; these are the cases it leaves out.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "alerts/AlertRules.h"
#include "alerts/SyntheticSample.h"

namespace trotlet::alerts {
namespace {

using metrics::MemoryPressure;
using metrics::ThermalState;
using Decision = AlertRules::Decision;
using Prefs = AlertRules::Preferences;

metrics::Timestamp at(double seconds) { return metrics::fromUnixSeconds(1'790'000'000 + seconds); }

// "post batteryLow" or "suppressed highTemperature: cooldown 30 min", joined with " | ".
std::string brief(const std::vector<Decision>& decisions) {
    std::string out;
    for (const Decision& d : decisions) {
        if (!out.empty()) out += " | ";
        out += d.isPost() ? "post " : "suppressed ";
        out += rawName(d.kind());
        if (!d.isPost()) out += ": " + d.reason;
    }
    return out;
}

struct Step {
    double seconds;
    SyntheticSample sample;
    bool panelOpen;
    std::string expected;
};

// Runs every step and checks its decisions; gives the decisions of all steps for further checks.
std::vector<std::vector<Decision>> play(AlertRules& rules, const std::vector<Step>& steps) {
    std::vector<std::vector<Decision>> all;
    for (const Step& step : steps) {
        all.push_back(rules.evaluate(step.sample.snapshot(at(step.seconds)), at(step.seconds),
                                     step.panelOpen));
        EXPECT_EQ(brief(all.back()), step.expected) << "at t=" << step.seconds << " s";
    }
    return all;
}

const SyntheticSample calm{};

Prefs everythingOn() {
    Prefs p;
    p.highCPU = true;
    p.batteryFull = true;
    return p;
}

TEST(AlertRules, TemperatureLevelsHaveAGapAndALongCompileNeverAlerts) {
    AlertRules rules(Prefs{}, "Miso");
    play(rules, {
        {0, calm.withTemperature(101.7), false, ""},
        {3600, calm.withTemperature(101.7), false, ""},
        {3601, calm.withTemperature(108), false, "post highTemperature"},
        {3700, calm.withTemperature(95), false, ""},   // in the gap: stays disarmed
        {7000, calm.withTemperature(109), false, ""},
        {7100, calm.withTemperature(89.9), false, ""},  // re-armed
        {7200, calm.withTemperature(109), false, "post highTemperature"},
    });
}

TEST(AlertRules, MissingTemperatureReArmsUnlessTheStateIsSerious) {
    AlertRules rules(Prefs{}, "Miso");
    auto d = play(rules, {
        {0, calm.withTemperature(std::nullopt, ThermalState::critical), false,
         "post highTemperature"},
        {60, calm.withTemperature(std::nullopt, ThermalState::fair), false, ""},
        {2000, calm.withTemperature(std::nullopt, ThermalState::serious), false,
         "post highTemperature"},
    });
    EXPECT_EQ(d[0][0].alert.body,
              "The system reports a critical thermal state. Maybe close something heavy?");
}

TEST(AlertRules, BatteryHoveringAroundTheThresholdAlertsOnce) {
    AlertRules rules(Prefs{}, "Miso");
    play(rules, {
        {0, calm.withBattery(16), false, ""},
        {60, calm.withBattery(14), false, "post batteryLow"},
        {120, calm.withBattery(16), false, ""},
        {180, calm.withBattery(14), false, ""},
        {240, calm.withBattery(16), false, ""},
        {3000, calm.withBattery(19), false, ""},
        {3000, calm.withBattery(15), false, ""},  // still disarmed: 19 is not 20
        {3060, calm.withBattery(20), false, ""},  // re-armed
        {3120, calm.withBattery(15), false, "post batteryLow"},
        {3180, calm.withBattery(16, true, true), false, ""},  // plugged in: re-armed
        {3240, calm.withBattery(15), false, "suppressed batteryLow: cooldown 20 min"},
        {3300, calm.withBattery(14), false, ""},
    });
}

TEST(AlertRules, BatteryLowIsQuietWhilePluggedInOrCharging) {
    AlertRules rules(Prefs{}, "Miso");
    play(rules, {
        {0, calm.withBattery(5, true, false), false, ""},   // plugged in, not charging
        {60, calm.withBattery(5, false, true), false, ""},  // charging off the adapter's record
        {120, calm.withBattery(5), false, "post batteryLow"},
    });
}

TEST(AlertRules, AHeldAlertWhoseConditionEndsWhileOpenNeverPosts) {
    AlertRules rules(Prefs{}, "Miso");
    play(rules, {
        {0, calm.withBattery(9), true, "suppressed batteryLow: panel open (held, stays armed)"},
        {2, calm.withBattery(9, true, true), true, ""},
        {4, calm.withBattery(9, true, true), false, ""},
        // Reopened later with the condition back: a kind's hold is reported once until it
        // fires with the panel closed, so this one is silent, and closing still posts.
        {600, calm.withBattery(9), true, ""},
        {602, calm.withBattery(9), false, "post batteryLow"},
    });
}

TEST(AlertRules, BatteryHeldAtAChargeLimitReportsFullOnlyOnce) {
    AlertRules rules(everythingOn(), "Miso");
    play(rules, {
        {0, calm.withBattery(80, true, false, true), false, "post batteryFull"},
        {1300, calm.withBattery(80, true, false, true), false, ""},
        {7200, calm.withBattery(80, true, false, true), false, ""},
        {7300, calm.withBattery(79), false, ""},  // unplugged below 95: re-armed
        {7400, calm.withBattery(80, true, false, true), false, "post batteryFull"},
    });
}

TEST(AlertRules, MemoryCriticalNeedsTenSecondsAndOnlyNormalReArms) {
    AlertRules rules(Prefs{}, "Miso");
    const auto critical = calm.withPressure(MemoryPressure::critical);
    auto d = play(rules, {
        {0, critical, false, ""},
        {9.9, critical, false, ""},
        {10, critical, false, "post memoryCritical"},
        {20, calm.withPressure(MemoryPressure::warning), false, ""},
        {4000, critical, false, ""},
        {4010, critical, false, ""},  // warning did not re-arm
        {4020, calm, false, ""},      // normal re-arms
        {4030, critical, false, ""},
        {4035, calm.withPressure(MemoryPressure::warning), false, ""},  // resets the hold
        {4040, critical, false, ""},
        {4049, critical, false, ""},
        {4050, critical, false, "post memoryCritical"},
    });
    EXPECT_EQ(d[2][0].alert.body, "Your computer is swapping hard. Quitting an app or two will help.");
}

TEST(AlertRules, DiskAlmostFullAtMostOncePerDayAndReArmsTwoGigabytesAbove) {
    AlertRules rules(Prefs{}, "Miso");
    const auto tight = calm.withRootFree(6);
    auto d = play(rules, {
        {0, tight, false, "post diskAlmostFull"},
        {60, tight, false, ""},
        {120, calm.withRootFree(11.9), false, ""},
        {180, tight, false, ""},
        {240, calm.withRootFree(12), false, ""},
        {3600, tight, false, "suppressed diskAlmostFull: cooldown 1440 min"},
        {3660, calm.withRootFree(12), false, ""},
        {86399, tight, false, "suppressed diskAlmostFull: cooldown 1440 min"},
        {86400, calm.withRootFree(12), false, ""},
        {86400, tight, false, "post diskAlmostFull"},
    });
    EXPECT_EQ(d[0][0].alert.title, "Root is almost full");
    EXPECT_EQ(d[0][0].alert.body, "5.59 GB free. Time for a little spring cleaning.");
}

TEST(AlertRules, HighCPUHoldRestartsAfterADipAndIsOffByDefault) {
    AlertRules off(Prefs{}, "Miso");
    play(off, {{0, calm.withCpu(1.0), false, ""}, {600, calm.withCpu(1.0), false, ""}});
    // The hold is still tracked, so turning the alert on does not restart it.
    EXPECT_EQ(off.highCPUSince(), at(0));

    AlertRules rules(everythingOn(), "Miso");
    play(rules, {
        {0, calm.withCpu(0.95), false, ""},
        {100, calm.withCpu(0.89), false, ""},
        {110, calm.withCpu(0.95), false, ""},
        {229, calm.withCpu(0.95), false, ""},
        {230, calm.withCpu(0.95), false, "post highCPU"},
    });
}

TEST(AlertRules, AchievementWhilePanelOpenIsDroppedNotHeld) {
    AlertRules rules(Prefs{}, "Miso");
    const AppEvent owl = AchievementUnlocked{"Night Owl", "Use the computer after midnight", 25};
    auto open = rules.event(owl, at(0), true);
    EXPECT_EQ(brief(open), "suppressed achievement: panel open");
    EXPECT_EQ(brief(rules.evaluate(calm.snapshot(at(5)), at(5), false)), "");
    EXPECT_EQ(rules.postsInBudget(AlertBudget::fun), 0u);

    auto closed = rules.event(owl, at(10), false);
    ASSERT_EQ(brief(closed), "post achievement");
    EXPECT_EQ(closed[0].alert.title, "Achievement unlocked: Night Owl");
    EXPECT_EQ(closed[0].alert.body, "Use the computer after midnight. You earned 25 Fish.");

    auto bought = rules.event(MascotPurchased{"Kibo the Shiba"}, at(20), false);
    ASSERT_EQ(brief(bought), "post purchase");
    EXPECT_EQ(bought[0].alert.title, "Welcome home, Kibo the Shiba!");
    EXPECT_EQ(bought[0].alert.body, "Your new friend is ready to run in the menu bar.");
    EXPECT_EQ(rules.event(MascotPurchased{"Pip"}, at(25), true)[0].reason, "panel open");
}

TEST(AlertRules, FunBudgetIsSixAnHourAndSeparateFromAlerts) {
    AlertRules rules(Prefs{}, "Miso");
    for (int i = 0; i < 4; ++i) rules.fire(AlertKind::highCPU, "t", "b", at(i), false, false);
    EXPECT_EQ(rules.postsInBudget(AlertBudget::alert), 1u);  // the rest met the disarmed kind
    std::string got;
    for (int i = 0; i < 7; ++i) {
        std::string title = "Level ";
        title += std::to_string(i);
        auto d = rules.event(AchievementUnlocked{title, "", 5}, at(100 + i), false);
        got += brief(d) + ";";
    }
    EXPECT_EQ(got, "post achievement;post achievement;post achievement;post achievement;"
                   "post achievement;post achievement;suppressed achievement: fun budget 6/h;");
    EXPECT_EQ(brief(rules.event(MascotPurchased{"Pip"}, at(3699), false)),
              "suppressed purchase: fun budget 6/h");
    EXPECT_EQ(brief(rules.event(MascotPurchased{"Pip"}, at(3700), false)), "post purchase");
}

TEST(AlertRules, FunKindsAreSuppressedOnlyWhenTheClockRunsBackwards) {
    AlertRules rules(Prefs{}, "Miso");
    EXPECT_EQ(brief(rules.event(MascotPurchased{"Pip"}, at(100), false)), "post purchase");
    EXPECT_EQ(brief(rules.event(MascotPurchased{"Pip"}, at(100), false)), "post purchase");
    EXPECT_EQ(brief(rules.event(MascotPurchased{"Pip"}, at(40), false)),
              "suppressed purchase: cooldown 0 min");
}

TEST(AlertRules, AchievementsRespectTheirPreference) {
    Prefs p;
    p.achievementUnlocked = false;
    AlertRules rules(p, "Miso");
    EXPECT_TRUE(rules.event(AchievementUnlocked{"Night Owl", "", 25}, at(0), false).empty());
    EXPECT_EQ(brief(rules.event(MascotPurchased{"Pip"}, at(0), false)), "post purchase");
}

TEST(AlertRules, SwitchedOffRulesNeverFireButStillReArm) {
    Prefs p;
    p.highTemperature = false;
    p.batteryLow = false;
    p.diskAlmostFull = false;
    p.memoryCritical = false;
    AlertRules rules(p, "Miso");
    const auto bad = calm.withTemperature(110, ThermalState::critical)
                         .withBattery(3)
                         .withRootFree(1)
                         .withPressure(MemoryPressure::critical)
                         .withCpu(1.0);
    play(rules, {{0, bad, false, ""}, {600, bad, false, ""}});
    for (std::size_t i = 0; i < alertKindCount; ++i)
        EXPECT_TRUE(rules.isArmed(static_cast<AlertKind>(i)));
}

TEST(AlertRules, DecisionsComeInRuleOrder) {
    AlertRules rules(everythingOn(), "Miso");
    const auto all = calm.withTemperature(110)
                         .withBattery(100, true, false, true)
                         .withPressure(MemoryPressure::critical)
                         .withRootFree(1)
                         .withCpu(0.99);
    play(rules, {
        {0, all, true, "suppressed highTemperature: panel open (held, stays armed) | "
                       "suppressed batteryFull: panel open (held, stays armed) | "
                       "suppressed diskAlmostFull: panel open (held, stays armed)"},
        {200, all, true, "suppressed memoryCritical: panel open (held, stays armed) | "
                         "suppressed highCPU: panel open (held, stays armed)"},
        {201, all, false, "post highTemperature | post batteryFull | post memoryCritical | "
                          "post diskAlmostFull | suppressed highCPU: alert budget 4/h"},
    });
    EXPECT_FALSE(rules.isHeld(AlertKind::highCPU));
    EXPECT_EQ(brief(rules.evaluate(all.snapshot(at(202)), at(202), false)), "");
}

TEST(AlertRules, DecisionAndAlertJsonForms) {
    AlertRules::Alert alert{AlertKind::highTemperature, "Miso is overheating", "Hot."};
    EXPECT_EQ(alert.identifier(), "trotlet.highTemperature");
    EXPECT_EQ(toJson(Decision::post(alert)).dump(),
              R"({"post":{"kind":"highTemperature","title":"Miso is overheating","body":"Hot."}})");
    EXPECT_EQ(toJson(Decision::suppressed(AlertKind::batteryLow, "cooldown 20 min")).dump(),
              R"({"suppressed":{"kind":"batteryLow","reason":"cooldown 20 min"}})");
    EXPECT_EQ(toJson(Prefs{}).dump(),
              R"({"highCPU":false,"highCPUThreshold":0.9,"highCPUHoldSeconds":120.0,)"
              R"("highTemperature":true,"batteryLow":true,"batteryLowThreshold":15,)"
              R"("batteryFull":false,"diskAlmostFull":true,"diskFreeThresholdGB":10,)"
              R"("memoryCritical":true,"achievementUnlocked":true})");
}

// Names round-trip; the cooldowns and the fun kinds in the order the kinds are declared.
TEST(AlertKind, NamesIdentifiersCooldownsAndBudgets) {
    const int cooldownMinutes[] = {30, 20, 20, 30, 1440, 30, 0, 0, 0};
    ASSERT_EQ(std::size(cooldownMinutes), alertKindCount);
    for (std::size_t i = 0; i < alertKindCount; ++i) {
        const auto kind = static_cast<AlertKind>(i);
        SCOPED_TRACE(rawName(kind));
        EXPECT_EQ(alertKindNamed(rawName(kind)), kind);
        EXPECT_EQ(notificationIdentifier(kind), "trotlet." + std::string(rawName(kind)));
        EXPECT_EQ(std::chrono::duration_cast<std::chrono::minutes>(cooldownOf(kind)).count(),
                  cooldownMinutes[i]);
        EXPECT_EQ(isFun(kind), cooldownMinutes[i] == 0);
    }
    EXPECT_EQ(rawName(AlertKind::highTemperature), "highTemperature");
    EXPECT_EQ(budgetLimit(AlertBudget::alert), 4u);
    EXPECT_EQ(budgetLimit(AlertBudget::fun), 6u);
    EXPECT_FALSE(alertKindNamed("HighCPU"));
}

}  // namespace
}  // namespace trotlet::alerts
