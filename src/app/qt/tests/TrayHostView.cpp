#include "TrayHostView.h"

#include <QDBusVariant>

namespace trotlet::app::testing {

QList<Pixmap> readPixmaps(const QDBusArgument& argument) {
    QList<Pixmap> pixmaps;
    argument.beginArray();
    while (!argument.atEnd()) {
        Pixmap p;
        argument.beginStructure();
        argument >> p.width >> p.height >> p.bytes;
        argument.endStructure();
        pixmaps.append(p);
    }
    argument.endArray();
    return pixmaps;
}

ToolTip readToolTip(const QDBusArgument& argument) {
    ToolTip tip;
    QString iconName;
    argument.beginStructure();
    argument >> iconName;
    readPixmaps(argument);
    argument >> tip.title >> tip.description;
    argument.endStructure();
    return tip;
}

QString MenuNode::label() const { return properties.value(QStringLiteral("label")).toString(); }

const MenuNode* MenuNode::find(const QString& text) const {
    for (const MenuNode& child : children) {
        if (QString(child.label()).remove(QLatin1Char('_')) == text) return &child;
        if (const MenuNode* found = child.find(text)) return found;
    }
    return nullptr;
}

MenuNode readMenuNode(const QDBusArgument& argument) {
    MenuNode node;
    argument.beginStructure();
    argument >> node.id >> node.properties;
    argument.beginArray();
    while (!argument.atEnd()) {
        QDBusVariant child;
        argument >> child;
        node.children.append(readMenuNode(child.variant().value<QDBusArgument>()));
    }
    argument.endArray();
    argument.endStructure();
    return node;
}

}  // namespace trotlet::app::testing
