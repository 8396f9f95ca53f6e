#pragma once

#include "platform/freedesktop/DBusMenuTypes.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>

#include <optional>

class QAction;
class QMenu;

namespace trotlet::platform {

class DBusMenuAdaptor;

// Publishes a QMenu over com.canonical.dbusmenu so that a StatusNotifierItem host can draw the
// menu itself, in its own style and on Wayland too. Item 0 is the menu; every action gets a
// stable id for its lifetime. Changes to the menu are batched into one LayoutUpdated or
// ItemsPropertiesUpdated signal per event-loop turn.
// QtDBus attaches the calling message to the adaptor's parent, so the exporter carries the
// D-Bus context through which the adaptor answers with errors.
class DBusMenuExporter : public QObject, protected QDBusContext {
    Q_OBJECT
    friend class DBusMenuAdaptor;
public:
    DBusMenuExporter(const QDBusConnection& bus, const QString& objectPath, QObject* parent = nullptr);
    ~DBusMenuExporter() override;

    // The menu stays owned by the caller; nullptr exports an empty menu.
    void setMenu(QMenu* menu);
    QString objectPath() const { return path_; }
    bool isRegistered() const { return registered_; }
    uint revision() const { return revision_; }

    // The protocol operations, called by the adaptor; each returns nothing for an unknown id.
    std::optional<DBusMenuLayoutItem> layout(int parentId, int depth, const QStringList& names);
    std::optional<QVariantMap> properties(int id, const QStringList& names);
    QList<int> knownIds() const;
    bool handleEvent(int id, const QString& eventId);
    // True when showing the item changed the layout, so the host should fetch it again.
    std::optional<bool> aboutToShow(int id);

    // Properties of one action as the protocol names them, leaving out default values.
    static QVariantMap actionProperties(const QAction* action);
    // "&Open" becomes "_Open", a literal "_" becomes "__", "&&" a literal "&".
    static QString labelFromText(const QString& text);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    int idFor(QAction* action);
    QMenu* menuFor(int id) const;
    DBusMenuLayoutItem buildLayout(int id, QMenu* menu, int depth, const QStringList& names);
    void watchMenu(QMenu* menu);
    void scheduleFlush();
    void flush();

    QDBusConnection bus_;
    QString path_;
    bool registered_ = false;
    DBusMenuAdaptor* adaptor_ = nullptr;
    QPointer<QMenu> menu_;
    QHash<QAction*, int> ids_;
    QHash<int, QPointer<QAction>> actions_;
    QHash<int, QVariantMap> sentProperties_;
    QSet<QMenu*> watched_;
    QSet<int> changedIds_;
    int nextId_ = 1;
    uint revision_ = 1;
    bool layoutDirty_ = false;
    bool flushScheduled_ = false;
};

}  // namespace trotlet::platform
