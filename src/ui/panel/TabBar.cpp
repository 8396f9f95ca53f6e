#include "ui/panel/TabBar.h"

#include <QAccessible>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QPainter>

#include "panel/PanelTabs.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {

TabBar::TabBar(const ThemeStore& theme, QWidget* parent) : QWidget(parent), theme_(theme) {
    setObjectName(QStringLiteral("tabs"));
    setFocusPolicy(Qt::StrongFocus);
    setFixedHeight(Metrics::tabBarHeight);
    setAccessibleName(QStringLiteral("Tabs"));
    setAccessibleDescription(QString::fromStdString(panel::tabTitle(current_)));
}

QSize TabBar::sizeHint() const { return QSize(Metrics::gridWidth, Metrics::tabBarHeight); }

void TabBar::setCurrent(panel::PanelTab tab) {
    if (tab == current_) return;
    current_ = tab;
    setAccessibleDescription(QString::fromStdString(panel::tabTitle(tab)));
    QAccessibleEvent event(this, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&event);
    update();
}

QRectF TabBar::tabRect(panel::PanelTab tab) const {
    const qreal w = (width() - 4.0) / qreal(panel::PanelTabNames.size());
    return QRectF(2 + w * int(tab), 2, w, height() - 4);
}

void TabBar::paintEvent(QPaintEvent*) {
    const Theme& theme = theme_.theme();
    const Palette& pal = theme.palette();
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF track = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    p.setPen(Qt::NoPen);
    p.setBrush(pal.chip);
    p.drawRoundedRect(track, track.height() / 2, track.height() / 2);
    for (std::size_t i = 0; i < panel::PanelTabNames.size(); ++i) {
        const auto tab = panel::PanelTab(i);
        const QRectF r = tabRect(tab);
        const bool selected = tab == current_;
        if (selected) {
            p.setPen(QPen(pal.border, 1));
            p.setBrush(pal.surface);
            p.drawRoundedRect(r, r.height() / 2, r.height() / 2);
            if (showsFocusRing()) {
                p.setPen(QPen(pal.focusRing, Metrics::focusWidth));
                p.setBrush(Qt::NoBrush);
                p.drawRoundedRect(r.adjusted(1, 1, -1, -1), r.height() / 2 - 1, r.height() / 2 - 1);
            }
        }
        p.setFont(theme.type().label);
        p.setPen(selected ? pal.text : pal.textSecondary);
        p.drawText(r, Qt::AlignCenter, QString::fromStdString(panel::tabTitle(tab)));
    }
}

void TabBar::mousePressEvent(QMouseEvent* event) {
    for (std::size_t i = 0; i < panel::PanelTabNames.size(); ++i)
        if (tabRect(panel::PanelTab(i)).contains(event->position())) {
            setCurrent(panel::PanelTab(i));
            emit tabChosen(panel::PanelTab(i));
        }
}

void TabBar::keyPressEvent(QKeyEvent* event) {
    int by = 0;
    if (event->key() == Qt::Key_Left) by = -1;
    if (event->key() == Qt::Key_Right) by = 1;
    if (by == 0) {
        QWidget::keyPressEvent(event);
        return;
    }
    const auto next = panel::steppedTab(current_, by);
    setCurrent(next);
    emit tabChosen(next);
}

void TabBar::focusInEvent(QFocusEvent* event) {
    keyboardFocus_ = isKeyboardFocus(event->reason());
    update();
}
void TabBar::focusOutEvent(QFocusEvent*) { update(); }

}  // namespace trotlet::ui
