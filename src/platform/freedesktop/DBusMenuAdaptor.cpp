#include "platform/freedesktop/DBusMenuAdaptor.h"

#include "platform/freedesktop/DBusMenuExporter.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QGuiApplication>

namespace trotlet::platform {

namespace {
const QString kUnknownIdError = QStringLiteral("com.canonical.dbusmenu.UnknownId");
}

DBusMenuAdaptor::DBusMenuAdaptor(DBusMenuExporter* exporter)
    : QDBusAbstractAdaptor(exporter), exporter_(exporter) {
    setAutoRelaySignals(false);
}

QString DBusMenuAdaptor::textDirection() const {
    return QGuiApplication::layoutDirection() == Qt::RightToLeft ? QStringLiteral("rtl")
                                                                 : QStringLiteral("ltr");
}

void DBusMenuAdaptor::unknownId(int id) {
    if (exporter_->calledFromDBus()) {
        exporter_->sendErrorReply(kUnknownIdError, QStringLiteral("No menu item with id %1").arg(id));
    }
}

uint DBusMenuAdaptor::GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                                DBusMenuLayoutItem& layout) {
    auto found = exporter_->layout(parentId, recursionDepth, propertyNames);
    if (!found) {
        unknownId(parentId);
        return 0;
    }
    layout = *found;
    return exporter_->revision();
}

DBusMenuItemList DBusMenuAdaptor::GetGroupProperties(const QList<int>& ids,
                                                     const QStringList& propertyNames) {
    DBusMenuItemList items;
    // An empty list asks for every item; unknown ids are skipped, as the protocol allows.
    const QList<int> wanted = ids.isEmpty() ? exporter_->knownIds() : ids;
    for (int id : wanted) {
        if (auto properties = exporter_->properties(id, propertyNames)) {
            items.append(DBusMenuItem{id, *properties});
        }
    }
    return items;
}

QDBusVariant DBusMenuAdaptor::GetProperty(int id, const QString& name) {
    auto properties = exporter_->properties(id, {name});
    if (!properties) {
        unknownId(id);
        return QDBusVariant(QVariant(0));
    }
    if (!properties->contains(name)) {
        if (exporter_->calledFromDBus()) {
            exporter_->sendErrorReply(QDBusError::InvalidArgs,
                           QStringLiteral("Menu item %1 has no property %2").arg(id).arg(name));
        }
        return QDBusVariant(QVariant(0));
    }
    return QDBusVariant(properties->value(name));
}

void DBusMenuAdaptor::Event(int id, const QString& eventId, const QDBusVariant& /*data*/,
                            uint /*timestamp*/) {
    if (!exporter_->handleEvent(id, eventId)) unknownId(id);
}

QList<int> DBusMenuAdaptor::EventGroup(const DBusMenuEventList& events) {
    QList<int> idErrors;
    for (const DBusMenuEvent& event : events) {
        if (!exporter_->handleEvent(event.id, event.eventId)) idErrors.append(event.id);
    }
    if (!events.isEmpty() && idErrors.size() == events.size() && exporter_->calledFromDBus()) {
        exporter_->sendErrorReply(kUnknownIdError, QStringLiteral("None of the event ids is known"));
    }
    return idErrors;
}

bool DBusMenuAdaptor::AboutToShow(int id) {
    auto needUpdate = exporter_->aboutToShow(id);
    if (!needUpdate) {
        unknownId(id);
        return false;
    }
    return *needUpdate;
}

QList<int> DBusMenuAdaptor::AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors) {
    QList<int> updatesNeeded;
    for (int id : ids) {
        auto needUpdate = exporter_->aboutToShow(id);
        if (!needUpdate) {
            idErrors.append(id);
        } else if (*needUpdate) {
            updatesNeeded.append(id);
        }
    }
    if (!ids.isEmpty() && idErrors.size() == ids.size() && exporter_->calledFromDBus()) {
        exporter_->sendErrorReply(kUnknownIdError, QStringLiteral("None of the ids is known"));
    }
    return updatesNeeded;
}

}  // namespace trotlet::platform
