#include <QTransform>
#include <QtMath>

#include "mascot/qt/art/Mascots.h"

namespace trotlet::mascot::art {
namespace {

const QColor horn(0xF5, 0xC5, 0x42);
const QColor rainbow[] = {QColor(0xFF, 0x8F, 0xB8), QColor(0xFF, 0xD6, 0x6B),
                          QColor(0x7F, 0xE0, 0xB8), QColor(0x7F, 0xB8, 0xFF)};

// Stardust the Unicorn: a pearl-white horse on long legs with a golden horn and a rainbow mane
// and tail. A high-stepping trot, a canter, then a flat-out gallop that leaves a rainbow behind.
class UnicornArt : public MascotArt {
public:
    Palette palette() const override {
        return {QColor(0xF7, 0xF2, 0xFF), QColor(0xD6, 0xCA, 0xEE), QColor(0xFF, 0xFF, 0xFF),
                QColor(0xC4, 0x9B, 0xF2), QColor(0x3B, 0x2A, 0x5C)};
    }

    Anchors run(Rig& rig) const override {
        const int band = rig.band();
        const FourBeat gait = band == 0 ? FourBeat::trot : FourBeat::gallop;
        const qreal phase = rig.phase();
        Pose pose;
        pose.bounce = Rig::bounce(gait, phase,
                                  band == 0   ? 1.0
                                  : band == 1 ? 1.5
                                              : 1.9) *
                      rig.energy();
        pose.stretch = band == 0 ? 1.0 : band == 1 ? 1.05 : 1.1;
        pose.legs = Rig::swing(gait, phase,
                               (band == 0   ? 0.55
                                : band == 1 ? 0.8
                                            : 0.95) *
                                   rig.energy());
        pose.neck = band == 2 ? 0.7 : band == 1 ? 0.35 : 0;
        pose.headDrop = rig.tired() ? 2.2 : 0;
        pose.flow = band * 0.8 + rig.wave(0.1) * 0.6;
        if (band == 2 && !rig.tired()) trail(rig, 18.4 + pose.bounce);
        return figure(rig, pose);
    }

    Anchors sit(Rig& rig) const override { return lying(rig, false); }

    Anchors sleep(Rig& rig) const override { return lying(rig, true); }

    Anchors celebrate(Rig& rig) const override {
        // Rearing up on the hind legs, forelegs pawing the air.
        const qreal rise = rig.arc();
        const qreal angle = -9 - rise * 3;
        QTransform t;
        t.translate(11.6, 19.4);
        t.rotate(angle);
        t.translate(-11.6, -19.4);
        QPainter& p = rig.painter();
        p.save();
        p.setTransform(t, true);
        Pose pose;
        pose.bodyY = 18.0;
        const qreal paw = rig.wave() * 0.35;
        pose.legs = {1.3 + paw, 1.0 - paw, -angle * M_PI / 180, -angle * M_PI / 180 - 0.15};
        pose.frontBend = -1.9;
        pose.flow = 1.0 + rig.wave() * 0.5;
        pose.neck = 0.5;
        const Anchors a = figure(rig, pose);
        p.restore();
        return a.mapped(t, angle);
    }

private:
    struct Pose {
        qreal bodyY = 17.0;
        qreal bounce = 0;
        qreal stretch = 1;
        LegSwing legs;
        qreal frontBend = -0.3;
        qreal neck = 0;  // 0 upright ... 1 stretched forward
        qreal headDrop = 0;
        qreal flow = 0;  // how far the mane and tail stream back
    };

    static void hatAnchors(Anchors& a) {
        // Behind the horn, tipped back so the hat doesn't spear it.
        a.crown = a.head + QPointF(-1.6, -2.0);
        a.tilt = -20;
        a.hatScale = 0.72;
        a.brow = a.head + QPointF(-2.6, 0.2);
    }

    // The rainbow a galloping unicorn leaves: bands waving off to the left, behind everything.
    void trail(Rig& rig, qreal y) const {
        rig.behind([&] {
            const qreal w = rig.pick(1.5, 1.2);
            for (int i = 0; i < 4; ++i) {
                QPainterPath band({10.0, y - 2.0 + i * w});
                for (int k = 1; k <= 3; ++k)
                    band.quadTo(
                        QPointF(10.0 - k * 2.2 + 1.1, y - 2.0 + i * w + rig.wave(k * 0.25) * 0.9),
                        QPointF(10.0 - k * 2.2, y - 2.0 + i * w));
                rig.line(band, w, rainbow[i]);
            }
        });
    }

    Anchors figure(Rig& rig, const Pose& pose) const {
        const Palette& c = rig.colors();
        const qreal bodyY = pose.bodyY + pose.bounce + (rig.tired() ? 0.6 : 0);
        const qreal left = 9.2, length = 12.2 * pose.stretch;
        const qreal front = left + length - 2.0, rear = left + 2.4;
        const qreal hipY = bodyY + 2.0, legLength = 9.2 - pose.bounce * 0.2;
        const qreal w = rig.pick(2.2, 1.9);
        LegSwing s = pose.legs;
        s.frontNear = 0.1 + s.frontNear * 0.85;
        s.frontFar = 0.1 + s.frontFar * 0.85;
        s.backNear = -0.1 + s.backNear * 0.85;
        s.backFar = -0.1 + s.backFar * 0.85;
        leg(rig, {front - 1.2, hipY}, s.frontFar, legLength + 0.3, w, c.shade, pose.frontBend);
        leg(rig, {rear + 1.2, hipY}, s.backFar, legLength + 0.3, w, c.shade, 0.5);
        tail(rig, {left + 0.4, bodyY - 2.2}, pose.flow);
        leg(rig, {front, hipY}, s.frontNear, legLength, w, c.body, pose.frontBend);
        leg(rig, {rear, hipY}, s.backNear, legLength, w, c.body, 0.5);
        QPainterPath body;
        body.addRoundedRect(QRectF(left, bodyY - 3.4, length, 6.8), 3.4, 3.4);
        rig.shape(body, c.body);
        // The neck rises from the withers; a galloping unicorn stretches it forward.
        const QPointF withers(front - 0.8, bodyY - 1.6);
        // The head rides the bounce only half way: a galloping horse keeps its head level.
        const QPointF poll =
            withers + QPointF(3.0 + pose.neck * 2.0,
                              -5.2 + pose.neck * 2.2 + pose.headDrop - pose.bounce * 0.5);
        // The mane goes first so the neck covers its root and it streams out behind.
        mane(rig, withers, poll, pose.flow);
        QPainterPath neck(withers);
        neck.lineTo(poll);
        rig.limb(neck, rig.pick(3.8, 3.4), c.body);
        Anchors a;
        a.head = poll + QPointF(1.2, 0.4);
        a.headRadius = 2.7;
        a.back = QPointF(left + length * 0.45, bodyY - 3.4);
        head(rig, a.head, pose.neck * 18);
        hatAnchors(a);
        return a;
    }

    void leg(Rig& rig, QPointF hip, qreal angle, qreal length, qreal width, const QColor& fill,
             qreal bend) const {
        const QPointF foot = rig.leg(hip, angle, length, width, fill, bend);
        const qreal lower = angle + bend;
        rig.line(foot - QPointF(qSin(lower), qCos(lower)) * 1.0, foot, width, rig.colors().accent);
    }

    void tail(Rig& rig, QPointF base, qreal flow) const {
        QPainterPath t(base);
        t.cubicTo(base + QPointF(-2.2, -0.6), base + QPointF(-3.2 - flow * 0.6, 2.6 - flow),
                  base + QPointF(-4.0 - flow * 0.7, 7.2 - flow * 2.2));
        rig.limb(t, rig.pick(2.7, 3.0), rig.colors().accent);
        rig.line(t, rig.pick(1.1, 0.9), rainbow[0]);
        if (rig.detailed()) {
            QPainterPath inner(base + QPointF(-0.5, 0.7));
            inner.cubicTo(base + QPointF(-2.4, 0.5), base + QPointF(-3.0 - flow * 0.8, 3.2 - flow),
                          base + QPointF(-3.8 - flow * 0.9, 7.0 - flow * 2.2));
            rig.line(inner, 0.7, rainbow[3]);
        }
    }

    // A rainbow mane along the back of the neck, streaming back with speed.
    void mane(Rig& rig, QPointF withers, QPointF poll, qreal flow) const {
        // Behind the neck's crest, far enough out that a band of it shows past the neck, with
        // pink and gold streaks along its outer edge.
        QPainterPath m(poll + QPointF(-0.8, -1.6));
        const QPointF mid = (withers + poll) / 2 + QPointF(-3.2 - flow * 0.6, -0.8);
        m.quadTo(mid, withers + QPointF(-3.0 - flow * 0.4, 0.2));
        rig.limb(m, rig.pick(2.8, 2.6), rig.colors().accent);
        QPainterPath streak(poll + QPointF(-1.4, -1.8));
        streak.quadTo(mid + QPointF(-0.7, 0), withers + QPointF(-3.6 - flow * 0.4, 0.4));
        rig.line(streak, rig.pick(1.0, 0.8), rainbow[0]);
        if (rig.detailed()) {
            QPainterPath inner(poll + QPointF(-0.6, -1.0));
            inner.quadTo(mid + QPointF(0.5, 0.1), withers + QPointF(-2.4, 0.0));
            rig.line(inner, 0.7, rainbow[1]);
        }
    }

    // A long horse's head, nose down-forward, the horn rising from the forehead.
    void head(Rig& rig, QPointF h, qreal lean) const {
        const Palette& c = rig.colors();
        QPainter& p = rig.painter();
        p.save();
        p.translate(h);
        p.rotate(lean);
        // A bigger head at the menu-bar size, so the horn survives at 16-24 px.
        p.scale(rig.pick(1.25, 1.0), rig.pick(1.25, 1.0));
        QPainterPath ear({-1.6, -1.6});
        ear.lineTo(-1.9, -4.3);
        ear.lineTo(-0.1, -2.2);
        ear.closeSubpath();
        rig.shape(ear, c.body);
        QPainterPath spike({-0.9, -1.7});
        spike.lineTo(2.9, -7.0);
        spike.lineTo(1.7, -1.2);
        spike.closeSubpath();
        rig.shape(spike, horn, rig.pick(0.7, 0.8));
        if (rig.detailed()) {
            for (int i = 1; i <= 2; ++i)
                rig.line(QPointF(0.1 + i * 0.7, -2.2 - i * 1.3),
                         QPointF(1.2 + i * 0.6, -2.6 - i * 1.3), 0.5, c.outline);
        }
        QPainterPath skull;
        skull.addEllipse(QPointF(0, 0), 2.7, 2.4);
        QPainterPath muzzle;
        muzzle.addRoundedRect(QRectF(0.2, -0.2, 4.6, 3.2), 1.6, 1.6);
        skull.addPath(muzzle);
        skull.setFillRule(Qt::WindingFill);
        rig.merged(skull, c.body);
        if (rig.detailed()) {
            rig.patchEllipse(QPointF(3.9, 1.6), 0.45, 0.35, c.outline);
            rig.blush(QPointF(1.6, 1.6), 1.0);
        }
        rig.eye(QPointF(0.2, -0.3), rig.pick(0.95, 0.8));
        p.restore();
    }

    Anchors lying(Rig& rig, bool asleep) const {
        const Palette& c = rig.colors();
        const qreal breath = rig.wave() * (asleep ? 0.3 : 0.15);
        // Folded legs tucked in front and behind.
        QPainterPath fold({19.6, 25.0});
        fold.lineTo(23.0, 26.4);
        fold.lineTo(20.8, 27.4);
        fold.moveTo(11.6, 25.0);
        fold.lineTo(15.0, 27.2);
        rig.limb(fold, rig.pick(2.2, 1.9), c.body);
        rig.line(QPointF(20.8, 27.4), QPointF(21.9, 26.9), rig.pick(2.2, 1.9), c.accent);
        tail(rig, {8.8, 22.6}, 1.2);
        QPainterPath body;
        body.addRoundedRect(QRectF(8.4, 20.4 - breath, 13.4, 7.2 + breath), 3.6, 3.6);
        rig.shape(body, c.body);
        Anchors a;
        a.back = QPointF(14.0, 20.4 - breath);
        const QPointF withers(19.4, 21.4);
        QPointF poll = asleep ? QPointF(21.6, 21.8) : QPointF(22.4, 14.6 + rig.wave(0.2) * 0.3);
        mane(rig, withers, poll, asleep ? 1.2 : 0.4);
        QPainterPath neck(withers);
        neck.lineTo(poll);
        rig.limb(neck, rig.pick(3.8, 3.4), c.body);
        a.head = poll + QPointF(1.2, 0.4);
        a.headRadius = 2.7;
        head(rig, a.head, asleep ? 35 : 8);
        hatAnchors(a);
        return a;
    }
};

}  // namespace

const MascotArt& unicornArt() {
    static const UnicornArt art;
    return art;
}

}  // namespace trotlet::mascot::art
