// The real binary, started as a user's desktop would start it, seen only from outside: through a
// private session bus where this test owns the StatusNotifierWatcher and the screen saver, on a
// private X server, with the app's debug log read from its stderr.
#include "LiveAppProcess.h"
#include "TrayHostView.h"
#include "XWindowList.h"
#include "platform/freedesktop/tests/FreedesktopFakeServices.h"
#include "platform/freedesktop/tests/FreedesktopTestSupport.h"
#include "weather/WeatherLocation.h"
#include "weather/tests/LocalHttpServer.h"
#include "weather/tests/OpenMeteoSamples.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <memory>
#include <optional>

namespace trotlet::app {
namespace {

using platform::testing::FakePortalSettings;
using platform::testing::FakeScreenSaver;
using platform::testing::FakeWatcher;
using platform::testing::PrivateBus;
using platform::testing::SignalRecorder;
using platform::testing::spinFor;
using platform::testing::waitUntil;
using testing::MenuNode;
using testing::Pixmap;
using testing::readMenuNode;
using testing::readPixmaps;
using testing::readToolTip;
using testing::ToolTip;

const QString kItemPath = QStringLiteral("/StatusNotifierItem");
const QString kItemInterface = QStringLiteral("org.kde.StatusNotifierItem");
const QString kMenuInterface = QStringLiteral("com.canonical.dbusmenu");

// Start-up is slow on a loaded machine and slower again under the sanitizers; these only bound
// the wait, a healthy run takes a fraction of them.
constexpr int kStartMs = 30000;
constexpr int kEventMs = 10000;
// The mascot draws several frames a second while it runs; two seconds without one is a pause.
constexpr int kQuietMs = 2000;

constexpr int kScreenWidth = 1280;
constexpr int kScreenHeight = 800;

class LiveAppOnPrivateBus : public ::testing::Test {
protected:
    void SetUp() override {
        platform::testing::ensureApplication();
        ASSERT_TRUE(bus.isRunning()) << "dbus-daemon did not start";
        ASSERT_TRUE(display.isRunning()) << "Xvfb did not start";
        ASSERT_TRUE(home.isValid());
        for (const char* dir : {"home", "config/trotlet", "data", "cache", "run"})
            ASSERT_TRUE(QDir().mkpath(home.filePath(QString::fromLatin1(dir))));
        writeSettings("{}");
        QFile::setPermissions(home.filePath(QStringLiteral("run")),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);

        watcherBus = bus.connect(QStringLiteral("watcher"));
        ASSERT_TRUE(watcher.start(watcherBus)) << "could not own the watcher's name";
        ASSERT_TRUE(screenSaver.start(bus.connect(QStringLiteral("screensaver"))));
        hostBus = bus.connect(QStringLiteral("host"));
        ASSERT_TRUE(hostBus.isConnected());
        // Any sender: the item's signals are counted from its first frame, before it registers.
        item = std::make_unique<SignalRecorder>(hostBus, QString(), kItemPath, kItemInterface);
        announced = std::make_unique<SignalRecorder>(
            hostBus, QStringLiteral("org.kde.StatusNotifierWatcher"),
            QStringLiteral("/StatusNotifierWatcher"),
            QStringLiteral("org.kde.StatusNotifierWatcher"));
    }

    // The user has been through the welcome tour unless the settings say otherwise, so a
    // start does not open the panel on it by itself.
    void writeSettings(const QByteArray& json) {
        auto settings = nlohmann::json::parse(json.toStdString());
        settings.emplace("general.hasCompletedOnboarding", true);
        QFile file(home.filePath(QStringLiteral("config/trotlet/settings.json")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray::fromStdString(settings.dump()));
    }

    QProcessEnvironment environment() const {
        QProcessEnvironment env;
        env.insert(QStringLiteral("PATH"),
                   qEnvironmentVariable("PATH", QStringLiteral("/usr/bin:/bin")));
        env.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
        env.insert(QStringLiteral("TZ"), QStringLiteral("UTC"));
        env.insert(QStringLiteral("HOME"), home.filePath(QStringLiteral("home")));
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), home.filePath(QStringLiteral("config")));
        env.insert(QStringLiteral("XDG_DATA_HOME"), home.filePath(QStringLiteral("data")));
        env.insert(QStringLiteral("XDG_CACHE_HOME"), home.filePath(QStringLiteral("cache")));
        env.insert(QStringLiteral("XDG_RUNTIME_DIR"), home.filePath(QStringLiteral("run")));
        // Both buses are the private one: nothing of this machine's desktop or logind is reached.
        env.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus.address());
        env.insert(QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS"), bus.address());
        env.insert(QStringLiteral("DISPLAY"), display.name());
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        env.insert(QStringLiteral("TROTLET_ALLOW_MULTIPLE"), QStringLiteral("1"));
        env.insert(QStringLiteral("TROTLET_QA_NO_HOTKEY"), QStringLiteral("1"));
        env.insert(QStringLiteral("TROTLET_DEBUG_LOG"), QStringLiteral("1"));
        // The ticker as a label beside the icon, so only the mascot's frames change the icon.
        env.insert(QStringLiteral("TROTLET_TRAY_LABEL"), labelPlacement);
        for (const auto& [name, value] : extraEnvironment) env.insert(name, value);
        for (const char* name : {"ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS"}) {
            if (qEnvironmentVariableIsSet(name))
                env.insert(QString::fromLatin1(name), qEnvironmentVariable(name));
        }
        return env;
    }

    // Starts the app and waits until its item has registered with the watcher.
    ::testing::AssertionResult startApp(const QStringList& arguments) {
        app.start(arguments, environment());
        if (!waitUntil([&] { return !watcher.registered.isEmpty() || !app.isRunning(); },
                       kStartMs) ||
            watcher.registered.isEmpty()) {
            return ::testing::AssertionFailure()
                   << "the item never registered with the watcher; the app said:\n"
                   << app.log().toStdString();
        }
        itemOwner = watcher.senders.last();
        return ::testing::AssertionSuccess();
    }

    QVariant property(const QString& name) {
        return platform::testing::getProperty(hostBus, itemOwner, kItemPath, kItemInterface, name);
    }
    QList<Pixmap> iconPixmaps() {
        const QVariant value = property(QStringLiteral("IconPixmap"));
        if (!value.canConvert<QDBusArgument>()) return {};
        return readPixmaps(value.value<QDBusArgument>());
    }
    int newIcons() const { return item->count(QStringLiteral("NewIcon")); }
    // Waits for `count` more icons than there are now.
    bool iconsKeepComing(int count) {
        const int before = newIcons();
        return waitUntil([&] { return newIcons() >= before + count; }, kEventMs);
    }
    ::testing::AssertionResult iconsStopFor(int ms) {
        const int before = newIcons();
        spinFor(ms);
        if (newIcons() == before) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure()
               << newIcons() - before << " new icons in " << ms << " ms";
    }

    // Waits, up to the event timeout, for `ms` in a row without a new icon.
    bool iconsFallQuiet(int ms) {
        QElapsedTimer total;
        total.start();
        while (total.elapsed() < kEventMs + ms) {
            if (iconsStopFor(ms)) return true;
        }
        return false;
    }

    // The tray menu as a host reads it when the user opens it: AboutToShow, then the layout.
    std::optional<MenuNode> openMenu() {
        const QString path = property(QStringLiteral("Menu")).value<QDBusObjectPath>().path();
        if (path.isEmpty()) return std::nullopt;
        platform::testing::call(hostBus, itemOwner, path, kMenuInterface,
                                QStringLiteral("AboutToShow"), {0});
        const QDBusMessage reply =
            platform::testing::call(hostBus, itemOwner, path, kMenuInterface,
                                    QStringLiteral("GetLayout"), {0, -1, QStringList()});
        if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().size() != 2)
            return std::nullopt;
        return readMenuNode(reply.arguments().at(1).value<QDBusArgument>());
    }
    ::testing::AssertionResult clickMenuItem(const QString& text) {
        const auto menu = openMenu();
        if (!menu) return ::testing::AssertionFailure() << "no tray menu";
        const MenuNode* entry = menu->find(text);
        if (!entry)
            return ::testing::AssertionFailure() << "no menu item \"" << text.toStdString() << "\"";
        const QString path = property(QStringLiteral("Menu")).value<QDBusObjectPath>().path();
        const QDBusMessage reply = platform::testing::call(
            hostBus, itemOwner, path, kMenuInterface, QStringLiteral("Event"),
            {entry->id, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(0)), uint(0)});
        if (reply.type() == QDBusMessage::ErrorMessage)
            return ::testing::AssertionFailure() << reply.errorMessage().toStdString();
        return ::testing::AssertionSuccess();
    }

    // Icons drawn over `ms` once the item has shown its first, per second.
    double iconsPerSecond(int ms) {
        const int before = newIcons();
        QElapsedTimer timer;
        timer.start();
        spinFor(ms);
        return (newIcons() - before) * 1000.0 / double(timer.elapsed());
    }

    // The app's panel as the X server shows it: a viewable top-level window named after the app.
    std::optional<testing::XWindow> panelWindow() const {
        for (const testing::XWindow& window :
             testing::viewableTopLevelWindows(display.name().toStdString())) {
            if (window.name == "Trotlet") return window;
        }
        return std::nullopt;
    }

    void expectCleanQuit() {
        const auto status = app.terminate(kEventMs);
        ASSERT_TRUE(status.has_value()) << "SIGTERM did not end the app cleanly:\n"
                                        << app.log().toStdString();
        EXPECT_EQ(*status, 0) << app.log().toStdString();
        EXPECT_TRUE(app.log().contains(QStringLiteral("trotlet: quitting (SIGTERM)")))
            << app.log().toStdString();
    }

    // The labels the item has announced, with their guides, oldest first.
    QList<QPair<QString, QString>> announcedLabels() const {
        QList<QPair<QString, QString>> seen;
        for (const auto& s : item->signals_) {
            if (s.member == QStringLiteral("XAyatanaNewLabel") && s.arguments.size() == 2)
                seen.append({s.arguments.at(0).toString(), s.arguments.at(1).toString()});
        }
        return seen;
    }

    QString labelPlacement = QStringLiteral("label");
    QList<QPair<QString, QString>> extraEnvironment;
    PrivateBus bus;
    testing::VirtualDisplay display{kScreenWidth, kScreenHeight};
    QTemporaryDir home;
    QDBusConnection watcherBus{QString()};
    QDBusConnection hostBus{QString()};
    FakeWatcher watcher;
    FakeScreenSaver screenSaver;
    std::unique_ptr<SignalRecorder> item;
    std::unique_ptr<SignalRecorder> announced;
    QString itemOwner;
    testing::LiveAppProcess app;
};

TEST_F(LiveAppOnPrivateBus, RegistersAndAnimatesWhileTheMascotRuns) {
    ASSERT_TRUE(startApp({QStringLiteral("--fixture"), QStringLiteral("busy"),
                          QStringLiteral("--awake"), QStringLiteral("--skip-onboarding")}));
    EXPECT_EQ(watcher.registered.size(), 1);
    EXPECT_TRUE(
        watcher.registered.first().startsWith(QStringLiteral("org.kde.StatusNotifierItem-")))
        << watcher.registered.first().toStdString();
    ASSERT_TRUE(waitUntil(
        [&] { return announced->count(QStringLiteral("StatusNotifierItemRegistered")) == 1; }));
    EXPECT_EQ(property(QStringLiteral("Id")).toString(), QStringLiteral("trotlet"));

    ASSERT_TRUE(iconsKeepComing(3))
        << "the icon does not change while the mascot runs; " << newIcons() << " icons so far\n"
        << app.log().toStdString();
    const QList<Pixmap> first = iconPixmaps();
    ASSERT_FALSE(first.isEmpty());
    for (const Pixmap& p : first) {
        EXPECT_GT(p.width, 0);
        EXPECT_GT(p.height, 0);
        EXPECT_EQ(p.bytes.size(), qsizetype(p.width) * p.height * 4) << p.width << "x" << p.height;
    }
    QList<Pixmap> later;
    EXPECT_TRUE(waitUntil(
        [&] {
            later = iconPixmaps();
            return !later.isEmpty() && later != first;
        },
        kEventMs))
        << "IconPixmap read the same frame for ten seconds";
    expectCleanQuit();
}

TEST_F(LiveAppOnPrivateBus, ScreenLockPausesTheMascotAndUnlockResumesIt) {
    ASSERT_TRUE(startApp({QStringLiteral("--fixture"), QStringLiteral("busy"),
                          QStringLiteral("--awake"), QStringLiteral("--skip-onboarding")}));
    ASSERT_TRUE(iconsKeepComing(2)) << app.log().toStdString();
    // The app has asked the screen saver and heard "not active": it follows the signal from here.
    ASSERT_TRUE(app.waitForLog(QStringLiteral("trotlet: screen unlocked: mascot resumed")))
        << app.log().toStdString();

    screenSaver.setActive(true);
    ASSERT_TRUE(app.waitForLog(QStringLiteral("trotlet: screen locked: mascot paused")))
        << app.log().toStdString();
    spinFor(300);  // a frame already on the wire
    EXPECT_TRUE(iconsStopFor(kQuietMs));

    screenSaver.setActive(false);
    ASSERT_TRUE(app.waitForLog(QStringLiteral("trotlet: screen unlocked: mascot resumed"), 2))
        << app.log().toStdString();
    EXPECT_TRUE(iconsKeepComing(2)) << "the mascot stayed paused after the unlock";
    expectCleanQuit();
}

TEST_F(LiveAppOnPrivateBus, DesktopAskingForLessMotionStillsTheMascot) {
    FakePortalSettings portal;
    ASSERT_TRUE(portal.start(bus.connect(QStringLiteral("portal"))));
    ASSERT_TRUE(startApp({QStringLiteral("--fixture"), QStringLiteral("busy"),
                          QStringLiteral("--awake"), QStringLiteral("--skip-onboarding")}));
    ASSERT_TRUE(iconsKeepComing(2)) << app.log().toStdString();

    // GNOME's "Reduce animation" switch, as the settings portal announces it.
    const QString gnome = QStringLiteral("org.gnome.desktop.interface");
    const QString animations = QStringLiteral("enable-animations");
    portal.change(gnome, animations, false);
    EXPECT_TRUE(iconsFallQuiet(kQuietMs)) << "the mascot kept running with animations off";
    EXPECT_FALSE(iconPixmaps().isEmpty()) << "a still mascot is still shown";

    portal.change(gnome, animations, true);
    EXPECT_TRUE(iconsKeepComing(2)) << "the mascot stayed still with animations back on";
    expectCleanQuit();
}

TEST_F(LiveAppOnPrivateBus, PauseAnimationSettingShowsOneStillFrame) {
    writeSettings(R"({"menuBar.pauseAnimation": true})");
    ASSERT_TRUE(
        startApp({QStringLiteral("--fixture"), QStringLiteral("busy"), QStringLiteral("--awake")}));
    ASSERT_TRUE(waitUntil([&] { return newIcons() >= 1; })) << app.log().toStdString();
    EXPECT_FALSE(iconPixmaps().isEmpty());
    EXPECT_TRUE(iconsStopFor(kQuietMs));
    expectCleanQuit();
}

TEST_F(LiveAppOnPrivateBus, HiddenMascotLeavesAStillGlyph) {
    writeSettings(R"({"menuBar.showMascot": false})");
    ASSERT_TRUE(
        startApp({QStringLiteral("--fixture"), QStringLiteral("busy"), QStringLiteral("--awake")}));
    ASSERT_TRUE(waitUntil([&] { return newIcons() >= 1; })) << app.log().toStdString();
    const QList<Pixmap> glyph = iconPixmaps();
    ASSERT_FALSE(glyph.isEmpty());
    EXPECT_TRUE(iconsStopFor(kQuietMs)) << "the icon kept changing with the mascot hidden";
    EXPECT_EQ(iconPixmaps(), glyph);
    expectCleanQuit();
}

TEST_F(LiveAppOnPrivateBus, TickerReadingTravelsAsLabelAndToolTip) {
    writeSettings(R"({"menuBar.textMetric": "cpu", "monitoring.updateInterval": 0.5})");
    ASSERT_TRUE(startApp({QStringLiteral("--mock"), QStringLiteral("--awake")}));
    const QRegularExpression percent(QStringLiteral("\\d+(\\.\\d+)?\\s?%"));

    ASSERT_TRUE(
        waitUntil([&] { return item->count(QStringLiteral("XAyatanaNewLabel")) >= 1; }, kEventMs))
        << app.log().toStdString();
    const QString label = property(QStringLiteral("XAyatanaLabel")).toString();
    const QString guide = property(QStringLiteral("XAyatanaLabelGuide")).toString();
    EXPECT_TRUE(percent.match(label).hasMatch()) << label.toStdString();
    EXPECT_FALSE(guide.isEmpty());
    EXPECT_GE(guide.size(), label.size())
        << "guide \"" << guide.toStdString() << "\", label \"" << label.toStdString() << "\"";

    // The label follows the readings; the width the host reserves does not move with them.
    const auto labels = [&] { return announcedLabels(); };
    // With the panel open the readings come at the chosen interval instead of every few seconds.
    const QDBusMessage reply = platform::testing::call(
        hostBus, itemOwner, kItemPath, kItemInterface, QStringLiteral("Activate"), {0, 0});
    ASSERT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
    ASSERT_TRUE(app.waitForLog(QStringLiteral("trotlet: sampling: panel tier, every 0.5 s")))
        << app.log().toStdString();
    // A new label comes only when the rounded reading changes: the mock's idle CPU drifts by
    // under 1 % a second and stays on one whole percent for up to six seconds at the top and
    // bottom of its swing, so two changes may take a dozen seconds.
    const qsizetype closedPanelLabels = labels().size();
    ASSERT_TRUE(waitUntil([&] { return labels().size() >= closedPanelLabels + 2; }, 2 * kEventMs))
        << "the ticker did not follow the readings: " << labels().size() << " labels\n"
        << app.log().toStdString();
    for (const auto& [text, guide] : labels()) {
        EXPECT_TRUE(percent.match(text).hasMatch()) << text.toStdString();
        EXPECT_EQ(guide, labels().first().second)
            << "the guide moved with \"" << text.toStdString() << "\"";
    }

    ASSERT_TRUE(
        waitUntil([&] { return item->count(QStringLiteral("NewToolTip")) >= 1; }, kEventMs));
    const ToolTip tip = readToolTip(property(QStringLiteral("ToolTip")).value<QDBusArgument>());
    EXPECT_EQ(tip.title, QStringLiteral("Trotlet"));
    EXPECT_TRUE(percent.match(tip.description).hasMatch()) << tip.description.toStdString();
    expectCleanQuit();
}

TEST_F(LiveAppOnPrivateBus, TickerDrawnIntoTheIconWidensItAndLeavesNoLabel) {
    // Bars that keep a wide icon's width (waybar and the like) get the text in the picture.
    labelPlacement = QStringLiteral("icon");
    writeSettings(R"({"menuBar.textMetric": "cpu"})");
    ASSERT_TRUE(startApp({QStringLiteral("--mock"), QStringLiteral("--awake")}));
    QList<Pixmap> icon;
    ASSERT_TRUE(waitUntil(
        [&] {
            icon = iconPixmaps();
            return !icon.isEmpty() && icon.first().width > icon.first().height;
        },
        kEventMs))
        << "the icon never grew wider than the mascot";
    EXPECT_GE(icon.first().width, icon.first().height * 3 / 2)
        << icon.first().width << "x" << icon.first().height;
    // Never shown twice: the host's own label stays empty.
    EXPECT_TRUE(property(QStringLiteral("XAyatanaLabel")).toString().isEmpty());
    EXPECT_TRUE(property(QStringLiteral("XAyatanaLabelGuide")).toString().isEmpty());
    const ToolTip tip = readToolTip(property(QStringLiteral("ToolTip")).value<QDBusArgument>());
    EXPECT_TRUE(QRegularExpression(QStringLiteral("\\d+%")).match(tip.description).hasMatch())
        << tip.description.toStdString();
    expectCleanQuit();
}

TEST_F(LiveAppOnPrivateBus, ActivateOpensThenClosesThePanel) {
    ASSERT_TRUE(startApp({QStringLiteral("--mock"), QStringLiteral("--skip-onboarding")}));
    ASSERT_TRUE(app.waitForLog(QStringLiteral("trotlet: live app started")));

    EXPECT_FALSE(panelWindow()) << "a panel before any click";

    // A click on an item in a top bar, as the host reports it.
    const int clickX = 900;
    const int clickY = 12;
    QDBusMessage reply = platform::testing::call(hostBus, itemOwner, kItemPath, kItemInterface,
                                                 QStringLiteral("Activate"), {clickX, clickY});
    ASSERT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
    EXPECT_TRUE(app.waitForLog(QStringLiteral("trotlet: panel opened (tray click)")))
        << app.log().toStdString();
    // The open panel samples at the chosen interval (2 s by default), the closed one slower.
    EXPECT_TRUE(app.waitForLog(QStringLiteral("trotlet: sampling: panel tier, every 2.0 s")))
        << app.log().toStdString();
    std::optional<testing::XWindow> panel;
    ASSERT_TRUE(waitUntil([&] { return (panel = panelWindow()).has_value(); }, kEventMs))
        << "no panel window on the screen";
    // Under the item, whole on the screen.
    EXPECT_LE(panel->x, clickX);
    EXPECT_GE(panel->x + panel->width, clickX);
    EXPECT_GE(panel->y, clickY);
    EXPECT_GE(panel->x, 0);
    EXPECT_LE(panel->x + panel->width, kScreenWidth);
    EXPECT_LE(panel->y + panel->height, kScreenHeight);

    reply = platform::testing::call(hostBus, itemOwner, kItemPath, kItemInterface,
                                    QStringLiteral("Activate"), {clickX, clickY});
    ASSERT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
    EXPECT_TRUE(app.waitForLog(QStringLiteral("trotlet: panel closed (tray click)")))
        << app.log().toStdString();
    EXPECT_TRUE(app.waitForLog(QStringLiteral("trotlet: sampling: menu bar tier")))
        << app.log().toStdString();
    EXPECT_TRUE(waitUntil([&] { return !panelWindow(); }, kEventMs))
        << "the panel stayed on the screen";
    expectCleanQuit();
}

TEST_F(LiveAppOnPrivateBus, RegistersAgainWhenTheTrayHostRestarts) {
    ASSERT_TRUE(startApp({QStringLiteral("--mock"), QStringLiteral("--skip-onboarding")}));
    const QString service = watcher.registered.first();

    // The panel crashes: its watcher leaves the bus with everything it knew.
    watcherBus.unregisterService(QStringLiteral("org.kde.StatusNotifierWatcher"));
    bus.disconnect(QStringLiteral("watcher"));
    FakeWatcher restarted;
    ASSERT_TRUE(restarted.start(bus.connect(QStringLiteral("watcher-again"))));
    ASSERT_TRUE(waitUntil([&] { return !restarted.registered.isEmpty(); }, kEventMs))
        << "the item did not register with the new watcher\n"
        << app.log().toStdString();
    EXPECT_EQ(restarted.registered, QStringList{service});
    EXPECT_EQ(restarted.senders, QStringList{itemOwner});
    EXPECT_FALSE(iconPixmaps().isEmpty());
    expectCleanQuit();
}

TEST_F(LiveAppOnPrivateBus, TrayMenuOpensThePanelFollowsItAndQuits) {
    ASSERT_TRUE(startApp({QStringLiteral("--mock"), QStringLiteral("--skip-onboarding")}));
    const auto menu = openMenu();
    ASSERT_TRUE(menu.has_value());
    ASSERT_TRUE(menu->find(QStringLiteral("Open Trotlet")));
    ASSERT_TRUE(menu->find(QStringLiteral("Quit Trotlet")));

    ASSERT_TRUE(clickMenuItem(QStringLiteral("Open Trotlet")));
    ASSERT_TRUE(app.waitForLog(QStringLiteral("trotlet: panel opened (menu)")))
        << app.log().toStdString();
    // Shown again while the panel is open, the same item offers to close it.
    const auto reopened = openMenu();
    ASSERT_TRUE(reopened.has_value());
    EXPECT_TRUE(reopened->find(QStringLiteral("Close Trotlet")));
    EXPECT_FALSE(reopened->find(QStringLiteral("Open Trotlet")));

    ASSERT_TRUE(clickMenuItem(QStringLiteral("Quit Trotlet")));
    ASSERT_TRUE(waitUntil([&] { return !app.isRunning(); }, kEventMs))
        << "Quit in the tray menu left the app running";
    const auto status = app.terminate(kEventMs);  // already gone: collects the status
    ASSERT_TRUE(status.has_value());
    EXPECT_EQ(*status, 0);
    EXPECT_TRUE(app.log().contains(QStringLiteral("trotlet: quitting (menu)")))
        << app.log().toStdString();
}

TEST_F(LiveAppOnPrivateBus, BusyMascotRunsFasterThanAnIdleOne) {
    const QStringList quiet = {QStringLiteral("--fixture"), QStringLiteral("idle"),
                               QStringLiteral("--awake"), QStringLiteral("--skip-onboarding")};
    ASSERT_TRUE(startApp(quiet));
    ASSERT_TRUE(iconsKeepComing(1)) << app.log().toStdString();
    const double idleRate = iconsPerSecond(kQuietMs);
    expectCleanQuit();

    watcher.registered.clear();
    watcher.senders.clear();
    ASSERT_TRUE(startApp({QStringLiteral("--fixture"), QStringLiteral("busy"),
                          QStringLiteral("--awake"), QStringLiteral("--skip-onboarding")}));
    ASSERT_TRUE(iconsKeepComing(1)) << app.log().toStdString();
    const double busyRate = iconsPerSecond(kQuietMs);
    EXPECT_GT(idleRate, 0.0) << "an idle mascot still walks";
    EXPECT_GT(busyRate, 1.5 * idleRate)
        << "busy " << busyRate << " frames/s, idle " << idleRate << " frames/s";
    expectCleanQuit();
}

// The weather service as the app meets it: a local server answering every forecast request with
// the present hour, so the report is fresh whatever the clock says, and a current temperature
// no default or cached value would give. The place search is pointed here too: nothing in these
// tests may reach the internet.
class LiveAppWithWeather : public LiveAppOnPrivateBus {
protected:
    static constexpr double kCurrentCelsius = 23.4;  // "23°C", "74°F"

    void SetUp() override {
        LiveAppOnPrivateBus::SetUp();
        if (HasFatalFailure()) return;
        server = std::make_unique<weather::testing::LocalHttpServer>(
            [](const weather::testing::HttpRequest&) {
                const qint64 now = QDateTime::currentSecsSinceEpoch();
                nlohmann::json forecast =
                    weather::samples::forecastJson(now - now % 3600 - 3600, 37, 0, "UTC");
                forecast["current"]["time"] = now - 60;
                forecast["current"]["temperature_2m"] = kCurrentCelsius;
                return weather::testing::HttpResponse{weather::testing::HttpResponse::Kind::normal,
                                                      200, forecast.dump()};
            });
        ASSERT_NE(server->port(), 0) << "the local weather server did not listen";
        extraEnvironment = {
            {QStringLiteral("TROTLET_OPEN_METEO_FORECAST"),
             QString::fromStdString(server->base("/v1/forecast"))},
            {QStringLiteral("TROTLET_OPEN_METEO_GEOCODING"),
             QString::fromStdString(server->base("/v1/search"))},
        };
    }

    // A settings file with a chosen place, the weather in the menu bar, and `more` on top. The
    // app reads it only when it keeps its settings, so the tests start it without
    // --skip-onboarding (whose session settings live in memory).
    void writeWeatherSettings(const nlohmann::json& more) {
        const weather::WeatherLocation paris{2988507, "Paris",  "Île-de-France", "France",
                                             "FR",    48.85341, 2.3488,          "Europe/Paris"};
        nlohmann::json settings = {{"weather.location", weather::encodeLocationSetting(paris)},
                                   {"weather.showInMenuBar", true}};
        settings.update(more);
        writeSettings(QByteArray::fromStdString(settings.dump()));
    }

    // Waits for an announced label that matches `pattern` whole; the last such label and guide.
    std::optional<QPair<QString, QString>> waitForLabel(const QRegularExpression& pattern) {
        std::optional<QPair<QString, QString>> found;
        waitUntil(
            [&] {
                for (const auto& entry : announcedLabels()) {
                    if (pattern.match(entry.first).hasMatch()) found = entry;
                }
                return found.has_value();
            },
            kEventMs);
        return found;
    }

    ::testing::AssertionResult onlyForecastsAsked() const {
        if (server->requests().empty())
            return ::testing::AssertionFailure() << "the weather server heard nothing";
        for (const auto& request : server->requests()) {
            if (request.method != "GET" || request.path() != "/v1/forecast")
                return ::testing::AssertionFailure()
                       << "unexpected request " << request.method << " " << request.target;
            if (request.query("latitude").rfind("48.85", 0) != 0)
                return ::testing::AssertionFailure()
                       << "the forecast was not for the chosen place: " << request.target;
        }
        return ::testing::AssertionSuccess();
    }

    std::unique_ptr<weather::testing::LocalHttpServer> server;
};

TEST_F(LiveAppWithWeather, TemperatureAloneIsTheLabelWithoutATickerReading) {
    writeWeatherSettings({{"menuBar.textMetric", "none"}});
    ASSERT_TRUE(startApp({QStringLiteral("--mock"), QStringLiteral("--awake")}));
    const auto shown = waitForLabel(QRegularExpression(QStringLiteral("^-?\\d+°C$")));
    ASSERT_TRUE(shown) << "no temperature in the label; labels so far: " << announcedLabels().size()
                       << "\n"
                       << app.log().toStdString();
    EXPECT_EQ(shown->first, QStringLiteral("23°C"));
    EXPECT_EQ(shown->second, QStringLiteral("-188°C"));
    EXPECT_EQ(property(QStringLiteral("XAyatanaLabel")).toString(), QStringLiteral("23°C"));
    EXPECT_EQ(property(QStringLiteral("XAyatanaLabelGuide")).toString(), QStringLiteral("-188°C"));
    EXPECT_TRUE(onlyForecastsAsked());
    expectCleanQuit();
}

TEST_F(LiveAppWithWeather, TemperatureFollowsTheTickerReadingInTheChosenUnit) {
    writeWeatherSettings(
        {{"menuBar.textMetric", "cpu"}, {"monitoring.temperatureUnit", "fahrenheit"}});
    ASSERT_TRUE(startApp({QStringLiteral("--mock"), QStringLiteral("--awake")}));
    const QRegularExpression both(QStringLiteral("^(\\d+(\\.\\d+)?\\s?%)  74°F$"));
    const auto shown = waitForLabel(both);
    ASSERT_TRUE(shown) << "no reading and temperature in the label; last label \""
                       << (announcedLabels().isEmpty()
                               ? std::string()
                               : announcedLabels().last().first.toStdString())
                       << "\"\n"
                       << app.log().toStdString();
    // The guide holds the reading's widest sample and room for any temperature, in that order.
    const QString& guide = shown->second;
    EXPECT_TRUE(guide.endsWith(QStringLiteral("  -188°F"))) << guide.toStdString();
    const QString readingGuide = guide.left(guide.size() - QStringLiteral("  -188°F").size());
    EXPECT_TRUE(readingGuide.contains(QChar(u'%'))) << guide.toStdString();
    EXPECT_GE(readingGuide.size(), both.match(shown->first).captured(1).size())
        << "guide \"" << guide.toStdString() << "\", label \"" << shown->first.toStdString()
        << "\"";
    EXPECT_FALSE(shown->first.contains(QStringLiteral("°C")));
    EXPECT_TRUE(onlyForecastsAsked());
    expectCleanQuit();
}

}  // namespace
}  // namespace trotlet::app
