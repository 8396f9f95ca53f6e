#include <QFontMetricsF>
#include <QGuiApplication>

#include <gtest/gtest.h>

#include "menubar/qt/TickerFont.h"

namespace trotlet::menubar {
namespace {

QGuiApplication& guiApp() {
    static int argc = 1;
    static char name[] = "menubar_tests";
    static char* argv[] = {name, nullptr};
    // Never destroyed: Qt's application object must outlive every static at exit.
    // Headless unless a test run asks for a real display.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    static QGuiApplication* app = new QGuiApplication(argc, argv);
    return *app;
}

TEST(TickerFont, ElevenPointMediumWithEvenDigits) {
    guiApp();
    const QFont font = tickerFont();
    EXPECT_DOUBLE_EQ(font.pointSizeF(), 11);
    EXPECT_EQ(font.weight(), QFont::Medium);
    EXPECT_TRUE(hasEvenDigits(font));
}

TEST(TickerFont, RealMeasurementsReserveStableRoom) {
    guiApp();
    TickerWidth width(tickerMeasure());
    const double cpu = width.sampleWidth(MenuBarTextMetric::cpu);
    EXPECT_GT(cpu, 10);
    EXPECT_LT(cpu, 80);
    EXPECT_EQ(cpu, std::ceil(cpu));
    // Every two-digit reading fits the room of "100%", so the item doesn't jitter.
    for (int n = 0; n <= 100; n += 7)
        EXPECT_DOUBLE_EQ(width.reservedWidth(MenuBarTextMetric::cpu, std::to_string(n) + "%"), cpu)
            << n;
    EXPECT_GT(width.sampleWidth(MenuBarTextMetric::network), cpu);
    EXPECT_GT(width.reservedWidth(MenuBarTextMetric::network, "↓1000 KB/s"),
              width.sampleWidth(MenuBarTextMetric::network) - 1);
}

}  // namespace
}  // namespace trotlet::menubar
