#include "weather/qt/WeatherRecoveryCLI.h"

#include <QDateTime>
#include <QHostAddress>
#include <QTcpServer>

#include "weather/qt/OpenMeteoClient.h"
#include "weather/qt/WeatherHarness.h"
#include "weather/qt/WeatherStore.h"

namespace trotlet::weather {

namespace {

// Sends forecasts to one of two clients; the harness flips it to "repair" the network.
class SwitchingFetcher : public WeatherFetching {
public:
    SwitchingFetcher(WeatherFetching& broken, WeatherFetching& working) : broken_(broken), working_(working) {}
    bool repaired = false;
    std::shared_ptr<FetchHandle> forecast(const WeatherLocation& place, ForecastDone done) override {
        return (repaired ? working_ : broken_).forecast(place, std::move(done));
    }
    std::shared_ptr<FetchHandle> search(const std::string& q, const std::string& l, SearchDone done) override {
        return (repaired ? working_ : broken_).search(q, l, std::move(done));
    }

private:
    WeatherFetching& broken_;
    WeatherFetching& working_;
};

// The harness does not depend on the machine's network state: its path watch only records.
class SilentPathWatch : public NetworkPathWatch {
public:
    int starts = 0;
    void start(std::function<void(bool)>) override { ++starts; }
    void stop() override {}
};

// A port nobody listens on: bind one, then let it go.
quint16 closedPort() {
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    const quint16 port = probe.serverPort();
    probe.close();
    return port;
}

}  // namespace

int WeatherRecoveryCLI::run() {
    harness::EventLoopScope scope;
    OpenMeteoClientOptions brokenOptions = OpenMeteoClientOptions::fromEnvironment();
    brokenOptions.forecastBase = "http://127.0.0.1:" + std::to_string(closedPort()) + "/v1/forecast";
    UnixTime now = QDateTime::currentSecsSinceEpoch();
    // Both clients stamp their reports with the harness clock, as the app's share one clock.
    brokenOptions.clock = [&now] { return now; };
    OpenMeteoClientOptions workingOptions = OpenMeteoClientOptions::fromEnvironment();
    workingOptions.clock = [&now] { return now; };
    OpenMeteoClient broken(brokenOptions);
    OpenMeteoClient working(workingOptions);
    SwitchingFetcher fetcher(broken, working);

    auto watch = std::make_unique<SilentPathWatch>();
    SilentPathWatch* watchPtr = watch.get();
    WeatherStore store(fetcher, WeatherCache(), std::move(watch), [&now] { return now; });
    store.setTracing(true);
    const WeatherLocation berlin{2950159, "Berlin", "Land Berlin", "Germany", "DE", 52.52437, 13.41053,
                                 "Europe/Berlin"};
    store.setLocation(berlin);
    store.setShowInMenuBar(true);
    store.start();

    auto checks = nlohmann::ordered_json::array();
    bool allOk = true;
    auto check = [&](const std::string& name, bool ok, nlohmann::ordered_json detail = nullptr) {
        nlohmann::ordered_json c{{"check", name}, {"ok", ok}};
        if (!detail.is_null()) c["detail"] = std::move(detail);
        checks.push_back(std::move(c));
        allOk = allOk && ok;
    };
    // Moves the harness clock to the next refresh, fires it and waits for the fetch's end.
    auto step = [&]() -> bool {
        if (!store.nextRefresh()) return false;
        now = std::max(now, *store.nextRefresh());
        store.runDue();
        return harness::waitUntil([&] { return !store.isFetching(); }, 30000);
    };

    const UnixTime expectedDelays[] = {60, 120, 240, 480, 960, 1800, 1800};
    auto delays = nlohmann::ordered_json::array();
    bool delaysOk = true;
    for (UnixTime expected : expectedDelays) {
        const bool ended = step();
        const auto due = store.nextRefresh();
        const UnixTime delay = due && store.lastAttempt() ? *due - *store.lastAttempt() : -1;
        delays.push_back(delay);
        delaysOk = delaysOk && ended && delay == expected && store.status().error &&
                   store.status().error->kind == WeatherError::Kind::offline;
    }
    check("backoff 60,120,240,480,960,1800,1800 s, each failure offline", delaysOk, delays);
    check("seven failures counted", store.failureCount() == 7, store.failureCount());
    check("network watch on while failing", store.isWatchingNetwork() && watchPtr->starts == 1);
    const auto& trace = store.trace();
    const bool traced = std::find(trace.begin(), trace.end(), "fail Berlin offline backoff 60s") != trace.end() &&
                        std::find(trace.begin(), trace.end(), "fail Berlin offline backoff 1800s") != trace.end() &&
                        std::find(trace.begin(), trace.end(), "watch network on") != trace.end();
    check("trace lines", traced);

    fetcher.repaired = true;
    const bool ended = step();
    const auto report = store.currentReport();
    check("recovered", ended && report.has_value() && store.status().kind == WeatherStatus::Kind::idle,
          store.status().error ? nlohmann::ordered_json(store.status().error->message()) : nullptr);
    check("failures reset", store.failureCount() == 0);
    check("network watch off", !store.isWatchingNetwork() &&
                                   std::find(trace.begin(), trace.end(), "watch network off") != trace.end());
    check("regular refresh in 30 min",
          report && store.nextRefresh() && *store.nextRefresh() == report->fetchedAt + 1800);

    nlohmann::ordered_json out;
    out["place"] = harness::placeJson(berlin);
    out["brokenForecast"] = brokenOptions.forecastBase;
    out["workingForecast"] = working.options().forecastBase;
    out["checks"] = std::move(checks);
    out["trace"] = store.trace();
    if (report) out["derived"] = harness::derivedJson(*report, now);
    out["ok"] = allOk;
    harness::printJson(out);
    return allOk ? 0 : 1;
}

}  // namespace trotlet::weather
