#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QList>
#include <QString>
#include <QVariantMap>

namespace trotlet::app::testing {

// What a tray host reads from an item, decoded here by hand rather than with the app's own
// types, so that a fault in those cannot hide itself.

// One IconPixmap entry, (iiay): width, height, ARGB32 bytes.
struct Pixmap {
    int width = 0;
    int height = 0;
    QByteArray bytes;
    bool operator==(const Pixmap&) const = default;
};

// a(iiay)
QList<Pixmap> readPixmaps(const QDBusArgument& argument);

struct ToolTip {
    QString title;
    QString description;
};

// (sa(iiay)ss): icon name, pixmaps, title, description.
ToolTip readToolTip(const QDBusArgument& argument);

// One node of a dbusmenu layout, (ia{sv}av).
struct MenuNode {
    int id = 0;
    QVariantMap properties;
    QList<MenuNode> children;

    QString label() const;
    // The first item below this one whose label reads `text`, mnemonics aside.
    const MenuNode* find(const QString& text) const;
};

MenuNode readMenuNode(const QDBusArgument& argument);

}  // namespace trotlet::app::testing
