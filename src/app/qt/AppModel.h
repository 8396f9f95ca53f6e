#pragma once

#include <memory>

#include <QObject>
#include <QPoint>

#include "app/LaunchOptions.h"

class QMenu;

namespace trotlet::alerts {
class NotificationController;
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
}
namespace trotlet::platform {
class GlobalShortcut;
class IdleMonitor;
class Notifications;
class ReduceMotion;
class ScreenLock;
class TrayItem;
}

namespace trotlet::app {

class AppSettings;

// The live app's engines, built from the options and wired for the tick: the metrics store
// samples, and each published sample goes to the mascot animator, the status item and the
// notification rules on the main thread. Desktop signals (idle time, low power, reduced
// motion, screen lock) feed the animator's frame policy.
class AppModel : public QObject {
    Q_OBJECT
public:
    AppModel(const LaunchOptions& options, AppSettings& settings, QMenu* trayMenu,
             QObject* parent = nullptr);
    ~AppModel() override;

    // The panel's state decides the sampling tier and holds metric notifications.
    void setPanelOpen(bool open);

    metrics::MetricsStore& store() { return *store_; }
    mascot::MascotAnimator& animator() { return *animator_; }
    platform::TrayItem& tray() { return *tray_; }

signals:
    void trayActivated(QPoint point);

private:
    void applyGeneralSettings();
    void applyMascotSettings();
    void onSample();

    const LaunchOptions options_;
    AppSettings& settings_;
    std::unique_ptr<metrics::MetricsStore> store_;
    metrics::PowerProfiles* power_ = nullptr;
    platform::IdleMonitor* idle_ = nullptr;
    platform::ReduceMotion* reduceMotion_ = nullptr;
    platform::ScreenLock* screenLock_ = nullptr;
    platform::GlobalShortcut* shortcut_ = nullptr;
    mascot::MascotAnimator* animator_ = nullptr;
    std::unique_ptr<platform::TrayItem> tray_;
    menubar::StatusItemController* statusItem_ = nullptr;
    platform::Notifications* notifier_ = nullptr;
    alerts::NotificationController* notifications_ = nullptr;
    std::vector<int> observers_;
};

}  // namespace trotlet::app
