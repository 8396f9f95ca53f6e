#pragma once

#include "platform/freedesktop/StatusNotifierItemFrameCache.h"
#include "platform/freedesktop/StatusNotifierItemTypes.h"
#include "platform/freedesktop/TrayItem.h"
#include "platform/freedesktop/TrayItemLabelComposer.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QPointer>

class QDBusServiceWatcher;

namespace trotlet::platform {

class DBusMenuExporter;
class StatusNotifierItemAdaptor;

// The tray item as the freedesktop StatusNotifierItem protocol has it, with the Ayatana label
// extension. It owns a unique service name on the given connection, exports the item at
// /StatusNotifierItem and its menu at /MenuBar, and registers with the StatusNotifierWatcher,
// again whenever a watcher appears (a panel restart, a shell reload).
class StatusNotifierItem : public TrayItem {
    Q_OBJECT
public:
    explicit StatusNotifierItem(const QDBusConnection& bus, QObject* parent = nullptr,
                                int frameCacheCapacity = 64);
    ~StatusNotifierItem() override;

    static const QString kWatcherService;
    static const QString kItemPath;
    static const QString kMenuPath;

    Kind kind() const override { return Kind::statusNotifier; }
    void setFrame(const QImage& image, const QString& cacheKey) override;
    void setLabel(const QString& text, const QString& guide) override;
    void setLabelInIcon(bool on) override;
    void setToolTip(const QString& title, const QString& body) override;
    void setMenu(QMenu* menu) override;
    void setVisible(bool visible) override;
    QString label() const override;
    QString currentFrameKey() const override { return shownKey_; }

    void setLabelStyle(const TrayItemLabelStyle& style);

    // The bus name the item owns, "org.kde.StatusNotifierItem-<pid>-<n>".
    QString serviceName() const { return serviceName_; }
    bool isExported() const { return exported_; }
    bool isRegisteredWithWatcher() const { return registeredWithWatcher_; }
    // Frames whose key has been shown: NewIcon signals sent, and the conversions behind them.
    quint64 iconsSent() const { return iconsSent_; }
    const StatusNotifierItemFrameCache& frameCache() const { return cache_; }

    // Read by the adaptor.
    const StatusNotifierIconPixmapList& iconPixmaps() const { return icon_; }
    StatusNotifierToolTip toolTip() const;
    QString status() const;
    QString labelGuide() const;
    QDBusObjectPath menuPath() const;

    // Called by the adaptor when the host forwards a click, a scroll or a token.
    void hostActivated(int x, int y);
    void hostSecondaryActivated(int x, int y);
    void hostContextMenu(int x, int y);
    void hostScrolled(int delta, const QString& orientation);
    void hostActivationToken(const QString& token);

private:
    void registerWithWatcher();
    void refreshIcon();
    QString effectiveKey() const;
    QPoint pointOrCursor(int x, int y) const;

    QDBusConnection bus_;
    QString serviceName_;
    bool exported_ = false;
    bool registeredWithWatcher_ = false;
    StatusNotifierItemAdaptor* adaptor_ = nullptr;
    DBusMenuExporter* menuExporter_ = nullptr;
    QDBusServiceWatcher* watcherWatcher_ = nullptr;
    QPointer<QMenu> menu_;

    StatusNotifierItemFrameCache cache_;
    QImage frame_;
    QString frameKey_;
    QString shownKey_;
    StatusNotifierIconPixmapList icon_;
    quint64 iconsSent_ = 0;

    QString label_;
    QString guide_;
    bool labelInIcon_ = false;
    TrayItemLabelStyle labelStyle_;
    QString toolTipTitle_;
    QString toolTipBody_;
    bool visible_ = true;
};

}  // namespace trotlet::platform
