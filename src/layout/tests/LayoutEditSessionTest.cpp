#include <gtest/gtest.h>

#include <memory>

#include "layout/LayoutEditSession.h"
#include "layout/OverviewLayoutResolver.h"
#include "settings/AppSettings.h"

namespace trotlet::layout {
namespace {

using Key = LayoutEditSession::Key;
using Order = std::vector<std::string>;

OverviewLayout defaults() {
    return OverviewLayoutResolver::defaultLayout(OverviewCardRegistry::standard());
}

class LayoutEditSessionTest : public testing::Test {
protected:
    std::shared_ptr<settings::InMemorySettingsBacking> backing =
        std::make_shared<settings::InMemorySettingsBacking>();
    settings::AppSettings settings{settings::DefaultsStore(backing), false};
    LayoutStore store{settings.layout(), settings.monitoring()};
    LayoutEditSession edit{store, everythingAvailable()};

    Order stored() const {
        return LayoutOps::visibleOrder(store.layout(), everythingAvailable(), store.registry());
    }
    PointRect frame(const std::string& id) const { return edit.frames().at(id); }
    // Drags from (x, y) to (toX, toY) in `steps` pointer moves, as a mouse reports them.
    void drag(double x, double y, double toX, double toY, int steps = 10) {
        edit.pointerPressed(x, y);
        for (int i = 1; i <= steps; ++i)
            edit.pointerMoved(x + (toX - x) * i / steps, y + (toY - y) * i / steps);
        edit.pointerReleased(toX, toY);
    }
};

TEST_F(LayoutEditSessionTest, DraggingACardToTheTopLeftMakesItFirst) {
    const auto battery = frame("battery");
    drag(battery.midX(), battery.midY(), 4, 4);
    EXPECT_EQ(stored(),
              (Order{"battery", "cpu", "memory", "network", "gpu", "heat", "disk", "pawreport"}));
    EXPECT_EQ(edit.selection(), "battery");
    EXPECT_FALSE(edit.isDragging());
    EXPECT_EQ(edit.layout(), store.layout());
}

TEST_F(LayoutEditSessionTest, PreviewFollowsThePointerAndOnlyTheDropCommits) {
    const auto heat = frame("heat");
    const auto gpu = frame("gpu");
    edit.pointerPressed(heat.midX(), heat.midY());
    edit.pointerMoved(gpu.midX(), gpu.midY());
    EXPECT_TRUE(edit.isDragging());
    EXPECT_EQ(LayoutOps::visibleOrder(edit.layout(), everythingAvailable(), store.registry())[3],
              "heat");
    EXPECT_FALSE(store.hasStoredDocument());
    // Same-size cards trade places under the pointer; standing still over gpu changes nothing more.
    edit.pointerMoved(gpu.midX() + 1, gpu.midY() + 1);
    edit.pointerReleased(gpu.midX() + 1, gpu.midY() + 1);
    EXPECT_EQ(stored(),
              (Order{"cpu", "memory", "network", "heat", "gpu", "battery", "disk", "pawreport"}));
}

TEST_F(LayoutEditSessionTest, CancelAndEscapeDropNothing) {
    const auto disk = frame("disk");
    edit.pointerPressed(disk.midX(), disk.midY());
    edit.pointerMoved(10, 10);
    EXPECT_NE(edit.layout(), defaults());
    EXPECT_TRUE(edit.keyPressed(Key::escape, false));
    EXPECT_EQ(edit.layout(), defaults());
    edit.pointerReleased(10, 10);
    EXPECT_FALSE(store.hasStoredDocument());
}

TEST_F(LayoutEditSessionTest, ShortPressSelectsWithoutMoving) {
    const auto net = frame("network");
    edit.pointerPressed(net.midX(), net.midY());
    edit.pointerMoved(net.midX() + 2, net.midY() + 1);  // under the drag threshold
    edit.pointerReleased(net.midX() + 2, net.midY() + 1);
    EXPECT_EQ(edit.selection(), "network");
    EXPECT_FALSE(store.hasStoredDocument());
    edit.pointerPressed(500, 900);  // empty space
    edit.pointerReleased(500, 900);
    EXPECT_EQ(edit.selection(), "network");
}

TEST_F(LayoutEditSessionTest, GripDragSnapsToMediumAndPickUpChangesNothing) {
    const auto heat = frame("heat");
    const double gx = heat.maxX() - 3, gy = heat.maxY() - 3;
    edit.pointerPressed(gx, gy);
    edit.pointerReleased(gx, gy);
    EXPECT_FALSE(store.hasStoredDocument());
    EXPECT_EQ(store.layout().card("heat")->size, CardSize::small);

    edit.pointerPressed(gx, gy);
    EXPECT_TRUE(edit.isResizing());
    edit.pointerMoved(gx + 30, gy + 28);  // halfway: held at small by the hysteresis
    EXPECT_EQ(edit.layout().card("heat")->size, CardSize::small);
    edit.pointerMoved(gx + 68, gy + 56);
    EXPECT_EQ(edit.layout().card("heat")->size, CardSize::medium);
    edit.pointerMoved(gx + 40, gy + 30);  // a little back: medium holds
    EXPECT_EQ(edit.layout().card("heat")->size, CardSize::medium);
    edit.pointerReleased(gx + 68, gy + 56);
    EXPECT_EQ(store.layout().card("heat")->size, CardSize::medium);
}

TEST_F(LayoutEditSessionTest, OptionArrowsMoveTheSelectedCardAndTheOppositeArrowReturnsIt) {
    edit.select("heat");
    const auto before = frame("heat");
    EXPECT_TRUE(edit.keyPressed(Key::up, true));
    EXPECT_LT(frame("heat").y, before.y);
    EXPECT_TRUE(edit.keyPressed(Key::down, true));
    EXPECT_EQ(store.layout(), defaults());
    EXPECT_EQ(frame("heat"), before);

    // A tall card whose trade re-packs others still comes back on the opposite arrow.
    edit.select("disk");
    EXPECT_TRUE(edit.keyPressed(Key::up, true));
    EXPECT_TRUE(edit.keyPressed(Key::down, true));
    EXPECT_EQ(store.layout(), defaults());

    edit.select("cpu");
    EXPECT_FALSE(edit.keyPressed(Key::up, true));  // top row
    EXPECT_EQ(store.layout(), defaults());
    EXPECT_EQ(edit.trace().back(), "option-up cpu blocked");
}

TEST_F(LayoutEditSessionTest, PlainArrowsWalkTheSelectionAcrossNeighbours) {
    EXPECT_FALSE(edit.keyPressed(Key::down, false));  // nothing selected
    edit.select("cpu");
    EXPECT_TRUE(edit.keyPressed(Key::right, false));
    EXPECT_EQ(edit.selection(), "memory");
    // Below memory, battery (224 down, 30 across: 284) beats the wide network (126 down but
    // 90 across: 306), since misalignment counts double.
    EXPECT_TRUE(edit.keyPressed(Key::down, false));
    EXPECT_EQ(edit.selection(), "battery");
    EXPECT_FALSE(store.hasStoredDocument());
    EXPECT_TRUE(edit.keyPressed(Key::escape, false));
    EXPECT_EQ(edit.selection(), std::nullopt);
}

TEST_F(LayoutEditSessionTest, HidingKeepsThePlaceAndResetReturnsToTheDefault) {
    edit.select("gpu");
    edit.setHidden("gpu", true);
    EXPECT_EQ(edit.selection(), std::nullopt);
    EXPECT_FALSE(edit.frames().count("gpu"));
    edit.setSize("heat", CardSize::wide);  // not supported: ignored
    edit.setSize("heat", CardSize::medium);
    edit.setHidden("gpu", false);
    EXPECT_EQ(
        describe(store.layout()),
        "cpu:medium memory:medium network:wide gpu:small heat:medium battery:small disk:medium "
        "pawreport:medium weather:wide(hidden)");
    EXPECT_TRUE(store.canReset());
    edit.resetLayout();
    EXPECT_EQ(edit.layout(), defaults());
    EXPECT_FALSE(store.hasStoredDocument());
}

TEST_F(LayoutEditSessionTest, EditsElsewhereAreTakenUpOnReload) {
    store.hiddenBinding().set({"cpu", "weather"});
    EXPECT_TRUE(edit.frames().count("cpu"));
    edit.reload();
    EXPECT_FALSE(edit.frames().count("cpu"));
}

}  // namespace
}  // namespace trotlet::layout
