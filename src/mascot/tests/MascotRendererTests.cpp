#include <cstdlib>
#include <string>

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include "mascot/tests/GuiTestApp.h"

#include "mascot/qt/MascotContactSheet.h"
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

constexpr MascotMood allMoods[] = {
    MascotMood::panic,    MascotMood::overheated, MascotMood::lowBattery,  MascotMood::offline,
    MascotMood::sleeping, MascotMood::sitting,    MascotMood::celebrating, MascotMood::running};

TEST(MascotRenderer, EveryCatFrameRendersAtBothScales) {
    guiApp();
    MascotRenderer renderer;
    const auto& cat = characterFor("cat");
    for (qreal scale : {1.0, 2.0}) {
        for (MascotMood mood : allMoods) {
            const int bands = isRunMood(mood) ? static_cast<int>(cat.loadBands.size()) + 1 : 1;
            for (int band = 0; band < bands; ++band) {
                const auto& frames =
                    renderer.loop(cat, mood, static_cast<std::uint8_t>(band), {}, 22, scale);
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

// With TROTLET_MASCOT_PREVIEW=<dir>, writes every mascot's contact sheet and menu-bar strip on
// a light and a dark backdrop, for judging the art by eye. TROTLET_MASCOT_PREVIEW_ONLY=<id>
// limits it to one mascot.
TEST(MascotRenderer, PreviewSheets) {
    const char* dir = std::getenv("TROTLET_MASCOT_PREVIEW");
    if (!dir) GTEST_SKIP() << "set TROTLET_MASCOT_PREVIEW to a folder to write preview sheets";
    guiApp();
    const QString only = qEnvironmentVariable("TROTLET_MASCOT_PREVIEW_ONLY");
    for (const auto& c : allCharacters()) {
        const QString id = QString::fromStdString(c.id);
        if (!only.isEmpty() && id != only) continue;
        for (bool dark : {false, true}) {
            const QString theme = dark ? "dark" : "light";
            for (qreal scale : {1.0, 2.0})
                EXPECT_TRUE(renderMascotContactSheet(c.id, dark, scale)
                                .save(QString("%1/mascot-%2-%3@%4x.png")
                                          .arg(dir, id, theme)
                                          .arg(int(scale))));
            EXPECT_TRUE(renderMenuBarStrip(c.id, dark, 2, "42%")
                            .save(QString("%1/menubar-%2-%3@2x.png").arg(dir, id, theme)));
        }
        // The menu-bar size at 1x, magnified without smoothing: what each pixel really is.
        std::vector<std::pair<MascotMood, int>> loops;
        for (int b = 0; b <= static_cast<int>(c.loadBands.size()); ++b)
            loops.emplace_back(MascotMood::running, b);
        for (MascotMood m : {MascotMood::panic, MascotMood::offline, MascotMood::sitting,
                             MascotMood::sleeping, MascotMood::celebrating})
            loops.emplace_back(m, 0);
        const int cell = 24;
        QImage zoom(cell * 8 * 2, cell * static_cast<int>(loops.size()), QImage::Format_ARGB32);
        zoom.fill(QColor(0xF4, 0xF4, 0xF6));
        QPainter p(&zoom);
        p.fillRect(QRect(cell * 8, 0, cell * 8, zoom.height()), QColor(0x2B, 0x2B, 0x2E));
        for (size_t r = 0; r < loops.size(); ++r)
            for (int half = 0; half < 2; ++half)
                for (int i = 0; i < std::min(8, c.frameCount(loops[r].first)); ++i)
                    p.drawImage(
                        QPoint(half * cell * 8 + i * cell + 1, static_cast<int>(r) * cell + 1),
                        drawMascotFrame(c, loops[r].first, loops[r].second, i, {}, 22, 1, false));
        p.end();
        EXPECT_TRUE(zoom.scaled(zoom.size() * 4, Qt::IgnoreAspectRatio, Qt::FastTransformation)
                        .save(QString("%1/zoom-%2.png").arg(dir, id)));
        // The panel size at 2x: four frames of each loop, for the details.
        QImage big(92 * 4 * 2, 92 * static_cast<int>(loops.size()), QImage::Format_ARGB32);
        big.fill(QColor(0xF4, 0xF4, 0xF6));
        QPainter q(&big);
        q.fillRect(QRect(92 * 4, 0, 92 * 4, big.height()), QColor(0x2B, 0x2B, 0x2E));
        for (size_t r = 0; r < loops.size(); ++r)
            for (int half = 0; half < 2; ++half)
                for (int i = 0; i < 4; ++i) {
                    const int n = c.frameCount(loops[r].first);
                    QImage f = drawMascotFrame(c, loops[r].first, loops[r].second, i * n / 4, {},
                                               44, 2, false);
                    f.setDevicePixelRatio(1);
                    q.drawImage(QPoint(half * 92 * 4 + i * 92 + 2, static_cast<int>(r) * 92 + 2),
                                f);
                }
        q.end();
        EXPECT_TRUE(big.save(QString("%1/big-%2.png").arg(dir, id)));
    }
}

}  // namespace
}  // namespace trotlet::mascot
