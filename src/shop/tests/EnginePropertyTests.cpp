#include <random>

#include "EngineFixture.h"
#include "shop/ShopPersistence.h"
#include "shop/ShopStateCodec.h"

namespace trotlet::shop {
namespace {

using testing::EngineFixture;

// Random days of use, including clock tampering, reboots and save/load cycles through the
// codec; after every step the wallet's invariants and the daily limits hold, and nothing
// is lost across a reload.
TEST_F(EngineFixture, InvariantsHoldOverRandomOperationSequences) {
    for (unsigned seed = 1; seed <= 6; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        std::mt19937_64 random(seed);
        clock = ManualClock(testing::day1 + seed * 1000.0);
        start(ShopState::fresh(clock.wall(), seed));
        InMemoryShopPersistence store(calendar, [&] { return clock.wall(); }, seed);
        engine->grantWelcomeGiftIfNeeded();
        std::optional<Timestamp> lastSeen;
        int boots = 1;

        for (int step = 0; step < 800; ++step) {
            const int64_t before = engine->wallet().balance();
            const auto op = random() % 14;
            switch (op) {
            case 0:
            case 1: work(static_cast<double>(random() % 1800), static_cast<double>(random() % 500)); break;
            case 2: engine->checkInOutcome(); break;
            case 3: engine->handle(EconomyEvent::panelOpened); break;
            case 4: engine->handle(EconomyEvent::panelClosed); break;
            case 5:
                clock.advance(static_cast<double>(random() % 1200));
                engine->advanceGoldenFish();
                if (engine->activeGoldenFish() && random() % 2) {
                    clock.advance(static_cast<double>(random() % 6));
                    engine->catchGoldenFish(engine->activeGoldenFish()->id);
                }
                break;
            case 6: {
                const auto& all = Catalog::all();
                engine->buy(all[random() % all.size()].id);
                break;
            }
            case 7: engine->equip(Catalog::all()[random() % Catalog::all().size()].id); break;
            case 8: clock.shiftWall(-static_cast<double>(random() % (3 * 86400))); break;
            case 9: clock.shiftWall(static_cast<double>(random() % (40 * 86400))); break;
            case 10: clock.advance(static_cast<double>(random() % (2 * 86400))); break;
            case 11: clock.reboot("boot-" + std::to_string(++boots)); break;
            case 12: {
                ASSERT_TRUE(store.save(engine->state()));
                const ShopState saved = engine->state();
                ShopLoadResult loaded = store.loadResult();
                ASSERT_FALSE(loaded.notice) << loaded.notice->body();
                ASSERT_EQ(ShopStateCodec::encode(loaded.state), ShopStateCodec::encode(saved));
                start(std::move(loaded.state));
                break;
            }
            case 13:
                for (int i = 0; i < 60; ++i) engine->wallet().record(1, LedgerReason::goldenFish(), false);
                break;
            }
            const auto violation = engine->wallet().invariantViolation();
            ASSERT_FALSE(violation) << "step " << step << " op " << op << ": " << *violation;
            ASSERT_LE(engine->today().passiveFish, engine->passiveDailyCap());
            ASSERT_LE(engine->today().goldenFishCaught, 3);
            ASSERT_LE(engine->today().goldenFishSpawned, 5);
            if (op != 6 && op != 12) {
                ASSERT_GE(engine->wallet().balance(), before) << "only purchases spend";
            }
            if (lastSeen && engine->lastSeen()) {
                ASSERT_GE(*engine->lastSeen(), *lastSeen) << "step " << step;
            }
            lastSeen = engine->lastSeen();
        }
    }
}

}  // namespace
}  // namespace trotlet::shop
