#include <QTransform>
#include <QtMath>

#include "mascot/qt/art/Mascots.h"

namespace trotlet::mascot::art {
namespace {

// Nugget the Hamster: a golden ball of fur with round ears, stuffed cheeks and tiny legs that
// blur. It scurries, then dashes leaning forward, and at full load runs in its wheel.
class HamsterArt : public MascotArt {
public:
    Palette palette() const override {
        return {QColor(0xE0, 0xA5, 0x62), QColor(0xB5, 0x7A, 0x3E), QColor(0xFF, 0xF3, 0xDC),
                QColor(0xF4, 0x9C, 0xB0), QColor(0x3A, 0x24, 0x12)};
    }

    Anchors run(Rig& rig) const override {
        const int band = rig.band();
        const qreal phase = rig.phase();
        Pose pose;
        // Many tiny steps: two bobs per stride, legs swinging wide on short stubs.
        pose.bob = -qAbs(rig.wave()) * (band == 0 ? 0.9 : 1.2) * rig.energy();
        pose.legs = Rig::swing(FourBeat::trot, phase, (band == 0 ? 0.9 : 1.2) * rig.energy());
        pose.lean = band == 0 ? 0 : 8;
        if (rig.tired()) pose.lean = -4;
        if (band >= 2 && !rig.tired()) {
            QTransform t;
            wheel(rig);
            // Inside the wheel, a little smaller, feet on the rim.
            t.translate(16.0, 27.0);
            t.scale(0.78, 0.78);
            t.translate(-16.0, -28.0);
            QPainter& p = rig.painter();
            p.save();
            p.setTransform(t, true);
            pose.lean = 12;
            Anchors a = figure(rig, pose);
            p.restore();
            a.head = t.map(a.head);
            a.headRadius *= 0.78;
            a.back = t.map(a.back);
            a.crown = t.map(*a.crown);
            a.brow = t.map(*a.brow);
            a.hatScale *= 0.8;
            return a;
        }
        return figure(rig, pose);
    }

    Anchors sit(Rig& rig) const override {
        // Sitting up, nibbling a seed: the paws and cheeks work.
        const Palette& c = rig.colors();
        const qreal chew = std::max(0.0, rig.wave(0.125, 2)) * 0.35;
        rig.ellipse({16.0, 22.4}, 7.0, 6.0, c.body);
        rig.patchEllipse({17.4, 23.4}, 4.2, 4.0, c.light);
        QPainterPath feet({13.0, 27.6});
        feet.lineTo(15.0, 27.6);
        feet.moveTo(18.4, 27.6);
        feet.lineTo(20.4, 27.6);
        rig.limb(feet, rig.pick(2.0, 1.8), c.accent);
        Anchors a;
        a.head = QPointF(18.0, 14.4);
        a.headRadius = 4.6;
        head(rig, a.head, 0.3 + chew, QPointF(0, 0));
        // The seed, held up in both paws.
        QPainterPath seed;
        seed.addEllipse(QPointF(21.6, 19.6 - chew), 1.2, 1.7);
        rig.shape(seed, QColor(0x8A, 0x6A, 0x4A), 0.7);
        rig.ellipse({20.6, 20.2 - chew}, 1.1, 1.0, c.accent, 0.7);
        rig.ellipse({22.6, 20.4 - chew}, 1.1, 1.0, c.accent, 0.7);
        hatAnchors(a);
        a.back = QPointF(11.4, 18.0);
        return a;
    }

    Anchors sleep(Rig& rig) const override {
        const Palette& c = rig.colors();
        const qreal breath = rig.wave() * 0.3;
        rig.ellipse({15.4, 22.0 - breath}, 8.4, 5.8 + breath, c.body);
        rig.patchEllipse({18.0, 24.6}, 4.6, 2.4, c.light);
        Anchors a;
        a.head = QPointF(20.6, 21.6);
        a.headRadius = 4.0;
        ears(rig, a.head + QPointF(-1.0, -1.4), 0.8);
        rig.eye(a.head + QPointF(1.2, -0.2), rig.pick(1.0, 0.9));
        rig.nose(a.head + QPointF(3.8, 0.8), rig.pick(0.7, 0.55), c.accent);
        rig.blush(a.head + QPointF(1.6, 1.8), 1.0);
        hatAnchors(a);
        a.back = QPointF(13.0, 16.4);
        a.tilt = 12;
        return a;
    }

    Anchors celebrate(Rig& rig) const override {
        const Palette& c = rig.colors();
        const qreal hop = rig.arc() * 3.6;
        QPainter& p = rig.painter();
        p.save();
        p.translate(0, -hop);
        rig.ellipse({16.0, 21.6}, 7.0, 6.2, c.body);
        rig.patchEllipse({17.2, 22.8}, 4.2, 4.2, c.light);
        QPainterPath feet({13.2, 27.4});
        feet.lineTo(14.6, 28.0);
        feet.moveTo(19.0, 27.4);
        feet.lineTo(17.6, 28.0);
        rig.limb(feet, rig.pick(2.0, 1.8), c.accent);
        // Both paws thrown up.
        const qreal wave = rig.wave(0, 2) * 0.6;
        QPainterPath arms({12.4, 19.0});
        arms.lineTo(9.6 - wave, 14.8);
        arms.moveTo(20.4, 19.0);
        arms.lineTo(23.4 + wave, 14.8);
        rig.limb(arms, rig.pick(2.2, 2.0), c.body);
        Anchors a;
        a.head = QPointF(17.0, 13.6);
        a.headRadius = 4.6;
        head(rig, a.head, 0.5, QPointF(0, 0));
        p.restore();
        a.head.ry() -= hop;
        hatAnchors(a);
        a.back = QPointF(11.0, 17.0 - hop);
        return a;
    }

private:
    struct Pose {
        qreal bob = 0;
        qreal lean = 0;  // degrees forward
        LegSwing legs;
    };

    static void hatAnchors(Anchors& a) {
        a.crown = a.head + QPointF(-0.6, -a.headRadius * 0.85);
        a.hatScale = 0.9;
        a.brow = a.head + QPointF(-a.headRadius * 1.2, -a.headRadius * 0.6);
    }

    void ears(Rig& rig, QPointF h, qreal droop) const {
        const Palette& c = rig.colors();
        for (QPointF o : {QPointF(-2.4, -3.4 + droop), QPointF(0.8, -3.9 + droop)}) {
            rig.ellipse(h + o, 1.7, 1.6, c.body);
            if (rig.detailed()) rig.patchEllipse(h + o + QPointF(0.1, 0.2), 0.9, 0.8, c.accent);
        }
    }

    // A head that is mostly cheeks, facing right; `puff` fills the cheek pouches.
    void head(Rig& rig, QPointF h, qreal puff, QPointF look) const {
        const Palette& c = rig.colors();
        ears(rig, h, 0);
        rig.ellipse(h, 4.6, 4.0, c.body);
        rig.patchEllipse(h + QPointF(1.6, 1.6), 2.6 + puff, 2.0 + puff * 0.8, c.light);
        rig.eye(h + QPointF(1.0, -1.0) + look, rig.pick(1.05, 0.95));
        rig.nose(h + QPointF(4.2, 0.3), rig.pick(0.75, 0.6), c.accent);
        rig.blush(h + QPointF(0.2, 1.4), 1.0);
        if (rig.detailed()) {
            for (int i = -1; i <= 1; i += 2)
                rig.line(h + QPointF(3.8, 1.0), h + QPointF(6.0, 0.9 + i * 0.8), 0.3, c.outline);
        }
    }

    Anchors figure(Rig& rig, const Pose& pose) const {
        const Palette& c = rig.colors();
        QPainter& p = rig.painter();
        p.save();
        p.translate(16, 28 + pose.bob);
        p.rotate(pose.lean);
        p.translate(-16, -28);
        // Four stubs, barely longer than a paw: the far pair first.
        const qreal stub = 3.2, w = rig.pick(2.2, 2.0);
        LegSwing s = pose.legs;
        rig.leg({18.6, 24.6}, s.frontFar, stub, w, c.shade, 0);
        rig.leg({12.6, 24.6}, s.backFar, stub, w, c.shade, 0);
        rig.ellipse({15.0, 21.2}, 7.6, 6.0, c.body);
        rig.patchEllipse({16.8, 23.4}, 4.8, 3.2, c.light);
        rig.ellipse({7.6, 21.4}, 0.9, 0.8, c.accent, 0.7);  // the nub of a tail
        rig.leg({19.8, 25.2}, s.frontNear, stub, w, c.accent, 0);
        rig.leg({11.6, 25.2}, s.backNear, stub, w, c.accent, 0);
        Anchors a;
        a.head = QPointF(21.4, 18.0);
        a.headRadius = 4.4;
        head(rig, a.head, 0, QPointF(0, 0));
        p.restore();
        QTransform map;
        map.translate(16, 28 + pose.bob);
        map.rotate(pose.lean);
        map.translate(-16, -28);
        a.head = map.map(a.head);
        a.back = map.map(QPointF(13.0, 15.4));
        a.backTilt = pose.lean - 10;
        hatAnchors(a);
        a.crown = map.map(QPointF(21.0, 14.4));
        return a;
    }

    // The exercise wheel: rim, rungs and spokes turning with the stride, on a stand.
    void wheel(Rig& rig) const {
        const QColor metal(0xB8, 0xC4, 0xD0), rim(0x5E, 0x8F, 0xD8);
        const QPointF hub(16.0, 15.6);
        const qreal r = 12.0;
        QPainterPath stand(hub);
        stand.lineTo(10.0, 28.2);
        stand.moveTo(hub);
        stand.lineTo(22.0, 28.2);
        rig.limb(stand, rig.pick(1.4, 1.2), metal);
        const qreal turn = -rig.phase() * 90;  // a quarter turn a stride: four spokes repeat
        QPainterPath spokes;
        for (int i = 0; i < 4; ++i) {
            const qreal a = qDegreesToRadians(turn + i * 45.0);
            spokes.moveTo(hub + QPointF(qCos(a), qSin(a)) * r);
            spokes.lineTo(hub - QPointF(qCos(a), qSin(a)) * r);
        }
        rig.line(spokes, rig.pick(0.9, 0.6), metal.darker(130));
        QPainterPath ring;
        ring.addEllipse(hub, r, r);
        rig.line(ring, 2.0 + 2 * rig.stroke(), rig.colors().outline);
        rig.line(ring, 2.0, rim);
        rig.ellipse(hub, 1.3, 1.3, metal, 0.7);
    }
};

}  // namespace

const MascotArt& hamsterArt() {
    static const HamsterArt art;
    return art;
}

}  // namespace trotlet::mascot::art
