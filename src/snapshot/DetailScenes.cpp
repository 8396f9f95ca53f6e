#include "snapshot/DetailScenes.h"

#include <cmath>
#include <functional>

#include <QApplication>
#include <QScrollArea>
#include <QScrollBar>

#include "metrics/DayHistory.h"
#include "metrics/FixtureProvider.h"
#include "panel/PanelRoute.h"
#include "snapshot/ScenePainting.h"
#include "snapshot/SceneRig.h"
#include "ui/details/DetailView.h"
#include "ui/panel/PanelHeader.h"
#include "ui/panel/PanelWindow.h"

namespace trotlet::snapshot {
namespace {

using metrics::MetricsFixture;

// A working day's load, 0..1, at a minute of the scene's day (local hours): quiet nights, a busy
// morning and afternoon with a lunch dip, bursts on the quarter hours.
double dayLoad(int localMinute) {
    const double hour = localMinute / 60.0;
    double load = 0.05 + 0.02 * std::sin(localMinute * 0.05);
    if (hour >= 8.5 && hour < 19)
        load = 0.22 + 0.08 * std::sin((hour - 8.5) * 1.3) + 0.05 * std::sin(localMinute * 0.21);
    if (hour >= 12.4 && hour < 13.1) load = 0.09;
    // Two builds: one before lunch, one in the afternoon.
    if (hour >= 10.8 && hour < 11.3) load = 0.78;
    if (hour >= 13.9 && hour < 14.15) load = 0.64;
    return std::clamp(load, 0.0, 1.0);
}

}  // namespace

void fillSceneDay(metrics::DayHistory& day, MetricsFixture fixture) {
    using std::chrono::minutes;
    using std::chrono::seconds;
    const metrics::MetricsSnapshot base = metrics::fixtureSnapshot(fixture, sceneTime());
    const auto end = sceneTime();
    constexpr int localNow = 14 * 60 + 30;  // the scene's clock reads 14:30
    for (int back = metrics::DayHistory::kMinutes - 1; back >= 0; --back) {
        const int local = ((localNow - back) % 1440 + 1440) % 1440;
        // The laptop slept from 01:10 to 06:40: those minutes stay empty.
        if (local >= 70 && local < 400) continue;
        const double load = dayLoad(local);
        for (int reading = 0; reading < 3; ++reading) {
            metrics::MetricsSnapshot s = base;
            s.timestamp = end - minutes(back) - seconds(40 - 20 * reading);
            const double wobble = (reading - 1) * 0.25 * load;
            s.cpu.total = std::clamp(load + wobble, 0.0, 1.0);
            s.memory.used = std::uint64_t(double(s.memory.total) * (0.45 + 0.2 * load));
            s.memory.pressure = load > 0.5 && reading == 2 ? metrics::MemoryPressure::warning
                                                           : metrics::MemoryPressure::normal;
            s.network.downBps = 4e5 * load * (1 + reading);
            s.network.upBps = 5e4 * load * (1 + reading);
            if (s.disks.readBps) s.disks.readBps = 2e6 * load * (reading + 0.5);
            if (s.disks.writeBps) s.disks.writeBps = 8e5 * load * (reading + 0.5);
            if (s.thermal.cpuC) s.thermal.cpuC = 40 + 35 * load + reading;
            if (s.gpu) s.gpu->utilization = std::clamp(0.5 * load + 0.02 * reading, 0.0, 1.0);
            if (s.battery.present)
                s.battery.percent = std::clamp<std::int64_t>(100 - back / 14, 5, 100);
            day.append(s, metrics::MetricKinds::all);
        }
    }
}

weather::WeatherReport sceneForecast() {
    weather::WeatherReport r;
    r.location.name = "Berlin";
    r.location.country = "Germany";
    const std::int64_t now =
        std::chrono::duration_cast<std::chrono::seconds>(sceneTime().time_since_epoch()).count();
    r.fetchedAt = now - 600;
    r.utcOffsetSeconds = 7200;
    r.current = {now - 300, 14.2, 12.8, 64, 2, true, 14, 245, 0, 45};
    // Clouds thicken towards the evening and rain sets in after dark.
    static constexpr int codes[] = {2, 2, 3, 3, 3, 61, 61, 63, 61, 3, 2, 1};
    for (int h = -2; h < 36; ++h) {
        const int code = h < 0 ? 2 : codes[std::min(h, 11)];
        const bool day = h < 5;
        r.hourly.push_back({now + h * 3600, 14.5 - 0.45 * std::max(0, h), 13, 66, code, day,
                            code >= 61 ? 55.0 + 5 * (h % 3) : 5.0, 50, 14, 240});
    }
    const std::int64_t midnight = (now + 7200) / 86400 * 86400;
    static constexpr int dayCodes[] = {2, 61, 3, 0, 1, 80, 2};
    static constexpr double highs[] = {17, 13, 12, 15, 18, 16, 14};
    static constexpr double lows[] = {9, 8, 6, 5, 8, 10, 7};
    static constexpr double rain[] = {10, 80, 30, 0, 5, 65, 20};
    for (int d = 0; d < 7; ++d)
        r.daily.push_back({midnight + d * 86400, dayCodes[d], highs[d], lows[d],
                           midnight + d * 86400 - 7200 + 7 * 3600 + 14 * 60 + d * 2,
                           midnight + d * 86400 - 7200 + 18 * 3600 + 51 * 60 - d * 3, rain[d]});
    return r;
}

namespace {

class DetailStage : public SceneStage {
public:
    // `adjust` changes the fixture's sample before the screen opens.
    DetailStage(MetricsFixture fixture, panel::MetricDetail detail, panel::ChartRange range,
                std::function<void(metrics::MetricsSnapshot&)> adjust = {}, bool atEnd = false)
        : rig_(fixture), window_(rig_.model(), rig_.theme()), atEnd_(atEnd) {
        if (adjust) {
            metrics::MetricsSnapshot sample = rig_.sample();
            adjust(sample);
            rig_.model().setSample(sample, metrics::MetricKinds::all);
        }
        fillSceneDay(day_, fixture);
        rig_.model().setDayHistory(&day_);
        rig_.model().setChartRange(range);
        rig_.model().setWeather(sceneWeather());
        panel::WeatherDetailInputs weather;
        weather.placeChosen = true;
        weather.report = sceneForecast();
        rig_.model().setWeatherDetail(weather);
        panel::PublicAddressState address;
        address.service = "api.ipify.org";
        rig_.model().setPublicAddress(address);
        window_.header().setAnimating(false);
        window_.setAttribute(Qt::WA_DontShowOnScreen);
        window_.show();
        view_ = ui::openDetail(window_, rig_.model(), rig_.theme(), detail);
    }
    QImage render(panel::ColorScheme scheme) override {
        if (atEnd_ && view_) {
            // The last blocks, scrolled into view once the screen has laid itself out.
            QApplication::processEvents();
            QScrollBar* bar = view_->scrollArea().verticalScrollBar();
            bar->setValue(bar->maximum());
        }
        return rig_.render(window_, scheme);
    }

private:
    SceneRig rig_;
    metrics::DayHistory day_;
    ui::PanelWindow window_;
    ui::DetailView* view_ = nullptr;
    bool atEnd_ = false;
};

}  // namespace

void addDetailScenes(std::vector<Scene>& scenes) {
    for (std::size_t i = 0; i < panel::MetricDetailNames.size(); ++i) {
        const auto detail = panel::MetricDetail(i);
        // The Paw Report's screen and scene belong to reports/.
        if (detail == panel::MetricDetail::pawreport) continue;
        scenes.push_back({"panel-detail-" + std::string(panel::MetricDetailNames[i]), [detail] {
                              return std::make_unique<DetailStage>(MetricsFixture::normal, detail,
                                                                   panel::ChartRange::live);
                          }});
    }
    scenes.push_back({"panel-detail-heat-desktop", [] {
                          return std::make_unique<DetailStage>(MetricsFixture::desktop,
                                                               panel::MetricDetail::heat,
                                                               panel::ChartRange::live);
                      }});
    scenes.push_back({"panel-detail-battery-desktop", [] {
                          return std::make_unique<DetailStage>(MetricsFixture::desktop,
                                                               panel::MetricDetail::battery,
                                                               panel::ChartRange::live);
                      }});
    // A network share that stopped answering sits among volumes that did.
    scenes.push_back({"panel-detail-disk-share-not-responding", [] {
                          return std::make_unique<DetailStage>(
                              MetricsFixture::normal, panel::MetricDetail::disk,
                              panel::ChartRange::live, [](metrics::MetricsSnapshot& s) {
                                  metrics::VolumeInfo share;
                                  share.name = "nas";
                                  share.path = "/mnt/nas";
                                  s.disks.volumes.push_back(share);
                              },
                              true);
                      }});
    scenes.push_back({"panel-detail-cpu-24h", [] {
                          return std::make_unique<DetailStage>(MetricsFixture::normal,
                                                               panel::MetricDetail::cpu,
                                                               panel::ChartRange::day);
                      }});
}

}  // namespace trotlet::snapshot
