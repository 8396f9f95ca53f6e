#pragma once

#include "ui/controls/Control.h"

namespace trotlet::ui {

// An on/off switch. A click, Space or Enter flips it and reports the new state; setting the
// state from outside reports nothing.
class ToggleSwitch : public Control {
    Q_OBJECT
public:
    explicit ToggleSwitch(const ThemeStore& theme, QWidget* parent = nullptr);

    bool isOn() const { return on_; }
    void setOn(bool on);

    QSize sizeHint() const override;
    QAccessible::Role accessibleRole() const override { return QAccessible::CheckBox; }
    QString accessibleValue() const override;
    bool isCheckable() const override { return true; }
    bool isChecked() const override { return on_; }
    void activate() override;

signals:
    void toggled(bool on);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    bool on_ = false;
};

}  // namespace trotlet::ui
