#include "ui/theme/Gradients.h"

#include <QImage>
#include <QPainter>
#include <QTransform>

#include <algorithm>
#include <cmath>
#include <vector>

namespace trotlet::ui {
namespace {

// As many steps as Qt's own colour tables have: a gradient taller than this would band.
constexpr int stripLength = 1024;
// The strip reaches this far past each end of its span, in the end colours, so that an edge
// pixel whose centre lies just outside the span (antialiasing, a pen's width) takes the end
// colour rather than wrapping round to the other end.
constexpr double stripMargin = 0.125;
constexpr int largestSide = 1024;

struct Premultiplied {
    float a, r, g, b;
};

Premultiplied premultiplied(const QColor& c) {
    const float a = float(c.alphaF());
    return {a, float(c.redF()) * a, float(c.greenF()) * a, float(c.blueF()) * a};
}

QRgb colourAt(const QGradientStops& stops, double t) {
    if (stops.isEmpty()) return 0;
    Premultiplied c = premultiplied(stops.front().second);
    if (t >= stops.back().first) {
        c = premultiplied(stops.back().second);
    } else if (t > stops.front().first) {
        const auto next = std::upper_bound(stops.begin(), stops.end(), t,
                                           [](double v, const QGradientStop& s) { return v < s.first; });
        const auto& [fromAt, fromColour] = *(next - 1);
        const auto& [toAt, toColour] = *next;
        const float f = toAt > fromAt ? float((t - fromAt) / (toAt - fromAt)) : 1.0f;
        const Premultiplied a = premultiplied(fromColour), b = premultiplied(toColour);
        c = {a.a + (b.a - a.a) * f, a.r + (b.r - a.r) * f, a.g + (b.g - a.g) * f,
             a.b + (b.b - a.b) * f};
    }
    auto byte = [](float v) { return int(std::lround(std::clamp(v, 0.0f, 1.0f) * 255)); };
    return qRgba(byte(c.r), byte(c.g), byte(c.b), byte(c.a));
}

// The colours at the middle of each of `stripLength` equal steps from 0 to 1.
std::vector<QRgb> colourTable(const QGradientStops& stops) {
    std::vector<QRgb> table(stripLength);
    for (int i = 0; i < stripLength; ++i) table[i] = colourAt(stops, (i + 0.5) / stripLength);
    return table;
}

}  // namespace

QBrush verticalGradient(const QRectF& span, const QGradientStops& stops) {
    // A flat span has no height to spread the stops over (and no transform to place them).
    if (!(span.height() > 0)) return QColor::fromRgba(qUnpremultiply(colourAt(stops, 1)));
    QImage strip(1, stripLength, QImage::Format_ARGB32_Premultiplied);
    const double reach = 1 + 2 * stripMargin;
    for (int y = 0; y < stripLength; ++y) {
        const double t = (y + 0.5) / stripLength * reach - stripMargin;
        reinterpret_cast<QRgb*>(strip.scanLine(y))[0] = colourAt(stops, t);
    }
    QBrush brush(strip);
    const double step = span.height() * reach / stripLength;
    const double top = span.top() - span.height() * stripMargin;
    brush.setTransform(QTransform(1, 0, 0, step, span.left(), top));
    return brush;
}

QBrush radialGradient(const QPainter& painter, const QRectF& box, const QGradientStops& stops) {
    if (box.isEmpty()) return Qt::NoBrush;  // no ellipse to fill
    const QTransform device = painter.deviceTransform();
    auto pixels = [](double length, double scale) {
        return std::clamp(int(std::ceil(length * scale)), 2, largestSide);
    };
    const int width = pixels(box.width(), std::hypot(device.m11(), device.m12()));
    const int height = pixels(box.height(), std::hypot(device.m21(), device.m22()));
    const std::vector<QRgb> table = colourTable(stops);
    const QRgb beyond = colourAt(stops, 1);
    QImage sprite(width, height, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < height; ++y) {
        auto* line = reinterpret_cast<QRgb*>(sprite.scanLine(y));
        const double dy = 2 * (y + 0.5) / height - 1;
        for (int x = 0; x < width; ++x) {
            const double dx = 2 * (x + 0.5) / width - 1;
            const double r = std::sqrt(dx * dx + dy * dy);
            line[x] = r < 1 ? table[std::size_t(r * stripLength)] : beyond;
        }
    }
    QBrush brush(sprite);
    brush.setTransform(QTransform(box.width() / width, 0, 0, box.height() / height, box.left(),
                                  box.top()));
    return brush;
}

}  // namespace trotlet::ui
