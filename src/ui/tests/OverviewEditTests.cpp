#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>

#include "layout/LayoutOps.h"
#include "snapshot/SceneRig.h"
#include "ui/cards/CardView.h"
#include "ui/details/ActionButton.h"
#include "ui/overview/OverviewFooter.h"
#include "ui/overview/OverviewView.h"
#include "ui/panel/PanelHeader.h"
#include "ui/panel/PanelWindow.h"
#include "ui/tests/UiTestApp.h"

namespace trotlet::ui {
namespace {

// Edit mode driven through the real widgets with synthetic pointer and key events.
class OverviewEditTest : public ::testing::Test {
protected:
    OverviewEditTest()
        : rig((application(), metrics::MetricsFixture::normal)),
          window(rig.model(), rig.theme()) {
        rig.model().setReduceMotion(true);  // cards jump to their places: no frames to wait for
        window.header().setAnimating(false);
        window.show();
        QApplication::setActiveWindow(&window);
        overview().setEditing(true);
    }

    OverviewView& overview() { return window.overview(); }
    CardView* card(const std::string& id) { return overview().card(id); }
    std::vector<std::string> order() {
        return layout::LayoutOps::visibleOrder(rig.layout().layout(), layout::everythingAvailable(),
                                               rig.layout().registry());
    }

    void mouse(QWidget* target, QEvent::Type type, QPointF at) {
        const Qt::MouseButtons held =
            type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, at, target->mapToGlobal(at), Qt::LeftButton, held, Qt::NoModifier);
        QApplication::sendEvent(target, &event);
    }
    // Presses on a card, moves the pointer to `to` (in the Overview's coordinates) in steps, and
    // lets go there, as a hand would.
    void drag(const std::string& id, QPointF grab, QPointF to) {
        CardView* c = card(id);
        mouse(c, QEvent::MouseButtonPress, grab);
        const QPointF from = c->mapTo(&overview(), grab.toPoint());
        for (int step = 1; step <= 10; ++step) {
            const QPointF at = from + (to - from) * (step / 10.0);
            mouse(c, QEvent::MouseMove, c->mapFrom(&overview(), at.toPoint()));
        }
        mouse(c, QEvent::MouseButtonRelease, c->mapFrom(&overview(), to.toPoint()));
    }
    void press(QWidget* target, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QKeyEvent down(QEvent::KeyPress, key, modifiers);
        QApplication::sendEvent(target, &down);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    snapshot::SceneRig rig;
    PanelWindow window;
};

TEST_F(OverviewEditTest, DraggingACardToTheTopLeftMakesItFirst) {
    drag("battery", QPointF(40, 40), QPointF(6, 6));
    EXPECT_EQ(order().front(), "battery");
    EXPECT_TRUE(rig.layout().hasStoredDocument()) << "committed through the store";
    EXPECT_EQ(card("battery")->geometry().topLeft(), QPoint(0, 0)) << "settled on its new frame";
    EXPECT_FALSE(card("battery")->isHidden());
}

TEST_F(OverviewEditTest, AltUpMovesTheFocusedCardIntoTheRowAboveAndBack) {
    const QRect before = card("heat")->geometry();
    card("heat")->setFocus(Qt::TabFocusReason);
    press(card("heat"), Qt::Key_Up, Qt::AltModifier);
    EXPECT_LT(card("heat")->geometry().top(), before.top());
    EXPECT_TRUE(card("heat")->hasFocus()) << "the moved card keeps the focus";
    EXPECT_EQ(card("heat")->cardSize(), layout::CardSize::small) << "a move never resizes";
    press(card("heat"), Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(card("heat")->geometry(), before);
}

TEST_F(OverviewEditTest, TheGripResizesWithSnappingAndAPickUpChangesNothing) {
    CardView* gpu = card("gpu");
    const QPointF grip(gpu->width() - 4, gpu->height() - 4);
    mouse(gpu, QEvent::MouseButtonPress, grip);
    mouse(gpu, QEvent::MouseButtonRelease, grip);
    EXPECT_EQ(gpu->cardSize(), layout::CardSize::small);
    EXPECT_FALSE(rig.layout().hasStoredDocument()) << "picking up the grip commits nothing";

    // +68, +56 points: a small card's extent snaps to medium.
    const QPointF from = gpu->mapTo(&overview(), grip.toPoint());
    drag("gpu", grip, from + QPointF(68, 56));
    EXPECT_EQ(card("gpu")->cardSize(), layout::CardSize::medium);
    EXPECT_EQ(rig.layout().layout().card("gpu")->size, layout::CardSize::medium);
}

TEST_F(OverviewEditTest, HidingShowingAndResetGoThroughTheStoreAndTheKeyboard) {
    OverviewFooter& footer = overview().footer();
    EXPECT_FALSE(footer.resetButton().isVisibleTo(&window)) << "nothing to reset yet";
    ASSERT_EQ(footer.tiles().size(), 1u) << "the weather card starts hidden";

    // The minus on a card hides it; Delete hides the focused one and moves the focus on.
    CardView* gpu = card("gpu");
    const QPointF minus = gpu->hideButtonRect().center();
    mouse(gpu, QEvent::MouseButtonPress, minus);
    mouse(gpu, QEvent::MouseButtonRelease, minus);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(card("gpu"));
    card("heat")->setFocus(Qt::TabFocusReason);
    press(card("heat"), Qt::Key_Delete);
    EXPECT_FALSE(card("heat"));
    EXPECT_TRUE(card("battery")->hasFocus());
    EXPECT_EQ(rig.layout().layout().hiddenIDs(),
              (std::vector<std::string>{"gpu", "heat", "weather"}));
    ASSERT_EQ(footer.tiles().size(), 3u);
    EXPECT_TRUE(footer.resetButton().isVisibleTo(&window));

    // A tile adds its card back, at its old place.
    footer.tiles()[0]->setFocus(Qt::TabFocusReason);
    press(footer.tiles()[0], Qt::Key_Return);
    ASSERT_TRUE(card("gpu"));
    EXPECT_EQ(order()[3], "gpu");

    footer.resetButton().setFocus(Qt::TabFocusReason);
    press(&footer.resetButton(), Qt::Key_Space);
    EXPECT_FALSE(rig.layout().canReset());
    EXPECT_FALSE(footer.resetButton().isVisibleTo(&window)) << "offered exactly when it can reset";
    EXPECT_TRUE(card("heat"));

    // Escape leaves edit mode (without closing the panel); Ctrl+E comes back.
    int closes = 0;
    QObject::connect(&window, &PanelWindow::closeRequested, [&] { ++closes; });
    card("cpu")->setFocus(Qt::TabFocusReason);
    press(card("cpu"), Qt::Key_Escape);
    EXPECT_FALSE(overview().isEditing());
    EXPECT_EQ(closes, 0);
    EXPECT_FALSE(card("cpu")->editing());
    overview().setEditing(true);
    footer.doneButton().setFocus(Qt::TabFocusReason);
    press(&footer.doneButton(), Qt::Key_Escape);
    EXPECT_FALSE(overview().isEditing()) << "from the footer too";
    EXPECT_EQ(closes, 0);
}

}  // namespace
}  // namespace trotlet::ui
