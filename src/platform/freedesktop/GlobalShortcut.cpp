#include "platform/freedesktop/GlobalShortcut.h"

#include "platform/freedesktop/GlobalShortcutX11.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QSocketNotifier>

namespace trotlet::platform {

namespace {

const QString kPortalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPortalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kShortcutsInterface = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");
const QString kRequestInterface = QStringLiteral("org.freedesktop.portal.Request");

// One entry of BindShortcuts' a(sa{sv}).
struct PortalShortcut {
    QString id;
    QVariantMap properties;
};

QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcut& shortcut) {
    argument.beginStructure();
    argument << shortcut.id << shortcut.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcut& shortcut) {
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.properties;
    argument.endStructure();
    return argument;
}

}  // namespace
}  // namespace trotlet::platform

Q_DECLARE_METATYPE(trotlet::platform::PortalShortcut)

namespace trotlet::platform {

const QString GlobalShortcut::kShortcutId = QStringLiteral("toggle-panel");

GlobalShortcut::Backend GlobalShortcut::backendForSession() {
    const bool wayland = !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
                         qEnvironmentVariable("XDG_SESSION_TYPE") == QLatin1String("wayland");
    if (wayland) return Backend::portal;
    if (!qEnvironmentVariableIsEmpty("DISPLAY")) return Backend::x11;
    return Backend::none;
}

GlobalShortcut::GlobalShortcut(const QDBusConnection& sessionBus, Backend backend, QObject* parent)
    : QObject(parent), bus_(sessionBus), backend_(backend) {
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<QList<PortalShortcut>>();
}

GlobalShortcut::~GlobalShortcut() { clear(); }

QString GlobalShortcut::displayText() const {
    return keys_ ? QString::fromStdString(keys_->displayText) : QString();
}

void GlobalShortcut::setState(State state, const QString& reason) {
    reason_ = reason;
    if (state == state_) return;
    state_ = state;
    emit stateChanged(state);
}

void GlobalShortcut::clear() {
    if (x11_) x11_->ungrab();
    keys_.reset();
    setState(State::off);
}

void GlobalShortcut::setShortcut(int carbonKeyCode, int carbonModifiers) {
    if (x11_) x11_->ungrab();
    keys_ = GlobalShortcutKeys::fromCarbon(carbonKeyCode, carbonModifiers);
    if (!keys_) {
        setState(State::unavailable, tr("This key combination cannot be used as a global shortcut"));
        return;
    }
    switch (backend_) {
    case Backend::x11:
        bindWithX11();
        break;
    case Backend::portal:
        bindWithPortal();
        break;
    case Backend::none:
        setState(State::unavailable, tr("Global shortcuts need an X11 session or a desktop portal"));
        break;
    }
}

void GlobalShortcut::bindWithX11() {
    if (!x11_) {
        x11_ = std::make_unique<GlobalShortcutX11>();
        if (x11_->isAvailable()) {
            notifier_ = new QSocketNotifier(x11_->fileDescriptor(), QSocketNotifier::Read, this);
            connect(notifier_, &QSocketNotifier::activated, this, [this] {
                for (int n = x11_->takePresses(); n > 0; --n) emit activated();
            });
        }
    }
    if (!x11_->isAvailable()) {
        setState(State::unavailable, tr("Cannot connect to the X11 display"));
        return;
    }
    if (auto error = x11_->grab(keys_->keysym, keys_->x11Modifiers)) {
        setState(State::unavailable, QString::fromStdString(*error));
        return;
    }
    setState(State::active);
}

QString GlobalShortcut::requestPath(const QString& token) const {
    // The portal names its Request objects after the caller, so the reply can be listened for
    // before the call is made and cannot be missed.
    QString sender = bus_.baseService().mid(1);
    sender.replace(QLatin1Char('.'), QLatin1Char('_'));
    return QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2").arg(sender, token);
}

void GlobalShortcut::portalCall(const QString& method, const QVariantList& args, const QString& token) {
    pendingRequest_ = requestPath(token);
    bus_.connect(kPortalService, pendingRequest_, kRequestInterface, QStringLiteral("Response"), this,
                 SLOT(onPortalResponse(QDBusMessage)));
    QDBusMessage call = QDBusMessage::createMethodCall(kPortalService, kPortalPath, kShortcutsInterface, method);
    call.setArguments(args);
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call, 10000), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* w) {
        w->deleteLater();
        if (w->isError()) {
            const QString name = w->error().name();
            setState(State::unavailable,
                     name == QLatin1String("org.freedesktop.DBus.Error.ServiceUnknown") ||
                             name == QLatin1String("org.freedesktop.DBus.Error.UnknownInterface") ||
                             name == QLatin1String("org.freedesktop.DBus.Error.UnknownMethod")
                         ? tr("This desktop does not offer global shortcuts to apps")
                         : tr("The desktop refused the global shortcut: %1").arg(w->error().message()));
        }
    });
}

void GlobalShortcut::bindWithPortal() {
    if (!bus_.isConnected()) {
        setState(State::unavailable, tr("No session bus to reach the desktop portal"));
        return;
    }
    setState(State::pending);
    if (!sessionHandle_.isEmpty()) {
        const QString token = QStringLiteral("trotlet_bind_%1").arg(++tokenCounter_);
        PortalShortcut shortcut{kShortcutId,
                                {{QStringLiteral("description"), tr("Open or close the Trotlet panel")},
                                 {QStringLiteral("preferred_trigger"), QString::fromStdString(keys_->portalTrigger)}}};
        portalCall(QStringLiteral("BindShortcuts"),
                   {QVariant::fromValue(QDBusObjectPath(sessionHandle_)),
                    QVariant::fromValue(QList<PortalShortcut>{shortcut}), QString(),
                    QVariantMap{{QStringLiteral("handle_token"), token}}},
                   token);
        return;
    }
    const QString token = QStringLiteral("trotlet_session_%1").arg(++tokenCounter_);
    portalCall(QStringLiteral("CreateSession"),
               {QVariantMap{{QStringLiteral("handle_token"), token},
                            {QStringLiteral("session_handle_token"), QStringLiteral("trotlet")}}},
               token);
}

void GlobalShortcut::onPortalResponse(const QDBusMessage& message) {
    if (message.path() != pendingRequest_) return;
    bus_.disconnect(kPortalService, pendingRequest_, kRequestInterface, QStringLiteral("Response"), this,
                    SLOT(onPortalResponse(QDBusMessage)));
    pendingRequest_.clear();
    const QVariantList args = message.arguments();
    const uint response = args.value(0).toUInt();
    const QVariantMap results = args.size() > 1 ? qdbus_cast<QVariantMap>(args.at(1)) : QVariantMap{};
    if (response != 0) {
        setState(State::unavailable, response == 1 ? tr("The global shortcut was declined")
                                                   : tr("The desktop could not set up the global shortcut"));
        return;
    }
    if (sessionHandle_.isEmpty()) {
        const QVariant handle = results.value(QStringLiteral("session_handle"));
        sessionHandle_ = handle.canConvert<QDBusObjectPath>() && handle.userType() == qMetaTypeId<QDBusObjectPath>()
                             ? handle.value<QDBusObjectPath>().path()
                             : handle.toString();
        if (sessionHandle_.isEmpty()) {
            setState(State::unavailable, tr("The desktop could not set up the global shortcut"));
            return;
        }
        bus_.connect(kPortalService, kPortalPath, kShortcutsInterface, QStringLiteral("Activated"), this,
                     SLOT(onPortalActivated(QDBusMessage)));
        bindWithPortal();
        return;
    }
    setState(State::active);
}

void GlobalShortcut::onPortalActivated(const QDBusMessage& message) {
    const QVariantList args = message.arguments();
    if (args.size() < 2 || state_ != State::active) return;
    if (args.at(0).value<QDBusObjectPath>().path() == sessionHandle_ && args.at(1).toString() == kShortcutId) {
        emit activated();
    }
}

}  // namespace trotlet::platform
