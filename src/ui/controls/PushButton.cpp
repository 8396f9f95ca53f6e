#include "ui/controls/PushButton.h"

#include <QKeyEvent>
#include <QPainter>

#include "ui/theme/Icons.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {
namespace {

constexpr qreal padding = 12;
constexpr qreal iconSide = 14;

}  // namespace

PushButton::PushButton(const QString& text, Style style, const ThemeStore& theme, QWidget* parent)
    : Control(theme, parent), text_(text), style_(style) {
    setAccessibleName(text);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void PushButton::setText(const QString& text) {
    if (text == text_) return;
    if (accessibleName() == text_) setAccessibleName(text);
    text_ = text;
    updateGeometry();
    update();
}

void PushButton::setIcon(std::string symbol) {
    icon_ = std::move(symbol);
    updateGeometry();
    update();
}

void PushButton::setStyle(Style style) {
    style_ = style;
    update();
}

QSize PushButton::sizeHint() const {
    const QFontMetricsF fm(theme().type().label);
    const qreal icon = icon_.empty() ? 0 : iconSide + 6;
    return QSize(int(std::ceil(fm.horizontalAdvance(text_) + icon + 2 * padding)) + 4,
                 Metrics::controlHeight + 4);
}

void PushButton::activate() {
    if (isEnabled()) emit clicked();
}

void PushButton::paintEvent(QPaintEvent*) {
    const Theme& t = theme();
    const Palette& pal = t.palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled()) p.setOpacity(0.45);
    const QRectF face = QRectF(rect()).adjusted(2, 2, -2, -2);
    const qreal r = face.height() / 2;
    QColor fill = pal.chip, ink = pal.text;
    switch (style_) {
        case Style::primary:
            fill = pal.accent;
            ink = pal.onAccent;
            break;
        case Style::destructive:
            fill = pal.chip;
            ink = pal.critical;
            break;
        case Style::quiet:
            fill = Qt::transparent;
            ink = pal.accent;
            break;
        case Style::plain:
            break;
    }
    if (style_ == Style::quiet && hovered()) fill = pal.chip;
    p.setPen(Qt::NoPen);
    p.setBrush(fill);
    p.drawRoundedRect(face, r, r);
    if ((hovered() || pressed_) && style_ != Style::quiet) {
        // Darken a filled button a little, lighten it in dark mode.
        QColor veil = t.isDark() ? pal.onAccent : pal.text;
        veil.setAlphaF(pressed_ ? 0.16 : 0.07);
        p.setBrush(veil);
        p.drawRoundedRect(face, r, r);
    }
    const QFontMetricsF fm(t.type().label);
    const qreal textWidth = fm.horizontalAdvance(text_);
    const qreal icon = icon_.empty() ? 0 : iconSide + 6;
    qreal x = face.center().x() - (textWidth + icon) / 2;
    if (!icon_.empty()) {
        Icons::paint(p, QRectF(x, face.center().y() - iconSide / 2, iconSide, iconSide), icon_,
                     ink);
        x += icon;
    }
    p.setFont(t.type().label);
    p.setPen(ink);
    p.drawText(QRectF(x, face.top(), textWidth + 1, face.height()),
               Qt::AlignVCenter | Qt::AlignLeft, text_);
    paintFocusRing(p, face, r);
}

void PushButton::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    pressed_ = true;
    update();
}

void PushButton::mouseReleaseEvent(QMouseEvent* event) {
    if (!pressed_) return;
    pressed_ = false;
    update();
    if (rect().contains(event->position().toPoint())) activate();
}

void PushButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Return ||
        event->key() == Qt::Key_Enter) {
        activate();
        return;
    }
    Control::keyPressEvent(event);
}

}  // namespace trotlet::ui
