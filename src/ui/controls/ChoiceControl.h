#pragma once

#include <QStringList>

#include <optional>
#include <vector>

#include "ui/controls/Control.h"

namespace trotlet::ui {

// One choice out of a few. `segments` lays the options side by side in one track, each as wide
// as the others; `chips` gives every option its own pill sized to its label and wraps onto more
// lines when they do not fit. Left and Right (Up and Down) move the choice, Home and End jump;
// a click chooses. Nothing may be chosen, when the stored value is none of the options.
class ChoiceControl : public Control {
    Q_OBJECT
public:
    enum class Style { segments, chips };

    ChoiceControl(Style style, const ThemeStore& theme, QWidget* parent = nullptr);

    // `spoken` names an option for screen readers when its label is terse ("°C").
    void setOptions(const QStringList& labels, const QStringList& spoken = {});
    void setSelected(std::optional<int> index);
    std::optional<int> selected() const { return selected_; }
    int count() const { return int(labels_.size()); }
    QRectF optionRect(int index) const;

    QSize sizeHint() const override;
    bool hasHeightForWidth() const override { return style_ == Style::chips; }
    int heightForWidth(int width) const override;
    QAccessible::Role accessibleRole() const override { return QAccessible::PageTabList; }
    QString accessibleValue() const override;

signals:
    void chosen(int index);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void choose(int index);
    std::vector<QRectF> layoutFor(int width) const;
    int optionAt(const QPointF& point) const;

    Style style_;
    QStringList labels_;
    QStringList spoken_;
    std::optional<int> selected_;
    std::vector<QRectF> rects_;
    int hoveredOption_ = -1;
};

}  // namespace trotlet::ui
