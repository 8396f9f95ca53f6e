#pragma once

#include <QWidget>

#include <array>
#include <functional>
#include <optional>
#include <string>

#include "panel/PanelRoute.h"

class QScrollArea;
class QStackedWidget;

namespace trotlet::ui {

class NoticeBanner;
class OverviewView;
class PanelHeader;
class PanelModel;
class ScrollIndicator;
class TabBar;
class ThemeStore;

// The panel: header, tab bar and the current tab's screen, on a fixed-width frameless window.
// Its height follows the content up to a limit, past which the Overview scrolls. Other screens
// plug in through `setTabScreen`; a detail view is pushed over the Overview and popped by Back
// (Escape or Alt+Left), which returns to the Overview at the scroll it had.
// A screen can also be handed over as a maker that runs when its tab is first shown, so a
// panel opened only for the Overview never builds, paints or keeps the others.
class PanelWindow : public QWidget {
    Q_OBJECT
public:
    PanelWindow(PanelModel& model, ThemeStore& theme, QWidget* parent = nullptr);

    PanelHeader& header() const { return *header_; }
    NoticeBanner& notice() const { return *notice_; }
    TabBar& tabs() const { return *tabs_; }
    OverviewView& overview() const { return *overview_; }
    QScrollArea& overviewScroll() const { return *scroll_; }

    panel::PanelTab currentTab() const;
    void showTab(panel::PanelTab tab);
    // Replaces a tab's placeholder with its screen; the window owns it.
    void setTabScreen(panel::PanelTab tab, QWidget* screen);
    void setTabScreen(panel::PanelTab tab, std::function<QWidget*()> makeOnFirstShow);
    // A view over everything but the header (the welcome tour); the window owns it. None puts
    // the tabs back. While covered, the tab keys do nothing.
    void setCover(QWidget* cover);
    QWidget* cover() const { return cover_; }
    void pushDetail(QWidget* view);
    bool popDetail();
    bool hasDetail() const { return detail_ != nullptr; }

    // The height that shows everything, capped at the panel's limit.
    int preferredHeight() const;
    // Sizes the window to the current tab's content.
    void fitToContent();

signals:
    void closeRequested();
    void tabChanged(trotlet::panel::PanelTab tab);
    void cardActivated(const std::string& id);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    void applyTheme();

    PanelModel& model_;
    ThemeStore& theme_;
    PanelHeader* header_ = nullptr;
    NoticeBanner* notice_ = nullptr;
    TabBar* tabs_ = nullptr;
    QStackedWidget* stack_ = nullptr;
    QScrollArea* scroll_ = nullptr;
    OverviewView* overview_ = nullptr;
    std::array<QWidget*, 4> screens_{};
    std::array<std::function<QWidget*()>, 4> makers_{};
    QWidget* detail_ = nullptr;
    QWidget* cover_ = nullptr;
    ScrollIndicator* indicator_ = nullptr;
};

}  // namespace trotlet::ui
