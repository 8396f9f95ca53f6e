#include "ui/cards/Sparkline.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <chrono>

#include "ui/theme/Gradients.h"

namespace trotlet::ui {

double Sparkline::scaleTop(double ceiling, const std::vector<metrics::HistoryPoint>& a,
                           const std::vector<metrics::HistoryPoint>& b) {
    if (ceiling > 0) return ceiling;
    double top = 1e-9;
    for (const auto& p : a) top = std::max(top, p.value);
    for (const auto& p : b) top = std::max(top, p.value);
    return top * 1.1;
}

void Sparkline::paint(QPainter& painter, const QRectF& box,
                      const std::vector<metrics::HistoryPoint>& points, double top,
                      const QColor& color, bool filled) {
    if (points.size() < 2 || box.isEmpty()) return;
    using namespace std::chrono;
    const auto first = points.front().time;
    const double span = duration<double>(points.back().time - first).count();
    if (span <= 0) return;
    std::vector<double> steps;
    for (std::size_t i = 1; i < points.size(); ++i)
        steps.push_back(duration<double>(points[i].time - points[i - 1].time).count());
    std::nth_element(steps.begin(), steps.begin() + long(steps.size() / 2), steps.end());
    const double breakAfter = 3 * std::max(0.001, steps[steps.size() / 2]);

    auto at = [&](const metrics::HistoryPoint& p) {
        const double t = duration<double>(p.time - first).count() / span;
        const double v = std::clamp(p.value / top, 0.0, 1.0);
        return QPointF(box.left() + t * box.width(), box.bottom() - v * (box.height() - 1));
    };
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    std::size_t start = 0;
    while (start < points.size()) {
        std::size_t end = start + 1;
        while (end < points.size() &&
               duration<double>(points[end].time - points[end - 1].time).count() <= breakAfter)
            ++end;
        if (end - start >= 2) {
            QPainterPath line(at(points[start]));
            for (std::size_t i = start + 1; i < end; ++i) line.lineTo(at(points[i]));
            if (filled) {
                QPainterPath area = line;
                area.lineTo(at(points[end - 1]).x(), box.bottom());
                area.lineTo(at(points[start]).x(), box.bottom());
                area.closeSubpath();
                QColor top = color;
                top.setAlphaF(0.28);
                QColor bottom = color;
                bottom.setAlphaF(0.02);
                painter.fillPath(area, verticalGradient(box, {{0, top}, {1, bottom}}));
            }
            painter.setPen(QPen(color, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
            painter.setBrush(Qt::NoBrush);
            painter.drawPath(line);
        }
        start = end;
    }
    painter.restore();
}

}  // namespace trotlet::ui
