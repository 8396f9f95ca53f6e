#include "ui/theme/SettingsIcons.h"

#include <QPainter>
#include <QPainterPath>

#include <array>
#include <cmath>

namespace trotlet::ui::icons {
namespace {

QPen stroke(const QColor& c, qreal width = 2) {
    return QPen(c, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

void gear(QPainter& p, const QColor& c) {
    QPainterPath teeth;
    teeth.setFillRule(Qt::WindingFill);
    for (int i = 0; i < 8; ++i) {
        QTransform t;
        t.translate(12, 12);
        t.rotate(i * 45);
        QPainterPath tooth;
        tooth.addRoundedRect(QRectF(-2.4, -10.5, 4.8, 6), 1.2, 1.2);
        teeth.addPath(t.map(tooth));
    }
    teeth.addEllipse(QPointF(12, 12), 7.6, 7.6);
    QPainterPath hole;
    hole.addEllipse(QPointF(12, 12), 3.2, 3.2);
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawPath(teeth.simplified().subtracted(hole));
}

void menuBar(QPainter& p, const QColor& c) {
    // A screen with its top bar filled in.
    p.setPen(stroke(c, 1.9));
    p.setBrush(Qt::NoBrush);
    p.drawRoundedRect(QRectF(3, 4.5, 18, 15), 3, 3);
    QPainterPath bar;
    bar.addRoundedRect(QRectF(3, 4.5, 18, 5.5), 3, 3);
    bar.addRect(QRectF(3, 7.5, 18, 2.5));
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawPath(bar.simplified());
}

void gauge(QPainter& p, const QColor& c) {
    p.setPen(stroke(c, 2.2));
    p.setBrush(Qt::NoBrush);
    p.drawArc(QRectF(3, 4.5, 18, 18), 200 * 16, -220 * 16);
    p.drawLine(QPointF(12, 13.5), QPointF(16.5, 8.5));
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawEllipse(QPointF(12, 13.5), 2.2, 2.2);
}

void bell(QPainter& p, const QColor& c) {
    QPainterPath b;
    b.moveTo(12, 3.2);
    b.cubicTo(16.6, 3.2, 18.2, 7, 18.2, 10.5);
    b.lineTo(18.2, 14.5);
    b.lineTo(20.3, 17.6);
    b.lineTo(3.7, 17.6);
    b.lineTo(5.8, 14.5);
    b.lineTo(5.8, 10.5);
    b.cubicTo(5.8, 7, 7.4, 3.2, 12, 3.2);
    b.closeSubpath();
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawPath(b);
    p.drawEllipse(QPointF(12, 19.8), 2.3, 2.3);
}

void info(QPainter& p, const QColor& c) {
    QPainterPath disc;
    disc.addEllipse(QPointF(12, 12), 9.5, 9.5);
    QPainterPath mark;
    mark.addEllipse(QPointF(12, 7.6), 1.5, 1.5);
    mark.addRoundedRect(QRectF(10.7, 10.3, 2.6, 7.4), 1.2, 1.2);
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawPath(disc.subtracted(mark));
}

void chevronRight(QPainter& p, const QColor& c) {
    p.setPen(stroke(c, 2.2));
    p.setBrush(Qt::NoBrush);
    p.drawPolyline(QPolygonF({QPointF(9, 5), QPointF(16, 12), QPointF(9, 19)}));
}


void keyboard(QPainter& p, const QColor& c) {
    p.setPen(stroke(c, 1.8));
    p.setBrush(Qt::NoBrush);
    p.drawRoundedRect(QRectF(2.5, 6, 19, 12.5), 2.5, 2.5);
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    for (int row = 0; row < 2; ++row)
        for (int col = 0; col < 5; ++col)
            p.drawRoundedRect(QRectF(5 + col * 3, 8.6 + row * 3, 2, 1.9), 0.5, 0.5);
    p.drawRoundedRect(QRectF(7.5, 14.6, 9, 1.9), 0.6, 0.6);
}

void counterclockwise(QPainter& p, const QColor& c) {
    p.setPen(stroke(c, 2.1));
    p.setBrush(Qt::NoBrush);
    p.drawArc(QRectF(4, 4, 16, 16), 150 * 16, 300 * 16);
    QPainterPath head;
    head.moveTo(2.6, 6.4);
    head.lineTo(8.6, 6.8);
    head.lineTo(5.2, 11.6);
    head.closeSubpath();
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawPath(head);
}

void folder(QPainter& p, const QColor& c) {
    QPainterPath f;
    f.moveTo(3, 7);
    f.cubicTo(3, 5.6, 3.8, 5, 5, 5);
    f.lineTo(9.5, 5);
    f.lineTo(11.5, 7.2);
    f.lineTo(19, 7.2);
    f.cubicTo(20.3, 7.2, 21, 8, 21, 9.2);
    f.lineTo(21, 17.5);
    f.cubicTo(21, 18.7, 20.3, 19.5, 19, 19.5);
    f.lineTo(5, 19.5);
    f.cubicTo(3.8, 19.5, 3, 18.7, 3, 17.5);
    f.closeSubpath();
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawPath(f);
}

void xmark(QPainter& p, const QColor& c) {
    p.setPen(stroke(c, 2.2));
    p.drawLine(QPointF(6.5, 6.5), QPointF(17.5, 17.5));
    p.drawLine(QPointF(17.5, 6.5), QPointF(6.5, 17.5));
}

void checkmark(QPainter& p, const QColor& c) {
    p.setPen(stroke(c, 2.4));
    p.setBrush(Qt::NoBrush);
    p.drawPolyline(QPolygonF({QPointF(5, 12.5), QPointF(10, 17.5), QPointF(19.5, 6.5)}));
}

void location(QPainter& p, const QColor& c) {
    QPainterPath pin;
    pin.moveTo(12, 21.5);
    pin.cubicTo(8, 16.5, 5, 13, 5, 9.5);
    pin.cubicTo(5, 5.4, 8.2, 2.5, 12, 2.5);
    pin.cubicTo(15.8, 2.5, 19, 5.4, 19, 9.5);
    pin.cubicTo(19, 13, 16, 16.5, 12, 21.5);
    pin.closeSubpath();
    QPainterPath hole;
    hole.addEllipse(QPointF(12, 9.5), 2.8, 2.8);
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    p.drawPath(pin.subtracted(hole));
}

void sparkles(QPainter& p, const QColor& c) {
    auto spark = [&](QPointF o, qreal r) {
        QPainterPath s;
        s.moveTo(o + QPointF(0, -r));
        s.quadTo(o, o + QPointF(r, 0));
        s.quadTo(o, o + QPointF(0, r));
        s.quadTo(o, o + QPointF(-r, 0));
        s.quadTo(o, o + QPointF(0, -r));
        p.drawPath(s);
    };
    p.setPen(Qt::NoPen);
    p.setBrush(c);
    spark({10, 13}, 8);
    spark({18.5, 5.5}, 3.6);
    spark({19, 18}, 2.6);
}

struct Entry {
    std::string_view name;
    Drawer draw;
};

const std::array<Entry, 14>& table() {
    static const std::array<Entry, 14> entries{{
        {"gearshape.fill", gear},
        {"menubar.rectangle", menuBar},
        {"gauge", gauge},
        {"bell.fill", bell},
        {"info.circle.fill", info},
        {"chevron.right", chevronRight},
        {"keyboard", keyboard},
        {"arrow.counterclockwise", counterclockwise},
        {"folder.fill", folder},
        {"xmark", xmark},
        {"checkmark", checkmark},
        {"location.fill", location},
        {"sparkles", sparkles},
    }};
    return entries;
}

}  // namespace

const Drawer* settingsIcon(std::string_view name) {
    for (const auto& e : table())
        if (e.name == name) return &e.draw;
    return nullptr;
}

}  // namespace trotlet::ui::icons
