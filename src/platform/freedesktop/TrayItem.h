#pragma once

#include <QDBusConnection>
#include <QImage>
#include <QObject>
#include <QPoint>
#include <QString>

#include <memory>

class QMenu;

namespace trotlet::platform {

// The app's one tray item, whatever the desktop offers underneath. The app drives it with
// frames, a label and a tooltip; the item sends each to the host only when it changed.
//
// A frame comes with a cache key: the same key always means the same pixels, so an item can
// skip a frame it already shows and keep the host's encoding of frames it has shown before.
class TrayItem : public QObject {
    Q_OBJECT
public:
    enum class Kind { statusNotifier, xembed };

    using QObject::QObject;
    ~TrayItem() override = default;

    virtual Kind kind() const = 0;

    virtual void setFrame(const QImage& image, const QString& cacheKey) = 0;
    // `guide` is the widest text the label is expected to show, so a host can reserve its width
    // once instead of jittering as digits change. An empty text hides the label.
    virtual void setLabel(const QString& text, const QString& guide) = 0;
    // Hosts that ignore the label (KDE, XFCE, waybar) can still show the text when it is drawn
    // into a wider icon; the app decides, because only it knows which host keeps the width.
    virtual void setLabelInIcon(bool on) = 0;
    virtual void setToolTip(const QString& title, const QString& body) = 0;
    // The menu stays owned by the caller and must outlive the item's use of it.
    virtual void setMenu(QMenu* menu) = 0;
    // Shows or hides the item without destroying it (the host keeps its slot when it can).
    virtual void setVisible(bool visible) = 0;

    // The text currently shown as the label and its guide; empty when drawn into the icon.
    virtual QString label() const = 0;
    virtual QString currentFrameKey() const = 0;

    // Picks the item for this desktop: a StatusNotifierItem when a watcher is on the session
    // bus, otherwise Qt's XEmbed tray icon. TROTLET_TRAY=sni or =xembed forces one.
    static std::unique_ptr<TrayItem> create(const QDBusConnection& sessionBus,
                                            QObject* parent = nullptr);
    // Whether anything could show an item now: a StatusNotifierWatcher on the bus, or an X11
    // tray owning its selection. Asks the bus and the X server afresh on every call.
    static bool hostPresent(const QDBusConnection& sessionBus);

signals:
    // Primary click; the point is the click position in screen coordinates as the host reports
    // it, or the cursor position when the host gives none.
    void activated(QPoint point);
    void secondaryActivated(QPoint point);
    void contextMenuRequested(QPoint point);
    void scrolled(int delta, Qt::Orientation orientation);
    // A Wayland host handed over an activation token for the next window the app raises.
    void activationTokenProvided(const QString& token);
    // True once a host has accepted the item; false when it went away.
    void hostAvailableChanged(bool available);
};

}  // namespace trotlet::platform
