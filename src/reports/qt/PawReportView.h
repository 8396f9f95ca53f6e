#pragma once

#include <QWidget>

#include "mascot/qt/MascotRenderer.h"
#include "reports/PawReport.h"

class QScrollArea;

namespace trotlet::ui {
class PanelModel;
class ThemeStore;
}  // namespace trotlet::ui

namespace trotlet::reports {

class PawReportBody;

// The Paw Report's detail: a back control and its title, the mascot's line about the day, the
// Paw Track (today's distance with a comparison, the lifetime odometer, the Marathon's
// progress, distance per mascot) and today's measures beside their last seven days. Pushed
// over the Overview with PanelWindow::pushDetail; it scrolls itself when taller than the panel.
class PawReportView : public QWidget {
    Q_OBJECT
public:
    PawReportView(const ui::PanelModel& model, const ui::ThemeStore& theme,
                  QWidget* parent = nullptr);

    QSize sizeHint() const override;
    PawReportBody& body() const { return *body_; }

signals:
    void backRequested();

private:
    PawReportBody* body_ = nullptr;
    QScrollArea* scroll_ = nullptr;
};

// The painted report under the back row. Repaints when the model's report changes.
class PawReportBody : public QWidget {
    Q_OBJECT
public:
    PawReportBody(const ui::PanelModel& model, const ui::ThemeStore& theme,
                  QWidget* parent = nullptr);

    // Lays out for the current report and returns the height it needs.
    int layoutHeight() const;
    const std::optional<PawReport>& report() const { return report_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void refresh();
    // Each part draws from `top` and returns where it ends; without a painter it only measures.
    qreal paintVoice(QPainter* p, qreal top) const;
    qreal paintTrack(QPainter* p, qreal top) const;
    qreal paintDays(QPainter* p, qreal top) const;

    const ui::PanelModel& model_;
    const ui::ThemeStore& theme_;
    std::optional<PawReport> report_;
    mutable mascot::MascotRenderer renderer_;
};

}  // namespace trotlet::reports
