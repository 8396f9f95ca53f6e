#include <QTransform>
#include <QtMath>

#include "mascot/qt/art/Mascots.h"

namespace trotlet::mascot::art {
namespace {

const QColor gold(0xF2, 0xC2, 0x30);
const QColor calico(0xF2, 0x9A, 0x4A);

// Maneki the Lucky Cat: the beckoning figurine, facing you. A big round white head with red
// inner ears and an orange patch, a red collar with a gold bell, a round body, and one paw
// raised high, beckoning in time with its steps. It shuffles on little feet, then skips.
class ManekiArt : public MascotArt {
public:
    Palette palette() const override {
        return {QColor(0xFF, 0xFC, 0xF4), QColor(0xE6, 0xDD, 0xCB), QColor(0xFF, 0xFF, 0xFF),
                QColor(0xD9, 0x30, 0x2B), QColor(0x2B, 0x1F, 0x1A)};
    }

    Anchors run(Rig& rig) const override {
        const bool skip = rig.band() >= 1 && !rig.tired();
        Pose pose;
        const qreal w = rig.wave();
        pose.bob = -qAbs(w) * 0.9 * rig.energy();
        if (skip) pose.bob = -qAbs(rig.wave(0, 2)) * 1.6;
        pose.sway = w * (skip ? 3 : 5) * rig.energy();
        pose.lean = skip ? 8 : 4;
        pose.feet[0] = qMax<qreal>(0, w) * 1.4;
        pose.feet[1] = qMax<qreal>(0, -w) * 1.4;
        pose.beckon = rig.wave(0, skip ? 2 : 1);
        pose.paw = rig.tired() ? 0.2 : 1.0;
        if (rig.panicking()) {
            pose.paw = 1.0;
            pose.otherPaw = 1.0;
            pose.beckon = rig.wave(0, 2);
        }
        return figure(rig, pose);
    }

    Anchors sit(Rig& rig) const override {
        // The figurine on its shelf: seated, beckoning slowly.
        Pose pose;
        pose.seated = true;
        pose.beckon = rig.wave();
        pose.coin = true;
        return figure(rig, pose);
    }

    Anchors sleep(Rig& rig) const override {
        Pose pose;
        pose.seated = true;
        pose.paw = 0.15;
        pose.headTilt = 10;
        pose.bob = rig.wave() * 0.2;
        pose.coin = true;
        return figure(rig, pose);
    }

    Anchors celebrate(Rig& rig) const override {
        Pose pose;
        pose.bob = -rig.arc() * 1.8;
        pose.paw = 1.0;
        pose.otherPaw = 1.0;
        pose.beckon = rig.wave(0, 2);
        pose.feet[0] = pose.feet[1] = rig.arc() * 0.6;
        return figure(rig, pose);
    }

private:
    struct Pose {
        qreal bob = 0;
        qreal sway = 0;  // degrees side to side
        qreal lean = 0;  // degrees towards the way it runs
        qreal feet[2] = {0, 0};
        qreal paw = 1;  // the beckoning paw: 0 lowered, 1 raised
        qreal otherPaw = 0;
        qreal beckon = 0;  // -1...1, the paw's bend
        qreal headTilt = 0;
        bool seated = false;
        bool coin = false;
    };

    void raisedPaw(Rig& rig, QPointF shoulder, qreal raise, qreal beckon, int side) const {
        const Palette& c = rig.colors();
        // From hanging at the side (raise 0) to up beside the head (raise 1).
        const qreal angle = qDegreesToRadians(side * (20 + raise * 135));
        const QPointF elbow = shoulder + QPointF(qSin(angle), qCos(angle)) * 4.4;
        const qreal wrist = angle + side * qDegreesToRadians(raise * (10 + beckon * 28));
        const QPointF paw = elbow + QPointF(qSin(wrist), qCos(wrist)) * 2.4;
        QPainterPath arm(shoulder);
        arm.lineTo(elbow);
        arm.lineTo(paw);
        rig.limb(arm, rig.pick(3.0, 2.7), c.body);
        rig.ellipse(paw, 2.0, 2.0, c.body);
        if (rig.detailed())
            rig.patchEllipse(paw + QPointF(0, 0.3), 0.9, 0.8, QColor(0xF4, 0x9C, 0xB0));
    }

    Anchors figure(Rig& rig, const Pose& pose) const {
        const Palette& c = rig.colors();
        QTransform t;
        t.translate(15.5, 28.8 + pose.bob);
        t.rotate(pose.sway + pose.lean);
        t.translate(-15.5, -28.0);
        QPainter& p = rig.painter();
        p.save();
        p.setTransform(t, true);

        if (pose.seated && rig.detailed()) {
            QPainterPath tail({9.6, 25.6});
            tail.quadTo(QPointF(6.0, 25.0), QPointF(7.0, 20.6));
            rig.limb(tail, 1.8, c.body);
        }
        if (!pose.seated) {
            rig.ellipse({12.4, 27.0 - pose.feet[0]}, 2.2, 1.3, c.body);
            rig.ellipse({18.6, 27.0 - pose.feet[1]}, 2.2, 1.3, c.body);
        }
        const qreal base = pose.seated ? 27.6 : 25.8;
        QPainterPath body({10.4, 15.2});
        body.cubicTo(QPointF(9.0, 19.0), QPointF(8.8, base), QPointF(15.5, base));
        body.cubicTo(QPointF(22.2, base), QPointF(22.0, 19.0), QPointF(20.6, 15.2));
        body.closeSubpath();
        rig.shape(body, c.body);
        // The resting paw, at the belly, holding a gold coin on the shelf.
        if (pose.otherPaw > 0) {
            raisedPaw(rig, {10.8, 17.4}, pose.otherPaw, -pose.beckon, -1);
        } else {
            if (pose.coin && rig.detailed()) {
                QPainterPath coin;
                coin.addEllipse(QPointF(13.0, 21.6), 2.0, 2.8);
                rig.shape(coin, gold, 0.7);
                rig.line(QPointF(12.2, 21.6), QPointF(13.8, 21.6), 0.4, c.outline);
            }
            rig.ellipse({12.0, 20.8}, 1.8, 1.7, c.body, 0.8);
        }
        // The collar and bell.
        QPainterPath collar;
        collar.addRoundedRect(QRectF(10.4, 14.6, 10.2, 2.0), 1.0, 1.0);
        rig.shape(collar, c.accent, 0.7);
        const QPointF bell(15.5 + pose.sway * 0.05, 17.4);
        rig.ellipse(bell, rig.pick(1.7, 1.4), rig.pick(1.6, 1.3), gold, 0.7);
        if (rig.detailed())
            rig.line(bell + QPointF(0, 0.2), bell + QPointF(0, 1.2), 0.4, c.outline);

        // The head, with its two red-lined ears and the orange calico patch.
        const QPointF head(15.5, 10.6);
        p.save();
        p.translate(head);
        p.rotate(pose.headTilt);
        p.translate(-head);
        QPainterPath ears;
        ears.addPolygon(QPolygonF{{9.4, 8.4}, {10.4, 2.8}, {14.0, 5.8}});
        ears.closeSubpath();
        ears.addPolygon(QPolygonF{{17.0, 5.8}, {20.6, 2.8}, {21.6, 8.4}});
        ears.closeSubpath();
        rig.shape(ears, c.body);
        QPainterPath inner;
        inner.addPolygon(QPolygonF{{10.6, 7.2}, {10.9, 4.4}, {12.8, 6.0}});
        inner.addPolygon(QPolygonF{{18.2, 6.0}, {20.1, 4.4}, {20.4, 7.2}});
        rig.patch(inner, c.accent);
        QPainterPath skull;
        skull.addEllipse(head, 6.5, 5.4);
        rig.shape(skull, c.body);
        QPainterPath patch;
        patch.addEllipse(QPointF(11.4, 7.8), 3.0, 2.2);
        rig.patchWithin(skull, patch, calico);
        if (rig.detailed()) {
            QPainterPath dark;
            dark.addEllipse(QPointF(20.2, 8.0), 2.0, 1.6);
            rig.patchWithin(skull, dark, QColor(0x3A, 0x2E, 0x28));
        }
        rig.eye(head + QPointF(-2.4, 0.6), rig.pick(1.05, 0.9));
        rig.eye(head + QPointF(2.4, 0.6), rig.pick(1.05, 0.9));
        rig.nose(head + QPointF(0, 2.2), rig.pick(0.7, 0.55), QColor(0xF4, 0x7C, 0x90));
        rig.blush(head + QPointF(-3.8, 2.4), 1.0);
        rig.blush(head + QPointF(3.8, 2.4), 1.0);
        if (rig.detailed()) {
            for (int s : {-1, 1})
                for (int k : {-1, 1})
                    rig.line(head + QPointF(s * 4.2, 2.6 + k * 0.3),
                             head + QPointF(s * 6.8, 2.2 + k * 0.9), 0.3, c.outline);
        }
        p.restore();
        // The beckoning paw, raised beside the head on the side it runs towards.
        raisedPaw(rig, {20.4, 17.2}, pose.paw, pose.beckon, 1);
        p.restore();

        Anchors a;
        a.head = t.map(head);
        a.headRadius = 5.6;
        a.crown = t.map(QPointF(15.5, 6.0));
        a.tilt = pose.sway + pose.lean + pose.headTilt;
        a.hatScale = 0.95;
        a.back = t.map(QPointF(10.2, 20.0));
        a.backTilt = -90;
        a.grip = t.map(QPointF(24.0, 8.6));
        a.brow = t.map(QPointF(8.4, 8.0));
        return a;
    }
};

}  // namespace

const MascotArt& manekiArt() {
    static const ManekiArt art;
    return art;
}

}  // namespace trotlet::mascot::art
