#include "FreedesktopFakeServices.h"

#include <QDBusMessage>

namespace trotlet::platform::testing {

bool FakeMutterIdleMonitor::start(QDBusConnection bus) {
    return bus.registerObject(QStringLiteral("/org/gnome/Mutter/IdleMonitor/Core"), this,
                              QDBusConnection::ExportAllSlots) &&
           bus.registerService(QStringLiteral("org.gnome.Mutter.IdleMonitor"));
}

quint64 FakeMutterIdleMonitor::GetIdletime() {
    ++calls;
    return idleMs;
}

bool FakeScreenSaver::start(QDBusConnection bus) {
    return bus.registerObject(QStringLiteral("/org/freedesktop/ScreenSaver"), this,
                              QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals) &&
           bus.registerService(QStringLiteral("org.freedesktop.ScreenSaver"));
}

void FakeScreenSaver::setActive(bool value) {
    active = value;
    emit ActiveChanged(value);
}

uint FakeScreenSaver::GetSessionIdleTime() { return idleSeconds; }
bool FakeScreenSaver::GetActive() { return active; }

bool FakePortalSettings::start(QDBusConnection bus) {
    bus_ = bus;
    return bus.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), this,
                              QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals) &&
           bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
}

void FakePortalSettings::change(const QString& nameSpace, const QString& key, const QVariant& value) {
    values.insert({nameSpace, key}, value);
    emit SettingChanged(nameSpace, key, QDBusVariant(value));
}

QDBusVariant FakePortalSettings::ReadOne(const QString& nameSpace, const QString& key) {
    if (!readOne_) {
        sendErrorReply(QDBusError::UnknownMethod, QStringLiteral("No ReadOne in this version"));
        return {};
    }
    if (!values.contains({nameSpace, key})) {
        sendErrorReply(QStringLiteral("org.freedesktop.portal.Error.NotFound"), QStringLiteral("Requested setting not found"));
        return {};
    }
    return QDBusVariant(values.value({nameSpace, key}));
}

// The old method wraps the value in a second variant.
QDBusVariant FakePortalSettings::Read(const QString& nameSpace, const QString& key) {
    if (!values.contains({nameSpace, key})) {
        sendErrorReply(QStringLiteral("org.freedesktop.portal.Error.NotFound"), QStringLiteral("Requested setting not found"));
        return {};
    }
    return QDBusVariant(QVariant::fromValue(QDBusVariant(values.value({nameSpace, key}))));
}

void FakeLogindSession::setLocked(bool locked, QDBusConnection bus) {
    locked_ = locked;
    QDBusMessage signal = QDBusMessage::createSignal(FakeLogindManager::sessionPath(),
                                                     QStringLiteral("org.freedesktop.DBus.Properties"),
                                                     QStringLiteral("PropertiesChanged"));
    signal << QStringLiteral("org.freedesktop.login1.Session")
           << QVariantMap{{QStringLiteral("LockedHint"), locked}} << QStringList();
    bus.send(signal);
}

bool FakeLogindManager::start(QDBusConnection bus) {
    return bus.registerObject(QStringLiteral("/org/freedesktop/login1"), this, QDBusConnection::ExportAllSlots) &&
           bus.registerObject(sessionPath(), &session, QDBusConnection::ExportAllProperties) &&
           bus.registerService(QStringLiteral("org.freedesktop.login1"));
}

QDBusObjectPath FakeLogindManager::GetSessionByPID(uint) { return QDBusObjectPath(sessionPath()); }

}  // namespace trotlet::platform::testing
