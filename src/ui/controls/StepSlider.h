#pragma once

#include <QStringList>

#include <optional>

#include "ui/controls/Control.h"

namespace trotlet::ui {

// A track with a fixed number of stops. Dragging or clicking snaps to the nearest stop; Left,
// Right, Page Up/Down, Home and End step. Each stop reached is reported once: landing on the stop
// already chosen reports nothing. Small tick marks show the stops when there are few of them.
class StepSlider : public Control {
    Q_OBJECT
public:
    explicit StepSlider(const ThemeStore& theme, QWidget* parent = nullptr);

    // `spoken` describes each stop for screen readers ("90%", "Balanced").
    void setStops(int count, const QStringList& spoken = {});
    void setSelected(std::optional<int> stop);
    std::optional<int> selected() const { return selected_; }
    int stops() const { return count_; }
    // The x of a stop's centre on the track.
    qreal stopX(int stop) const;

    QSize sizeHint() const override;
    QAccessible::Role accessibleRole() const override { return QAccessible::Slider; }
    QString accessibleValue() const override;

signals:
    void chosen(int stop);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void choose(int stop);
    int stopAt(qreal x) const;

    int count_ = 2;
    QStringList spoken_;
    std::optional<int> selected_;
};

}  // namespace trotlet::ui
