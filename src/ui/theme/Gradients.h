#pragma once

#include <QBrush>
#include <QGradient>
#include <QRectF>

class QPainter;

namespace trotlet::ui {

// Gradient brushes that carry their own small image instead of being QGradient brushes.
//
// Qt's raster engine keeps the colour table of every gradient brush it paints, one per
// gradient and painter opacity, up to 60 tables of 12 KB, for the rest of the process, and
// offers no way to empty it. The panel paints many (a sky for each scene, a cloud for each
// depth, a Golden Fish at every step of its fade), so a closed panel would go on holding up to
// 700 KB of tables it will not use again. These images go with the brush.
//
// Stops run from 0 to 1 in ascending order and blend as Qt blends them (premultiplied).
// Use the brushes inside the rectangle they were made for: outside it the image repeats.

// From the top edge of `span` (0) to its bottom edge (1).
QBrush verticalGradient(const QRectF& span, const QGradientStops& stops);

// From the centre of the ellipse inscribed in `box` (0) out to its edge (1), and the last
// stop beyond it. Drawn at `painter`'s current resolution, so make it where it is used.
QBrush radialGradient(const QPainter& painter, const QRectF& box, const QGradientStops& stops);

}  // namespace trotlet::ui
