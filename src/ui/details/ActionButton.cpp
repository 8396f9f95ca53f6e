#include "ui/details/ActionButton.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "ui/theme/Icons.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {

ActionButton::ActionButton(const QString& text, const ThemeStore& theme, QWidget* parent)
    : QWidget(parent), text_(text), theme_(theme) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::PointingHandCursor);
    setAccessibleName(text);
    setFixedHeight(Metrics::buttonHeight);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    resize(sizeHint());
}

void ActionButton::setText(const QString& text) {
    if (text == text_) return;
    text_ = text;
    setAccessibleName(text);
    resize(sizeHint());
    updateGeometry();
    update();
}

void ActionButton::setSymbol(const std::string& symbol) {
    symbol_ = symbol;
    resize(sizeHint());
    updateGeometry();
    update();
}

void ActionButton::setCompact(bool compact) {
    compact_ = compact;
    setFixedHeight(compact ? Metrics::compactButtonHeight : Metrics::buttonHeight);
    resize(sizeHint());
    updateGeometry();
}

void ActionButton::setStyle(Style style) {
    style_ = style;
    resize(sizeHint());
    updateGeometry();
    update();
}

QSize ActionButton::sizeHint() const {
    const QFontMetrics fm(style_ == Style::back ? theme_.theme().type().title
                                                : theme_.theme().type().label);
    const int icon = symbol_.empty() ? 0 : Metrics::iconSize + Metrics::spacingSmall;
    const int pad = style_ == Style::quiet || style_ == Style::back ? Metrics::spacingSmall
                                                                    : Metrics::spacingLarge;
    return QSize(fm.horizontalAdvance(text_) + icon + 2 * pad,
                 compact_ ? Metrics::compactButtonHeight : Metrics::buttonHeight);
}

void ActionButton::paintEvent(QPaintEvent*) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF r = QRectF(rect()).adjusted(1, 1, -1, -1);
    const qreal radius = r.height() / 2;
    QColor fill = Qt::transparent;
    QColor ink = pal.accent;
    if (style_ == Style::primary) {
        fill = pal.accent;
        ink = pal.onAccent;
        if (pressed_)
            fill = fill.darker(115);
        else if (hovered_)
            fill = fill.lighter(108);
    } else if (style_ == Style::chip) {
        fill = pal.chip;
        ink = pal.text;
        if (pressed_ || hovered_)
            fill.setAlphaF(std::min(1.0, fill.alphaF() * (pressed_ ? 2.2 : 1.6)));
    } else if (hovered_ || pressed_) {
        fill = pal.chip;
    }
    const QColor symbolInk = ink;
    if (style_ == Style::back) ink = pal.text;
    if (!isEnabled()) ink = pal.textTertiary;
    p.setPen(Qt::NoPen);
    p.setBrush(fill);
    p.drawRoundedRect(r, radius, radius);

    const int pad = style_ == Style::quiet || style_ == Style::back ? Metrics::spacingSmall
                                                                    : Metrics::spacingLarge;
    qreal x = r.left() + pad - 1;
    if (!symbol_.empty()) {
        const qreal icon = Metrics::iconSize;
        Icons::paint(p, QRectF(x, r.center().y() - icon / 2, icon, icon), symbol_, symbolInk);
        x += icon + Metrics::spacingSmall;
    }
    p.setFont(style_ == Style::back ? theme.type().title : theme.type().label);
    p.setPen(ink);
    p.drawText(QRectF(x, r.top(), r.right() - x, r.height()), Qt::AlignLeft | Qt::AlignVCenter,
               text_);
    if (hasFocus() && keyboardFocus_) {
        p.setPen(QPen(pal.focusRing, Metrics::focusWidth));
        p.setBrush(Qt::NoBrush);
        p.drawRoundedRect(r.adjusted(1, 1, -1, -1), radius - 1, radius - 1);
    }
}

void ActionButton::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    pressed_ = true;
    update();
}

void ActionButton::mouseReleaseEvent(QMouseEvent* event) {
    const bool was = pressed_;
    pressed_ = false;
    update();
    if (was && rect().contains(event->position().toPoint()) && isEnabled()) emit clicked();
}

void ActionButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter ||
        event->key() == Qt::Key_Space) {
        if (isEnabled()) emit clicked();
        return;
    }
    QWidget::keyPressEvent(event);
}

void ActionButton::enterEvent(QEnterEvent*) {
    hovered_ = true;
    update();
}

void ActionButton::leaveEvent(QEvent*) {
    hovered_ = false;
    pressed_ = false;
    update();
}

void ActionButton::focusInEvent(QFocusEvent* event) {
    keyboardFocus_ = isKeyboardFocus(event->reason());
    update();
}

void ActionButton::focusOutEvent(QFocusEvent*) { update(); }

void ActionButton::changeEvent(QEvent* event) {
    if (event->type() == QEvent::EnabledChange) update();
    QWidget::changeEvent(event);
}

}  // namespace trotlet::ui
