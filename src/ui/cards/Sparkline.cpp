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

void Sparkline::paint(QPainter& painter, const QRectF& box,
                      const std::vector<panel::ChartRun>& runs, double spanSeconds, double top,
                      const QColor& color, bool filled) {
    if (runs.empty() || spanSeconds <= 0 || box.isEmpty()) return;
    auto at = [&](const panel::ChartPoint& p) {
        const double v = std::clamp(p.value / top, 0.0, 1.0);
        return QPointF(box.left() + p.t / spanSeconds * box.width(),
                       box.bottom() - v * (box.height() - 1));
    };
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    for (const auto& run : runs) {
        QPainterPath line(at(run.front()));
        for (std::size_t i = 1; i < run.size(); ++i) line.lineTo(at(run[i]));
        if (filled) {
            QPainterPath area = line;
            area.lineTo(at(run.back()).x(), box.bottom());
            area.lineTo(at(run.front()).x(), box.bottom());
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
    painter.restore();
}

}  // namespace trotlet::ui
