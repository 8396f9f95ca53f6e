#include "platform/freedesktop/SessionProcesses.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

#include <algorithm>

namespace trotlet::platform {

const QStringList& SessionProcesses::busNames() {
    static const QStringList names = {
        QStringLiteral("org.freedesktop.DBus"),
        QStringLiteral("org.freedesktop.systemd1"),
        QStringLiteral("org.kde.StatusNotifierWatcher"),
        QStringLiteral("org.gnome.SessionManager"),
        QStringLiteral("org.kde.ksmserver"),
        QStringLiteral("org.xfce.SessionManager"),
        QStringLiteral("org.mate.SessionManager"),
        QStringLiteral("org.cinnamon.SessionManager"),
        QStringLiteral("org.lxqt.session"),
        QStringLiteral("org.gnome.Shell"),
        QStringLiteral("org.kde.KWin"),
    };
    return names;
}

SessionProcesses::SessionProcesses(const QDBusConnection& bus, QObject* parent)
    : QObject(parent), bus_(bus) {
    if (!bus_.isConnected()) return;
    for (const QString& name : busNames()) {
        QDBusMessage call = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetConnectionUnixProcessID"));
        call << name;
        ++pending_;
        auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call, 3000), this);
        connect(
            watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* w) {
                w->deleteLater();
                const QDBusMessage reply = w->reply();
                // Names nobody owns on this desktop answer with an error and are skipped.
                if (reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty()) {
                    const auto pid = std::int32_t(reply.arguments().first().toUInt());
                    if (pid > 0 && std::find(pids_.begin(), pids_.end(), pid) == pids_.end())
                        pids_.push_back(pid);
                }
                if (--pending_ == 0) emit found(pids_);
            });
    }
}

}  // namespace trotlet::platform
