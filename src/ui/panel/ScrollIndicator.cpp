#include "ui/panel/ScrollIndicator.h"

#include <QAbstractScrollArea>
#include <QEvent>
#include <QPainter>
#include <QScrollBar>

#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {
namespace {
constexpr int thumbWidth = 4;
constexpr int inset = 5;
}  // namespace

ScrollIndicator::ScrollIndicator(QAbstractScrollArea& area, const ThemeStore& theme)
    : QWidget(&area), area_(area), theme_(theme) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    area_.installEventFilter(this);
    QScrollBar* bar = area_.verticalScrollBar();
    connect(bar, &QScrollBar::valueChanged, this, [this] { update(); });
    connect(bar, &QScrollBar::rangeChanged, this, &ScrollIndicator::follow);
    follow();
}

bool ScrollIndicator::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &area_ && event->type() == QEvent::Resize) follow();
    return QWidget::eventFilter(watched, event);
}

void ScrollIndicator::follow() {
    setGeometry(area_.width() - thumbWidth - inset, 2, thumbWidth, std::max(0, area_.height() - 4));
    setVisible(area_.verticalScrollBar()->maximum() > 0);
    raise();
    update();
}

void ScrollIndicator::paintEvent(QPaintEvent*) {
    const QScrollBar* bar = area_.verticalScrollBar();
    const int range = bar->maximum() - bar->minimum();
    if (range <= 0) return;
    const qreal total = range + bar->pageStep();
    const qreal length = std::max<qreal>(24, height() * bar->pageStep() / total);
    const qreal top = (height() - length) * (bar->value() - bar->minimum()) / range;
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    QColor thumb = theme_.theme().palette().textTertiary;
    thumb.setAlphaF(0.6);
    p.setPen(Qt::NoPen);
    p.setBrush(thumb);
    p.drawRoundedRect(QRectF(0, top, width(), length), width() / 2.0, width() / 2.0);
}

}  // namespace trotlet::ui
