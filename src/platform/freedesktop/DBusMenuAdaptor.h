#pragma once

#include "platform/freedesktop/DBusMenuTypes.h"

#include <QDBusAbstractAdaptor>
#include <QDBusVariant>
#include <QStringList>

namespace trotlet::platform {

class DBusMenuExporter;

// The com.canonical.dbusmenu interface on the exporter's object path. It only translates
// between the wire and DBusMenuExporter, and answers unknown ids with the protocol's errors.
class DBusMenuAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version)
    Q_PROPERTY(QString TextDirection READ textDirection)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath)
public:
    explicit DBusMenuAdaptor(DBusMenuExporter* exporter);

    uint version() const { return 3; }
    QString textDirection() const;
    QString status() const { return QStringLiteral("normal"); }
    QStringList iconThemePath() const { return {}; }

public slots:
    uint GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                   trotlet::platform::DBusMenuLayoutItem& layout);
    trotlet::platform::DBusMenuItemList GetGroupProperties(const QList<int>& ids,
                                                           const QStringList& propertyNames);
    QDBusVariant GetProperty(int id, const QString& name);
    void Event(int id, const QString& eventId, const QDBusVariant& data, uint timestamp);
    QList<int> EventGroup(const trotlet::platform::DBusMenuEventList& events);
    bool AboutToShow(int id);
    QList<int> AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors);

signals:
    void ItemsPropertiesUpdated(const trotlet::platform::DBusMenuItemList& updatedProps,
                                const trotlet::platform::DBusMenuItemKeysList& removedProps);
    void LayoutUpdated(uint revision, int parent);
    void ItemActivationRequested(int id, uint timestamp);

private:
    void unknownId(int id);

    DBusMenuExporter* exporter_;
};

}  // namespace trotlet::platform
