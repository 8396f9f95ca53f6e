#pragma once

#include <QColor>
#include <QRectF>

#include <vector>

#include "metrics/MetricHistory.h"

class QPainter;

namespace trotlet::ui {

// A small area chart of history points. Readings that are missing leave a gap: a pause longer
// than three typical intervals breaks the line rather than bridging it with an invented value.
struct Sparkline {
    static void paint(QPainter& painter, const QRectF& box,
                      const std::vector<metrics::HistoryPoint>& points, double ceiling,
                      const QColor& color, bool filled);
    // The top of the scale for series sharing a chart: the ceiling when fixed, else the
    // largest value (at least a tiny positive number so a flat zero line sits at the bottom).
    static double scaleTop(double ceiling, const std::vector<metrics::HistoryPoint>& a,
                           const std::vector<metrics::HistoryPoint>& b = {});
};

}  // namespace trotlet::ui
