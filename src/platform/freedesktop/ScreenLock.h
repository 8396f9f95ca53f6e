#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>

#include <optional>

namespace trotlet::platform {

// Whether the screen is locked or blanked, the moments the mascot should stop drawing. Two
// optional sources, either of which may be missing:
//   - the session bus's org.freedesktop.ScreenSaver (GetActive, ActiveChanged), which most
//     desktops drive when they blank or lock;
//   - logind on the system bus: the session's LockedHint property.
// Locked when either says so; absent when neither answered.
class ScreenLock : public QObject {
    Q_OBJECT
public:
    ScreenLock(const QDBusConnection& sessionBus, const QDBusConnection& systemBus, QObject* parent = nullptr);

    std::optional<bool> locked() const;
    std::optional<bool> screenSaverActive() const { return screenSaver_; }
    std::optional<bool> sessionLockedHint() const { return lockedHint_; }
    QString sessionPath() const { return sessionPath_; }

signals:
    void lockedChanged(bool locked);

private slots:
    void onActiveChanged(bool active);
    void onSessionPropertiesChanged(const QDBusMessage& message);

private:
    void findSession();
    void useSession(const QString& path);
    void readLockedHint();
    void update(std::optional<bool>& field, std::optional<bool> value);

    QDBusConnection session_;
    QDBusConnection system_;
    std::optional<bool> screenSaver_;
    std::optional<bool> lockedHint_;
    QString sessionPath_;
};

}  // namespace trotlet::platform
