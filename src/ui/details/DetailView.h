#pragma once

#include <QWidget>

#include <vector>

#include "panel/ChartData.h"
#include "panel/DetailContent.h"
#include "panel/PanelRoute.h"

class QScrollArea;
class QVBoxLayout;

namespace trotlet::ui {

class ChartView;
class DetailHeadline;
class DetailSection;
class PanelModel;
class PanelWindow;
class ActionButton;
class RangeSwitch;
class ThemeStore;

// A metric's detail screen, pushed over the Overview: a Back button, the headline as the card
// says it, then every block `describeDetail` gives, in a scroll area. Charts share one range
// (live, 1 h, 24 h) chosen on the first chart. It follows the model while shown and repaints
// only what changed.
class DetailView : public QWidget {
    Q_OBJECT
public:
    DetailView(panel::MetricDetail detail, PanelModel& model, const ThemeStore& theme,
               QWidget* parent = nullptr);

    panel::MetricDetail detail() const { return detail_; }
    const panel::DetailContent& content() const { return content_; }
    ActionButton& backButton() const { return *back_; }
    RangeSwitch* rangeSwitch() const { return rangeSwitch_; }
    const std::vector<ChartView*>& charts() const { return charts_; }
    const std::vector<DetailSection*>& sections() const { return sections_; }
    QScrollArea& scrollArea() const { return *scroll_; }

    panel::ChartRange range() const { return range_; }
    void setRange(panel::ChartRange range);
    // Reads the model again. Returns how many parts repainted.
    int refresh();

    QSize sizeHint() const override;

signals:
    void backRequested();
    // Blocks came or went (the first sample arrived, a battery was plugged in): the screen's
    // height changed, and the panel may fit it again.
    void shapeChanged();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void build();
    bool sameShape(const panel::DetailContent& next) const;

    panel::MetricDetail detail_;
    PanelModel& model_;
    const ThemeStore& theme_;
    panel::DetailContent content_;
    panel::ChartRange range_ = panel::ChartRange::live;
    ActionButton* back_ = nullptr;
    QScrollArea* scroll_ = nullptr;
    QWidget* body_ = nullptr;
    QVBoxLayout* column_ = nullptr;
    DetailHeadline* headline_ = nullptr;
    RangeSwitch* rangeSwitch_ = nullptr;
    std::vector<ChartView*> charts_;
    std::vector<DetailSection*> sections_;
};

// Opens a detail over the panel's Overview, wired so that Back pops it and the card it came
// from gets the focus again.
DetailView* openDetail(PanelWindow& window, PanelModel& model, const ThemeStore& theme,
                       panel::MetricDetail detail);

}  // namespace trotlet::ui
