#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <QDBusConnection>
#include <QObject>
#include <QPoint>
#include <QString>

#include "cli/LaunchOptions.h"
#include "mascot/MascotMood.h"

class QMenu;

namespace trotlet::alerts {
class NotificationController;
}
namespace trotlet::layout {
class LayoutStore;
}
namespace trotlet::mascot {
class MascotAnimator;
}
namespace trotlet::menubar {
class StatusItemController;
}
namespace trotlet::metrics {
class MetricsStore;
class PowerProfiles;
}  // namespace trotlet::metrics
namespace trotlet::platform {
class GlobalShortcut;
class IdleMonitor;
class NetworkManagerWifi;
class Notifications;
class ReduceMotion;
class ScreenLock;
class TrayItem;
}  // namespace trotlet::platform
namespace trotlet::shop {
class CheckInReminders;
class ShopRuntime;
}
namespace trotlet::weather {
class WeatherRuntime;
}

namespace trotlet::settings {
class AppSettings;
class SettingsGroup;
}  // namespace trotlet::settings

namespace trotlet::app {

// The live app's engines, built from the options in this order: the metrics store, the
// mascot animator, the status item, the notification controller, the economy, the weather
// and the Overview layout. Each published sample goes on the main thread to the animator, the
// status item, the notification rules and the economy's passive tick. Desktop signals (idle
// time, low power, reduced motion, screen lock) feed the animator's frame policy; the shop's
// equipped mascot is the one the animator draws.
class AppModel : public QObject {
    Q_OBJECT
public:
    AppModel(const cli::LaunchOptions& options, settings::AppSettings& settings, QMenu* trayMenu,
             QObject* parent = nullptr);
    ~AppModel() override;

    // The panel's state decides the sampling tier, holds metric notifications, counts for
    // the economy (Golden Fish, panel achievements) and wakes the weather for the header.
    void setPanelOpen(bool open);

    metrics::MetricsStore& store() { return *store_; }
    mascot::MascotAnimator& animator() { return *animator_; }
    platform::TrayItem& tray() { return *tray_; }
    alerts::NotificationController& notifications() { return *notifications_; }
    shop::ShopRuntime& shop() { return *shop_; }
    weather::WeatherRuntime& weather() { return *weather_; }
    layout::LayoutStore& layout() { return *layout_; }
    platform::GlobalShortcut& shortcut() { return *shortcut_; }
    platform::Notifications& notifier() { return *notifier_; }
    // While the Settings recorder listens, the global grab is let go so the keys reach it.
    void setShortcutSuspended(bool suspended);
    // Why the login entry could not be written the last time; empty when it was.
    const QString& autostartProblem() const { return autostartProblem_; }
    // Whether animations should hold still: the desktop asks to reduce motion and the user did
    // not choose to animate anyway.
    bool motionReduced() const;
    QDBusConnection sessionBus() const;

signals:
    void trayActivated(QPoint point);
    void motionPolicyChanged();
    void autostartChanged();

private:
    void applyGeneralSettings();
    void applyMascotSettings();
    void applyExtraKinds();
    void applyPause();
    void buildEngines();
    void showEquippedMascot(const std::string& mascotId);
    void onSample();
    void observe(settings::SettingsGroup& group, std::function<void(const std::string&)> observer);

    const cli::LaunchOptions options_;
    settings::AppSettings& settings_;
    std::unique_ptr<metrics::MetricsStore> store_;
    metrics::PowerProfiles* power_ = nullptr;
    platform::NetworkManagerWifi* wifi_ = nullptr;
    platform::IdleMonitor* idle_ = nullptr;
    platform::ReduceMotion* reduceMotion_ = nullptr;
    platform::ScreenLock* screenLock_ = nullptr;
    bool screenLocked_ = false;
    platform::GlobalShortcut* shortcut_ = nullptr;
    bool shortcutSuspended_ = false;
    QString autostartProblem_;
    bool panelOpen_ = false;
    shop::CheckInReminders* reminders_ = nullptr;
    mascot::MascotAnimator* animator_ = nullptr;
    std::unique_ptr<platform::TrayItem> tray_;
    menubar::StatusItemController* statusItem_ = nullptr;
    platform::Notifications* notifier_ = nullptr;
    alerts::NotificationController* notifications_ = nullptr;
    shop::ShopRuntime* shop_ = nullptr;
    weather::WeatherRuntime* weather_ = nullptr;
    std::unique_ptr<layout::LayoutStore> layout_;
    std::vector<std::pair<settings::SettingsGroup*, int>> observers_;
    // What the economy heard at the previous sample: the mascot's odometer and mood.
    double lastDistance_ = 0;
    std::optional<mascot::MascotMood> lastMood_;
};

}  // namespace trotlet::app
