// The shop in the running app, on a manual clock: what the sampling tick pays, when the shop
// file is written, what reaches the notifications, and the Golden Fish timer.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <QCoreApplication>
#include <QTimer>

#include "alerts/qt/NotificationController.h"
#include "metrics/MetricKinds.h"
#include "metrics/MetricsSnapshot.h"
#include "settings/AppSettings.h"
#include "settings/DefaultsStore.h"
#include "settings/NotificationSettings.h"
#include "shop/Calendar.h"
#include "shop/ShopStateCodec.h"
#include "shop/files/FileShopPersistence.h"
#include "shop/qt/CheckInReminders.h"
#include "shop/qt/ShopAlerts.h"
#include "shop/qt/ShopRuntime.h"

namespace trotlet::shop {
namespace {

constexpr Timestamp start = 1790845200.0;  // 2026-10-01T09:00:00Z

QCoreApplication& app() {
    static int argc = 1;
    static char name[] = "shop_tests";
    static char* argv[] = {name, nullptr};
    // Never destroyed: Qt allows one application object, and statics may outlive main.
    static QCoreApplication* instance = new QCoreApplication(argc, argv);
    return *instance;
}

void settle() {
    for (int i = 0; i < 5; ++i) QCoreApplication::processEvents();
}

struct TempDir {
    std::filesystem::path path;
    TempDir() {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "shop-runtime-XXXXXX").string();
        path = ::mkdtemp(pattern.data());
    }
    ~TempDir() { std::filesystem::remove_all(path); }
};

std::string readFile(const std::filesystem::path& path) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

struct RuntimeTest : ::testing::Test {
    TempDir dir;
    ManualClock* clock = nullptr;
    std::unique_ptr<ShopRuntime> runtime;
    std::vector<EconomyMoment> moments;

    void SetUp() override { app(); }

    std::filesystem::path shopFile() const { return dir.path / "shop.json"; }

    ShopRuntime::Parts parts(bool onDisk) {
        ShopRuntime::Parts p;
        auto manual = std::make_unique<ManualClock>(start);
        clock = manual.get();
        p.clock = std::move(manual);
        p.calendar = std::make_unique<FixedOffsetCalendar>(0);
        auto now = [c = clock] { return c->wall(); };
        if (onDisk)
            p.persistence =
                std::make_unique<FileShopPersistence>(shopFile().string(), *p.calendar, now, 11);
        else
            p.persistence = std::make_unique<InMemoryShopPersistence>(*p.calendar, now, 11);
        return p;
    }

    // A started runtime; `primed` gives it a first sample, from which the next one measures.
    void make(bool onDisk = false, ShopRuntime::Options options = {}, bool primed = true) {
        runtime = std::make_unique<ShopRuntime>(parts(onDisk), options);
        QObject::connect(runtime.get(), &ShopRuntime::momentRaised,
                         [this](const EconomyMoment& m) { moments.push_back(m); });
        runtime->start();
        if (primed) runtime->tick({});
    }

    // Samples every `step` seconds for `seconds`, the user idle for `idle` (absent: unknown).
    void run(double seconds, std::optional<double> idle, double step = 5, ShopTick tick = {}) {
        tick.idleSeconds = idle;
        for (double t = 0; t < seconds - 1e-9; t += step) {
            clock->advance(step);
            runtime->tick(tick);
        }
    }

    int64_t balance() const { return runtime->engine().wallet().balance(); }

    std::optional<ShopState> saved() const {
        auto decoded = ShopStateCodec(FixedOffsetCalendar(0)).decode(readFile(shopFile()));
        if (auto* ok = std::get_if<DecodedState>(&decoded)) return ok->state;
        return std::nullopt;
    }
};

// --- the passive tick ----------------------------------------------------------------------

TEST_F(RuntimeTest, PassiveFishFollowTheTimeBetweenSamplesWhileTheUserIsThere) {
    struct Case {
        const char* name;
        std::optional<double> idle;
        double seconds;
        double step;
        int64_t fish;
    };
    const Case cases[] = {
        {"at the keyboard for ten minutes", 0.0, 600, 5, 1},
        {"at the keyboard, sampled every two seconds", 10.0, 1200, 2, 2},
        {"away the whole time", 400.0, 1800, 5, 0},
        {"the desktop can't tell", std::nullopt, 600, 5, 1},
        {"samples three minutes apart still count", 0.0, 1800, 180, 3},
        {"samples four minutes apart (a suspend) earn nothing", 0.0, 2400, 240, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        make();
        const int64_t before = balance();
        run(c.seconds, c.idle, c.step);
        EXPECT_EQ(balance() - before, c.fish);
    }
}

TEST_F(RuntimeTest, TheFirstSampleAndTheFirstAfterARebootCreditNothing) {
    make(false, {}, false);
    const double active = runtime->engine().today().activeSeconds;
    clock->advance(60);
    runtime->tick({.idleSeconds = 0.0});  // nothing to measure from yet
    EXPECT_DOUBLE_EQ(runtime->engine().today().activeSeconds, active);
    run(60, 0.0, 30);
    EXPECT_DOUBLE_EQ(runtime->engine().today().activeSeconds, active + 60);
    clock->advance(30);
    clock->reboot("boot-2");  // the monotonic clock starts again near zero
    clock->advance(30);
    runtime->tick({.idleSeconds = 0.0});
    EXPECT_DOUBLE_EQ(runtime->engine().today().activeSeconds, active + 60);
    run(30, 0.0, 30);
    EXPECT_DOUBLE_EQ(runtime->engine().today().activeSeconds, active + 90);
}

TEST_F(RuntimeTest, CountersFromTheTickReachTheDay) {
    make();
    ShopTick tick;
    tick.metersRun = 2.5;
    tick.mascotAsleep = true;
    tick.sample.cpuLoad = 0.4;
    tick.sample.hottestCelsius = 61;
    run(50, 400.0, 5, tick);
    const DailyCounters& today = runtime->engine().today();
    EXPECT_DOUBLE_EQ(today.metersRun, 25);
    EXPECT_DOUBLE_EQ(today.secondsAsleep, 50);
    EXPECT_DOUBLE_EQ(today.peakCPU, 0.4);
    EXPECT_EQ(today.hottestCPU, 61);

    // The received-bytes counter counts by difference and starts over when it goes down.
    for (const std::uint64_t total : {1000u, 3000u, 500u, 700u}) {
        clock->advance(5);
        runtime->tick({.idleSeconds = 0.0, .totalDownBytes = total});
    }
    EXPECT_DOUBLE_EQ(runtime->engine().lifetime().bytesDownloaded, 2200);
}

TEST_F(RuntimeTest, ASnapshotGivesTheEconomyOnlyWhatItRead) {
    metrics::MetricsSnapshot s;
    s.cpu.total = 0.83;
    s.processes.topCPU.push_back({.pid = 7, .name = "cc1plus"});
    s.thermal.cpuC = 70;
    s.thermal.cpuMaxC = 78;
    s.network.totalDownBytes = 12345;

    const ShopTick all = ShopTick::fromSnapshot(s, metrics::MetricKinds::all);
    EXPECT_DOUBLE_EQ(all.sample.cpuLoad, 0.83);
    EXPECT_EQ(all.sample.topProcess, "cc1plus");
    EXPECT_EQ(all.sample.hottestCelsius, 78);
    EXPECT_EQ(all.totalDownBytes, 12345u);

    const ShopTick menuBar = ShopTick::fromSnapshot(s, metrics::MetricKinds::cpu);
    EXPECT_EQ(menuBar.sample.topProcess, "");
    EXPECT_FALSE(menuBar.sample.hottestCelsius);
    EXPECT_FALSE(menuBar.totalDownBytes);

    s.thermal.cpuMaxC.reset();
    EXPECT_EQ(ShopTick::fromSnapshot(s, metrics::MetricKinds::sensors).sample.hottestCelsius, 70);
}

// --- saving --------------------------------------------------------------------------------

TEST_F(RuntimeTest, FishAreWrittenOnTheNextTurnAndProgressWithinAMinute) {
    make(true, {.progressSaveDelayMs = 60000, .counterSaveDelayMs = 300000});
    // The welcome gift moved Fish: written as soon as the event loop turns.
    EXPECT_EQ(runtime->scheduledSaveDelayMs(), 0);
    settle();
    ASSERT_TRUE(saved());
    const int64_t gift = balance();
    EXPECT_EQ(saved()->balance, gift);
    EXPECT_GE(gift, 100);
    const int saves = runtime->saveCount();

    // Progress toward the next Fish waits for the minute's write.
    run(60, 0.0);
    EXPECT_EQ(runtime->scheduledSaveDelayMs(), 60000);
    EXPECT_TRUE(runtime->hasUnsavedChanges());
    settle();
    EXPECT_EQ(runtime->saveCount(), saves);

    // A paid Fish is written at once; the pending progress goes with it.
    run(540, 0.0);
    EXPECT_EQ(balance(), gift + 1);
    EXPECT_EQ(runtime->scheduledSaveDelayMs(), 0);
    settle();
    EXPECT_FALSE(runtime->hasUnsavedChanges());
    EXPECT_EQ(saved()->balance, gift + 1);
    EXPECT_DOUBLE_EQ(saved()->today.activeSeconds, 600);

    // Counters alone (the user away, the mascot running) wait longest.
    ShopTick running;
    running.metersRun = 3;
    run(20, 900.0, 5, running);
    EXPECT_EQ(runtime->scheduledSaveDelayMs(), 300000);
}

TEST_F(RuntimeTest, WhatIsPendingIsWrittenWhenTheRuntimeGoes) {
    make(true);
    settle();
    run(120, 0.0);
    ShopTick running;
    running.metersRun = 4;
    run(10, 0.0, 5, running);
    ASSERT_TRUE(runtime->hasUnsavedChanges());
    const double active = runtime->engine().today().activeSeconds;
    runtime.reset();
    const auto state = saved();
    ASSERT_TRUE(state);
    EXPECT_DOUBLE_EQ(state->today.activeSeconds, active);
    EXPECT_DOUBLE_EQ(state->today.metersRun, 8);
}

TEST_F(RuntimeTest, QuittingTheEventLoopWritesWhatIsPending) {
    make(true);
    settle();
    run(120, 0.0);
    ASSERT_TRUE(runtime->hasUnsavedChanges());
    QTimer::singleShot(0, &app(), [] { QCoreApplication::quit(); });
    QCoreApplication::exec();
    EXPECT_FALSE(runtime->hasUnsavedChanges());
    EXPECT_DOUBLE_EQ(saved()->today.activeSeconds, runtime->engine().today().activeSeconds);
}

TEST_F(RuntimeTest, AFailedWriteStaysPendingAndIsRetried) {
    make(true);
    settle();
    // A file where the folder should be: the shop can't be written there.
    std::filesystem::remove(shopFile());
    std::filesystem::create_directory(shopFile());
    run(600, 0.0);
    const int64_t earned = balance();
    runtime->flush();
    EXPECT_TRUE(runtime->hasUnsavedChanges());
    EXPECT_FALSE(runtime->lastSaveError().empty());
    std::filesystem::remove(shopFile());
    runtime->flush();
    EXPECT_FALSE(runtime->hasUnsavedChanges());
    EXPECT_EQ(saved()->balance, earned);
}

struct XdgDataHome {
    std::optional<std::string> previous;
    explicit XdgDataHome(const std::filesystem::path& path) {
        if (const char* old = std::getenv("XDG_DATA_HOME")) previous = old;
        ::setenv("XDG_DATA_HOME", path.c_str(), 1);
    }
    ~XdgDataHome() {
        if (previous)
            ::setenv("XDG_DATA_HOME", previous->c_str(), 1);
        else
            ::unsetenv("XDG_DATA_HOME");
    }
};

TEST_F(RuntimeTest, AnInMemorySessionNeverWritesTheShopFileAndARealOneDoes) {
    XdgDataHome home(dir.path);
    const auto file = dir.path / "trotlet" / "shop.json";
    for (const bool inMemory : {true, false}) {
        SCOPED_TRACE(inMemory ? "in memory" : "real");
        {
            ShopRuntime session(ShopRuntime::systemParts({}, inMemory, 5), {.seed = 5});
            session.start();
            session.setPanelOpen(true);
            session.setPanelOpen(false);
            session.tick({.idleSeconds = 0.0});
            settle();
            if (inMemory) {
                // The demo shop: an existing user with Fish, not a new one.
                EXPECT_GT(session.engine().wallet().balance(), 0);
                EXPECT_TRUE(session.engine().welcomeGiftGranted());
            }
        }
        EXPECT_EQ(std::filesystem::exists(file), !inMemory);
    }
}

// --- moments, the mascot and notifications -------------------------------------------------

TEST_F(RuntimeTest, AchievementsAndAdoptionsReachTheNotificationsAndTheEquippedMascotIsTold) {
    make();
    ASSERT_FALSE(moments.empty());
    settings::DefaultsStore store = settings::DefaultsStore::ephemeral({"trotlet"});
    settings::NotificationSettings settings{store};
    alerts::NotificationController controller(settings, nullptr, {});
    QStringList posted;
    QObject::connect(&controller, &alerts::NotificationController::alertPosted,
                     [&posted](const QString& id, const QString& title, const QString& body) {
                         posted << id + " | " + title + " | " + body;
                     });
    QObject::connect(runtime.get(), &ShopRuntime::momentRaised,
                     [&controller](const EconomyMoment& m) {
                         if (const auto event = alertEventFor(m))
                             controller.onEvent(*event, std::chrono::system_clock::now());
                     });
    QStringList equipped;
    QObject::connect(runtime.get(), &ShopRuntime::equippedChanged,
                     [&equipped](const QString& id) { equipped << id; });

    // The moments of the first launch: the gift itself is the panel's, its achievement is news.
    EXPECT_FALSE(alertEventFor(moments.front()));
    const auto hello = std::find_if(moments.begin(), moments.end(), [](const EconomyMoment& m) {
        return m.kind == EconomyMoment::Kind::achievementUnlocked;
    });
    ASSERT_NE(hello, moments.end());
    controller.onEvent(*alertEventFor(*hello), std::chrono::system_clock::now());

    runtime->engine().grantDebugFish(5000, "test");
    ASSERT_EQ(runtime->engine().buy("shiba").kind, PurchaseResult::Kind::bought);
    ASSERT_TRUE(runtime->engine().equip("shiba"));
    EXPECT_EQ(runtime->scheduledSaveDelayMs(), 0);

    ASSERT_EQ(posted.size(), 2);
    EXPECT_EQ(posted[0].toStdString(),
              "trotlet.achievement | Achievement unlocked: Hello, Human | Open Trotlet for the "
              "first time. "
              "You earned 50 Fish.");
    EXPECT_TRUE(posted[1].startsWith("trotlet.purchase | Welcome home, "))
        << posted[1].toStdString();
    EXPECT_EQ(equipped, QStringList{"shiba"});
}

// --- Golden Fish ---------------------------------------------------------------------------

TEST_F(RuntimeTest, TheGoldenFishTimerRunsOnlyWhileAFishCanCome) {
    make();
    run(10, 0.0);
    EXPECT_FALSE(runtime->isGoldenFishTimerArmed());  // panel closed
    runtime->setPanelOpen(true);
    ASSERT_TRUE(runtime->isGoldenFishTimerArmed());
    EXPECT_NEAR(runtime->goldenFishTimerIntervalMs(), 900000, 1000);

    runtime->setGoldenFishEnabled(false);
    EXPECT_FALSE(runtime->isGoldenFishTimerArmed());
    runtime->setGoldenFishEnabled(true);
    EXPECT_TRUE(runtime->isGoldenFishTimerArmed());

    // The user walks away from the open panel: the count pauses, so does the timer.
    run(400, 400.0, 50);
    EXPECT_FALSE(runtime->isGoldenFishTimerArmed());
    run(900, 0.0, 30);
    int changes = 0;
    QObject::connect(runtime.get(), &ShopRuntime::goldenFishChanged, [&changes] { ++changes; });
    clock->advance(runtime->goldenFishTimerIntervalMs() / 1000.0);
    runtime->advanceGoldenFish();
    const auto fish = runtime->engine().activeGoldenFish();
    ASSERT_TRUE(fish);
    EXPECT_EQ(changes, 1);
    // Next: the miss deadline, 4.2 s of swimming and half a second of grace.
    EXPECT_NEAR(runtime->goldenFishTimerIntervalMs(), 4700, 5);

    const int64_t before = balance();
    clock->advance(2);
    EXPECT_EQ(runtime->catchGoldenFish(fish->id).kind, CatchResult::Kind::caught);
    EXPECT_EQ(balance(), before + 5);
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(runtime->scheduledSaveDelayMs(), 0);

    runtime->setPanelOpen(false);
    EXPECT_FALSE(runtime->isGoldenFishTimerArmed());
}

// --- the daily check-in reminder ----------------------------------------------------------

TEST_F(RuntimeTest, TheCheckInReminderComesOnceADayInTheEveningAndNeverOnADoubtfulClock) {
    make();
    settings::AppSettings settings{settings::DefaultsStore::ephemeral({"trotlet"}), false};
    settings.general().setCheckInReminders(true);
    alerts::NotificationController controller(settings.notifications(), nullptr, {});
    QStringList posted;
    QObject::connect(&controller, &alerts::NotificationController::alertPosted,
                     [&posted](const QString& id, const QString&, const QString& body) {
                         posted << id + " | " + body;
                     });
    CheckInReminders reminders(*runtime, settings, controller);
    // The user is at the computer; `at` moves the day on to a local hour and looks.
    auto at = [&](double hour, bool panelOpen = false) {
        const double now = clock->wall();
        const double day = std::floor(now / 86400) * 86400;
        double next = day + hour * 3600;
        if (next <= now) next += 86400;
        clock->advance(next - now);
        runtime->tick(ShopTick{{}, 0.0});
        return reminders.check(panelOpen, "Miso");
    };

    EXPECT_FALSE(at(9)) << "too early";
    EXPECT_FALSE(at(18.1, true)) << "the open panel shows the check-in already";
    EXPECT_TRUE(at(18.2));
    EXPECT_FALSE(at(21)) << "once a day";
    EXPECT_TRUE(at(18.5)) << "the next day";
    ASSERT_EQ(posted.size(), 2);
    EXPECT_EQ(posted[0].toStdString(),
              "trotlet.checkInReminder | Miso kept today's check-in warm: 10 Fish to start a "
              "streak. Open Trotlet to collect.");

    // A restart the same evening remembers the day.
    CheckInReminders again(*runtime, settings, controller);
    EXPECT_FALSE(again.check(false, "Miso"));

    // Collected before the evening: nothing to remind of.
    at(10);
    ASSERT_EQ(runtime->engine().checkInOutcome().kind, CheckInOutcome::Kind::collected);
    EXPECT_FALSE(at(19));
    EXPECT_TRUE(at(19)) << "the day after the check-in";
    EXPECT_NE(posted.last().indexOf("day 2 of your streak"), -1) << posted.last().toStdString();

    // The clock set back a day: the guard distrusts it and nothing goes out.
    clock->shiftWall(-86400 * 2);
    runtime->tick(ShopTick{{}, 0.0});
    EXPECT_FALSE(reminders.check(false, "Miso"));
    clock->shiftWall(86400 * 2);
    settings.general().setCheckInReminders(false);
    EXPECT_FALSE(at(19)) << "switched off";
    EXPECT_EQ(posted.size(), 3);
}

}  // namespace
}  // namespace trotlet::shop
