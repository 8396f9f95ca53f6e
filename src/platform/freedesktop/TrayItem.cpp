#include "platform/freedesktop/TrayItem.h"

#include "platform/freedesktop/StatusNotifierItem.h"
#include "platform/freedesktop/XEmbedTrayItem.h"

#include <QDBusConnectionInterface>

namespace trotlet::platform {

namespace {

bool watcherPresent(const QDBusConnection& sessionBus) {
    QDBusConnectionInterface* bus = sessionBus.isConnected() ? sessionBus.interface() : nullptr;
    return bus && bus->isServiceRegistered(StatusNotifierItem::kWatcherService).value();
}

}  // namespace

bool TrayItem::hostPresent(const QDBusConnection& sessionBus) {
    return watcherPresent(sessionBus) || XEmbedTrayItem::isAvailable();
}

std::unique_ptr<TrayItem> TrayItem::create(const QDBusConnection& sessionBus, QObject* parent) {
    const QByteArray forced = qgetenv("TROTLET_TRAY");
    if (forced == "xembed") return std::make_unique<XEmbedTrayItem>(parent);
    if (forced == "sni") return std::make_unique<StatusNotifierItem>(sessionBus, parent);

    // One short round trip to the bus daemon at start-up; the item then follows the watcher
    // coming and going by itself. Without a watcher the XEmbed tray is the only way in.
    if (watcherPresent(sessionBus) || !XEmbedTrayItem::isAvailable()) {
        return std::make_unique<StatusNotifierItem>(sessionBus, parent);
    }
    return std::make_unique<XEmbedTrayItem>(parent);
}

}  // namespace trotlet::platform
