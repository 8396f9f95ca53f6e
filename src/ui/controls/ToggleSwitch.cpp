#include "ui/controls/ToggleSwitch.h"

#include <QKeyEvent>
#include <QPainter>

#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {

ToggleSwitch::ToggleSwitch(const ThemeStore& theme, QWidget* parent) : Control(theme, parent) {
    setFixedSize(sizeHint());
    setCursor(Qt::PointingHandCursor);
}

QSize ToggleSwitch::sizeHint() const {
    // Room around the track for the focus ring.
    return QSize(Metrics::switchWidth + 6, Metrics::switchHeight + 6);
}

QString ToggleSwitch::accessibleValue() const {
    return on_ ? QStringLiteral("On") : QStringLiteral("Off");
}

void ToggleSwitch::setOn(bool on) {
    if (on == on_) return;
    on_ = on;
    update();
    announceChange();
}

void ToggleSwitch::activate() {
    if (!isEnabled()) return;
    setOn(!on_);
    emit toggled(on_);
}

void ToggleSwitch::paintEvent(QPaintEvent*) {
    const Palette& pal = theme().palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled()) p.setOpacity(0.45);
    const QRectF track((width() - Metrics::switchWidth) / 2.0,
                       (height() - Metrics::switchHeight) / 2.0, Metrics::switchWidth,
                       Metrics::switchHeight);
    const qreal r = track.height() / 2;
    p.setPen(Qt::NoPen);
    p.setBrush(on_ ? pal.accent : pal.track);
    p.drawRoundedRect(track, r, r);
    if (!on_ && hovered()) {
        p.setBrush(pal.chip);
        p.drawRoundedRect(track, r, r);
    }
    const qreal knob = track.height() - 4;
    const QPointF centre(on_ ? track.right() - 2 - knob / 2 : track.left() + 2 + knob / 2,
                         track.center().y());
    // A soft shadow lifts the knob off a light track.
    p.setBrush(pal.shadow);
    p.drawEllipse(centre + QPointF(0, 0.6), knob / 2 + 0.3, knob / 2 + 0.3);
    p.setBrush(pal.knob);
    p.drawEllipse(centre, knob / 2, knob / 2);
    paintFocusRing(p, track, r);
}

void ToggleSwitch::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        activate();
}

void ToggleSwitch::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Return ||
        event->key() == Qt::Key_Enter) {
        activate();
        return;
    }
    Control::keyPressEvent(event);
}

}  // namespace trotlet::ui
