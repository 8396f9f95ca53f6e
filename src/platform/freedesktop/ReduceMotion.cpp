#include "platform/freedesktop/ReduceMotion.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

namespace trotlet::platform {

namespace {

const QString kPortalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPortalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kSettingsInterface = QStringLiteral("org.freedesktop.portal.Settings");

// Read (the older method) wraps the value in one more variant than ReadOne does, and some
// backends nest further; peel until a plain value remains.
QVariant unwrap(QVariant value) {
    for (int i = 0; i < 4 && value.canConvert<QDBusVariant>() && value.userType() == qMetaTypeId<QDBusVariant>(); ++i) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

}  // namespace

const std::array<ReduceMotion::Key, 3> ReduceMotion::kKeys{{
    {"org.freedesktop.appearance", "reduced-motion"},
    {"org.gnome.desktop.interface", "enable-animations"},
    {"org.kde.kdeglobals.KDE", "AnimationDurationFactor"},
}};

ReduceMotion::ReduceMotion(const QDBusConnection& sessionBus, std::optional<bool> fixed, QObject* parent)
    : QObject(parent), bus_(sessionBus), fixed_(fixed) {
    if (fixed_ || !bus_.isConnected()) return;
    bus_.connect(kPortalService, kPortalPath, kSettingsInterface, QStringLiteral("SettingChanged"), this,
                 SLOT(onSettingChanged(QDBusMessage)));
    refresh();
}

std::optional<bool> ReduceMotion::fixedFromEnvironment() {
    const QByteArray value = qgetenv("TROTLET_QA_REDUCE_MOTION");
    if (value == "1") return true;
    if (value == "0") return false;
    return std::nullopt;
}

std::optional<bool> ReduceMotion::reduceMotion() const {
    if (fixed_) return fixed_;
    for (const auto& value : values_) {
        if (value) return value;
    }
    return std::nullopt;
}

QString ReduceMotion::decidedBy() const {
    if (fixed_) return QStringLiteral("TROTLET_QA_REDUCE_MOTION");
    for (size_t i = 0; i < values_.size(); ++i) {
        if (values_[i]) return QStringLiteral("%1 %2").arg(QLatin1String(kKeys[i].nameSpace), QLatin1String(kKeys[i].key));
    }
    return {};
}

std::optional<bool> ReduceMotion::interpret(int keyIndex, const QVariant& raw) {
    const QVariant value = unwrap(raw);
    bool ok = false;
    switch (keyIndex) {
    case 0: {
        const uint level = value.toUInt(&ok);
        // Unknown levels mean no preference, as the portal documents.
        if (ok) return level == 1;
        return std::nullopt;
    }
    case 1:
        if (value.typeId() == QMetaType::Bool) return !value.toBool();
        return std::nullopt;
    case 2: {
        const double factor = value.toDouble(&ok);
        if (ok) return factor <= 0.0;
        return std::nullopt;
    }
    default:
        return std::nullopt;
    }
}

void ReduceMotion::refresh() {
    if (fixed_ || !bus_.isConnected()) return;
    for (int i = 0; i < int(kKeys.size()); ++i) read(i, true);
}

void ReduceMotion::read(int keyIndex, bool useReadOne) {
    QDBusMessage call = QDBusMessage::createMethodCall(kPortalService, kPortalPath, kSettingsInterface,
                                                       useReadOne ? QStringLiteral("ReadOne") : QStringLiteral("Read"));
    call << QString::fromLatin1(kKeys[size_t(keyIndex)].nameSpace) << QString::fromLatin1(kKeys[size_t(keyIndex)].key);
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call, 5000), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, keyIndex, useReadOne](QDBusPendingCallWatcher* w) {
        w->deleteLater();
        const QDBusMessage reply = w->reply();
        if (reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty()) {
            store(keyIndex, interpret(keyIndex, reply.arguments().first()));
            return;
        }
        // Portals before version 2 have only Read.
        if (useReadOne && reply.errorName() == QLatin1String("org.freedesktop.DBus.Error.UnknownMethod")) {
            read(keyIndex, false);
            return;
        }
        store(keyIndex, std::nullopt);
    });
}

void ReduceMotion::store(int keyIndex, std::optional<bool> value) {
    const auto before = reduceMotion();
    values_[size_t(keyIndex)] = value;
    const auto after = reduceMotion();
    if (before != after) emit changed(after);
}

void ReduceMotion::onSettingChanged(const QDBusMessage& message) {
    const QVariantList args = message.arguments();
    if (args.size() < 3) return;
    const QString nameSpace = args.at(0).toString();
    const QString key = args.at(1).toString();
    for (int i = 0; i < int(kKeys.size()); ++i) {
        if (nameSpace == QLatin1String(kKeys[size_t(i)].nameSpace) && key == QLatin1String(kKeys[size_t(i)].key)) {
            store(i, interpret(i, args.at(2)));
        }
    }
}

}  // namespace trotlet::platform
