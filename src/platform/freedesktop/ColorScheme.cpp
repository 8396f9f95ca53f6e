#include "platform/freedesktop/ColorScheme.h"

#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

namespace trotlet::platform {
namespace {

const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString kNamespace = QStringLiteral("org.freedesktop.appearance");
const QString kKey = QStringLiteral("color-scheme");

}  // namespace

ColorScheme::ColorScheme(const QDBusConnection& sessionBus, QObject* parent)
    : QObject(parent), bus_(sessionBus) {
    if (!bus_.isConnected()) return;
    bus_.connect(kService, kPath, kInterface, QStringLiteral("SettingChanged"), this,
                 SLOT(onSettingChanged(QDBusMessage)));
    read(true);
}

std::optional<std::uint32_t> ColorScheme::interpret(const QVariant& raw) {
    QVariant value = raw;
    // Read wraps the value in one more variant than ReadOne; some backends nest further.
    for (int i = 0; i < 4 && value.userType() == qMetaTypeId<QDBusVariant>(); ++i)
        value = value.value<QDBusVariant>().variant();
    bool ok = false;
    const uint scheme = value.toUInt(&ok);
    if (!ok || value.typeId() == QMetaType::QString) return std::nullopt;
    return scheme;
}

void ColorScheme::read(bool useReadOne) {
    QDBusMessage call = QDBusMessage::createMethodCall(
        kService, kPath, kInterface,
        useReadOne ? QStringLiteral("ReadOne") : QStringLiteral("Read"));
    call << kNamespace << kKey;
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call, 5000), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, useReadOne](QDBusPendingCallWatcher* w) {
                w->deleteLater();
                const QDBusMessage reply = w->reply();
                if (reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty()) {
                    store(interpret(reply.arguments().first()));
                    return;
                }
                // Portals before version 2 have only Read.
                if (useReadOne &&
                    reply.errorName() == QLatin1String("org.freedesktop.DBus.Error.UnknownMethod"))
                    read(false);
            });
}

void ColorScheme::store(std::optional<std::uint32_t> scheme) {
    if (scheme == scheme_) return;
    scheme_ = scheme;
    emit changed(scheme_);
}

void ColorScheme::onSettingChanged(const QDBusMessage& message) {
    const QVariantList args = message.arguments();
    if (args.size() < 3 || args.at(0).toString() != kNamespace || args.at(1).toString() != kKey)
        return;
    store(interpret(args.at(2)));
}

}  // namespace trotlet::platform
