#include "settings/DefaultsStore.h"

#include <gtest/gtest.h>

namespace trotlet::settings {
namespace {

TEST(DefaultsStore, ObjectStringAndRemoval) {
    auto backing = std::make_shared<InMemorySettingsBacking>();
    DefaultsStore store(backing);
    EXPECT_FALSE(store.object("general.appearance"));
    EXPECT_EQ(store.string("general.appearance", "system"), "system");

    store.set(SettingValue("dark"), "general.appearance");
    EXPECT_EQ(store.string("general.appearance", "system"), "dark");
    store.set(SettingValue(3), "general.appearance");
    EXPECT_EQ(store.string("general.appearance", "system"), "system") << "a number is no string";

    store.set(std::nullopt, "general.appearance");
    EXPECT_FALSE(store.object("general.appearance"));
    EXPECT_TRUE(backing->values().empty());
}

TEST(DefaultsStore, CopiesShareOneBacking) {
    DefaultsStore first(std::make_shared<InMemorySettingsBacking>());
    DefaultsStore second = first;
    second.set(SettingValue(true), "menuBar.saveEnergy");
    EXPECT_EQ(first.object("menuBar.saveEnergy"), SettingValue(true));
}

TEST(DefaultsStore, ArgumentValuesAreTyped) {
    struct Case {
        const char* text;
        SettingValue expected;
    };
    const Case cases[] = {
        {"true", true}, {"YES", true},   {"false", false}, {"NO", false},    {"5", 5}, {"-12", -12},
        {"2.5", 2.5},   {"1e3", 1000.0}, {"0.75", 0.75},   {"dark", "dark"}, {"", ""}, {"5s", "5s"},
        {"nan", "nan"}, {"inf", "inf"},  {"True", "True"}, {" 5", " 5"},
    };
    for (const auto& c : cases) {
        const SettingValue value = DefaultsStore::typedArgumentValue(c.text);
        EXPECT_EQ(value, c.expected) << c.text;
        EXPECT_EQ(value.type(), c.expected.type()) << c.text;
    }
}

TEST(DefaultsStore, EphemeralKeepsOnlyDottedNonSystemPairs) {
    const std::vector<std::string> args = {
        "/usr/bin/trotlet",
        "-monitoring.updateInterval",
        "5",
        "--skip-onboarding",
        "-AppleLanguages.x",
        "(en)",
        "-NSQuitAlwaysKeepsWindows.y",
        "NO",
        "-nodot",
        "1",
        "-menuBar.textMetric",
        "cpu",
        "-notifications.highCPU",
        "true",
        "-general.globalShortcutKeyCode",  // no value: ignored
    };
    DefaultsStore store = DefaultsStore::ephemeral(args);
    EXPECT_TRUE(store.isEphemeral());
    const auto domain = DefaultsStore::argumentDomain(args);
    ASSERT_EQ(domain.size(), 3u);
    EXPECT_EQ(domain.at("monitoring.updateInterval"), SettingValue(5));
    EXPECT_EQ(domain.at("menuBar.textMetric"), SettingValue("cpu"));
    EXPECT_EQ(domain.at("notifications.highCPU"), SettingValue(true));
    EXPECT_EQ(store.object("monitoring.updateInterval"), SettingValue(5));
    EXPECT_FALSE(store.object("AppleLanguages.x"));
    EXPECT_FALSE(store.object("nodot"));
}

TEST(DefaultsStore, EphemeralFromNoPairsIsEmptyAndInMemory) {
    DefaultsStore store = DefaultsStore::ephemeral({"trotlet", "--skip-onboarding"});
    EXPECT_TRUE(store.isEphemeral());
    EXPECT_FALSE(store.object("general.hasCompletedOnboarding"));
}

}  // namespace
}  // namespace trotlet::settings
