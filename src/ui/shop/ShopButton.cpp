#include "ui/shop/ShopButton.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QPainter>

#include "ui/shop/ShopMetrics.h"
#include "ui/shop/ShopPaint.h"
#include "ui/theme/Icons.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {

ShopButton::ShopButton(Style style, const ThemeStore& theme, QWidget* parent)
    : QAbstractButton(parent), style_(style), theme_(theme) {
    // The keyboard reaches it with Tab; a click leaves the focus where it was, so a button that
    // disables itself (Collect) doesn't throw a focus ring onto its neighbour.
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
    connect(this, &QAbstractButton::toggled, this, [this] { update(); });
}

void ShopButton::setSymbol(std::string symbol) {
    symbol_ = std::move(symbol);
    updateGeometry();
    update();
}

void ShopButton::setTrailingSymbol(std::string symbol) {
    trailing_ = std::move(symbol);
    updateGeometry();
    update();
}

void ShopButton::setCompact(bool compact) {
    compact_ = compact;
    updateGeometry();
}

QSize ShopButton::sizeHint() const {
    const QFont& font = theme_.theme().type().label;
    const int h = compact_ || style_ == Style::link ? ShopMetrics::smallButtonHeight
                                                    : ShopMetrics::buttonHeight;
    if (style_ == Style::icon) return QSize(h, h);
    const qreal icon = Metrics::iconSize;
    qreal w = QFontMetricsF(font).horizontalAdvance(text());
    if (!symbol_.empty()) w += icon + Metrics::spacingSmall;
    if (!trailing_.empty()) w += icon * 0.8 + 2;
    const int padding = style_ == Style::link ? Metrics::spacingSmall
                                              : (compact_ ? 10 : ShopMetrics::buttonPadding);
    return QSize(int(std::ceil(w)) + 2 * padding, h);
}

void ShopButton::paintEvent(QPaintEvent*) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF box = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    const qreal radius = box.height() / 2;
    const bool enabled = isEnabled();
    QColor fill = Qt::transparent;
    QColor ink = pal.text;
    switch (style_) {
        case Style::primary:
            fill = enabled ? pal.accent : pal.track;
            if (enabled && (hovered_ || isDown()))
                fill = isDown() ? fill.darker(112) : fill.lighter(108);
            ink = enabled ? pal.onAccent : pal.textTertiary;
            break;
        case Style::secondary:
            fill = pal.chip;
            if (enabled && (hovered_ || isDown()))
                fill.setAlphaF(std::min(1.0, fill.alphaF() * (isDown() ? 2.2 : 1.6)));
            ink = enabled ? pal.text : pal.textTertiary;
            break;
        case Style::link:
            ink = enabled ? pal.accent : pal.textTertiary;
            if (hovered_ && enabled) {
                fill = pal.accent;
                fill.setAlphaF(0.10);
            }
            break;
        case Style::icon:
            ink = pal.textSecondary;
            if (hovered_ || isDown()) fill = pal.chip;
            break;
    }
    if (fill.alpha() > 0) {
        p.setPen(Qt::NoPen);
        p.setBrush(fill);
        p.drawRoundedRect(box, radius, radius);
    }
    if (hasFocus() && keyboardFocus_) shoppaint::focusRing(p, QRectF(rect()), pal, radius);

    const qreal icon = style_ == Style::icon ? box.height() * 0.5 : Metrics::iconSize;
    if (style_ == Style::icon) {
        Icons::paint(p,
                     QRectF(box.center().x() - icon / 2, box.center().y() - icon / 2, icon, icon),
                     symbol_, ink);
        return;
    }
    const QFont& font = theme.type().label;
    const QFontMetricsF fm(font);
    qreal width = fm.horizontalAdvance(text());
    if (!symbol_.empty()) width += icon + Metrics::spacingSmall;
    if (!trailing_.empty()) width += icon * 0.8 + 2;
    qreal x = box.center().x() - width / 2;
    if (!symbol_.empty()) {
        Icons::paint(p, QRectF(x, box.center().y() - icon / 2, icon, icon), symbol_, ink);
        x += icon + Metrics::spacingSmall;
    }
    p.setFont(font);
    p.setPen(ink);
    const qreal textWidth = fm.horizontalAdvance(text());
    p.drawText(QRectF(x, box.top(), textWidth + 1, box.height()), Qt::AlignLeft | Qt::AlignVCenter,
               text());
    if (!trailing_.empty()) {
        const qreal t = icon * 0.8;
        Icons::paint(p, QRectF(x + textWidth + 2, box.center().y() - t / 2, t, t), trailing_, ink);
    }
}

void ShopButton::keyPressEvent(QKeyEvent* event) {
    // Enter presses a button here as Space does; the panel has no default button to steal it.
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && isEnabled()) {
        click();
        return;
    }
    QAbstractButton::keyPressEvent(event);
}

void ShopButton::focusInEvent(QFocusEvent* event) {
    keyboardFocus_ = isKeyboardFocus(event->reason());
    QAbstractButton::focusInEvent(event);
}

void ShopButton::focusOutEvent(QFocusEvent* event) { QAbstractButton::focusOutEvent(event); }

void ShopButton::enterEvent(QEnterEvent* event) {
    hovered_ = true;
    update();
    QAbstractButton::enterEvent(event);
}

void ShopButton::leaveEvent(QEvent* event) {
    hovered_ = false;
    update();
    QAbstractButton::leaveEvent(event);
}

}  // namespace trotlet::ui
