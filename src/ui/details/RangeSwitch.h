#pragma once

#include <QWidget>

#include "panel/ChartData.h"

namespace trotlet::ui {

class ThemeStore;

// Live, 1 h, 24 h: a compact segmented control for a detail's charts. Left and Right step
// through the ranges when it has the focus.
class RangeSwitch : public QWidget {
    Q_OBJECT
public:
    explicit RangeSwitch(const ThemeStore& theme, QWidget* parent = nullptr);

    panel::ChartRange range() const { return range_; }
    void setRange(panel::ChartRange range);
    QSize sizeHint() const override;

signals:
    void rangeChosen(trotlet::panel::ChartRange range);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    QRectF segment(int index) const;
    void choose(panel::ChartRange range);

    const ThemeStore& theme_;
    panel::ChartRange range_ = panel::ChartRange::live;
    bool keyboardFocus_ = false;
};

}  // namespace trotlet::ui
