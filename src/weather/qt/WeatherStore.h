#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QObject>
#include <QTimer>

#include "weather/WeatherFetching.h"
#include "weather/WeatherSchedule.h"
#include "weather/WeatherSky.h"
#include "weather/qt/NetworkPathWatch.h"
#include "weather/qt/WeatherCache.h"

namespace trotlet::weather {

struct WeatherStatus {
    enum class Kind { idle, loading, failed };
    Kind kind = Kind::idle;
    std::optional<WeatherError> error;  // for failed
    bool operator==(const WeatherStatus&) const = default;
};

// The single owner of the running app's weather: the report for the chosen place, its
// status, the failure count and the next refresh. It fetches only while something on
// screen shows the weather, backs off after failures, watches the network only while
// failing, drops answers for a place the user has left, and keeps the last good forecast
// in the cache. Lives on the main thread; the decisions are `WeatherSchedule`'s, over the
// injected clock, so tests step it on a fake clock with a scripted fetcher.
class WeatherStore : public QObject {
    Q_OBJECT
public:
    using Clock = std::function<UnixTime()>;

    WeatherStore(WeatherFetching& client, WeatherCache cache, std::unique_ptr<NetworkPathWatch> watch = nullptr,
                 Clock now = nullptr, QObject* parent = nullptr);
    ~WeatherStore() override;

    // Settings, fed by the app from "weather.location", "weather.showInMenuBar" and
    // "weather.showInHeader". A different place cancels the fetch in flight, clears the
    // report and the cache, and fetches the new place at once.
    void setLocation(std::optional<WeatherLocation> location);
    void setShowInMenuBar(bool on);
    void setShowInHeader(bool on);
    // The panel's visibility and the overview weather card's.
    void setPanelOpen(bool open);
    void setCardVisible(bool visible);

    // Loads the cache and begins scheduling. Before start nothing is fetched and no timer runs.
    void start();
    // Cancels the scheduler, the fetch in flight and the network watch.
    void stop();
    // The user's "try again".
    void retryNow();

    const std::optional<WeatherLocation>& location() const { return location_; }
    const std::optional<WeatherReport>& report() const { return report_; }
    // The report only when it belongs to the place now chosen.
    std::optional<WeatherReport> currentReport() const;
    const WeatherStatus& status() const { return status_; }
    int failureCount() const { return schedule_.failureCount; }
    std::optional<UnixTime> nextRefresh() const { return nextRefresh_; }
    std::optional<UnixTime> lastAttempt() const { return schedule_.lastAttempt; }
    int tick() const { return tick_; }
    bool isStarted() const { return started_; }
    bool isLoopRunning() const { return loopRunning_; }
    bool isTimerArmed() const { return timer_.isActive(); }
    bool isFetching() const { return static_cast<bool>(inflight_); }
    bool isWatchingNetwork() const { return watching_; }
    WeatherNeeds needs() const;

    // "12°C" / "54°F" for the menu bar, or none without current conditions.
    std::optional<std::string> menuBarText(bool fahrenheit) const;
    std::optional<WeatherSkyInput> skyInput(UnixTime at) const;

    void setTracing(bool on) { tracing_ = on; }
    const std::vector<std::string>& trace() const { return trace_; }

    // The timer's work: fetch when due, else re-arm. Public so a test on a fake clock can
    // move the clock to `nextRefresh()` and fire it.
    void runDue();
    // Bumps `tick` so time-dependent texts ("5 min ago") are re-read.
    void bumpTick();

signals:
    void changed();

private:
    void reevaluate();
    void refresh();
    void succeeded(WeatherReport report, const WeatherLocation& place);
    void failed(const WeatherError& error, const WeatherLocation& place);
    void placeChanged(const std::optional<WeatherLocation>& place);
    void updateNetworkWatch();
    void networkChanged(bool satisfied, quint64 generation);
    bool isChosen(const WeatherLocation& place) const;
    void record(std::string line);

    WeatherFetching& client_;
    WeatherCache cache_;
    std::unique_ptr<NetworkPathWatch> watch_;
    Clock now_;

    std::optional<WeatherLocation> location_;
    bool showInMenuBar_ = false;
    bool showInHeader_ = true;
    bool panelOpen_ = false;
    bool cardVisible_ = false;

    std::optional<WeatherReport> report_;
    WeatherStatus status_;
    WeatherSchedule schedule_;
    std::optional<UnixTime> nextRefresh_;
    int tick_ = 0;
    bool started_ = false;
    bool loopRunning_ = false;
    QTimer timer_;
    QTimer tickTimer_;
    std::shared_ptr<FetchHandle> inflight_;
    std::optional<WeatherLocation> inflightPlace_;
    quint64 fetchGeneration_ = 0;
    bool watching_ = false;
    quint64 pathGeneration_ = 0;
    bool tracing_ = false;
    std::vector<std::string> trace_;
};

}  // namespace trotlet::weather
