// Writes every mascot's contact sheet on a light and a dark backdrop, magnified frames and a
// line-up of all thirteen, for judging the art by eye. A picture to look at, not a test.
//
//   build/release/src/mascot/mascot_preview DIR [ID]
#include <cstdio>
#include <vector>

#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include "mascot/qt/MascotContactSheet.h"
#include "mascot/qt/MascotRenderer.h"

using namespace trotlet::mascot;

namespace {

int failures = 0;

void saved(bool ok) { failures += !ok; }

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2 || argc > 3) {
        std::fprintf(stderr, "usage: mascot_preview DIR [ID]\n");
        return 2;
    }
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    int qtArgc = 1;
    QGuiApplication app(qtArgc, argv);
    const QString dir = QString::fromLocal8Bit(argv[1]);
    const QString only = argc == 3 ? QString::fromLocal8Bit(argv[2]) : QString();
    QDir().mkpath(dir);

    // The line-up: every mascot at 22 px @1x, magnified, in its slowest and fastest run, sitting
    // and asleep, on a light and a dark bar. Can each be told by its silhouette?
    const auto& all = allCharacters();
    QImage lineup(24 * 8, 24 * static_cast<int>(all.size()), QImage::Format_ARGB32);
    lineup.fill(QColor(0xF4, 0xF4, 0xF6));
    QPainter lp(&lineup);
    lp.fillRect(QRect(24 * 4, 0, 24 * 4, lineup.height()), QColor(0x2B, 0x2B, 0x2E));
    for (size_t r = 0; r < all.size(); ++r) {
        const auto& c = all[r];
        const int top = static_cast<int>(c.loadBands.size());
        const QImage cells[] = {drawMascotFrame(c, MascotMood::running, 0, 1, {}, 22, 1, false),
                                drawMascotFrame(c, MascotMood::running, top, 2, {}, 22, 1, false),
                                drawMascotFrame(c, MascotMood::sitting, 0, 0, {}, 22, 1, false),
                                drawMascotFrame(c, MascotMood::sleeping, 0, 0, {}, 22, 1, false)};
        for (int half = 0; half < 2; ++half)
            for (int i = 0; i < 4; ++i)
                lp.drawImage(QPoint(half * 96 + i * 24 + 1, static_cast<int>(r) * 24 + 1),
                             cells[i]);
    }
    lp.end();
    saved(lineup.scaled(lineup.size() * 4, Qt::IgnoreAspectRatio, Qt::FastTransformation)
              .save(QString("%1/lineup.png").arg(dir)));
    for (const auto& c : allCharacters()) {
        const QString id = QString::fromStdString(c.id);
        if (!only.isEmpty() && id != only) continue;
        for (bool dark : {false, true}) {
            const QString theme = dark ? "dark" : "light";
            for (qreal scale : {1.0, 2.0})
                saved(renderMascotContactSheet(c.id, dark, scale)
                          .save(QString("%1/mascot-%2-%3@%4x.png")
                                    .arg(dir, id, theme)
                                    .arg(int(scale))));
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
        saved(zoom.scaled(zoom.size() * 4, Qt::IgnoreAspectRatio, Qt::FastTransformation)
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
        saved(big.save(QString("%1/big-%2.png").arg(dir, id)));
    }
    if (failures)
        std::fprintf(stderr, "mascot_preview: %d images could not be written\n", failures);
    return failures ? 1 : 0;
}
