// What the day history and the detail screens cost, measured, as one JSON object:
//   dayHistory:    bytes for a full day of every series; nanoseconds per sample folded in
//   extraSampling: microseconds for the once-a-minute read of disk activity and the GPU on this
//                  machine, and that read plus the folding as a share of one core
//   switching:     milliseconds from a card's request to the detail's first frame, and back
//   chart:         milliseconds to draw a day's chart, and to repaint it under the pointer
// Offscreen, on the scenes' fixture data; the real readers for the sampling figure.
//
//   detail_bench [ROUNDS]
#include <QApplication>
#include <QElapsedTimer>
#include <QMouseEvent>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <nlohmann/json.hpp>

#include "metrics/DayHistory.h"
#include "metrics/FixtureProvider.h"
#include "platform/linux/LinuxMetricsProvider.h"
#include "snapshot/DetailScenes.h"
#include "snapshot/SceneRig.h"
#include "ui/details/ChartView.h"
#include "ui/details/DetailView.h"
#include "ui/panel/PanelHeader.h"
#include "ui/panel/PanelWindow.h"

using namespace trotlet;

namespace {

double median(std::vector<double> v) {
    if (v.empty()) return 0;
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

double maxOf(const std::vector<double>& v) {
    return v.empty() ? 0 : *std::max_element(v.begin(), v.end());
}

nlohmann::json dayHistory() {
    metrics::DayHistory day;
    const auto start = snapshot::sceneTime() - std::chrono::hours(24);
    auto sample = metrics::fixtureSnapshot(metrics::MetricsFixture::normal, start);
    // A day at the open panel's two seconds: 43,200 samples.
    constexpr int samples = 24 * 3600 / 2;
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < samples; ++i) {
        sample.timestamp = start + std::chrono::seconds(2 * i);
        sample.cpu.total = (i % 100) / 100.0;
        day.append(sample, metrics::MetricKinds::all);
    }
    const double nsPerSample = double(clock.nsecsElapsed()) / samples;
    return {{"bytesFullDay", day.memoryBytes()},
            {"seriesFilled", metrics::HistorySeriesNames.size()},
            {"nsPerSample", nsPerSample}};
}

nlohmann::json extraSampling(int rounds, double foldNs) {
    platform::LinuxMetricsProvider provider;
    const auto kinds = metrics::MetricKinds::diskIO | metrics::MetricKinds::gpu;
    provider.sample(kinds, std::chrono::system_clock::now());  // the baseline read
    std::vector<double> us;
    for (int i = 0; i < rounds; ++i) {
        QElapsedTimer clock;
        clock.start();
        provider.sample(kinds, std::chrono::system_clock::now());
        us.push_back(double(clock.nsecsElapsed()) / 1e3);
    }
    // Once a minute the read; at every menu-bar tick (5 s) the folding into the day.
    const double perMinuteUs = median(us) + foldNs / 1e3 * 12;
    return {{"diskIOAndGpuReadUsMedian", median(us)},
            {"diskIOAndGpuReadUsMax", maxOf(us)},
            {"percentOfOneCore", 100.0 * perMinuteUs / 60e6},
            {"targetPercent", 0.05}};
}

nlohmann::json switching(int rounds) {
    snapshot::SceneRig rig(metrics::MetricsFixture::normal);
    metrics::DayHistory day;
    snapshot::fillSceneDay(day, metrics::MetricsFixture::normal);
    rig.model().setDayHistory(&day);
    ui::PanelWindow window(rig.model(), rig.theme());
    window.header().setAnimating(false);
    window.setAttribute(Qt::WA_DontShowOnScreen);
    window.show();
    QApplication::processEvents();
    window.grab();
    nlohmann::json kinds = nlohmann::json::object();
    std::vector<double> allOpen, allBack;
    for (std::size_t d = 0; d < panel::MetricDetailNames.size(); ++d) {
        std::vector<double> open, back;
        for (int r = 0; r < rounds; ++r) {
            QElapsedTimer clock;
            clock.start();
            ui::openDetail(window, rig.model(), rig.theme(), panel::MetricDetail(d));
            QApplication::processEvents();
            window.grab();  // the first frame, painted in full
            open.push_back(double(clock.nsecsElapsed()) / 1e6);
            clock.restart();
            window.popDetail();
            QApplication::processEvents();
            window.grab();
            back.push_back(double(clock.nsecsElapsed()) / 1e6);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        kinds[std::string(panel::MetricDetailNames[d])] = {{"openMs", median(open)},
                                                           {"backMs", median(back)}};
        allOpen.insert(allOpen.end(), open.begin(), open.end());
        allBack.insert(allBack.end(), back.begin(), back.end());
    }
    return {{"openMsMedian", median(allOpen)},
            {"openMsMax", maxOf(allOpen)},
            {"backMsMedian", median(allBack)},
            {"backMsMax", maxOf(allBack)},
            {"targetMs", 30},
            {"details", kinds}};
}

nlohmann::json chart(int rounds) {
    snapshot::SceneRig rig(metrics::MetricsFixture::normal);
    metrics::DayHistory day;
    snapshot::fillSceneDay(day, metrics::MetricsFixture::normal);
    rig.model().setDayHistory(&day);
    ui::ChartView view("Load", {metrics::HistorySeries::cpuTotal, std::nullopt, 1, "", ""}, false,
                       rig.model(), rig.theme());
    view.setRange(panel::ChartRange::day);
    view.resize(352, view.sizeHint().height());
    view.setAttribute(Qt::WA_DontShowOnScreen);
    view.show();
    QApplication::processEvents();
    std::vector<double> full, hover, refresh;
    for (int r = 0; r < rounds; ++r) {
        QElapsedTimer clock;
        // A new minute's data: the chart is rebuilt and drawn again.
        view.setRange(panel::ChartRange::hour);
        view.setRange(panel::ChartRange::day);
        clock.start();
        view.repaint();
        full.push_back(double(clock.nsecsElapsed()) / 1e6);
        // The pointer moves over it: the cached drawing and the read-out only.
        QMouseEvent move(QEvent::MouseMove, QPointF(120 + r % 100, 60), QPointF(), Qt::NoButton,
                         Qt::NoButton, Qt::NoModifier);
        clock.restart();
        QApplication::sendEvent(&view, &move);
        view.repaint();
        hover.push_back(double(clock.nsecsElapsed()) / 1e6);
        // A sample that does not change the day's drawing.
        clock.restart();
        view.refresh();
        refresh.push_back(double(clock.nsecsElapsed()) / 1e6);
    }
    return {{"dayDrawMs", median(full)},
            {"hoverRepaintMs", median(hover)},
            {"unchangedRefreshMs", median(refresh)},
            {"renders", view.renderCount()}};
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // The offscreen platform says it cannot size windows to their hints, on every window.
    qputenv("QT_LOGGING_RULES", "qt.qpa.*=false");
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
        if (type != QtDebugMsg && !text.contains(QLatin1String("propagateSizeHints")))
            std::fprintf(stderr, "%s\n", qPrintable(text));
    });
    setenv("TZ", snapshot::sceneTimeZone, 1);
    QApplication app(argc, argv);
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 20;
    nlohmann::ordered_json out;
    const auto day = dayHistory();
    out["dayHistory"] = day;
    out["extraSampling"] = extraSampling(rounds * 5, day["nsPerSample"].get<double>());
    out["switching"] = switching(rounds);
    out["chart"] = chart(rounds * 5);
    std::printf("%s\n", out.dump(2).c_str());
    return 0;
}
