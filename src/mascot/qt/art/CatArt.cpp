#include "mascot/qt/art/CatArt.h"

#include <QtMath>

#include "mascot/qt/art/Mascots.h"

namespace trotlet::mascot::art {

Palette CatArt::palette() const {
    const QColor ginger(0xF2, 0xA6, 0x5A);
    return {ginger, ginger.darker(135), QColor(0xFB, 0xDD, 0xB8), QColor(0xF2, 0x9B, 0xA6),
            QColor(0x2B, 0x1D, 0x14)};
}

void CatArt::ears(Rig& rig, QPointF c, qreal r, qreal flatten) const {
    // Two pointed ears; `flatten` (0...1) lays them back for a frightened look.
    const qreal lift = r * (1.05 - 0.55 * flatten);
    const QPointF backTip = c + QPointF(-r * 0.55 - flatten * 2.2, -r - lift * 0.55);
    const QPointF frontTip = c + QPointF(r * 0.5 - flatten * 1.8, -r - lift * 0.6);
    QPainterPath path;
    path.addPolygon(
        QPolygonF{c + QPointF(-r * 0.85, -r * 0.35), backTip, c + QPointF(-r * 0.05, -r * 0.8)});
    path.closeSubpath();
    path.addPolygon(
        QPolygonF{c + QPointF(r * 0.05, -r * 0.85), frontTip, c + QPointF(r * 0.85, -r * 0.35)});
    path.closeSubpath();
    rig.shape(path, rig.colors().body);
    if (rig.detailed()) {
        QPainterPath inner;
        inner.addPolygon(QPolygonF{c + QPointF(r * 0.2, -r * 0.8), frontTip + QPointF(0, 1.1),
                                   c + QPointF(r * 0.65, -r * 0.5)});
        rig.patch(inner, rig.colors().accent);
    }
}

void CatArt::head(Rig& rig, QPointF c, qreal r, qreal flatten, bool tongue) const {
    ears(rig, c, r, flatten);
    rig.ellipse(c, r * 1.05, r * 0.92, rig.colors().body);
    if (rig.detailed()) {
        // A pale muzzle and a tabby's forehead stripes.
        rig.patchEllipse(c + QPointF(r * 0.62, r * 0.38), r * 0.42, r * 0.32, rig.colors().light);
        for (int i = 0; i < 3; ++i)
            rig.line(c + QPointF(-r * 0.35 + i * 0.9, -r * 0.88),
                     c + QPointF(-r * 0.3 + i * 0.8, -r * 0.55), 0.6, rig.colors().shade);
    }
    rig.eye(c + QPointF(r * 0.38, -r * 0.12), rig.pick(1.05, 0.95));
    const QPointF nose = c + QPointF(r * 0.98, r * 0.18);
    rig.nose(nose, rig.pick(0.85, 0.7), QColor(0xE8, 0x7A, 0x8A));
    if (rig.detailed()) {
        for (int i = -1; i <= 1; i += 2)
            rig.line(nose + QPointF(-0.8, 0.6), nose + QPointF(2.2, 0.6 + i * 0.9), 0.35,
                     rig.colors().outline);
    }
    if (tongue) rig.tongue(nose + QPointF(-0.7, 0.9), 1.2);
}

void CatArt::tail(Rig& rig, QPointF base, qreal sway, qreal lift) const {
    QPainterPath t(base);
    t.cubicTo(base + QPointF(-3.0, 0.5), base + QPointF(-4.2 + sway * 0.8, -3 - lift),
              base + QPointF(-2.8 + sway * 0.8, -7 - lift));
    rig.limb(t, rig.pick(2.4, 2.2), rig.colors().body);
}

Anchors CatArt::run(Rig& rig) const {
    const qreal phase = rig.phase();
    const int band = rig.band();
    const FourBeat gait = band == 0   ? FourBeat::trot
                          : band == 1 ? FourBeat::gallop
                                      : FourBeat::bound;
    const qreal bounce = Rig::bounce(gait, phase,
                                     band == 0   ? 1.0
                                     : band == 1 ? 1.6
                                                 : 2.2) *
                         rig.energy();
    const qreal stretch = band >= 2 ? 1.08 : band == 1 ? 1.04 : 1.0;
    const qreal bodyY = 19.2 + bounce + (rig.tired() ? 0.8 : 0);
    LegSwing s = Rig::swing(gait, phase,
                            (band == 0   ? 0.55
                             : band == 1 ? 0.72
                                         : 0.9) *
                                (rig.tired() ? 0.7 : 1.0));
    // Front legs reach forward and hind legs push back more than they tuck in, so the gathered
    // pose of the stride doesn't read as a cat squatting on folded legs.
    s.frontNear = 0.18 + s.frontNear * 0.8;
    s.frontFar = 0.18 + s.frontFar * 0.8;
    s.backNear = -0.18 + s.backNear * 0.8;
    s.backFar = -0.18 + s.backFar * 0.8;
    const qreal legLength = 7.6 - bounce * 0.3, legWidth = rig.pick(2.9, 2.6);
    const qreal hipY = bodyY + 1.2;
    const qreal front = 15 + 5.6 * stretch, rear = 15 - 5.2 * stretch;
    const Palette& c = rig.colors();

    rig.leg({front - 1.4, hipY}, s.frontFar, legLength + 0.4, legWidth, c.shade, -0.2);
    rig.leg({rear + 1.4, hipY}, s.backFar, legLength + 0.4, legWidth, c.shade, 0.3);
    tail(rig, {rear - 1.8, bodyY - 1.2}, 1.5 * rig.wave(0.16),
         rig.panicking() ? 2
         : rig.tired()   ? -4
                         : 0);
    rig.leg({front, hipY}, s.frontNear, legLength, legWidth, c.body, -0.2);
    rig.leg({rear, hipY}, s.backNear, legLength, legWidth, c.body, 0.3);

    QPainterPath body;
    body.addRoundedRect(QRectF(15 - 8 * stretch, bodyY - 4.3, 16 * stretch, 8.4), 4.2, 4.2);
    rig.shape(body, c.body);
    // A lighter belly keeps the body from reading as a flat blob at small sizes.
    rig.patch(
        [&] {
            QPainterPath belly;
            belly.addRoundedRect(QRectF(15 - 5 * stretch, bodyY + 0.8, 10 * stretch, 2.6), 1.3,
                                 1.3);
            return belly;
        }(),
        c.light);
    if (rig.detailed()) {
        for (int i = 0; i < 3; ++i) {
            const qreal x = 10 + i * 3.2 * stretch;
            rig.line(QPointF(x, bodyY - 4.2), QPointF(x + 0.8, bodyY - 1.8), 0.8, c.shade);
        }
    }

    Anchors a;
    a.head = QPointF(15 + 8.6 * stretch, bodyY - 5.2 + (rig.tired() ? 2.2 : 0) + bounce * 0.3);
    a.headRadius = 4.7;
    a.back = QPointF(14, bodyY - 4.3);
    head(rig, a.head, a.headRadius, rig.panicking() ? 1.0 : 0.0, rig.hot());
    return a;
}

Anchors CatArt::sit(Rig& rig) const {
    const Palette& c = rig.colors();
    const qreal sway = rig.wave(0.25) * 1.6;
    QPainterPath t({9.5, 26.5});
    t.cubicTo(QPointF(5.6, 27.8), QPointF(3.8, 26), QPointF(4.4 + sway * 0.5, 21 + sway * 0.3));
    rig.limb(t, rig.pick(2.4, 2.2), c.body);
    rig.ellipse({13.5, 22.3}, 6.3, 5.6, c.body);
    QPainterPath chest;
    chest.addRoundedRect(QRectF(15.5, 15, 7.2, 12.6), 3.6, 3.6);
    rig.shape(chest, c.body);
    QPainterPath legs({17.8, 20});
    legs.lineTo(17.8, 27.4);
    legs.moveTo(20.7, 20);
    legs.lineTo(20.7, 27.4);
    rig.limb(legs, rig.pick(2.6, 2.4), c.body);
    QPainterPath bib;
    bib.addRoundedRect(QRectF(17.2, 16.5, 4.2, 3.2), 1.5, 1.5);
    rig.patch(bib, c.light);
    Anchors a;
    a.head = QPointF(20.2, 11.4);
    a.headRadius = 4.9;
    a.back = QPointF(12, 17);
    head(rig, a.head, a.headRadius, 0, false);
    return a;
}

Anchors CatArt::sleep(Rig& rig) const {
    const Palette& c = rig.colors();
    const qreal breath = 1 + 0.05 * rig.wave();
    rig.ellipse({15, 28 - 5.4 * breath}, 10.2, 5.4 * breath, c.body);
    QPainterPath t({6.5, 25.5});
    t.cubicTo(QPointF(6, 29), QPointF(14, 29.2), QPointF(19.5, 27.6));
    rig.limb(t, 2.0, c.body.darker(112));
    Anchors a;
    a.head = QPointF(22.6, 23.4 - (breath - 1) * 5);
    a.headRadius = 4.4;
    a.back = QPointF(13, 28 - 10.8 * breath);
    a.tilt = 8;
    ears(rig, a.head, a.headRadius, 0.3);
    rig.ellipse(a.head, a.headRadius * 1.05, a.headRadius * 0.9, c.body);
    rig.eye(a.head + QPointF(1.6, -0.2), rig.pick(1.1, 1.0));
    rig.nose(a.head + QPointF(a.headRadius * 0.98, 0.9), 0.6, QColor(0xE8, 0x7A, 0x8A));
    return a;
}

Anchors CatArt::celebrate(Rig& rig) const {
    const Palette& c = rig.colors();
    const qreal hop = rig.arc() * 2.2;
    QPainter& p = rig.painter();
    p.save();
    // Standing tall on tiptoe, a little lower on the canvas so the ears clear the top mid-hop.
    p.translate(0, 1.2 - hop);
    QPainterPath t({10, 24});
    t.cubicTo(QPointF(6, 23), QPointF(4.5, 19), QPointF(6 + rig.wave() * 1.5, 14.5));
    rig.limb(t, rig.pick(2.4, 2.2), c.body);
    QPainterPath back({11.5, 24});
    back.lineTo(11, 27.6);
    back.moveTo(16.5, 24);
    back.lineTo(17, 27.6);
    rig.limb(back, rig.pick(2.8, 2.6), c.shade);
    QPainterPath body;
    body.addRoundedRect(QRectF(9.5, 14.5, 10.5, 11.5), 4.8, 4.8);
    rig.shape(body, c.body);
    rig.patchEllipse({15.5, 21}, 3, 3.6, c.light);
    // Paws up, waving.
    const qreal wave = rig.wave() * 0.25;
    QPainterPath arms({17.5, 17.5});
    arms.lineTo(22.5 + wave * 3, 13.5 - wave * 2);
    arms.moveTo(15.5, 17.5);
    arms.lineTo(19.5 - wave * 3, 12.5 + wave * 2);
    rig.limb(arms, rig.pick(2.6, 2.4), c.body);
    Anchors a;
    a.head = QPointF(16.8, 10.2);
    a.headRadius = 4.8;
    a.back = QPointF(12, 15);
    head(rig, a.head, a.headRadius, 0, false);
    rig.smile(a.head + QPointF(2.2, 1.8), a.head + QPointF(4.3, 1.6), 1.4);
    p.restore();
    a.head.ry() += 1.2 - hop;
    a.back.ry() += 1.2 - hop;
    return a;
}

const MascotArt& catArt() {
    static const CatArt art;
    return art;
}

}  // namespace trotlet::mascot::art
