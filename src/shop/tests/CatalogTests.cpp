#include "EngineFixture.h"

namespace trotlet::shop {
namespace {

using testing::EngineFixture;

TEST(Catalog, PricesFollowRarityAndRewardsAddUp) {
    ASSERT_EQ(Catalog::all().size(), 13u);
    EXPECT_EQ(Catalog::all().front().id, "cat");
    for (const auto& item : Catalog::all()) {
        SCOPED_TRACE(item.id);
        if (item.rarity == Rarity::starter) EXPECT_EQ(item.price.kind, Price::Kind::free);
        else if (item.rarity == Rarity::secret) EXPECT_EQ(item.price.kind, Price::Kind::streak);
        else EXPECT_EQ(item.price.amount, Catalog::priceFor(item.rarity));
        EXPECT_EQ(item.tagline.find("Mac"), std::string::npos);
    }
    EXPECT_EQ(Catalog::item("maneki")->perkText(), "Earns 10% more Paw-time Fish while equipped");
    EXPECT_EQ(Catalog::item("hamster")->tagline, "Generating power for your computer since forever.");
    EXPECT_EQ(Catalog::item("nope"), nullptr);

    int64_t rewards = 0;
    for (const auto& a : Achievement::all()) rewards += a.reward;
    EXPECT_EQ(rewards, 1300);
    EXPECT_EQ(Achievement::all().size(), 14u);
    for (size_t i = 0; i < Achievement::all().size(); ++i)
        EXPECT_EQ(static_cast<size_t>(Achievement::all()[i].id), i);
}

TEST_F(EngineFixture, NewUserSeesElevenItemsForSale) {
    EXPECT_EQ(engine->inventory().owned(), std::vector<std::string>{"cat"});
    EXPECT_EQ(engine->inventory().equipped(), "cat");
    int forSale = 0;
    for (const auto& item : Catalog::all()) {
        const ItemStatus s = engine->status(item);
        if (item.id == "cat") EXPECT_EQ(s.kind, ItemStatus::Kind::equipped);
        else if (item.id == "goldenCat") EXPECT_EQ(s.kind, ItemStatus::Kind::notForSale);
        else {
            EXPECT_EQ(s, (ItemStatus{ItemStatus::Kind::needsFish, item.price.amount}));
            ++forSale;
        }
    }
    EXPECT_EQ(forSale, 11);
}

TEST_F(EngineFixture, BuyingNeedsEnoughFishAndIsSavedAtOnce) {
    engine->grantDebugFish(249, "test");
    EXPECT_EQ(engine->buy("shiba").kind, PurchaseResult::Kind::notEnoughFish);
    EXPECT_EQ(engine->buy("shiba").missing, 1);
    EXPECT_FALSE(engine->inventory().owns("shiba"));
    EXPECT_FALSE(engine->equip("shiba"));
    engine->grantDebugFish(1, "test");
    const int savesBefore = saves;
    EXPECT_EQ(engine->buy("shiba").kind, PurchaseResult::Kind::bought);
    EXPECT_GT(saves, savesBefore);
    EXPECT_EQ(engine->wallet().balance(), 0);
    EXPECT_TRUE(engine->inventory().owns("shiba"));
    EXPECT_EQ(engine->buy("shiba").kind, PurchaseResult::Kind::alreadyOwned);
    EXPECT_EQ(engine->buy("dragon").kind, PurchaseResult::Kind::unknownItem);
    EXPECT_TRUE(engine->equip("shiba"));
    EXPECT_EQ(engine->wallet().ledger().back().reason.title(), "Adopted Kibo");
    EXPECT_EQ(engine->wallet().ledger().back().reason.subtitle(1), "Kibo the Shiba");
}

TEST_F(EngineFixture, OwningFiveMascotsIsACollector) {
    engine->grantDebugFish(2000, "test");
    for (const char* id : {"shiba", "bunny", "penguin"}) ASSERT_EQ(engine->buy(id).kind, PurchaseResult::Kind::bought);
    EXPECT_FALSE(engine->achievements().isUnlocked(AchievementID::collector));
    ASSERT_EQ(engine->buy("fox").kind, PurchaseResult::Kind::bought);
    EXPECT_TRUE(engine->achievements().isUnlocked(AchievementID::collector));
    EXPECT_EQ(engine->wallet().balance(), 2000 - 750 - 500 + 200);
    ASSERT_FALSE(moments.empty());
    EXPECT_EQ(moments.back().text, "Achievement unlocked: Collector");
}

TEST(Inventory, StoredIdsAreCheckedAgainstTheCatalog) {
    const Inventory inv({"shiba", "dragon", "shiba"}, "dragon");
    EXPECT_EQ(inv.owned(), (std::vector<std::string>{"cat", "shiba"}));
    EXPECT_EQ(inv.equipped(), "cat");
}

}  // namespace
}  // namespace trotlet::shop
