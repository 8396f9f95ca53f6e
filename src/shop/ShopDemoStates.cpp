#include "shop/ShopDemoStates.h"

#include <algorithm>
#include <cmath>

#include "shop/EconomyEngine.h"

namespace trotlet::shop {

std::optional<ShopDemo> shopDemoNamed(std::string_view name) {
    for (size_t i = 0; i < ShopDemoNames.size(); ++i)
        if (ShopDemoNames[i] == name) return static_cast<ShopDemo>(i);
    return std::nullopt;
}

namespace {

// Plays days of use on an engine whose last day is the day of `now`.
class DemoScript {
public:
    DemoScript(Timestamp now, int days)
        : start_(std::min(std::floor(now / 86400) * 86400 - days * 86400.0 + 9 * 3600, now)),
          clock_(start_, "demo-boot"),
          engine_(ShopState::fresh(start_, 2026), clock_, calendar_, 4242),
          end_(now) {
        engine_.grantWelcomeGiftIfNeeded();
    }

    EconomyEngine& engine() { return engine_; }

    void day(double activeHours, bool checkIn, int goldenFish, bool stayUpLate = false) {
        if (checkIn) engine_.checkInOutcome();
        for (double t = 0; t < activeHours * 3600; t += 60) {
            clock_.advance(60);
            engine_.tickPassive(60, 10);
        }
        if (goldenFish > 0) {
            engine_.handle(EconomyEvent::panelOpened);
            for (int caught = 0; caught < goldenFish && clock_.wall() < nextMorning() - 3600;) {
                clock_.advance(1);
                engine_.advanceGoldenFish();
                if (const auto& fish = engine_.activeGoldenFish()) {
                    clock_.advance(1.5);
                    if (engine_.catchGoldenFish(fish->id).kind == CatchResult::Kind::caught) ++caught;
                }
            }
            engine_.handle(EconomyEvent::panelClosed);
        }
        engine_.handle(EconomyEvent::pet);
        engine_.addDistance(3500);
        if (stayUpLate) lateNight();
        // On to 09:00 the next day, or to the end of the script on its last day.
        const Timestamp next = std::min(nextMorning(), end_);
        if (next > clock_.wall()) clock_.advance(next - clock_.wall());
        engine_.tickPassive(600, 600);
    }

    void skipDay() { clock_.advance(86400); }

    // 95% CPU for 40 seconds.
    void fullLoad() {
        for (int i = 0; i < 21; ++i) {
            engine_.recordSample({0.98, "make", 84.0});
            clock_.advance(2);
        }
    }

    // A few active minutes at 02:30 the night after.
    void lateNight() {
        const Timestamp night = std::floor(clock_.wall() / 86400 + 1) * 86400 + 2.5 * 3600;
        clock_.advance(night - clock_.wall());
        for (int i = 0; i < 5; ++i) {
            clock_.advance(60);
            engine_.tickPassive(60, 0);
        }
    }

    ShopState finish() {
        if (end_ > clock_.wall()) clock_.advance(end_ - clock_.wall());
        engine_.observeClock();
        return engine_.state();
    }

private:
    Timestamp nextMorning() const { return std::floor((clock_.wall() - 9 * 3600) / 86400 + 1) * 86400 + 9 * 3600; }

    FixedOffsetCalendar calendar_{0};
    Timestamp start_;
    ManualClock clock_;
    EconomyEngine engine_;
    Timestamp end_;
};

}  // namespace

ShopState buildShopDemo(ShopDemo demo, Timestamp now) {
    switch (demo) {
    case ShopDemo::newUser: {
        DemoScript script(now, 0);
        return script.finish();
    }
    case ShopDemo::midGame: {
        DemoScript script(now, 20);
        for (int d = 0; d < 20; ++d) {
            if (d == 6 || d == 13) script.skipDay();
            else script.day(5, d % 5 != 3, d % 3 == 0 ? 2 : 0);
            if (d == 8) script.engine().buy("shiba");
            if (d == 16) script.engine().buy("bunny");
        }
        script.engine().equip("shiba");
        return script.finish();
    }
    case ShopDemo::streak29: {
        DemoScript script(now, 29);
        for (int d = 0; d < 29; ++d) script.day(3, true, 0);
        return script.finish();
    }
    case ShopDemo::saverUsed: {
        DemoScript script(now, 8);
        for (int d = 0; d < 5; ++d) script.day(3, true, 0);
        script.skipDay();                  // a missed day
        script.engine().checkInOutcome();  // the saver bridges it
        script.day(3, false, 0);
        script.day(3, true, 0);
        return script.finish();
    }
    case ShopDemo::rich: {
        DemoScript script(now, 10);
        for (int d = 0; d < 10; ++d) script.day(8, true, 3);
        script.engine().grantDebugFish(12000, "demo: rich");
        return script.finish();
    }
    case ShopDemo::complete: {
        DemoScript script(now, 31);
        EconomyEngine& engine = script.engine();
        for (int d = 0; d < 31; ++d) {
            if (d == 10) script.fullLoad();
            script.day(8.5, true, d < 4 ? 3 : 0, d == 11);
        }
        engine.grantDebugFish(9500, "demo: complete");
        for (const auto& item : Catalog::all())
            if (item.price.isForSale()) engine.buy(item.id);
        engine.equip("goldenCat");
        for (int i = 0; i < 25; ++i) {
            engine.handle(EconomyEvent::panelOpened);
            engine.handle(EconomyEvent::panelClosed);
        }
        for (int i = 0; i < 50; ++i) engine.handle(EconomyEvent::pet);
        engine.handle(EconomyEvent::processQuit);
        engine.handle(EconomyEvent::mascotOverheated);
        engine.addDownloaded(10.5e9);
        engine.addSleep(3600);
        engine.addDistance(42195);
        return script.finish();
    }
    }
    return ShopState::fresh(now, 1);
}

}  // namespace trotlet::shop
