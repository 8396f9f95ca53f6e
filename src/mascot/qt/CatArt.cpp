#include "mascot/qt/CatArt.h"

#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>
#include <QtMath>

#include <cmath>
#include <functional>

namespace trotlet::mascot {
namespace {

// Design grid: 32 x 32, y down, the cat faces right and stands on y = 28.
constexpr qreal grid = 32;
constexpr qreal ground = 28;
constexpr qreal outlineWidth = 1.5;

// Where the pose put the parts that accessories attach to.
struct Anchors {
    QPointF head{24, 14};
    qreal headRadius = 4.6;
    QPointF back{14, 15};  // top of the body, for the backpack and the umbrella's handle
    qreal tilt = 0;        // head tilt in degrees, for hats
};

class Artist {
public:
    Artist(QPainter& p, const CatFrameSpec& s) : p_(p), s_(s) {
        fur_ = s.fur;
        if (s.mood == MascotMood::overheated) fur_ = mix(fur_, QColor(0xE5, 0x48, 0x3A), 0.35);
        farFur_ = fur_.darker(135);
        phase_ = s.frames > 0 ? qreal(s.frame % s.frames) / s.frames : 0;
    }

    Anchors draw() {
        Anchors a;
        switch (s_.mood) {
            case MascotMood::sitting: a = sit(); break;
            case MascotMood::sleeping: a = sleep(); break;
            case MascotMood::celebrating: a = celebrate(); break;
            default: a = run(); break;
        }
        accessories(a);
        return a;
    }

private:
    static QColor mix(const QColor& a, const QColor& b, qreal t) {
        return QColor::fromRgbF(a.redF() + (b.redF() - a.redF()) * t,
                                a.greenF() + (b.greenF() - a.greenF()) * t,
                                a.blueF() + (b.blueF() - a.blueF()) * t, 1);
    }

    QPen outlinePen(qreal width = outlineWidth) const {
        return QPen(s_.outline, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    }

    void shape(const QPainterPath& path, const QColor& fill) {
        p_.setPen(outlinePen());
        p_.setBrush(fill);
        p_.drawPath(path);
    }

    // A limb or tail: a thick outlined stroke.
    void limb(const QPainterPath& path, qreal width, const QColor& fill) {
        p_.setBrush(Qt::NoBrush);
        p_.setPen(outlinePen(width + 2 * outlineWidth));
        p_.drawPath(path);
        p_.setPen(QPen(fill, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p_.drawPath(path);
    }

    void leg(QPointF hip, qreal angle, qreal length, const QColor& fill, qreal bend = 0) {
        QPointF knee = hip + QPointF(qSin(angle) * length * 0.55, qCos(angle) * length * 0.55);
        const qreal lower = angle + bend;
        QPointF paw = knee + QPointF(qSin(lower) * length * 0.45, qCos(lower) * length * 0.45);
        if (paw.y() > ground) paw.setY(ground);
        QPainterPath path(hip);
        path.lineTo(knee);
        path.lineTo(paw);
        limb(path, 2.7, fill);
    }

    void ears(QPointF head, qreal r, qreal flatten, const QColor& fill) {
        // Two pointed ears; `flatten` (0...1) lays them back for a frightened look.
        const qreal lift = r * (1.05 - 0.55 * flatten);
        QPolygonF back{head + QPointF(-r * 0.85, -r * 0.35), head + QPointF(-r * 0.55 - flatten * 2.2, -r - lift * 0.55),
                       head + QPointF(-r * 0.05, -r * 0.8)};
        QPolygonF front{head + QPointF(r * 0.05, -r * 0.85), head + QPointF(r * 0.5 - flatten * 1.8, -r - lift * 0.6),
                        head + QPointF(r * 0.85, -r * 0.35)};
        QPainterPath path;
        path.addPolygon(back);
        path.closeSubpath();
        path.addPolygon(front);
        path.closeSubpath();
        shape(path, fill);
    }

    void head(QPointF c, qreal r, bool wideEyes, bool sleepy, bool tongue) {
        ears(c, r, wideEyes ? 1.0 : 0.0, fur_);
        QPainterPath h;
        h.addEllipse(c, r * 1.05, r * 0.92);
        shape(h, fur_);
        // Muzzle towards the right.
        const QPointF eye = c + QPointF(r * 0.38, -r * 0.12);
        if (s_.eyesClosed || sleepy) {
            QPainterPath lid;
            lid.moveTo(eye + QPointF(-1.1, 0));
            lid.quadTo(eye + QPointF(0, sleepy ? 0.9 : 0.6), eye + QPointF(1.1, 0));
            p_.setBrush(Qt::NoBrush);
            p_.setPen(outlinePen(1.1));
            p_.drawPath(lid);
        } else if (wideEyes) {
            p_.setPen(outlinePen(0.8));
            p_.setBrush(Qt::white);
            p_.drawEllipse(eye, 1.6, 1.8);
            p_.setPen(Qt::NoPen);
            p_.setBrush(s_.outline);
            p_.drawEllipse(eye + QPointF(0.4, 0), 0.75, 0.8);
        } else {
            p_.setPen(Qt::NoPen);
            p_.setBrush(s_.outline);
            p_.drawEllipse(eye, 1.0, 1.15);
        }
        const QPointF nose = c + QPointF(r * 0.98, r * 0.18);
        p_.setBrush(QColor(0xE8, 0x7A, 0x8A));
        p_.setPen(outlinePen(0.6));
        p_.drawEllipse(nose, 0.8, 0.65);
        if (tongue) {
            p_.setBrush(QColor(0xF0, 0x5A, 0x78));
            p_.drawEllipse(nose + QPointF(-0.6, 1.9), 0.9, 1.3);
        }
    }

    void tail(QPointF base, qreal sway, qreal lift) {
        QPainterPath t(base);
        t.cubicTo(base + QPointF(-3.5, 0.5), base + QPointF(-5.5 + sway, -3 - lift),
                  base + QPointF(-4.5 + sway * 1.6, -7 - lift));
        limb(t, 2.2, fur_);
    }

    Anchors run() {
        const qreal w = 2 * M_PI * phase_;
        const bool panic = s_.mood == MascotMood::panic;
        const bool tired = s_.mood == MascotMood::lowBattery;
        const int band = s_.band;
        // Bounce: a trot bobs twice per stride, a gallop once with more lift.
        qreal bounce = band == 0 ? -qAbs(qSin(w)) * 1.0 : -qMax<qreal>(0, qSin(w)) * (band == 1 ? 1.6 : 2.2);
        if (tired) bounce *= 0.5;
        const qreal stretch = band >= 2 ? 1.1 : band == 1 ? 1.05 : 1.0;
        const qreal bodyY = 19.2 + bounce + (tired ? 0.8 : 0);

        // Leg angles by gait: diagonal pairs in a trot, a rotary gallop, then a bound with the
        // front and back pairs together.
        const qreal amp = (band == 0 ? 0.55 : band == 1 ? 0.72 : 0.9) * (tired ? 0.7 : 1.0);
        qreal frontNear, frontFar, backNear, backFar;
        if (band == 0) {
            frontNear = backFar = amp * qSin(w);
            frontFar = backNear = amp * qSin(w + M_PI);
        } else if (band == 1) {
            frontNear = amp * qSin(w);
            frontFar = amp * qSin(w + 0.6);
            backNear = amp * qSin(w + M_PI);
            backFar = amp * qSin(w + M_PI + 0.6);
        } else {
            frontNear = amp * qSin(w);
            frontFar = amp * qSin(w + 0.25);
            backNear = amp * qSin(w + M_PI);
            backFar = amp * qSin(w + M_PI + 0.25);
        }
        // Front legs reach forward and hind legs push back more than they tuck in, so the
        // gathered pose of the stride doesn't read as a cat squatting on folded legs.
        frontNear = 0.18 + frontNear * 0.8;
        frontFar = 0.18 + frontFar * 0.8;
        backNear = -0.18 + backNear * 0.8;
        backFar = -0.18 + backFar * 0.8;
        const qreal legLength = 27.6 - 20.0;
        const qreal hipY = bodyY + 1.2;
        const qreal front = 15 + 5.6 * stretch, rear = 15 - 5.2 * stretch;

        if (panic) speedLines(bodyY);
        // Far side first, in shade.
        leg({front - 1.4, hipY}, frontFar, legLength + 0.4 - bounce * 0.3, farFur_, -0.2);
        leg({rear + 1.4, hipY}, backFar, legLength + 0.4 - bounce * 0.3, farFur_, 0.3);
        tail({rear - 1.8, bodyY - 1.2}, 1.5 * qSin(w + 1), panic ? 2 : tired ? -4 : 0);
        leg({front, hipY}, frontNear, legLength - bounce * 0.3, fur_, -0.2);
        leg({rear, hipY}, backNear, legLength - bounce * 0.3, fur_, 0.3);

        QPainterPath body;
        body.addRoundedRect(QRectF(15 - 8 * stretch, bodyY - 4.3, 16 * stretch, 8.4), 4.2, 4.2);
        shape(body, fur_);
        // A lighter belly stripe keeps the body from reading as a flat blob at small sizes.
        p_.setPen(Qt::NoPen);
        p_.setBrush(fur_.lighter(118));
        p_.drawRoundedRect(QRectF(15 - 5 * stretch, bodyY + 0.8, 10 * stretch, 2.6), 1.3, 1.3);

        Anchors a;
        const qreal headDrop = tired ? 2.2 : 0;
        a.head = QPointF(15 + 8.6 * stretch, bodyY - 5.2 + headDrop + bounce * 0.3);
        a.headRadius = 4.7;
        a.back = QPointF(14, bodyY - 4.3);
        head(a.head, a.headRadius, panic, tired, s_.mood == MascotMood::overheated);
        if (s_.mood == MascotMood::overheated) heatWaves();
        if (tired) batteryIcon();
        if (s_.mood == MascotMood::offline) rain();
        return a;
    }

    Anchors sit() {
        const qreal sway = qCos(2 * M_PI * phase_) * 1.6;
        QPainterPath t({9.5, 26.5});
        t.cubicTo(QPointF(5, 27.8), QPointF(2.5, 26), QPointF(3 + sway * 0.5, 21 + sway * 0.3));
        limb(t, 2.2, fur_);
        QPainterPath haunch;
        haunch.addEllipse(QPointF(13.5, 22.3), 6.3, 5.6);
        shape(haunch, fur_);
        QPainterPath chest;
        chest.addRoundedRect(QRectF(15.5, 15, 7.2, 12.6), 3.6, 3.6);
        shape(chest, fur_);
        QPainterPath legs;
        legs.moveTo(17.8, 20);
        legs.lineTo(17.8, 27.4);
        legs.moveTo(20.7, 20);
        legs.lineTo(20.7, 27.4);
        limb(legs, 2.4, fur_);
        p_.setPen(Qt::NoPen);
        p_.setBrush(fur_.lighter(118));
        p_.drawRoundedRect(QRectF(17.2, 16.5, 4.2, 3.2), 1.5, 1.5);
        Anchors a;
        a.head = QPointF(20.2, 11.4);
        a.headRadius = 4.9;
        a.back = QPointF(12, 17);
        head(a.head, a.headRadius, false, false, false);
        return a;
    }

    Anchors sleep() {
        const qreal breath = 1 + 0.05 * qSin(2 * M_PI * phase_);
        QPainterPath loaf;
        loaf.addEllipse(QPointF(15, 28 - 5.4 * breath), 10.2, 5.4 * breath);
        shape(loaf, fur_);
        QPainterPath t({6.5, 25.5});
        t.cubicTo(QPointF(6, 29), QPointF(14, 29.2), QPointF(19.5, 27.6));
        limb(t, 2.0, fur_.darker(112));
        Anchors a;
        a.head = QPointF(22.6, 23.4 - (breath - 1) * 5);
        a.headRadius = 4.4;
        a.back = QPointF(13, 28 - 10.8 * breath);
        a.tilt = 8;
        ears(a.head, a.headRadius, 0.3, fur_);
        QPainterPath h;
        h.addEllipse(a.head, a.headRadius * 1.05, a.headRadius * 0.9);
        shape(h, fur_);
        QPainterPath lid;
        const QPointF eye = a.head + QPointF(1.6, -0.2);
        lid.moveTo(eye + QPointF(-1.2, 0));
        lid.quadTo(eye + QPointF(0, 1.0), eye + QPointF(1.2, 0));
        p_.setBrush(Qt::NoBrush);
        p_.setPen(outlinePen(1.1));
        p_.drawPath(lid);
        // Two z's drifting up over the loop.
        for (int i = 0; i < 2; ++i) {
            const qreal t01 = std::fmod(phase_ + i * 0.5, 1.0);
            const qreal size = 2.6 + i * 0.8 - t01 * 0.6;
            const QPointF o(25.5 + t01 * 2.0 - i * 0.5, 14.5 - t01 * 9.0 - i * 1.0);
            QPainterPath z(o);
            z.lineTo(o + QPointF(size, 0));
            z.lineTo(o + QPointF(0, size));
            z.lineTo(o + QPointF(size, size));
            p_.setBrush(Qt::NoBrush);
            p_.setPen(QPen(s_.outline, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
            p_.drawPath(z);
            p_.setPen(QPen(QColor(0xB8, 0xC8, 0xFF), 0.7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
            p_.drawPath(z);
        }
        return a;
    }

    Anchors celebrate() {
        const qreal hop = qSin(M_PI * phase_) * 3.6;
        p_.save();
        p_.translate(0, -hop);
        QPainterPath t({10, 24});
        t.cubicTo(QPointF(6, 23), QPointF(4.5, 19), QPointF(6 + qSin(2 * M_PI * phase_) * 1.5, 14.5));
        limb(t, 2.2, fur_);
        QPainterPath back;
        back.moveTo(11.5, 24);
        back.lineTo(11, 27.6);
        back.moveTo(16.5, 24);
        back.lineTo(17, 27.6);
        limb(back, 2.6, farFur_);
        QPainterPath body;
        body.addRoundedRect(QRectF(9.5, 14.5, 10.5, 11.5), 4.8, 4.8);
        shape(body, fur_);
        // Paws up.
        const qreal wave = qSin(2 * M_PI * phase_) * 0.25;
        QPainterPath arms;
        arms.moveTo(17.5, 17.5);
        arms.lineTo(22.5 + wave * 3, 13.5 - wave * 2);
        arms.moveTo(15.5, 17.5);
        arms.lineTo(19.5 - wave * 3, 12.5 + wave * 2);
        limb(arms, 2.4, fur_);
        Anchors a;
        a.head = QPointF(16.8, 10.2);
        a.headRadius = 4.8;
        a.back = QPointF(12, 15);
        head(a.head, a.headRadius, false, false, false);
        // An open, smiling mouth.
        QPainterPath mouth;
        mouth.moveTo(a.head + QPointF(2.2, 1.8));
        mouth.quadTo(a.head + QPointF(3.2, 3.2), a.head + QPointF(4.3, 1.6));
        p_.setBrush(Qt::NoBrush);
        p_.setPen(outlinePen(0.8));
        p_.drawPath(mouth);
        p_.restore();
        sparkles(hop);
        a.head.ry() -= hop;
        a.back.ry() -= hop;
        return a;
    }

    void sparkles(qreal hop) {
        const QPointF spots[] = {{4, 6}, {27.5, 5}, {28.5, 17}};
        for (int i = 0; i < 3; ++i) {
            const qreal t01 = std::fmod(phase_ + i / 3.0, 1.0);
            const qreal r = 0.8 + 1.6 * qSin(M_PI * t01);
            star(spots[i] + QPointF(0, hop * 0.2), r, QColor(0xFF, 0xD4, 0x3B));
        }
    }

    void star(QPointF c, qreal r, const QColor& color) {
        QPainterPath s;
        s.moveTo(c + QPointF(0, -r));
        s.quadTo(c, c + QPointF(r, 0));
        s.quadTo(c, c + QPointF(0, r));
        s.quadTo(c, c + QPointF(-r, 0));
        s.quadTo(c, c + QPointF(0, -r));
        p_.setPen(outlinePen(0.7));
        p_.setBrush(color);
        p_.drawPath(s);
    }

    void speedLines(qreal bodyY) {
        p_.setBrush(Qt::NoBrush);
        const qreal shift = std::fmod(phase_ * 3, 1.0) * 1.5;
        for (int i = 0; i < 3; ++i) {
            const qreal y = bodyY - 3 + i * 3;
            const qreal x0 = 0.5 + shift + (i % 2) * 1.2;
            p_.setPen(QPen(s_.outline, 1.1, Qt::SolidLine, Qt::RoundCap));
            p_.drawLine(QPointF(x0, y), QPointF(x0 + 3.2, y));
        }
    }

    void heatWaves() {
        p_.setBrush(Qt::NoBrush);
        for (int i = 0; i < 2; ++i) {
            const qreal x = 8 + i * 6;
            const qreal lift = std::fmod(phase_ + i * 0.5, 1.0) * 1.5;
            QPainterPath wave({x, 10 - lift});
            wave.cubicTo(QPointF(x - 1.4, 8.5 - lift), QPointF(x + 1.4, 7 - lift), QPointF(x, 5.5 - lift));
            wave.cubicTo(QPointF(x - 1.4, 4 - lift), QPointF(x + 1.4, 3 - lift), QPointF(x, 2 - lift));
            p_.setPen(QPen(s_.outline, 1.8, Qt::SolidLine, Qt::RoundCap));
            p_.drawPath(wave);
            p_.setPen(QPen(QColor(0xFF, 0x6B, 0x3D), 0.9, Qt::SolidLine, Qt::RoundCap));
            p_.drawPath(wave);
        }
    }

    void batteryIcon() {
        const QRectF body(2, 3, 7.5, 4.4);
        p_.setPen(outlinePen(1.0));
        p_.setBrush(Qt::white);
        p_.drawRoundedRect(body, 0.8, 0.8);
        p_.setBrush(s_.outline);
        p_.drawRect(QRectF(9.5, 4.3, 0.9, 1.8));
        // The level blinks on alternate halves of the loop.
        if (phase_ < 0.5) {
            p_.setPen(Qt::NoPen);
            p_.setBrush(QColor(0xE5, 0x39, 0x35));
            p_.drawRect(QRectF(2.9, 3.9, 1.7, 2.6));
        }
    }

    void rain() {
        p_.setPen(QPen(QColor(0x4F, 0x8D, 0xE8), 1.0, Qt::SolidLine, Qt::RoundCap));
        const QPointF drops[] = {{3, 2}, {29, 4}, {27, 12}, {5, 11}};
        for (int i = 0; i < 4; ++i) {
            const qreal fall = std::fmod(phase_ + i * 0.27, 1.0) * 5;
            const QPointF d = drops[i] + QPointF(-fall * 0.3, fall);
            p_.drawLine(d, d + QPointF(-0.5, 1.6));
        }
    }

    // Accessories sit on top of every pose, in a fixed order.
    void accessories(const Anchors& a) {
        const auto& acc = s_.accessories;
        if (acc.contains(MascotAccessories::backpack)) backpack(a);
        if (acc.contains(MascotAccessories::nightcap)) {
            nightcap(a);
        } else if (acc.contains(MascotAccessories::halloweenHat)) {
            witchHat(a);
        } else if (acc.contains(MascotAccessories::holidayHat)) {
            holidayHat(a);
        }
        if (acc.contains(MascotAccessories::sweat)) sweatDrop(a);
        if (acc.contains(MascotAccessories::umbrella)) umbrella(a);
        if (acc.contains(MascotAccessories::charging)) bolt();
        if (acc.contains(MascotAccessories::gpuBadge)) badge(QColor(0x8E, 0x5B, 0xE8));
        else if (acc.contains(MascotAccessories::memoryBadge)) badge(QColor(0x3C, 0xB3, 0x71));
        else if (acc.contains(MascotAccessories::networkBadge)) badge(QColor(0x2F, 0x86, 0xEB));
    }

    void backpack(const Anchors& a) {
        const QRectF pack(a.back.x() - 3.2, a.back.y() - 2.6, 6.0, 5.0);
        p_.setPen(outlinePen(1.1));
        p_.setBrush(QColor(0x3F, 0x7F, 0xD9));
        p_.drawRoundedRect(pack, 1.4, 1.4);
        p_.setBrush(QColor(0x2C, 0x5F, 0xAB));
        p_.drawRoundedRect(QRectF(pack.x() + 1.0, pack.y() + 2.4, 4.0, 2.0), 0.6, 0.6);
    }

    // Hats are drawn in head coordinates so they follow the pose.
    void onHead(const Anchors& a, const std::function<void()>& draw) {
        p_.save();
        p_.translate(a.head);
        p_.rotate(a.tilt);
        p_.scale(a.headRadius / 4.7, a.headRadius / 4.7);
        draw();
        p_.restore();
    }

    void nightcap(const Anchors& a) {
        onHead(a, [&] {
            QPainterPath cap;
            cap.moveTo(-4.6, -2.6);
            cap.quadTo(-1, -8.5, 3.8, -3.4);
            cap.quadTo(-1.5, -6.0, -8.2, -2.0);
            cap.closeSubpath();
            p_.setPen(outlinePen(1.1));
            p_.setBrush(QColor(0x5B, 0x6E, 0xE1));
            p_.drawPath(cap);
            p_.setBrush(Qt::white);
            p_.drawEllipse(QPointF(-8.2, -1.8), 1.4, 1.4);
            p_.drawRoundedRect(QRectF(-5.2, -3.6, 9.4, 1.8), 0.9, 0.9);
        });
    }

    void witchHat(const Anchors& a) {
        onHead(a, [&] {
            QPainterPath hat;
            hat.moveTo(-3.4, -4.2);
            hat.lineTo(-0.6, -11.5);
            hat.lineTo(3.2, -4.4);
            hat.closeSubpath();
            p_.setPen(outlinePen(1.0));
            p_.setBrush(QColor(0x2A, 0x22, 0x33));
            p_.drawPath(hat);
            p_.drawRoundedRect(QRectF(-6.2, -5.0, 12.2, 1.8), 0.9, 0.9);
            p_.setPen(Qt::NoPen);
            p_.setBrush(QColor(0xF2, 0x8C, 0x28));
            p_.drawRect(QRectF(-2.9, -6.2, 5.6, 1.1));
        });
    }

    void holidayHat(const Anchors& a) {
        onHead(a, [&] {
            QPainterPath hat;
            hat.moveTo(-4.2, -3.8);
            hat.quadTo(-0.5, -11, 3.8, -4.0);
            hat.closeSubpath();
            p_.setPen(outlinePen(1.0));
            p_.setBrush(QColor(0xD9, 0x2B, 0x2B));
            p_.drawPath(hat);
            p_.setBrush(Qt::white);
            p_.drawRoundedRect(QRectF(-5.0, -4.6, 9.8, 2.0), 1.0, 1.0);
            p_.drawEllipse(QPointF(-1.8, -9.6), 1.3, 1.3);
        });
    }

    void sweatDrop(const Anchors& a) {
        const QPointF top = a.head + QPointF(-a.headRadius * 1.2, -a.headRadius * 0.9);
        QPainterPath drop(top);
        drop.quadTo(top + QPointF(1.6, 2.4), top + QPointF(0, 3.2));
        drop.quadTo(top + QPointF(-1.6, 2.4), top);
        p_.setPen(outlinePen(0.8));
        p_.setBrush(QColor(0x7F, 0xC8, 0xFF));
        p_.drawPath(drop);
    }

    void umbrella(const Anchors& a) {
        const qreal cx = a.back.x() + 1, top = 1.6;
        QPainterPath handle({cx, top + 4});
        handle.lineTo(cx, a.back.y() - 0.5);
        handle.quadTo(cx, a.back.y() + 1.2, cx - 1.4, a.back.y() + 0.6);
        p_.setBrush(Qt::NoBrush);
        p_.setPen(outlinePen(1.3));
        p_.drawPath(handle);
        QPainterPath canopy({cx - 10, top + 5});
        canopy.cubicTo(QPointF(cx - 9, top - 1.2), QPointF(cx + 9, top - 1.2), QPointF(cx + 10, top + 5));
        // Scalloped rim.
        for (int i = 0; i < 4; ++i) {
            const qreal x1 = cx + 10 - (i + 1) * 5;
            canopy.quadTo(QPointF(x1 + 2.5, top + 3.4), QPointF(x1, top + 5));
        }
        p_.setPen(outlinePen(1.1));
        p_.setBrush(QColor(0xE5, 0x3E, 0x4D));
        p_.drawPath(canopy);
        p_.setPen(QPen(QColor(0xFF, 0xFF, 0xFF, 150), 0.8));
        p_.drawLine(QPointF(cx, top + 0.4), QPointF(cx, top + 4.2));
    }

    void bolt() {
        QPolygonF b{{5.2, 0.8}, {1.6, 6.4}, {4.2, 6.4}, {2.8, 11.2}, {7.4, 4.6}, {4.8, 4.6}, {6.6, 0.8}};
        p_.setPen(outlinePen(1.0));
        p_.setBrush(QColor(0xFF, 0xD2, 0x3F));
        p_.drawPolygon(b);
    }

    void badge(const QColor& color) {
        p_.setPen(outlinePen(1.0));
        p_.setBrush(color);
        p_.drawEllipse(QPointF(28.6, 3.4), 2.6, 2.6);
        p_.setPen(Qt::NoPen);
        p_.setBrush(Qt::white);
        p_.drawEllipse(QPointF(28.6, 3.4), 0.9, 0.9);
    }

    QPainter& p_;
    const CatFrameSpec& s_;
    QColor fur_, farFur_;
    qreal phase_ = 0;
};

}  // namespace

QImage drawCatFrame(const CatFrameSpec& spec) {
    const qreal dpr = spec.devicePixelRatio > 0 ? spec.devicePixelRatio : 1;
    const int side = qMax(1, qRound(spec.pixelSize * dpr));
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    image.setDevicePixelRatio(dpr);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    // The painter already maps logical to device pixels through the image's pixel ratio.
    p.scale(side / dpr / grid, side / dpr / grid);
    Artist(p, spec).draw();
    p.end();
    return image;
}

QColor furForSignature(std::uint32_t rgb) { return QColor::fromRgb(rgb | 0xFF000000u); }

QColor outlineForFur(const QColor& fur) {
    // Dark enough to edge the shape on a light panel, still tinted with the fur.
    QColor c = fur.toHsl();
    return QColor::fromHslF(c.hslHueF() < 0 ? 0 : c.hslHueF(), qMin<qreal>(c.hslSaturationF(), 0.5), 0.13);
}

}  // namespace trotlet::mascot
