// The Processes tab driven from the keyboard and the pointer, on a simulated process table.
#include <gtest/gtest.h>

#include <QKeyEvent>
#include <QLineEdit>
#include <QScrollBar>
#include <QWheelEvent>

#include "metrics/FixtureProcesses.h"
#include "processes/SimulatedProcessControl.h"
#include "processes/qt/ProcessesController.h"
#include "snapshot/SceneRig.h"
#include "ui/processes/ColumnHeader.h"
#include "ui/processes/ForceQuitSheet.h"
#include "ui/processes/PillButton.h"
#include "ui/processes/ProcessListView.h"
#include "ui/processes/ProcessesScreen.h"
#include "ui/processes/SearchField.h"
#include "ui/tests/UiTestApp.h"

namespace trotlet::ui {
namespace {

using processes::ProcessColumn;
using processes::QuitSignal;

class ProcessesScreenTest : public ::testing::Test {
protected:
    ProcessesScreenTest() : rig((application(), metrics::MetricsFixture::busy)) {
        rows = metrics::fixtureProcessTable(rig.sample());
        auto owned = std::make_unique<processes::SimulatedProcessControl>();
        control = owned.get();
        controller = std::make_unique<processes::ProcessesController>(
            std::move(owned), processes::QuitContext{7777, {}});
        controller->setClock([this] { return now; });
        controller->setRows(rows);
        screen = std::make_unique<ProcessesScreen>(*controller, rig.model(), rig.theme());
        screen->resize(Metrics::panelWidth, 560);
        screen->show();
        QApplication::setActiveWindow(screen.get());
    }
    void press(QWidget* target, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
               const QString& text = {}) {
        QKeyEvent down(QEvent::KeyPress, key, modifiers, text);
        QApplication::sendEvent(target, &down);
    }
    const metrics::ProcessRow& selected() {
        return *controller->table().at(*controller->table().selectedIndex()).row;
    }

    snapshot::SceneRig rig;
    std::vector<metrics::ProcessRow> rows;
    processes::SimulatedProcessControl* control = nullptr;
    std::unique_ptr<processes::ProcessesController> controller;
    std::unique_ptr<ProcessesScreen> screen;
    double now = 0;
};

TEST_F(ProcessesScreenTest, KeyboardSearchesSelectsOpensAndQuits) {
    QLineEdit& search = screen->search().edit();
    search.setFocus(Qt::TabFocusReason);
    for (QChar c : QStringLiteral("code"))
        press(&search, c.toUpper().unicode(), Qt::NoModifier, QString(c));
    EXPECT_EQ(controller->table().query().text(), "code");
    press(&search, Qt::Key_Down);
    ASSERT_TRUE(screen->list().hasFocus());
    EXPECT_EQ(selected().name, "code") << "the busiest match comes first";
    press(&screen->list(), Qt::Key_Return);
    EXPECT_TRUE(screen->list().isOpened(selected().pid));
    press(&screen->list(), Qt::Key_Delete);
    ASSERT_EQ(control->sent().size(), 1u);
    EXPECT_EQ(control->sent().front(), std::make_pair(selected().pid, QuitSignal::terminate));
    // Typing in the list goes on with the search; Escape undoes it.
    press(&screen->list(), Qt::Key_X, Qt::NoModifier, QStringLiteral("x"));
    EXPECT_TRUE(search.hasFocus());
    EXPECT_EQ(search.text(), QStringLiteral("codex"));
    press(&search, Qt::Key_Escape);
    EXPECT_TRUE(controller->table().query().empty());
}

TEST_F(ProcessesScreenTest, HeaderSortsByKeyboardAndTheOrderFlips) {
    ColumnHeader& header = screen->header();
    header.setFocus(Qt::TabFocusReason);
    press(&header, Qt::Key_Right);
    press(&header, Qt::Key_Space);
    EXPECT_EQ(controller->table().sort(), (processes::ProcessSort{ProcessColumn::memory, true}));
    EXPECT_EQ(controller->table().at(0).row->name, "firefox");
    press(&header, Qt::Key_Return);
    EXPECT_EQ(controller->table().sort(), (processes::ProcessSort{ProcessColumn::memory, false}));
    EXPECT_TRUE(header.accessibleDescription().startsWith(QStringLiteral("Sorted by Memory")));
}

TEST_F(ProcessesScreenTest, ForceQuitIsConfirmedByName) {
    controller->setQuery("code");
    controller->selectEdge(false);
    const std::int32_t pid = selected().pid;
    control->process(pid).ignoresTerminate = true;
    screen->list().setFocus(Qt::TabFocusReason);
    press(&screen->list(), Qt::Key_Delete);
    now = 5.5;
    controller->poll();
    press(&screen->list(), Qt::Key_Delete);
    ForceQuitSheet& sheet = screen->sheet();
    ASSERT_TRUE(sheet.isVisible());
    EXPECT_TRUE(sheet.accessibleDescription().startsWith(QStringLiteral("Force quit “code”?")));
    EXPECT_TRUE(sheet.cancelButton().hasFocus()) << "the safe answer has the keyboard";
    press(&sheet.cancelButton(), Qt::Key_Escape);
    EXPECT_FALSE(sheet.isVisible());
    EXPECT_EQ(control->sent().size(), 1u);
    press(&screen->list(), Qt::Key_Delete);
    ASSERT_TRUE(sheet.isVisible());
    sheet.forceButton().click();
    EXPECT_EQ(control->sent().back(), std::make_pair(pid, QuitSignal::kill));
}

TEST_F(ProcessesScreenTest, ScrollHoldsWhileSamplesReorderAndRowsHoldUnderThePointer) {
    QScrollBar* bar = screen->list().verticalScrollBar();
    QWheelEvent wheel(QPointF(100, 100), QPointF(), QPoint(), QPoint(0, -120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(screen->list().viewport(), &wheel);
    EXPECT_EQ(bar->value(), 3 * Metrics::listRowHeight) << "a wheel step scrolls three rows";
    bar->setValue(600);
    auto next = rows;
    for (auto& r : next) r.cpuPercent = double((r.pid * 7919) % 100);
    controller->setRows(next);
    EXPECT_EQ(bar->value(), 600);
    QEvent enter(QEvent::Enter);
    QApplication::sendEvent(screen->list().viewport(), &enter);
    EXPECT_TRUE(controller->table().held());
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(screen->list().viewport(), &leave);
    EXPECT_FALSE(controller->table().held());
}

}  // namespace
}  // namespace trotlet::ui
