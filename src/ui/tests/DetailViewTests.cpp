#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollArea>
#include <QScrollBar>

#include "layout/LayoutOps.h"
#include "metrics/DayHistory.h"
#include "panel/PanelTabs.h"
#include "snapshot/DetailScenes.h"
#include "snapshot/SceneRig.h"
#include "ui/cards/CardView.h"
#include "ui/details/ChartView.h"
#include "ui/details/DetailSection.h"
#include "ui/details/DetailView.h"
#include "ui/details/ActionButton.h"
#include "ui/details/PublicAddressLookup.h"
#include "ui/details/RangeSwitch.h"
#include "ui/overview/OverviewView.h"
#include "ui/panel/PanelHeader.h"
#include "ui/panel/PanelWindow.h"
#include "ui/tests/UiTestApp.h"
#include "weather/tests/LocalHttpServer.h"

namespace trotlet::ui {
namespace {

using weather::testing::HttpResponse;
using weather::testing::LocalHttpServer;

class DetailViewTest : public ::testing::Test {
protected:
    DetailViewTest()
        : rig((application(), metrics::MetricsFixture::normal)),
          window(rig.model(), rig.theme()) {
        snapshot::fillSceneDay(day, metrics::MetricsFixture::normal);
        rig.model().setDayHistory(&day);
        window.header().setAnimating(false);
        // As the live app wires it: a card opens its detail.
        QObject::connect(&window, &PanelWindow::cardActivated, [this](const std::string& id) {
            if (const auto detail = panel::detailForCard(id))
                openDetail(window, rig.model(), rig.theme(), *detail);
        });
        window.show();
        QApplication::setActiveWindow(&window);
    }

    void press(QWidget* target, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QKeyEvent down(QEvent::KeyPress, key, modifiers);
        QApplication::sendEvent(target, &down);
    }

    DetailView* detail() { return window.hasDetail() ? window.findChild<DetailView*>() : nullptr; }

    snapshot::SceneRig rig;
    metrics::DayHistory day;
    PanelWindow window;
};

TEST_F(DetailViewTest, TheKeyboardOpensADetailAndBackKeepsTheOverviewsScroll) {
    // With the weather card shown the Overview outgrows the panel and scrolls.
    rig.layout().commit(layout::LayoutOps::settingHidden("weather", false, rig.layout().layout()));
    QScrollBar* scroll = window.overviewScroll().verticalScrollBar();
    ASSERT_GT(scroll->maximum(), 0);
    scroll->setValue(scroll->maximum() / 2);
    const int kept = scroll->value();

    CardView* card = window.overview().card("heat");
    card->setFocus(Qt::TabFocusReason);
    press(card, Qt::Key_Return);
    ASSERT_TRUE(detail());
    EXPECT_EQ(detail()->detail(), panel::MetricDetail::heat);
    EXPECT_TRUE(detail()->hasFocus());

    press(detail(), Qt::Key_Escape);
    QApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(window.hasDetail());
    EXPECT_EQ(scroll->value(), kept);
    EXPECT_TRUE(card->hasFocus()) << "back on the card that opened it";
    EXPECT_TRUE(card->showsFocusRing());

    press(card, Qt::Key_Space);
    ASSERT_TRUE(detail());
    press(detail(), Qt::Key_Left, Qt::AltModifier);
    EXPECT_FALSE(window.hasDetail());
}

TEST_F(DetailViewTest, TheRangeSwitchMovesEveryChartAndTheKeysReadThePoints) {
    DetailView* view = openDetail(window, rig.model(), rig.theme(), panel::MetricDetail::network);
    ASSERT_EQ(view->charts().size(), 2u);
    ASSERT_TRUE(view->rangeSwitch());
    view->rangeSwitch()->setFocus(Qt::TabFocusReason);
    press(view->rangeSwitch(), Qt::Key_Right);
    press(view->rangeSwitch(), Qt::Key_Right);
    for (ChartView* chart : view->charts()) {
        EXPECT_EQ(chart->range(), panel::ChartRange::day);
        EXPECT_FALSE(chart->data().isEmpty());
    }
    EXPECT_EQ(rig.model().chartRange(), panel::ChartRange::day) << "the next detail opens on it";

    ChartView* chart = view->charts().front();
    chart->setFocus(Qt::TabFocusReason);
    press(chart, Qt::Key_Left);
    ASSERT_TRUE(chart->readout());
    EXPECT_NE(chart->readout()->text.find("KB/s"), std::string::npos) << chart->readout()->text;
    EXPECT_EQ(chart->accessibleDescription().toStdString(), chart->readout()->text);
}

TEST_F(DetailViewTest, ANewSampleRepaintsOnlyWhatChanged) {
    DetailView* view = openDetail(window, rig.model(), rig.theme(), panel::MetricDetail::battery);
    view->refresh();
    EXPECT_EQ(view->refresh(), 0) << "nothing new";
    auto sample = rig.sample();
    sample.battery.cycles = 215;
    rig.model().setSample(sample, metrics::MetricKinds::all);
    EXPECT_EQ(view->refresh(), 0) << "the model's signal already refreshed it";
    EXPECT_EQ(view->content().block(panel::DetailBlock::Kind::rows, "Battery")->rows[3].value,
              "215");
}

TEST_F(DetailViewTest, ThePublicAddressIsAskedForOncePerPressAndNeverBefore) {
    int status = 200;
    std::string body = "203.0.113.9\n";
    LocalHttpServer server([&](const weather::testing::HttpRequest&) {
        return HttpResponse{HttpResponse::Kind::normal, status, body, 0};
    });
    PublicAddressLookup lookup(QUrl(QString::fromStdString(server.base("/"))));
    lookup.setClock([] { return qint64(1790857800); });
    QObject::connect(&lookup, &PublicAddressLookup::changed,
                     [&] { rig.model().setPublicAddress(lookup.state()); });
    QObject::connect(&rig.model(), &PanelModel::publicAddressRequested, &lookup,
                     &PublicAddressLookup::request);
    rig.model().setPublicAddress(lookup.state());

    DetailView* view = openDetail(window, rig.model(), rig.theme(), panel::MetricDetail::network);
    weather::testing::spinFor(100);
    EXPECT_TRUE(server.requests().empty()) << "opening the detail asks nothing";
    auto section = [&] {
        for (DetailSection* s : view->sections())
            if (s->button()) return s;
        return static_cast<DetailSection*>(nullptr);
    };
    ASSERT_TRUE(section());
    EXPECT_EQ(section()->button()->text(), QStringLiteral("Show public address"));
    section()->button()->setFocus(Qt::TabFocusReason);
    press(section()->button(), Qt::Key_Return);
    press(section()->button(), Qt::Key_Return);  // a second press while asking is ignored
    ASSERT_TRUE(weather::testing::spinUntil(
        [&] { return lookup.state().status == panel::PublicAddressState::Status::found; }));
    EXPECT_EQ(server.requests().size(), 1u);
    EXPECT_EQ(section()->block().rows.at(0).value, "203.0.113.9");

    status = 503;
    press(section()->button(), Qt::Key_Return);
    ASSERT_TRUE(weather::testing::spinUntil(
        [&] { return lookup.state().status == panel::PublicAddressState::Status::failed; }));
    EXPECT_EQ(server.requests().size(), 2u);
    EXPECT_EQ(section()->block().note, "The address service answered with an error (503).");
    EXPECT_EQ(section()->button()->text(), QStringLiteral("Try again"));

    status = 200;
    body = "<html>Sign in to the hotel Wi-Fi</html>";
    press(section()->button(), Qt::Key_Return);
    ASSERT_TRUE(weather::testing::spinUntil([&] { return server.requests().size() == 3u; }));
    weather::testing::spinUntil(
        [&] { return lookup.state().status != panel::PublicAddressState::Status::loading; });
    EXPECT_EQ(lookup.state().error, "The address service sent an answer that is not an address.");
}

}  // namespace
}  // namespace trotlet::ui
