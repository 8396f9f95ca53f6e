#pragma once

#include <QWidget>

#include <string>

#include "panel/DetailContent.h"

namespace trotlet::ui {

class ActionButton;
class ThemeStore;

// One block of a detail screen other than a chart: rows of readings, bars, the per-core
// meters, the top processes, the forecast's hours and days, a note, or the public address
// with its button. Painted from the block as `describeDetail` gives it; its height follows its
// content at the panel's fixed width.
class DetailSection : public QWidget {
    Q_OBJECT
public:
    DetailSection(const panel::DetailBlock& block, const std::string& accentName,
                  const ThemeStore& theme, QWidget* parent = nullptr);

    const panel::DetailBlock& block() const { return block_; }
    // Takes the block's new readings; repaints only on a change. Returns whether it did.
    bool setBlock(const panel::DetailBlock& block);
    // The public address's button, when this block has one.
    ActionButton* button() const { return button_; }

    int heightFor(int width) const;

signals:
    void buttonClicked();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    int contentHeight(int width) const;
    QRectF cardRect() const;
    void paintRows(QPainter& p, const QRectF& box);
    void paintBars(QPainter& p, const QRectF& box);
    void paintCores(QPainter& p, const QRectF& box);
    void paintProcesses(QPainter& p, const QRectF& box);
    void paintHours(QPainter& p, const QRectF& box);
    void paintDays(QPainter& p, const QRectF& box);
    void paintNote(QPainter& p, const QRectF& box);
    void syncButton();
    void describe();

    panel::DetailBlock block_;
    std::string accent_;
    const ThemeStore& theme_;
    ActionButton* button_ = nullptr;
};

}  // namespace trotlet::ui
