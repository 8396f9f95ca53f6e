#pragma once

#include <QString>

#include <string>

#include "ui/controls/Control.h"

namespace trotlet::ui {

// A button of the panel: `plain` on a chip, `primary` filled with the accent, `destructive` in
// the critical colour. An optional icon sits before the text. A click, Space or Enter presses it.
class PushButton : public Control {
    Q_OBJECT
public:
    enum class Style { plain, primary, destructive, quiet };

    PushButton(const QString& text, Style style, const ThemeStore& theme,
               QWidget* parent = nullptr);

    void setText(const QString& text);
    QString text() const { return text_; }
    void setIcon(std::string symbol);
    void setStyle(Style style);

    QSize sizeHint() const override;
    QAccessible::Role accessibleRole() const override { return QAccessible::Button; }
    void activate() override;

signals:
    void clicked();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QString text_;
    std::string icon_;
    Style style_;
    bool pressed_ = false;
};

}  // namespace trotlet::ui
