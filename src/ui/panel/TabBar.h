#pragma once

#include <QWidget>

#include "panel/PanelRoute.h"

namespace trotlet::ui {

class ThemeStore;

// The four tabs as one segmented control. Left and Right move between tabs when it has the
// focus; the panel adds Ctrl+1 … 4 and Ctrl+Tab.
class TabBar : public QWidget {
    Q_OBJECT
public:
    TabBar(const ThemeStore& theme, QWidget* parent = nullptr);

    panel::PanelTab current() const { return current_; }
    void setCurrent(panel::PanelTab tab);
    QRectF tabRect(panel::PanelTab tab) const;
    QSize sizeHint() const override;

signals:
    void tabChosen(trotlet::panel::PanelTab tab);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool showsFocusRing() const { return hasFocus() && keyboardFocus_; }

private:
    const ThemeStore& theme_;
    panel::PanelTab current_ = panel::PanelTab::overview;
    bool keyboardFocus_ = false;
};

}  // namespace trotlet::ui
