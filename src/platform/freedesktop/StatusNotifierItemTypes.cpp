#include "platform/freedesktop/StatusNotifierItemTypes.h"

#include <QDBusMetaType>
#include <QtEndian>

namespace trotlet::platform {

StatusNotifierIconPixmap StatusNotifierIconPixmap::fromImage(const QImage& image) {
    StatusNotifierIconPixmap pixmap;
    if (image.isNull()) return pixmap;
    // Straight (not premultiplied) alpha is what hosts expect; premultiplied pixels would
    // darken every soft edge of the mascot.
    const QImage argb = image.format() == QImage::Format_ARGB32
                            ? image
                            : image.convertToFormat(QImage::Format_ARGB32);
    pixmap.width = argb.width();
    pixmap.height = argb.height();
    pixmap.bytes.resize(qsizetype(argb.width()) * argb.height() * 4);
    auto* out = reinterpret_cast<uchar*>(pixmap.bytes.data());
    for (int y = 0; y < argb.height(); ++y) {
        const auto* row = reinterpret_cast<const quint32*>(argb.constScanLine(y));
        for (int x = 0; x < argb.width(); ++x) {
            qToBigEndian<quint32>(row[x], out);
            out += 4;
        }
    }
    return pixmap;
}

QImage StatusNotifierIconPixmap::toImage() const {
    if (width <= 0 || height <= 0 || bytes.size() < qsizetype(width) * height * 4) return {};
    QImage image(width, height, QImage::Format_ARGB32);
    const auto* in = reinterpret_cast<const uchar*>(bytes.constData());
    for (int y = 0; y < height; ++y) {
        auto* row = reinterpret_cast<quint32*>(image.scanLine(y));
        for (int x = 0; x < width; ++x) {
            row[x] = qFromBigEndian<quint32>(in);
            in += 4;
        }
    }
    return image;
}

void registerStatusNotifierTypes() {
    static const bool registered = [] {
        qDBusRegisterMetaType<StatusNotifierIconPixmap>();
        qDBusRegisterMetaType<StatusNotifierIconPixmapList>();
        qDBusRegisterMetaType<StatusNotifierToolTip>();
        qRegisterMetaType<StatusNotifierIconPixmapList>("trotlet::platform::StatusNotifierIconPixmapList");
        return true;
    }();
    (void)registered;
}

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierIconPixmap& pixmap) {
    argument.beginStructure();
    argument << pixmap.width << pixmap.height << pixmap.bytes;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierIconPixmap& pixmap) {
    argument.beginStructure();
    argument >> pixmap.width >> pixmap.height >> pixmap.bytes;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierToolTip& toolTip) {
    argument.beginStructure();
    argument << toolTip.iconName << toolTip.image << toolTip.title << toolTip.description;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierToolTip& toolTip) {
    argument.beginStructure();
    argument >> toolTip.iconName >> toolTip.image >> toolTip.title >> toolTip.description;
    argument.endStructure();
    return argument;
}

}  // namespace trotlet::platform
