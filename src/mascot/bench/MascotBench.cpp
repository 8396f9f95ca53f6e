// Measures the mascot art: how long one frame takes to draw, and how many bytes each mascot's
// cached loops hold. Prints JSON. A figure to report, not a test: timings depend on the machine.
// Draw times are the thread's CPU time, so other work on a busy machine doesn't count.
//
//   build/release/src/mascot/mascot_bench [REPEATS]
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include <QGuiApplication>

#include "mascot/qt/MascotRenderer.h"

using namespace trotlet::mascot;

namespace {

double threadCpuMs() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return t.tv_sec * 1e3 + t.tv_nsec / 1e6;
}

constexpr MascotMood allMoods[] = {
    MascotMood::panic,    MascotMood::overheated, MascotMood::lowBattery,  MascotMood::offline,
    MascotMood::sleeping, MascotMood::sitting,    MascotMood::celebrating, MascotMood::running};

struct Timing {
    double meanMs = 0, p95Ms = 0, maxMs = 0;
};

// Draws every frame of every loop `repeats` times at one size and times each draw.
Timing timeFrames(const MascotCharacter& c, int size, qreal scale, int repeats) {
    std::vector<double> ms;
    for (int r = 0; r < repeats; ++r)
        for (MascotMood mood : allMoods) {
            const int bands = isRunMood(mood) ? static_cast<int>(c.loadBands.size()) + 1 : 1;
            for (int band = 0; band < bands; ++band)
                for (int i = 0; i < c.frameCount(mood); ++i) {
                    const double start = threadCpuMs();
                    const QImage f = drawMascotFrame(c, mood, band, i, {}, size, scale, false);
                    const double end = threadCpuMs();
                    if (f.isNull()) std::abort();
                    ms.push_back(end - start);
                }
        }
    std::sort(ms.begin(), ms.end());
    Timing t;
    for (double v : ms) t.meanMs += v;
    t.meanMs /= static_cast<double>(ms.size());
    t.p95Ms = ms[ms.size() * 95 / 100];
    t.maxMs = ms.back();
    return t;
}

// Bytes the renderer holds for a mascot once every loop the menu bar can show has been drawn
// at one size: each mood, each band of the run moods, and the blink of each.
std::size_t loopBytes(const MascotCharacter& c, int size, qreal scale) {
    MascotRenderer renderer;
    for (MascotMood mood : allMoods) {
        const int bands = isRunMood(mood) ? static_cast<int>(c.loadBands.size()) + 1 : 1;
        for (int band = 0; band < bands; ++band)
            for (bool blink : {false, true})
                renderer.loop(c, mood, static_cast<std::uint8_t>(band), {}, size, scale, blink);
    }
    return renderer.cachedBytes(c.id);
}

// The most one band's run loop adds, with its blink, at the largest menu-bar frame.
std::size_t bandGrowth(const MascotCharacter& c) {
    MascotRenderer renderer;
    std::size_t worst = 0;
    for (std::uint8_t band = 0; band <= c.loadBands.size(); ++band) {
        for (bool blink : {false, true}) {
            const std::size_t before = renderer.cachedBytes();
            renderer.loop(c, MascotMood::running, band, {}, 24, 2, blink);
            worst = std::max(worst, renderer.cachedBytes() - before);
        }
    }
    return worst;
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    const int repeats = argc > 1 ? std::max(1, std::atoi(argv[1])) : 20;
    std::printf("{\n  \"repeats\": %d,\n  \"mascots\": [\n", repeats);
    const auto& all = allCharacters();
    double worstMean = 0;
    for (size_t k = 0; k < all.size(); ++k) {
        const auto& c = all[k];
        const Timing panel = timeFrames(c, MascotRenderer::panelSize, 2, repeats);
        const Timing bar = timeFrames(c, 22, 2, repeats);
        worstMean = std::max(worstMean, panel.meanMs);
        std::printf(
            "    {\"id\": \"%s\", \"frameMs44at2x\": {\"mean\": %.3f, \"p95\": %.3f, \"max\": "
            "%.3f}, "
            "\"frameMs22at2x\": {\"mean\": %.3f, \"p95\": %.3f}, \"menuBarLoopBytes22at2x\": %zu, "
            "\"panelLoopBytes44at2x\": %zu, \"bandGrowthBytes24at2x\": %zu}%s\n",
            c.id.c_str(), panel.meanMs, panel.p95Ms, panel.maxMs, bar.meanMs, bar.p95Ms,
            loopBytes(c, 22, 2), loopBytes(c, MascotRenderer::panelSize, 2), bandGrowth(c),
            k + 1 < all.size() ? "," : "");
    }
    std::printf("  ],\n  \"worstMeanFrameMs44at2x\": %.3f\n}\n", worstMean);
    return 0;
}
