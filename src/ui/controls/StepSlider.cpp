#include "ui/controls/StepSlider.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {

StepSlider::StepSlider(const ThemeStore& theme, QWidget* parent) : Control(theme, parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFixedHeight(Metrics::sliderThumb + 8);
    setCursor(Qt::PointingHandCursor);
}

QSize StepSlider::sizeHint() const { return QSize(200, Metrics::sliderThumb + 8); }

void StepSlider::setStops(int count, const QStringList& spoken) {
    count_ = std::max(2, count);
    spoken_ = spoken;
    if (selected_ && *selected_ >= count_) selected_.reset();
    update();
}

void StepSlider::setSelected(std::optional<int> stop) {
    if (stop && (*stop < 0 || *stop >= count_)) stop.reset();
    if (stop == selected_) return;
    selected_ = stop;
    update();
    announceChange();
}

QString StepSlider::accessibleValue() const {
    if (!selected_) return {};
    return *selected_ < spoken_.size() ? spoken_[*selected_] : QString::number(*selected_);
}

qreal StepSlider::stopX(int stop) const {
    const qreal inset = Metrics::sliderThumb / 2.0 + 2;
    const qreal span = width() - 2 * inset;
    return inset + span * stop / qreal(count_ - 1);
}

int StepSlider::stopAt(qreal x) const {
    const qreal inset = Metrics::sliderThumb / 2.0 + 2;
    const qreal span = std::max(1.0, width() - 2 * inset);
    return std::clamp(int(std::lround((x - inset) / span * (count_ - 1))), 0, count_ - 1);
}

void StepSlider::paintEvent(QPaintEvent*) {
    const Palette& pal = theme().palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled()) p.setOpacity(0.45);
    const qreal cy = height() / 2.0;
    const qreal left = stopX(0), right = stopX(count_ - 1);
    const qreal trackHeight = 4;
    p.setPen(Qt::NoPen);
    p.setBrush(pal.track);
    p.drawRoundedRect(QRectF(left, cy - trackHeight / 2, right - left, trackHeight), 2, 2);
    const qreal at = selected_ ? stopX(*selected_) : left;
    if (selected_) {
        p.setBrush(pal.accent);
        p.drawRoundedRect(QRectF(left, cy - trackHeight / 2, at - left, trackHeight), 2, 2);
    }
    // Ticks help only while they are few enough to tell apart.
    if (count_ <= 12) {
        for (int i = 0; i < count_; ++i) {
            p.setBrush(selected_ && i <= *selected_ ? pal.accent : pal.textTertiary);
            p.drawEllipse(QPointF(stopX(i), cy), 1.5, 1.5);
        }
    }
    if (!selected_) return;
    const qreal r = Metrics::sliderThumb / 2.0;
    p.setBrush(pal.shadow);
    p.drawEllipse(QPointF(at, cy + 0.8), r + 0.4, r + 0.4);
    p.setPen(QPen(pal.border, 1));
    p.setBrush(pal.knob);
    p.drawEllipse(QPointF(at, cy), r, r);
    paintFocusRing(p, QRectF(at - r, cy - r, 2 * r, 2 * r), r);
}

void StepSlider::choose(int stop) {
    if (!isEnabled()) return;
    stop = std::clamp(stop, 0, count_ - 1);
    const bool changed = selected_ != stop;
    setSelected(stop);
    if (changed) emit chosen(stop);
}

void StepSlider::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) choose(stopAt(event->position().x()));
}

void StepSlider::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons() & Qt::LeftButton) choose(stopAt(event->position().x()));
}

void StepSlider::keyPressEvent(QKeyEvent* event) {
    const int at = selected_.value_or(0);
    const int page = std::max(1, count_ / 5);
    switch (event->key()) {
        case Qt::Key_Left:
        case Qt::Key_Down:
            choose(selected_ ? at - 1 : 0);
            return;
        case Qt::Key_Right:
        case Qt::Key_Up:
            choose(selected_ ? at + 1 : 0);
            return;
        case Qt::Key_PageDown:
            choose(at - page);
            return;
        case Qt::Key_PageUp:
            choose(at + page);
            return;
        case Qt::Key_Home:
            choose(0);
            return;
        case Qt::Key_End:
            choose(count_ - 1);
            return;
        default:
            Control::keyPressEvent(event);
    }
}

}  // namespace trotlet::ui
