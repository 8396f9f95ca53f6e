#include "shop/qt/ShopRuntime.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <variant>

#include <QCoreApplication>

#include "metrics/MetricKinds.h"
#include "metrics/MetricsSnapshot.h"
#include "shop/files/ShopPersistenceFactory.h"
#include "shop/files/SystemEconomyClock.h"

namespace trotlet::shop {

namespace {

int millisecondsUntil(double seconds) {
    if (!(seconds > 0)) return 0;
    return static_cast<int>(std::min(seconds * 1000.0 + 1.0, static_cast<double>(INT_MAX)));
}

}  // namespace

ShopTick ShopTick::fromSnapshot(const metrics::MetricsSnapshot& snapshot,
                                metrics::MetricKinds kinds) {
    ShopTick tick;
    tick.sample.cpuLoad = snapshot.cpu.total;
    // The process table is read only while the panel shows it; an older list would name a
    // process that is no longer the busiest.
    if (kinds.contains(metrics::MetricKinds::processes) && !snapshot.processes.topCPU.empty())
        tick.sample.topProcess = snapshot.processes.topCPU.front().name;
    if (kinds.contains(metrics::MetricKinds::sensors))
        tick.sample.hottestCelsius =
            snapshot.thermal.cpuMaxC ? snapshot.thermal.cpuMaxC : snapshot.thermal.cpuC;
    if (kinds.contains(metrics::MetricKinds::network))
        tick.totalDownBytes = snapshot.network.totalDownBytes;
    return tick;
}

ShopRuntime::Parts ShopRuntime::systemParts(const ShopDebugOptions& debug, bool inMemorySession,
                                            std::uint64_t seed) {
    Parts parts;
    parts.clock = std::make_unique<SystemEconomyClock>();
    parts.calendar = std::make_unique<LocalTimeCalendar>();
    const EconomyClock* clock = parts.clock.get();
    parts.persistence = makeShopPersistence(
        debug, inMemorySession, *parts.calendar, [clock] { return clock->read().wall; }, seed);
    return parts;
}

ShopDebugOptions ShopRuntime::debugOptionsFromArguments() {
#ifdef NDEBUG
    return {};
#else
    std::vector<std::string> args;
    for (const QString& arg : QCoreApplication::arguments()) args.push_back(arg.toStdString());
    // The command-line runner has already refused a bad value before the app started.
    const auto parsed = ShopDebugOptions::parse(args);
    if (const auto* options = std::get_if<ShopDebugOptions>(&parsed)) return *options;
    return {};
#endif
}

ShopRuntime::ShopRuntime(Parts parts, Options options, QObject* parent)
    : QObject(parent), parts_(std::move(parts)), options_(options) {
    ShopLoadResult loaded = parts_.persistence->loadResult();
    engine_ = std::make_unique<EconomyEngine>(std::move(loaded.state), *parts_.clock,
                                              *parts_.calendar, options_.seed);
    if (loaded.notice) {
        // The panel shows the banner; until the user opens it, the terminal hears of it.
        std::fprintf(stderr, "trotlet: %s. %s\n", loaded.notice->title().c_str(),
                     loaded.notice->body().c_str());
        engine_->notices().raise(*loaded.notice);
    }
    engine_->setGoldenFishEnabled(options_.goldenFishEnabled);
    equipped_ = engine_->inventory().equipped();
    engine_->setChangeCallback([this] { engineChanged(); });
    engine_->setMomentCallback([this](const EconomyMoment& moment) { emit momentRaised(moment); });

    saveTimer_.setSingleShot(true);
    connect(&saveTimer_, &QTimer::timeout, this, &ShopRuntime::flush);
    fishTimer_.setSingleShot(true);
    fishTimer_.setTimerType(Qt::PreciseTimer);  // a fish's miss deadline is half a second
    connect(&fishTimer_, &QTimer::timeout, this, &ShopRuntime::advanceGoldenFish);
    // Menu, SIGINT and SIGTERM all leave through the event loop's quit.
    if (QCoreApplication* app = QCoreApplication::instance())
        quitConnection_ = connect(app, &QCoreApplication::aboutToQuit, this, &ShopRuntime::flush);
}

ShopRuntime::~ShopRuntime() {
    disconnect(quitConnection_);
    flush();
    // The engine's callbacks point here.
    engine_->setChangeCallback(nullptr);
    engine_->setMomentCallback(nullptr);
}

void ShopRuntime::start() {
    if (options_.welcomeGiftAtStart) engine_->grantWelcomeGiftIfNeeded();
    if (options_.grantFish) engine_->grantDebugFish(*options_.grantFish, "--grant-fish");
    rearmGoldenFish();
}

bool ShopRuntime::grantWelcomeGift() { return engine_->grantWelcomeGiftIfNeeded(); }

void ShopRuntime::tick(const ShopTick& tick) {
    const ClockReading now = parts_.clock->read();
    double elapsed = 0;
    // Time between samples on the monotonic clock: the wall clock may be set at any moment,
    // and after a reboot the previous reading means nothing.
    if (lastTick_ && lastTick_->bootId == now.bootId &&
        now.monotonicNanos >= lastTick_->monotonicNanos)
        elapsed = static_cast<double>(now.monotonicNanos - lastTick_->monotonicNanos) / 1e9;
    lastTick_ = now;

    const int64_t balanceBefore = engine_->wallet().balance();
    const DailyCounters todayBefore = engine_->today();
    const LifetimeStats lifetimeBefore = engine_->lifetime();
    inRoutineTick_ = true;
    routineChanged_ = false;
    engine_->tickPassive(elapsed, tick.idleSeconds.value_or(0));
    engine_->recordSample(tick.sample);
    engine_->addDistance(tick.metersRun);
    if (tick.mascotAsleep && elapsed <= EconomyRules::longestCreditedTickSeconds)
        engine_->addSleep(elapsed);
    if (tick.totalDownBytes) {
        // A counter that went down was reset (another interface, a driver reload): start over.
        if (lastDownBytes_ && *tick.totalDownBytes > *lastDownBytes_)
            engine_->addDownloaded(static_cast<double>(*tick.totalDownBytes - *lastDownBytes_));
        lastDownBytes_ = tick.totalDownBytes;
    }
    inRoutineTick_ = false;

    if (engine_->wallet().balance() != balanceBefore) {
        scheduleSave(0);
    } else if (routineChanged_) {
        scheduleSave(options_.progressSaveDelayMs);
    } else if (!(engine_->today() == todayBefore) || !(engine_->lifetime() == lifetimeBefore)) {
        dirty_ = true;
        scheduleSave(options_.counterSaveDelayMs);
    }
    // The user coming back or going away resumes or pauses the Golden Fish count.
    rearmGoldenFish();
}

void ShopRuntime::setPanelOpen(bool open) {
    engine_->handle(open ? EconomyEvent::panelOpened : EconomyEvent::panelClosed);
    advanceGoldenFish();
}

void ShopRuntime::handle(EconomyEvent event) { engine_->handle(event); }

void ShopRuntime::setGoldenFishEnabled(bool enabled) {
    if (engine_->goldenFishEnabled() == enabled) return;
    engine_->setGoldenFishEnabled(enabled);
    rearmGoldenFish();
}

void ShopRuntime::mascotOverheated() { engine_->handle(EconomyEvent::mascotOverheated); }

CatchResult ShopRuntime::catchGoldenFish(std::int64_t id) {
    const CatchResult result = engine_->catchGoldenFish(id);
    if (result.kind != CatchResult::Kind::noSuchFish) emit goldenFishChanged();
    rearmGoldenFish();
    return result;
}

PurchaseResult ShopRuntime::buy(const std::string& id) {
    const PurchaseResult result = engine_->buy(id);
    if (result.kind == PurchaseResult::Kind::bought) flush();
    return result;
}

bool ShopRuntime::equip(const std::string& id) { return engine_->equip(id); }

CheckInOutcome ShopRuntime::checkIn() {
    const CheckInOutcome outcome = engine_->checkInOutcome();
    // A rejected check-in changes nothing in the engine but may have found the clock behind.
    if (outcome.kind != CheckInOutcome::Kind::collected) emit changed();
    return outcome;
}

void ShopRuntime::dismissNotice(ShopNotice::Kind kind) {
    engine_->notices().dismiss(kind);
    emit changed();
}

void ShopRuntime::engineChanged() {
    dirty_ = true;
    if (inRoutineTick_)
        routineChanged_ = true;
    else
        scheduleSave(0);
    const std::string& equipped = engine_->inventory().equipped();
    if (equipped != equipped_) {
        equipped_ = equipped;
        emit equippedChanged(QString::fromStdString(equipped_));
    }
    emit changed();
}

void ShopRuntime::scheduleSave(int delayMs) {
    dirty_ = true;
    // An earlier save already due covers this change too.
    if (saveTimer_.isActive() && saveTimer_.remainingTime() <= delayMs) return;
    saveTimer_.start(std::max(delayMs, 0));
}

void ShopRuntime::flush() {
    saveTimer_.stop();
    if (!dirty_) return;
    const ShopSaveResult result = parts_.persistence->save(engine_->state());
    ++saves_;
    if (result) {
        dirty_ = false;
        lastSaveError_.clear();
        return;
    }
    // Kept dirty: the next change or the quit tries again. Said once per distinct failure.
    if (result.error != lastSaveError_)
        std::fprintf(stderr, "trotlet: could not save the shop: %s\n", result.error.c_str());
    lastSaveError_ = result.error;
}

void ShopRuntime::rearmGoldenFish() {
    const std::optional<Timestamp> due = engine_->nextGoldenFishEventDate();
    if (!due) {
        fishTimer_.stop();
        return;
    }
    fishTimer_.start(millisecondsUntil(*due - engine_->trustedNow()));
}

void ShopRuntime::advanceGoldenFish() {
    const std::optional<GoldenFishSpawn> before = engine_->activeGoldenFish();
    engine_->advanceGoldenFish();
    if (engine_->activeGoldenFish() != before) emit goldenFishChanged();
    rearmGoldenFish();
}

}  // namespace trotlet::shop
