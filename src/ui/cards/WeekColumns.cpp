#include "ui/cards/WeekColumns.h"

#include <QPainter>

#include <algorithm>

namespace trotlet::ui {

void WeekColumns::paint(QPainter& p, const QRectF& box,
                        const std::vector<std::optional<double>>& values, const QColor& color,
                        const QColor& track, double maxColumnWidth) {
    if (values.empty() || box.isEmpty()) return;
    double top = 0;
    for (const auto& v : values)
        if (v) top = std::max(top, *v);
    const qreal step = box.width() / qreal(values.size());
    const qreal width = std::clamp<qreal>(step * 0.6, 2, maxColumnWidth);
    const qreal radius = std::min<qreal>(width / 2, 3);
    const qreal stub = 2;
    p.save();
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(Qt::NoPen);
    QColor earlier = color;
    earlier.setAlphaF(color.alphaF() * 0.45f);
    for (std::size_t i = 0; i < values.size(); ++i) {
        const qreal cx = box.left() + step * (qreal(i) + 0.5);
        if (!values[i]) {
            p.setBrush(track);
            p.drawEllipse(QPointF(cx, box.bottom() - 1.5), 1.5, 1.5);
            continue;
        }
        const qreal height =
            top > 0 ? std::max<qreal>(stub, box.height() * (*values[i] / top)) : stub;
        const QRectF column(cx - width / 2, box.bottom() - height, width, height);
        p.setBrush(*values[i] > 0 ? (i + 1 == values.size() ? color : earlier) : track);
        p.drawRoundedRect(column, std::min(radius, height / 2), std::min(radius, height / 2));
    }
    p.restore();
}

}  // namespace trotlet::ui
