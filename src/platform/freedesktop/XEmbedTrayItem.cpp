#include "platform/freedesktop/XEmbedTrayItem.h"

#include <QCursor>
#include <QIcon>
#include <QPixmap>

namespace trotlet::platform {

XEmbedTrayItem::XEmbedTrayItem(QObject* parent) : TrayItem(parent) {
    connect(&icon_, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        // The XEmbed tray reports no click position; the cursor is where the click was.
        switch (reason) {
        case QSystemTrayIcon::Trigger:
        case QSystemTrayIcon::DoubleClick:
            emit activated(QCursor::pos());
            break;
        case QSystemTrayIcon::MiddleClick:
            emit secondaryActivated(QCursor::pos());
            break;
        case QSystemTrayIcon::Context:
            emit contextMenuRequested(QCursor::pos());
            break;
        case QSystemTrayIcon::Unknown:
            break;
        }
    });
    // Shown with the first frame: an icon without an image would be an empty slot.
}

void XEmbedTrayItem::refreshIcon() {
    if (frame_.isNull()) return;
    const bool composed = labelInIcon_ && !label_.isEmpty();
    const QString key = composed ? frameKey_ + QChar(0x1f) + label_ + QChar(0x1f) + guide_ : frameKey_;
    if (key == shownKey_) return;
    shownKey_ = key;
    const QImage image = composed ? TrayItemLabelComposer::compose(frame_, label_, guide_) : frame_;
    icon_.setIcon(QIcon(QPixmap::fromImage(image)));
    if (visible_ && !icon_.isVisible()) icon_.show();
}

void XEmbedTrayItem::setFrame(const QImage& image, const QString& cacheKey) {
    if (cacheKey == frameKey_ && !frame_.isNull()) return;
    frame_ = image;
    frameKey_ = cacheKey;
    refreshIcon();
}

void XEmbedTrayItem::setLabel(const QString& text, const QString& guide) {
    if (text == label_ && guide == guide_) return;
    label_ = text;
    guide_ = guide;
    if (labelInIcon_) refreshIcon();
}

void XEmbedTrayItem::setLabelInIcon(bool on) {
    if (on == labelInIcon_) return;
    labelInIcon_ = on;
    refreshIcon();
}

void XEmbedTrayItem::setToolTip(const QString& title, const QString& body) {
    icon_.setToolTip(body.isEmpty() ? title : title + QLatin1Char('\n') + body);
}

void XEmbedTrayItem::setMenu(QMenu* menu) { icon_.setContextMenu(menu); }

void XEmbedTrayItem::setVisible(bool visible) {
    visible_ = visible;
    icon_.setVisible(visible && !frame_.isNull());
}

}  // namespace trotlet::platform
