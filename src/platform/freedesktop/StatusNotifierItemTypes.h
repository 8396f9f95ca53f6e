#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QImage>
#include <QList>
#include <QMetaType>
#include <QString>

namespace trotlet::platform {

// One image as the StatusNotifierItem protocol carries it: width, height and ARGB32 pixels with
// each pixel in network byte order (A, R, G, B), D-Bus signature (iiay).
struct StatusNotifierIconPixmap {
    int width = 0;
    int height = 0;
    QByteArray bytes;

    // Converts any QImage to the wire form. The pixels are copied once; the result shares its
    // bytes implicitly, so handing it to many property reads does not copy them again here.
    static StatusNotifierIconPixmap fromImage(const QImage& image);
    // The reverse, for hosts written in tests and for checking a round trip.
    QImage toImage() const;

    bool operator==(const StatusNotifierIconPixmap&) const = default;
};

using StatusNotifierIconPixmapList = QList<StatusNotifierIconPixmap>;

// The ToolTip property, (sa(iiay)ss): icon name, icon pixmaps, title, description.
struct StatusNotifierToolTip {
    QString iconName;
    StatusNotifierIconPixmapList image;
    QString title;
    QString description;
};

// Registers the types above with QtDBus; safe to call more than once.
void registerStatusNotifierTypes();

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierIconPixmap& pixmap);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierIconPixmap& pixmap);
QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierToolTip& toolTip);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierToolTip& toolTip);

}  // namespace trotlet::platform

Q_DECLARE_METATYPE(trotlet::platform::StatusNotifierIconPixmap)
Q_DECLARE_METATYPE(trotlet::platform::StatusNotifierToolTip)
