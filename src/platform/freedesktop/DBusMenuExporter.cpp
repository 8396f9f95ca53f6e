#include "platform/freedesktop/DBusMenuExporter.h"

#include "platform/freedesktop/DBusMenuAdaptor.h"

#include <QAction>
#include <QActionEvent>
#include <QActionGroup>
#include <QMenu>
#include <QTimer>

namespace trotlet::platform {

DBusMenuExporter::DBusMenuExporter(const QDBusConnection& bus, const QString& objectPath,
                                   QObject* parent)
    : QObject(parent), bus_(bus), path_(objectPath) {
    registerDBusMenuTypes();
    adaptor_ = new DBusMenuAdaptor(this);
    registered_ = bus_.registerObject(path_, this, QDBusConnection::ExportAdaptors);
}

DBusMenuExporter::~DBusMenuExporter() {
    if (registered_) bus_.unregisterObject(path_);
}

void DBusMenuExporter::setMenu(QMenu* menu) {
    for (QMenu* watched : std::as_const(watched_)) watched->removeEventFilter(this);
    watched_.clear();
    menu_ = menu;
    if (menu) watchMenu(menu);
    layoutDirty_ = true;
    scheduleFlush();
}

void DBusMenuExporter::watchMenu(QMenu* menu) {
    if (watched_.contains(menu)) return;
    watched_.insert(menu);
    menu->installEventFilter(this);
    connect(menu, &QObject::destroyed, this, [this, menu] { watched_.remove(menu); });
}

int DBusMenuExporter::idFor(QAction* action) {
    if (auto it = ids_.constFind(action); it != ids_.constEnd()) return *it;
    const int id = nextId_++;
    ids_.insert(action, id);
    actions_.insert(id, action);
    connect(action, &QObject::destroyed, this, [this, action, id] {
        ids_.remove(action);
        actions_.remove(id);
        sentProperties_.remove(id);
    });
    if (QMenu* submenu = action->menu()) watchMenu(submenu);
    return id;
}

QMenu* DBusMenuExporter::menuFor(int id) const {
    if (id == 0) return menu_.data();
    QAction* action = actions_.value(id).data();
    return action ? action->menu() : nullptr;
}

QList<int> DBusMenuExporter::knownIds() const {
    QList<int> ids{0};
    for (auto it = actions_.constBegin(); it != actions_.constEnd(); ++it) {
        if (it.value()) ids.append(it.key());
    }
    return ids;
}

QString DBusMenuExporter::labelFromText(const QString& text) {
    QString label;
    label.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c == u'_') {
            label += QStringLiteral("__");
        } else if (c == u'&') {
            if (i + 1 < text.size() && text.at(i + 1) == u'&') {
                label += u'&';
                ++i;
            } else {
                label += u'_';
            }
        } else {
            label += c;
        }
    }
    return label;
}

QVariantMap DBusMenuExporter::actionProperties(const QAction* action) {
    QVariantMap properties;
    if (action->isSeparator()) {
        properties.insert(QStringLiteral("type"), QStringLiteral("separator"));
    } else {
        properties.insert(QStringLiteral("label"), labelFromText(action->text()));
    }
    if (!action->isEnabled()) properties.insert(QStringLiteral("enabled"), false);
    if (!action->isVisible()) properties.insert(QStringLiteral("visible"), false);
    if (action->isCheckable()) {
        const bool radio = action->actionGroup() && action->actionGroup()->isExclusive();
        properties.insert(QStringLiteral("toggle-type"),
                          radio ? QStringLiteral("radio") : QStringLiteral("checkmark"));
        properties.insert(QStringLiteral("toggle-state"), action->isChecked() ? 1 : 0);
    }
    if (action->menu()) {
        properties.insert(QStringLiteral("children-display"), QStringLiteral("submenu"));
    }
    if (const QString iconName = action->icon().name(); !iconName.isEmpty()) {
        properties.insert(QStringLiteral("icon-name"), iconName);
    }
    return properties;
}

static QVariantMap filtered(const QVariantMap& properties, const QStringList& names) {
    if (names.isEmpty()) return properties;
    QVariantMap result;
    for (const QString& name : names) {
        if (auto it = properties.constFind(name); it != properties.constEnd()) {
            result.insert(name, *it);
        }
    }
    return result;
}

std::optional<QVariantMap> DBusMenuExporter::properties(int id, const QStringList& names) {
    if (id == 0) {
        return filtered({{QStringLiteral("children-display"), QStringLiteral("submenu")}}, names);
    }
    QAction* action = actions_.value(id).data();
    if (!action) return std::nullopt;
    QVariantMap all = actionProperties(action);
    sentProperties_.insert(id, all);
    return filtered(all, names);
}

DBusMenuLayoutItem DBusMenuExporter::buildLayout(int id, QMenu* menu, int depth,
                                                 const QStringList& names) {
    DBusMenuLayoutItem item;
    item.id = id;
    item.properties = properties(id, names).value_or(QVariantMap{});
    // A depth of -1 means the whole tree, 0 the node alone.
    if (!menu || depth == 0) return item;
    for (QAction* action : menu->actions()) {
        const int childId = idFor(action);
        item.children.append(buildLayout(childId, action->menu(), depth < 0 ? -1 : depth - 1, names));
    }
    return item;
}

std::optional<DBusMenuLayoutItem> DBusMenuExporter::layout(int parentId, int depth,
                                                           const QStringList& names) {
    if (parentId != 0 && !actions_.value(parentId)) return std::nullopt;
    return buildLayout(parentId, menuFor(parentId), depth, names);
}

bool DBusMenuExporter::handleEvent(int id, const QString& eventId) {
    if (id == 0) return menu_ != nullptr;
    QPointer<QAction> action = actions_.value(id);
    if (!action) return false;
    if (eventId == QLatin1String("clicked")) {
        // Triggered after the reply is sent: the action may open a window or quit the app,
        // and the host must not wait on either.
        QTimer::singleShot(0, action, [action] {
            if (action && action->isEnabled()) action->trigger();
        });
    } else if (eventId == QLatin1String("hovered")) {
        action->hover();
    }
    return true;
}

std::optional<bool> DBusMenuExporter::aboutToShow(int id) {
    QMenu* menu = menuFor(id);
    if (id != 0 && !actions_.value(id)) return std::nullopt;
    if (!menu) return false;
    const uint before = revision_;
    // Lets the app refresh entries (for example a check mark) before the host draws them.
    emit menu->aboutToShow();
    if (layoutDirty_) flush();
    return revision_ != before;
}

bool DBusMenuExporter::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::ActionAdded:
    case QEvent::ActionRemoved:
        layoutDirty_ = true;
        scheduleFlush();
        break;
    case QEvent::ActionChanged:
        if (auto* actionEvent = static_cast<QActionEvent*>(event); actionEvent->action()) {
            if (auto it = ids_.constFind(actionEvent->action()); it != ids_.constEnd()) {
                changedIds_.insert(*it);
                scheduleFlush();
            }
        }
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void DBusMenuExporter::scheduleFlush() {
    if (flushScheduled_) return;
    flushScheduled_ = true;
    QTimer::singleShot(0, this, [this] {
        if (flushScheduled_) flush();
    });
}

void DBusMenuExporter::flush() {
    flushScheduled_ = false;
    if (layoutDirty_) {
        layoutDirty_ = false;
        changedIds_.clear();
        ++revision_;
        emit adaptor_->LayoutUpdated(revision_, 0);
        return;
    }
    DBusMenuItemList updated;
    DBusMenuItemKeysList removed;
    for (int id : std::as_const(changedIds_)) {
        QAction* action = actions_.value(id).data();
        if (!action) continue;
        const QVariantMap before = sentProperties_.value(id);
        const QVariantMap now = actionProperties(action);
        if (before == now) continue;
        sentProperties_.insert(id, now);
        updated.append(DBusMenuItem{id, now});
        QStringList gone;
        for (auto it = before.constBegin(); it != before.constEnd(); ++it) {
            if (!now.contains(it.key())) gone.append(it.key());
        }
        if (!gone.isEmpty()) removed.append(DBusMenuItemKeys{id, gone});
    }
    changedIds_.clear();
    if (!updated.isEmpty() || !removed.isEmpty()) {
        emit adaptor_->ItemsPropertiesUpdated(updated, removed);
    }
}

}  // namespace trotlet::platform
