#include "ui/theme/Icons.h"

#include "ui/theme/ShopIcons.h"
#include "ui/theme/SettingsIcons.h"

#include <QPainter>
#include <QPainterPath>

#include <array>
#include <cmath>
#include <functional>

namespace trotlet::ui {
namespace {

// Every drawer paints on a 24 x 24 grid; `paint` scales it to the box.
using Drawer = std::function<void(QPainter&, const QColor&)>;

QPen stroke(const QColor& c, qreal width = 2) {
    return QPen(c, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

QPainterPath cloudPath(qreal dx = 0, qreal dy = 0, qreal s = 1) {
    QPainterPath p;
    p.setFillRule(Qt::WindingFill);
    auto circle = [&](qreal x, qreal y, qreal r) {
        p.addEllipse(QPointF(dx + x * s, dy + y * s), r * s, r * s);
    };
    circle(8, 14, 4.5);
    circle(13, 11, 5.5);
    circle(17.5, 14.5, 4);
    p.addRoundedRect(QRectF(dx + 4 * s, dy + 13 * s, 17 * s, 5.5 * s), 2.7 * s, 2.7 * s);
    return p.simplified();
}

void sun(QPainter& p, const QColor& c, QPointF centre, qreal r, bool rays) {
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawEllipse(centre, r, r);
    if (!rays) return;
    p.setPen(stroke(c, 1.8));
    for (int i = 0; i < 8; ++i) {
        const qreal a = i * M_PI / 4;
        p.drawLine(centre + QPointF(std::cos(a), std::sin(a)) * (r + 2.2),
                   centre + QPointF(std::cos(a), std::sin(a)) * (r + 4.2));
    }
}

void moon(QPainter& p, const QColor& c, QPointF centre, qreal r) {
    QPainterPath disc;
    disc.addEllipse(centre, r, r);
    QPainterPath bite;
    bite.addEllipse(centre + QPointF(r * 0.55, -r * 0.45), r * 0.85, r * 0.85);
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawPath(disc.subtracted(bite));
}

void cloud(QPainter& p, const QColor& c, qreal dy = 0) {
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawPath(cloudPath(0, dy));
}

// A small cloud in front of a sun or moon: the back body is cut where the cloud covers it.
void behindCloud(QPainter& p, const QColor& c, const std::function<void()>& back) {
    p.save();
    QPainterPath clip;
    clip.addRect(QRectF(0, 0, 24, 24));
    p.setClipPath(clip.subtracted(cloudPath(1.5, 2.5).translated(0, 0)));
    back();
    p.restore();
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawPath(cloudPath(1.5, 2.5));
}

void drops(QPainter& p, const QColor& c, int count, qreal length) {
    p.setPen(stroke(c, 1.8));
    for (int i = 0; i < count; ++i) {
        const qreal x = 8 + i * (9.0 / std::max(1, count - 1));
        p.drawLine(QPointF(x, 20.5), QPointF(x - 1.2, 20.5 + length));
    }
}

void flakes(QPainter& p, const QColor& c) {
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    for (qreal x : {8.0, 12.5, 17.0}) p.drawEllipse(QPointF(x, 22), 1.3, 1.3);
}

void bolt(QPainter& p, const QColor& c) {
    QPainterPath b;
    b.moveTo(13, 17);
    b.lineTo(10, 21.5);
    b.lineTo(12.5, 21.5);
    b.lineTo(11, 24);
    b.lineTo(15.5, 19.5);
    b.lineTo(13, 19.5);
    b.lineTo(14.5, 17);
    b.closeSubpath();
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawPath(b);
}

void pawprint(QPainter& p, const QColor& c) {
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    QPainterPath pad;
    pad.moveTo(12, 11.5);
    pad.cubicTo(16.5, 11.5, 19.5, 17, 17.5, 19.5);
    pad.cubicTo(16, 21.2, 14, 20, 12, 20);
    pad.cubicTo(10, 20, 8, 21.2, 6.5, 19.5);
    pad.cubicTo(4.5, 17, 7.5, 11.5, 12, 11.5);
    p.drawPath(pad);
    p.drawEllipse(QPointF(5, 10.5), 2.1, 2.6);
    p.drawEllipse(QPointF(9.3, 6.3), 2.2, 2.8);
    p.drawEllipse(QPointF(14.7, 6.3), 2.2, 2.8);
    p.drawEllipse(QPointF(19, 10.5), 2.1, 2.6);
}

void fish(QPainter& p, const QColor& c) {
    QPainterPath body;
    body.moveTo(3, 12);
    body.cubicTo(6, 6, 14, 5, 18, 12);
    body.cubicTo(14, 19, 6, 18, 3, 12);
    QPainterPath tail;
    tail.moveTo(17, 12);
    tail.lineTo(22, 7.5);
    tail.lineTo(21, 12);
    tail.lineTo(22, 16.5);
    tail.closeSubpath();
    QPainterPath eye;
    eye.addEllipse(QPointF(7.5, 11), 1.2, 1.2);
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawPath(body.united(tail).subtracted(eye));
}

void chip(QPainter& p, const QColor& c) {
    p.setPen(stroke(c, 1.8));
    p.setBrush(Qt::NoBrush);
    p.drawRoundedRect(QRectF(6, 6, 12, 12), 2, 2);
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawRoundedRect(QRectF(9.5, 9.5, 5, 5), 1, 1);
    p.setPen(stroke(c, 1.6));
    for (qreal t : {9.0, 12.0, 15.0}) {
        p.drawLine(QPointF(t, 2.5), QPointF(t, 5));
        p.drawLine(QPointF(t, 19), QPointF(t, 21.5));
        p.drawLine(QPointF(2.5, t), QPointF(5, t));
        p.drawLine(QPointF(19, t), QPointF(21.5, t));
    }
}

void memoryStick(QPainter& p, const QColor& c) {
    p.setPen(stroke(c, 1.8));
    p.setBrush(Qt::NoBrush);
    p.drawRoundedRect(QRectF(3, 7, 18, 9), 1.5, 1.5);
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    for (qreal x : {6.0, 10.0, 14.0}) p.drawRect(QRectF(x, 9.5, 3, 4));
    p.setPen(stroke(c, 1.5));
    for (qreal x = 5; x <= 19; x += 2.8) p.drawLine(QPointF(x, 16), QPointF(x, 19));
}

void arrowsUpDown(QPainter& p, const QColor& c) {
    p.setPen(stroke(c, 2));
    p.setBrush(Qt::NoBrush);
    p.drawLine(QPointF(8, 20), QPointF(8, 5));
    p.drawPolyline(QPolygonF({QPointF(4, 9), QPointF(8, 4.5), QPointF(12, 9)}));
    p.drawLine(QPointF(16, 4), QPointF(16, 19));
    p.drawPolyline(QPolygonF({QPointF(12, 15), QPointF(16, 19.5), QPointF(20, 15)}));
}

void gpuCard(QPainter& p, const QColor& c) {
    p.setPen(stroke(c, 1.8));
    p.setBrush(Qt::NoBrush);
    p.drawRoundedRect(QRectF(3, 6, 18, 11), 2, 2);
    p.drawEllipse(QPointF(9, 11.5), 3, 3);
    p.drawEllipse(QPointF(16, 11.5), 2, 2);
    p.drawLine(QPointF(6, 17), QPointF(6, 20));
    p.drawLine(QPointF(10, 17), QPointF(10, 20));
}

void thermometer(QPainter& p, const QColor& c) {
    QPainterPath outer;
    outer.addRoundedRect(QRectF(9.5, 2.5, 5, 13), 2.5, 2.5);
    outer.addEllipse(QPointF(12, 17.5), 4.2, 4.2);
    p.setPen(stroke(c, 1.8));
    p.setBrush(Qt::NoBrush);
    p.drawPath(outer.simplified());
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawEllipse(QPointF(12, 17.5), 2.4, 2.4);
    p.drawRect(QRectF(11, 8, 2, 8));
}

void battery(QPainter& p, const QColor& c) {
    p.setPen(stroke(c, 1.8));
    p.setBrush(Qt::NoBrush);
    p.drawRoundedRect(QRectF(2.5, 7, 17, 10), 2.5, 2.5);
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawRoundedRect(QRectF(20.5, 10, 2, 4), 1, 1);
    p.drawRoundedRect(QRectF(5, 9.5, 9, 5), 1, 1);
}

void drive(QPainter& p, const QColor& c) {
    p.setPen(stroke(c, 1.8));
    p.setBrush(Qt::NoBrush);
    p.drawRoundedRect(QRectF(3, 6, 18, 12), 2.5, 2.5);
    p.drawLine(QPointF(3, 13), QPointF(21, 13));
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawEllipse(QPointF(17, 15.5), 1.2, 1.2);
}

void gift(QPainter& p, const QColor& c) {
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawRoundedRect(QRectF(4, 11, 16, 10), 1.5, 1.5);
    p.drawRoundedRect(QRectF(3, 7.5, 18, 3.5), 1, 1);
    p.setPen(stroke(c, 1.8));
    p.setBrush(Qt::NoBrush);
    p.drawEllipse(QPointF(9.5, 5), 2.5, 2);
    p.drawEllipse(QPointF(14.5, 5), 2.5, 2);
}

void star(QPainter& p, const QColor& c, QPointF centre, qreal r) {
    QPolygonF poly;
    for (int i = 0; i < 10; ++i) {
        const qreal a = -M_PI / 2 + i * M_PI / 5;
        const qreal rr = i % 2 ? r * 0.45 : r;
        poly << centre + QPointF(std::cos(a) * rr, std::sin(a) * rr);
    }
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawPolygon(poly);
}

void flame(QPainter& p, const QColor& c) {
    QPainterPath f;
    f.moveTo(12, 2.5);
    f.cubicTo(14, 7, 19, 9, 19, 15);
    f.cubicTo(19, 19, 16, 21.5, 12, 21.5);
    f.cubicTo(8, 21.5, 5, 19, 5, 15);
    f.cubicTo(5, 11, 8, 9.5, 8.5, 6.5);
    f.cubicTo(10, 8, 10.5, 9.5, 10.5, 11);
    f.cubicTo(12, 9, 12.5, 6, 12, 2.5);
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawPath(f);
}

void heart(QPainter& p, const QColor& c) {
    QPainterPath h;
    h.moveTo(12, 20.5);
    h.cubicTo(4, 15, 2.5, 11, 3.5, 8);
    h.cubicTo(4.5, 4.5, 9.5, 3.5, 12, 7.5);
    h.cubicTo(14.5, 3.5, 19.5, 4.5, 20.5, 8);
    h.cubicTo(21.5, 11, 20, 15, 12, 20.5);
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawPath(h);
}

void circleMark(QPainter& p, const QColor& c, bool check) {
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    QPainterPath disc;
    disc.addEllipse(QPointF(12, 12), 9.5, 9.5);
    QPainterPathStroker stroker;
    stroker.setWidth(2.2);
    stroker.setCapStyle(Qt::RoundCap);
    stroker.setJoinStyle(Qt::RoundJoin);
    QPainterPath mark;
    if (check) {
        mark.moveTo(7.5, 12.5);
        mark.lineTo(10.8, 15.5);
        mark.lineTo(16.5, 8.8);
    } else {
        mark.moveTo(8.5, 8.5);
        mark.lineTo(15.5, 15.5);
        mark.moveTo(15.5, 8.5);
        mark.lineTo(8.5, 15.5);
    }
    p.drawPath(disc.subtracted(stroker.createStroke(mark)));
}

void chevronLeft(QPainter& p, const QColor& c) {
    p.setPen(stroke(c, 2.2));
    p.setBrush(Qt::NoBrush);
    p.drawPolyline(QPolygonF({QPointF(15, 5), QPointF(8, 12), QPointF(15, 19)}));
}

void clock(QPainter& p, const QColor& c) {
    p.setPen(stroke(c, 2));
    p.setBrush(Qt::NoBrush);
    p.drawEllipse(QPointF(12, 12), 8.5, 8.5);
    p.drawPolyline(QPolygonF({QPointF(12, 7), QPointF(12, 12), QPointF(15.5, 14)}));
}

void eye(QPainter& p, const QColor& c) {
    QPainterPath lid;
    lid.moveTo(2.5, 12);
    lid.cubicTo(6, 5.5, 18, 5.5, 21.5, 12);
    lid.cubicTo(18, 18.5, 6, 18.5, 2.5, 12);
    p.setPen(stroke(c, 1.9));
    p.setBrush(Qt::NoBrush);
    p.drawPath(lid);
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawEllipse(QPointF(12, 12), 3.3, 3.3);
}

void boltFill(QPainter& p, const QColor& c) {
    QPainterPath b;
    b.moveTo(13.5, 2.5);
    b.lineTo(5, 13.5);
    b.lineTo(11, 13.5);
    b.lineTo(9.5, 21.5);
    b.lineTo(19, 9.5);
    b.lineTo(13, 9.5);
    b.closeSubpath();
    p.setPen(stroke(c, 1));
    p.setBrush(c);
    p.drawPath(b);
}

void fog(QPainter& p, const QColor& c) {
    cloud(p, c, -3);
    p.setPen(stroke(c, 1.8));
    p.drawLine(QPointF(4, 19), QPointF(20, 19));
    p.drawLine(QPointF(6, 22), QPointF(18, 22));
}

struct Entry {
    std::string_view name;
    Drawer draw;
};

void magnifier(QPainter& p, const QColor& c) {
    p.setPen(stroke(c, 2.2));
    p.setBrush(Qt::NoBrush);
    p.drawEllipse(QPointF(10.5, 10.5), 6.5, 6.5);
    p.drawLine(QPointF(15.5, 15.5), QPointF(20.5, 20.5));
}

void padlock(QPainter& p, const QColor& c) {
    p.setPen(stroke(c, 2.2));
    p.setBrush(Qt::NoBrush);
    QPainterPath shackle;
    shackle.moveTo(8, 11);
    shackle.lineTo(8, 8);
    shackle.arcTo(QRectF(8, 3.5, 8, 9), 180, -180);
    shackle.lineTo(16, 11);
    p.drawPath(shackle);
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawRoundedRect(QRectF(5, 10.5, 14, 10.5), 2.5, 2.5);
}

void chevron(QPainter& p, const QColor& c, QPointF a, QPointF tip, QPointF b) {
    p.setPen(stroke(c, 2.2));
    p.setBrush(Qt::NoBrush);
    p.drawPolyline(QPolygonF({a, tip, b}));
}

void warningSign(QPainter& p, const QColor& c) {
    QPainterPath sign;
    sign.moveTo(12, 3);
    sign.lineTo(22, 20.5);
    sign.lineTo(2, 20.5);
    sign.closeSubpath();
    QPainterPathStroker round;
    round.setWidth(2.5);
    round.setJoinStyle(Qt::RoundJoin);
    const QPainterPath body = sign.united(round.createStroke(sign));
    QPainterPath mark;
    mark.addRoundedRect(QRectF(10.9, 8.5, 2.2, 7), 1.1, 1.1);
    mark.addEllipse(QPointF(12, 17.8), 1.3, 1.3);
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawPath(body.subtracted(mark));
}

// The symbols of lists and forms: search, locks, disclosure and sort arrows, warnings.
const std::array<Entry, 6>& controlSymbols() {
    static const std::array<Entry, 6> entries{{
        {"magnifyingglass", magnifier},
        {"lock.fill", padlock},
        {"chevron.up",
         [](QPainter& p, const QColor& c) {
             chevron(p, c, {6, 15}, {12, 9}, {18, 15});
         }},
        {"chevron.down",
         [](QPainter& p, const QColor& c) {
             chevron(p, c, {6, 9}, {12, 15}, {18, 9});
         }},
        {"chevron.right",
         [](QPainter& p, const QColor& c) {
             chevron(p, c, {9, 5}, {16, 12}, {9, 19});
         }},
        {"exclamationmark.triangle.fill", warningSign},
    }};
    return entries;
}

const std::array<Entry, 39>& table() {
    static const std::array<Entry, 39> entries{{
        {"cpu", chip},
        {"memory", memoryStick},
        {"memorychip", memoryStick},
        {"network-wired", arrowsUpDown},
        {"network", arrowsUpDown},
        {"video-display", gpuCard},
        {"gpu", gpuCard},
        {"temperature", thermometer},
        {"thermometer", thermometer},
        {"battery", battery},
        {"drive-harddisk", drive},
        {"internaldrive", drive},
        {"paw", pawprint},
        {"pawprint.fill", pawprint},
        {"fish.fill", fish},
        {"gift.fill", gift},
        {"flame.fill", flame},
        {"heart.fill", heart},
        {"clock", clock},
        {"eye", eye},
        {"bolt.fill", boltFill},
        {"checkmark.seal.fill", [](QPainter& p, const QColor& c) { circleMark(p, c, true); }},
        {"xmark.circle.fill", [](QPainter& p, const QColor& c) { circleMark(p, c, false); }},
        {"star.fill",
         [](QPainter& p, const QColor& c) {
             star(p, c, {12, 12.5}, 9.5);
         }},
        {"chevron.left", chevronLeft},
        {"sun.max.fill",
         [](QPainter& p, const QColor& c) {
             sun(p, c, {12, 12}, 4.8, true);
         }},
        {"moon.fill",
         [](QPainter& p, const QColor& c) {
             moon(p, c, {12, 12}, 8);
         }},
        {"moon.stars.fill",
         [](QPainter& p, const QColor& c) {
             moon(p, c, {10.5, 13}, 7.5);
             star(p, c, {18.5, 5.5}, 2.8);
         }},
        {"cloud.fill", [](QPainter& p, const QColor& c) { cloud(p, c); }},
        {"weather-few-clouds",
         [](QPainter& p, const QColor& c) {
             behindCloud(p, c, [&] { sun(p, c, {8.5, 8.5}, 3.6, true); });
         }},
        {"cloud.sun.fill",
         [](QPainter& p, const QColor& c) {
             behindCloud(p, c, [&] { sun(p, c, {8.5, 8.5}, 3.6, true); });
         }},
        {"cloud.moon.fill",
         [](QPainter& p, const QColor& c) {
             behindCloud(p, c, [&] { moon(p, c, {8.5, 8}, 5.5); });
         }},
        {"cloud.rain.fill",
         [](QPainter& p, const QColor& c) {
             cloud(p, c, -3);
             drops(p, c, 3, 3);
         }},
        {"cloud.drizzle.fill",
         [](QPainter& p, const QColor& c) {
             cloud(p, c, -3);
             drops(p, c, 3, 1.2);
         }},
        {"cloud.heavyrain.fill",
         [](QPainter& p, const QColor& c) {
             cloud(p, c, -3);
             drops(p, c, 4, 3.5);
         }},
        {"cloud.snow.fill",
         [](QPainter& p, const QColor& c) {
             cloud(p, c, -3);
             flakes(p, c);
         }},
        {"cloud.fog.fill", fog},
        {"cloud.bolt.rain.fill",
         [](QPainter& p, const QColor& c) {
             cloud(p, c, -4);
             bolt(p, c);
         }},
        {"cloud.sun.rain.fill",
         [](QPainter& p, const QColor& c) {
             behindCloud(p, c, [&] { sun(p, c, {8.5, 8.5}, 3.6, true); });
             drops(p, c, 3, 2);
         }},
    }};
    return entries;
}

// Controls of the detail screens and of edit mode.
void circleSign(QPainter& p, const QColor& c, bool plus) {
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    QPainterPath disc;
    disc.addEllipse(QPointF(12, 12), 9.5, 9.5);
    QPainterPathStroker stroker;
    stroker.setWidth(2.2);
    stroker.setCapStyle(Qt::RoundCap);
    QPainterPath mark;
    mark.moveTo(7.5, 12);
    mark.lineTo(16.5, 12);
    if (plus) {
        mark.moveTo(12, 7.5);
        mark.lineTo(12, 16.5);
    }
    p.drawPath(disc.subtracted(stroker.createStroke(mark)));
}

void resizeGrip(QPainter& p, const QColor& c) {
    p.setPen(stroke(c, 2));
    p.drawLine(QPointF(20, 9), QPointF(9, 20));
    p.drawLine(QPointF(20, 14.5), QPointF(14.5, 20));
}

const std::array<Entry, 3>& editSymbols() {
    static const std::array<Entry, 3> entries{{
        {"plus.circle.fill", [](QPainter& p, const QColor& c) { circleSign(p, c, true); }},
        {"minus.circle.fill", [](QPainter& p, const QColor& c) { circleSign(p, c, false); }},
        {"resize.grip", resizeGrip},
    }};
    return entries;
}

const Drawer* find(std::string_view name) {
    for (const auto& e : table())
        if (e.name == name) return &e.draw;
    if (const Drawer* shop = shopIcon(name)) return shop;
    for (const auto& e : controlSymbols())
        if (e.name == name) return &e.draw;
    if (const Drawer* own = icons::settingsIcon(name)) return own;
    for (const auto& e : editSymbols())
        if (e.name == name) return &e.draw;
    // The night variant of a rain cloud draws like the day's, with the moon for the sun.
    if (name == "cloud.moon.rain.fill") {
        static const Drawer night = [](QPainter& p, const QColor& c) {
            behindCloud(p, c, [&] { moon(p, c, {8.5, 8}, 5.5); });
            drops(p, c, 3, 2);
        };
        return &night;
    }
    return nullptr;
}

}  // namespace

namespace Icons {

bool has(std::string_view symbol) { return find(symbol) != nullptr; }

bool paint(QPainter& painter, const QRectF& box, std::string_view symbol, const QColor& color) {
    const Drawer* draw = find(symbol);
    if (!draw) return false;
    const qreal side = std::min(box.width(), box.height());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(box.center() - QPointF(side / 2, side / 2));
    painter.scale(side / 24.0, side / 24.0);
    (*draw)(painter, color);
    painter.restore();
    return true;
}

}  // namespace Icons

}  // namespace trotlet::ui
