// Every mascot's drawing, checked the same way: each loop moves, nothing leaves the canvas, a
// blink touches only the eyes, every accessory shows, the silhouettes differ, and one frame of
// each matches its golden image.
#include <cstdlib>
#include <string>
#include <vector>

#include <QDir>
#include <QImage>

#include <gtest/gtest.h>

#include "mascot/qt/MascotContactSheet.h"
#include "mascot/qt/MascotRenderer.h"
#include "mascot/qt/art/MascotArt.h"
#include "mascot/tests/GuiTestApp.h"
#include "shop/Catalog.h"

namespace trotlet::mascot {
namespace {

using testing::guiApp;

constexpr int inked = 40;  // alpha above which a pixel counts as drawn

struct Ink {
    int pixels = 0;
    QRect bounds;
};

Ink inkOf(const QImage& image) {
    Ink ink;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(image.pixel(x, y)) > inked) {
                ++ink.pixels;
                ink.bounds = ink.bounds.united(QRect(x, y, 1, 1));
            }
    return ink;
}

// The box around every pixel that differs between two images of one size.
QRect differenceBox(const QImage& a, const QImage& b) {
    QRect box;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            if (a.pixel(x, y) != b.pixel(x, y)) box = box.united(QRect(x, y, 1, 1));
    return box;
}

struct Loop {
    MascotMood mood;
    int band;
};

// Every loop a mascot has: a run per band, the other run moods (which use the bands too; the
// top band is enough here), and the three still moods.
std::vector<Loop> loopsOf(const MascotCharacter& c) {
    std::vector<Loop> loops;
    const int top = static_cast<int>(c.loadBands.size());
    for (int b = 0; b <= top; ++b) loops.push_back({MascotMood::running, b});
    for (MascotMood m :
         {MascotMood::panic, MascotMood::overheated, MascotMood::lowBattery, MascotMood::offline})
        loops.push_back({m, top});
    for (MascotMood m : {MascotMood::sitting, MascotMood::sleeping, MascotMood::celebrating})
        loops.push_back({m, 0});
    return loops;
}

std::string where(const MascotCharacter& c, Loop loop, int frame, int size, qreal scale) {
    return c.id + " " + std::string(MascotMoodNames[static_cast<int>(loop.mood)]) + " band " +
           std::to_string(loop.band) + " frame " + std::to_string(frame) + " at " +
           std::to_string(size) + "@" + std::to_string(static_cast<int>(scale));
}

constexpr std::uint64_t everyAccessory[] = {
    MascotAccessories::charging,    MascotAccessories::backpack, MascotAccessories::nightcap,
    MascotAccessories::sweat,       MascotAccessories::umbrella, MascotAccessories::halloweenHat,
    MascotAccessories::holidayHat,  MascotAccessories::gpuBadge, MascotAccessories::memoryBadge,
    MascotAccessories::networkBadge};

// One accessory of each kind at once: the most a mascot can wear (the hats exclude each other).
constexpr std::uint64_t fullKit = MascotAccessories::charging | MascotAccessories::backpack |
                                  MascotAccessories::nightcap | MascotAccessories::sweat |
                                  MascotAccessories::umbrella | MascotAccessories::gpuBadge;

class EveryMascot : public ::testing::TestWithParam<std::string> {
protected:
    void SetUp() override { guiApp(); }
    const MascotCharacter& character() const { return characterFor(GetParam()); }
};

TEST_P(EveryMascot, LoopsMoveFrameToFrameAndStayOnTheCanvas) {
    const auto& c = character();
    for (const auto& [size, scale] : {std::pair{22, 1.0}, {22, 2.0}, {16, 1.0}, {44, 1.0}}) {
        for (const Loop& loop : loopsOf(c)) {
            const int n = c.frameCount(loop.mood);
            std::vector<QImage> frames;
            for (int i = 0; i < n; ++i)
                frames.push_back(
                    drawMascotFrame(c, loop.mood, loop.band, i, {}, size, scale, false));
            // The first frame again, wearing everything at once.
            frames.push_back(
                drawMascotFrame(c, loop.mood, loop.band, 0, {fullKit}, size, scale, false));
            for (size_t i = 0; i < frames.size(); ++i) {
                const QImage& f = frames[i];
                const std::string at = where(c, loop, static_cast<int>(i), size, scale);
                ASSERT_EQ(f.width(), qRound(size * scale)) << at;
                const Ink ink = inkOf(f);
                const int area = f.width() * f.height();
                // A real figure, not a speck or a filled square, with a clear pixel all round:
                // nothing is cut off at the canvas edge, not even with every accessory on.
                EXPECT_GT(ink.pixels, area / 12) << at;
                EXPECT_LT(ink.pixels, area * 3 / 4) << at;
                EXPECT_TRUE(QRect(1, 1, f.width() - 2, f.height() - 2).contains(ink.bounds))
                    << at << " ink reaches the edge: " << ink.bounds.x() << "," << ink.bounds.y()
                    << " " << ink.bounds.width() << "x" << ink.bounds.height();
            }
            // Every frame differs from the next, the last from the first: no frame of a loop is
            // a wasted, frozen repeat.
            for (int i = 0; i < n && n > 1; ++i)
                EXPECT_NE(frames[static_cast<size_t>(i)], frames[static_cast<size_t>((i + 1) % n)])
                    << where(c, loop, i, size, scale) << " repeats the next frame";
        }
    }
}

TEST_P(EveryMascot, BandsChangeTheRunAndStillMoodsIgnoreThem) {
    const auto& c = character();
    const int top = static_cast<int>(c.loadBands.size());
    for (int b = 1; b <= top; ++b) {
        int same = 0;
        for (int i = 0; i < c.runFrames; ++i)
            same += drawMascotFrame(c, MascotMood::running, b, i, {}, 22, 2, false) ==
                    drawMascotFrame(c, MascotMood::running, b - 1, i, {}, 22, 2, false);
        EXPECT_EQ(same, 0) << c.id << " band " << b << " looks like band " << b - 1;
    }
    for (MascotMood m : {MascotMood::sitting, MascotMood::sleeping, MascotMood::celebrating})
        EXPECT_EQ(drawMascotFrame(c, m, top, 1, {}, 22, 2, false),
                  drawMascotFrame(c, m, 0, 1, {}, 22, 2, false))
            << c.id << " " << MascotMoodNames[static_cast<int>(m)];
}

TEST_P(EveryMascot, ABlinkClosesOnlyTheEyes) {
    const auto& c = character();
    for (MascotMood mood :
         {MascotMood::running, MascotMood::panic, MascotMood::sitting, MascotMood::celebrating}) {
        for (int size : {22, 44}) {
            const QImage open = drawMascotFrame(c, mood, 0, 1, {}, size, 2, false);
            const QImage shut = drawMascotFrame(c, mood, 0, 1, {}, size, 2, true);
            const QRect box = differenceBox(open, shut);
            const std::string at = c.id + " " +
                                   std::string(MascotMoodNames[static_cast<int>(mood)]) + " " +
                                   std::to_string(size);
            ASSERT_FALSE(box.isEmpty()) << at << ": the blink changes nothing";
            // Both eyes fit in a box well under a fifth of the frame's width and height.
            EXPECT_LT(box.width() * box.height(), open.width() * open.height() / 8) << at;
        }
    }
    // Asleep, the eyes are shut already: a blink is the same picture.
    EXPECT_EQ(drawMascotFrame(c, MascotMood::sleeping, 0, 2, {}, 22, 2, true),
              drawMascotFrame(c, MascotMood::sleeping, 0, 2, {}, 22, 2, false));
}

TEST_P(EveryMascot, EveryAccessoryShowsOnTheBody) {
    const auto& c = character();
    for (MascotMood mood : {MascotMood::running, MascotMood::sitting, MascotMood::sleeping,
                            MascotMood::celebrating}) {
        const QImage plain = drawMascotFrame(c, mood, 0, 1, {}, 22, 2, false);
        for (auto bit : everyAccessory) {
            const QImage dressed = drawMascotFrame(c, mood, 0, 1, {bit}, 22, 2, false);
            // A visible change of a few pixels at least, not a stray antialiased edge.
            const QRect box = differenceBox(plain, dressed);
            EXPECT_GE(box.width() * box.height(), 16)
                << c.id << " wears accessory " << bit << " invisibly when "
                << MascotMoodNames[static_cast<int>(mood)];
        }
    }
}

TEST_P(EveryMascot, OneFrameMatchesItsGoldenImage) {
    const auto& c = character();
    // A mid-stride frame of the top run band at the panel size: the most drawing code in one
    // picture, details included.
    const QImage frame = drawMascotFrame(c, MascotMood::running,
                                         static_cast<int>(c.loadBands.size()), 2, {}, 44, 1, false)
                             .convertToFormat(QImage::Format_ARGB32);
    const QString dir = QStringLiteral(TROTLET_SOURCE_DIR "/src/mascot/tests/golden");
    const QString path = dir + "/" + QString::fromStdString(c.id) + ".png";
    if (qEnvironmentVariableIsSet("TROTLET_UPDATE_GOLDEN")) {
        QDir().mkpath(dir);
        ASSERT_TRUE(frame.save(path)) << path.toStdString();
        GTEST_SKIP() << "wrote " << path.toStdString();
    }
    const QImage golden = QImage(path).convertToFormat(QImage::Format_ARGB32);
    ASSERT_FALSE(golden.isNull()) << "no golden image " << path.toStdString()
                                  << "; run with TROTLET_UPDATE_GOLDEN=1 to create it";
    ASSERT_EQ(golden.size(), frame.size());
    // Antialiasing may differ by a few levels between machines; a changed look moves many
    // pixels by far more.
    int off = 0, worst = 0;
    for (int y = 0; y < frame.height(); ++y)
        for (int x = 0; x < frame.width(); ++x) {
            const QRgb a = frame.pixel(x, y), b = golden.pixel(x, y);
            const int d =
                std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                          std::abs(qBlue(a) - qBlue(b)), std::abs(qAlpha(a) - qAlpha(b))});
            worst = std::max(worst, d);
            off += d > 24;
        }
    EXPECT_LE(off, frame.width() * frame.height() / 200)
        << c.id << " differs from its golden image in " << off << " pixels (worst " << worst
        << "); if the change is meant, refresh with TROTLET_UPDATE_GOLDEN=1";
}

std::vector<std::string> allIds() {
    std::vector<std::string> ids;
    for (const auto& c : allCharacters()) ids.push_back(c.id);
    return ids;
}

INSTANTIATE_TEST_SUITE_P(Catalog, EveryMascot, ::testing::ValuesIn(allIds()),
                         [](const auto& info) { return info.param; });

TEST(MascotArt, EveryCatalogMascotHasItsOwnDrawingAndSilhouette) {
    guiApp();
    for (const auto& item : shop::Catalog::all())
        EXPECT_NE(art::findMascotArt(item.id), nullptr) << item.id << " has no drawing";
    EXPECT_EQ(art::findMascotArt("nonsense"), nullptr);
    EXPECT_EQ(&art::mascotArt("nonsense"), &art::mascotArt("cat"));

    // Alpha masks of a sitting and a running frame: any two species must differ in shape, not
    // just in colour. Golden Mochi is the cat in gold, so it shares the cat's shape only.
    struct Shape {
        std::string id;
        QImage run, sit;
    };
    std::vector<Shape> shapes;
    for (const auto& c : allCharacters())
        shapes.push_back({c.id, drawMascotFrame(c, MascotMood::running, 0, 0, {}, 22, 2, false),
                          drawMascotFrame(c, MascotMood::sitting, 0, 0, {}, 22, 2, false)});
    auto apart = [](const QImage& a, const QImage& b) {
        int either = 0, one = 0;
        for (int y = 0; y < a.height(); ++y)
            for (int x = 0; x < a.width(); ++x) {
                const bool inA = qAlpha(a.pixel(x, y)) > inked, inB = qAlpha(b.pixel(x, y)) > inked;
                either += inA || inB;
                one += inA != inB;
            }
        return double(one) / std::max(either, 1);
    };
    for (size_t i = 0; i < shapes.size(); ++i)
        for (size_t j = 0; j < i; ++j) {
            const bool goldenPair = (shapes[i].id == "goldenCat" && shapes[j].id == "cat");
            if (goldenPair) {
                EXPECT_NE(shapes[i].run, shapes[j].run);
                continue;
            }
            EXPECT_GT(apart(shapes[i].run, shapes[j].run) + apart(shapes[i].sit, shapes[j].sit),
                      0.5)
                << shapes[i].id << " and " << shapes[j].id << " share a silhouette";
        }
}

TEST(MascotContactSheet, IsDeterministicAndFollowsTheBackdropAndScale) {
    guiApp();
    const QImage light = renderMascotContactSheet("fox", false, 1);
    EXPECT_EQ(light, renderMascotContactSheet("fox", false, 1));
    const QImage dark = renderMascotContactSheet("fox", true, 1);
    EXPECT_NE(light, dark);
    EXPECT_EQ(renderMascotContactSheet("fox", false, 2).size(), light.size() * 2);
    EXPECT_NE(renderMascotContactSheet("robot", false, 1), light);
}

}  // namespace
}  // namespace trotlet::mascot
