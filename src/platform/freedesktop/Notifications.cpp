#include "platform/freedesktop/Notifications.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QStringList>
#include <QVariantMap>

#include <cstdio>

namespace trotlet::platform {

const QString Notifications::kService = QStringLiteral("org.freedesktop.Notifications");
const QString Notifications::kPath = QStringLiteral("/org/freedesktop/Notifications");
const QString Notifications::kInterface = QStringLiteral("org.freedesktop.Notifications");

namespace {

bool debugLogging() { return qEnvironmentVariable("TROTLET_DEBUG_LOG") == QLatin1String("1"); }

// Server-chosen expiry: -1 in the notification protocol.
constexpr int kDefaultTimeout = -1;

// The basename of the app's .desktop file, so servers can group and configure our notifications.
const QString kDesktopEntry = QStringLiteral("trotlet");

}  // namespace

Notifications::Notifications(QObject* parent) : Notifications(QDBusConnection::sessionBus(), parent) {}

Notifications::Notifications(const QDBusConnection& bus, QObject* parent)
    : QObject(parent), bus_(bus) {
    // A notification the user dismissed is gone; replacing its id would be ignored by some
    // servers, so the next one of its kind starts fresh.
    if (bus_.isConnected())
        bus_.connect(kService, kPath, kInterface, QStringLiteral("NotificationClosed"), this,
                     SLOT(onNotificationClosed(uint, uint)));
}

void Notifications::post(const QString& key, const QString& summary, const QString& body) {
    const Request request{summary, body};
    if (inFlight_.contains(key)) {
        waiting_.insert(key, request);
        return;
    }
    send(key, request);
}

std::optional<uint> Notifications::liveId(const QString& key) const {
    const auto it = liveIds_.constFind(key);
    if (it == liveIds_.constEnd()) return std::nullopt;
    return *it;
}

void Notifications::send(const QString& key, const Request& request) {
    QDBusMessage message =
        QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("Notify"));
    QVariantMap hints;
    hints.insert(QStringLiteral("desktop-entry"), kDesktopEntry);
    hints.insert(QStringLiteral("urgency"), QVariant::fromValue<uchar>(1));
    message << appName_ << liveIds_.value(key, 0u) << appIcon_ << request.summary << request.body
            << QStringList() << hints << kDefaultTimeout;

    inFlight_.insert(key);
    if (!bus_.isConnected()) {
        // No bus at all gives no pending call that could ever finish; answer on the next turn
        // of the event loop like a failed call would.
        QMetaObject::invokeMethod(
            this,
            [this, key] {
                inFlight_.remove(key);
                fail(key, QStringLiteral("not connected to the session bus"));
                sendWaiting(key);
            },
            Qt::QueuedConnection);
        return;
    }
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, key](QDBusPendingCallWatcher* w) { finished(key, w); });
}

void Notifications::finished(const QString& key, QDBusPendingCallWatcher* watcher) {
    watcher->deleteLater();
    inFlight_.remove(key);
    const QDBusPendingReply<uint> reply = *watcher;
    if (reply.isError()) {
        fail(key, reply.error().name() + QStringLiteral(": ") + reply.error().message());
    } else {
        ++delivered_;
        liveIds_.insert(key, reply.value());
        emit delivered(key, reply.value());
    }
    sendWaiting(key);
}

void Notifications::fail(const QString& key, const QString& message) {
    ++failed_;
    if (!loggedUnavailable_ && debugLogging()) {
        std::fprintf(stderr, "trotlet: notifications: cannot post (%s); continuing without them\n",
                     qPrintable(message));
    }
    loggedUnavailable_ = true;
    emit failed(key, message);
}

void Notifications::sendWaiting(const QString& key) {
    if (auto it = waiting_.find(key); it != waiting_.end()) {
        const Request next = *it;
        waiting_.erase(it);
        send(key, next);
    }
}

void Notifications::onNotificationClosed(uint id, uint) {
    for (auto it = liveIds_.begin(); it != liveIds_.end();) {
        if (it.value() == id)
            it = liveIds_.erase(it);
        else
            ++it;
    }
}

}  // namespace trotlet::platform
