#include "shop/EconomySimulator.h"

#include <algorithm>
#include <charconv>
#include <memory>

#include "shop/EconomyEngine.h"
#include "shop/ShopPersistence.h"
#include "shop/SplitMix64.h"

namespace trotlet::shop {

namespace {

enum class Profile { engaged, casual, maneki, tamper };
constexpr const char* profileName(Profile p) {
    switch (p) {
    case Profile::engaged: return "engaged";
    case Profile::casual: return "casual";
    case Profile::maneki: return "maneki";
    case Profile::tamper: return "tamper";
    }
    return "";
}

// The tamper profile shares the engaged user's draws; the others get their own.
uint64_t profileSalt(Profile p) { return p == Profile::tamper ? 0 : static_cast<uint64_t>(p); }

constexpr Timestamp simulationStart = 1790812800.0;  // 2026-10-01T00:00:00Z
constexpr double tick = 60;

struct ProfileRun {
    nlohmann::ordered_json daily = nlohmann::ordered_json::array();
    nlohmann::ordered_json summary;
    int64_t earned = 0;
    int64_t spent = 0;
    std::optional<std::string> ledgerMismatch;  // first day the balance and ledger disagreed
    std::optional<std::string> negative;        // first day a balance went below zero
};

class SimulatedUser {
public:
    SimulatedUser(Profile profile, const SimulationOptions& options)
        : profile_(profile),
          options_(options),
          clock_(simulationStart, "sim-boot-1"),
          store_(calendar_, [this] { return clock_.wall(); }, options.seed),
          // The tamper profile replays the engaged user's behaviour draw for draw, so the two
          // differ only in what the clock says.
          behaviour_{options.seed * 0x9E3779B97F4A7C15ULL + profileSalt(profile)},
          tampering_{options.seed ^ 0x7A3BE5EEDULL} {
        boot(ShopState::fresh(simulationStart, options.seed + profileSalt(profile)));
    }

    ProfileRun run() {
        engine_->grantWelcomeGiftIfNeeded();
        for (int d = 0; d < options_.days; ++d) day(d);
        finish();
        return std::move(run_);
    }

private:
    double uniform() { return SplitMix64::unit(behaviour_.next()); }
    bool chance(double p) { return uniform() < p; }

    void boot(ShopState state) {
        engine_ = std::make_unique<EconomyEngine>(std::move(state), clock_, calendar_, behaviour_.state ^ 0xD1CE);
        engine_->wallet().setChangeCallback([this](int64_t amount, const std::optional<LedgerReason>& reason) {
            if (!reason) return;
            if (reason->isEarning()) {
                run_.earned += amount;
                earnedToday_ += amount;
            } else if (amount < 0) {
                run_.spent -= amount;
                spentToday_ -= amount;
            }
        });
    }

    // Real time passes while the user is at the computer.
    void active(double seconds) {
        while (seconds > 0) {
            const double s = std::min(tick, seconds);
            clock_.advance(s);
            engine_->tickPassive(s, uniform() * 90);
            seconds -= s;
        }
    }

    // Away from the keyboard: the app keeps ticking, idle time grows.
    void away(double seconds, bool asleep = false) {
        if (asleep) {
            clock_.advance(seconds);
            engine_->tickPassive(seconds, seconds);
            return;
        }
        double idle = 0;
        while (seconds > 0) {
            const double s = std::min(tick, seconds);
            clock_.advance(s);
            idle += s;
            engine_->tickPassive(s, idle);
            seconds -= s;
        }
    }

    void panelSession(double seconds, double catchDelayMin, double catchDelayMax) {
        engine_->handle(EconomyEvent::panelOpened);
        double sinceTick = 0;
        const auto pass = [&](double s) {
            clock_.advance(s);
            sinceTick += s;
            seconds -= s;
            if (sinceTick >= tick - 1e-9) {
                engine_->tickPassive(sinceTick, uniform() * 30);
                sinceTick = 0;
            }
        };
        while (seconds > 0) {
            double step = std::min(tick - sinceTick, seconds);
            if (const auto due = engine_->nextGoldenFishEventDate())
                step = std::min(step, std::max(*due - engine_->trustedNow(), 0.0));
            pass(std::max(step, 0.05));
            engine_->advanceGoldenFish();
            if (const auto& fish = engine_->activeGoldenFish()) {
                pass(catchDelayMin + (catchDelayMax - catchDelayMin) * uniform());
                engine_->catchGoldenFish(fish->id);
            }
        }
        if (sinceTick > 0) engine_->tickPassive(sinceTick, 0);
        engine_->handle(EconomyEvent::panelClosed);
    }

    void checkIn() {
        const CheckInOutcome out = engine_->checkInOutcome();
        if (out.kind == CheckInOutcome::Kind::collected) checkInToday_ += out.reward;
    }

    void goShopping() {
        if (!options_.buyCheapest) return;
        if (profile_ == Profile::maneki && !engine_->inventory().owns("maneki")) {
            if (engine_->buy("maneki").kind == PurchaseResult::Kind::bought) engine_->equip("maneki");
            return;  // saving up for the lucky cat first
        }
        for (;;) {
            const CatalogItem* cheapest = nullptr;
            for (const auto& item : Catalog::all())
                if (item.price.isForSale() && !engine_->inventory().owns(item.id) &&
                    (!cheapest || item.price.amount < cheapest->price.amount))
                    cheapest = &item;
            if (!cheapest || engine_->buy(cheapest->id).kind != PurchaseResult::Kind::bought) break;
            if (engine_->inventory().equipped() != "maneki") engine_->equip(cheapest->id);
        }
    }

    // The tamper profile's moves, right after the morning check-in.
    void tamper() {
        const double draw = SplitMix64::unit(tampering_.next());
        if (clockOffset_ == 0 && draw < 0.12) {
            clockOffset_ = -86400;
        } else if (clockOffset_ == 0 && draw < 0.24) {
            clockOffset_ = 30 * 86400;
        } else if (clockOffset_ != 0 && draw < 0.5) {
            clockOffset_ = 0;
        } else {
            return;
        }
        clock_.setWall(realNow() + clockOffset_);
        checkIn();  // and try to collect at once
    }

    Timestamp realNow() const { return simulationStart + realElapsed(); }
    double realElapsed() const { return static_cast<double>(clockMonotonic()) / 1e9; }
    int64_t clockMonotonic() const { return clock_.read().monotonicNanos; }

    void day(int index) {
        earnedToday_ = spentToday_ = checkInToday_ = 0;
        const Timestamp dayStart = simulationStart + index * 86400.0;
        const auto sleepUntil = [&](double hour) {
            const double wait = dayStart + hour * 3600 - realNow();
            if (wait > 0) away(wait, true);
        };

        if (profile_ == Profile::casual) {
            if (chance(0.75)) {
                sleepUntil(18 + 2 * uniform());
                if (chance(0.7)) checkIn();
                active(1800 + 1800 * uniform());
                if (chance(0.5)) panelSession(960, 1.0, 6.0);
                active(3600 + 1800 * uniform());
                engine_->addDistance(500 + 1500 * uniform());
                if (chance(0.3)) engine_->handle(EconomyEvent::pet);
                goShopping();
            }
        } else {
            sleepUntil(8 + 0.5 * uniform());
            checkIn();
            if (profile_ == Profile::tamper) tamper();
            active(7200);
            panelSession(1200, 0.8, 3.0);
            active(3600 + 600 * uniform());
            away(3600);  // lunch
            active(3600);
            panelSession(1200, 0.8, 3.0);
            active(3600);
            if (chance(0.3)) {  // a long build at full load
                for (int i = 0; i < 25; ++i) {
                    engine_->recordSample({0.97, "cc1plus", 82.0});
                    clock_.advance(2);
                }
            }
            panelSession(1200, 0.8, 3.0);
            active(7200);
            for (int i = 0; i < 3; ++i) engine_->handle(EconomyEvent::pet);
            engine_->addDistance(2000 + 4000 * uniform());
            engine_->addDownloaded(2e8 * uniform());
            engine_->addSleep(1800 * uniform());
            goShopping();
        }
        sleepUntil(23.9);
        endOfDay(dayStart);
    }

    void endOfDay(Timestamp dayStart) {
        const Wallet& wallet = engine_->wallet();
        const std::string day = DayKey::of(dayStart, calendar_);
        if (const auto violation = wallet.invariantViolation(); violation && !run_.ledgerMismatch)
            run_.ledgerMismatch = day + ": " + *violation;
        if (wallet.balance() != wallet.ledgerSum() && !run_.ledgerMismatch) run_.ledgerMismatch = day;
        for (const auto& row : wallet.ledger())
            if ((row.balanceAfter < 0 || wallet.balance() < 0) && !run_.negative) run_.negative = day;

        nlohmann::ordered_json row = nlohmann::ordered_json::object();
        row["day"] = day;
        row["trustedDay"] = engine_->today().day;
        row["balance"] = wallet.balance();
        row["earned"] = earnedToday_;
        row["spent"] = spentToday_;
        row["passiveFish"] = engine_->today().passiveFish;
        row["activeMinutes"] = static_cast<int64_t>(engine_->today().activeSeconds / 60);
        row["checkIn"] = checkInToday_;
        row["streak"] = engine_->streak().current;
        row["goldenFish"] = engine_->today().goldenFishCaught;
        row["ledgerRows"] = wallet.ledger().size();
        row["owned"] = engine_->inventory().owned().size();
        row["equipped"] = engine_->inventory().equipped();
        const auto status = engine_->clockStatus().kind;
        row["clock"] = status == ClockStatus::Kind::ok ? "ok" : status == ClockStatus::Kind::behind ? "behind" : "jumpedForward";
        run_.daily.push_back(std::move(row));

        // Every night the shop goes through the file format and back, as a restart would.
        store_.save(engine_->state());
        ShopLoadResult loaded = store_.loadResult();
        if (loaded.notice && !run_.ledgerMismatch) run_.ledgerMismatch = day + ": reload raised " + loaded.notice->title();
        boot(std::move(loaded.state));
    }

    void finish() {
        const Wallet& wallet = engine_->wallet();
        nlohmann::ordered_json s = nlohmann::ordered_json::object();
        s["balance"] = wallet.balance();
        s["earned"] = run_.earned;
        s["spent"] = run_.spent;
        s["passiveFishLifetime"] = static_cast<int64_t>(engine_->lifetime().activeSeconds / 600);
        s["checkIns"] = engine_->streak().totalCheckIns;
        s["bestStreak"] = engine_->streak().best;
        s["goldenFishCaught"] = engine_->lifetime().goldenFishCaught;
        s["goldenFishMissed"] = engine_->lifetime().goldenFishMissed;
        nlohmann::ordered_json achievements = nlohmann::ordered_json::array();
        for (auto id : engine_->achievements().unlocked()) achievements.push_back(std::string(Achievement::nameOf(id)));
        s["achievements"] = std::move(achievements);
        s["owned"] = engine_->inventory().owned();
        s["equipped"] = engine_->inventory().equipped();
        s["ledgerRows"] = wallet.ledger().size();
        const auto average = wallet.averageDailyEarnings(clock_.wall(), 7);
        s["averageDailyEarnings7"] = average ? nlohmann::ordered_json(*average) : nlohmann::ordered_json(nullptr);
        run_.summary = std::move(s);
    }

    Profile profile_;
    SimulationOptions options_;
    FixedOffsetCalendar calendar_{0};
    ManualClock clock_;
    InMemoryShopPersistence store_;
    std::unique_ptr<EconomyEngine> engine_;
    SplitMix64 behaviour_;
    SplitMix64 tampering_;
    double clockOffset_ = 0;
    int64_t earnedToday_ = 0, spentToday_ = 0, checkInToday_ = 0;
    ProfileRun run_;
};

nlohmann::ordered_json check(const std::string& name, bool passed, nlohmann::ordered_json detail) {
    nlohmann::ordered_json c = nlohmann::ordered_json::object();
    c["name"] = name;
    c["passed"] = passed;
    c["detail"] = std::move(detail);
    return c;
}

std::optional<long long> parseInteger(const std::string& word) {
    long long value = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc() || end != word.data() + word.size()) return std::nullopt;
    return value;
}

}  // namespace

std::variant<SimulationOptions, std::string> SimulationOptions::parse(const std::vector<std::string>& words) {
    SimulationOptions options;
    if (words.size() > 4) return "--simulate-economy takes at most four arguments: [days] [profile] [seed] [buy]";
    if (words.size() > 0) {
        const auto days = parseInteger(words[0]);
        if (!days || *days < 1 || *days > 3650)
            return "--simulate-economy needs a number of days from 1 to 3650, got \"" + words[0] + "\"";
        options.days = static_cast<int>(*days);
    }
    if (words.size() > 1) {
        if (std::find(std::begin(profiles), std::end(profiles), words[1]) == std::end(profiles))
            return "--simulate-economy profile must be one of: engaged, casual, maneki, tamper, all; got \"" + words[1] + "\"";
        options.profile = words[1];
    }
    if (words.size() > 2) {
        const auto seed = parseInteger(words[2]);
        if (!seed || *seed < 0) return "--simulate-economy needs a seed that is a whole number >= 0, got \"" + words[2] + "\"";
        options.seed = static_cast<uint64_t>(*seed);
    }
    if (words.size() > 3) {
        if (words[3] != "cheapest" && words[3] != "none")
            return "--simulate-economy buy must be cheapest or none, got \"" + words[3] + "\"";
        options.buyCheapest = words[3] == "cheapest";
    }
    return options;
}

SimulationReport simulateEconomy(const SimulationOptions& options) {
    std::vector<Profile> wanted;
    if (options.profile == "all") wanted = {Profile::engaged, Profile::casual, Profile::maneki, Profile::tamper};
    else if (options.profile == "casual") wanted = {Profile::casual};
    else if (options.profile == "maneki") wanted = {Profile::maneki};
    else if (options.profile == "tamper") wanted = {Profile::tamper};
    else wanted = {Profile::engaged};

    SimulationReport report;
    nlohmann::ordered_json& out = report.json;
    out["days"] = options.days;
    out["profile"] = options.profile;
    out["seed"] = options.seed;
    out["buy"] = options.buyCheapest ? "cheapest" : "none";
    out["timeZone"] = "UTC";
    out["rules"] = EconomyRules::toJson();

    nlohmann::ordered_json profiles = nlohmann::ordered_json::array();
    bool ledgerOk = true, neverNegative = true;
    nlohmann::ordered_json ledgerDetail = nlohmann::ordered_json::object(), negativeDetail = nlohmann::ordered_json::object();
    std::optional<int64_t> honestEarned, tamperEarned;
    for (Profile p : wanted) {
        ProfileRun run = SimulatedUser(p, options).run();
        ledgerOk &= !run.ledgerMismatch;
        neverNegative &= !run.negative;
        ledgerDetail[profileName(p)] = run.ledgerMismatch ? nlohmann::ordered_json(*run.ledgerMismatch) : nlohmann::ordered_json("ok");
        negativeDetail[profileName(p)] = run.negative ? nlohmann::ordered_json(*run.negative) : nlohmann::ordered_json("ok");
        if (p == Profile::engaged) honestEarned = run.earned;
        if (p == Profile::tamper) tamperEarned = run.earned;
        nlohmann::ordered_json entry = nlohmann::ordered_json::object();
        entry["profile"] = profileName(p);
        entry["summary"] = std::move(run.summary);
        entry["daily"] = std::move(run.daily);
        profiles.push_back(std::move(entry));
    }
    // The tamper profile is judged against the engaged user it copies, run on the side when
    // it wasn't asked for.
    if (tamperEarned && !honestEarned) honestEarned = SimulatedUser(Profile::engaged, options).run().earned;
    out["profiles"] = std::move(profiles);

    nlohmann::ordered_json checks = nlohmann::ordered_json::array();
    checks.push_back(check("balance == sum(ledger) every day", ledgerOk, std::move(ledgerDetail)));
    checks.push_back(check("ledgerNeverNegative", neverNegative, std::move(negativeDetail)));
    report.passed = ledgerOk && neverNegative;
    if (tamperEarned) {
        nlohmann::ordered_json detail = nlohmann::ordered_json::object();
        detail["tamperEarned"] = *tamperEarned;
        detail["honestEarned"] = *honestEarned;
        const bool fair = *tamperEarned <= *honestEarned;
        checks.push_back(check("tampering doesn't pay", fair, std::move(detail)));
        report.passed = report.passed && fair;
    }
    out["checks"] = std::move(checks);
    out["passed"] = report.passed;
    return report;
}

}  // namespace trotlet::shop
