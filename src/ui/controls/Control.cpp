#include "ui/controls/Control.h"

#include <QAccessibleWidget>
#include <QFocusEvent>
#include <QPainter>

#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {
namespace {

// Screen readers see each control as what it is (a check box, a slider, a button) with its
// value, and can press it.
class ControlAccessible : public QAccessibleWidget {
public:
    explicit ControlAccessible(Control* control)
        : QAccessibleWidget(control, control->accessibleRole()) {}

    Control* control() const { return static_cast<Control*>(widget()); }

    QAccessible::Role role() const override { return control()->accessibleRole(); }
    QString text(QAccessible::Text t) const override {
        if (t == QAccessible::Value) return control()->accessibleValue();
        return QAccessibleWidget::text(t);
    }
    QAccessible::State state() const override {
        QAccessible::State s = QAccessibleWidget::state();
        s.checkable = control()->isCheckable();
        s.checked = control()->isChecked();
        return s;
    }
    QStringList actionNames() const override {
        QStringList names = QAccessibleWidget::actionNames();
        names.prepend(control()->isCheckable() ? toggleAction() : pressAction());
        return names;
    }
    void doAction(const QString& name) override {
        if (name == pressAction() || name == toggleAction()) {
            if (control()->isEnabled()) control()->activate();
            return;
        }
        QAccessibleWidget::doAction(name);
    }
};

QAccessibleInterface* controlFactory(const QString&, QObject* object) {
    if (auto* control = qobject_cast<Control*>(object)) return new ControlAccessible(control);
    return nullptr;
}

}  // namespace

Control::Control(const ThemeStore& theme, QWidget* parent) : QWidget(parent), theme_(theme) {
    static const bool installed = [] {
        QAccessible::installFactory(controlFactory);
        return true;
    }();
    (void)installed;
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    connect(&theme_, &ThemeStore::changed, this, qOverload<>(&QWidget::update));
}

const Theme& Control::theme() const { return theme_.theme(); }

void Control::announceChange() {
    if (!QAccessible::isActive()) return;
    QAccessibleValueChangeEvent value(this, accessibleValue());
    QAccessible::updateAccessibility(&value);
    if (isCheckable()) {
        QAccessible::State changed;
        changed.checked = true;
        QAccessibleStateChangeEvent state(this, changed);
        QAccessible::updateAccessibility(&state);
    }
}

void Control::paintFocusRing(QPainter& p, const QRectF& around, qreal radius) const {
    if (!showsFocusRing()) return;
    p.save();
    p.setPen(QPen(theme().palette().focusRing, Metrics::focusWidth));
    p.setBrush(Qt::NoBrush);
    p.drawRoundedRect(around.adjusted(-2, -2, 2, 2), radius + 2, radius + 2);
    p.restore();
}

void Control::focusInEvent(QFocusEvent* event) {
    keyboardFocus_ = isKeyboardFocus(event->reason());
    update();
    QWidget::focusInEvent(event);
}

void Control::focusOutEvent(QFocusEvent* event) {
    update();
    QWidget::focusOutEvent(event);
}

void Control::enterEvent(QEnterEvent* event) {
    hovered_ = true;
    update();
    QWidget::enterEvent(event);
}

void Control::leaveEvent(QEvent* event) {
    hovered_ = false;
    update();
    QWidget::leaveEvent(event);
}

void Control::changeEvent(QEvent* event) {
    if (event->type() == QEvent::EnabledChange) update();
    QWidget::changeEvent(event);
}

}  // namespace trotlet::ui
