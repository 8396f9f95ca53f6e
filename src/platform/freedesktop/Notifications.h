#pragma once

#include <QDBusConnection>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QString>

#include <optional>

class QDBusPendingCallWatcher;

namespace trotlet::platform {

// Posts desktop notifications through the freedesktop notification service
// (org.freedesktop.Notifications on the session bus). Each notification has a key, the app's
// identifier for it ("trotlet.batteryLow"); a new notification under a key replaces the one the
// server still shows for it, so every kind has at most one notification on screen.
//
// Calls are asynchronous and never wait on the server. When no notification service is running
// (a bare window manager, a headless session) posts are dropped, the first failure is logged
// once with TROTLET_DEBUG_LOG=1, and the app carries on.
class Notifications : public QObject {
    Q_OBJECT
public:
    static const QString kService;    // org.freedesktop.Notifications
    static const QString kPath;       // /org/freedesktop/Notifications
    static const QString kInterface;  // org.freedesktop.Notifications

    // On the session bus.
    explicit Notifications(QObject* parent = nullptr);
    Notifications(const QDBusConnection& bus, QObject* parent = nullptr);

    // The name and the icon-theme icon the server shows with each notification.
    void setAppName(const QString& name) { appName_ = name; }
    void setAppIcon(const QString& iconName) { appIcon_ = iconName; }
    QString appName() const { return appName_; }
    QString appIcon() const { return appIcon_; }

    void post(const QString& key, const QString& summary, const QString& body);

    // The server's id of the notification last shown under `key`, while it is on screen.
    std::optional<uint> liveId(const QString& key) const;
    // Posts answered by the server, and posts that failed.
    int deliveredCount() const { return delivered_; }
    int failedCount() const { return failed_; }

signals:
    void delivered(const QString& key, uint id);
    void failed(const QString& key, const QString& message);

private slots:
    void onNotificationClosed(uint id, uint reason);

private:
    struct Request {
        QString summary;
        QString body;
    };
    void send(const QString& key, const Request& request);
    void finished(const QString& key, QDBusPendingCallWatcher* watcher);
    void fail(const QString& key, const QString& message);
    void sendWaiting(const QString& key);

    QDBusConnection bus_;
    QString appName_ = QStringLiteral("Trotlet");
    QString appIcon_ = QStringLiteral("trotlet");
    QHash<QString, uint> liveIds_;
    // A key with a call in flight keeps its newest follow-up here: sending it before the server
    // has told us the id to replace would put a second notification of the kind on screen.
    QSet<QString> inFlight_;
    QHash<QString, Request> waiting_;
    bool loggedUnavailable_ = false;
    int delivered_ = 0;
    int failed_ = 0;
};

}  // namespace trotlet::platform
