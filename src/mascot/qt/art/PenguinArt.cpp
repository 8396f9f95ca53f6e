#include <QTransform>
#include <QtMath>

#include <algorithm>

#include "mascot/qt/art/Mascots.h"

namespace trotlet::mascot::art {
namespace {

// Pebble the Penguin: an upright slate-blue egg with a white front, an orange beak and feet,
// and flippers. It waddles, rocking from foot to foot; pushed hard, it drops onto its belly and
// toboggans, kicking behind.
class PenguinArt : public MascotArt {
public:
    Palette palette() const override {
        // A little blue penguin's slate blue, light enough to hold its shape on a dark bar.
        return {QColor(0x52, 0x6C, 0x92), QColor(0x38, 0x4C, 0x6A), QColor(0xFF, 0xFF, 0xFF),
                QColor(0xF5, 0xA6, 0x23), QColor(0x12, 0x1A, 0x24)};
    }

    Anchors run(Rig& rig) const override {
        Pose pose;
        if (rig.band() >= 1 && !rig.tired()) {
            pose.slide = true;
            pose.lift = -rig.wave(0, 2) * 0.4;
            pose.kick = rig.wave();
            pose.flipper = 150;
            pose.beakUp = -70;  // head up, looking where it slides
            return figure(rig, pose);
        }
        const qreal w = rig.wave();
        pose.rock = w * 9 * rig.energy();
        pose.lean = rig.tired() ? 10 : 4;
        pose.lift = -qAbs(w) * 0.9 * rig.energy();
        pose.feet[0] = std::max(0.0, w) * 1.4 * rig.energy();
        pose.feet[1] = std::max(0.0, -w) * 1.4 * rig.energy();
        pose.flipper = rig.panicking() ? 70 + qAbs(w) * 40 : 18 + qAbs(w) * 26 * rig.energy();
        return figure(rig, pose);
    }

    Anchors sit(Rig& rig) const override {
        Pose pose;
        pose.rock = rig.wave() * 2.5;
        pose.flipper = 12 + std::max(0.0, rig.wave(0.25)) * 16;
        pose.beakUp = rig.wave() * 6;
        return figure(rig, pose);
    }

    Anchors sleep(Rig& rig) const override {
        Pose pose;
        pose.lean = 9;
        pose.beakUp = 18;
        pose.flipper = 6;
        pose.breath = rig.wave() * 0.25;
        return figure(rig, pose);
    }

    Anchors celebrate(Rig& rig) const override {
        Pose pose;
        pose.lift = -rig.arc() * 3.6;
        pose.flipper = 70 + rig.wave(0, 2) * 25;
        pose.feet[0] = pose.feet[1] = rig.arc() * 0.8;
        pose.beakUp = -8;
        return figure(rig, pose);
    }

private:
    struct Pose {
        bool slide = false;
        qreal rock = 0;  // degrees, side-to-side about the feet
        qreal lean = 0;  // degrees forward
        qreal lift = 0;  // grid units, negative is up
        qreal feet[2] = {0, 0};
        qreal flipper = 15;  // degrees out from the side
        qreal kick = 0;
        qreal beakUp = 0;  // degrees, positive tips the beak down
        qreal breath = 0;
    };

    Anchors figure(Rig& rig, const Pose& pose) const {
        const Palette& c = rig.colors();
        QTransform t;
        if (pose.slide) {
            // On the belly: the egg turned to lie head-first along the ground.
            t.translate(15.2, 23.2 + pose.lift);
            t.rotate(78);
            t.translate(-15.6, -19.0);
        } else {
            t.translate(16.0, 28.0 + pose.lift);
            t.rotate(pose.rock + pose.lean);
            t.translate(-16.0, -28.0);
        }
        QPainter& p = rig.painter();
        p.save();
        p.setTransform(t, true);

        const qreal footY = 27.6;
        auto foot = [&](qreal x, qreal lift) {
            rig.ellipse({x, footY - lift}, rig.pick(2.6, 2.3), rig.pick(1.2, 1.0), c.accent,
                        rig.pick(0.6, 0.8));
        };
        if (pose.slide) {
            // Feet paddling behind, at the bottom of the egg.
            foot(14.2 + pose.kick * 1.2, 0.6 - pose.kick * 0.4);
            foot(17.6 - pose.kick * 1.2, 0.6 + pose.kick * 0.4);
        } else {
            foot(18.4, pose.feet[1]);
        }
        QPainterPath egg;
        egg.addEllipse(QPointF(15.6, 18.6 + pose.breath), 6.6, 9.0 - pose.breath);
        rig.shape(egg, c.body);
        // The white front and face, kept inside the egg.
        QPainterPath front;
        front.addEllipse(QPointF(18.4, 21.0), 4.3, 6.6);
        front.addEllipse(QPointF(18.8, 14.0), 3.2, 2.8);
        front.setFillRule(Qt::WindingFill);
        rig.patchWithin(egg, front, c.light);
        if (!pose.slide) foot(14.0, pose.feet[0]);

        // The beak, tipped by the pose.
        const QPointF beakRoot(21.0, 14.8);
        p.save();
        p.translate(beakRoot);
        p.rotate(pose.beakUp);
        p.scale(rig.pick(1.3, 1.0), rig.pick(1.3, 1.0));
        QPainterPath beak({-0.4, -1.1});
        beak.lineTo(3.6, 0.1);
        beak.lineTo(-0.4, 1.1);
        beak.closeSubpath();
        rig.shape(beak, c.accent, rig.pick(0.45, 0.8));  // the scale above thickens the edge
        p.restore();
        rig.eye({19.2, 13.4}, rig.pick(1.05, 0.85));
        rig.blush({19.4, 16.4}, 0.8);

        // The near flipper, swinging out from the shoulder.
        p.save();
        p.translate(14.2, 16.2);
        p.rotate(pose.flipper);
        QPainterPath wing({-0.8, 0});
        wing.quadTo(-2.2, 4.0, 0.2, 7.6);
        wing.quadTo(1.6, 4.0, 0.9, 0);
        wing.closeSubpath();
        rig.shape(wing, c.shade);
        p.restore();
        p.restore();

        Anchors a;
        a.head = t.map(QPointF(17.0, 14.0));
        a.headRadius = 4.4;
        a.crown = t.map(QPointF(15.8, 11.0));
        a.tilt = pose.slide ? 70 : pose.rock + pose.lean;
        a.hatScale = 0.9;
        a.back = t.map(QPointF(11.2, 18.2));
        a.backTilt = pose.slide ? 78 : -70 + pose.rock;
        a.brow = t.map(QPointF(12.6, 12.4));
        const QTransform wingT = QTransform(t).translate(14.2, 16.2).rotate(pose.flipper);
        a.grip = wingT.map(QPointF(0.2, 7.0));
        return a;
    }
};

}  // namespace

const MascotArt& penguinArt() {
    static const PenguinArt art;
    return art;
}

}  // namespace trotlet::mascot::art
