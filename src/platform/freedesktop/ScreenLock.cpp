#include "platform/freedesktop/ScreenLock.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

#include <unistd.h>

namespace trotlet::platform {

namespace {

const QString kScreenSaverService = QStringLiteral("org.freedesktop.ScreenSaver");
const QString kScreenSaverInterface = QStringLiteral("org.freedesktop.ScreenSaver");
const QString kLogindService = QStringLiteral("org.freedesktop.login1");
const QString kLogindManagerPath = QStringLiteral("/org/freedesktop/login1");
const QString kLogindManager = QStringLiteral("org.freedesktop.login1.Manager");
const QString kLogindSession = QStringLiteral("org.freedesktop.login1.Session");
const QString kProperties = QStringLiteral("org.freedesktop.DBus.Properties");

}  // namespace

ScreenLock::ScreenLock(const QDBusConnection& sessionBus, const QDBusConnection& systemBus, QObject* parent)
    : QObject(parent), session_(sessionBus), system_(systemBus) {
    if (session_.isConnected()) {
        // KDE emits on /ScreenSaver, GNOME and others on /org/freedesktop/ScreenSaver: match any path.
        session_.connect(kScreenSaverService, QString(), kScreenSaverInterface, QStringLiteral("ActiveChanged"),
                         this, SLOT(onActiveChanged(bool)));
        QDBusMessage call = QDBusMessage::createMethodCall(kScreenSaverService, QStringLiteral("/org/freedesktop/ScreenSaver"),
                                                           kScreenSaverInterface, QStringLiteral("GetActive"));
        auto* watcher = new QDBusPendingCallWatcher(session_.asyncCall(call, 5000), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* w) {
            w->deleteLater();
            const QDBusMessage reply = w->reply();
            if (reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty()) {
                update(screenSaver_, reply.arguments().first().toBool());
            }
        });
    }
    if (system_.isConnected()) findSession();
}

std::optional<bool> ScreenLock::locked() const {
    if (!screenSaver_ && !lockedHint_) return std::nullopt;
    return screenSaver_.value_or(false) || lockedHint_.value_or(false);
}

void ScreenLock::findSession() {
    // The session this process belongs to; signals come from its real path, not "auto".
    QDBusMessage call = QDBusMessage::createMethodCall(kLogindService, kLogindManagerPath, kLogindManager,
                                                       QStringLiteral("GetSessionByPID"));
    call << uint(::getpid());
    auto* watcher = new QDBusPendingCallWatcher(system_.asyncCall(call, 5000), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* w) {
        w->deleteLater();
        const QDBusMessage reply = w->reply();
        if (reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty()) {
            useSession(reply.arguments().first().value<QDBusObjectPath>().path());
            return;
        }
        // Started outside a login session (from a terminal multiplexer, say): ask for the
        // session named in the environment, if any.
        const QString id = qEnvironmentVariable("XDG_SESSION_ID");
        if (id.isEmpty()) return;
        QDBusMessage byId = QDBusMessage::createMethodCall(kLogindService, kLogindManagerPath, kLogindManager,
                                                           QStringLiteral("GetSession"));
        byId << id;
        auto* second = new QDBusPendingCallWatcher(system_.asyncCall(byId, 5000), this);
        connect(second, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* w2) {
            w2->deleteLater();
            const QDBusMessage r = w2->reply();
            if (r.type() == QDBusMessage::ReplyMessage && !r.arguments().isEmpty()) {
                useSession(r.arguments().first().value<QDBusObjectPath>().path());
            }
        });
    });
}

void ScreenLock::useSession(const QString& path) {
    if (path.isEmpty()) return;
    sessionPath_ = path;
    system_.connect(kLogindService, path, kProperties, QStringLiteral("PropertiesChanged"), this,
                    SLOT(onSessionPropertiesChanged(QDBusMessage)));
    readLockedHint();
}

void ScreenLock::readLockedHint() {
    QDBusMessage call = QDBusMessage::createMethodCall(kLogindService, sessionPath_, kProperties, QStringLiteral("Get"));
    call << kLogindSession << QStringLiteral("LockedHint");
    auto* watcher = new QDBusPendingCallWatcher(system_.asyncCall(call, 5000), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* w) {
        w->deleteLater();
        const QDBusMessage reply = w->reply();
        if (reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty()) {
            update(lockedHint_, reply.arguments().first().value<QDBusVariant>().variant().toBool());
        }
    });
}

void ScreenLock::onActiveChanged(bool active) { update(screenSaver_, active); }

void ScreenLock::onSessionPropertiesChanged(const QDBusMessage& message) {
    const QVariantList args = message.arguments();
    if (args.size() < 2 || args.at(0).toString() != kLogindSession) return;
    const QVariantMap changed = qdbus_cast<QVariantMap>(args.at(1));
    if (auto it = changed.constFind(QStringLiteral("LockedHint")); it != changed.constEnd()) {
        update(lockedHint_, it->toBool());
        return;
    }
    // logind may only name the property as invalidated; read it again then.
    if (args.size() >= 3 && qdbus_cast<QStringList>(args.at(2)).contains(QStringLiteral("LockedHint"))) {
        readLockedHint();
    }
}

void ScreenLock::update(std::optional<bool>& field, std::optional<bool> value) {
    const auto before = locked();
    field = value;
    const auto after = locked();
    if (after && before != after) emit lockedChanged(*after);
}

}  // namespace trotlet::platform
