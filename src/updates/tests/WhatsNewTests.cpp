// What's new over a scripted run of launches on a fake clock, through the stored keys.
#include <gtest/gtest.h>

#include "settings/SettingsKeys.h"
#include "updates/ReleaseNotes.h"
#include "updates/WhatsNew.h"
#include "updates/qt/WhatsNewStore.h"

#include "BuildInfo.h"

using namespace trotlet;
using namespace trotlet::updates;

namespace {

const std::vector<ReleaseNote> notes = {{"0.3.0", "2026-12-20", {"Three."}},
                                        {"0.2.0", "2026-12-10", {"Two."}},
                                        {"0.1.0", "2026-11-22", {"One."}}};

std::vector<std::string> versions(const std::vector<ReleaseNote>& list) {
    std::vector<std::string> out;
    for (const auto& n : list) out.push_back(n.version);
    return out;
}

TEST(WhatsNew, TimelineOfLaunches) {
    struct Step {
        const char* version;
        int day;
        WhatsNewDecision decision;
        std::vector<std::string> shown;
        bool dismissAfter = false;
    };
    using D = WhatsNewDecision;
    const std::vector<Step> steps = {
        {"0.1.0", 0, D::firstLaunch, {}},
        {"0.1.0", 1, D::sameVersion, {}},
        {"0.2.0", 2, D::upgrade, {"0.2.0"}},
        {"0.2.0", 3, D::stillPending, {"0.2.0"}},
        // Upgraded again before dismissing: the earlier notes stay in.
        {"0.3.0", 4, D::upgrade, {"0.3.0", "0.2.0"}},
        {"0.3.0", 17, D::stillPending, {"0.3.0", "0.2.0"}},
        {"0.3.0", 18, D::expired, {}},
        {"0.3.0", 19, D::sameVersion, {}},
        {"0.2.0", 20, D::downgrade, {}},
        {"0.3.0", 21, D::upgrade, {"0.3.0"}, true},
        {"0.3.0", 22, D::sameVersion, {}},
        {"0.4.0", 23, D::upgradeWithoutNotes, {}},
    };
    auto store = settings::DefaultsStore::ephemeral({});
    const std::int64_t t0 = 1'800'000'000;
    for (const auto& step : steps) {
        const std::int64_t now = t0 + std::int64_t(step.day) * 86400 + 3600;
        WhatsNewStore launch(store, *Version::parse(step.version), now, notes, {});
        SCOPED_TRACE(std::string(step.version) + " day " + std::to_string(step.day));
        EXPECT_EQ(whatsNewDecisionName(launch.decision()), whatsNewDecisionName(step.decision));
        EXPECT_EQ(versions(launch.notes()), step.shown);
        EXPECT_EQ(store.string(settings::keys::lastLaunchedVersion, ""), step.version);
        EXPECT_EQ(store.object(settings::keys::whatsNewVersion).has_value(), !step.shown.empty());
        EXPECT_EQ(store.object(settings::keys::whatsNewSince).has_value(), !step.shown.empty());
        if (step.dismissAfter) launch.dismiss();
    }
}

TEST(WhatsNew, QuietLaunchWritesNothingAndSwitchesOverride) {
    auto store = settings::DefaultsStore::ephemeral({});
    store.set(settings::SettingValue("0.3.0"), settings::keys::lastLaunchedVersion);
    auto* memory = dynamic_cast<settings::InMemorySettingsBacking*>(store.backing().get());
    ASSERT_TRUE(memory);
    const int writes = memory->writeCount();
    WhatsNewStore quiet(store, *Version::parse("0.3.0"), 1'800'000'000, notes, {});
    EXPECT_EQ(memory->writeCount(), writes);

    const Version v3 = *Version::parse("0.3.0");
    WhatsNewState fromOne;
    fromOne.lastLaunchedVersion = "0.1.0";
    EXPECT_TRUE(
        whatsNewAtLaunch(fromOne, v3, 0, notes, WhatsNewOverride::parse("0")).notes.empty());
    EXPECT_EQ(versions(whatsNewAtLaunch({}, v3, 0, notes, WhatsNewOverride::parse("1")).notes),
              std::vector<std::string>{"0.3.0"});
    EXPECT_EQ(versions(whatsNewAtLaunch({}, v3, 0, notes, WhatsNewOverride::parse("0.1.0")).notes),
              (std::vector<std::string>{"0.3.0", "0.2.0"}));
    EXPECT_EQ(WhatsNewOverride::parse("yes").kind, WhatsNewOverride::Kind::none);
}

TEST(ReleaseNotes, BundledNotesAreWellFormed) {
    EXPECT_EQ(bundledReleaseNotesProblems(build::version), std::vector<std::string>{});
    const auto bad = decodeReleaseNotes(R"([{"version": "0.1.0", "date": "2026-13-01", "notes": []},
                                            {"version": "0.2.0", "date": "2026-12-01", "notes": ["x"]}])");
    EXPECT_EQ(bad.problems.size(), 3u);  // the month, no lines, 0.2.0 not older than 0.1.0
}

}  // namespace
