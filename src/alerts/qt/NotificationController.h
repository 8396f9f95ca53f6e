#pragma once

#include <QObject>
#include <QString>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "alerts/AlertRules.h"
#include "cli/LaunchOptions.h"

namespace trotlet::settings {
class NotificationSettings;
class MonitoringSettings;
}  // namespace trotlet::settings

namespace trotlet::platform {
class Notifications;
}

namespace trotlet::alerts {

// The app's side of the alert rules: feeds every published sample and app event through one
// `AlertRules` together with whether the panel is open, and posts what comes back as desktop
// notifications, one live notification per kind. The rules follow the notification settings
// (and the temperature unit) as the user changes them, keeping their arming and budgets.
class NotificationController : public QObject {
    Q_OBJECT
public:
    struct Options {
        // Fake data (--fixture, --mock) would otherwise alarm the user about a machine that
        // does not exist; TROTLET_NOTIFY_FAKE_DATA=1 lets it through for trying the alerts out.
        bool metricAlerts = true;
        bool debugLog = false;  // TROTLET_DEBUG_LOG=1: one stderr line per decision
        std::optional<std::int32_t> ownProcessId;

        // From the command line and the process environment.
        static Options from(const cli::LaunchOptions& launch);
    };

    // `notifier` may be null: decisions are then made and logged but nothing is posted.
    NotificationController(settings::NotificationSettings& settings,
                           platform::Notifications* notifier, Options options,
                           QObject* parent = nullptr);
    ~NotificationController() override;

    static AlertRules::Preferences preferencesFrom(const settings::NotificationSettings& settings);

    // Follow the monitoring settings' temperature unit; the group must outlive the controller.
    void followTemperatureUnit(settings::MonitoringSettings& monitoring);
    void setMascotName(const std::string& name) { rules_.setMascotName(name); }

    const AlertRules& rules() const { return rules_; }
    bool panelOpen() const { return panelOpen_; }
    const Options& options() const { return options_; }

public slots:
    void onSample(const metrics::MetricsSnapshot& snapshot, metrics::Timestamp now);
    // For a store's `updated` signal, at the wall clock's time: a fixture or a recorded sample
    // may carry a time of its own that does not move.
    void onLatestSample(const metrics::MetricsSnapshot& snapshot) {
        onSample(snapshot, std::chrono::system_clock::now());
    }
    void onEvent(const AppEvent& event, metrics::Timestamp now);
    void setPanelOpen(bool open) { panelOpen_ = open; }

signals:
    // Every alert handed to the notifier, after the decision to post it.
    void alertPosted(const QString& identifier, const QString& title, const QString& body);

private:
    void handle(const std::vector<AlertRules::Decision>& decisions, const std::string& input);
    void rebuildPreferences();

    settings::NotificationSettings& settings_;
    settings::MonitoringSettings* monitoring_ = nullptr;
    platform::Notifications* notifier_;
    Options options_;
    AlertRules rules_;
    bool panelOpen_ = false;
    bool loggedMetricsOff_ = false;
    int settingsObserver_ = 0;
    int monitoringObserver_ = 0;
};

}  // namespace trotlet::alerts
