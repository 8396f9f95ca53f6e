#include "platform/freedesktop/StatusNotifierItem.h"

#include "platform/freedesktop/DBusMenuExporter.h"
#include "platform/freedesktop/StatusNotifierItemAdaptor.h"

#include <QCursor>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QMenu>

#include <unistd.h>

#include <atomic>

namespace trotlet::platform {

const QString StatusNotifierItem::kWatcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString StatusNotifierItem::kItemPath = QStringLiteral("/StatusNotifierItem");
const QString StatusNotifierItem::kMenuPath = QStringLiteral("/MenuBar");

namespace {
std::atomic<int> instanceCounter{0};
}

StatusNotifierItem::StatusNotifierItem(const QDBusConnection& bus, QObject* parent,
                                       int frameCacheCapacity)
    : TrayItem(parent), bus_(bus), cache_(frameCacheCapacity) {
    registerStatusNotifierTypes();
    serviceName_ = QStringLiteral("org.kde.StatusNotifierItem-%1-%2")
                       .arg(::getpid())
                       .arg(++instanceCounter);
    adaptor_ = new StatusNotifierItemAdaptor(this);
    menuExporter_ = new DBusMenuExporter(bus_, kMenuPath, this);
    exported_ = bus_.isConnected() && bus_.registerObject(kItemPath, this, QDBusConnection::ExportAdaptors) &&
                bus_.registerService(serviceName_);

    watcherWatcher_ = new QDBusServiceWatcher(kWatcherService, bus_,
                                              QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcherWatcher_, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& newOwner) {
                if (newOwner.isEmpty()) {
                    if (registeredWithWatcher_) {
                        registeredWithWatcher_ = false;
                        emit hostAvailableChanged(false);
                    }
                } else {
                    // A new watcher knows nothing of items registered with the old one.
                    registerWithWatcher();
                }
            });
    registerWithWatcher();
}

StatusNotifierItem::~StatusNotifierItem() {
    if (exported_) {
        bus_.unregisterService(serviceName_);
        bus_.unregisterObject(kItemPath);
    }
}

void StatusNotifierItem::registerWithWatcher() {
    if (!exported_) return;
    QDBusMessage call = QDBusMessage::createMethodCall(kWatcherService, QStringLiteral("/StatusNotifierWatcher"),
                                                       kWatcherService,
                                                       QStringLiteral("RegisterStatusNotifierItem"));
    call << serviceName_;
    auto* pending = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* w) {
        w->deleteLater();
        const bool ok = !w->isError();
        if (ok != registeredWithWatcher_) {
            registeredWithWatcher_ = ok;
            emit hostAvailableChanged(ok);
        }
    });
}

QString StatusNotifierItem::effectiveKey() const {
    if (labelInIcon_ && !(label_.isEmpty() && guide_.isEmpty())) {
        // U+001F cannot occur in a frame key or a ticker text, so keys cannot collide.
        return frameKey_ + QChar(0x1f) + label_ + QChar(0x1f) + guide_ +
               (labelStyle_.textBeforeIcon ? QStringLiteral("<") : QStringLiteral(">"));
    }
    return frameKey_;
}

void StatusNotifierItem::refreshIcon() {
    if (frame_.isNull()) return;
    const QString key = effectiveKey();
    if (key == shownKey_) return;
    if (auto cached = cache_.find(key)) {
        icon_ = *cached;
    } else {
        const QImage image = labelInIcon_ ? TrayItemLabelComposer::compose(frame_, label_, guide_, labelStyle_)
                                          : frame_;
        icon_ = {StatusNotifierIconPixmap::fromImage(image)};
        cache_.insert(key, icon_);
    }
    shownKey_ = key;
    ++iconsSent_;
    emit adaptor_->NewIcon();
}

void StatusNotifierItem::setFrame(const QImage& image, const QString& cacheKey) {
    if (cacheKey == frameKey_ && !frame_.isNull()) return;
    frame_ = image;
    frameKey_ = cacheKey;
    refreshIcon();
}

void StatusNotifierItem::setLabel(const QString& text, const QString& guide) {
    if (text == label_ && guide == guide_) return;
    label_ = text;
    guide_ = guide;
    if (labelInIcon_) {
        refreshIcon();
    } else {
        emit adaptor_->XAyatanaNewLabel(label(), labelGuide());
    }
}

void StatusNotifierItem::setLabelInIcon(bool on) {
    if (on == labelInIcon_) return;
    labelInIcon_ = on;
    refreshIcon();
    // The text moves between the icon and the label; never show it twice.
    emit adaptor_->XAyatanaNewLabel(label(), labelGuide());
}

void StatusNotifierItem::setLabelStyle(const TrayItemLabelStyle& style) {
    labelStyle_ = style;
    // Cached composed frames were drawn with the old style.
    cache_ = StatusNotifierItemFrameCache(cache_.capacity());
    shownKey_.clear();
    refreshIcon();
}

void StatusNotifierItem::setToolTip(const QString& title, const QString& body) {
    if (title == toolTipTitle_ && body == toolTipBody_) return;
    toolTipTitle_ = title;
    toolTipBody_ = body;
    emit adaptor_->NewToolTip();
}

void StatusNotifierItem::setMenu(QMenu* menu) {
    menu_ = menu;
    menuExporter_->setMenu(menu);
}

void StatusNotifierItem::setVisible(bool visible) {
    if (visible == visible_) return;
    visible_ = visible;
    emit adaptor_->NewStatus(status());
}

QString StatusNotifierItem::label() const { return labelInIcon_ ? QString() : label_; }
QString StatusNotifierItem::labelGuide() const { return labelInIcon_ ? QString() : guide_; }

StatusNotifierToolTip StatusNotifierItem::toolTip() const {
    return StatusNotifierToolTip{QString(), {}, toolTipTitle_, toolTipBody_};
}

// "Passive" is the protocol's way to step back; hosts hide such items or move them into an
// overflow area, which is what hiding the mascot should do.
QString StatusNotifierItem::status() const {
    return visible_ ? QStringLiteral("Active") : QStringLiteral("Passive");
}

QDBusObjectPath StatusNotifierItem::menuPath() const {
    return QDBusObjectPath(menuExporter_->isRegistered() ? kMenuPath : QStringLiteral("/NO_DBUSMENU"));
}

// Some hosts (Wayland ones in particular) cannot know screen coordinates and send 0,0.
QPoint StatusNotifierItem::pointOrCursor(int x, int y) const {
    if (x == 0 && y == 0) return QCursor::pos();
    return QPoint(x, y);
}

void StatusNotifierItem::hostActivated(int x, int y) { emit activated(pointOrCursor(x, y)); }
void StatusNotifierItem::hostSecondaryActivated(int x, int y) {
    emit secondaryActivated(pointOrCursor(x, y));
}

void StatusNotifierItem::hostContextMenu(int x, int y) {
    const QPoint point = pointOrCursor(x, y);
    emit contextMenuRequested(point);
    // Hosts that draw the exported menu never call this; the others get Qt's own menu.
    if (menu_) menu_->popup(point);
}

void StatusNotifierItem::hostScrolled(int delta, const QString& orientation) {
    emit scrolled(delta, orientation.compare(QLatin1String("horizontal"), Qt::CaseInsensitive) == 0
                             ? Qt::Horizontal
                             : Qt::Vertical);
}

void StatusNotifierItem::hostActivationToken(const QString& token) {
    emit activationTokenProvided(token);
}

}  // namespace trotlet::platform
