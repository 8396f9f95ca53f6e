// The rig's second half: what goes on top of a pose. Mood effects and accessories are the same
// objects for every mascot; the anchors a pose returns put them on its body.
#include <QPolygonF>
#include <QtMath>

#include <algorithm>
#include <cmath>

#include "mascot/qt/art/MascotRig.h"

namespace trotlet::mascot::art {

void Rig::moodEffects(const Anchors& a) {
    switch (mood()) {
        case MascotMood::panic:
            speedLines(a);
            break;
        case MascotMood::overheated:
            heatWaves(a);
            break;
        case MascotMood::lowBattery:
            batteryIcon();
            break;
        case MascotMood::offline:
            rain();
            break;
        case MascotMood::sleeping:
            sleepyZs(a);
            break;
        case MascotMood::celebrating:
            sparkles(a);
            break;
        case MascotMood::sitting:
        case MascotMood::running:
            break;
    }
}

void Rig::speedLines(const Anchors& a) {
    // Streaks behind the mascot, racing back twice per stride.
    const qreal shift = std::fmod(phase_ * 2, 1.0) * 1.8;
    const qreal top = std::clamp(a.back.y() - 1.0, 6.0, 22.0);
    behind([&] {
        for (int i = 0; i < 3; ++i) {
            const qreal y = top + i * 3.2;
            const qreal x0 = 1.6 + shift + (i % 2) * 1.3;
            line(QPointF(x0, y), QPointF(x0 + 3.4, y), pick(1.5, 1.1), palette_.outline);
        }
    });
}

void Rig::heatWaves(const Anchors& a) {
    for (int i = 0; i < 2; ++i) {
        const qreal x = std::clamp(a.back.x() - 5 + i * 6, 2.5, 29.5);
        const qreal lift = std::fmod(phase_ + i * 0.5, 1.0) * 1.5;
        const qreal base = std::max(a.back.y() - 2.5, 9.5);
        QPainterPath w({x, base - lift});
        w.cubicTo(QPointF(x - 1.4, base - 1.5 - lift), QPointF(x + 1.4, base - 3 - lift),
                  QPointF(x, base - 4.5 - lift));
        w.cubicTo(QPointF(x - 1.4, base - 6 - lift), QPointF(x + 1.4, base - 7 - lift),
                  QPointF(x, std::max(base - 8 - lift, 2.4)));
        line(w, stroke_ + 0.9, palette_.outline);
        line(w, 0.9, QColor(0xFF, 0x6B, 0x3D));
    }
}

void Rig::batteryIcon() {
    const QRectF body(1.6, 2.2, 7.5, 4.4);
    p_.setPen(outlinePen(stroke_ * 0.7));
    p_.setBrush(Qt::white);
    p_.drawRoundedRect(body, 0.8, 0.8);
    p_.setBrush(palette_.outline);
    p_.drawRect(QRectF(9.1, 3.5, 0.9, 1.8));
    // The last bar of charge blinks on alternate halves of the loop.
    if (phase_ < 0.5) {
        p_.setPen(Qt::NoPen);
        p_.setBrush(QColor(0xE5, 0x39, 0x35));
        p_.drawRect(QRectF(2.5, 3.1, 1.8, 2.6));
    }
}

void Rig::rain() {
    const QPointF drops[] = {{3, 2}, {29, 3}, {27.5, 11}, {5, 10}, {16, 1}};
    for (int i = 0; i < 5; ++i) {
        const qreal fall = std::fmod(phase_ + i * 0.27, 1.0) * 5;
        const QPointF d = drops[i] + QPointF(-fall * 0.3, fall);
        line(d, d + QPointF(-0.5, 1.7), pick(1.3, 1.0), QColor(0x4F, 0x8D, 0xE8));
    }
}

void Rig::sleepyZs(const Anchors& a) {
    // Two z's drifting up and away from the head over the loop.
    const QPointF start = a.head + QPointF(a.headRadius * 0.6, -a.headRadius * 1.3);
    for (int i = 0; i < 2; ++i) {
        const qreal t = std::fmod(phase_ + i * 0.5, 1.0);
        const qreal size = pick(3.0, 2.6) - t * 0.6;
        QPointF o = start + QPointF(t * 2.5, -t * 8.0);
        o.setX(std::min(o.x(), 30.5 - size));
        o.setY(std::max(o.y(), 2.0));
        QPainterPath z(o);
        z.lineTo(o + QPointF(size, 0));
        z.lineTo(o + QPointF(0, size));
        z.lineTo(o + QPointF(size, size));
        line(z, stroke_ + 0.8, palette_.outline);
        line(z, 0.8, QColor(0xB8, 0xC8, 0xFF));
    }
}

void Rig::sparkles(const Anchors& a) {
    const QPointF spots[] = {{3.8, 6}, {27.6, 5}, {28.0, 17}};
    for (int i = 0; i < 3; ++i) {
        const qreal t = std::fmod(phase_ + i / 3.0, 1.0);
        const qreal r = pick(1.2, 0.8) + 1.6 * qSin(M_PI * t);
        star(spots[i] + QPointF(0, (a.head.y() - 12) * 0.15), r, QColor(0xFF, 0xD4, 0x3B));
    }
}

void Rig::accessoriesAt(const Anchors& a) {
    const auto& acc = request_.accessories;
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
    if (acc.contains(MascotAccessories::charging)) chargingBolt();
    if (acc.contains(MascotAccessories::gpuBadge)) {
        badge(QColor(0x8E, 0x5B, 0xE8));
    } else if (acc.contains(MascotAccessories::memoryBadge)) {
        badge(QColor(0x3C, 0xB3, 0x71));
    } else if (acc.contains(MascotAccessories::networkBadge)) {
        badge(QColor(0x2F, 0x86, 0xEB));
    }
}

void Rig::backpack(const Anchors& a) {
    p_.save();
    p_.translate(a.back);
    p_.rotate(a.backTilt);
    const QRectF pack(-3.2, -2.6, 6.0, 5.0);
    p_.setPen(outlinePen(stroke_ * 0.75));
    p_.setBrush(QColor(0x3F, 0x7F, 0xD9));
    p_.drawRoundedRect(pack, 1.4, 1.4);
    p_.setBrush(QColor(0x2C, 0x5F, 0xAB));
    p_.drawRoundedRect(QRectF(-2.2, -0.2, 4.0, 2.0), 0.6, 0.6);
    p_.restore();
}

// Hats are drawn with the brim's centre at the origin, so they follow the head's tilt and size.
void Rig::inHatSpace(const Anchors& a, const std::function<void()>& draw) {
    p_.save();
    p_.translate(a.crownPoint());
    p_.rotate(a.tilt);
    p_.scale(a.hatScale, a.hatScale);
    draw();
    p_.restore();
}

void Rig::nightcap(const Anchors& a) {
    inHatSpace(a, [&] {
        QPainterPath cap({-4.6, 1.2});
        cap.quadTo(-1, -4.7, 3.8, 0.4);
        cap.quadTo(-1.5, -2.2, -7.6, 2.0);
        cap.closeSubpath();
        p_.setPen(outlinePen(stroke_ * 0.75));
        p_.setBrush(QColor(0x5B, 0x6E, 0xE1));
        p_.drawPath(cap);
        p_.setBrush(Qt::white);
        p_.drawEllipse(QPointF(-7.6, 2.2), 1.4, 1.4);
        p_.drawRoundedRect(QRectF(-5.2, 0.2, 9.4, 1.8), 0.9, 0.9);
    });
}

void Rig::witchHat(const Anchors& a) {
    inHatSpace(a, [&] {
        QPainterPath hat({-3.4, -0.4});
        hat.lineTo(-0.4, -7.4);
        hat.lineTo(3.2, -0.6);
        hat.closeSubpath();
        p_.setPen(outlinePen(stroke_ * 0.7));
        p_.setBrush(QColor(0x2A, 0x22, 0x33));
        p_.drawPath(hat);
        p_.drawRoundedRect(QRectF(-6.0, -1.1, 12.0, 1.8), 0.9, 0.9);
        p_.setPen(Qt::NoPen);
        p_.setBrush(QColor(0xF2, 0x8C, 0x28));
        p_.drawRect(QRectF(-2.9, -2.4, 5.6, 1.1));
    });
}

void Rig::holidayHat(const Anchors& a) {
    inHatSpace(a, [&] {
        QPainterPath hat({-4.2, 0.0});
        hat.quadTo(-0.8, -7.4, 3.8, -0.2);
        hat.closeSubpath();
        p_.setPen(outlinePen(stroke_ * 0.7));
        p_.setBrush(QColor(0xD9, 0x2B, 0x2B));
        p_.drawPath(hat);
        p_.setBrush(Qt::white);
        p_.drawRoundedRect(QRectF(-5.0, -0.8, 9.8, 2.0), 1.0, 1.0);
        p_.drawEllipse(QPointF(-2.2, -5.6), 1.3, 1.3);
    });
}

void Rig::sweatDrop(const Anchors& a) {
    const QPointF top = a.browPoint();
    // The drop slides down a little over the loop.
    const QPointF t = top + QPointF(0, std::fmod(phase_ * 2, 1.0) * 0.8);
    QPainterPath drop(t);
    drop.quadTo(t + QPointF(1.7, 2.5), t + QPointF(0, 3.3));
    drop.quadTo(t + QPointF(-1.7, 2.5), t);
    p_.setPen(outlinePen(stroke_ * 0.55));
    p_.setBrush(QColor(0x7F, 0xC8, 0xFF));
    p_.drawPath(drop);
}

void Rig::umbrella(const Anchors& a) {
    const QPointF grip = a.gripPoint();
    // The canopy stays on the canvas whatever the grip; the shaft leans to reach the grip.
    const qreal cx = std::clamp(grip.x() + 1, 11.0, 21.0), top = 1.4;
    QPainterPath handle({cx, top + 4});
    handle.lineTo(grip + QPointF(0, -1.2));
    handle.quadTo(grip + QPointF(0, 0.6), grip + QPointF(-1.4, 0.1));
    line(handle, stroke_ + 1.0, palette_.outline);
    line(handle, 0.9, QColor(0x6B, 0x4A, 0x2F));
    QPainterPath canopy({cx - 10, top + 5});
    canopy.cubicTo(QPointF(cx - 9, top - 1.2), QPointF(cx + 9, top - 1.2),
                   QPointF(cx + 10, top + 5));
    // A scalloped rim.
    for (int i = 0; i < 4; ++i) {
        const qreal x1 = cx + 10 - (i + 1) * 5;
        canopy.quadTo(QPointF(x1 + 2.5, top + 3.4), QPointF(x1, top + 5));
    }
    p_.setPen(outlinePen(stroke_ * 0.75));
    p_.setBrush(QColor(0xE5, 0x3E, 0x4D));
    p_.drawPath(canopy);
    if (detailed())
        line(QPointF(cx, top + 0.4), QPointF(cx, top + 4.2), 0.8, QColor(255, 255, 255, 150));
}

void Rig::chargingBolt() {
    const QPolygonF b{{5.4, 0.9}, {1.8, 6.4}, {4.3, 6.4}, {3.0, 11.0},
                      {7.4, 4.7}, {4.9, 4.7}, {6.8, 0.9}};
    p_.setPen(outlinePen(stroke_ * 0.7));
    p_.setBrush(QColor(0xFF, 0xD2, 0x3F));
    p_.drawPolygon(b);
}

void Rig::badge(const QColor& colour) {
    const QPointF c(28.3, 3.7);
    p_.setPen(outlinePen(stroke_ * 0.7));
    p_.setBrush(colour);
    p_.drawEllipse(c, 2.4, 2.4);
    patchEllipse(c, 0.9, 0.9, Qt::white);
}

}  // namespace trotlet::mascot::art
