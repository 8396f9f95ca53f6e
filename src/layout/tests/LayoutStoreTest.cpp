#include <gtest/gtest.h>

#include <memory>

#include "layout/LayoutOps.h"
#include "layout/LayoutStore.h"
#include "layout/OverviewLayoutResolver.h"
#include "settings/AppSettings.h"

namespace trotlet::layout {
namespace {

OverviewLayout defaults() {
    return OverviewLayoutResolver::defaultLayout(OverviewCardRegistry::standard());
}

// One app session over a dictionary that outlives it, as the settings file would.
struct Session {
    explicit Session(std::shared_ptr<settings::InMemorySettingsBacking> backing)
        : settings(settings::DefaultsStore(backing), false),
          store(settings.layout(), settings.monitoring()) {}
    settings::AppSettings settings;
    LayoutStore store;
};

class LayoutStoreTest : public testing::Test {
protected:
    std::shared_ptr<settings::InMemorySettingsBacking> backing =
        std::make_shared<settings::InMemorySettingsBacking>();
};

TEST_F(LayoutStoreTest, FreshUserSeesTheDefaultAndCannotReset) {
    Session s(backing);
    EXPECT_EQ(s.store.layout(), defaults());
    EXPECT_FALSE(s.store.hasStoredDocument());
    EXPECT_FALSE(s.store.canReset());
    EXPECT_EQ(s.store.hiddenBinding().get(), std::vector<std::string>{"weather"});
}

TEST_F(LayoutStoreTest, CommitStoresTheDocumentAsTextAndANewSessionReadsItBack) {
    const auto edited = LayoutOps::settingSize("cpu", CardSize::large,
                                               LayoutOps::settingHidden("gpu", true, defaults()));
    {
        Session s(backing);
        s.store.commit(edited);
        EXPECT_TRUE(s.store.canReset());
    }
    const auto stored = backing->values().at("layout.overview");
    ASSERT_TRUE(stored.is_string());
    EXPECT_EQ(OverviewLayout::decode(stored.get<std::string>()), edited);
    Session again(backing);
    EXPECT_EQ(again.store.layout(), edited);
}

TEST_F(LayoutStoreTest, CommitResolvesAndWritesNothingWhenUnchanged) {
    Session s(backing);
    OverviewLayout odd;
    odd.cards = {{"radio", CardSize::wide, false},
                 {"disk", CardSize::large, false},
                 {"disk", CardSize::small, true}};
    s.store.commit(odd);
    EXPECT_EQ(
        describe(s.store.layout()),
        "disk:medium cpu:medium memory:medium network:wide gpu:small heat:small battery:small "
        "pawreport:medium weather:wide(hidden)");
    const int writes = backing->writeCount();
    s.store.commit(s.store.layout());
    EXPECT_EQ(backing->writeCount(), writes);
}

TEST_F(LayoutStoreTest, LegacyHiddenCardsMigrateUntilTheFirstEditAndResetClearsThem) {
    backing->write("monitoring.hiddenCards",
                   settings::SettingValue::array({"gpu", "battery", "bogus"}));
    Session s(backing);
    EXPECT_EQ(s.store.layout().hiddenIDs(),
              (std::vector<std::string>{"gpu", "battery", "weather"}));
    EXPECT_TRUE(s.store.canReset());
    s.store.reset();
    EXPECT_FALSE(backing->values().count("layout.overview"));
    EXPECT_TRUE(s.settings.monitoring().hiddenCards().empty());
    EXPECT_EQ(s.store.layout(), defaults());
    EXPECT_FALSE(s.store.canReset());
}

TEST_F(LayoutStoreTest, GarbageDocumentShowsTheDefaultAndCanBeReset) {
    backing->write("layout.overview", settings::SettingValue("{not json"));
    backing->write("monitoring.hiddenCards", settings::SettingValue::array({"heat"}));
    Session s(backing);
    // The unusable document falls back to the migration path, old list included.
    EXPECT_EQ(s.store.layout().hiddenIDs(), (std::vector<std::string>{"heat", "weather"}));
    EXPECT_FALSE(s.store.stored());
    EXPECT_TRUE(s.store.canReset());
}

TEST_F(LayoutStoreTest, HiddenBindingCommitsOnlyRealChangesAndKeepsPlaces) {
    Session s(backing);
    int told = 0;
    const int token = s.store.observe([&] { ++told; });
    auto binding = s.store.hiddenBinding();
    binding.set({"weather"});
    EXPECT_EQ(told, 0);
    EXPECT_FALSE(s.store.hasStoredDocument());
    binding.set({"memory"});
    EXPECT_EQ(told, 1);
    EXPECT_EQ(binding.get(), std::vector<std::string>{"memory"});
    EXPECT_EQ(s.store.layout().cards[8].id, "weather");
    EXPECT_FALSE(s.store.layout().cards[8].hidden);
    binding.set({"weather"});
    EXPECT_EQ(s.store.layout(), defaults());
    EXPECT_EQ(told, 2);
    s.store.unobserve(token);
    s.store.reset();
    EXPECT_EQ(told, 2);
}

}  // namespace
}  // namespace trotlet::layout
