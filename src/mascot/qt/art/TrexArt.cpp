#include <QTransform>
#include <QtMath>

#include "mascot/qt/art/Mascots.h"

namespace trotlet::mascot::art {
namespace {

// Chomp the T-Rex: a green dinosaur all head and tail, with a big chomping jaw, two powerful
// legs, a ridge of spikes down its back and arms far too small for anything. It stomps, the
// whole body dropping on every footfall; running, it leans forward, tail up, jaws wide.
class TrexArt : public MascotArt {
public:
    Palette palette() const override {
        return {QColor(0x66, 0xB0, 0x5E), QColor(0x44, 0x82, 0x40), QColor(0xE2, 0xEE, 0xB0),
                QColor(0xF0, 0x9A, 0x3E), QColor(0x1B, 0x33, 0x20)};
    }

    Anchors run(Rig& rig) const override {
        const bool sprint = rig.band() >= 1 && !rig.tired();
        const qreal w = 2 * M_PI * rig.phase();
        Pose pose;
        const qreal amp = (sprint ? 0.75 : 0.48) * rig.energy();
        pose.legs[0] = amp * qSin(w);
        pose.legs[1] = -amp * qSin(w);
        // Heavy: lowest when the legs are spread and a foot lands, highest as they pass.
        pose.bob = qAbs(qSin(w)) * (sprint ? 1.6 : 1.3) * rig.energy() - (sprint ? 0.8 : 0);
        pose.lean = sprint ? 12 : rig.tired() ? -4 : 2;
        pose.jaw = sprint ? 16 + 8 * qAbs(qSin(w)) : 10 * qMax<qreal>(0, qSin(2 * w));
        if (rig.panicking()) pose.jaw = 24;
        if (rig.tired()) pose.jaw = 2;
        pose.arms = sprint || rig.panicking() ? qSin(2 * w) * 0.6 : 0.2;
        pose.tail = qSin(w + 0.6) * 0.8 + (sprint ? 1.5 : 0);
        return figure(rig, pose);
    }

    Anchors sit(Rig& rig) const override {
        Pose pose;
        pose.seated = true;
        pose.lean = -14;
        pose.jaw = qMax<qreal>(0, rig.wave()) * 6;
        pose.arms = rig.wave(0.25) * 0.3;
        pose.tail = -1.0;
        return figure(rig, pose);
    }

    Anchors sleep(Rig& rig) const override {
        Pose pose;
        pose.seated = true;
        pose.lying = true;
        pose.lean = 12;
        pose.bob = 3.6 - rig.wave() * 0.2;
        pose.jaw = 0;
        pose.tail = -1.6;
        return figure(rig, pose);
    }

    Anchors celebrate(Rig& rig) const override {
        Pose pose;
        pose.bob = -rig.arc() * 1.8;
        pose.lean = -10;
        pose.jaw = 26;
        pose.arms = -2.6 + rig.wave(0, 2) * 0.3;  // tiny arms, up in triumph
        pose.legs[0] = 0.15;
        pose.legs[1] = -0.15;
        pose.tail = 1.0;
        return figure(rig, pose);
    }

private:
    struct Pose {
        qreal legs[2] = {0, 0};  // near, far: radians forward
        qreal bob = 0;
        qreal lean = 0;    // degrees, nose down positive
        qreal jaw = 0;     // degrees open
        qreal arms = 0.2;  // radians forward; negative raises them
        qreal tail = 0;    // lift of the tail tip
        bool seated = false;
        bool lying = false;
    };

    void leg(Rig& rig, QPointF hip, qreal angle, const QColor& fill, bool seated, bool lying,
             qreal ground) const {
        const qreal w = rig.pick(3.2, 2.9);
        if (lying) {
            // Tucked flat under the belly.
            QPainterPath folded(hip);
            folded.lineTo(hip + QPointF(2.8, 2.0));
            folded.lineTo(hip + QPointF(5.6, 2.2));
            rig.limb(folded, w, fill);
            return;
        }
        if (seated) {
            QPainterPath folded(hip);
            folded.lineTo(hip + QPointF(2.6, 3.8));
            folded.lineTo(hip + QPointF(-0.4, 5.6));
            folded.lineTo(hip + QPointF(3.0, 5.6));
            rig.limb(folded, w, fill);
            return;
        }
        const QPointF foot = rig.leg(hip, angle + 0.35, 8.6, w, fill, -0.85, ground);
        rig.line(foot, foot + QPointF(2.0, 0.1), w * 0.8 + 2 * rig.stroke(), rig.colors().outline);
        rig.line(foot, foot + QPointF(2.0, 0.1), w * 0.8, fill);
    }

    Anchors figure(Rig& rig, const Pose& pose) const {
        const Palette& c = rig.colors();
        const QPointF hips(13.6, 19.6);
        QTransform t;
        t.translate(hips.x(), hips.y() + pose.bob);
        t.rotate(pose.lean);
        t.translate(-hips.x(), -hips.y());
        QPainter& p = rig.painter();
        p.save();
        p.setTransform(t, true);
        // Counter-rotate the legs so the feet stay under the body whatever its lean.
        const qreal counter = -qDegreesToRadians(pose.lean);

        // The body drops on a footfall but the feet stay planted on the real ground.
        const qreal ground = groundY - 0.6 - pose.bob;
        leg(rig, hips + QPointF(2.0, 0), pose.legs[1] + counter, c.shade, pose.seated, pose.lying,
            ground);
        // The tail: thick at the hips, tapering to a point behind.
        const qreal lift = pose.tail;
        QPainterPath tail({12.0, 12.8});
        tail.cubicTo(QPointF(8.0, 13.4 - lift * 0.5), QPointF(4.0, 13.6 - lift),
                     QPointF(1.8, 15.0 - lift * 1.4));
        tail.cubicTo(QPointF(4.2, 17.4 - lift), QPointF(8.4, 19.6 - lift * 0.4),
                     QPointF(12.6, 20.6));
        tail.closeSubpath();
        QPainterPath body;
        body.addEllipse(QPointF(15.4, 16.6), 6.6, 5.0);
        QPainterPath torso = tail;
        torso.addPath(body);
        torso.setFillRule(Qt::WindingFill);
        spikes(rig, lift);
        rig.merged(torso, c.body);
        rig.patch(
            [&] {
                QPainterPath belly;
                belly.addEllipse(QPointF(17.4, 19.0), 4.2, 2.4);
                return belly;
            }(),
            c.light);
        if (rig.detailed()) {
            for (qreal x : {9.0, 12.0, 15.0})
                rig.line(QPointF(x, 13.2), QPointF(x - 0.8, 15.2), 0.8, c.shade);
        }
        // The near thigh, a big drumstick, then its leg.
        rig.ellipse(hips + QPointF(0.4, 0.4), 3.4, 4.0, c.body);
        leg(rig, hips + QPointF(0.4, 1.4), pose.legs[0] + counter, c.body, pose.seated, pose.lying,
            ground);

        // Tiny arms at the chest.
        const QPointF shoulder(19.8, 17.0);
        const QPointF elbow =
            shoulder + QPointF(qSin(pose.arms + 0.6), qCos(pose.arms + 0.6)) * 1.9;
        QPainterPath arm(shoulder);
        arm.lineTo(elbow);
        arm.lineTo(elbow + QPointF(qSin(pose.arms + 1.8), qCos(pose.arms + 1.8)) * 1.4);
        rig.limb(arm, rig.pick(1.5, 1.3), c.body);

        // Neck and the big head, its jaw hinged below the eye.
        QPainterPath neck({18.6, 15.4});
        neck.lineTo(21.6, 11.4);
        rig.limb(neck, 5.0, c.body);
        const QPointF hinge(21.2, 11.6);
        p.save();
        p.translate(hinge);
        p.rotate(pose.jaw);
        p.translate(-hinge);
        QPainterPath jaw({20.6, 11.0});
        jaw.lineTo(28.4, 11.0);
        jaw.quadTo(28.6, 13.2, 25.8, 13.4);
        jaw.lineTo(21.6, 13.6);
        jaw.quadTo(20.0, 13.0, 20.6, 11.0);
        rig.shape(jaw, c.light);
        if (pose.jaw > 6 && rig.detailed()) teeth(rig, 11.0, 1);
        p.restore();
        QPainterPath skull({19.2, 11.8});
        skull.cubicTo(QPointF(18.8, 7.2), QPointF(22.4, 5.6), QPointF(25.8, 6.2));
        skull.quadTo(QPointF(29.4, 6.8), QPointF(29.4, 9.4));
        skull.lineTo(29.2, 11.2);
        skull.lineTo(20.8, 11.8);
        skull.closeSubpath();
        rig.shape(skull, c.body);
        if (pose.jaw > 6) teeth(rig, 11.2, -1);
        rig.eye({24.0, 8.4}, rig.pick(1.1, 0.95));
        rig.line(QPointF(22.8, 6.9), QPointF(25.2, 7.1), rig.pick(0.9, 0.7), c.outline);
        if (rig.detailed()) rig.patchEllipse({28.2, 7.8}, 0.4, 0.3, c.outline);
        if (pose.lying) rig.patchEllipse({23.4, 10.6}, 2.4, 0.6, c.shade);
        p.restore();

        Anchors a;
        a.head = t.map(QPointF(24.4, 9.0));
        a.headRadius = 4.8;
        a.crown = t.map(QPointF(23.4, 6.2));
        a.tilt = pose.lean * 0.8;
        a.hatScale = 0.95;
        a.back = t.map(QPointF(13.4, 12.2));
        a.backTilt = pose.lean;
        a.grip = t.map(elbow);
        a.brow = t.map(QPointF(19.4, 7.4));
        return a;
    }

    // A row of little white teeth along a jaw edge at `y`, pointing `dir` (down is 1).
    void teeth(Rig& rig, qreal y, int dir) const {
        QPainterPath row;
        for (qreal x = 22.6; x < 28.4; x += 1.6) {
            row.moveTo(x, y);
            row.lineTo(x + 0.55, y - dir * 1.1);
            row.lineTo(x + 1.1, y);
            row.closeSubpath();
        }
        rig.shape(row, Qt::white, 0.35);
    }

    // Orange spikes along the spine, drawn before the body so only their points show.
    void spikes(Rig& rig, qreal lift) const {
        QPainterPath row;
        const QPointF spine[] = {
            {19.2, 12.0}, {16.4, 11.4}, {13.4, 11.8}, {10.4, 12.6}, {7.4, 13.4 - lift * 0.6}};
        for (int i = 0; i < 5; ++i) {
            const qreal s = i == 4 ? 1.1 : 1.5;
            const QPointF b = spine[i];
            row.moveTo(b + QPointF(-s, 0.8));
            row.lineTo(b + QPointF(0.2, -s * 1.4));
            row.lineTo(b + QPointF(s, 0.8));
            row.closeSubpath();
        }
        rig.shape(row, rig.colors().accent, 0.8);
    }
};

}  // namespace

const MascotArt& trexArt() {
    static const TrexArt art;
    return art;
}

}  // namespace trotlet::mascot::art
