#include "metrics/qt/MetricsTimeline.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

#include <atomic>
#include <cstdio>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "metrics/FixtureProvider.h"
#include "metrics/MetricsJson.h"
#include "metrics/MockProvider.h"
#include "metrics/qt/MetricsStore.h"

namespace trotlet::metrics {

namespace {

// Wraps a provider and records what the store asked for, from which thread, and whether two
// samples ever overlapped.
struct Recorder {
    std::mutex mutex;
    std::vector<std::pair<MetricKinds, bool>> requests;
    std::vector<QThread*> threads;
    std::atomic<int> active{0};
    std::atomic<bool> overlapped{false};
};

class RecordingProvider : public MetricsProvider {
public:
    RecordingProvider(std::unique_ptr<MetricsProvider> inner, std::shared_ptr<Recorder> recorder,
                      int delayMs = 0)
        : inner_(std::move(inner)), recorder_(std::move(recorder)), delayMs_(delayMs) {}
    std::string name() const override { return inner_->name(); }
    MetricsSnapshot sample(MetricKinds kinds, Timestamp now) override {
        if (recorder_->active.fetch_add(1) > 0) recorder_->overlapped = true;
        {
            std::lock_guard lock(recorder_->mutex);
            recorder_->requests.emplace_back(kinds, fullProcessList_);
            recorder_->threads.push_back(QThread::currentThread());
        }
        if (delayMs_ > 0) std::this_thread::sleep_for(std::chrono::milliseconds(delayMs_));
        inner_->setFullProcessList(fullProcessList_);
        auto s = inner_->sample(kinds, now);
        recorder_->active.fetch_sub(1);
        return s;
    }

private:
    std::unique_ptr<MetricsProvider> inner_;
    std::shared_ptr<Recorder> recorder_;
    int delayMs_;
};

bool waitUntil(const std::function<bool()>& done, int timeoutMs) {
    QElapsedTimer timer;
    timer.start();
    while (!done()) {
        if (timer.elapsed() > timeoutMs) return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QThread::msleep(1);
    }
    return true;
}

void pumpFor(int ms) {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < ms) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QThread::msleep(1);
    }
}

struct Report {
    Json checks = Json::array();
    bool passed = true;
    void check(const std::string& scenario, const std::string& name, bool ok,
               const std::string& detail = {}) {
        Json c = Json::object();
        c["scenario"] = scenario;
        c["check"] = name;
        c["passed"] = ok;
        if (!detail.empty()) c["detail"] = detail;
        checks.push_back(c);
        passed = passed && ok;
    }
};

std::string kindsText(MetricKinds k) {
    std::string out;
    for (auto n : k.names()) {
        if (!out.empty()) out.push_back(',');
        out.append(n);
    }
    return out;
}

void tiers(Report& r) {
    const char* name = "tiers";
    auto rec = std::make_shared<Recorder>();
    MetricsStore store(std::make_unique<RecordingProvider>(
        std::make_unique<FixtureProvider>(MetricsFixture::normal), rec));
    QThread* mainThread = QThread::currentThread();
    bool publishedOnMain = true;
    QObject::connect(&store, &MetricsStore::updated, [&] {
        publishedOnMain = publishedOnMain && QThread::currentThread() == mainThread;
    });
    store.setUpdateInterval(0.5);
    store.start();
    r.check(name, "first sample arrives",
            waitUntil([&] { return store.sampleCount() >= 1; }, 2000));
    const MetricKinds menuBar = planFor(ConsumerTier::menuBarOnly, 0.5, false).kinds;
    r.check(name, "menu bar asks for its five kinds", store.latestKinds() == menuBar,
            kindsText(store.latestKinds()));
    r.check(name, "menu bar samples every 5 s", store.plan().intervalSec == 5.0);
    r.check(name, "menu bar sample has no volumes",
            store.latest().disks.volumes.empty() && !store.latest().gpu);

    store.setTier(ConsumerTier::panelOpen);
    const bool openedAtOnce =
        waitUntil([&] { return store.latestKinds() == MetricKinds::all; }, 1000);
    r.check(name, "opening the panel samples at once with every kind", openedAtOnce,
            kindsText(store.latestKinds()));
    QElapsedTimer clock;
    clock.start();
    const auto before = store.sampleCount();
    const bool ticked = waitUntil([&] { return store.sampleCount() >= before + 2; }, 3000);
    const auto elapsed = clock.elapsed();
    r.check(name, "open panel ticks at monitoring.updateInterval",
            ticked && elapsed >= 800 && elapsed <= 4000,
            std::to_string(elapsed) + " ms for two ticks at 0.5 s");
    r.check(name, "no full process list unless shown", !store.latest().processes.all.has_value());

    store.setProcessListVisible(true);
    r.check(name, "showing the process list asks for it at once",
            waitUntil([&] { return store.latest().processes.all.has_value(); }, 1000));

    store.setTier(ConsumerTier::panelClosed);
    r.check(name, "closing the panel slows to 3 s", store.plan().intervalSec == 3.0);
    r.check(name, "closed panel keeps volumes for the alerts",
            store.plan().kinds.contains(MetricKinds::volumes) &&
                !store.plan().kinds.contains(MetricKinds::processes | MetricKinds::gpu));
    store.setTier(ConsumerTier::menuBarOnly);
    store.setExtraKinds(MetricKinds::gpu);  // the mascot follows the GPU
    r.check(name, "a menu bar that follows the GPU samples it at once",
            waitUntil([&] { return store.latestKinds().contains(MetricKinds::gpu); }, 1000) &&
                store.latest().gpu.has_value());
    store.stop();
    waitUntil([&] { return rec->active == 0; }, 1000);
    pumpFor(50);

    bool offMain = true;
    {
        std::lock_guard lock(rec->mutex);
        for (auto* t : rec->threads) offMain = offMain && t != mainThread;
    }
    r.check(name, "the provider runs off the main thread", offMain);
    r.check(name, "updates are published on the main thread", publishedOnMain);
}

void history(Report& r) {
    const char* name = "history";
    MetricsStore store(std::make_unique<MockProvider>(), nullptr, 5);
    store.setTier(ConsumerTier::panelOpen);
    store.setUpdateInterval(0.5);
    store.start();
    for (int i = 0; i < 7; ++i) {
        const auto target = store.sampleCount() + 1;
        if (!waitUntil([&] { return store.sampleCount() >= target; }, 1000)) break;
        store.sampleNow();
    }
    store.stop();
    const auto points = store.history().points(HistorySeries::cpuTotal);
    r.check(name, "history keeps at most its capacity",
            store.sampleCount() >= 7 && points.size() == 5,
            std::to_string(points.size()) + " points after " + std::to_string(store.sampleCount()) +
                " samples");
    bool ordered = true;
    for (size_t i = 1; i < points.size(); ++i)
        ordered = ordered && points[i - 1].time <= points[i].time;
    r.check(name, "points are oldest first", ordered);
    r.check(name, "the newest point is the latest sample",
            !points.empty() && points.back().value == store.latest().cpu.total &&
                points.back().time == store.latest().timestamp);
}

void overlap(Report& r) {
    const char* name = "overlap";
    auto rec = std::make_shared<Recorder>();
    MetricsStore store(
        std::make_unique<RecordingProvider>(std::make_unique<MockProvider>(), rec, 700));
    store.setTier(ConsumerTier::panelOpen);
    store.setUpdateInterval(0.5);  // faster than the provider can answer
    store.start();
    pumpFor(2300);
    store.stop();
    waitUntil([&] { return rec->active == 0; }, 2000);
    pumpFor(20);
    r.check(name, "samples never overlap", !rec->overlapped);
    r.check(name, "ticks during a slow sample are skipped", store.skippedTicks() >= 1,
            std::to_string(store.skippedTicks()) + " skipped, " +
                std::to_string(store.sampleCount()) + " delivered");
    r.check(name, "slow samples still arrive", store.sampleCount() >= 2);
}

void upgrade(Report& r) {
    const char* name = "upgrade";
    auto rec = std::make_shared<Recorder>();
    MetricsStore store(std::make_unique<RecordingProvider>(
        std::make_unique<FixtureProvider>(MetricsFixture::busy), rec, 300));
    store.setUpdateInterval(30);  // no timer tick gets in the way
    store.start();
    pumpFor(50);  // the menu-bar sample is now running
    store.setTier(ConsumerTier::panelOpen);
    QElapsedTimer clock;
    clock.start();
    const bool got = waitUntil([&] { return store.latestKinds() == MetricKinds::all; }, 2000);
    r.check(name, "opening the panel during a sample asks again right after it", got,
            std::to_string(clock.elapsed()) + " ms");
    store.stop();
    waitUntil([&] { return rec->active == 0; }, 1000);
    pumpFor(20);
    std::lock_guard lock(rec->mutex);
    r.check(name, "exactly two samples, the second with every kind",
            rec->requests.size() == 2 && rec->requests[1].first == MetricKinds::all);
}

void absent(Report& r) {
    const char* name = "absent";
    MetricsStore store(std::make_unique<FixtureProvider>(MetricsFixture::desktop));
    store.setTier(ConsumerTier::panelOpen);
    store.start();
    const bool got = waitUntil([&] { return store.sampleCount() >= 1; }, 2000);
    store.stop();
    r.check(name, "a desktop sample arrives", got);
    r.check(name, "no battery points on a desktop",
            store.history().points(HistorySeries::batteryPercent).empty());
    r.check(name, "the battery group is there but not present", !store.latest().battery.present);
    r.check(name, "other series have their point",
            store.history().points(HistorySeries::cpuC).size() == 1 &&
                store.history().points(HistorySeries::gpuUtilization).size() == 1);
}

// The closed panel's tier leaves disk activity and the GPU out; the day's history still gets
// one reading of each a minute, which the published sample does not show.
void day(Report& r) {
    const char* name = "day";
    auto rec = std::make_shared<Recorder>();
    MetricsStore store(std::make_unique<RecordingProvider>(
        std::make_unique<FixtureProvider>(MetricsFixture::normal), rec));
    const MetricKinds menuBar = planFor(ConsumerTier::menuBarOnly, 2, false).kinds;
    const auto minuteNow = [] { return DayHistory::minuteOf(std::chrono::system_clock::now()); };
    const auto startMinute = minuteNow();
    store.start();
    const bool first = waitUntil([&] { return store.sampleCount() >= 1; }, 2000);
    store.sampleNow();
    const bool second = waitUntil([&] { return store.sampleCount() >= 2; }, 2000);
    const bool sameMinute = minuteNow() == startMinute;
    store.stop();
    waitUntil([&] { return rec->active == 0; }, 1000);
    std::lock_guard lock(rec->mutex);
    r.check(name, "two menu-bar samples arrive", first && second && rec->requests.size() == 2);
    if (rec->requests.size() < 2) return;
    r.check(name, "the minute's first tick also reads disk activity and the GPU",
            rec->requests[0].first == (menuBar | MetricKinds::diskIO | MetricKinds::gpu),
            kindsText(rec->requests[0].first));
    r.check(name, "later ticks in that minute do not",
            !sameMinute || rec->requests[1].first == menuBar, kindsText(rec->requests[1].first));
    r.check(name, "the published sample keeps the tier's kinds",
            store.latestKinds() == menuBar && !store.latest().gpu && !store.latest().disks.readBps);
    const auto now = std::chrono::system_clock::now();
    const auto reads = store.dayHistory().minutes(HistorySeries::diskReadBps, now, 2);
    const auto gpu = store.dayHistory().minutes(HistorySeries::gpuUtilization, now, 2);
    r.check(name, "the day holds the disk and GPU minute",
            (reads[0] || reads[1]) && (gpu[0] || gpu[1]));
    r.check(name, "the recent ring does not",
            store.history().points(HistorySeries::diskReadBps).empty() &&
                store.history().points(HistorySeries::gpuUtilization).empty());
}

}  // namespace

int MetricsTimeline::run(const std::string& scenario, const cli::LaunchOptions&) {
    std::unique_ptr<QCoreApplication> ownApp;
    if (!QCoreApplication::instance()) {
        static int argc = 1;
        static char arg0[] = "trotlet";
        static char* argv[] = {arg0, nullptr};
        ownApp = std::make_unique<QCoreApplication>(argc, argv);
    }
    const std::vector<std::pair<std::string, void (*)(Report&)>> scenarios = {{"tiers", tiers},
                                                                              {"history", history},
                                                                              {"overlap", overlap},
                                                                              {"upgrade", upgrade},
                                                                              {"absent", absent},
                                                                              {"day", day}};
    Report report;
    bool known = scenario == "all";
    for (const auto& [n, fn] : scenarios) {
        if (scenario == "all" || scenario == n) {
            known = true;
            fn(report);
        }
    }
    if (!known) {
        std::string names;
        for (const auto& s : scenarios) names += s.first + ", ";
        std::fprintf(stderr, "trotlet: unknown metrics timeline \"%s\" (known: %sall)\n",
                     scenario.c_str(), names.c_str());
        return 1;
    }
    Json out = Json::object();
    out["scenario"] = scenario;
    out["passed"] = report.passed;
    out["checks"] = report.checks;
    const std::string text = out.dump(2);
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fputc('\n', stdout);
    return report.passed ? 0 : 1;
}

}  // namespace trotlet::metrics
