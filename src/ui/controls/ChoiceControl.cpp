#include "ui/controls/ChoiceControl.h"

#include <QKeyEvent>
#include <QPainter>

#include <cmath>

#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {
namespace {

constexpr qreal chipPadding = 12;  // text to a chip's edge

}  // namespace

ChoiceControl::ChoiceControl(Style style, const ThemeStore& theme, QWidget* parent)
    : Control(theme, parent), style_(style) {
    setMouseTracking(true);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    policy.setHeightForWidth(style == Style::chips);
    setSizePolicy(policy);
}

void ChoiceControl::setOptions(const QStringList& labels, const QStringList& spoken) {
    labels_ = labels;
    spoken_ = spoken;
    if (selected_ && *selected_ >= labels_.size()) selected_.reset();
    rects_ = layoutFor(width());
    updateGeometry();
    update();
}

void ChoiceControl::setSelected(std::optional<int> index) {
    if (index && (*index < 0 || *index >= labels_.size())) index.reset();
    if (index == selected_) return;
    selected_ = index;
    update();
    announceChange();
}

QString ChoiceControl::accessibleValue() const {
    if (!selected_) return QStringLiteral("None chosen");
    const int i = *selected_;
    return i < spoken_.size() && !spoken_[i].isEmpty() ? spoken_[i] : labels_[i];
}

std::vector<QRectF> ChoiceControl::layoutFor(int width) const {
    std::vector<QRectF> rects;
    if (labels_.isEmpty() || width <= 0) return rects;
    const qreal h = Metrics::controlHeight;
    if (style_ == Style::segments) {
        const qreal w = (width - 4.0) / labels_.size();
        for (int i = 0; i < labels_.size(); ++i) rects.emplace_back(2 + w * i, 2, w, h - 4);
        return rects;
    }
    const QFontMetricsF fm(theme().type().label);
    qreal x = 0, y = 0;
    for (const QString& label : labels_) {
        const qreal w = fm.horizontalAdvance(label) + 2 * chipPadding;
        if (x > 0 && x + w > width) {
            x = 0;
            y += h + Metrics::chipGap;
        }
        rects.emplace_back(x, y, w, h);
        x += w + Metrics::chipGap;
    }
    return rects;
}

int ChoiceControl::heightForWidth(int width) const {
    const auto rects = layoutFor(width);
    return rects.empty() ? Metrics::controlHeight : int(std::ceil(rects.back().bottom()));
}

QSize ChoiceControl::sizeHint() const {
    const int w = std::max(width(), 120);
    return QSize(w, hasHeightForWidth() ? heightForWidth(w) : Metrics::controlHeight);
}

QRectF ChoiceControl::optionRect(int index) const {
    return index >= 0 && index < int(rects_.size()) ? rects_[std::size_t(index)] : QRectF();
}

void ChoiceControl::resizeEvent(QResizeEvent* event) {
    rects_ = layoutFor(width());
    Control::resizeEvent(event);
}

int ChoiceControl::optionAt(const QPointF& point) const {
    for (std::size_t i = 0; i < rects_.size(); ++i)
        if (rects_[i].contains(point)) return int(i);
    return -1;
}

void ChoiceControl::paintEvent(QPaintEvent*) {
    const Theme& t = theme();
    const Palette& pal = t.palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled()) p.setOpacity(0.45);
    p.setFont(t.type().label);
    if (style_ == Style::segments) {
        const QRectF track =
            QRectF(0, 0, width(), Metrics::controlHeight).adjusted(0.5, 0.5, -0.5, -0.5);
        p.setPen(Qt::NoPen);
        p.setBrush(pal.chip);
        p.drawRoundedRect(track, track.height() / 2, track.height() / 2);
    }
    const int hover = hovered() ? hoveredOption_ : -1;
    for (std::size_t i = 0; i < rects_.size(); ++i) {
        const QRectF r = rects_[i];
        const bool chosen = selected_ && *selected_ == int(i);
        const qreal radius = r.height() / 2;
        if (style_ == Style::segments) {
            if (chosen) {
                p.setPen(QPen(pal.border, 1));
                p.setBrush(pal.surface);
                p.drawRoundedRect(r, radius, radius);
                paintFocusRing(p, r.adjusted(2, 2, -2, -2), radius - 2);
            } else if (hover == int(i)) {
                p.setPen(Qt::NoPen);
                p.setBrush(pal.chip);
                p.drawRoundedRect(r, radius, radius);
            }
            p.setPen(chosen ? pal.text : pal.textSecondary);
        } else {
            p.setPen(chosen ? Qt::NoPen : QPen(pal.border, 1));
            p.setBrush(chosen ? pal.accent : hover == int(i) ? pal.chip : pal.surface);
            p.drawRoundedRect(r.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
            if (chosen) paintFocusRing(p, r, radius);
            p.setPen(chosen ? pal.onAccent : pal.text);
        }
        p.drawText(r, Qt::AlignCenter, labels_[int(i)]);
    }
    // With nothing chosen the ring goes round the whole control.
    if (!selected_ && !rects_.empty())
        paintFocusRing(p, QRectF(rect()).adjusted(2, 2, -2, -2), Metrics::controlHeight / 2.0);
}

void ChoiceControl::choose(int index) {
    if (!isEnabled() || index < 0 || index >= labels_.size()) return;
    const bool changed = selected_ != index;
    setSelected(index);
    // Choosing the option already chosen is no change: nothing is reported.
    if (changed) emit chosen(index);
}

void ChoiceControl::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) choose(optionAt(event->position()));
}

void ChoiceControl::mouseMoveEvent(QMouseEvent* event) {
    const int over = optionAt(event->position());
    if (over == hoveredOption_) return;
    hoveredOption_ = over;
    update();
}

void ChoiceControl::keyPressEvent(QKeyEvent* event) {
    const int last = int(labels_.size()) - 1;
    const int at = selected_.value_or(-1);
    switch (event->key()) {
        case Qt::Key_Left:
        case Qt::Key_Up:
            choose(at < 0 ? 0 : std::max(0, at - 1));
            return;
        case Qt::Key_Right:
        case Qt::Key_Down:
            choose(at < 0 ? 0 : std::min(last, at + 1));
            return;
        case Qt::Key_Home:
            choose(0);
            return;
        case Qt::Key_End:
            choose(last);
            return;
        default:
            Control::keyPressEvent(event);
    }
}

}  // namespace trotlet::ui
