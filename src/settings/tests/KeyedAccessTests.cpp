#include "settings/KeyedAccess.h"

#include <algorithm>
#include <cctype>

#include <gtest/gtest.h>

#include "settings/SettingsKeys.h"

namespace trotlet::settings {
namespace {

struct Session {
    explicit Session(std::map<std::string, SettingValue> values = {})
        : backing(std::make_shared<InMemorySettingsBacking>(std::move(values))),
          settings(DefaultsStore(backing), false) {}
    std::shared_ptr<InMemorySettingsBacking> backing;
    AppSettings settings;
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

// Every key through its group: reading writes nothing, the value already held writes nothing,
// a change writes that key alone, once, with its stored type, and the next session reads it.
TEST(KeyedAccess, EveryKeyWritesItselfOnceWithItsOwnTypeAndOnlyOnAChange) {
    Session s;
    ASSERT_EQ(keyed::keys().size(), 41u);  // the seven groups, every key once
    for (const std::string& key : keyed::keys()) ASSERT_TRUE(keyed::value(s.settings, key)) << key;
    EXPECT_EQ(s.backing->writeCount(), 0) << "reading the defaults writes nothing";
    for (const std::string& key : keyed::keys()) {
        SCOPED_TRACE(key);
        const auto before = keyed::value(s.settings, key);
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
        const AppSettings reread(DefaultsStore(s.backing), false);
        EXPECT_EQ(*keyed::value(reread, key), stored);
    }
    EXPECT_EQ(s.backing->values().size(), keyed::keys().size());
}

// Whether a group takes a stored value as its key's own (numbers cross between integer and
// double as long as an integer key gets a whole number).
bool takenAsItsOwn(const std::string& key, const SettingValue& ours, const SettingValue& stored) {
    if (ours.is_boolean()) return stored.is_boolean();
    if (ours.is_number_integer()) return stored.is_number_integer();
    if (ours.is_number()) return stored.is_number();
    if (ours.is_array())
        return stored.is_array() &&
               std::all_of(stored.begin(), stored.end(), [](auto& v) { return v.is_string(); });
    if (ours.is_null())
        return stored.is_string() || (key == keys::layoutOverview && stored.is_object());
    return false;  // an enumeration: none of the strangers below names one of its cases
}

std::string upper(std::string text) {
    for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

// A hand-edited or older file: a value of another kind (or an enumeration's name in the wrong
// case) reads as the default, and the stored value stays as it was.
TEST(KeyedAccess, AStoredValueOfAnotherKindReadsAsTheDefaultAndIsLeftAlone) {
    const Session fresh;
    for (const std::string& key : keyed::keys()) {
        const SettingValue ours = *keyed::value(fresh.settings, key);
        std::vector<SettingValue> strangers = {
            true, 7, 30.5, 1e12, "Zz", SettingValue::object(), SettingValue::array({3})};
        if (ours.is_string()) strangers.push_back(upper(ours.get<std::string>()));
        for (const SettingValue& stranger : strangers) {
            if (takenAsItsOwn(key, ours, stranger)) continue;
            SCOPED_TRACE(key + " = " + stranger.dump());
            Session s({{key, stranger}});
            EXPECT_EQ(*keyed::value(s.settings, key), ours);
            EXPECT_EQ(s.backing->writeCount(), 0);
            EXPECT_EQ(s.backing->values().at(key), stranger);
        }
    }
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
