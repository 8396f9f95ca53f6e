#pragma once

#include <QAccessible>
#include <QWidget>

namespace trotlet::ui {

class Theme;
class ThemeStore;

// Common ground of the panel's own controls (switches, segmented choices, sliders, buttons, the
// shortcut recorder): the theme they paint with, a focus ring only when the keyboard brought the
// focus, hover, and what assistive technology hears. Each control says its role, its value and
// whether it is checked; `activate` is what Space, Enter and a screen reader's press do.
class Control : public QWidget {
    Q_OBJECT
public:
    Control(const ThemeStore& theme, QWidget* parent = nullptr);

    virtual QAccessible::Role accessibleRole() const = 0;
    virtual QString accessibleValue() const { return {}; }
    virtual bool isCheckable() const { return false; }
    virtual bool isChecked() const { return false; }
    virtual void activate() {}

    // A dimmed control ignores input but still shows its value.
    bool showsFocusRing() const { return hasFocus() && keyboardFocus_; }

protected:
    const Theme& theme() const;
    bool hovered() const { return hovered_; }
    // Tells assistive technology that the value or the checked state changed.
    void announceChange();
    void paintFocusRing(class QPainter& p, const QRectF& around, qreal radius) const;

    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    const ThemeStore& theme_;
    bool keyboardFocus_ = false;
    bool hovered_ = false;
};

}  // namespace trotlet::ui
