// The Shop's symbols: its ledger reasons, achievements, banners and buttons. Same grid and
// style as the rest of the panel's symbols (24 units, filled shapes, round strokes of about 2).
#include "ui/theme/ShopIcons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPainterPathStroker>

#include <array>
#include <cmath>

namespace trotlet::ui {
namespace {

QPen stroke(const QColor& c, qreal width = 2) {
    return QPen(c, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

QPainterPath strokeOf(const QPainterPath& path, qreal width) {
    QPainterPathStroker stroker;
    stroker.setWidth(width);
    stroker.setCapStyle(Qt::RoundCap);
    stroker.setJoinStyle(Qt::RoundJoin);
    return stroker.createStroke(path);
}

void fill(QPainter& p, const QColor& c, const QPainterPath& path) {
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawPath(path);
}

void polyline(QPainter& p, const QColor& c, std::initializer_list<QPointF> points,
              qreal width = 2.2) {
    p.setPen(stroke(c, width));
    p.setBrush(Qt::NoBrush);
    QPainterPath path;
    bool first = true;
    for (const QPointF& pt : points) {
        if (first)
            path.moveTo(pt);
        else
            path.lineTo(pt);
        first = false;
    }
    p.drawPath(path);
}

// A four-pointed sparkle with curved sides.
QPainterPath sparkle(QPointF c, qreal r) {
    QPainterPath s;
    s.moveTo(c.x(), c.y() - r);
    s.quadTo(c, QPointF(c.x() + r, c.y()));
    s.quadTo(c, QPointF(c.x(), c.y() + r));
    s.quadTo(c, QPointF(c.x() - r, c.y()));
    s.quadTo(c, QPointF(c.x(), c.y() - r));
    return s;
}

void calendarBody(QPainter& p, const QColor& c) {
    p.setPen(stroke(c, 1.9));
    p.setBrush(Qt::NoBrush);
    p.drawRoundedRect(QRectF(3.5, 5, 17, 15.5), 2.6, 2.6);
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    QPainterPath top;
    top.addRoundedRect(QRectF(3.5, 5, 17, 5), 2.6, 2.6);
    top.addRect(QRectF(3.5, 7.5, 17, 2.5));
    p.drawPath(top.simplified());
    p.setPen(stroke(c, 2));
    p.drawLine(QPointF(8, 3), QPointF(8, 6));
    p.drawLine(QPointF(16, 3), QPointF(16, 6));
}

void checkmark(QPainter& p, const QColor& c) {
    polyline(p, c, {{5, 12.5}, {10, 17}, {19, 7}}, 2.6);
}

void clock(QPainter& p, const QColor& c) {
    QPainterPath face;
    face.addEllipse(QPointF(12, 12), 9.5, 9.5);
    QPainterPath hands;
    hands.moveTo(12, 6.5);
    hands.lineTo(12, 12);
    hands.lineTo(15.5, 14.5);
    fill(p, c, face.subtracted(strokeOf(hands, 2.2)));
}

void warning(QPainter& p, const QColor& c) {
    QPainterPath t;
    t.moveTo(12, 3);
    t.lineTo(21.5, 20);
    t.lineTo(2.5, 20);
    t.closeSubpath();
    QPainterPath rounded = strokeOf(t, 3).united(t);
    QPainterPath mark;
    mark.moveTo(12, 9);
    mark.lineTo(12, 13.5);
    QPainterPath cut = strokeOf(mark, 2.3);
    cut.addEllipse(QPointF(12, 17), 1.4, 1.4);
    fill(p, c, rounded.subtracted(cut));
}

void counterClockwise(QPainter& p, const QColor& c) {
    QPainterPath arc;
    arc.arcMoveTo(QRectF(4, 4, 16, 16), 150);
    arc.arcTo(QRectF(4, 4, 16, 16), 150, -300);
    p.setPen(stroke(c, 2.2));
    p.setBrush(Qt::NoBrush);
    p.drawPath(arc);
    QPainterPath head;
    head.moveTo(2.2, 8.2);
    head.lineTo(9.2, 8.6);
    head.lineTo(4.6, 14.2);
    head.closeSubpath();
    fill(p, c, head);
}

void lock(QPainter& p, const QColor& c) {
    p.setPen(stroke(c, 2.2));
    p.setBrush(Qt::NoBrush);
    QPainterPath shackle;
    shackle.moveTo(8, 11);
    shackle.lineTo(8, 8);
    shackle.arcTo(QRectF(8, 4, 8, 8), 180, -180);
    shackle.lineTo(16, 11);
    p.drawPath(shackle);
    QPainterPath body;
    body.addRoundedRect(QRectF(5, 10.5, 14, 10.5), 2.5, 2.5);
    QPainterPath hole;
    hole.addEllipse(QPointF(12, 15.2), 1.5, 1.5);
    fill(p, c, body.subtracted(hole));
}

void crown(QPainter& p, const QColor& c) {
    QPainterPath body;
    body.moveTo(4, 16.5);
    body.lineTo(3, 7.5);
    body.lineTo(8.5, 11.5);
    body.lineTo(12, 5);
    body.lineTo(15.5, 11.5);
    body.lineTo(21, 7.5);
    body.lineTo(20, 16.5);
    body.closeSubpath();
    body = strokeOf(body, 1.6).united(body);
    body.addRoundedRect(QRectF(4, 18, 16, 2.8), 1.2, 1.2);
    body.addEllipse(QPointF(3, 6.5), 1.6, 1.6);
    body.addEllipse(QPointF(12, 4), 1.6, 1.6);
    body.addEllipse(QPointF(21, 6.5), 1.6, 1.6);
    fill(p, c, body.simplified());
}


void bag(QPainter& p, const QColor& c) {
    QPainterPath handle;
    handle.moveTo(8.5, 10);
    handle.lineTo(8.5, 7);
    handle.arcTo(QRectF(8.5, 3.5, 7, 7), 180, -180);
    handle.lineTo(15.5, 10);
    QPainterPath body;
    body.addRoundedRect(QRectF(4, 8, 16, 13.5), 2.8, 2.8);
    fill(p, c, body.subtracted(strokeOf(handle, 1.8).intersected(body)));
    p.setPen(stroke(c, 2));
    p.setBrush(Qt::NoBrush);
    QPainterPath top;
    top.moveTo(8.5, 8);
    top.lineTo(8.5, 7);
    top.arcTo(QRectF(8.5, 3.5, 7, 7), 180, -180);
    top.lineTo(15.5, 8);
    p.drawPath(top);
}

void wave(QPainter& p, const QColor& c) {
    p.save();
    p.translate(12, 13);
    p.rotate(-18);
    p.translate(-12, -13);
    QPainterPath hand;
    hand.addRoundedRect(QRectF(7, 11, 10.5, 10.5), 4.5, 4.5);
    const std::array<std::pair<qreal, qreal>, 4> fingers = {
        {{7, 6}, {9.8, 3.8}, {12.6, 4.2}, {15.4, 6.5}}};
    for (const auto& [x, top] : fingers)
        hand.addRoundedRect(QRectF(x, top, 2.6, 14 - top), 1.3, 1.3);
    QPainterPath thumb;
    thumb.addRoundedRect(QRectF(-1.3, -4.5, 2.6, 8), 1.3, 1.3);
    QTransform t;
    t.translate(6.2, 14.5);
    t.rotate(-40);
    hand.addPath(t.map(thumb));
    fill(p, c, hand.simplified());
    p.restore();
    p.setPen(stroke(c, 1.6));
    p.setBrush(Qt::NoBrush);
    p.drawArc(QRectF(16, 1.5, 6, 6), 0 * 16, 90 * 16);
}

void eyes(QPainter& p, const QColor& c) {
    p.setPen(stroke(c, 1.8));
    p.setBrush(Qt::NoBrush);
    p.drawEllipse(QRectF(3.5, 4.5, 7.5, 15));
    p.drawEllipse(QRectF(13, 4.5, 7.5, 15));
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawEllipse(QPointF(8.6, 13.2), 2.3, 2.8);
    p.drawEllipse(QPointF(18.1, 13.2), 2.3, 2.8);
}

void gauge(QPainter& p, const QColor& c) {
    p.setPen(stroke(c, 2.2));
    p.setBrush(Qt::NoBrush);
    p.drawArc(QRectF(3, 4.5, 18, 18), 200 * 16, -220 * 16);
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    for (int a : {160, 120, 90, 60}) {
        const double rad = a * M_PI / 180;
        p.drawEllipse(QPointF(12 + 5.3 * std::cos(rad), 13.5 - 5.3 * std::sin(rad)), 1.1, 1.1);
    }
    p.drawEllipse(QPointF(12, 13.5), 2.2, 2.2);
    p.setPen(stroke(c, 2.2));
    p.drawLine(QPointF(12, 13.5), QPointF(18, 10));
}

void moonZzz(QPainter& p, const QColor& c) {
    QPainterPath disc;
    disc.addEllipse(QPointF(10, 14), 7.5, 7.5);
    QPainterPath bite;
    bite.addEllipse(QPointF(14, 10.5), 6.4, 6.4);
    fill(p, c, disc.subtracted(bite));
    polyline(p, c, {{14.5, 3}, {20.5, 3}, {14.5, 9}, {20.5, 9}}, 1.8);
}

void arrowDownCircle(QPainter& p, const QColor& c) {
    QPainterPath disc;
    disc.addEllipse(QPointF(12, 12), 10, 10);
    QPainterPath arrow;
    arrow.moveTo(12, 6.5);
    arrow.lineTo(12, 17);
    arrow.moveTo(7.5, 12.8);
    arrow.lineTo(12, 17.2);
    arrow.lineTo(16.5, 12.8);
    fill(p, c, disc.subtracted(strokeOf(arrow, 2.3)));
}

void calendar(QPainter& p, const QColor& c) {
    calendarBody(p, c);
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    for (int row = 0; row < 2; ++row)
        for (int col = 0; col < 3; ++col)
            p.drawRoundedRect(QRectF(6.5 + col * 4.2, 12.3 + row * 4, 2.6, 2.3), 0.6, 0.6);
}

void calendarCheck(QPainter& p, const QColor& c) {
    calendarBody(p, c);
    polyline(p, c, {{8, 15}, {11, 18}, {16.5, 12.5}}, 2.2);
}

void runner(QPainter& p, const QColor& c) {
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawEllipse(QPointF(15.5, 4.2), 2.4, 2.4);
    polyline(p, c, {{14, 8}, {11, 14}}, 2.8);
    polyline(p, c, {{7.5, 10.5}, {10.5, 8}, {14, 8}, {16.5, 11.5}, {19.5, 12}}, 2.2);
    polyline(p, c, {{11, 14}, {14.5, 16.5}, {13.5, 21}}, 2.4);
    polyline(p, c, {{11, 14}, {8.5, 18}, {4.5, 18.5}}, 2.4);
}

void grid(QPainter& p, const QColor& c) {
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    for (qreal x : {3.5, 13.0})
        for (qreal y : {3.5, 13.0}) p.drawRoundedRect(QRectF(x, y, 7.5, 7.5), 2, 2);
}

void trophy(QPainter& p, const QColor& c) {
    QPainterPath cup;
    cup.moveTo(7, 3.5);
    cup.lineTo(17, 3.5);
    cup.lineTo(17, 9.5);
    cup.cubicTo(17, 13, 15, 15, 12, 15);
    cup.cubicTo(9, 15, 7, 13, 7, 9.5);
    cup.closeSubpath();
    cup.addRect(QRectF(10.8, 14, 2.4, 4.5));
    cup.addRoundedRect(QRectF(7.5, 18, 9, 3), 1.2, 1.2);
    fill(p, c, cup.simplified());
    p.setPen(stroke(c, 1.8));
    p.setBrush(Qt::NoBrush);
    p.drawArc(QRectF(3, 5, 6, 6.5), 90 * 16, 180 * 16);
    p.drawArc(QRectF(15, 5, 6, 6.5), 90 * 16, -180 * 16);
}

void ladybug(QPainter& p, const QColor& c) {
    QPainterPath bug;
    bug.addEllipse(QRectF(5, 7, 14, 15));
    bug.addEllipse(QPointF(12, 6.2), 3.4, 3);
    QPainterPath cuts;
    QPainterPath line;
    line.moveTo(12, 9.5);
    line.lineTo(12, 21.5);
    cuts.addPath(strokeOf(line, 1.3));
    cuts.addEllipse(QPointF(8.8, 12.5), 1.5, 1.5);
    cuts.addEllipse(QPointF(15.2, 12.5), 1.5, 1.5);
    cuts.addEllipse(QPointF(9.2, 17.2), 1.3, 1.3);
    cuts.addEllipse(QPointF(14.8, 17.2), 1.3, 1.3);
    fill(p, c, bug.simplified().subtracted(cuts));
    polyline(p, c, {{10.3, 3.6}, {8.8, 1.8}}, 1.4);
    polyline(p, c, {{13.7, 3.6}, {15.2, 1.8}}, 1.4);
}

void trayFull(QPainter& p, const QColor& c) {
    QPainterPath tray;
    tray.moveTo(3, 13);
    tray.lineTo(8.5, 13);
    tray.lineTo(10, 15.5);
    tray.lineTo(14, 15.5);
    tray.lineTo(15.5, 13);
    tray.lineTo(21, 13);
    tray.lineTo(21, 19);
    tray.quadTo(21, 21, 19, 21);
    tray.lineTo(5, 21);
    tray.quadTo(3, 21, 3, 19);
    tray.closeSubpath();
    tray.addRoundedRect(QRectF(5.5, 4, 13, 2.4), 1.2, 1.2);
    tray.addRoundedRect(QRectF(5.5, 8.2, 13, 2.4), 1.2, 1.2);
    fill(p, c, tray);
}

struct Entry {
    std::string_view name;
    IconDrawer draw;
};

const std::vector<Entry>& table() {
    static const std::vector<Entry> entries = {
        {"chevron.right",
         [](QPainter& p, const QColor& c) {
             polyline(p, c, {{9, 5}, {16, 12}, {9, 19}});
         }},
        {"chevron.down",
         [](QPainter& p, const QColor& c) {
             polyline(p, c, {{5, 9}, {12, 16}, {19, 9}});
         }},
        {"chevron.up",
         [](QPainter& p, const QColor& c) {
             polyline(p, c, {{5, 15}, {12, 8}, {19, 15}});
         }},
        {"checkmark", checkmark},
        {"xmark",
         [](QPainter& p, const QColor& c) {
             polyline(p, c, {{6, 6}, {18, 18}});
             polyline(p, c, {{18, 6}, {6, 18}});
         }},
        {"shield.fill",
         [](QPainter& p, const QColor& c) {
             QPainterPath s;
             s.moveTo(12, 2.5);
             s.lineTo(20, 5.5);
             s.lineTo(20, 11.5);
             s.cubicTo(20, 16.5, 16.5, 20, 12, 21.5);
             s.cubicTo(7.5, 20, 4, 16.5, 4, 11.5);
             s.lineTo(4, 5.5);
             s.closeSubpath();
             fill(p, c, strokeOf(s, 1.2).united(s));
         }},
        {"clock.fill", clock},
        {"exclamationmark.triangle.fill", warning},
        {"arrow.counterclockwise", counterClockwise},
        {"sparkles",
         [](QPainter& p, const QColor& c) {
             QPainterPath s = sparkle({10, 13.5}, 8.5);
             s.addPath(sparkle({18.5, 5}, 3.6));
             s.addPath(sparkle({19, 18.5}, 2.4));
             fill(p, c, s);
         }},
        {"lock.fill", lock},
        {"crown.fill", crown},
        {"bag.fill", bag},
        {"hand.wave.fill", wave},
        {"eyes", eyes},
        {"gauge.with.dots.needle.100percent", gauge},
        {"moon.zzz.fill", moonZzz},
        {"arrow.down.circle.fill", arrowDownCircle},
        {"calendar", calendar},
        {"calendar.badge.checkmark", calendarCheck},
        {"figure.run", runner},
        {"square.grid.2x2.fill", grid},
        {"trophy.fill", trophy},
        {"ladybug.fill", ladybug},
        {"tray.full.fill", trayFull},
    };
    return entries;
}

}  // namespace

const IconDrawer* shopIcon(std::string_view name) {
    for (const auto& e : table())
        if (e.name == name) return &e.draw;
    return nullptr;
}

}  // namespace trotlet::ui
