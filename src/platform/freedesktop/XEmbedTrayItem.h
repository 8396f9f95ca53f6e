#pragma once

#include "platform/freedesktop/TrayItem.h"
#include "platform/freedesktop/TrayItemLabelComposer.h"

#include <QSystemTrayIcon>

namespace trotlet::platform {

// The fallback for desktops without a StatusNotifierWatcher: Qt's tray icon over the XEmbed
// system tray protocol. It cannot carry a label and hosts draw it square, so the label is only
// visible when drawn into the icon, and then shrunk to fit.
class XEmbedTrayItem : public TrayItem {
    Q_OBJECT
public:
    explicit XEmbedTrayItem(QObject* parent = nullptr);

    Kind kind() const override { return Kind::xembed; }
    void setFrame(const QImage& image, const QString& cacheKey) override;
    void setLabel(const QString& text, const QString& guide) override;
    void setLabelInIcon(bool on) override;
    void setToolTip(const QString& title, const QString& body) override;
    void setMenu(QMenu* menu) override;
    void setVisible(bool visible) override;
    QString label() const override { return labelInIcon_ ? QString() : label_; }
    QString currentFrameKey() const override { return shownKey_; }

    static bool isAvailable() { return QSystemTrayIcon::isSystemTrayAvailable(); }

private:
    void refreshIcon();

    QSystemTrayIcon icon_;
    QImage frame_;
    QString frameKey_;
    QString shownKey_;
    QString label_;
    QString guide_;
    bool labelInIcon_ = false;
    bool visible_ = true;
};

}  // namespace trotlet::platform
