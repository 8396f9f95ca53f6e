#pragma once

#include <QColor>
#include <QPolygonF>
#include <QRectF>

#include <vector>

#include "panel/ChartData.h"

class QPainter;

namespace trotlet::ui {

// A small area chart of runs of history points; a gap between runs stays a gap rather than
// being bridged with an invented value.
struct Sparkline {
    static void paint(QPainter& painter, const QRectF& box,
                      const std::vector<panel::ChartRun>& runs, double spanSeconds, double top,
                      const QColor& color, bool filled);
    // One run as a line, over an area fading from `fillAlpha` at the top of `box` to nothing at
    // its bottom (none when 0). The detail charts draw their runs with it too.
    static void paintRun(QPainter& painter, const QPolygonF& points, const QRectF& box,
                         const QColor& color, double penWidth, double fillAlpha);
    // The top of the scale for series sharing a chart: the ceiling when fixed, else the
    // largest value (at least a tiny positive number so a flat zero line sits at the bottom).
    static double scaleTop(double ceiling, const panel::SparklineData& data);
};

}  // namespace trotlet::ui
