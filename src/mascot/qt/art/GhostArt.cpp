#include <QTransform>
#include <QtMath>

#include "mascot/qt/art/Mascots.h"

namespace trotlet::mascot::art {
namespace {

// Boo the Ghost: a sheet with a round dome, two dark eyes, a small round mouth and a wavy hem.
// No legs: it floats and bobs over its own shadow, the hem rippling. Faster, it leans into the
// drift and streams a wisp of a tail.
class GhostArt : public MascotArt {
public:
    Palette palette() const override {
        return {QColor(0xF3, 0xF5, 0xFF), QColor(0xC9, 0xD3, 0xF0), QColor(0xFF, 0xFF, 0xFF),
                QColor(0xFF, 0x9F, 0xC1), QColor(0x2D, 0x2A, 0x4A)};
    }

    Anchors run(Rig& rig) const override {
        const bool streak = rig.band() >= 1 && !rig.tired();
        Pose pose;
        pose.lift = 2.6 + rig.wave() * (streak ? 0.8 : 1.5) * rig.energy();
        pose.lean = streak ? 16 : rig.tired() ? -4 : 7;
        pose.stretch = streak ? 1.1 : 1.0;
        pose.tail = streak ? 1.0 : 0.35;
        pose.arms = streak ? -0.6 : rig.panicking() ? 1.0 : rig.wave(0.25) * 0.4;
        pose.ripple = 1.0;
        pose.mouth = rig.panicking() ? 1.6 : 1.0;
        return figure(rig, pose);
    }

    Anchors sit(Rig& rig) const override {
        Pose pose;
        pose.lift = 1.2 + rig.wave() * 0.5;
        pose.ripple = 0.5;
        pose.look = rig.wave(0.25) * 0.7;
        pose.arms = 0.1;
        return figure(rig, pose);
    }

    Anchors sleep(Rig& rig) const override {
        Pose pose;
        pose.lift = 0.2;
        pose.squash = 0.82 + rig.wave() * 0.02;
        pose.ripple = 0.3;
        pose.lean = -6;
        pose.arms = -0.3;
        pose.mouth = 0.6;
        return figure(rig, pose);
    }

    Anchors celebrate(Rig& rig) const override {
        Pose pose;
        pose.lift = 2.0 + rig.arc() * 3.4;
        pose.squash = 1.0 + (rig.arc() - 0.5) * 0.12;
        pose.arms = 1.6 + rig.wave(0, 2) * 0.3;
        pose.ripple = 1.4;
        pose.mouth = 1.4;
        return figure(rig, pose);
    }

private:
    struct Pose {
        qreal lift = 2;     // grid units the hem floats above the ground
        qreal lean = 0;     // degrees forward
        qreal stretch = 1;  // horizontal
        qreal squash = 1;   // vertical
        qreal tail = 0;     // how far the wisp streams back, 0...1
        qreal arms = 0;     // nubs: negative swept back, positive raised
        qreal ripple = 1;
        qreal look = 0;  // eyes glancing sideways
        qreal mouth = 1;
    };

    Anchors figure(Rig& rig, const Pose& pose) const {
        const Palette& c = rig.colors();
        QPainter& p = rig.painter();
        // The shadow shrinks as the ghost rises.
        const qreal shadow = 5.6 - pose.lift * 0.5;
        rig.patchEllipse({16.0, 27.6}, shadow, 0.9, QColor(0x2D, 0x2A, 0x4A, 70));

        const qreal hemY = 25.4 - pose.lift;
        QTransform t;
        t.translate(16.0, hemY);
        t.rotate(pose.lean);
        t.scale(pose.stretch, pose.squash);
        t.translate(-16.0, -hemY);
        p.save();
        p.setTransform(t, true);

        const qreal top = hemY - 17.0;
        // Nubs of arms, behind the sheet.
        const qreal up = pose.arms;
        QPainterPath arms({10.2, hemY - 8.0});
        arms.lineTo(7.4 - qMax<qreal>(0, -up) * 1.2, hemY - 6.0 - up * 2.6);
        arms.moveTo(21.8, hemY - 8.0);
        arms.lineTo(24.4 + qMax<qreal>(0, -up) * 0.4, hemY - 6.2 - up * 2.6);
        rig.limb(arms, rig.pick(2.4, 2.2), c.body);

        QPainterPath sheet({9.0, hemY - 7.0});
        sheet.cubicTo(QPointF(9.0, top + 3.0), QPointF(12.0, top), QPointF(16.0, top));
        sheet.cubicTo(QPointF(20.0, top), QPointF(23.0, top + 3.0), QPointF(23.0, hemY - 7.0));
        sheet.lineTo(23.0, hemY);
        // The hem: four scallops, each bobbing a quarter of a loop after the one before.
        qreal x = 23.0;
        for (int k = 0; k < 4; ++k) {
            const qreal r = rig.wave(k * 0.25) * 0.8 * pose.ripple;
            const qreal width = 3.5;
            sheet.quadTo(QPointF(x - width / 2, hemY + 2.2 + r),
                         QPointF(x - width, hemY + r * 0.3));
            x -= width;
        }
        // The wisp: the back of the hem trailing off behind.
        if (pose.tail > 0) {
            const qreal sway = rig.wave(0.4) * 1.0;
            sheet.quadTo(QPointF(9.0 - 2.5 * pose.tail, hemY + 0.5),
                         QPointF(9.0 - 6.0 * pose.tail, hemY - 1.6 + sway));
            sheet.quadTo(QPointF(9.0 - 2.0 * pose.tail, hemY - 3.0), QPointF(9.0, hemY - 6.0));
        }
        sheet.closeSubpath();
        rig.shape(sheet, c.body);
        if (rig.detailed()) {
            // A soft fold of shade down the back of the sheet.
            QPainterPath fold({11.4, top + 4.0});
            fold.quadTo(QPointF(10.4, hemY - 6.0), QPointF(11.6, hemY - 0.4));
            rig.line(fold, 1.6, QColor(c.shade.red(), c.shade.green(), c.shade.blue(), 140));
        }

        const QPointF face(17.0 + pose.look * 0.6, top + 7.0);
        for (qreal dx : {-2.4, 2.4}) rig.eye(face + QPointF(dx, 0), rig.pick(1.55, 1.1));
        rig.blush(face + QPointF(-3.8, 2.4), 1.1);
        rig.blush(face + QPointF(3.8, 2.4), 1.1);
        if (rig.eyes() == Eyes::happy) {
            rig.smile(face + QPointF(-1.2, 2.8), face + QPointF(1.2, 2.8), 1.6);
        } else {
            rig.patchEllipse(face + QPointF(0, 3.5), rig.pick(1.0, 0.8) * pose.mouth,
                             rig.pick(1.2, 1.0) * pose.mouth, c.outline);
        }
        p.restore();

        Anchors a;
        a.head = t.map(QPointF(16.0, top + 6.0));
        a.headRadius = 6.0;
        a.crown = t.map(QPointF(15.6, top + 1.4));
        a.tilt = pose.lean;
        a.hatScale = 1.0;
        a.back = t.map(QPointF(11.0, top + 9.0));
        a.backTilt = -70 + pose.lean;
        a.grip = t.map(QPointF(24.2, hemY - 6.4 - pose.arms * 2.6));
        a.brow = t.map(QPointF(10.4, top + 4.0));
        return a;
    }
};

}  // namespace

const MascotArt& ghostArt() {
    static const GhostArt art;
    return art;
}

}  // namespace trotlet::mascot::art
