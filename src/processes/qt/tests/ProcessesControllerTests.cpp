// The controller carrying out quits through a simulated process control.
#include <gtest/gtest.h>

#include <QCoreApplication>

#include "processes/SimulatedProcessControl.h"
#include "processes/qt/ProcessesController.h"

using namespace trotlet;
using namespace trotlet::processes;

namespace {

QCoreApplication& app() {
    static int argc = 1;
    static char name[] = "processes_tests";
    static char* argv[] = {name, nullptr};
    static auto* instance = new QCoreApplication(argc, argv);  // outlives every test
    return *instance;
}

metrics::ProcessRow row(std::int32_t pid, const char* name, bool own, bool root = false) {
    metrics::ProcessRow r;
    r.pid = pid;
    r.name = name;
    r.canQuit = own;
    r.isPrivileged = root;
    r.startTicks = 5000 + std::uint64_t(pid);
    return r;
}

class ControllerTest : public ::testing::Test {
protected:
    ControllerTest() {
        app();
        auto owned = std::make_unique<SimulatedProcessControl>();
        control = owned.get();
        for (const auto& r : rows) control->process(r.pid).startTicks = r.startTicks;
        controller = std::make_unique<ProcessesController>(std::move(owned), QuitContext{99, {77}});
        controller->setClock([this] { return now; });
        QObject::connect(controller.get(), &ProcessesController::processQuit, [this] { ++quits; });
        QObject::connect(controller.get(), &ProcessesController::forceQuitAsked,
                         [this](std::int32_t pid) { asked.push_back(pid); });
        controller->setRows(rows);
    }
    const QuitFlow* flowOf(std::int32_t pid) {
        return controller->flow(*controller->table().at(*controller->table().indexOf(pid)).row);
    }

    std::vector<metrics::ProcessRow> rows = {
        row(10, "editor", true),   row(11, "stubborn", true),    row(1, "systemd", false, true),
        row(12, "polkitd", false), row(13, "gnome-shell", true), row(99, "trotlet", false),
        row(77, "tray-host", true)};
    SimulatedProcessControl* control = nullptr;
    std::unique_ptr<ProcessesController> controller;
    double now = 0;
    int quits = 0;
    std::vector<std::int32_t> asked;
};

}  // namespace

TEST_F(ControllerTest, QuitEndsAProcessAndCountsItOnce) {
    controller->quit(10);
    EXPECT_EQ(control->sent(),
              (std::vector<std::pair<std::int32_t, QuitSignal>>{{10, QuitSignal::terminate}}));
    now = 0.2;
    controller->poll();
    EXPECT_EQ(flowOf(10)->stage(), QuitStage::ended);
    controller->poll();
    controller->quit(10);
    controller->setRows(rows);  // a sample taken before it ended still lists it
    EXPECT_EQ(quits, 1);
    auto later = rows;
    later.erase(later.begin());
    controller->setRows(later);
    EXPECT_EQ(quits, 1) << "the row going away is no second quit";
}

TEST_F(ControllerTest, OneThatIgnoresQuitIsForcedAfterConfirming) {
    control->process(11).ignoresTerminate = true;
    controller->quit(11);
    now = 4.9;
    controller->poll();
    EXPECT_EQ(flowOf(11)->stage(), QuitStage::quitting);
    now = 5.1;
    controller->poll();
    EXPECT_EQ(flowOf(11)->stage(), QuitStage::notResponding);
    controller->quit(11);  // Delete again: asks before killing
    EXPECT_EQ(asked, std::vector<std::int32_t>{11});
    EXPECT_EQ(control->sent().size(), 1u);
    controller->cancelForce(11);
    controller->askForce(11);
    controller->confirmForce(11);
    EXPECT_EQ(control->sent().back(), (std::pair<std::int32_t, QuitSignal>{11, QuitSignal::kill}));
    now = 5.3;
    controller->poll();
    EXPECT_EQ(flowOf(11)->stage(), QuitStage::ended);
    EXPECT_EQ(quits, 1);
}

TEST_F(ControllerTest, RefusedProcessesAreNeverSignalled) {
    for (std::int32_t pid : {1, 12, 13, 99, 77}) controller->quit(pid);
    EXPECT_TRUE(control->sent().empty());
    EXPECT_EQ(controller->block(*controller->table().at(*controller->table().indexOf(77)).row),
              QuitBlock::neededBySession)
        << "a PID found on the session bus";
}

TEST_F(ControllerTest, AReusedPidOrADeniedSignalIsAnErrorOnTheRow) {
    control->process(10).startTicks = 1;  // PID 10 now names a newer process
    control->process(11).denies = true;
    controller->quit(10);
    controller->quit(11);
    EXPECT_TRUE(control->sent().empty());
    EXPECT_EQ(flowOf(10)->problem(), QuitProblem::replaced);
    EXPECT_EQ(flowOf(11)->problem(), QuitProblem::permissionDenied);
    now = 10;
    controller->poll();
    EXPECT_EQ(quits, 0);
}
