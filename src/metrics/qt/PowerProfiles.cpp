#include "metrics/qt/PowerProfiles.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace trotlet::metrics {

namespace {

struct Service {
    const char* name;
    const char* path;
    const char* interface;
};
constexpr Service kServices[] = {
    {"org.freedesktop.UPower.PowerProfiles", "/org/freedesktop/UPower/PowerProfiles",
     "org.freedesktop.UPower.PowerProfiles"},
    {"net.hadess.PowerProfiles", "/net/hadess/PowerProfiles", "net.hadess.PowerProfiles"},
};

// A connection of our own rather than the shared default: when there is no system bus yet (a
// container, early in a session), the failed connection is dropped so a later call tries again.
QDBusConnection systemBus() {
    const QString name = QStringLiteral("trotlet-power-profiles");
    QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SystemBus, name);
    if (!bus.isConnected()) QDBusConnection::disconnectFromBus(name);
    return bus;
}

QDBusMessage getProfile(const Service& s) {
    auto msg = QDBusMessage::createMethodCall(s.name, s.path, "org.freedesktop.DBus.Properties", "Get");
    msg << QString::fromLatin1(s.interface) << QStringLiteral("ActiveProfile");
    return msg;
}

}  // namespace

PowerProfiles::PowerProfiles(QObject* parent) : QObject(parent) {}

void PowerProfiles::apply(const QString& profile) {
    answered_ = true;
    const bool on = profile == QLatin1String("power-saver");
    if (on != lowPower_) {
        lowPower_ = on;
        emit lowPowerModeChanged(on);
    }
}

void PowerProfiles::onPropertiesChanged(const QString&, const QVariantMap& changed, const QStringList&) {
    auto it = changed.find(QStringLiteral("ActiveProfile"));
    if (it != changed.end()) apply(it->toString());
}

void PowerProfiles::refresh() {
    if (sinceRead_.isValid() && sinceRead_.elapsed() < 60'000) return;
    sinceRead_.start();
    QDBusConnection bus = systemBus();
    if (!bus.isConnected()) return;
    if (!subscribed_) {
        subscribed_ = true;
        for (const auto& s : kServices)
            bus.connect(s.name, s.path, "org.freedesktop.DBus.Properties", "PropertiesChanged", this,
                        SLOT(onPropertiesChanged(QString, QVariantMap, QStringList)));
    }
    for (const auto& s : kServices) {
        auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(getProfile(s), 2000), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* w) {
            QDBusPendingReply<QDBusVariant> reply = *w;
            if (!reply.isError()) apply(reply.value().variant().toString());
            w->deleteLater();
        });
    }
}

bool PowerProfiles::queryOnce(int timeoutMs) {
    QDBusConnection bus = systemBus();
    if (!bus.isConnected()) return false;
    for (const auto& s : kServices) {
        const QDBusMessage reply = bus.call(getProfile(s), QDBus::Block, timeoutMs);
        if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) continue;
        const QVariant v = reply.arguments().first().value<QDBusVariant>().variant();
        return v.toString() == QLatin1String("power-saver");
    }
    return false;
}

}  // namespace trotlet::metrics
