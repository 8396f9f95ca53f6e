#pragma once

#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QVariantMap>

namespace trotlet::platform {

// Wire types of the com.canonical.dbusmenu interface (version 3).

// (ia{sv}): an item id with its properties.
struct DBusMenuItem {
    int id = 0;
    QVariantMap properties;
};
using DBusMenuItemList = QList<DBusMenuItem>;

// (ias): an item id with the names of properties that went back to their defaults.
struct DBusMenuItemKeys {
    int id = 0;
    QStringList properties;
};
using DBusMenuItemKeysList = QList<DBusMenuItemKeys>;

// (ia{sv}av): one node of the layout tree; each child is a variant holding another node.
struct DBusMenuLayoutItem {
    int id = 0;
    QVariantMap properties;
    QList<DBusMenuLayoutItem> children;
};

// (isvu): one event of EventGroup.
struct DBusMenuEvent {
    int id = 0;
    QString eventId;
    QDBusVariant data;
    uint timestamp = 0;
};
using DBusMenuEventList = QList<DBusMenuEvent>;

void registerDBusMenuTypes();

QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuItem& item);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuItem& item);
QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuItemKeys& keys);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuItemKeys& keys);
QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuLayoutItem& item);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuLayoutItem& item);
QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuEvent& event);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuEvent& event);

}  // namespace trotlet::platform

Q_DECLARE_METATYPE(trotlet::platform::DBusMenuItem)
Q_DECLARE_METATYPE(trotlet::platform::DBusMenuItemKeys)
Q_DECLARE_METATYPE(trotlet::platform::DBusMenuLayoutItem)
Q_DECLARE_METATYPE(trotlet::platform::DBusMenuEvent)
