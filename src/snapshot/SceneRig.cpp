#include "snapshot/SceneRig.h"

#include <QApplication>
#include <QWidget>

#include <algorithm>
#include <cmath>

#include "mascot/LocalCalendar.h"
#include "mascot/MascotDumpBlock.h"
#include "metrics/FixtureProvider.h"
#include "shop/Catalog.h"
#include "snapshot/SceneFixtures.h"

namespace trotlet::snapshot {
namespace {

// 2026-10-01 14:30 in Berlin (summer time, UTC+2).
constexpr std::int64_t sceneUnixSeconds = 1790857800;

// A small repeatable wobble in -1..1 for point i of a series.
double wobble(int i, int series) {
    const double slow = std::sin(i * 0.11 + series * 1.7);
    const double quick = std::sin(i * 0.53 + series * 0.9) * 0.3;
    return (slow + quick) / 1.35;
}

double around(double value, int i, int series, double spread) {
    return std::max(0.0, value * (1 + spread * wobble(i, series)));
}

}  // namespace

metrics::Timestamp sceneTime() {
    return metrics::Timestamp(std::chrono::seconds(sceneUnixSeconds));
}

void fillSceneHistory(metrics::MetricHistory& history, const metrics::MetricsSnapshot& sample,
                      int points, int stepSeconds, metrics::MetricKinds kinds) {
    for (int i = 0; i < points; ++i) {
        const int back = points - 1 - i;
        metrics::MetricsSnapshot s = sample;
        s.timestamp = sample.timestamp - std::chrono::seconds(stepSeconds * back);
        if (back > 0) {
            s.cpu.total = std::min(1.0, around(sample.cpu.total, i, 0, 0.35));
            s.memory.used = std::uint64_t(
                std::min(double(s.memory.total), around(double(sample.memory.used), i, 1, 0.04)));
            s.network.downBps = around(sample.network.downBps, i, 2, 0.45);
            s.network.upBps = around(sample.network.upBps, i, 3, 0.45);
            if (s.disks.readBps) s.disks.readBps = around(*sample.disks.readBps, i, 4, 0.5);
            if (s.disks.writeBps) s.disks.writeBps = around(*sample.disks.writeBps, i, 5, 0.5);
            if (s.thermal.cpuC) s.thermal.cpuC = around(*sample.thermal.cpuC, i, 6, 0.05);
            if (s.gpu)
                s.gpu->utilization = std::min(1.0, around(sample.gpu->utilization, i, 7, 0.4));
        }
        history.append(s, kinds);
    }
}

metrics::MetricsFixture fixtureForMood(mascot::MascotMood mood) {
    switch (mood) {
        case mascot::MascotMood::panic:
            return metrics::MetricsFixture::panic;
        case mascot::MascotMood::overheated:
            return metrics::MetricsFixture::hot;
        case mascot::MascotMood::lowBattery:
            return metrics::MetricsFixture::lowBattery;
        case mascot::MascotMood::offline:
            return metrics::MetricsFixture::offline;
        case mascot::MascotMood::sleeping:
            return metrics::MetricsFixture::idle;
        case mascot::MascotMood::running:
            return metrics::MetricsFixture::busy;
        default:
            return metrics::MetricsFixture::normal;
    }
}

SceneRig::SceneRig(metrics::MetricsFixture fixture)
    : settings_(settings::DefaultsStore::ephemeral({"trotlet"}), false),
      layout_(settings_.layout(), settings_.monitoring()),
      history_(90),
      sample_(metrics::fixtureSnapshot(fixture, sceneTime())),
      model_(settings_, layout_, history_) {
    settings_.monitoring().setShowPerCoreCPU(true);
    fillSceneHistory(history_, sample_, 90);
    model_.setClock([] { return sceneTime(); });
    model_.setSample(sample_, metrics::MetricKinds::all);
    const auto& character = mascot::characterFor(std::string(shop::Catalog::starterId));
    const mascot::LocalCalendar calendar{10, 1, 14};
    const auto state =
        mascot::settledMascotState(sample_, character, mascot::MascotBehavior{}, calendar);
    model_.setMascot(character.id, state, 12);
    model_.setFishBalance(1250);
    model_.setPaw(scenePawReport());
    model_.setFirstName("Henry");
}

QImage SceneRig::render(QWidget& widget, panel::ColorScheme scheme) {
    theme_.setPreference(scheme == panel::ColorScheme::dark
                             ? settings::AppearancePreference::dark
                             : settings::AppearancePreference::light);
    widget.ensurePolished();
    QApplication::processEvents();
    return widget.grab().toImage();
}

}  // namespace trotlet::snapshot
