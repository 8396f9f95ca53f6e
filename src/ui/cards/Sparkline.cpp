#include "ui/cards/Sparkline.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

#include "ui/theme/Gradients.h"

namespace trotlet::ui {

double Sparkline::scaleTop(double ceiling, const panel::SparklineData& data) {
    if (ceiling > 0) return ceiling;
    double top = 1e-9;
    for (const auto* runs : {&data.first, &data.second})
        for (const auto& run : *runs)
            for (const auto& p : run) top = std::max(top, p.value);
    return top * 1.1;
}

void Sparkline::paintRun(QPainter& painter, const QPolygonF& points, const QRectF& box,
                         const QColor& color, double penWidth, double fillAlpha) {
    if (points.size() < 2) return;
    QPainterPath line(points.front());
    for (qsizetype i = 1; i < points.size(); ++i) line.lineTo(points[i]);
    if (fillAlpha > 0) {
        QPainterPath area = line;
        area.lineTo(points.back().x(), box.bottom());
        area.lineTo(points.front().x(), box.bottom());
        area.closeSubpath();
        QColor top = color;
        top.setAlphaF(fillAlpha);
        QColor bottom = color;
        bottom.setAlphaF(0.02);
        painter.fillPath(area, verticalGradient(box, {{0, top}, {1, bottom}}));
    }
    painter.setPen(QPen(color, penWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(line);
}

void Sparkline::paint(QPainter& painter, const QRectF& box,
                      const std::vector<panel::ChartRun>& runs, double spanSeconds, double top,
                      const QColor& color, bool filled) {
    if (runs.empty() || spanSeconds <= 0 || box.isEmpty()) return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QPolygonF points;
    for (const auto& run : runs) {
        points.clear();
        for (const auto& p : run) {
            const double v = std::clamp(p.value / top, 0.0, 1.0);
            points.append({box.left() + p.t / spanSeconds * box.width(),
                           box.bottom() - v * (box.height() - 1)});
        }
        paintRun(painter, points, box, color, 1.5, filled ? 0.28 : 0);
    }
    painter.restore();
}

}  // namespace trotlet::ui
