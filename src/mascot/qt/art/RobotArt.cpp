#include <QTransform>
#include <QtMath>

#include <array>
#include <cmath>

#include "mascot/qt/art/Mascots.h"

namespace trotlet::mascot::art {
namespace {

const QColor screen(0x22, 0x2E, 0x44);
const QColor led(0x6F, 0xF0, 0xF0);

// Bolt the Robot: a steel box of a body under a bigger box of a head with a dark visor, two
// cyan LED eyes and an antenna with a light on top. It marches on stiff legs in hard, servo-like
// steps; faster, it folds its legs and rolls on a wheel; flat out, a jet fires behind it.
class RobotArt : public MascotArt {
public:
    Palette palette() const override {
        return {QColor(0xA4, 0xB6, 0xCA), QColor(0x73, 0x88, 0xA0), QColor(0xDC, 0xE6, 0xF0),
                QColor(0xFF, 0xB2, 0x3F), QColor(0x1F, 0x2A, 0x36)};
    }

    Anchors run(Rig& rig) const override {
        Pose pose;
        const int band = rig.tired() ? 0 : rig.band();
        if (band >= 1) {
            pose.wheel = true;
            pose.lean = band >= 2 ? 14 : 9;
            pose.jet = band >= 2;
            pose.arms = {-0.5, -0.5};
            pose.antenna = -0.5;
            pose.bob = rig.wave(0, 2) * 0.3;
        } else {
            // Servo steps: the legs sweep at a constant rate and snap round at the ends, a
            // triangle wave instead of a sine's easing.
            const qreal step = 4 * qAbs(rig.phase() - 0.5) - 1;
            pose.legs = {step * 0.45 * rig.energy(), -step * 0.45 * rig.energy()};
            pose.arms = {-step * 0.6 * rig.energy(), step * 0.6 * rig.energy()};
            pose.bob = -0.8 * (1 - qAbs(step));
            pose.lean = rig.tired() ? -3 : 3;
            pose.headTilt = rig.tired() ? 8 : 0;
            pose.antenna = step * 0.2;
        }
        if (rig.panicking()) pose.arms = {-2.4 + rig.wave(0, 2) * 0.3, 2.4 - rig.wave(0, 2) * 0.3};
        return figure(rig, pose);
    }

    Anchors sit(Rig& rig) const override {
        Pose pose;
        pose.seated = true;
        pose.headTilt = rig.wave() * 5;
        pose.arms = {0.2, -0.2};
        pose.antenna = rig.wave(0.2) * 0.25;
        return figure(rig, pose);
    }

    Anchors sleep(Rig& rig) const override {
        Pose pose;
        pose.seated = true;
        pose.headTilt = 14;
        pose.headDrop = 1.0 + rig.wave() * 0.2;
        pose.arms = {0.1, 0.1};
        pose.antenna = 0.6;
        pose.lightOff = true;
        return figure(rig, pose);
    }

    Anchors celebrate(Rig& rig) const override {
        Pose pose;
        pose.bob = -rig.arc() * 1.4;
        pose.arms = {2.6 + rig.wave(0, 2) * 0.25, -2.6 - rig.wave(0, 2) * 0.25};
        pose.legs = {0.15, -0.15};
        pose.antenna = rig.wave() * 0.4;
        pose.spark = true;
        return figure(rig, pose);
    }

private:
    struct Pose {
        qreal bob = 0;
        qreal lean = 0;  // degrees forward
        bool wheel = false;
        bool jet = false;
        bool seated = false;
        std::array<qreal, 2> legs{};  // radians, near leg first
        std::array<qreal, 2> arms{};  // radians from hanging, forward positive; back arm first
        qreal headTilt = 0;
        qreal headDrop = 0;
        qreal antenna = 0;  // radians the mast bends back (negative) or forward
        bool lightOff = false;
        bool spark = false;
    };

    void eyes(Rig& rig, QPointF centre) const {
        const Eyes style = rig.eyes();
        for (qreal dx : {-2.2, 2.2}) {
            const QPointF e = centre + QPointF(dx, 0);
            switch (style) {
                case Eyes::open:
                    rig.patch(
                        [&] {
                            QPainterPath r;
                            r.addRoundedRect(QRectF(e.x() - 0.85, e.y() - 1.2, 1.7, 2.4), 0.6, 0.6);
                            return r;
                        }(),
                        led);
                    break;
                case Eyes::wide: {
                    QPainterPath ring;
                    ring.addEllipse(e, 1.3, 1.5);
                    rig.line(ring, 0.8, led);
                    break;
                }
                case Eyes::sleepy:
                    rig.patch(
                        [&] {
                            QPainterPath r;
                            r.addRect(QRectF(e.x() - 0.9, e.y(), 1.8, 1.0));
                            return r;
                        }(),
                        led);
                    break;
                case Eyes::sad:
                    rig.line(e + QPointF(-0.9, -0.6 * (dx < 0 ? -1 : 1)),
                             e + QPointF(0.9, 0.6 * (dx < 0 ? -1 : 1)), 1.1, led);
                    break;
                case Eyes::happy: {
                    QPainterPath chevron(e + QPointF(-1.0, 0.6));
                    chevron.lineTo(e + QPointF(0, -0.6));
                    chevron.lineTo(e + QPointF(1.0, 0.6));
                    rig.line(chevron, 0.8, led);
                    break;
                }
                case Eyes::closed:
                    rig.line(e + QPointF(-1.0, 0.4), e + QPointF(1.0, 0.4), 0.7, led);
                    break;
            }
        }
    }

    Anchors figure(Rig& rig, const Pose& pose) const {
        const Palette& c = rig.colors();
        QTransform t;
        t.translate(16.5, 28.0 + pose.bob);
        t.rotate(pose.lean);
        t.translate(-16.5, -28.0);
        QPainter& p = rig.painter();
        p.save();
        p.setTransform(t, true);
        const qreal w = rig.pick(2.5, 2.2);

        // The back arm, behind the body.
        arm(rig, {11.8, 16.2}, pose.arms[0], c.shade);
        if (pose.wheel) {
            wheel(rig);
        } else if (pose.seated) {
            QPainterPath legs({13.0, 24.6});
            legs.lineTo(19.4, 26.4);
            legs.moveTo(15.4, 24.6);
            legs.lineTo(21.4, 26.4);
            rig.limb(legs, w, c.shade);
            rig.ellipse({21.8, 26.2}, 1.5, 1.4, c.body, 0.8);
        } else {
            leg(rig, {18.6, 21.6}, pose.legs[1], c.shade);
            leg(rig, {14.4, 21.6}, pose.legs[0], c.body);
        }
        if (pose.jet) {
            const qreal flicker = 0.8 + 0.4 * qAbs(rig.wave(0, 3));
            QPainterPath flame({11.6, 17.0});
            flame.quadTo(QPointF(7.0, 16.0), QPointF(10.6 - 6.0 * flicker, 18.6));
            flame.quadTo(QPointF(7.0, 21.2), QPointF(11.6, 20.2));
            flame.closeSubpath();
            rig.shape(flame, QColor(0xFF, 0x8A, 0x3D), 0.7);
            rig.patchEllipse({9.0, 18.6}, 1.6 * flicker, 0.8, QColor(0xFF, 0xE0, 0x6B));
        }
        const qreal sink = pose.seated ? 3.4 : 0;
        QPainterPath body;
        body.addRoundedRect(QRectF(11.4, 14.2 + sink, 10.2, 8.2), 1.8, 1.8);
        rig.shape(body, c.body);
        // The chest light blinks once a loop.
        rig.patch(
            [&] {
                QPainterPath panel;
                panel.addRoundedRect(QRectF(13.2, 16.0 + sink, 6.6, 3.8), 0.9, 0.9);
                return panel;
            }(),
            c.light);
        const bool on = rig.phase() < 0.5 && !pose.lightOff;
        rig.patchEllipse({14.8, 17.9 + sink}, 0.8, 0.8, on ? c.accent : c.shade);
        if (rig.detailed()) {
            for (int i = 0; i < 2; ++i)
                rig.line(QPointF(16.6, 17.2 + i * 1.4 + sink), QPointF(18.8, 17.2 + i * 1.4 + sink),
                         0.5, c.shade);
        }
        arm(rig, {21.2, 16.2 + sink * 0.5}, pose.arms[1], c.body);

        // The head: a box with a visor, tilting on its neck.
        const QPointF neck(16.5, 14.4 + sink + pose.headDrop);
        p.save();
        p.translate(neck);
        p.rotate(pose.headTilt);
        p.translate(-neck);
        const QPointF mast(16.9, 6.0 + sink + pose.headDrop);
        const QPointF bulb = mast + QPointF(qSin(pose.antenna) * 2.8, -qCos(pose.antenna) * 2.8);
        rig.line(mast, bulb, rig.pick(1.0, 0.8) + 2 * rig.stroke() * 0.6, c.outline);
        rig.line(mast, bulb, rig.pick(1.0, 0.8), c.shade);
        rig.ellipse(bulb, 1.2, 1.2, pose.lightOff ? c.shade : c.accent, 0.7);
        if (pose.spark) rig.star(bulb + QPointF(2.2, 0.4), 1.0 + rig.arc() * 0.7, c.accent);
        QPainterPath head;
        head.addRoundedRect(QRectF(10.8, 6.0 + sink + pose.headDrop, 12.2, 8.6), 2.2, 2.2);
        rig.shape(head, c.body);
        if (rig.detailed()) {
            rig.ellipse({10.6, 10.3 + sink + pose.headDrop}, 0.9, 1.4, c.shade, 0.6);
            rig.ellipse({23.2, 10.3 + sink + pose.headDrop}, 0.9, 1.4, c.shade, 0.6);
        }
        QPainterPath visor;
        visor.addRoundedRect(QRectF(12.3, 7.6 + sink + pose.headDrop, 9.2, 5.4), 1.4, 1.4);
        rig.patch(visor, screen);
        eyes(rig, {17.4, 10.0 + sink + pose.headDrop});
        if (rig.detailed() && rig.eyes() != Eyes::closed)
            rig.line(QPointF(16.2, 12.2 + sink + pose.headDrop),
                     QPointF(18.6, 12.2 + sink + pose.headDrop), 0.5, led);
        p.restore();
        p.restore();

        Anchors a;
        a.head = t.map(QPointF(16.9, 10.3 + sink + pose.headDrop));
        a.headRadius = 5.5;
        a.crown = t.map(QPointF(14.2, 6.2 + sink + pose.headDrop));
        a.tilt = pose.lean + pose.headTilt - 8;
        a.hatScale = 0.9;
        a.back = t.map(QPointF(11.6, 17.6 + sink));
        a.backTilt = -90 + pose.lean;
        a.grip = t.map(QPointF(21.2, 16.2) + QPointF(qSin(pose.arms[1]), qCos(pose.arms[1])) * 5.0);
        a.brow = t.map(QPointF(9.6, 7.4 + sink));
        return a;
    }

    // A stiff leg: no knee, a block of a foot.
    void leg(Rig& rig, QPointF hip, qreal angle, const QColor& fill) const {
        const qreal length = 5.2;
        QPointF foot = hip + QPointF(qSin(angle), qCos(angle)) * length;
        foot.setY(std::min(foot.y(), groundY - 0.9));
        rig.line(hip, foot, rig.pick(2.4, 2.1) + 2 * rig.stroke(), rig.colors().outline);
        rig.line(hip, foot, rig.pick(2.4, 2.1), fill);
        QPainterPath shoe;
        shoe.addRoundedRect(QRectF(foot.x() - 1.6, foot.y() - 0.4, 3.8, 1.6), 0.6, 0.6);
        rig.shape(shoe, rig.colors().shade, 0.8);
    }

    void arm(Rig& rig, QPointF shoulder, qreal angle, const QColor& fill) const {
        const QPointF hand = shoulder + QPointF(qSin(angle), qCos(angle)) * 5.0;
        QPainterPath a(shoulder);
        a.lineTo(hand);
        rig.limb(a, rig.pick(1.7, 1.4), fill);
        rig.ellipse(hand, 1.1, 1.1, rig.colors().shade, 0.7);
    }

    void wheel(Rig& rig) const {
        const Palette& c = rig.colors();
        const QPointF hub(16.5, 23.8);
        QPainterPath fork({15.4, 21.0});
        fork.lineTo(hub);
        rig.limb(fork, rig.pick(1.8, 1.5), c.shade);
        rig.ellipse(hub, 4.0, 4.0, QColor(0x3A, 0x44, 0x52));
        rig.ellipse(hub, 2.4, 2.4, c.light, 0.6);
        // Spokes turn a sixth of a circle per frame of a six-frame loop; four spokes never
        // line up with the frame before.
        const qreal turn = -rig.phase() * 2 * M_PI;
        for (int i = 0; i < 2; ++i) {
            const qreal a = turn + i * M_PI / 2;
            rig.line(hub + QPointF(qCos(a), qSin(a)) * 2.3, hub - QPointF(qCos(a), qSin(a)) * 2.3,
                     0.7, c.outline);
        }
    }
};

}  // namespace

const MascotArt& robotArt() {
    static const RobotArt art;
    return art;
}

}  // namespace trotlet::mascot::art
