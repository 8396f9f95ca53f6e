#pragma once

#include <QColor>
#include <QFont>
#include <QRectF>
#include <QString>

#include <string>
#include <string_view>

#include "shop/Catalog.h"

class QPainter;

namespace trotlet::ui {

struct Palette;
class Theme;

// Drawing pieces the Shop's views share, so every card, bar and pill looks the same.
namespace shoppaint {

inline QString qs(const std::string& s) { return QString::fromStdString(s); }

// A card's surface and hairline, as on the Overview.
void card(QPainter& p, const QRectF& box, const Palette& pal, bool hovered = false);
// A keyboard focus ring around a box.
void focusRing(QPainter& p, const QRectF& box, const Palette& pal, qreal radius);
// A rounded bar filled to `fraction`.
void progress(QPainter& p, const QRectF& box, double fraction, const QColor& fill,
              const QColor& track);
// A symbol in a softly tinted circle.
void badge(QPainter& p, const QRectF& circle, std::string_view symbol, const QColor& tint,
           bool muted = false);
// A small rounded label; returns its width.
qreal pill(QPainter& p, const QPointF& topLeft, const QString& text, const QFont& font,
           const QColor& tint);
qreal pillWidth(const QString& text, const QFont& font);

// One line of text in which the fish emoji is drawn as the Fish symbol, so it reads the same
// on a desktop without an emoji font. Elided to the box; returns the width drawn.
qreal fishText(QPainter& p, const QRectF& box, const QString& text, const QFont& font,
               const QColor& color, const QColor& fishColor, Qt::Alignment align = Qt::AlignLeft);
qreal fishTextWidth(const QString& text, const QFont& font);
// Wrapped text; returns the height it takes at `width`.
qreal wrapped(QPainter& p, const QRectF& box, const QString& text, const QFont& font,
              const QColor& color);
qreal wrappedHeight(const QString& text, const QFont& font, qreal width);

// The colour that marks a rarity.
QColor rarityColor(const Palette& pal, shop::Rarity rarity);
// The Fish colour, as in the header's chip.
QColor fishColor(const Palette& pal);
// The Golden Fish's gold.
QColor gold(const Palette& pal);

}  // namespace shoppaint
}  // namespace trotlet::ui
