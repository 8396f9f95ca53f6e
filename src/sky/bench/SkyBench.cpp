// sky_bench: what the header sky costs. Prints one JSON object:
//   frameMicros: the whole header (sky, mascot, chips, text) painted at panel size and scale 2,
//     per condition at day and at night, and the sky alone for rain at intensity 1.0;
//   cpu: the panel shown with its header animating for N seconds, without a forecast (a still
//     sky, only the mascot moves) and under heavy rain, as a percentage of one core, with the
//     header's paints per second.
// Runs on the offscreen platform unless QT_QPA_PLATFORM says otherwise (xcb under Xvfb adds
// the X server's side of each frame). Not a test: scripts/measure-sky.sh runs it.
//
//   sky_bench [SECONDS]
#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QImage>
#include <QPainter>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "panel/HeaderContent.h"
#include "platform/linux/OwnCpuTime.h"
#include "sky/qt/SkyBackdrop.h"
#include "snapshot/SceneFixtures.h"
#include "snapshot/SceneRig.h"
#include "ui/panel/PanelHeader.h"
#include "ui/panel/PanelWindow.h"

namespace {

using namespace trotlet;

void showForecast(ui::PanelModel& model, std::optional<int> code, sky::SkyPhase phase) {
    const auto at = snapshot::scenePhaseTime(phase, code.has_value());
    model.setClock([at] { return at; });
    if (!code) {
        model.setWeather(std::nullopt, std::nullopt);
        return;
    }
    auto report = snapshot::sceneForecast(*code);
    const auto now =
        std::chrono::duration_cast<std::chrono::seconds>(at.time_since_epoch()).count();
    report.fetchedAt = now - 600;
    model.setWeather(panel::summarizeWeather(report, now), report);
}

struct Timing {
    double mean = 0, p95 = 0;
};

Timing time(int runs, const std::function<void(int)>& frame) {
    std::vector<double> micros;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer clock;
        clock.start();
        frame(i);
        micros.push_back(double(clock.nsecsElapsed()) / 1000.0);
    }
    std::sort(micros.begin(), micros.end());
    Timing t;
    for (double m : micros) t.mean += m / double(runs);
    t.p95 = micros[std::size_t(double(runs) * 0.95)];
    return t;
}

// Counts the header's paints.
struct PaintCounter : QObject {
    int paints = 0;
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) ++paints;
        return false;
    }
};

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_SCALE_FACTOR", "2");
    QApplication app(argc, argv);
    const double seconds = argc > 1 ? std::max(2.0, std::atof(argv[1])) : 20;

    snapshot::SceneRig rig(metrics::MetricsFixture::normal);
    auto& model = rig.model();
    rig.settings().weather().setShowInHeader(true);
    std::string json =
        "{\"platform\":\"" + QApplication::platformName().toStdString() + "\",\"frameMicros\":{";

    {
        ui::PanelHeader header(model, rig.theme());
        header.setFixedWidth(ui::Metrics::panelWidth);
        header.setAttribute(Qt::WA_DontShowOnScreen);
        auto* sky = new sky::SkyBackdrop(header, model, rig.theme());
        header.show();
        header.setAnimating(false);
        QImage image(QSize(ui::Metrics::panelWidth, ui::Metrics::headerHeight) * 2,
                     QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(2);
        const std::pair<const char*, std::optional<int>> skies[] = {
            {"none", std::nullopt}, {"clear", 0}, {"partlyCloudy", 2}, {"overcast", 3}, {"fog", 45},
            {"rain", 65},           {"snow", 75}, {"thunderstorm", 95}};
        bool first = true;
        for (const auto& [name, code] : skies)
            for (auto phase : {sky::SkyPhase::day, sky::SkyPhase::night}) {
                showForecast(model, code, phase);
                header.render(&image);  // the still layer is drawn once, then cached
                const Timing t = time(300, [&](int) { header.render(&image); });
                char entry[160];
                std::snprintf(entry, sizeof entry, "%s\"%s-%s\":{\"mean\":%.0f,\"p95\":%.0f}",
                              first ? "" : ",", name,
                              std::string(sky::SkyPhaseNames[std::size_t(phase)]).c_str(), t.mean,
                              t.p95);
                json += entry;
                first = false;
            }
        // The sky alone under the heaviest rain, moving from frame to frame.
        showForecast(model, 65, sky::SkyPhase::day);
        const Timing rain = time(300, [&](int i) {
            QPainter p(&image);
            sky->painter().paint(
                p, QRectF(0, 0, ui::Metrics::panelWidth, ui::Metrics::headerHeight), i / 16.0);
        });
        char entry[120];
        std::snprintf(entry, sizeof entry, ",\"skyOnly-rain\":{\"mean\":%.0f,\"p95\":%.0f}",
                      rain.mean, rain.p95);
        json += entry;
        json += "},\"stillRenders\":" + std::to_string(sky->painter().stillRenders());
    }

    // The panel open with its header animating: a still sky, then heavy rain.
    json += ",\"cpu\":{";
    bool first = true;
    for (const auto& [name, code] :
         {std::pair<const char*, std::optional<int>>{"stillSky", std::nullopt},
          std::pair<const char*, std::optional<int>>{"rain", 65}}) {
        showForecast(model, code, sky::SkyPhase::day);
        ui::PanelWindow window(model, rig.theme());
        window.show();
        window.header().setAnimating(true);
        PaintCounter counter;
        window.header().installEventFilter(&counter);
        QTimer::singleShot(1000, &app, [] {});
        QElapsedTimer settle;
        settle.start();
        while (settle.elapsed() < 1000) app.processEvents(QEventLoop::AllEvents, 50);
        counter.paints = 0;
        const double cpu0 = platform::ownCpuSeconds();
        QElapsedTimer wall;
        wall.start();
        QTimer::singleShot(int(seconds * 1000), &app, &QCoreApplication::quit);
        app.exec();
        const double elapsed = double(wall.elapsed()) / 1000.0;
        const double cpu = platform::ownCpuSeconds() - cpu0;
        const auto* sky = window.header().findChild<sky::SkyBackdrop*>();
        char entry[200];
        std::snprintf(
            entry, sizeof entry,
            "%s\"%s\":{\"percentOfOneCore\":%.2f,\"headerPaintsPerSecond\":%.1f,\"skyFps\":%d}",
            first ? "" : ",", name, 100.0 * cpu / elapsed, counter.paints / elapsed,
            sky ? sky->scene().framesPerSecond : 0);
        json += entry;
        first = false;
    }
    json += "}}\n";
    std::fputs(json.c_str(), stdout);
    return 0;
}
