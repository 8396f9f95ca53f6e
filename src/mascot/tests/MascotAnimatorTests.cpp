#include <QGuiApplication>

#include <gtest/gtest.h>

#include "mascot/tests/GuiTestApp.h"

#include "mascot/qt/MascotAnimator.h"
#include "mascot/tests/MascotTestSupport.h"

namespace trotlet::mascot {
namespace {

using testing::guiApp;

struct Rig {
    double t = 0;
    MascotAnimator animator;
    Rig() {
        guiApp();
        animator.setClock([this] { return testing::at(t); });
    }
    void sample(double cpu, double at) {
        t = at;
        metrics::MetricsSnapshot s;
        s.network.online = true;
        s.cpu.total = cpu;
        animator.ingest(s);
    }
    void tick(double until, double step = 0.05) {
        for (; t < until; t += step) animator.advance(testing::at(t));
    }
};

TEST(MascotAnimator, PublishesFramesAsTheStrideMoves) {
    Rig rig;
    rig.sample(0.6, 0);
    ASSERT_FALSE(rig.animator.publishedMenuBarFrame().isNull());
    EXPECT_EQ(rig.animator.publishedMenuBarFrame().width(), 22);
    const auto serial = rig.animator.menuBarFrameSerial();
    rig.tick(3);
    EXPECT_GT(rig.animator.menuBarFrameSerial(), serial + 10);
    EXPECT_GT(rig.animator.distanceMeters(), 0);
    EXPECT_TRUE(rig.animator.timerActive());
    EXPECT_DOUBLE_EQ(rig.animator.framesPerSecond(),
                     menuBarFPS(rig.animator.visual(), characterFor("cat"), FrameEnvironment{}));
}

TEST(MascotAnimator, CelebrationLastsTwoSeconds) {
    Rig rig;
    rig.sample(0.3, 0);
    rig.t = 1;
    rig.animator.celebrate();
    EXPECT_EQ(rig.animator.state().mood, MascotMood::celebrating);
    rig.sample(0.3, 2.9);
    EXPECT_EQ(rig.animator.state().mood, MascotMood::celebrating);
    rig.sample(0.3, 3.0);
    EXPECT_EQ(rig.animator.state().mood, MascotMood::running);
}

TEST(MascotAnimator, StillFramesStopTheTimer) {
    Rig rig;
    rig.sample(0.5, 0);
    EXPECT_TRUE(rig.animator.timerActive());
    rig.animator.setPaused(true);
    EXPECT_FALSE(rig.animator.timerActive());
    rig.animator.setPaused(false);
    EXPECT_TRUE(rig.animator.timerActive());
    auto settings = rig.animator.settings();
    settings.frame.reduceMotion = true;
    rig.animator.setSettings(settings);
    EXPECT_FALSE(rig.animator.timerActive());
    settings.frame.animateWithReduceMotion = true;
    rig.animator.setSettings(settings);
    EXPECT_TRUE(rig.animator.timerActive());
    EXPECT_LE(rig.animator.framesPerSecond(), 8);
}

TEST(MascotAnimator, AwayUserOnABusyMachineRunsAtTrueSpeedButFewFrames) {
    Rig rig;
    rig.animator.setIdleSeconds([] { return std::optional<double>(400); });
    rig.sample(0.6, 0);
    EXPECT_EQ(rig.animator.state().mood, MascotMood::running);
    EXPECT_TRUE(rig.animator.state().userAway);
    EXPECT_DOUBLE_EQ(rig.animator.state().cyclesPerSecond,
                     cyclesPerSecond(MascotMood::running, 0.6, 0.75, characterFor("cat")));
    EXPECT_LE(rig.animator.framesPerSecond(), 9);
}

TEST(MascotAnimator, EquipAndTryOn) {
    Rig rig;
    rig.sample(0.5, 0);
    rig.animator.equip("shiba");
    EXPECT_EQ(rig.animator.drawnMascotId(), "shiba");
    rig.animator.tryOn("ghost", testing::at(5));
    EXPECT_EQ(rig.animator.drawnMascotId(), "ghost");
    rig.tick(4.9);
    EXPECT_EQ(rig.animator.drawnMascotId(), "ghost");
    rig.tick(5.2);
    EXPECT_EQ(rig.animator.drawnMascotId(), "shiba");

    // Equipping during a try-on is the user's choice: the try-on ends with it.
    int changes = 0;
    QObject::connect(&rig.animator, &MascotAnimator::drawnMascotChanged, [&] { ++changes; });
    rig.animator.tryOn("fox", testing::at(100));
    rig.animator.equip("bunny");
    EXPECT_EQ(rig.animator.drawnMascotId(), "bunny");
    EXPECT_FALSE(rig.animator.tryOnEndsAt().has_value());
    EXPECT_EQ(changes, 2);
}

// Equipping a mascot draws it at once and drops every other mascot's frames, whichever
// mascot comes before or after.
TEST(MascotAnimator, EquippingAMascotPurgesTheOthers) {
    Rig rig;
    rig.sample(0.5, 0);
    const auto& all = allCharacters();
    for (size_t i = 0; i < all.size(); ++i) {
        const std::string& id = all[(i * 5) % all.size()].id;  // a shuffled order
        rig.animator.equip(id);
        rig.tick(rig.t + 0.5);
        EXPECT_GT(rig.animator.renderer().cachedBytes(id), 0u) << id;
        EXPECT_EQ(rig.animator.renderer().cachedBytes(), rig.animator.renderer().cachedBytes(id))
            << "frames of another mascot outlive equipping " << id;
    }
}

TEST(MascotAnimator, OneShotImagesPlayOnceThenTheLoopResumes) {
    Rig rig;
    rig.sample(0.5, 0);
    QImage a(22, 22, QImage::Format_ARGB32_Premultiplied), b = a;
    a.fill(Qt::red);
    b.fill(Qt::blue);
    rig.animator.playOneShot({a, b});
    rig.t = 0.1;
    rig.animator.advance(testing::at(rig.t));
    EXPECT_EQ(rig.animator.publishedMenuBarFrame(), a);
    rig.animator.advance(testing::at(0.2));
    EXPECT_EQ(rig.animator.publishedMenuBarFrame(), b);
    rig.animator.advance(testing::at(0.3));
    EXPECT_NE(rig.animator.publishedMenuBarFrame(), b);
}

}  // namespace
}  // namespace trotlet::mascot
