#include "mascot/qt/art/MascotRig.h"

#include <QtMath>

#include <algorithm>

#include <cmath>

namespace trotlet::mascot::art {

QColor mixColors(const QColor& a, const QColor& b, qreal t) {
    return QColor::fromRgbF(a.redF() + (b.redF() - a.redF()) * t,
                            a.greenF() + (b.greenF() - a.greenF()) * t,
                            a.blueF() + (b.blueF() - a.blueF()) * t, a.alphaF());
}

Rig::Rig(QPainter& painter, const FrameRequest& request, const Palette& palette)
    : p_(painter), request_(request), palette_(palette) {
    // Loops of 6, 10, 14 ... frames sample a sine at points mirrored about its peak on two
    // neighbouring frames (60 and 120 degrees), which would draw the same pose twice in a row;
    // half a frame's offset moves the samples off that symmetry. Loops of 4, 8, 12 ... frames
    // don't have it at 0 and would get it from the offset.
    if (request.frames > 0) {
        const int i = ((request.frame % request.frames) + request.frames) % request.frames;
        phase_ = (i + (request.frames % 4 == 2 ? 0.5 : 0.0)) / request.frames;
    }
    // Overheated mascots flush red all over, so the mood reads even without the heat waves.
    if (hot()) {
        const QColor red(0xE5, 0x48, 0x3A);
        palette_.body = mixColors(palette_.body, red, 0.35);
        palette_.shade = mixColors(palette_.shade, red, 0.3);
        palette_.light = mixColors(palette_.light, red, 0.2);
    }
    const qreal unit = request.pixelSize / gridSize;  // logical pixels per grid unit
    stroke_ = small() ? std::clamp(1.1 / unit, 1.4, 2.2) : 1.15;
}

qreal Rig::wave(qreal offset, qreal cycles) const {
    return qSin(2 * M_PI * (cycles * phase_ + offset));
}

qreal Rig::arc(qreal offset) const { return qSin(M_PI * std::fmod(phase_ + offset + 1, 1.0)); }

QPen Rig::outlinePen(qreal width) const {
    return QPen(palette_.outline, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

void Rig::shape(const QPainterPath& path, const QColor& fill, qreal edge) {
    p_.setPen(outlinePen(stroke_ * edge));
    p_.setBrush(fill);
    p_.drawPath(path);
}

void Rig::ellipse(QPointF centre, qreal rx, qreal ry, const QColor& fill, qreal edge) {
    QPainterPath path;
    path.addEllipse(centre, rx, ry);
    shape(path, fill, edge);
}

void Rig::merged(const QPainterPath& shapes, const QColor& fill) {
    p_.setPen(outlinePen(stroke_));
    p_.setBrush(Qt::NoBrush);
    p_.drawPath(shapes);
    p_.setPen(Qt::NoPen);
    p_.setBrush(fill);
    p_.drawPath(shapes);
}

void Rig::patchWithin(const QPainterPath& shape, const QPainterPath& path, const QColor& fill) {
    p_.save();
    p_.setClipPath(shape, Qt::IntersectClip);
    patch(path, fill);
    p_.restore();
}

void Rig::limb(const QPainterPath& path, qreal width, const QColor& fill, qreal edge) {
    p_.setBrush(Qt::NoBrush);
    p_.setPen(outlinePen(width + 2 * stroke_ * edge));
    p_.drawPath(path);
    p_.setPen(QPen(fill, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p_.drawPath(path);
}

QPointF Rig::leg(QPointF hip, qreal angle, qreal length, qreal width, const QColor& fill,
                 qreal bend, qreal ground) {
    const QPointF knee = hip + QPointF(qSin(angle), qCos(angle)) * (length * 0.55);
    const qreal lower = angle + bend;
    QPointF foot = knee + QPointF(qSin(lower), qCos(lower)) * (length * 0.45);
    if (foot.y() > ground) foot.setY(ground);
    QPainterPath path(hip);
    path.lineTo(knee);
    path.lineTo(foot);
    limb(path, width, fill);
    return foot;
}

void Rig::patch(const QPainterPath& path, const QColor& fill) {
    p_.setPen(Qt::NoPen);
    p_.setBrush(fill);
    p_.drawPath(path);
}

void Rig::patchEllipse(QPointF centre, qreal rx, qreal ry, const QColor& fill) {
    p_.setPen(Qt::NoPen);
    p_.setBrush(fill);
    p_.drawEllipse(centre, rx, ry);
}

void Rig::line(const QPainterPath& path, qreal width, const QColor& colour) {
    p_.setBrush(Qt::NoBrush);
    p_.setPen(QPen(colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p_.drawPath(path);
}

void Rig::line(QPointF a, QPointF b, qreal width, const QColor& colour) {
    p_.setPen(QPen(colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p_.drawLine(a, b);
}

Eyes Rig::eyes() const {
    switch (mood()) {
        case MascotMood::sleeping:
            return Eyes::closed;
        case MascotMood::celebrating:
            return request_.blink ? Eyes::closed : Eyes::happy;
        default:
            break;
    }
    if (request_.blink) return Eyes::closed;
    switch (mood()) {
        case MascotMood::panic:
            return Eyes::wide;
        case MascotMood::lowBattery:
            return Eyes::sleepy;
        case MascotMood::offline:
            return Eyes::sad;
        default:
            return Eyes::open;
    }
}

void Rig::eye(QPointF c, qreal size, std::optional<Eyes> style) {
    Eyes e = style.value_or(eyes());
    if (request_.blink && (e == Eyes::open || e == Eyes::wide || e == Eyes::sad)) e = Eyes::closed;
    const QColor ink = palette_.outline;
    const qreal lidWidth = std::max(stroke_ * 0.75, size * 0.7);
    switch (e) {
        case Eyes::open:
        case Eyes::sad: {
            patchEllipse(c, size, size * 1.15, ink);
            if (detailed())
                patchEllipse(c + QPointF(size * 0.35, -size * 0.4), size * 0.35, size * 0.35,
                             Qt::white);
            if (e == Eyes::sad)
                line(c + QPointF(-size * 1.2, -size * 1.6), c + QPointF(size * 0.9, -size * 2.2),
                     lidWidth * 0.8, ink);
            break;
        }
        case Eyes::wide: {
            p_.setPen(outlinePen(stroke_ * 0.55));
            p_.setBrush(Qt::white);
            p_.drawEllipse(c, size * 1.5, size * 1.7);
            patchEllipse(c + QPointF(size * 0.35, 0), size * 0.7, size * 0.8, ink);
            break;
        }
        case Eyes::closed: {
            QPainterPath lid(c + QPointF(-size * 1.1, 0));
            lid.quadTo(c + QPointF(0, size * 0.8), c + QPointF(size * 1.1, 0));
            line(lid, lidWidth, ink);
            break;
        }
        case Eyes::sleepy: {
            QPainterPath half(c + QPointF(-size * 1.05, -size * 0.1));
            half.lineTo(c + QPointF(size * 1.05, -size * 0.1));
            half.arcTo(QRectF(c.x() - size * 1.05, c.y() - size * 1.1, size * 2.1, size * 2.0), 0,
                       -180);
            patch(half, ink);
            line(c + QPointF(-size * 1.3, -size * 0.2), c + QPointF(size * 1.3, -size * 0.2),
                 lidWidth * 0.8, ink);
            break;
        }
        case Eyes::happy: {
            QPainterPath arcPath(c + QPointF(-size * 1.1, size * 0.4));
            arcPath.quadTo(c + QPointF(0, -size * 1.2), c + QPointF(size * 1.1, size * 0.4));
            line(arcPath, lidWidth, ink);
            break;
        }
    }
}

void Rig::nose(QPointF c, qreal size, const QColor& fill) {
    p_.setPen(outlinePen(stroke_ * 0.45));
    p_.setBrush(fill);
    p_.drawEllipse(c, size, size * 0.8);
}

void Rig::tongue(QPointF top, qreal size) {
    p_.setPen(outlinePen(stroke_ * 0.45));
    p_.setBrush(QColor(0xF0, 0x5A, 0x78));
    p_.drawEllipse(top + QPointF(0, size * 0.9), size * 0.75, size * 1.05);
}

void Rig::smile(QPointF from, QPointF to, qreal depth) {
    QPainterPath m(from);
    m.quadTo((from + to) / 2 + QPointF(0, depth), to);
    line(m, std::max(stroke_ * 0.5, 0.7), palette_.outline);
}

void Rig::blush(QPointF c, qreal size) {
    if (small()) return;
    patchEllipse(c, size, size * 0.6, QColor(0xFF, 0x7A, 0x9A, 120));
}

LegSwing Rig::swing(FourBeat gait, qreal phase, qreal amp) {
    const qreal w = 2 * M_PI * phase;
    auto s = [&](qreal offset) { return amp * qSin(w + offset); };
    switch (gait) {
        case FourBeat::walk:
            return {s(M_PI / 2), s(3 * M_PI / 2), s(0), s(M_PI)};
        case FourBeat::trot:
            return {s(0), s(M_PI), s(M_PI), s(0)};
        case FourBeat::gallop:
            return {s(0), s(0.6), s(M_PI), s(M_PI + 0.6)};
        case FourBeat::bound:
            return {s(0), s(0.22), s(M_PI), s(M_PI + 0.22)};
    }
    return {};
}

qreal Rig::bounce(FourBeat gait, qreal phase, qreal height) {
    const qreal w = 2 * M_PI * phase;
    switch (gait) {
        case FourBeat::walk:
            return -qAbs(qSin(2 * w)) * height * 0.5;
        case FourBeat::trot:
            return -qAbs(qSin(w)) * height;
        case FourBeat::gallop:
        case FourBeat::bound:
            return -qMax<qreal>(0, qSin(w)) * height;
    }
    return 0;
}

void Rig::behind(const std::function<void()>& draw) {
    p_.save();
    p_.setCompositionMode(QPainter::CompositionMode_DestinationOver);
    draw();
    p_.restore();
}

void Rig::star(QPointF c, qreal r, const QColor& fill) {
    QPainterPath s(c + QPointF(0, -r));
    s.quadTo(c, c + QPointF(r, 0));
    s.quadTo(c, c + QPointF(0, r));
    s.quadTo(c, c + QPointF(-r, 0));
    s.quadTo(c, c + QPointF(0, -r));
    p_.setPen(outlinePen(stroke_ * 0.5));
    p_.setBrush(fill);
    p_.drawPath(s);
}

}  // namespace trotlet::mascot::art
