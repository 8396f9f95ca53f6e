// Low power mode from a stand-in power-profiles-daemon on a private bus that the test starts and
// names as the system bus.
#include <gtest/gtest.h>
#include <signal.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QThread>

#include <chrono>
#include <cstdio>
#include <functional>
#include <future>
#include <cstdlib>
#include <string>

#include "metrics/qt/PowerProfiles.h"

using namespace trotlet::metrics;

namespace {

// Answers Properties.Get for ActiveProfile like the daemon, and announces changes.
class FakeDaemon : public QDBusVirtualObject {
public:
    explicit FakeDaemon(QDBusConnection bus) : bus_(std::move(bus)) {}
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.interface() != QLatin1String("org.freedesktop.DBus.Properties") ||
            message.member() != QLatin1String("Get"))
            return false;
        ++gets;
        connection.send(message.createReply(QVariant::fromValue(QDBusVariant(profile))));
        return true;
    }
    void change(const QString& to) {
        profile = to;
        auto signal = QDBusMessage::createSignal("/net/hadess/PowerProfiles", "org.freedesktop.DBus.Properties",
                                                 "PropertiesChanged");
        signal << QStringLiteral("net.hadess.PowerProfiles") << QVariantMap{{"ActiveProfile", to}} << QStringList{};
        bus_.send(signal);
    }
    QString profile = QStringLiteral("power-saver");
    int gets = 0;

private:
    QDBusConnection bus_;
};

bool waitFor(const std::function<bool()>& done) {
    QElapsedTimer t;
    t.start();
    while (!done() && t.elapsed() < 5000) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::msleep(2);
    }
    return done();
}

}  // namespace

TEST(PowerProfiles, ReadsAndFollowsTheDaemonOnThePrivateBus) {
    // A private bus daemon; its address is handed to Qt as the system bus.
    FILE* daemon = ::popen("dbus-daemon --session --nofork --print-address=1 --print-pid=1 2>/dev/null", "r");
    ASSERT_NE(daemon, nullptr);
    char line[512] = {};
    ASSERT_TRUE(std::fgets(line, sizeof line, daemon)) << "dbus-daemon did not start";
    std::string address(line);
    while (!address.empty() && (address.back() == '\n' || address.back() == '\r')) address.pop_back();
    char pidLine[64] = {};
    ASSERT_TRUE(std::fgets(pidLine, sizeof pidLine, daemon));
    const long daemonPid = std::strtol(pidLine, nullptr, 10);
    // Stop the daemon however the test ends, so nothing keeps the pipe open.
    struct Stop {
        long pid;
        FILE* pipe;
        ~Stop() {
            if (pid > 0) ::kill(static_cast<pid_t>(pid), SIGTERM);
            ::pclose(pipe);
        }
    } stop{daemonPid, daemon};
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", address.c_str(), 1);

    int argc = 1;
    char arg0[] = "metrics_tests";
    char* argv[] = {arg0, nullptr};
    QCoreApplication app(argc, argv);
    {
        QDBusConnection serviceBus = QDBusConnection::connectToBus(QString::fromStdString(address), "fake-ppd");
        ASSERT_TRUE(serviceBus.isConnected());

        EXPECT_FALSE(PowerProfiles::queryOnce(500)) << "nobody answers yet";

        FakeDaemon fake(serviceBus);
        ASSERT_TRUE(serviceBus.registerVirtualObject("/net/hadess/PowerProfiles", &fake));
        ASSERT_TRUE(serviceBus.registerService("net.hadess.PowerProfiles"));
        // The blocking read runs on another thread so this one can serve it.
        auto answer = std::async(std::launch::async, [] { return PowerProfiles::queryOnce(3000); });
        ASSERT_TRUE(waitFor([&] { return answer.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
        EXPECT_TRUE(answer.get()) << "the older daemon name answers";

        PowerProfiles profiles;
        bool signalled = false;
        QObject::connect(&profiles, &PowerProfiles::lowPowerModeChanged, [&](bool on) { signalled = on; });
        profiles.refresh();
        ASSERT_TRUE(waitFor([&] { return profiles.answered(); }));
        EXPECT_TRUE(profiles.lowPowerMode());
        EXPECT_TRUE(signalled);

        const int gets = fake.gets;
        profiles.refresh();  // within a minute: no new call
        QCoreApplication::processEvents();
        EXPECT_EQ(fake.gets, gets);

        fake.change("balanced");
        EXPECT_TRUE(waitFor([&] { return !profiles.lowPowerMode(); })) << "the change arrives as a signal";
        serviceBus.unregisterService("net.hadess.PowerProfiles");
    }
    QDBusConnection::disconnectFromBus("fake-ppd");
    QDBusConnection::disconnectFromBus("trotlet-power-profiles");
    ::unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
}
