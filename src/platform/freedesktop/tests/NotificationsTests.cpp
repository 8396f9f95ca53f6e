// The notifier against a notification server owned by the test, on a private session bus.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include <QDBusMessage>
#include <QStringList>
#include <QVariantMap>

#include "FreedesktopTestSupport.h"
#include "platform/freedesktop/Notifications.h"

namespace trotlet::platform {
namespace {

using testing::ensureApplication;
using testing::PrivateBus;
using testing::spinFor;
using testing::waitUntil;

}  // namespace

// What a desktop's notification daemon does, as far as Notify goes: hands out ids and keeps a
// record of every call.
class FakeNotificationServer : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")
public:
    struct Call {
        QString appName;
        uint replacesId = 0;
        QString appIcon;
        QString summary;
        QString body;
        QVariantMap hints;
        int timeout = 0;
        uint returnedId = 0;
    };

    bool start(QDBusConnection bus) {
        bus_ = bus;
        return bus.registerObject(Notifications::kPath, this, QDBusConnection::ExportAllSlots) &&
               bus.registerService(Notifications::kService);
    }
    void close(uint id) {
        QDBusMessage signal = QDBusMessage::createSignal(Notifications::kPath, Notifications::kInterface,
                                                         QStringLiteral("NotificationClosed"));
        signal << id << uint(2);
        bus_.send(signal);
    }

    QList<Call> calls;

public slots:
    uint Notify(const QString& appName, uint replacesId, const QString& appIcon,
                const QString& summary, const QString& body, const QStringList&,
                const QVariantMap& hints, int timeout) {
        const uint id = replacesId != 0 ? replacesId : nextId_++;
        calls.append(Call{appName, replacesId, appIcon, summary, body, hints, timeout, id});
        return id;
    }

private:
    QDBusConnection bus_{QString()};
    uint nextId_ = 41;
};

namespace {

struct NotificationsTest : ::testing::Test {
    void SetUp() override {
        ensureApplication();
        ASSERT_TRUE(bus.isRunning()) << "dbus-daemon did not start";
    }
    PrivateBus bus;
};

TEST_F(NotificationsTest, OneLiveNotificationPerKindWithTheAppsNameAndIcon) {
    FakeNotificationServer server;
    ASSERT_TRUE(server.start(bus.connect(QStringLiteral("server"))));
    Notifications notifier(bus.connect(QStringLiteral("app")));

    notifier.post(QStringLiteral("trotlet.highCPU"), QStringLiteral("Miso has the zoomies."),
                  QStringLiteral("CPU at 94% for 2 min. ld is the busiest."));
    ASSERT_TRUE(waitUntil([&] { return notifier.deliveredCount() == 1; }));
    notifier.post(QStringLiteral("trotlet.batteryLow"), QStringLiteral("Battery low: 9%"),
                  QStringLiteral("Miso is running on fumes. Time to find a charger."));
    notifier.post(QStringLiteral("trotlet.highCPU"), QStringLiteral("Miso has the zoomies."),
                  QStringLiteral("CPU at 99% for 2 min."));
    ASSERT_TRUE(waitUntil([&] { return notifier.deliveredCount() == 3; }));

    ASSERT_EQ(server.calls.size(), 3);
    const auto& first = server.calls[0];
    EXPECT_EQ(first.appName, QStringLiteral("Trotlet"));
    EXPECT_EQ(first.appIcon, QStringLiteral("trotlet"));
    EXPECT_EQ(first.replacesId, 0u);
    EXPECT_EQ(first.summary, QStringLiteral("Miso has the zoomies."));
    EXPECT_EQ(first.body, QStringLiteral("CPU at 94% for 2 min. ld is the busiest."));
    EXPECT_EQ(first.timeout, -1);
    EXPECT_EQ(first.hints.value(QStringLiteral("desktop-entry")).toString(), QStringLiteral("trotlet"));

    // The second kind gets its own notification; the repeat of the first replaces it.
    QList<FakeNotificationServer::Call> byKind[2];
    for (const auto& call : server.calls)
        byKind[call.summary.startsWith(QStringLiteral("Battery")) ? 1 : 0].append(call);
    ASSERT_EQ(byKind[0].size(), 2);
    ASSERT_EQ(byKind[1].size(), 1);
    EXPECT_EQ(byKind[1][0].replacesId, 0u);
    EXPECT_EQ(byKind[1][0].body, QStringLiteral("Miso is running on fumes. Time to find a charger."));
    EXPECT_NE(byKind[1][0].returnedId, first.returnedId);
    EXPECT_EQ(byKind[0][1].replacesId, first.returnedId);
    EXPECT_EQ(byKind[0][1].body, QStringLiteral("CPU at 99% for 2 min."));
    EXPECT_EQ(notifier.liveId(QStringLiteral("trotlet.highCPU")), first.returnedId);
    EXPECT_EQ(notifier.liveId(QStringLiteral("trotlet.batteryLow")), byKind[1][0].returnedId);
}

TEST_F(NotificationsTest, BackToBackPostsOfAKindWaitForTheIdToReplace) {
    FakeNotificationServer server;
    ASSERT_TRUE(server.start(bus.connect(QStringLiteral("server"))));
    Notifications notifier(bus.connect(QStringLiteral("app")));

    for (int i = 1; i <= 3; ++i)
        notifier.post(QStringLiteral("trotlet.batteryLow"), QStringLiteral("Battery low: %1%").arg(10 - i),
                      QStringLiteral("b"));
    ASSERT_TRUE(waitUntil([&] { return notifier.deliveredCount() == 2; }));
    spinFor(100);
    // The middle post was overtaken by the newest one before it could be sent.
    ASSERT_EQ(server.calls.size(), 2);
    EXPECT_EQ(server.calls[0].replacesId, 0u);
    EXPECT_EQ(server.calls[1].replacesId, server.calls[0].returnedId);
    EXPECT_EQ(server.calls[1].summary, QStringLiteral("Battery low: 7%"));
}

TEST_F(NotificationsTest, ADismissedNotificationIsNotReplaced) {
    FakeNotificationServer server;
    ASSERT_TRUE(server.start(bus.connect(QStringLiteral("server"))));
    Notifications notifier(bus.connect(QStringLiteral("app")));

    notifier.post(QStringLiteral("trotlet.diskAlmostFull"), QStringLiteral("Root is almost full"),
                  QStringLiteral("b"));
    ASSERT_TRUE(waitUntil([&] { return notifier.deliveredCount() == 1; }));
    server.close(server.calls[0].returnedId);
    ASSERT_TRUE(waitUntil([&] { return !notifier.liveId(QStringLiteral("trotlet.diskAlmostFull")); }));
    notifier.post(QStringLiteral("trotlet.diskAlmostFull"), QStringLiteral("Root is almost full"),
                  QStringLiteral("b"));
    ASSERT_TRUE(waitUntil([&] { return notifier.deliveredCount() == 2; }));
    EXPECT_EQ(server.calls[1].replacesId, 0u);
}

TEST_F(NotificationsTest, NoServiceOnTheBusFailsQuietlyAndRecovers) {
    Notifications notifier(bus.connect(QStringLiteral("app")));
    qputenv("TROTLET_DEBUG_LOG", "1");
    ::testing::internal::CaptureStderr();
    notifier.post(QStringLiteral("trotlet.highCPU"), QStringLiteral("t"), QStringLiteral("b"));
    notifier.post(QStringLiteral("trotlet.purchase"), QStringLiteral("t"), QStringLiteral("b"));
    const bool bothFailed = waitUntil([&] { return notifier.failedCount() == 2; });
    const std::string log = ::testing::internal::GetCapturedStderr();
    qunsetenv("TROTLET_DEBUG_LOG");
    ASSERT_TRUE(bothFailed);
    // Logged once, not once per post.
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 1) << log;
    EXPECT_NE(log.find("trotlet: notifications: cannot post"), std::string::npos) << log;
    EXPECT_FALSE(notifier.liveId(QStringLiteral("trotlet.highCPU")));

    // A notification daemon started later is used from then on.
    FakeNotificationServer server;
    ASSERT_TRUE(server.start(bus.connect(QStringLiteral("server"))));
    notifier.post(QStringLiteral("trotlet.highCPU"), QStringLiteral("t"), QStringLiteral("b"));
    ASSERT_TRUE(waitUntil([&] { return notifier.deliveredCount() == 1; }));
    EXPECT_EQ(server.calls.size(), 1);
}

TEST(NotificationsOffline, ADisconnectedBusNeverBlocksOrCrashes) {
    ensureApplication();
    Notifications notifier(QDBusConnection(QStringLiteral("nowhere")));
    notifier.post(QStringLiteral("trotlet.highCPU"), QStringLiteral("t"), QStringLiteral("b"));
    ASSERT_TRUE(waitUntil([&] { return notifier.failedCount() == 1; }));
}

}  // namespace
}  // namespace trotlet::platform

#include "NotificationsTests.moc"
