#include "settings/KeyedAccess.h"

#include <gtest/gtest.h>

namespace trotlet::settings {
namespace {

struct Session {
    std::shared_ptr<InMemorySettingsBacking> backing = std::make_shared<InMemorySettingsBacking>();
    AppSettings settings{DefaultsStore(backing), false};
};

// A value other than the default, of the key's stored type.
SettingValue changed(const SettingValue& current) {
    if (current.is_boolean()) return !current.get<bool>();
    if (current.is_number_integer()) return current.get<int>() + 1;
    if (current.is_number()) return current.get<double>() + 0.25;
    if (current.is_array()) return SettingValue::array({"gpu"});
    if (current.is_null()) return SettingValue("{\"id\":1}");
    // Enumerations: the case after the current one in its group's table of names.
    static const std::map<std::string, std::string> next = {
        {"system", "dark"}, {"celsius", "fahrenheit"}, {"bytes", "bits"},
        {"none", "cpu"},    {"right", "left"},         {"cpu", "busiest"}};
    return next.at(current.get<std::string>());
}

TEST(KeyedAccess, EveryKeyWritesItselfOnceWithItsOwnTypeAndOnlyOnAChange) {
    Session s;
    ASSERT_EQ(keyed::keys().size(), 41u);  // the seven groups, every key once
    for (const std::string& key : keyed::keys()) {
        SCOPED_TRACE(key);
        const auto before = keyed::value(s.settings, key);
        ASSERT_TRUE(before.has_value());
        const int writes = s.backing->writeCount();
        ASSERT_TRUE(keyed::set(s.settings, key, *before));
        EXPECT_EQ(s.backing->writeCount(), writes) << "the value it already held";

        const SettingValue next = changed(*before);
        ASSERT_TRUE(keyed::set(s.settings, key, next));
        EXPECT_EQ(s.backing->writeCount(), writes + 1);
        ASSERT_TRUE(s.backing->values().count(key));
        const SettingValue& stored = s.backing->values().at(key);
        EXPECT_EQ(stored.type(), next.type()) << stored.dump();
        EXPECT_EQ(*keyed::value(s.settings, key), stored);
    }
    EXPECT_EQ(s.backing->values().size(), keyed::keys().size());
}

TEST(KeyedAccess, AValueOfTheWrongTypeIsRefusedAndWritesNothing) {
    Session s;
    const struct {
        const char* key;
        SettingValue value;
    } cases[] = {
        {"general.launchAtLogin", 1},
        {"menuBar.maxFPS", 24.5},
        {"monitoring.updateInterval", "2"},
        {"menuBar.textMetric", "ram"},
        {"monitoring.hiddenCards", SettingValue::array({1})},
        {"notifications.batteryLowThreshold", true},
        {"no.suchKey", true},
    };
    for (const auto& c : cases) {
        EXPECT_FALSE(keyed::set(s.settings, c.key, c.value)) << c.key;
    }
    EXPECT_EQ(s.backing->writeCount(), 0);
    EXPECT_TRUE(keyed::set(s.settings, "menuBar.maxFPS", 30.0)) << "a whole double is an integer";
    EXPECT_EQ(s.settings.menuBar().maxFPS(), 30);
    EXPECT_TRUE(keyed::set(s.settings, "weather.location", "{}"));
    EXPECT_TRUE(keyed::set(s.settings, "weather.location", nullptr));
    EXPECT_FALSE(s.settings.weather().encodedLocation().has_value()) << "null forgets the place";
}

}  // namespace
}  // namespace trotlet::settings
