// What the Shop costs, measured on the real widgets: the first frame of the Shop tab with its
// thirteen previews (drawn cold, then warm), one tick of the previews' clock, and the CPU a
// Golden Fish takes to cross the header at its frame rate. Prints one JSON object.
//
//   build/release/src/ui/shop_bench            (offscreen)
//   xvfb-run build/release/src/ui/shop_bench -platform xcb
#include <QApplication>
#include <QElapsedTimer>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>

#include <cstdio>
#include <memory>

#include "platform/linux/OwnCpuTime.h"
#include "shop/Catalog.h"
#include "shop/ShopDemoStates.h"
#include "shop/ShopPersistence.h"
#include "shop/files/SystemEconomyClock.h"
#include "shop/qt/ShopRuntime.h"
#include "snapshot/SceneRig.h"
#include "ui/panel/PanelHeader.h"
#include "ui/panel/PanelWindow.h"
#include "ui/shop/GoldenFishView.h"
#include "ui/shop/LedgerList.h"
#include "ui/shop/MascotCardView.h"
#include "ui/shop/MascotPreviews.h"
#include "ui/shop/ShopInstall.h"
#include "ui/shop/ShopScreen.h"

namespace {

using namespace trotlet;

// Runs the event loop for a while; returns the CPU used as a share of one core.
double cpuShareOver(int ms) {
    const double before = platform::ownCpuSeconds();
    QElapsedTimer wall;
    wall.start();
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
    return (platform::ownCpuSeconds() - before) / (double(wall.nsecsElapsed()) / 1e9);
}

double msToShowShop(ui::PanelWindow& window) {
    window.showTab(panel::PanelTab::overview);
    QApplication::processEvents();
    QElapsedTimer t;
    t.start();
    window.showTab(panel::PanelTab::shop);
    window.repaint();
    return double(t.nsecsElapsed()) / 1e6;
}

}  // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    snapshot::SceneRig rig(metrics::MetricsFixture::normal);

    // The shop on the machine's real clocks, so the fish swims in real time.
    shop::ShopRuntime::Parts parts;
    parts.clock = std::make_unique<shop::SystemEconomyClock>();
    parts.calendar = std::make_unique<shop::LocalTimeCalendar>();
    const shop::EconomyClock* clock = parts.clock.get();
    const shop::Timestamp now = clock->read().wall;
    parts.persistence = std::make_unique<shop::InMemoryShopPersistence>(
        *parts.calendar, [clock] { return clock->read().wall; }, 1,
        shop::buildShopDemo(shop::ShopDemo::midGame, now));
    shop::ShopRuntime runtime(std::move(parts), shop::ShopRuntime::Options{});
    runtime.setPanelOpen(true);

    ui::PanelWindow window(rig.model(), rig.theme());
    window.header().setAnimating(false);
    ui::ShopScreen* screen = nullptr;  // built by the first showing, as in the app
    ui::installShop(window, rig.model(), runtime, rig.theme(),
                    [&screen](ui::ShopScreen& built) { screen = &built; });
    window.show();
    QApplication::processEvents();

    const double cold = msToShowShop(window);
    double warm = 0;
    const int opens = 20;
    for (int i = 0; i < opens; ++i) warm += msToShowShop(window);
    warm /= opens;

    // The worst first frame: the catalog in view and no loop drawn yet.
    screen->mainScroll().ensureWidgetVisible(screen->mascotCard("fox"));
    screen->previews().releaseCaches();
    const double coldCatalog = msToShowShop(window);
    // Every preview loop of all thirteen, drawn from nothing.
    screen->previews().releaseCaches();
    QElapsedTimer all;
    all.start();
    for (const auto& item : shop::Catalog::all())
        screen->previews().frame(item.id, ui::Metrics::mascotSize, window.devicePixelRatioF());
    const double allLoopsMs = double(all.nsecsElapsed()) / 1e6;

    // One tick of the previews with the catalog in view.
    screen->setAnimating(false);
    QApplication::processEvents();
    QElapsedTimer tick;
    const int ticks = 60;
    int repaints = 0;
    tick.start();
    for (int i = 0; i < ticks; ++i) {
        screen->previews().tick();
        repaints += screen->previews().lastTickRepaints();
        window.repaint();
    }
    const double tickMs = double(tick.nsecsElapsed()) / 1e6 / ticks;
    screen->setAnimating(true);
    const double catalogShare = cpuShareOver(2000);
    screen->setAnimating(false);

    // The Fish history at its longest: 500 rows, scrolled a row and a half at a time.
    for (int i = 0; i < 520; ++i) runtime.engine().grantDebugFish(1, "bench");
    screen->showPage(ui::ShopScreen::Page::history);
    window.repaint();
    auto* history = screen->findChild<QScrollArea*>(QStringLiteral("shop.historyPage"));
    const int steps = 200;
    QElapsedTimer scroll;
    scroll.start();
    for (int i = 1; i <= steps; ++i) {
        history->verticalScrollBar()->setValue(i * 78);
        window.repaint();
    }
    const double scrollMs = double(scroll.nsecsElapsed()) / 1e6 / steps;
    const int ledgerRows = screen->ledger().rowCount();
    const int paintedRows = screen->ledger().lastPaintedRows();
    screen->showPage(ui::ShopScreen::Page::main);

    // The header alone, then the header with a fish crossing it.
    window.showTab(panel::PanelTab::overview);
    QApplication::processEvents();
    const double idleShare = cpuShareOver(int(shop::EconomyRules::goldenFishSwimSeconds * 1000));
    auto* fish = window.header().findChild<ui::GoldenFishView*>();
    runtime.engine().spawnGoldenFish(runtime.engine().trustedNow());
    emit runtime.goldenFishChanged();
    const int swimMs = int(shop::EconomyRules::goldenFishSwimSeconds * 1000);
    const double firstHalf = cpuShareOver(swimMs / 2);
    const int fishInterval = fish ? fish->frameIntervalMs() : -1;
    const double swimShare = (firstHalf + cpuShareOver(swimMs - swimMs / 2)) / 2;

    std::printf(
        "{\"platform\":\"%s\",\"shopTabFirstFrameColdMs\":%.1f,\"shopTabFirstFrameWarmMs\":%.2f,"
        "\"catalogFirstFrameColdMs\":%.1f,\"allThirteenPreviewLoopsMs\":%.1f,"
        "\"previewTickMs\":%.2f,\"previewRepaintsPerTick\":%.1f,\"catalogAnimatingCpuPercent\":%."
        "2f,"
        "\"ledgerRows\":%d,\"ledgerScrollStepMs\":%.2f,\"ledgerRowsPaintedPerStep\":%d,"
        "\"headerIdleCpuPercent\":%.2f,\"goldenFishSwimCpuPercent\":%.2f,\"fishFrameIntervalMs\":%"
        "d}\n",
        qPrintable(QGuiApplication::platformName()), cold, warm, coldCatalog, allLoopsMs, tickMs,
        double(repaints) / ticks, catalogShare * 100, ledgerRows, scrollMs, paintedRows,
        idleShare * 100, swimShare * 100, fishInterval);
    return 0;
}
