#include "ui/details/RangeSwitch.h"

#include <QAccessible>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {
namespace {

constexpr int kCount = int(panel::ChartRangeNames.size());
constexpr int kSegmentWidth = 40;
constexpr int kHeight = 22;

QString label(int index) {
    return QString::fromStdString(panel::chartRangeLabel(panel::ChartRange(index)));
}

}  // namespace

RangeSwitch::RangeSwitch(const ThemeStore& theme, QWidget* parent)
    : QWidget(parent), theme_(theme) {
    setObjectName(QStringLiteral("chartRange"));
    setFocusPolicy(Qt::StrongFocus);
    setFixedSize(sizeHint());
    setAccessibleName(QStringLiteral("Chart range"));
    setAccessibleDescription(label(0));
}

QSize RangeSwitch::sizeHint() const { return QSize(kCount * kSegmentWidth + 4, kHeight); }

QRectF RangeSwitch::segment(int index) const {
    return QRectF(2 + index * kSegmentWidth, 2, kSegmentWidth, height() - 4);
}

void RangeSwitch::setRange(panel::ChartRange range) {
    if (range == range_) return;
    range_ = range;
    setAccessibleDescription(label(int(range)));
    QAccessibleEvent event(this, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&event);
    update();
}

void RangeSwitch::choose(panel::ChartRange range) {
    const bool changed = range != range_;
    setRange(range);
    if (changed) emit rangeChosen(range);
}

void RangeSwitch::paintEvent(QPaintEvent*) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF track = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    p.setPen(Qt::NoPen);
    p.setBrush(pal.chip);
    p.drawRoundedRect(track, track.height() / 2, track.height() / 2);
    QFont font = theme.type().caption;
    font.setWeight(QFont::DemiBold);
    p.setFont(font);
    for (int i = 0; i < kCount; ++i) {
        const QRectF r = segment(i);
        const bool selected = i == int(range_);
        if (selected) {
            p.setPen(QPen(pal.border, 1));
            p.setBrush(pal.surface);
            p.drawRoundedRect(r, r.height() / 2, r.height() / 2);
            if (hasFocus() && keyboardFocus_) {
                p.setPen(QPen(pal.focusRing, Metrics::focusWidth));
                p.setBrush(Qt::NoBrush);
                p.drawRoundedRect(r.adjusted(1, 1, -1, -1), r.height() / 2 - 1, r.height() / 2 - 1);
            }
        }
        p.setPen(selected ? pal.text : pal.textSecondary);
        p.drawText(r, Qt::AlignCenter, label(i));
    }
}

void RangeSwitch::mousePressEvent(QMouseEvent* event) {
    for (int i = 0; i < kCount; ++i)
        if (segment(i).contains(event->position())) choose(panel::ChartRange(i));
}

void RangeSwitch::keyPressEvent(QKeyEvent* event) {
    const bool plain = !(event->modifiers() & ~Qt::KeypadModifier);
    int by = 0;
    if (plain && event->key() == Qt::Key_Left) by = -1;
    if (plain && event->key() == Qt::Key_Right) by = 1;
    if (by == 0) {
        QWidget::keyPressEvent(event);
        return;
    }
    choose(panel::ChartRange(std::clamp(int(range_) + by, 0, kCount - 1)));
}

void RangeSwitch::focusInEvent(QFocusEvent* event) {
    keyboardFocus_ = isKeyboardFocus(event->reason());
    update();
}
void RangeSwitch::focusOutEvent(QFocusEvent*) { update(); }

}  // namespace trotlet::ui
