#include "platform/freedesktop/NetworkManagerWifi.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDBusVirtualObject>

#include <gtest/gtest.h>

#include "FreedesktopTestSupport.h"

namespace trotlet::platform {
namespace {

using testing::waitUntil;

// NetworkManager as far as the Wi-Fi details need it: one wireless device with an active
// access point. Answers GetDeviceByIpIface, the device's ActiveAccessPoint and the point's
// properties.
class FakeNetworkManager : public QDBusVirtualObject {
public:
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& m, const QDBusConnection& bus) override {
        ++calls;
        if (m.member() == QLatin1String("GetDeviceByIpIface")) {
            if (m.arguments().value(0).toString() != QLatin1String("wlp0s20f3")) {
                bus.send(m.createErrorReply(
                    QStringLiteral("org.freedesktop.NetworkManager.UnknownDevice"),
                    QStringLiteral("No device found for the requested iface.")));
                return true;
            }
            bus.send(m.createReply(QVariant::fromValue(QDBusObjectPath(kDevice))));
            return true;
        }
        if (m.member() == QLatin1String("Get") && m.path() == kDevice) {
            bus.send(m.createReply(QVariant::fromValue(QDBusVariant(
                QVariant::fromValue(QDBusObjectPath(connected ? kPoint : QStringLiteral("/")))))));
            return true;
        }
        if (m.member() == QLatin1String("GetAll") && m.path() == kPoint) {
            QVariantMap p;
            p[QStringLiteral("Ssid")] = ssid;
            p[QStringLiteral("Frequency")] = QVariant::fromValue(uint(5180));
            p[QStringLiteral("Strength")] = QVariant::fromValue(uchar(72));
            bus.send(m.createReply(QVariant(p)));
            return true;
        }
        return false;
    }
    inline static const QString kDevice =
        QStringLiteral("/org/freedesktop/NetworkManager/Devices/3");
    inline static const QString kPoint =
        QStringLiteral("/org/freedesktop/NetworkManager/AccessPoint/7");
    QByteArray ssid = QByteArrayLiteral("Caf\xc3\xa9 Wi-Fi");
    bool connected = true;
    int calls = 0;
};

TEST(NetworkManagerWifi, ReadsTheActiveAccessPointAndKnowsNothingWithoutIt) {
    testing::ensureApplication();
    testing::PrivateBus systemBus;
    ASSERT_TRUE(systemBus.isRunning());
    FakeNetworkManager manager;
    auto service = systemBus.connect(QStringLiteral("nm"));
    ASSERT_TRUE(service.registerVirtualObject(QStringLiteral("/org/freedesktop/NetworkManager"),
                                              &manager, QDBusConnection::SubPath));
    ASSERT_TRUE(service.registerService(QStringLiteral("org.freedesktop.NetworkManager")));

    NetworkManagerWifi wifi(systemBus.connect(QStringLiteral("app")));
    EXPECT_FALSE(wifi.extrasFor("wlp0s20f3")) << "nothing is waited for";
    ASSERT_TRUE(waitUntil([&] { return wifi.extrasFor("wlp0s20f3").has_value(); }));
    const auto extras = *wifi.extrasFor("wlp0s20f3");
    EXPECT_EQ(extras.ssid, "Café Wi-Fi");
    EXPECT_EQ(extras.frequencyMHz, 5180.0);
    EXPECT_EQ(extras.strengthPercent, 72);
    EXPECT_EQ(wifi.lookups(), 1) << "answers are kept for a while, not asked for each sample";

    // Into the sample: the name and band join the kernel's signal reading.
    metrics::NetworkMetrics network;
    network.interface = "wlp0s20f3";
    network.interfaceKind = metrics::InterfaceKind::wifi;
    network.wifi = metrics::WifiDetails{std::nullopt, -58, -95, 74, std::nullopt};
    metrics::mergeWifiExtras(network, extras);
    EXPECT_EQ(network.wifi->ssid, "Café Wi-Fi");
    EXPECT_EQ(network.wifi->frequencyMHz, 5180.0);
    EXPECT_EQ(network.wifi->qualityPercent, 74) << "the kernel's own reading stays";

    // Another interface that is not Wi-Fi to NetworkManager: an answer of nothing, not an error.
    EXPECT_FALSE(wifi.extrasFor("enp0s31f6"));
    ASSERT_TRUE(waitUntil([&] { return wifi.lookups() == 2 && manager.calls >= 4; }));
    testing::spinFor(50);
    EXPECT_FALSE(wifi.extrasFor("enp0s31f6"));
    EXPECT_EQ(wifi.lookups(), 2);
}

TEST(NetworkManagerWifi, OddSsidBytesStillRead) {
    EXPECT_EQ(metrics::ssidText("Home"), "Home");
    EXPECT_EQ(metrics::ssidText(std::string("\xff\x01net", 5)), "\\xff\\x01net");
    metrics::NetworkMetrics wired;
    wired.interface = "enp5s0";
    wired.interfaceKind = metrics::InterfaceKind::wired;
    metrics::mergeWifiExtras(wired, {"enp5s0", "Home", 2412.0, 50});
    EXPECT_FALSE(wired.wifi) << "a wired link gets no Wi-Fi details";
}

}  // namespace
}  // namespace trotlet::platform
