#pragma once

#include "platform/freedesktop/StatusNotifierItemTypes.h"

#include <QDBusAbstractAdaptor>
#include <QDBusObjectPath>

namespace trotlet::platform {

class StatusNotifierItem;

// The org.kde.StatusNotifierItem interface, including the Ayatana label properties and signal
// that GNOME's AppIndicator extension reads from the same interface.
class StatusNotifierItemAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category)
    Q_PROPERTY(QString Id READ id)
    Q_PROPERTY(QString Title READ title)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(int WindowId READ windowId)
    Q_PROPERTY(QString IconThemePath READ emptyString)
    Q_PROPERTY(QString IconName READ emptyString)
    Q_PROPERTY(trotlet::platform::StatusNotifierIconPixmapList IconPixmap READ iconPixmap)
    Q_PROPERTY(QString OverlayIconName READ emptyString)
    Q_PROPERTY(trotlet::platform::StatusNotifierIconPixmapList OverlayIconPixmap READ noPixmaps)
    Q_PROPERTY(QString AttentionIconName READ emptyString)
    Q_PROPERTY(trotlet::platform::StatusNotifierIconPixmapList AttentionIconPixmap READ noPixmaps)
    Q_PROPERTY(QString AttentionMovieName READ emptyString)
    Q_PROPERTY(trotlet::platform::StatusNotifierToolTip ToolTip READ toolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu)
    Q_PROPERTY(QDBusObjectPath Menu READ menu)
    Q_PROPERTY(QString XAyatanaLabel READ label)
    Q_PROPERTY(QString XAyatanaLabelGuide READ labelGuide)
    Q_PROPERTY(uint XAyatanaOrderingIndex READ orderingIndex)
public:
    explicit StatusNotifierItemAdaptor(StatusNotifierItem* item);

    QString category() const { return QStringLiteral("ApplicationStatus"); }
    QString id() const { return QStringLiteral("trotlet"); }
    QString title() const { return QStringLiteral("Trotlet"); }
    QString status() const;
    int windowId() const { return 0; }
    QString emptyString() const { return {}; }
    StatusNotifierIconPixmapList iconPixmap() const;
    StatusNotifierIconPixmapList noPixmaps() const { return {}; }
    StatusNotifierToolTip toolTip() const;
    bool itemIsMenu() const { return false; }
    QDBusObjectPath menu() const;
    QString label() const;
    QString labelGuide() const;
    uint orderingIndex() const { return 0; }

public slots:
    void Activate(int x, int y);
    void SecondaryActivate(int x, int y);
    void ContextMenu(int x, int y);
    void Scroll(int delta, const QString& orientation);
    void ProvideXdgActivationToken(const QString& token);

signals:
    void NewTitle();
    void NewIcon();
    void NewAttentionIcon();
    void NewOverlayIcon();
    void NewToolTip();
    void NewStatus(const QString& status);
    void XAyatanaNewLabel(const QString& label, const QString& guide);

private:
    StatusNotifierItem* item_;
};

}  // namespace trotlet::platform
