#include "platform/freedesktop/NetworkManagerWifi.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace trotlet::platform {
namespace {

const QString kService = QStringLiteral("org.freedesktop.NetworkManager");
const QString kProperties = QStringLiteral("org.freedesktop.DBus.Properties");
constexpr int kTimeoutMs = 2000;

}  // namespace

NetworkManagerWifi::NetworkManagerWifi(const QDBusConnection& systemBus, QObject* parent)
    : QObject(parent), bus_(systemBus) {}

std::optional<metrics::WifiExtras> NetworkManagerWifi::extrasFor(const std::string& interface) {
    if (interface != interface_) {
        interface_ = interface;
        extras_.reset();
        age_.invalidate();
        inFlight_ = false;
        ++generation_;  // an answer for the old interface is dropped
    }
    const bool stale = !age_.isValid() || age_.elapsed() >= refreshAfterMs;
    if (stale && !inFlight_ && bus_.isConnected())
        lookUp(QString::fromStdString(interface), generation_);
    return extras_;
}

void NetworkManagerWifi::lookUp(const QString& interface, quint64 generation) {
    inFlight_ = true;
    ++lookups_;
    auto call = QDBusMessage::createMethodCall(
        kService, QStringLiteral("/org/freedesktop/NetworkManager"),
        QStringLiteral("org.freedesktop.NetworkManager"), QStringLiteral("GetDeviceByIpIface"));
    call << interface;
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call, kTimeoutMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, interface, generation](QDBusPendingCallWatcher* w) {
                w->deleteLater();
                QDBusPendingReply<QDBusObjectPath> reply = *w;
                if (reply.isError()) return finish(std::nullopt, generation);
                readAccessPoint(reply.value().path(), interface, generation);
            });
}

void NetworkManagerWifi::readAccessPoint(const QString& devicePath, const QString& interface,
                                         quint64 generation) {
    auto get =
        QDBusMessage::createMethodCall(kService, devicePath, kProperties, QStringLiteral("Get"));
    get << QStringLiteral("org.freedesktop.NetworkManager.Device.Wireless")
        << QStringLiteral("ActiveAccessPoint");
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(get, kTimeoutMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, interface, generation](QDBusPendingCallWatcher* w) {
                w->deleteLater();
                QDBusPendingReply<QDBusVariant> reply = *w;
                const auto path = reply.isError()
                                      ? QString()
                                      : reply.value().variant().value<QDBusObjectPath>().path();
                if (path.isEmpty() || path == QLatin1String("/"))
                    return finish(std::nullopt, generation);
                auto all = QDBusMessage::createMethodCall(kService, path, kProperties,
                                                          QStringLiteral("GetAll"));
                all << QStringLiteral("org.freedesktop.NetworkManager.AccessPoint");
                auto* next = new QDBusPendingCallWatcher(bus_.asyncCall(all, kTimeoutMs), this);
                connect(next, &QDBusPendingCallWatcher::finished, this,
                        [this, interface, generation](QDBusPendingCallWatcher* w2) {
                            w2->deleteLater();
                            QDBusPendingReply<QVariantMap> props = *w2;
                            if (props.isError()) return finish(std::nullopt, generation);
                            const QVariantMap p = props.value();
                            metrics::WifiExtras extras;
                            extras.interface = interface.toStdString();
                            const QByteArray ssid = p.value(QStringLiteral("Ssid")).toByteArray();
                            if (!ssid.isEmpty()) extras.ssid = ssid.toStdString();
                            if (const uint mhz = p.value(QStringLiteral("Frequency")).toUInt())
                                extras.frequencyMHz = double(mhz);
                            if (p.contains(QStringLiteral("Strength")))
                                extras.strengthPercent =
                                    p.value(QStringLiteral("Strength")).toInt();
                            finish(extras, generation);
                        });
            });
}

void NetworkManagerWifi::finish(std::optional<metrics::WifiExtras> extras, quint64 generation) {
    if (generation != generation_) return;
    inFlight_ = false;
    age_.start();
    extras_ = std::move(extras);
    emit updated();
}

}  // namespace trotlet::platform
