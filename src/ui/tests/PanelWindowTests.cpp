#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>

#include "reports/qt/PawReportView.h"
#include "sky/qt/SkyBackdrop.h"
#include "snapshot/SceneFixtures.h"
#include "snapshot/ScenePainting.h"
#include "snapshot/SceneRig.h"
#include "ui/cards/CardView.h"
#include "ui/overview/OverviewView.h"
#include "ui/panel/NoticeBanner.h"
#include "ui/panel/PanelHeader.h"
#include "ui/panel/PanelWindow.h"
#include "ui/panel/TabBar.h"
#include "ui/tests/UiTestApp.h"

namespace trotlet::ui {
namespace {

class PanelWindowTest : public ::testing::Test {
protected:
    PanelWindowTest()
        : rig((application(), metrics::MetricsFixture::normal)), window(rig.model(), rig.theme()) {
        window.header().setAnimating(false);
        window.show();
        // Focus goes only to widgets of the active window.
        QApplication::setActiveWindow(&window);
    }

    void press(QWidget* target, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QKeyEvent down(QEvent::KeyPress, key, modifiers);
        QApplication::sendEvent(target, &down);
    }

    CardView* card(const char* id) { return window.overview().card(id); }

    snapshot::SceneRig rig;
    PanelWindow window;
};

TEST_F(PanelWindowTest, ControlKeysWalkTheTabs) {
    press(&window, Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(window.currentTab(), panel::PanelTab::processes);
    press(&window, Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(window.currentTab(), panel::PanelTab::shop);
    press(&window, Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(window.currentTab(), panel::PanelTab::processes);
    press(&window.tabs(), Qt::Key_Right);
    EXPECT_EQ(window.currentTab(), panel::PanelTab::shop);
    press(&window, Qt::Key_1, Qt::ControlModifier);
    EXPECT_EQ(window.currentTab(), panel::PanelTab::overview);
}

TEST_F(PanelWindowTest, ATabScreenIsMadeOnlyWhenItsTabIsFirstShown) {
    int made = 0;
    QWidget* screen = nullptr;
    window.setTabScreen(panel::PanelTab::processes, [&]() -> QWidget* {
        ++made;
        return screen = new QWidget;
    });
    bool settingsMade = false;
    window.setTabScreen(panel::PanelTab::settings, [&]() -> QWidget* {
        settingsMade = true;
        return new QWidget;
    });
    auto* given = new QWidget;
    window.setTabScreen(panel::PanelTab::settings, given);  // a screen handed over wins
    EXPECT_EQ(made, 0);

    press(&window, Qt::Key_2, Qt::ControlModifier);
    press(&window, Qt::Key_1, Qt::ControlModifier);
    press(&window, Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(made, 1);
    EXPECT_TRUE(screen->isVisible());
    press(&window, Qt::Key_4, Qt::ControlModifier);
    EXPECT_FALSE(settingsMade);
    EXPECT_TRUE(given->isVisible());
}

TEST_F(PanelWindowTest, ArrowsFollowTheGridAndEnterOpensTheCard) {
    std::vector<std::string> opened;
    QObject::connect(&window, &PanelWindow::cardActivated,
                     [&](const std::string& id) { opened.push_back(id); });
    card("cpu")->setFocus(Qt::TabFocusReason);
    press(card("cpu"), Qt::Key_Right);
    EXPECT_TRUE(card("memory")->hasFocus());
    press(card("memory"), Qt::Key_Down);
    EXPECT_TRUE(card("network")->hasFocus());
    press(card("network"), Qt::Key_Down);
    EXPECT_TRUE(card("heat")->hasFocus()) << "the card under the middle of the band";
    press(card("heat"), Qt::Key_Left);
    EXPECT_TRUE(card("gpu")->hasFocus());
    press(card("gpu"), Qt::Key_Left);
    EXPECT_TRUE(card("gpu")->hasFocus()) << "the edge keeps the focus";
    press(card("gpu"), Qt::Key_Return);
    ASSERT_EQ(opened.size(), 1u);
    EXPECT_EQ(opened.front(), "gpu");
}

TEST_F(PanelWindowTest, EscapeLeavesADetailFirstThenClosesThePanel) {
    int close = 0;
    QObject::connect(&window, &PanelWindow::closeRequested, [&] { ++close; });
    auto* detail = new QWidget;
    window.pushDetail(detail);
    press(detail, Qt::Key_Escape);
    EXPECT_FALSE(window.hasDetail());
    EXPECT_EQ(close, 0);
    press(&window, Qt::Key_Escape);
    EXPECT_EQ(close, 1);
}

TEST_F(PanelWindowTest, ASampleRepaintsOnlyTheCardsItChanged) {
    rig.model().setSample(rig.sample(), metrics::MetricKinds::all);
    EXPECT_EQ(window.overview().lastRefreshRepainted(), 0) << "the same sample again";
    auto sample = rig.sample();
    sample.cpu.total = 0.91;
    rig.model().setSample(sample, metrics::MetricKinds::all);
    EXPECT_EQ(window.overview().lastRefreshRepainted(), 1);
    EXPECT_EQ(card("cpu")->content().value, "91");
}

TEST_F(PanelWindowTest, CardsSpeakTheirReadings) {
    EXPECT_EQ(card("cpu")->accessibleName(), QStringLiteral("CPU"));
    EXPECT_TRUE(card("cpu")->accessibleDescription().startsWith(QStringLiteral("23 percent")))
        << card("cpu")->accessibleDescription().toStdString();
    EXPECT_EQ(card("battery")->accessibleDescription().left(10), QStringLiteral("76 percent"));
}

// A notice takes room above the tabs and gives it back; its buttons say which notice they
// answer, and Enter presses the focused one.
TEST_F(PanelWindowTest, NoticeGrowsThePanelAndReportsItsButtons) {
    const int plain = window.height();
    updates::PanelNotice notice;
    notice.kind = updates::PanelNotice::Kind::update;
    notice.title = "Trotlet 0.2.0 is available";
    notice.lines = {"One.", "Two."};
    notice.primaryAction = "Install and relaunch";
    notice.secondaryAction = "Later";
    rig.model().setNotice(notice);
    EXPECT_TRUE(window.notice().isVisible());
    EXPECT_EQ(window.height(),
              std::min(plain + window.notice().height() + 10, Metrics::maxPanelHeight));

    std::vector<std::pair<updates::PanelNotice::Kind, bool>> pressed;
    QObject::connect(&rig.model(), &PanelModel::noticeActionRequested,
                     [&](updates::PanelNotice::Kind kind, bool primary) {
                         pressed.emplace_back(kind, primary);
                     });
    window.notice().secondaryButton().click();
    window.notice().primaryButton().setFocus(Qt::TabFocusReason);
    press(&window.notice().primaryButton(), Qt::Key_Return);
    EXPECT_EQ(pressed, (std::vector<std::pair<updates::PanelNotice::Kind, bool>>{
                           {updates::PanelNotice::Kind::update, false},
                           {updates::PanelNotice::Kind::update, true}}));

    rig.model().setNotice(std::nullopt);
    EXPECT_FALSE(window.notice().isVisible());
    EXPECT_EQ(window.height(), plain);
}

// The sky moves only while the header is shown, wants motion and motion is allowed, and only
// when its weather has something to move.
TEST_F(PanelWindowTest, TheSkyMovesOnlyWhileShownWantedAndAllowed) {
    auto* sky = window.header().findChild<sky::SkyBackdrop*>();
    ASSERT_TRUE(sky);
    window.header().setAnimating(true);
    EXPECT_FALSE(sky->isAnimating()) << "a sky without a forecast is one still picture";
    rig.model().setWeather(snapshot::sceneWeather(), snapshot::sceneForecast(65));
    EXPECT_TRUE(sky->isAnimating());
    EXPECT_EQ(sky->scene().precipitation, sky::Precipitation::rain);
    rig.model().setReduceMotion(true);
    EXPECT_FALSE(sky->isAnimating());
    rig.model().setReduceMotion(false);
    window.header().setAnimating(false);
    EXPECT_FALSE(sky->isAnimating());
    window.header().setAnimating(true);
    window.hide();
    EXPECT_FALSE(sky->isAnimating());
}

TEST_F(PanelWindowTest, TheHeaderGreetsAndThePawReportGoesBackFromItsBackRow) {
    EXPECT_EQ(window.header().greeting(), QStringLiteral("Good afternoon, Henry"));
    EXPECT_TRUE(window.header().accessibleDescription().contains(QStringLiteral("3.42 km")));
    auto* view = new reports::PawReportView(rig.model(), rig.theme());
    QObject::connect(view, &reports::PawReportView::backRequested, &window,
                     [this] { window.popDetail(); });
    window.pushDetail(view);
    EXPECT_TRUE(view->body().accessibleDescription().contains(QStringLiteral("thanks to firefox")));
    ASSERT_TRUE(QApplication::focusWidget());
    press(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_FALSE(window.hasDetail());
}

}  // namespace
}  // namespace trotlet::ui
