#include <QLinearGradient>

#include "mascot/qt/art/CatArt.h"
#include "mascot/qt/art/Mascots.h"

namespace trotlet::mascot::art {
namespace {

// Golden Mochi: the starter cat cast in gold, with a gleam that sweeps across it once per loop
// and a glint by its ear, so even a sitting or sleeping golden cat shimmers.
class GoldenCatArt : public CatArt {
public:
    Palette palette() const override {
        const QColor gold(0xE9, 0xB9, 0x49);
        return {gold, QColor(0xB8, 0x86, 0x22), QColor(0xFF, 0xEB, 0xA8), QColor(0xF7, 0xA8, 0x6E),
                QColor(0x3D, 0x27, 0x06)};
    }

    void finish(Rig& rig, const Anchors& a) const override {
        QPainter& p = rig.painter();
        p.save();
        // Only over what is already drawn: the gleam lights the cat, never the bar behind it.
        p.setCompositionMode(QPainter::CompositionMode_SourceAtop);
        const qreal x = -6 + 44 * rig.phase();
        const qreal half = rig.pick(3.2, 2.6);
        QLinearGradient shine(QPointF(x - half, 0), QPointF(x + half, -half * 0.6));
        shine.setColorAt(0, QColor(255, 255, 255, 0));
        shine.setColorAt(0.5, QColor(255, 255, 240, 190));
        shine.setColorAt(1, QColor(255, 255, 255, 0));
        p.setPen(Qt::NoPen);
        p.setBrush(shine);
        p.drawRect(QRectF(0, 0, gridSize, gridSize));
        p.restore();
        const qreal twinkle = 0.5 + 0.5 * rig.wave(0.25);
        rig.star(a.head + QPointF(-a.headRadius * 1.25, -a.headRadius * 1.15),
                 rig.pick(1.0, 0.7) + twinkle * rig.pick(1.0, 1.1), QColor(0xFF, 0xF6, 0xC8));
    }
};

}  // namespace

const MascotArt& goldenCatArt() {
    static const GoldenCatArt art;
    return art;
}

}  // namespace trotlet::mascot::art
