#include <QGuiApplication>
#include <QImage>

#include <gtest/gtest.h>

#include "mascot/tests/GuiTestApp.h"

#include "mascot/qt/MascotContactSheet.h"
#include "mascot/qt/MascotRenderer.h"

namespace trotlet::mascot {
namespace {

using testing::guiApp;

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

// At the largest menu-bar frame (24 px at 2x), each new band's run loop and each blink loop
// adds at most 100 KB per mascot.
TEST(MascotRenderer, GrowthPerBandAndBlinkStaysUnder100KBForEveryMascot) {
    guiApp();
    MascotRenderer renderer;
    for (const auto& c : allCharacters()) {
        std::size_t before = renderer.cachedBytes();
        for (std::uint8_t band = 0; band <= c.loadBands.size(); ++band) {
            for (bool blink : {false, true}) {
                renderer.loop(c, MascotMood::running, band, {}, 24, 2, blink);
                EXPECT_LE(renderer.cachedBytes() - before, 100u * 1024)
                    << c.id << " band " << int(band) << (blink ? " blink" : "");
                before = renderer.cachedBytes();
            }
        }
    }
}

}  // namespace
}  // namespace trotlet::mascot
