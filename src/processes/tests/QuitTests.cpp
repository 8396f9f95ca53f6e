// Who may quit what, the steps of quitting, and the words the list uses for them.
#include <gtest/gtest.h>

#include "processes/ProcessTexts.h"
#include "processes/QuitFlow.h"
#include "processes/QuitRules.h"

using namespace trotlet;
using namespace trotlet::processes;

namespace {

metrics::ProcessRow row(std::int32_t pid, const char* name, bool own, bool root,
                        const char* exe = nullptr) {
    metrics::ProcessRow r;
    r.pid = pid;
    r.name = name;
    r.canQuit = own;
    r.isPrivileged = root;
    if (exe) r.executablePath = exe;
    return r;
}

}  // namespace

TEST(QuitRules, OnlyTheUsersOwnOrdinaryProcessesMayBeQuit) {
    const QuitContext context{500, {900}};
    struct Case {
        metrics::ProcessRow row;
        QuitBlock expected;
    };
    const Case cases[] = {
        {row(42, "firefox", true, false), QuitBlock::none},
        {row(500, "trotlet", false, false), QuitBlock::thisApp},
        {row(1, "systemd", false, true), QuitBlock::ownedByRoot},
        {row(43, "sshd", true, true), QuitBlock::ownedByRoot},  // root running the app
        {row(44, "polkitd", false, false), QuitBlock::ownedByOtherUser},
        {row(45, "gnome-shell", true, false), QuitBlock::neededBySession},
        {row(46, "systemd", true, false), QuitBlock::neededBySession},  // systemd --user
        {row(47, "dbus-daemon", true, false), QuitBlock::neededBySession},
        {row(48, "Xwayland", true, false), QuitBlock::neededBySession},
        {row(49, "xfce4-panel", true, false), QuitBlock::neededBySession},  // the tray host
        // A renamed process is still known by its executable; a bus name owner by its PID.
        {row(50, "wrapped", true, false, "/usr/bin/gnome-session-binary"),
         QuitBlock::neededBySession},
        {row(900, "my-tray-host", true, false), QuitBlock::neededBySession},
        {row(51, "systemd-analyze", true, false, "/usr/bin/systemd-analyze"), QuitBlock::none},
    };
    for (const auto& c : cases) EXPECT_EQ(quitBlock(c.row, context), c.expected) << c.row.name;
    EXPECT_EQ(quitBlockText(QuitBlock::ownedByRoot), "Owned by root");
    EXPECT_EQ(quitBlockText(QuitBlock::ownedByOtherUser), "Owned by another user");
    EXPECT_EQ(quitBlockText(QuitBlock::neededBySession), "Needed by your session");
}

TEST(QuitFlow, ScriptedTimelines) {
    // Each step: an action at a time, the command it gives and the stage after it.
    enum class Do { quit, sent, gone, replaced, denied, running, ended, askForce, confirm, cancel };
    struct Step {
        Do what;
        double at;
        QuitCommand command;
        QuitStage stage;
    };
    using C = QuitCommand;
    using S = QuitStage;
    const std::vector<std::pair<const char*, std::vector<Step>>> timelines = {
        {"quits politely",
         {{Do::quit, 0, C::terminate, S::quitting},
          {Do::sent, 0, C::none, S::quitting},
          {Do::running, 1, C::none, S::quitting},
          {Do::ended, 1.2, C::announce, S::ended},
          {Do::ended, 1.4, C::none, S::ended},
          {Do::quit, 2, C::none, S::ended}}},
        {"ignores SIGTERM, is forced after confirming",
         {{Do::quit, 0, C::terminate, S::quitting},
          {Do::sent, 0, C::none, S::quitting},
          {Do::running, 4.9, C::none, S::quitting},
          {Do::running, 5, C::none, S::notResponding},
          {Do::quit, 6, C::none, S::confirmingForce},  // Delete again asks to force
          {Do::cancel, 7, C::none, S::notResponding},
          {Do::askForce, 8, C::none, S::confirmingForce},
          {Do::confirm, 9, C::kill, S::forceQuitting},
          {Do::sent, 9, C::none, S::forceQuitting},
          {Do::running, 20, C::none, S::forceQuitting},
          {Do::ended, 21, C::announce, S::ended}}},
        {"ends while the user is asked",
         {{Do::quit, 0, C::terminate, S::quitting},
          {Do::sent, 0, C::none, S::quitting},
          {Do::running, 6, C::none, S::notResponding},
          {Do::askForce, 6, C::none, S::confirmingForce},
          {Do::ended, 7, C::announce, S::ended},
          {Do::confirm, 8, C::none, S::ended}}},
        {"SIGTERM lands late, as SIGKILL finds it gone",
         {{Do::quit, 0, C::terminate, S::quitting},
          {Do::sent, 0, C::none, S::quitting},
          {Do::running, 5, C::none, S::notResponding},
          {Do::askForce, 5, C::none, S::confirmingForce},
          {Do::confirm, 6, C::kill, S::forceQuitting},
          {Do::gone, 6, C::announce, S::ended}}},
        {"already gone is not a quit",
         {{Do::quit, 0, C::terminate, S::quitting},
          {Do::gone, 0, C::none, S::failed},
          {Do::ended, 1, C::none, S::failed}}},
        {"a reused PID is left alone",
         {{Do::quit, 0, C::terminate, S::quitting}, {Do::replaced, 0, C::none, S::failed}}},
        {"denied, then tried again",
         {{Do::quit, 0, C::terminate, S::quitting},
          {Do::denied, 0, C::none, S::failed},
          {Do::quit, 3, C::terminate, S::quitting},
          {Do::sent, 3, C::none, S::quitting},
          {Do::ended, 4, C::announce, S::ended}}},
        {"Force Quit is not offered before five seconds",
         {{Do::askForce, 0, C::none, S::idle},
          {Do::quit, 0, C::terminate, S::quitting},
          {Do::askForce, 1, C::none, S::quitting},
          {Do::confirm, 1, C::none, S::quitting}}},
    };
    for (const auto& [name, steps] : timelines) {
        QuitFlow flow;
        int announced = 0;
        for (const auto& step : steps) {
            QuitCommand command = QuitCommand::none;
            switch (step.what) {
                case Do::quit:
                    command = flow.quit(step.at);
                    break;
                case Do::sent:
                    command = flow.delivered(SignalOutcome::sent, step.at);
                    break;
                case Do::gone:
                    command = flow.delivered(SignalOutcome::gone, step.at);
                    break;
                case Do::replaced:
                    command = flow.delivered(SignalOutcome::replaced, step.at);
                    break;
                case Do::denied:
                    command = flow.delivered(SignalOutcome::denied, step.at);
                    break;
                case Do::running:
                    command = flow.observe(true, step.at);
                    break;
                case Do::ended:
                    command = flow.observe(false, step.at);
                    break;
                case Do::askForce:
                    flow.askForce();
                    break;
                case Do::confirm:
                    command = flow.confirmForce(step.at);
                    break;
                case Do::cancel:
                    flow.cancelForce();
                    break;
            }
            announced += command == QuitCommand::announce;
            EXPECT_EQ(command, step.command) << name << " at " << step.at;
            EXPECT_EQ(flow.stage(), step.stage) << name << " at " << step.at;
        }
        EXPECT_LE(announced, 1) << name;
    }
}

TEST(ProcessTexts, RowsDetailsAndQuestions) {
    namespace T = ProcessTexts;
    EXPECT_EQ(T::cpu(18.46), "18.5%");
    EXPECT_EQ(T::cpu(0), "0.0%");
    EXPECT_EQ(T::cpu(99.96), "100%");
    EXPECT_EQ(T::cpu(742.3), "742%");
    EXPECT_EQ(T::threads(std::nullopt), "–");

    using namespace std::chrono;
    const auto now = metrics::Timestamp(sys_days(2026y / 10 / 1)) + 12h + 30min;  // 14:30 at +2h
    const int berlin = 2 * 3600;
    EXPECT_EQ(T::started(now - 20s, now, berlin), "Today at 14:29 · just now");
    EXPECT_EQ(T::started(now - 3h - 12min, now, berlin), "Today at 11:18 · 3h 12m ago");
    EXPECT_EQ(T::started(now - 15h, now, berlin), "Yesterday at 23:30 · 15h 0m ago");
    EXPECT_EQ(T::started(now - 13h, now, berlin), "Today at 01:30 · 13h 0m ago");
    EXPECT_EQ(T::started(now - 13h, now, 0), "Yesterday at 23:30 · 13h 0m ago")
        << "the zone decides the day";
    EXPECT_EQ(T::started(now - days(3) - 4h, now, berlin), "28 Sep at 10:30 · 3d 4h ago");
    EXPECT_EQ(T::started(now - days(300), now, berlin), "5 Dec 2025 at 14:30 · 300d 0h ago");

    metrics::ProcessRow firefox = row(4242, "firefox", true, false, "/usr/lib/firefox/firefox");
    firefox.user = "alice";
    const ProcessDetails more{"/usr/lib/firefox/firefox --new-window", now - 1h};
    EXPECT_EQ(T::details(firefox, more, now, berlin),
              (std::vector<T::DetailLine>{{"Path", "/usr/lib/firefox/firefox"},
                                          {"Command", "/usr/lib/firefox/firefox --new-window"},
                                          {"Started", "Today at 13:30 · 1h 0m ago"},
                                          {"User", "alice · PID 4242"}}));
    EXPECT_EQ(T::details(row(2, "kthreadd", false, true), std::nullopt, now, berlin).size(), 1u)
        << "a kernel thread has only its owner and PID";

    EXPECT_EQ(T::forceQuitTitle("code"), "Force quit “code”?");
    EXPECT_EQ(T::matchCount(17, 312, "fire"), "17 of 312");
    EXPECT_EQ(T::emptyList(true, "zzz"), "No process matches “zzz”.");

    // What the action line offers at each stage.
    QuitFlow flow;
    EXPECT_EQ(T::action(QuitBlock::none, nullptr).buttonText, "Quit");
    EXPECT_EQ(T::action(QuitBlock::ownedByRoot, nullptr).note, "Owned by root");
    flow.quit(0);
    EXPECT_FALSE(T::action(QuitBlock::none, &flow).enabled);
    EXPECT_EQ(T::status(&flow, false)->text, "Quitting…");
    flow.delivered(SignalOutcome::sent, 0);
    flow.observe(true, 5);
    EXPECT_EQ(T::action(QuitBlock::none, &flow).buttonText, "Force Quit…");
    EXPECT_EQ(T::status(&flow, false), (T::Status{"Not responding", T::Tone::warning}));
    QuitFlow denied;
    denied.quit(0);
    denied.delivered(SignalOutcome::denied, 0);
    EXPECT_EQ(T::status(&denied, false), (T::Status{"Permission denied", T::Tone::error}));
    EXPECT_EQ(T::action(QuitBlock::none, &denied).buttonText, "Try Again");
    EXPECT_EQ(T::status(nullptr, true)->text, "Ended");
    EXPECT_EQ(T::action(QuitBlock::none, nullptr, true).note, "It has ended.");
    QuitFlow quit;
    quit.quit(0);
    quit.delivered(SignalOutcome::sent, 0);
    quit.observe(false, 1);
    EXPECT_EQ(T::status(&quit, true)->text, "Quit") << "ended at the user's request, and says so";
    EXPECT_EQ(T::action(QuitBlock::none, &quit, true).note, "It has quit.");
}
