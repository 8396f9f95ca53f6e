#include <cstdlib>
#include <string>

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include "mascot/tests/GuiTestApp.h"

#include "mascot/qt/MascotRenderer.h"

namespace trotlet::mascot {
namespace {

using testing::guiApp;

struct Ink {
    int pixels = 0;
    QRect bounds;
};

Ink inkOf(const QImage& image) {
    Ink ink;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(image.pixel(x, y)) > 40) {
                ++ink.pixels;
                ink.bounds = ink.bounds.united(QRect(x, y, 1, 1));
            }
    return ink;
}

constexpr MascotMood allMoods[] = {MascotMood::panic,    MascotMood::overheated,
                                   MascotMood::lowBattery, MascotMood::offline,
                                   MascotMood::sleeping, MascotMood::sitting,
                                   MascotMood::celebrating, MascotMood::running};

TEST(MascotRenderer, EveryCatFrameRendersAtBothScales) {
    guiApp();
    MascotRenderer renderer;
    const auto& cat = characterFor("cat");
    for (qreal scale : {1.0, 2.0}) {
        for (MascotMood mood : allMoods) {
            const int bands = isRunMood(mood) ? static_cast<int>(cat.loadBands.size()) + 1 : 1;
            for (int band = 0; band < bands; ++band) {
                const auto& frames = renderer.loop(cat, mood, static_cast<std::uint8_t>(band), {},
                                                   22, scale);
                ASSERT_EQ(static_cast<int>(frames.size()), cat.frameCount(mood));
                for (size_t i = 0; i < frames.size(); ++i) {
                    const QImage& f = frames[i];
                    const std::string where = std::string(MascotMoodNames[static_cast<int>(mood)]) +
                                              " band " + std::to_string(band) + " frame " +
                                              std::to_string(i) + " @" + std::to_string(scale);
                    EXPECT_EQ(f.width(), qRound(22 * scale)) << where;
                    EXPECT_DOUBLE_EQ(f.devicePixelRatio(), scale) << where;
                    const Ink ink = inkOf(f);
                    // A cat covers a real share of the canvas, not a speck or a filled square.
                    const int area = f.width() * f.height();
                    EXPECT_GT(ink.pixels, area / 8) << where;
                    EXPECT_LT(ink.pixels, area * 3 / 4) << where;
                }
                // A loop that moves: its frames are not all the same picture.
                if (frames.size() > 1) {
                    EXPECT_NE(frames.front(), frames[frames.size() / 2]);
                }
            }
        }
    }
}

TEST(MascotRenderer, BandsLookDifferentAndAccessoriesDrawOnTop) {
    guiApp();
    MascotRenderer renderer;
    const auto& cat = characterFor("cat");
    const QImage trot = renderer.loop(cat, MascotMood::running, 0, {}, 22, 2)[2];
    const QImage gallop = renderer.loop(cat, MascotMood::running, 2, {}, 22, 2)[2];
    EXPECT_NE(trot, gallop);
    const std::uint64_t each[] = {MascotAccessories::charging,    MascotAccessories::backpack,
                                  MascotAccessories::nightcap,    MascotAccessories::sweat,
                                  MascotAccessories::umbrella,    MascotAccessories::halloweenHat,
                                  MascotAccessories::holidayHat,  MascotAccessories::gpuBadge,
                                  MascotAccessories::memoryBadge, MascotAccessories::networkBadge};
    for (MascotMood mood : {MascotMood::running, MascotMood::sitting, MascotMood::sleeping}) {
        const QImage plain = renderer.loop(cat, mood, 0, {}, 22, 2)[1];
        for (auto bit : each)
            EXPECT_NE(renderer.loop(cat, mood, 0, {bit}, 22, 2)[1], plain)
                << "accessory " << bit << " on " << MascotMoodNames[static_cast<int>(mood)];
    }
}

TEST(MascotRenderer, StillMoodsShareOneLoopAcrossBands) {
    guiApp();
    MascotRenderer renderer;
    const auto& cat = characterFor("cat");
    const auto* a = &renderer.loop(cat, MascotMood::sitting, 0, {}, 22, 1);
    const auto* b = &renderer.loop(cat, MascotMood::sitting, 2, {}, 22, 1);
    EXPECT_EQ(a, b);
    EXPECT_EQ(renderer.loopCount(), 1u);
    MascotState visual;
    visual.mood = MascotMood::running;
    visual.loadBand = 1;
    EXPECT_EQ(renderer.frame(cat, visual, 9, 22, 1), renderer.frame(cat, visual, 1, 22, 1));
    EXPECT_EQ(renderer.frame(cat, visual, -1, 22, 1), renderer.frame(cat, visual, 7, 22, 1));
}

TEST(MascotRenderer, PurgeKeepsTheEquippedMenuBarAndPanelLoops) {
    guiApp();
    MascotRenderer renderer;
    for (const char* id : {"cat", "shiba"})
        for (int size : {22, 44, 64})
            renderer.loop(characterFor(id), MascotMood::running, 0, {}, size, 2);
    EXPECT_EQ(renderer.loopCount(), 6u);
    renderer.purge("cat", 22);
    EXPECT_EQ(renderer.loopCount(), 2u);
    EXPECT_EQ(renderer.cachedBytes("shiba"), 0u);
    EXPECT_GT(renderer.cachedBytes("cat"), 0u);
}

TEST(MascotRenderer, GrowthPerBandAndBlinkStaysUnder100KB) {
    guiApp();
    MascotRenderer renderer;
    const auto& cat = characterFor("cat");
    renderer.loop(cat, MascotMood::running, 0, {}, 22, 2);
    const auto one = renderer.cachedBytes();
    renderer.loop(cat, MascotMood::running, 1, {}, 22, 2);
    EXPECT_LE(renderer.cachedBytes() - one, 100u * 1024);
    const auto two = renderer.cachedBytes();
    renderer.loop(cat, MascotMood::running, 1, {}, 22, 2, true);
    EXPECT_LE(renderer.cachedBytes() - two, 100u * 1024);
}

TEST(MascotRenderer, ProvisionalMascotsAreTintedInTheirColour) {
    guiApp();
    MascotRenderer renderer;
    const QImage cat = renderer.loop(characterFor("cat"), MascotMood::running, 0, {}, 22, 2)[0];
    for (const auto& c : allCharacters()) {
        if (c.id == "cat") continue;
        const QImage other = renderer.loop(c, MascotMood::running, 0, {}, 22, 2)[0];
        EXPECT_NE(other, cat) << c.id;
        EXPECT_GT(inkOf(other).pixels, 200) << c.id;
    }
}

// With TROTLET_MASCOT_PREVIEW=<dir>, writes contact sheets of every loop on a light and a dark
// panel, for judging the art by eye.
TEST(MascotRenderer, PreviewSheets) {
    const char* dir = std::getenv("TROTLET_MASCOT_PREVIEW");
    if (!dir) GTEST_SKIP() << "set TROTLET_MASCOT_PREVIEW to a folder to write preview sheets";
    guiApp();
    MascotRenderer renderer;
    const auto& cat = characterFor("cat");
    struct Row {
        MascotMood mood;
        int band;
        std::uint64_t acc;
    };
    const Row rows[] = {
        {MascotMood::running, 0, 0},    {MascotMood::running, 1, 0},
        {MascotMood::running, 2, 0},    {MascotMood::panic, 2, 0},
        {MascotMood::overheated, 1, 0}, {MascotMood::lowBattery, 0, 0},
        {MascotMood::offline, 0, MascotAccessories::umbrella},
        {MascotMood::sitting, 0, 0},    {MascotMood::sleeping, 0, MascotAccessories::nightcap},
        {MascotMood::celebrating, 0, 0},
        {MascotMood::running, 1, MascotAccessories::backpack | MascotAccessories::charging |
                                     MascotAccessories::sweat | MascotAccessories::gpuBadge},
        {MascotMood::sitting, 0, MascotAccessories::holidayHat},
        {MascotMood::running, 0, MascotAccessories::halloweenHat},
    };
    for (int size : {18, 22}) {
        for (qreal scale : {1.0, 2.0}) {
            const int cell = qRound(size * scale) + 4;
            const int zoom = scale == 1.0 ? 4 : 2;
            QImage sheet(cell * 8 * 2, cell * static_cast<int>(std::size(rows)), QImage::Format_ARGB32);
            sheet.fill(Qt::white);
            QPainter p(&sheet);
            p.fillRect(QRect(cell * 8, 0, cell * 8, sheet.height()), QColor(0x2B, 0x2B, 0x2E));
            int y = 0;
            for (const auto& r : rows) {
                const auto& frames = renderer.loop(cat, r.mood, static_cast<std::uint8_t>(r.band),
                                                   {r.acc}, size, scale);
                for (int half = 0; half < 2; ++half)
                    for (size_t i = 0; i < frames.size(); ++i) {
                        QImage f = frames[i];
                        f.setDevicePixelRatio(1);
                        p.drawImage(QPoint(half * cell * 8 + static_cast<int>(i) * cell + 2, y + 2), f);
                    }
                y += cell;
            }
            p.end();
            sheet = sheet.scaled(sheet.size() * zoom, Qt::IgnoreAspectRatio, Qt::FastTransformation);
            const QString path = QString("%1/cat-%2px@%3x.png").arg(dir).arg(size).arg(int(scale));
            EXPECT_TRUE(sheet.save(path));
        }
    }
}

}  // namespace
}  // namespace trotlet::mascot
