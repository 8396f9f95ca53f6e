#include <QtMath>

#include "mascot/qt/art/Mascots.h"

namespace trotlet::mascot::art {
namespace {

// Kibo the Shiba: a stocky fox-red dog with a cream mask, upright triangle ears and a tail curled
// into a ring over its back. It trots, then breaks into a gallop with its tongue out.
class ShibaArt : public MascotArt {
public:
    Palette palette() const override {
        return {QColor(0xE0, 0x7B, 0x39), QColor(0xB0, 0x58, 0x24), QColor(0xFF, 0xF1, 0xDE),
                QColor(0xF6, 0xC4, 0x9E), QColor(0x2E, 0x1A, 0x0E)};
    }

    Anchors run(Rig& rig) const override {
        const Palette& c = rig.colors();
        const bool gallop = rig.band() >= 1;
        const FourBeat gait = gallop ? FourBeat::gallop : FourBeat::trot;
        const qreal phase = rig.phase();
        const qreal bounce = Rig::bounce(gait, phase, gallop ? 1.8 : 1.0) * rig.energy();
        const qreal stretch = gallop ? 1.08 : 1.0;
        const qreal bodyY = 19.4 + bounce + (rig.tired() ? 0.8 : 0);
        LegSwing s = Rig::swing(gait, phase, (gallop ? 0.8 : 0.55) * (rig.tired() ? 0.7 : 1));
        s.frontNear = 0.15 + s.frontNear * 0.85;
        s.frontFar = 0.15 + s.frontFar * 0.85;
        s.backNear = -0.15 + s.backNear * 0.85;
        s.backFar = -0.15 + s.backFar * 0.85;
        const qreal left = 7.2, length = 14.6 * stretch;
        const qreal front = left + length - 3.2, rear = left + 3.4;
        const qreal hipY = bodyY + 1.3, legLength = 7.4 - bounce * 0.3;
        const qreal legWidth = rig.pick(3.0, 2.7);

        rig.leg({front - 1.4, hipY}, s.frontFar, legLength + 0.3, legWidth, c.shade, -0.15);
        rig.leg({rear + 1.4, hipY}, s.backFar, legLength + 0.3, legWidth, c.shade, 0.35);
        rig.leg({front, hipY}, s.frontNear, legLength, legWidth, c.body, -0.15);
        rig.leg({rear, hipY}, s.backNear, legLength, legWidth, c.body, 0.35);
        QPainterPath body;
        body.addRoundedRect(QRectF(left, bodyY - 4.1, length, 8.4), 4.1, 4.1);
        rig.shape(body, c.body);
        QPainterPath belly;
        belly.addRoundedRect(QRectF(left + 4, bodyY + 1.2, length - 6, 2.6), 1.3, 1.3);
        rig.patch(belly, c.light);
        tail(rig, {rear + 0.4, bodyY - 4.8}, rig.wave(0.2) * (gallop ? 0.4 : 0.7));

        Anchors a;
        a.head = QPointF(left + length + 0.6, bodyY - 5.4 + (rig.tired() ? 2.0 : 0) + bounce * 0.3);
        a.headRadius = 4.3;
        a.back = QPointF(left + length * 0.5, bodyY - 4.1);
        const bool tongue = rig.hot() || (gallop && !rig.tired() && !rig.offline());
        head(rig, a.head, rig.panicking() ? 1.0 : gallop ? 0.35 : 0.0, tongue);
        fillHatAnchors(a);
        return a;
    }

    Anchors sit(Rig& rig) const override {
        const Palette& c = rig.colors();
        rig.ellipse({12.6, 22.6}, 6.0, 5.4, c.body);
        QPainterPath chest;
        chest.addRoundedRect(QRectF(15.6, 14.6, 7.0, 13.0), 3.5, 3.5);
        rig.shape(chest, c.body);
        QPainterPath legs({18.0, 20.0});
        legs.lineTo(18.0, 27.3);
        legs.moveTo(20.8, 20.0);
        legs.lineTo(20.8, 27.3);
        rig.limb(legs, rig.pick(2.7, 2.4), c.body);
        rig.patch(
            [] {
                QPainterPath bib;
                bib.addRoundedRect(QRectF(17.2, 16.0, 4.6, 4.8), 2.0, 2.0);
                return bib;
            }(),
            c.light);
        // A slow happy wag of the curl.
        tail(rig, {11.0, 17.4}, rig.wave() * 0.7);
        Anchors a;
        a.head = QPointF(20.4, 11.6);
        a.headRadius = 4.4;
        a.back = QPointF(11.5, 18.0);
        head(rig, a.head, 0, false);
        fillHatAnchors(a);
        return a;
    }

    Anchors sleep(Rig& rig) const override {
        const Palette& c = rig.colors();
        const qreal breath = 1 + 0.05 * rig.wave();
        rig.ellipse({14.6, groundY - 5.0 * breath}, 9.8, 5.0 * breath, c.body);
        rig.patchEllipse({15.5, groundY - 1.6}, 6.0, 1.2, c.light);
        tail(rig, {9.6, groundY - 8.6 * breath}, 0);
        Anchors a;
        a.head = QPointF(22.2, 23.4 - (breath - 1) * 4);
        a.headRadius = 4.1;
        a.back = QPointF(13.0, groundY - 10.0 * breath);
        head(rig, a.head, 0.55, false);
        fillHatAnchors(a);
        a.tilt = 10;
        return a;
    }

    Anchors celebrate(Rig& rig) const override {
        const Palette& c = rig.colors();
        const qreal hop = rig.arc() * 2.2;
        QPainter& p = rig.painter();
        p.save();
        p.translate(0, 1.2 - hop);
        QPainterPath hind({11.6, 24.0});
        hind.lineTo(11.0, 27.6);
        hind.moveTo(16.4, 24.0);
        hind.lineTo(17.0, 27.6);
        rig.limb(hind, rig.pick(2.9, 2.6), c.shade);
        QPainterPath body;
        body.addRoundedRect(QRectF(9.4, 14.6, 10.8, 11.4), 5.0, 5.0);
        rig.shape(body, c.body);
        rig.patchEllipse({15.6, 21.0}, 3.0, 3.6, c.light);
        const qreal wave = rig.wave() * 0.3;
        QPainterPath arms({17.6, 17.6});
        arms.lineTo(22.4 + wave * 3, 14.0 - wave * 2);
        arms.moveTo(15.4, 17.6);
        arms.lineTo(19.2 - wave * 3, 12.8 + wave * 2);
        rig.limb(arms, rig.pick(2.7, 2.4), c.body);
        tail(rig, {10.6, 17.0}, rig.wave(0, 2) * 0.8);
        Anchors a;
        a.head = QPointF(17.6, 10.0);
        a.headRadius = 4.3;
        a.back = QPointF(12.0, 15.0);
        head(rig, a.head, 0, true);
        p.restore();
        a.head.ry() += 1.2 - hop;
        a.back.ry() += 1.2 - hop;
        fillHatAnchors(a);
        return a;
    }

private:
    static void fillHatAnchors(Anchors& a) {
        a.crown = a.head + QPointF(-0.6, -a.headRadius * 0.85);
        a.hatScale = 0.95;
        a.brow = a.head + QPointF(-a.headRadius * 1.25, -a.headRadius * 0.2);
    }

    // The curl: a thick ring of tail lying on the rump, its cream underside showing as a swirl.
    // A drawn hole would close up at 22 px, so the curl is a disc with a spiral in it.
    void tail(Rig& rig, QPointF centre, qreal wag) const {
        const Palette& c = rig.colors();
        const QPointF o = centre + QPointF(wag * 0.5, 0);
        QPainterPath root(o + QPointF(1.6, 2.6));
        root.quadTo(o + QPointF(-2.6, 2.8), o + QPointF(-2.4, 0.4));
        rig.limb(root, rig.pick(2.6, 2.3), c.body);
        rig.ellipse(o, 3.3, 3.0, c.body);
        if (rig.detailed()) rig.patchEllipse(o + QPointF(-0.4, 0.9), 2.0, 1.3, c.light);
        QPainterPath swirl(o + QPointF(0.4, 0.3));
        swirl.quadTo(o + QPointF(1.4, -0.9), o + QPointF(0.2, -1.5));
        swirl.quadTo(o + QPointF(-1.8, -1.4), o + QPointF(-1.8, 0.4));
        swirl.quadTo(o + QPointF(-1.3, 2.2), o + QPointF(1.0, 2.0));
        rig.line(swirl, rig.pick(0.9, 0.7), c.outline);
    }

    // A dog's head facing right: ears laid back by `earsBack` (0...1), a cream wedge of a muzzle.
    void head(Rig& rig, QPointF h, qreal earsBack, bool tongue) const {
        const Palette& c = rig.colors();
        const qreal eb = earsBack;
        const QPointF backTip = h + QPointF(-2.7 - eb * 2.2, -7.0 + eb * 2.6);
        const QPointF frontTip = h + QPointF(0.9 - eb * 2.4, -7.4 + eb * 2.8);
        QPainterPath ears;
        ears.addPolygon(QPolygonF{h + QPointF(-4.0, -1.6), backTip, h + QPointF(-1.0, -3.8)});
        ears.closeSubpath();
        ears.addPolygon(QPolygonF{h + QPointF(-0.6, -4.0), frontTip, h + QPointF(2.6, -2.4)});
        ears.closeSubpath();
        rig.shape(ears, c.body);
        if (rig.detailed()) {
            QPainterPath inner;
            inner.addPolygon(QPolygonF{h + QPointF(0.1, -3.6), frontTip + QPointF(0.15, 1.5),
                                       h + QPointF(1.9, -2.6)});
            rig.patch(inner, c.accent);
        }
        rig.ellipse(h, 4.3, 3.9, c.body);
        QPainterPath muzzle(h + QPointF(1.0, -0.5));
        muzzle.lineTo(h + QPointF(5.0, 0.4));
        muzzle.quadTo(h + QPointF(6.4, 0.9), h + QPointF(5.8, 2.2));
        muzzle.lineTo(h + QPointF(1.8, 3.3));
        muzzle.quadTo(h + QPointF(0.4, 2.4), h + QPointF(1.0, -0.5));
        rig.shape(muzzle, c.light);
        // The cream cheek that makes a shiba's face.
        rig.patchEllipse(h + QPointF(0.9, 1.7), 2.2, 1.5, c.light);
        if (rig.detailed()) rig.patchEllipse(h + QPointF(0.3, -2.5), 0.6, 0.45, c.light);
        rig.eye(h + QPointF(1.3, -0.9), rig.pick(1.0, 0.85));
        rig.nose(h + QPointF(5.9, 0.9), rig.pick(0.95, 0.75), c.outline);
        if (tongue) rig.tongue(h + QPointF(4.0, 2.5), 1.15);
    }
};

}  // namespace

const MascotArt& shibaArt() {
    static const ShibaArt art;
    return art;
}

}  // namespace trotlet::mascot::art
