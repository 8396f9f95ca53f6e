#pragma once

#include "platform/freedesktop/GlobalShortcutKeys.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>

#include <memory>
#include <optional>

class QSocketNotifier;

namespace trotlet::platform {

class GlobalShortcutX11;

// The panel's global shortcut. On X11 a key grab on the root window; on Wayland the
// GlobalShortcuts desktop portal, which lets the desktop ask the user to confirm the binding
// (the trigger we send is only a preference). Anywhere else, or when the grab or the portal
// fails, the shortcut is unavailable and `unavailableReason` says why in words for Settings.
class GlobalShortcut : public QObject {
    Q_OBJECT
public:
    enum class Backend { none, x11, portal };
    enum class State { off, pending, active, unavailable };

    // The backend comes from the session type; tests pass it explicitly.
    static Backend backendForSession();

    GlobalShortcut(const QDBusConnection& sessionBus, Backend backend, QObject* parent = nullptr);
    ~GlobalShortcut() override;

    // Binds the stored Carbon key code and modifiers; replaces any earlier binding.
    void setShortcut(int carbonKeyCode, int carbonModifiers);
    void clear();

    Backend backend() const { return backend_; }
    State state() const { return state_; }
    QString unavailableReason() const { return reason_; }
    // "Super+Alt+P", for Settings; empty when nothing is bound.
    QString displayText() const;

    static const QString kShortcutId;

signals:
    void activated();
    void stateChanged(trotlet::platform::GlobalShortcut::State state);

private slots:
    void onPortalResponse(const QDBusMessage& message);
    void onPortalActivated(const QDBusMessage& message);

private:
    void setState(State state, const QString& reason = {});
    void bindWithX11();
    void bindWithPortal();
    QString requestPath(const QString& token) const;
    void portalCall(const QString& method, const QVariantList& args, const QString& token);

    QDBusConnection bus_;
    Backend backend_;
    State state_ = State::off;
    QString reason_;
    std::optional<GlobalShortcutKeys> keys_;
    std::unique_ptr<GlobalShortcutX11> x11_;
    QSocketNotifier* notifier_ = nullptr;
    QString sessionHandle_;
    QString pendingRequest_;
    int tokenCounter_ = 0;
};

}  // namespace trotlet::platform
