#pragma once

#include <QColor>
#include <QRectF>

#include <string_view>

class QPainter;

namespace trotlet::ui {

// The panel's symbols, drawn for this app with QPainter paths on a 24-unit grid and tinted by
// the caller, so they look the same on every desktop whatever its icon theme. Keyed by the
// names the data already uses: the card registry's ("cpu", "temperature", …) and the weather
// and shop symbols ("cloud.rain.fill", "fish.fill", …).
namespace Icons {

// Draws the symbol into `box`, keeping its aspect; false (and nothing drawn) for an unknown
// name.
bool paint(QPainter& painter, const QRectF& box, std::string_view symbol, const QColor& color);

bool has(std::string_view symbol);

}  // namespace Icons

}  // namespace trotlet::ui
