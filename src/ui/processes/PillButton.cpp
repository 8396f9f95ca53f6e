#include "ui/processes/PillButton.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QPainter>

#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {

PillButton::PillButton(const QString& text, Kind kind, const ThemeStore& theme, QWidget* parent)
    : QAbstractButton(parent), kind_(kind), theme_(theme) {
    setText(text);
    setAccessibleName(text);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    setFixedHeight(Metrics::buttonHeight);
}

QSize PillButton::sizeHint() const {
    const QFontMetrics fm(theme_.theme().type().label);
    return QSize(fm.horizontalAdvance(text()) + 2 * Metrics::spacingLarge + 4,
                 Metrics::buttonHeight);
}

void PillButton::paintEvent(QPaintEvent*) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF r = QRectF(rect()).adjusted(1, 1, -1, -1);
    QColor fill = kind_ == Kind::destructive ? pal.critical : pal.chip;
    if (kind_ == Kind::destructive && (hovered_ || isDown()))
        fill = fill.darker(isDown() ? 118 : 108);
    if (kind_ == Kind::plain && (hovered_ || isDown()))
        fill.setAlphaF(std::min(1.0, fill.alphaF() * (isDown() ? 2.4 : 1.7)));
    if (!isEnabled()) fill.setAlphaF(fill.alphaF() * 0.5);
    p.setPen(Qt::NoPen);
    p.setBrush(fill);
    p.drawRoundedRect(r, r.height() / 2, r.height() / 2);
    if (hasFocus() && keyboardFocus_) {
        p.setPen(QPen(pal.focusRing, Metrics::focusWidth));
        p.setBrush(Qt::NoBrush);
        p.drawRoundedRect(r.adjusted(-0.5, -0.5, 0.5, 0.5), r.height() / 2, r.height() / 2);
    }
    p.setFont(theme.type().label);
    QColor ink = kind_ == Kind::destructive ? pal.onAccent : pal.text;
    if (!isEnabled()) ink = pal.textTertiary;
    p.setPen(ink);
    p.drawText(r, Qt::AlignCenter, text());
}

void PillButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
        return;
    }
    QAbstractButton::keyPressEvent(event);
}

void PillButton::focusInEvent(QFocusEvent* event) {
    keyboardFocus_ = isKeyboardFocus(event->reason());
    QAbstractButton::focusInEvent(event);
}

void PillButton::enterEvent(QEnterEvent* event) {
    hovered_ = true;
    update();
    QAbstractButton::enterEvent(event);
}

void PillButton::leaveEvent(QEvent* event) {
    hovered_ = false;
    update();
    QAbstractButton::leaveEvent(event);
}

}  // namespace trotlet::ui
