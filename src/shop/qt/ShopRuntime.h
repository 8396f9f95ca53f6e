#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include <QObject>
#include <QString>
#include <QTimer>

#include "shop/EconomyEngine.h"
#include "shop/ShopDebugOptions.h"
#include "shop/ShopPersistence.h"

namespace trotlet::metrics {
struct MetricsSnapshot;
struct MetricKinds;
}  // namespace trotlet::metrics

namespace trotlet::shop {

// What one metrics sample brings the economy: the reading for the day's peaks, the user's
// idle time for the passive tick, and what the mascot did since the previous sample.
struct ShopTick {
    EconomySample sample;
    // Absent when the desktop cannot tell; the user then counts as present, since a desktop
    // without an idle source would otherwise never pay for time at the computer.
    std::optional<double> idleSeconds;
    double metersRun = 0;  // the mascot's distance since the previous tick
    bool mascotAsleep = false;
    std::optional<std::uint64_t> totalDownBytes;  // the primary interface's received bytes

    // The sample's part: CPU load, the busiest process (only when the sample read the process
    // table), the hottest CPU reading and the received-bytes counter.
    static ShopTick fromSnapshot(const metrics::MetricsSnapshot& snapshot,
                                 metrics::MetricKinds kinds);
};

// The economy in the running app: owns the engine, its clock, calendar and shop file, feeds
// it from the sampling tick, runs the Golden Fish timer while a fish can come, and saves.
//
// Saving: a change the user made or one that moved Fish is written on the next event-loop
// turn, so a burst of changes costs one write. The passive tick reports progress on every
// sample while the user is active; each save is an fsync'd write, so progress without a
// payment is written within `progressSaveDelayMs` and counter-only changes (distance, sleep,
// the day's peaks) within `counterSaveDelayMs`. Quitting, or destroying the runtime, writes
// whatever is still pending, so nothing is lost on an orderly exit.
class ShopRuntime : public QObject {
    Q_OBJECT
public:
    // The engine's collaborators. The persistence refers to the calendar (and usually reads
    // the clock), so all three live and die together here.
    struct Parts {
        std::unique_ptr<EconomyClock> clock;
        std::unique_ptr<Calendar> calendar;
        std::unique_ptr<ShopPersistence> persistence;
    };

    struct Options {
        std::uint64_t seed = 0;
        std::optional<std::int64_t> grantFish;  // `--grant-fish` in debug builds
        bool goldenFishEnabled = true;
        // A new user's gift waits for the welcome tour, which hands it over on a click.
        bool welcomeGiftAtStart = true;
        int progressSaveDelayMs = 60 * 1000;
        int counterSaveDelayMs = 5 * 60 * 1000;
    };

    // The machine's clocks and time zone, and the shop chosen by the debug flags: a demo shop
    // in memory, the in-memory session's demo shop (never touching shop.json), another file,
    // or "shop.json" in the data folder.
    static Parts systemParts(const ShopDebugOptions& debug, bool inMemorySession,
                             std::uint64_t seed);
    // The debug flags from the process's own command line (none in release builds).
    static ShopDebugOptions debugOptionsFromArguments();

    // Loads the shop; a notice from loading is kept for the panel and told on stderr.
    ShopRuntime(Parts parts, Options options, QObject* parent = nullptr);
    ~ShopRuntime() override;

    // Grants the welcome gift to a new user (unless the tour will) and the debug grant.
    // Separate from construction so that the moments it raises reach receivers connected in
    // between.
    void start();
    // The welcome gift, once: true when it was granted now (with its first achievement).
    bool grantWelcomeGift();

    // One sampling tick: the passive tick over the time since the previous one (measured on
    // the economy clock's monotonic reading, so a suspend or a long stall earns nothing), the
    // day's peaks and the mascot's counters.
    void tick(const ShopTick& tick);

    void setPanelOpen(bool open);
    // A user's action in the panel: a pet, a process quit.
    void handle(EconomyEvent event);
    void setGoldenFishEnabled(bool enabled);
    // The mascot's mood has just become overheated.
    void mascotOverheated();
    CatchResult catchGoldenFish(std::int64_t id);
    // The shop's actions. A purchase is written before this returns: a user who paid must
    // never lose the mascot to a crash a moment later.
    PurchaseResult buy(const std::string& id);
    bool equip(const std::string& id);
    CheckInOutcome checkIn();
    void dismissNotice(ShopNotice::Kind kind);

    // Writes pending changes now.
    void flush();

    EconomyEngine& engine() { return *engine_; }
    const EconomyEngine& engine() const { return *engine_; }
    const EconomyClock& clock() const { return *parts_.clock; }
    const Calendar& calendar() const { return *parts_.calendar; }
    ShopPersistence& persistence() { return *parts_.persistence; }

    bool hasUnsavedChanges() const { return dirty_; }
    bool isSaveScheduled() const { return saveTimer_.isActive(); }
    int scheduledSaveDelayMs() const { return saveTimer_.isActive() ? saveTimer_.interval() : -1; }
    int saveCount() const { return saves_; }
    const std::string& lastSaveError() const { return lastSaveError_; }
    bool isGoldenFishTimerArmed() const { return fishTimer_.isActive(); }
    int goldenFishTimerIntervalMs() const {
        return fishTimer_.isActive() ? fishTimer_.interval() : -1;
    }

    // The Golden Fish timer's work: a spawn or a miss when due, then the timer is set again.
    // Public so a test on a fake clock can fire it.
    void advanceGoldenFish();

signals:
    void momentRaised(const trotlet::shop::EconomyMoment& moment);
    void equippedChanged(const QString& mascotId);
    // A Golden Fish appeared, was caught or swam away.
    void goldenFishChanged();
    // Anything in the shop changed: the balance, the counters, the inventory.
    void changed();

private:
    void engineChanged();
    void scheduleSave(int delayMs);
    void rearmGoldenFish();

    Parts parts_;
    Options options_;
    std::unique_ptr<EconomyEngine> engine_;
    QTimer saveTimer_;
    QTimer fishTimer_;
    bool dirty_ = false;
    bool inRoutineTick_ = false;
    bool routineChanged_ = false;
    int saves_ = 0;
    std::string lastSaveError_;
    std::string equipped_;
    std::optional<ClockReading> lastTick_;
    std::optional<std::uint64_t> lastDownBytes_;
    QMetaObject::Connection quitConnection_;
};

}  // namespace trotlet::shop
