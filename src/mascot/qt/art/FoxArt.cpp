#include <QTransform>
#include <QtMath>

#include "mascot/qt/art/Mascots.h"

namespace trotlet::mascot::art {
namespace {

// Ember the Fox: lean, long-legged, with tall dark-tipped ears, a narrow snout and a brush of a
// tail nearly as long as its body, white at the tip. A light trot, then a long-striding gallop,
// then flat-out bounds with all four feet off the ground.
class FoxArt : public MascotArt {
public:
    Palette palette() const override {
        return {QColor(0xE8, 0x65, 0x2B), QColor(0xB4, 0x45, 0x18), QColor(0xFB, 0xF3, 0xEA),
                QColor(0x3A, 0x24, 0x18), QColor(0x2A, 0x12, 0x08)};
    }

    Anchors run(Rig& rig) const override {
        const int band = rig.band();
        const FourBeat gait = band == 0   ? FourBeat::trot
                              : band == 1 ? FourBeat::gallop
                                          : FourBeat::bound;
        const qreal phase = rig.phase();
        Pose pose;
        pose.bounce = Rig::bounce(gait, phase,
                                  band == 0   ? 1.0
                                  : band == 1 ? 1.8
                                              : 2.6) *
                      rig.energy();
        pose.stretch = band == 0 ? 1.0 : band == 1 ? 1.06 : 1.12;
        pose.legs = Rig::swing(gait, phase,
                               (band == 0   ? 0.6
                                : band == 1 ? 0.85
                                            : 1.0) *
                                   rig.energy());
        pose.tailLift = rig.tired() ? -2.5 : band == 2 ? 0.5 : 1.2 * rig.wave(0.3) * 0.6;
        pose.earsBack = rig.panicking() ? 1.0 : band == 2 ? 0.4 : 0;
        pose.headDrop = rig.tired() ? 2.0 : 0;
        pose.tongue = rig.hot();
        return figure(rig, pose);
    }

    Anchors sit(Rig& rig) const override {
        const Palette& c = rig.colors();
        rig.ellipse({12.8, 22.8}, 5.6, 5.0, c.body);
        QPainterPath chest;
        chest.addRoundedRect(QRectF(15.2, 14.4, 6.4, 13.2), 3.2, 3.2);
        rig.shape(chest, c.body);
        QPainterPath legs({17.4, 20.0});
        legs.lineTo(17.4, 27.3);
        legs.moveTo(19.9, 20.0);
        legs.lineTo(19.9, 27.3);
        rig.limb(legs, rig.pick(2.4, 2.1), c.body);
        if (rig.detailed()) {
            rig.line(QPointF(17.4, 25.0), QPointF(17.4, 27.3), 2.1, c.accent);
            rig.line(QPointF(19.9, 25.0), QPointF(19.9, 27.3), 2.1, c.accent);
        }
        rig.patchEllipse({18.4, 17.2}, 2.6, 2.8, c.light);
        // The brush wraps round the front paws, its tip just flicking.
        QPainterPath t({10.0, 25.2});
        t.cubicTo(QPointF(7.0, 25.6), QPointF(7.2, 28.8), QPointF(13.0, 28.4));
        t.cubicTo(QPointF(17.0, 28.2), QPointF(21.0, 27.8), QPointF(23.6 + rig.wave() * 0.5, 26.4));
        rig.limb(t, rig.pick(3.6, 3.2), c.body);
        rig.ellipse(QPointF(23.4 + rig.wave() * 0.5, 26.6), 1.8, 1.5, c.light);
        Anchors a;
        a.head = QPointF(19.4, 11.4);
        a.headRadius = 3.8;
        a.back = QPointF(11.6, 18.4);
        head(rig, a.head, 0, false);
        hatAnchors(a);
        return a;
    }

    Anchors sleep(Rig& rig) const override {
        const Palette& c = rig.colors();
        const qreal breath = 1 + 0.05 * rig.wave();
        rig.ellipse({14.4, groundY - 5.0 * breath}, 9.2, 5.0 * breath, c.body);
        Anchors a;
        a.head = QPointF(21.2, 23.6 - (breath - 1) * 4);
        a.headRadius = 3.6;
        a.back = QPointF(12.5, groundY - 10 * breath);
        head(rig, a.head, 0.5, false);
        // The tail curls round over the nose like a scarf.
        QPainterPath t({7.0, 24.0});
        t.cubicTo(QPointF(6.0, 29.0), QPointF(18.0, 29.4), QPointF(25.6, 25.8));
        rig.limb(t, rig.pick(3.8, 3.4), c.body);
        rig.ellipse({25.4, 25.6}, 2.0, 1.6, c.light);
        hatAnchors(a);
        a.tilt = 10;
        return a;
    }

    Anchors celebrate(Rig& rig) const override {
        // The mousing pounce: a high arc, nose up on the way up and down on the way down.
        const qreal phase = rig.phase();
        const qreal hop = rig.arc() * 3.2;
        const qreal angle = -12 + 24 * phase;
        QTransform t;
        t.translate(16.5, 20 - hop);
        t.rotate(angle);
        t.translate(-16.5, -20);
        QPainter& p = rig.painter();
        p.save();
        p.setTransform(t, true);
        Pose pose;
        pose.bodyY = 18.6;
        pose.stretch = 1.08;
        pose.legs = {0.7, 0.6, -0.7, -0.6};
        pose.tailLift = 1.0;
        pose.tongue = false;
        const Anchors a = figure(rig, pose);
        p.restore();
        return a.mapped(t, angle);
    }

private:
    struct Pose {
        qreal bodyY = 18.6;
        qreal bounce = 0;
        qreal stretch = 1;
        LegSwing legs;
        qreal tailLift = 0;
        qreal earsBack = 0;
        qreal headDrop = 0;
        bool tongue = false;
    };

    static void hatAnchors(Anchors& a) {
        a.crown = a.head + QPointF(-0.8, -a.headRadius * 0.85);
        a.hatScale = 0.9;
        a.brow = a.head + QPointF(-a.headRadius * 1.3, -a.headRadius * 0.3);
    }

    Anchors figure(Rig& rig, const Pose& pose) const {
        const Palette& c = rig.colors();
        const qreal bodyY = pose.bodyY + pose.bounce + (rig.tired() ? 0.8 : 0);
        const qreal left = 8.4, length = 13.2 * pose.stretch;
        const qreal front = left + length - 2.6, rear = left + 2.8;
        const qreal hipY = bodyY + 1.2, legLength = 8.4 - pose.bounce * 0.25;
        const qreal w = rig.pick(2.5, 2.2);
        LegSwing s = pose.legs;
        s.frontNear = 0.12 + s.frontNear * 0.85;
        s.frontFar = 0.12 + s.frontFar * 0.85;
        s.backNear = -0.12 + s.backNear * 0.85;
        s.backFar = -0.12 + s.backFar * 0.85;
        leg(rig, {front - 1.3, hipY}, s.frontFar, legLength + 0.3, w, c.shade, -0.25);
        leg(rig, {rear + 1.3, hipY}, s.backFar, legLength + 0.3, w, c.shade, 0.45);
        brush(rig, {left + 1.0, bodyY - 1.2}, pose.tailLift);
        leg(rig, {front, hipY}, s.frontNear, legLength, w, c.body, -0.25);
        leg(rig, {rear, hipY}, s.backNear, legLength, w, c.body, 0.45);
        QPainterPath body;
        body.addRoundedRect(QRectF(left, bodyY - 3.5, length, 7.0), 3.5, 3.5);
        rig.shape(body, c.body);
        QPainterPath chest;
        chest.addEllipse(QPointF(front + 0.6, bodyY + 1.0), 2.8, 2.2);
        rig.patch(chest, c.light);
        Anchors a;
        a.head = QPointF(left + length + 1.3, bodyY - 4.4 + pose.headDrop + pose.bounce * 0.25);
        a.headRadius = 3.7;
        a.back = QPointF(left + length * 0.45, bodyY - 3.5);
        head(rig, a.head, pose.earsBack, pose.tongue);
        hatAnchors(a);
        return a;
    }

    // Fox legs are dark from the knee down; at the menu-bar size that detail would only muddy
    // the silhouette, so they stay in the coat's colour there.
    void leg(Rig& rig, QPointF hip, qreal angle, qreal length, qreal width, const QColor& fill,
             qreal bend) const {
        const QPointF foot = rig.leg(hip, angle, length, width, fill, bend);
        if (rig.detailed()) {
            const QPointF knee = hip + QPointF(qSin(angle), qCos(angle)) * (length * 0.55);
            rig.line(knee + (foot - knee) * 0.35, foot, width, rig.colors().accent);
        }
    }

    // The brush: a long teardrop streaming back from the rump, white at the tip.
    void brush(Rig& rig, QPointF base, qreal lift) const {
        const Palette& c = rig.colors();
        const QPointF tip = base + QPointF(-7.6, -2.6 - lift);
        QPainterPath t(base + QPointF(0.6, -2.4));
        t.cubicTo(base + QPointF(-3.0, -5.0 - lift * 0.6), tip + QPointF(1.2, -2.6), tip);
        t.cubicTo(tip + QPointF(1.2, 2.6), base + QPointF(-3.4, 3.0 - lift * 0.3),
                  base + QPointF(0.8, 2.0));
        t.closeSubpath();
        rig.shape(t, c.body);
        QPainterPath end(tip);
        end.cubicTo(tip + QPointF(0.6, -1.8), tip + QPointF(3.0, -1.9), tip + QPointF(3.2, -0.6));
        end.cubicTo(tip + QPointF(3.0, 0.8), tip + QPointF(0.8, 1.6), tip);
        rig.shape(end, c.light);
    }

    void head(Rig& rig, QPointF h, qreal earsBack, bool tongue) const {
        const Palette& c = rig.colors();
        const qreal eb = earsBack;
        const QPointF backTip = h + QPointF(-2.6 - eb * 2.4, -6.9 + eb * 2.6);
        const QPointF frontTip = h + QPointF(0.7 - eb * 2.6, -7.4 + eb * 2.8);
        QPainterPath ears;
        ears.addPolygon(QPolygonF{h + QPointF(-3.6, -1.4), backTip, h + QPointF(-0.9, -3.3)});
        ears.closeSubpath();
        ears.addPolygon(QPolygonF{h + QPointF(-0.5, -3.5), frontTip, h + QPointF(2.3, -2.3)});
        ears.closeSubpath();
        rig.shape(ears, c.body);
        if (rig.detailed()) {
            QPainterPath tips;
            tips.addPolygon(QPolygonF{backTip, backTip + (h + QPointF(-3.6, -1.4) - backTip) * 0.35,
                                      backTip + (h + QPointF(-0.9, -3.3) - backTip) * 0.35});
            tips.addPolygon(QPolygonF{frontTip,
                                      frontTip + (h + QPointF(-0.5, -3.5) - frontTip) * 0.35,
                                      frontTip + (h + QPointF(2.3, -2.3) - frontTip) * 0.35});
            rig.patch(tips, c.accent);
        }
        rig.ellipse(h, 3.8, 3.4, c.body);
        QPainterPath snout(h + QPointF(0.6, -1.3));
        snout.lineTo(h + QPointF(5.9, 0.7));
        snout.quadTo(h + QPointF(6.6, 1.2), h + QPointF(5.8, 1.8));
        snout.lineTo(h + QPointF(0.8, 3.0));
        snout.closeSubpath();
        rig.shape(snout, c.body);
        // The white cheek and jaw that runs back from the snout.
        QPainterPath cheek(h + QPointF(-2.4, 1.0));
        cheek.quadTo(h + QPointF(2.0, 0.8), h + QPointF(5.6, 1.6));
        cheek.lineTo(h + QPointF(0.8, 3.0));
        cheek.quadTo(h + QPointF(-1.6, 3.2), h + QPointF(-2.4, 1.0));
        rig.patch(cheek, c.light);
        rig.eye(h + QPointF(1.5, -0.7), rig.pick(0.95, 0.8));
        rig.nose(h + QPointF(6.0, 1.1), rig.pick(0.85, 0.65), c.outline);
        if (tongue) rig.tongue(h + QPointF(4.4, 2.4), 1.0);
    }
};

}  // namespace

const MascotArt& foxArt() {
    static const FoxArt art;
    return art;
}

}  // namespace trotlet::mascot::art
