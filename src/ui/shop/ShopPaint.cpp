#include "ui/shop/ShopPaint.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>

#include "ui/shop/ShopMetrics.h"
#include "ui/theme/Icons.h"
#include "ui/theme/Theme.h"

namespace trotlet::ui::shoppaint {
namespace {

const QString fishEmoji = QString::fromUtf8("\xF0\x9F\x90\x9F");

}  // namespace

void card(QPainter& p, const QRectF& box, const Palette& pal, bool hovered) {
    p.save();
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(pal.border, 1));
    p.setBrush(hovered ? pal.surfaceHover : pal.surface);
    const QRectF r = box.adjusted(0.5, 0.5, -0.5, -0.5);
    p.drawRoundedRect(r, Metrics::cardRadius, Metrics::cardRadius);
    p.restore();
}

void focusRing(QPainter& p, const QRectF& box, const Palette& pal, qreal radius) {
    p.save();
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(pal.focusRing, Metrics::focusWidth));
    p.setBrush(Qt::NoBrush);
    p.drawRoundedRect(box.adjusted(1, 1, -1, -1), radius, radius);
    p.restore();
}

void progress(QPainter& p, const QRectF& box, double fraction, const QColor& fill,
              const QColor& track) {
    p.save();
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(Qt::NoPen);
    const qreal r = box.height() / 2;
    p.setBrush(track);
    p.drawRoundedRect(box, r, r);
    const double f = std::clamp(fraction, 0.0, 1.0);
    if (f > 0) {
        // A sliver still shows as a round dot rather than a hairline.
        const qreal w = std::max(box.height(), box.width() * f);
        p.setBrush(fill);
        p.drawRoundedRect(QRectF(box.left(), box.top(), w, box.height()), r, r);
    }
    p.restore();
}

void badge(QPainter& p, const QRectF& circle, std::string_view symbol, const QColor& tint,
           bool muted) {
    p.save();
    p.setRenderHint(QPainter::Antialiasing);
    QColor back = tint;
    back.setAlphaF(muted ? 0.10 : 0.16);
    p.setPen(Qt::NoPen);
    p.setBrush(back);
    p.drawEllipse(circle);
    const qreal icon = circle.width() * 0.56;
    Icons::paint(p,
                 QRectF(circle.center().x() - icon / 2, circle.center().y() - icon / 2, icon, icon),
                 symbol, tint);
    p.restore();
}

qreal pillWidth(const QString& text, const QFont& font) {
    return QFontMetricsF(font).horizontalAdvance(text) + 12;
}

qreal pill(QPainter& p, const QPointF& topLeft, const QString& text, const QFont& font,
           const QColor& tint) {
    const QFontMetricsF fm(font);
    const QRectF box(topLeft, QSizeF(pillWidth(text, font), fm.height() + 2));
    p.save();
    p.setRenderHint(QPainter::Antialiasing);
    QColor back = tint;
    back.setAlphaF(0.14);
    p.setPen(Qt::NoPen);
    p.setBrush(back);
    p.drawRoundedRect(box, box.height() / 2, box.height() / 2);
    p.setFont(font);
    p.setPen(tint);
    p.drawText(box, Qt::AlignCenter, text);
    p.restore();
    return box.width();
}

qreal fishTextWidth(const QString& text, const QFont& font) {
    const QFontMetricsF fm(font);
    qreal width = 0;
    const QStringList parts = text.split(fishEmoji);
    for (int i = 0; i < parts.size(); ++i) {
        width += fm.horizontalAdvance(parts[i]);
        if (i + 1 < parts.size()) width += fm.height() * 0.95;
    }
    return width;
}

qreal fishText(QPainter& p, const QRectF& box, const QString& text, const QFont& font,
               const QColor& color, const QColor& fishColor, Qt::Alignment align) {
    const QFontMetricsF fm(font);
    p.save();
    p.setFont(font);
    p.setPen(color);
    if (!text.contains(fishEmoji)) {
        const QString elided = fm.elidedText(text, Qt::ElideRight, box.width());
        p.drawText(box, align | Qt::AlignVCenter, elided);
        p.restore();
        return std::min(box.width(), fm.horizontalAdvance(elided));
    }
    const qreal total = std::min(box.width(), fishTextWidth(text, font));
    qreal x = box.left();
    if (align & Qt::AlignRight) x = box.right() - total;
    if (align & Qt::AlignHCenter) x = box.center().x() - total / 2;
    const QStringList parts = text.split(fishEmoji);
    const qreal icon = fm.height() * 0.95;
    for (int i = 0; i < parts.size(); ++i) {
        const qreal w = fm.horizontalAdvance(parts[i]);
        p.drawText(QRectF(x, box.top(), w + 1, box.height()), Qt::AlignLeft | Qt::AlignVCenter,
                   parts[i]);
        x += w;
        if (i + 1 < parts.size()) {
            Icons::paint(p, QRectF(x, box.center().y() - icon / 2, icon, icon), "fish.fill",
                         fishColor);
            x += icon;
        }
    }
    p.restore();
    return total;
}

qreal wrappedHeight(const QString& text, const QFont& font, qreal width) {
    if (text.isEmpty()) return 0;
    return QFontMetricsF(font)
        .boundingRect(QRectF(0, 0, width, 10000), Qt::TextWordWrap, text)
        .height();
}

qreal wrapped(QPainter& p, const QRectF& box, const QString& text, const QFont& font,
              const QColor& color) {
    p.save();
    p.setFont(font);
    p.setPen(color);
    p.drawText(box, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, text);
    p.restore();
    return wrappedHeight(text, font, box.width());
}

QColor rarityColor(const Palette& pal, shop::Rarity rarity) {
    switch (rarity) {
        case shop::Rarity::starter:
            return pal.textSecondary;
        case shop::Rarity::common:
            return pal.named("green");
        case shop::Rarity::rare:
            return pal.named("blue");
        case shop::Rarity::epic:
            return pal.named("purple");
        case shop::Rarity::legendary:
            return pal.named("orange");
        case shop::Rarity::secret:
            return gold(pal);
    }
    return pal.textSecondary;
}

QColor fishColor(const Palette& pal) { return pal.named("cyan"); }

QColor gold(const Palette& pal) { return pal.named("yellow"); }

}  // namespace trotlet::ui::shoppaint
