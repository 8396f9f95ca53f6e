#include <QTransform>
#include <QtMath>

#include "mascot/qt/art/Mascots.h"

namespace trotlet::mascot::art {
namespace {

// Wasabi the Axolotl: a pink salamander with a wide smiling head, three feathery gills fanned
// out on each side, stubby legs and a long finned tail. It walks, wiggling; faster, it lifts
// off and swims, legs tucked, tail sweeping, bubbles rising.
class AxolotlArt : public MascotArt {
public:
    Palette palette() const override {
        return {QColor(0xF6, 0xA9, 0xC2), QColor(0xD5, 0x7C, 0x9B), QColor(0xFF, 0xDE, 0xE8),
                QColor(0xE0, 0x40, 0x78), QColor(0x4A, 0x1A, 0x2E)};
    }

    Anchors run(Rig& rig) const override {
        Pose pose;
        const qreal phase = rig.phase();
        if (rig.band() >= 1 && !rig.tired()) {
            pose.lift = 2.6 + rig.wave(0.1) * 0.8;
            pose.tailSwing = 2.6;
            pose.legs = {-1.2, -1.1, -1.3, -1.2};
            pose.gillSweep = 1.0;
            pose.pitch = rig.wave(0.35) * 3;
            pose.bubbles = true;
        } else {
            pose.legs = Rig::swing(FourBeat::walk, phase, 0.75 * rig.energy());
            pose.bob = -qAbs(rig.wave(0, 1)) * 0.5 * rig.energy();
            pose.tailSwing = 1.4 * rig.energy();
            pose.gillSweep = rig.panicking() ? 1.0 : 0.35;
            pose.headDrop = rig.tired() ? 1.2 : 0;
        }
        return figure(rig, pose);
    }

    Anchors sit(Rig& rig) const override {
        Pose pose;
        pose.legs = {0.3, 0.3, -0.3, -0.3};
        pose.tailSwing = 0.8;
        pose.headRaise = 1.2;
        pose.gillSweep = 0.1;
        return figure(rig, pose);
    }

    Anchors sleep(Rig& rig) const override {
        Pose pose;
        pose.legs = {0.9, 0.9, -0.9, -0.9};
        pose.tailSwing = 0.3;
        pose.gillSweep = -0.6;  // drooping
        pose.headDrop = 0.8;
        pose.breath = rig.wave() * 0.2;
        Anchors a = figure(rig, pose);
        a.tilt = 6;
        return a;
    }

    Anchors celebrate(Rig& rig) const override {
        Pose pose;
        pose.lift = rig.arc() * 3.6;
        pose.pitch = -10 + rig.arc() * 4;
        pose.legs = {-2.2 + rig.wave(0, 2) * 0.3, -2.0, 0.2, 0.1};
        pose.tailSwing = 2.2;
        pose.gillSweep = 0.6;
        pose.bubbles = true;
        return figure(rig, pose);
    }

private:
    struct Pose {
        qreal lift = 0;
        qreal bob = 0;
        qreal pitch = 0;  // degrees, nose up negative
        LegSwing legs;
        qreal tailSwing = 1;
        qreal gillSweep = 0;  // 0 fanned, 1 streaming back, negative drooping
        qreal headDrop = 0;
        qreal headRaise = 0;
        qreal breath = 0;
        bool bubbles = false;
    };

    void gills(Rig& rig, QPointF root, qreal sweep) const {
        const Palette& c = rig.colors();
        // Degrees from upright, back is negative. The menu bar spreads them wider and edges them
        // thinly, or the three stalks merge into one dark tuft.
        const qreal fan[] = {rig.pick(-4.0, -18.0), -52, rig.pick(-100.0, -88.0)};
        for (int k = 0; k < 3; ++k) {
            const qreal angle = qDegreesToRadians(fan[k] - sweep * 30 + rig.wave(k * 0.2) * 7);
            const QPointF dir(qSin(angle), -qCos(angle));
            const QPointF base = root + QPointF(-k * 0.7, k * 0.7);
            const QPointF tip = base + dir * rig.pick(4.8, 4.4);
            QPainterPath stalk(base);
            stalk.quadTo(base + dir * 2.4 + QPointF(dir.y(), -dir.x()) * 0.5, tip);
            rig.limb(stalk, rig.pick(1.8, 1.5), c.accent, rig.pick(0.55, 1.0));
            if (rig.detailed()) {
                // Feathery fronds along the stalk.
                for (int f = 1; f <= 3; ++f) {
                    const QPointF at = base + dir * (1.1 * f);
                    const QPointF side(-dir.y(), dir.x());
                    rig.line(at, at + side * 0.9 + dir * 0.5, 0.55, c.accent.lighter(125));
                    rig.line(at, at - side * 0.9 + dir * 0.5, 0.55, c.accent.lighter(125));
                }
            }
        }
    }

    Anchors figure(Rig& rig, const Pose& pose) const {
        const Palette& c = rig.colors();
        QTransform t;
        t.translate(15.0, 24.0 - pose.lift + pose.bob);
        t.rotate(pose.pitch);
        t.translate(-15.0, -24.0);
        QPainter& p = rig.painter();
        p.save();
        p.setTransform(t, true);

        const qreal legLen = 3.8, w = rig.pick(2.1, 1.8);
        rig.leg({19.0, 23.6}, pose.legs.frontFar, legLen, w, c.shade, 0.5);
        rig.leg({11.0, 23.4}, pose.legs.backFar, legLen, w, c.shade, 0.5);

        // The tail: a flat paddle that sweeps up and down along its length.
        const qreal s1 = rig.wave(0.15) * pose.tailSwing * 0.5;
        const qreal s2 = rig.wave(0.35) * pose.tailSwing;
        QPainterPath tail({9.6, 19.6});
        tail.cubicTo(QPointF(6.6, 19.4 + s1), QPointF(3.6, 19.8 + s2), QPointF(1.2, 21.0 + s2));
        tail.cubicTo(QPointF(3.8, 22.8 + s2), QPointF(6.6, 24.0 + s1), QPointF(9.6, 24.4));
        tail.closeSubpath();
        rig.shape(tail, c.body);
        if (rig.detailed()) {
            QPainterPath fin({8.6, 19.8});
            fin.cubicTo(QPointF(6.4, 19.9 + s1), QPointF(3.8, 20.4 + s2), QPointF(2.0, 21.1 + s2));
            rig.line(fin, 0.9, c.light);
        }
        QPainterPath body;
        body.addEllipse(QPointF(14.6, 22.0 - pose.breath), 7.2, 3.5 + pose.breath);
        rig.shape(body, c.body);
        rig.patchEllipse({15.6, 24.0}, 5.0, 1.2, c.light);
        if (rig.detailed()) {
            for (qreal x : {11.0, 14.0, 17.0}) rig.patchEllipse({x, 20.0}, 0.5, 0.45, c.shade);
        }
        rig.leg({19.6, 24.4}, pose.legs.frontNear, legLen, w, c.body, 0.5);
        rig.leg({10.4, 24.2}, pose.legs.backNear, legLen, w, c.body, 0.5);

        const QPointF head(22.6, 20.0 + pose.headDrop - pose.headRaise);
        gills(rig, head + QPointF(-2.0, -2.2), pose.gillSweep);
        QPainterPath skull;
        skull.addEllipse(head, 4.9, 3.7);
        rig.shape(skull, c.body);
        rig.eye(head + QPointF(2.0, -1.0), rig.pick(0.95, 0.8));
        // The wide, easy smile.
        if (rig.eyes() == Eyes::wide) {
            rig.patchEllipse(head + QPointF(3.3, 1.6), 0.8, 0.9, c.outline);
        } else {
            rig.smile(head + QPointF(1.6, 1.4), head + QPointF(4.4, 0.9), 0.9);
        }
        rig.blush(head + QPointF(1.0, 1.2), 0.9);
        if (pose.bubbles) {
            for (int i = 0; i < 2; ++i) {
                const qreal rise = std::fmod(rig.phase() + i * 0.5, 1.0);
                const QPointF b = head + QPointF(5.4 + rise * 1.0, -1.8 - rise * 6.0);
                p.setPen(QPen(QColor(0x4F, 0x9D, 0xE8), rig.pick(0.9, 0.6)));
                p.setBrush(QColor(0xDF, 0xF0, 0xFF, 160));
                p.drawEllipse(b, 0.8 + i * 0.3, 0.8 + i * 0.3);
            }
        }
        p.restore();

        Anchors a;
        a.head = t.map(head);
        a.headRadius = 4.2;
        a.crown = t.map(head + QPointF(-0.2, -3.3));
        a.tilt = pose.pitch;
        a.hatScale = 0.85;
        a.back = t.map(QPointF(13.6, 19.0));
        a.brow = t.map(head + QPointF(-4.4, -2.6));
        return a;
    }
};

}  // namespace

const MascotArt& axolotlArt() {
    static const AxolotlArt art;
    return art;
}

}  // namespace trotlet::mascot::art
