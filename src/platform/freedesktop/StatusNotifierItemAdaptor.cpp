#include "platform/freedesktop/StatusNotifierItemAdaptor.h"

#include "platform/freedesktop/StatusNotifierItem.h"

namespace trotlet::platform {

StatusNotifierItemAdaptor::StatusNotifierItemAdaptor(StatusNotifierItem* item)
    : QDBusAbstractAdaptor(item), item_(item) {
    setAutoRelaySignals(false);
}

QString StatusNotifierItemAdaptor::status() const { return item_->status(); }

// A copy of an implicitly shared list: the pixels were converted when the frame was first
// shown and are only serialised here.
StatusNotifierIconPixmapList StatusNotifierItemAdaptor::iconPixmap() const {
    return item_->iconPixmaps();
}

StatusNotifierToolTip StatusNotifierItemAdaptor::toolTip() const { return item_->toolTip(); }
QDBusObjectPath StatusNotifierItemAdaptor::menu() const { return item_->menuPath(); }
QString StatusNotifierItemAdaptor::label() const { return item_->label(); }
QString StatusNotifierItemAdaptor::labelGuide() const { return item_->labelGuide(); }

void StatusNotifierItemAdaptor::Activate(int x, int y) { item_->hostActivated(x, y); }
void StatusNotifierItemAdaptor::SecondaryActivate(int x, int y) {
    item_->hostSecondaryActivated(x, y);
}
void StatusNotifierItemAdaptor::ContextMenu(int x, int y) { item_->hostContextMenu(x, y); }
void StatusNotifierItemAdaptor::Scroll(int delta, const QString& orientation) {
    item_->hostScrolled(delta, orientation);
}
void StatusNotifierItemAdaptor::ProvideXdgActivationToken(const QString& token) {
    item_->hostActivationToken(token);
}

}  // namespace trotlet::platform
