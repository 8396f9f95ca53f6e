#pragma once

#include <QColor>
#include <QRectF>

#include <optional>
#include <vector>

class QPainter;

namespace trotlet::ui {

// A row of day columns scaled to the largest value: today (the last) in full colour, the days
// before it lighter, a day without a record as a small dot on the baseline, an empty day as a
// stub, so a week with gaps still reads as a week.
struct WeekColumns {
    static void paint(QPainter& painter, const QRectF& box,
                      const std::vector<std::optional<double>>& values, const QColor& color,
                      const QColor& track, double maxColumnWidth = 12);
};

}  // namespace trotlet::ui
