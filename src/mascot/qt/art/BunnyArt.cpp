#include <QTransform>
#include <QtMath>

#include <algorithm>

#include "mascot/qt/art/Mascots.h"

namespace trotlet::mascot::art {
namespace {

QPointF lerp(QPointF a, QPointF b, qreal t) { return a + (b - a) * t; }

// Pudding the Bunny: a round latte-coloured rabbit with long upright ears, big hind feet and a
// white puff of a tail. It never runs: it hops, low and quick at first, then in long flat leaps
// with its ears swept back.
class BunnyArt : public MascotArt {
public:
    Palette palette() const override {
        return {QColor(0xF2, 0xE2, 0xD6), QColor(0xCF, 0xB6, 0xA6), QColor(0xFF, 0xFF, 0xFF),
                QColor(0xF4, 0x9C, 0xB0), QColor(0x3D, 0x2B, 0x2B)};
    }

    Anchors run(Rig& rig) const override {
        const bool leap = rig.band() >= 1;
        const qreal phase = rig.phase();
        const qreal air = rig.arc();
        Pose pose;
        pose.lift = air * (leap ? 5.0 : 3.4) * rig.energy();
        pose.pitch = -qSin(2 * M_PI * phase) * (leap ? 14 : 10);
        // Squashed on the ground, stretched in the air.
        pose.stretch = air < 0.25 ? 0.94 + air * 0.24 : 1.0 + (air - 0.25) * (leap ? 0.16 : 0.1);
        pose.kick = std::clamp(qSin(2 * M_PI * phase) * 1.4, 0.0, 1.0);
        pose.reach = std::clamp(-qSin(2 * M_PI * phase) * 1.4, 0.0, 1.0);
        // Leaping, the ears stay swept back even on the ground.
        pose.ears = rig.panicking() ? -75 : (leap ? -26 : -12) - air * (leap ? 40 : 30);
        if (rig.tired() || rig.offline()) pose.ears = -112 + air * 10;  // drooping behind
        return figure(rig, pose);
    }

    Anchors sit(Rig& rig) const override {
        Pose pose;
        // One ear twitches, the nose wiggles.
        pose.ears = -8;
        pose.earTwitch = std::max(0.0, rig.wave()) * 14;
        pose.nose = rig.wave(0.125, 2) * 0.3;
        pose.upright = 1;
        return figure(rig, pose);
    }

    Anchors sleep(Rig& rig) const override {
        Pose pose;
        pose.ears = -100;  // laid flat along the back
        pose.stretch = 1.04;
        pose.breath = rig.wave() * 0.25;
        Anchors a = figure(rig, pose);
        a.tilt = 5;
        return a;
    }

    Anchors celebrate(Rig& rig) const override {
        // A binky: a high leap with a twist and a kick.
        Pose pose;
        pose.lift = rig.arc() * 5.4;
        pose.pitch = rig.wave() * 24;
        pose.kick = 1;
        pose.reach = 0.6;
        pose.ears = -40 + rig.wave(0.25) * 25;
        pose.stretch = 1.05;
        return figure(rig, pose);
    }

private:
    struct Pose {
        qreal lift = 0;   // grid units above the ground
        qreal pitch = 0;  // degrees, nose up is negative
        qreal stretch = 1;
        qreal kick = 0;    // hind legs pushed out behind, 0...1
        qreal reach = 0;   // front paws reaching forward, 0...1
        qreal ears = -10;  // degrees from upright, back is negative
        qreal earTwitch = 0;
        qreal nose = 0;
        qreal upright = 0;  // 1 sits up taller
        qreal breath = 0;
    };

    void ear(Rig& rig, QPointF base, qreal angle, const QColor& fill, bool inner) const {
        QPainter& p = rig.painter();
        p.save();
        p.translate(base);
        p.rotate(angle);
        QPainterPath e;
        e.addEllipse(QPointF(0, -4.3), rig.pick(1.75, 1.55), 4.6);
        rig.shape(e, fill);
        if (inner)
            rig.patchEllipse(QPointF(0.2, -4.1), rig.pick(0.65, 0.7), 3.2, rig.colors().accent);
        p.restore();
    }

    Anchors figure(Rig& rig, const Pose& pose) const {
        const Palette& c = rig.colors();
        const QPointF pivot(13.5, 24.0);
        QTransform t;
        t.translate(pivot.x(), pivot.y() - pose.lift);
        t.rotate(pose.pitch);
        t.scale(pose.stretch, 2 - pose.stretch);
        t.translate(-pivot.x(), -pivot.y());
        QPainter& p = rig.painter();
        p.save();
        p.setTransform(t, true);

        const qreal up = pose.upright;
        const QPointF headC(20.2 - up * 0.6, 17.2 - up * 2.2 - pose.breath * 0.5);
        const QPointF earBase = headC + QPointF(-1.0, -2.6);
        ear(rig, earBase + QPointF(-1.2, 0.4), pose.ears - 12, c.shade, false);
        // The big hind foot: flat under the body, or kicked out behind.
        const QPointF hip(10.6, 24.2);
        const QPointF heel = lerp({9.4, 27.3}, {7.0, 26.6}, pose.kick);
        const QPointF toe = lerp({15.0, 27.7}, {4.6, 27.4}, pose.kick);
        QPainterPath hind(hip);
        hind.lineTo(heel);
        hind.lineTo(toe);
        rig.limb(hind, rig.pick(3.0, 2.7), c.body);
        // The white puff.
        rig.ellipse({7.0, 21.0 - up * 0.8}, 2.2, 2.1, c.light);
        QPainterPath body;
        body.addEllipse(QPointF(13.6, 22.2 - up * 0.8 - pose.breath), 6.7,
                        5.2 + up * 0.4 + pose.breath);
        rig.shape(body, c.body);
        if (rig.detailed()) rig.patchEllipse({15.8, 24.6}, 3.2, 2.2, c.light);
        const QPointF paw = lerp({19.2, 27.7}, {23.4, 25.6}, pose.reach);
        QPainterPath front({17.6, 24.0});
        front.lineTo(paw);
        rig.limb(front, rig.pick(2.4, 2.1), c.body);

        rig.ellipse(headC, 3.9, 3.5, c.body);
        ear(rig, earBase, pose.ears + pose.earTwitch, c.body, true);
        if (rig.detailed()) rig.patchEllipse(headC + QPointF(2.2, 1.4), 1.6, 1.2, c.light);
        rig.eye(headC + QPointF(1.2, -0.6), rig.pick(1.05, 0.9));
        rig.nose(headC + QPointF(3.7, 0.5 + pose.nose), rig.pick(0.75, 0.6), c.accent);
        rig.blush(headC + QPointF(1.0, 1.6), 0.9);
        if (rig.detailed()) {
            for (int i = -1; i <= 1; i += 2)
                rig.line(headC + QPointF(3.2, 1.1), headC + QPointF(5.4, 1.0 + i * 0.8), 0.3,
                         c.outline);
        }
        p.restore();

        Anchors a;
        a.head = t.map(headC);
        a.headRadius = 3.7;
        a.crown = t.map(headC + QPointF(-0.6, -3.0));
        a.tilt = pose.pitch - 12;
        a.hatScale = 0.8;
        a.back = t.map(QPointF(12.4, 17.4 - up * 1.0));
        a.brow = t.map(headC + QPointF(-4.4, -0.8));
        return a;
    }
};

}  // namespace

const MascotArt& bunnyArt() {
    static const BunnyArt art;
    return art;
}

}  // namespace trotlet::mascot::art
