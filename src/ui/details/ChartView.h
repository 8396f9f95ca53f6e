#pragma once

#include <QPixmap>
#include <QWidget>

#include <optional>
#include <string>

#include "panel/ChartData.h"
#include "panel/DetailContent.h"

namespace trotlet::ui {

class PanelModel;
class ThemeStore;

// One chart of a detail screen: a series (or two) over the chosen range, on a card with its
// y-axis ticks and the range's ends under it. Hovering, or the arrow keys while it has the
// focus, reads out the nearest point through Format. A strip draws a level series (memory
// pressure) as coloured stretches instead of a line.
//
// The drawn chart is cached: hovering paints the cache and the read-out over it, and a new
// sample repaints only when the chart's data actually changed.
class ChartView : public QWidget {
    Q_OBJECT
public:
    ChartView(const std::string& title, const panel::DetailChart& chart, bool strip,
              const PanelModel& model, const ThemeStore& theme, QWidget* parent = nullptr);

    void setRange(panel::ChartRange range);
    panel::ChartRange range() const { return range_; }
    // A control for the title row's right end (the range switch); the chart owns it.
    void setHeaderWidget(QWidget* widget);
    void setNote(const std::string& note, panel::Level level);
    // The registry's colour name of the detail's kind ("blue"); the line is drawn in it.
    void setAccentName(const std::string& name);

    // Reads the history again; repaints only on a change. Returns whether it repainted.
    bool refresh();
    const panel::ChartData& data() const { return data_; }
    // The read-out shown now (pointer or keyboard), if any.
    const std::optional<panel::ChartReadout>& readout() const { return readout_; }
    int renderCount() const { return renders_; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    QRectF cardRect() const;
    QRectF plotRect() const;
    double stepSeconds() const;
    void renderCache();
    void paintChart(QPainter& p);
    void paintStrip(QPainter& p, const QRectF& plot);
    void paintReadout(QPainter& p);
    void readAt(double t, bool keyboard);
    void describe();
    void syncHeader();

    std::string title_;
    panel::DetailChart chart_;
    bool strip_;
    const PanelModel& model_;
    const ThemeStore& theme_;
    panel::ChartRange range_ = panel::ChartRange::live;
    panel::ChartData data_;
    std::string accent_;
    std::string note_;
    panel::Level noteLevel_ = panel::Level::calm;
    QWidget* header_ = nullptr;
    QPixmap cache_;
    bool cacheValid_ = false;
    std::optional<panel::ChartReadout> readout_;
    bool keyboardFocus_ = false;
    int renders_ = 0;
};

}  // namespace trotlet::ui
