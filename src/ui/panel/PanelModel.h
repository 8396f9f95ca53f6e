#pragma once

#include <QObject>
#include <QString>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "mascot/MascotState.h"
#include "metrics/MetricHistory.h"
#include "metrics/MetricsSnapshot.h"
#include "panel/CardContent.h"
#include "panel/ChartData.h"
#include "panel/DetailContent.h"
#include "panel/PanelRoute.h"
#include "updates/PanelNotice.h"
#include "weather/WeatherReport.h"

namespace trotlet::settings {
class AppSettings;
}
namespace trotlet::layout {
class LayoutStore;
}
namespace trotlet::metrics {
class DayHistory;
}

namespace trotlet::ui {

// Everything the panel's views read, in one place. The live app pushes its stores' news in;
// the snapshot harness fills it from fixtures. Views hold no rules and no engines: they read
// this model, ask the pure panel functions what to show, and send the user's actions back out
// as signals.
class PanelModel : public QObject {
    Q_OBJECT
public:
    using Clock = std::function<metrics::Timestamp()>;

    PanelModel(settings::AppSettings& settings, layout::LayoutStore& layout,
               const metrics::MetricHistory& history, QObject* parent = nullptr);
    ~PanelModel() override;

    settings::AppSettings& settings() const { return settings_; }
    layout::LayoutStore& layout() const { return layout_; }
    const metrics::MetricHistory& history() const { return history_; }

    // The latest sample and the kinds it carries; none before the first.
    const metrics::MetricsSnapshot* sample() const { return sample_ ? &*sample_ : nullptr; }
    metrics::MetricKinds sampledKinds() const { return kinds_; }
    void setSample(const metrics::MetricsSnapshot& sample, metrics::MetricKinds kinds);

    // The mascot as drawn: its id, the animator's drawn state and frame rate.
    const std::string& mascotId() const { return mascotId_; }
    const mascot::MascotState& mascotVisual() const { return visual_; }
    double mascotFramesPerSecond() const { return fps_; }
    void setMascot(const std::string& id, const mascot::MascotState& visual, double fps);
    const std::string& mascotName() const { return mascotName_; }
    void setMascotName(const std::string& name) { mascotName_ = name; }

    bool reduceMotion() const { return reduceMotion_; }
    void setReduceMotion(bool reduce);

    std::int64_t fishBalance() const { return fish_; }
    void setFishBalance(std::int64_t balance);

    const std::optional<panel::WeatherSummary>& weather() const { return weather_; }
    // The forecast behind the summary, for the sky and the greeting; none without a place.
    const std::optional<weather::WeatherReport>& weatherReport() const { return report_; }
    void setWeather(std::optional<panel::WeatherSummary> weather,
                    std::optional<weather::WeatherReport> report = std::nullopt);
    const std::optional<panel::PawSummary>& paw() const { return paw_; }
    void setPaw(std::optional<panel::PawSummary> paw);

    // The user's first name from the account, for the greeting; none when not set.
    const std::optional<std::string>& firstName() const { return firstName_; }
    void setFirstName(std::optional<std::string> name) { firstName_ = std::move(name); }
    // The computer's offset from UTC at `now()`, in seconds.
    int localOffsetSeconds() const;

    // The notice under the header: install for this user, a newer version, What's new.
    const std::optional<updates::PanelNotice>& notice() const { return notice_; }
    void setNotice(std::optional<updates::PanelNotice> notice);
    // The day's per-minute history, when the app keeps one (charts then offer 1 h and 24 h).
    const metrics::DayHistory* dayHistory() const { return day_; }
    void setDayHistory(const metrics::DayHistory* day) { day_ = day; }

    // What the weather detail shows: the whole forecast and the store's state.
    const panel::WeatherDetailInputs& weatherDetail() const { return weatherDetail_; }
    void setWeatherDetail(panel::WeatherDetailInputs detail);
    // The public address, looked up only when the user asks (publicAddressRequested).
    const panel::PublicAddressState& publicAddress() const { return publicAddress_; }
    void setPublicAddress(panel::PublicAddressState state);
    // The range the detail charts show; kept while the panel lives, so the next detail opens on it.
    panel::ChartRange chartRange() const { return chartRange_; }
    void setChartRange(panel::ChartRange range) { chartRange_ = range; }
    // The user's units and zone, for chart ticks and read-outs.
    panel::ChartUnits chartUnits() const;
    // What every detail screen reads.
    panel::DetailInputs detailInputs() const;

    metrics::Timestamp now() const;
    void setClock(Clock clock) { clock_ = std::move(clock); }

    // What every card reads: the sample, the units and switches from the settings.
    panel::CardInputs cardInputs() const;
    // The header's caption for the current state, or empty when the setting hides it.
    std::string moodLine() const;

signals:
    void sampleChanged();
    void mascotChanged();
    void reduceMotionChanged();
    void walletChanged();
    void weatherChanged();
    void pawChanged();
    // The layout store changed: an edit, a reset, the settings' hidden cards.
    void layoutChanged();
    void noticeChanged();
    // The user's actions, for the live app to carry out.
    void petRequested();
    void detailRequested(trotlet::panel::MetricDetail detail);
    // A button of the notice: the main one, or the quiet one ("Not now", "Later").
    void noticeActionRequested(trotlet::updates::PanelNotice::Kind kind, bool primary);
    void publicAddressChanged();
    void publicAddressRequested();

private:
    settings::AppSettings& settings_;
    layout::LayoutStore& layout_;
    const metrics::MetricHistory& history_;
    std::optional<metrics::MetricsSnapshot> sample_;
    metrics::MetricKinds kinds_;
    std::string mascotId_ = "cat";
    std::string mascotName_ = "Mochi";
    mascot::MascotState visual_;
    double fps_ = 1;
    bool reduceMotion_ = false;
    std::int64_t fish_ = 0;
    std::optional<panel::WeatherSummary> weather_;
    std::optional<weather::WeatherReport> report_;
    std::optional<panel::PawSummary> paw_;
    std::optional<updates::PanelNotice> notice_;
    std::optional<std::string> firstName_;
    const metrics::DayHistory* day_ = nullptr;
    panel::WeatherDetailInputs weatherDetail_;
    panel::PublicAddressState publicAddress_;
    panel::ChartRange chartRange_ = panel::ChartRange::live;
    Clock clock_;
    int layoutObserver_ = -1;
    int monitoringObserver_ = -1;
    int mascotObserver_ = -1;
};

}  // namespace trotlet::ui
