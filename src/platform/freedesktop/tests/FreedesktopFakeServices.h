#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QMap>
#include <QObject>
#include <QPair>
#include <QVariantMap>

namespace trotlet::platform::testing {

// Small stand-ins for desktop services, each claiming its real name on a private bus.

class FakeMutterIdleMonitor : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.gnome.Mutter.IdleMonitor")
public:
    bool start(QDBusConnection bus);
    quint64 idleMs = 0;
    int calls = 0;
public slots:
    quint64 GetIdletime();
};

class FakeScreenSaver : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.ScreenSaver")
public:
    bool start(QDBusConnection bus);
    void setActive(bool active);
    uint idleSeconds = 0;
    bool active = false;
public slots:
    uint GetSessionIdleTime();
    bool GetActive();
signals:
    void ActiveChanged(bool active);
};

// The settings portal; `readOne` false makes it an old portal with Read only.
class FakePortalSettings : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")
public:
    explicit FakePortalSettings(bool readOne = true) : readOne_(readOne) {}
    bool start(QDBusConnection bus);
    void change(const QString& nameSpace, const QString& key, const QVariant& value);
    QMap<QPair<QString, QString>, QVariant> values;
public slots:
    QDBusVariant ReadOne(const QString& nameSpace, const QString& key);
    QDBusVariant Read(const QString& nameSpace, const QString& key);
signals:
    void SettingChanged(const QString& nameSpace, const QString& key, const QDBusVariant& value);

private:
    bool readOne_;
    QDBusConnection bus_{QString()};
};

// logind's manager and one session, enough for GetSessionByPID and LockedHint.
class FakeLogindSession : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Session")
    Q_PROPERTY(bool LockedHint READ lockedHint)
public:
    bool lockedHint() const { return locked_; }
    void setLocked(bool locked, QDBusConnection bus);
private:
    bool locked_ = false;
};

class FakeLogindManager : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")
public:
    bool start(QDBusConnection bus);
    FakeLogindSession session;
    static QString sessionPath() { return QStringLiteral("/org/freedesktop/login1/session/_33"); }
public slots:
    QDBusObjectPath GetSessionByPID(uint pid);
};

}  // namespace trotlet::platform::testing
