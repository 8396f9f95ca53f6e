// shop.json: the strict-money, lenient-extras decoder with the version 1 migrator, the load-time
// repair, and the economy engine running on what was loaded. If a file decodes, the wallet it
// gives holds exactly as many Fish as its history, and nothing in it is negative.

#include "panel/HeaderContent.h"
#include "shop/EconomyClock.h"
#include "shop/EconomyEngine.h"
#include "shop/ShopPersistence.h"
#include "shop/ShopStateCodec.h"

#include "FuzzSupport.h"

using namespace trotlet;
using namespace trotlet::shop;

namespace {

constexpr Timestamp kNow = 1790845200.0;  // 2026-10-01T09:00:00Z

void checkWallet(const ShopState& s) {
    int64_t running = 0;
    for (const auto& row : s.ledger) {
        FUZZ_CHECK(!__builtin_add_overflow(running, row.amount, &running));
        FUZZ_CHECK(row.balanceAfter == running);
        FUZZ_CHECK(row.balanceAfter >= 0);
    }
    FUZZ_CHECK(s.balance == running);
    FUZZ_CHECK(s.balance >= 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto bytes = fuzz::bytes(data, size);
    // The user's zone moves day boundaries, which the migrator and the streak read.
    const FixedOffsetCalendar calendar(static_cast<long>(size % 27) * 3600 - 12 * 3600);
    const ShopStateCodec codec(calendar);
    auto decoded = codec.decode(bytes);
    if (const auto* error = std::get_if<DecodeError>(&decoded)) {
        if (error->kind == DecodeError::Kind::newerSchema)
            FUZZ_CHECK(error->version > ShopState::currentSchemaVersion);
        return 0;
    }
    ShopState state = std::move(std::get<DecodedState>(decoded).state);
    FUZZ_CHECK(state.schemaVersion == ShopState::currentSchemaVersion);

    repairLoadedState(state, calendar, kNow);
    checkWallet(state);
    FUZZ_CHECK(repairLoadedState(state, calendar, kNow) == 0);

    // Saved and loaded again, the money reads back exactly.
    const std::string saved = ShopStateCodec::encode(state);
    auto again = codec.decode(saved);
    FUZZ_CHECK(std::holds_alternative<DecodedState>(again));
    const ShopState& reloaded = std::get<DecodedState>(again).state;
    FUZZ_CHECK(reloaded.balance == state.balance && reloaded.ledger == state.ledger);
    FUZZ_CHECK(continuesHistory(reloaded, state));
    (void)panel::headerChips(state.balance, std::nullopt, false, menubar::TemperatureUnit::celsius);

    // The economy carries on from the loaded state: a check-in, some work, a Golden Fish, a look
    // at the shop. Its wallet keeps its invariants through all of it.
    ManualClock clock(kNow);
    EconomyEngine engine(std::move(state), clock, calendar, 7);
    engine.observeClock();
    (void)engine.checkInOutcome();
    (void)engine.checkInCard();
    (void)engine.streakWeek();
    engine.handle(EconomyEvent::panelOpened);
    for (int minute = 0; minute < 3; ++minute) {
        clock.advance(60);
        engine.tickPassive(60, 0);
        engine.recordSample({0.97, "make", 90.0});
    }
    engine.advanceGoldenFish();
    (void)engine.goldenFish();
    (void)engine.nextFish();
    (void)engine.evaluateUnlocks();
    (void)engine.buy("shiba");
    engine.handle(EconomyEvent::panelClosed);
    FUZZ_CHECK(!engine.wallet().invariantViolation());
    const ShopState after = engine.state();
    checkWallet(after);
    FUZZ_CHECK(std::holds_alternative<DecodedState>(codec.decode(ShopStateCodec::encode(after))));
    return 0;
}
