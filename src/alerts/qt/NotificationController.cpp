#include "alerts/qt/NotificationController.h"

#include <QCoreApplication>
#include <QtGlobal>

#include <cstdio>

#include "platform/freedesktop/Notifications.h"
#include "settings/MonitoringSettings.h"
#include "settings/NotificationSettings.h"

namespace trotlet::alerts {

NotificationController::Options NotificationController::Options::from(
    const cli::LaunchOptions& launch) {
    Options o;
    const bool fakeData = launch.mock || launch.fixture.has_value();
    o.metricAlerts =
        !fakeData || qEnvironmentVariable("TROTLET_NOTIFY_FAKE_DATA") == QLatin1String("1");
    o.debugLog = qEnvironmentVariable("TROTLET_DEBUG_LOG") == QLatin1String("1");
    o.ownProcessId = std::int32_t(QCoreApplication::applicationPid());
    return o;
}

NotificationController::NotificationController(settings::NotificationSettings& settings,
                                               platform::Notifications* notifier, Options options,
                                               QObject* parent)
    : QObject(parent),
      settings_(settings),
      notifier_(notifier),
      options_(options),
      rules_(preferencesFrom(settings), "") {
    rules_.setOwnProcessId(options_.ownProcessId);
    settingsObserver_ = settings_.observe([this](const std::string&) { rebuildPreferences(); });
}

NotificationController::~NotificationController() {
    settings_.unobserve(settingsObserver_);
    if (monitoring_) monitoring_->unobserve(monitoringObserver_);
}

AlertRules::Preferences NotificationController::preferencesFrom(
    const settings::NotificationSettings& s) {
    AlertRules::Preferences p;
    p.highCPU = s.highCPU();
    p.highCPUThreshold = s.highCPUThreshold();
    p.highTemperature = s.highTemperature();
    p.batteryLow = s.batteryLow();
    p.batteryLowThreshold = s.batteryLowThreshold();
    p.batteryFull = s.batteryFull();
    p.diskAlmostFull = s.diskAlmostFull();
    p.diskFreeThresholdGB = s.diskFreeThresholdGB();
    p.memoryCritical = s.memoryCritical();
    p.achievementUnlocked = s.achievementUnlocked();
    return p;
}

void NotificationController::followTemperatureUnit(settings::MonitoringSettings& monitoring) {
    if (monitoring_) monitoring_->unobserve(monitoringObserver_);
    monitoring_ = &monitoring;
    rules_.setTemperatureUnit(monitoring.temperatureUnit());
    monitoringObserver_ = monitoring.observe(
        [this](const std::string&) { rules_.setTemperatureUnit(monitoring_->temperatureUnit()); });
}

void NotificationController::rebuildPreferences() {
    // Observers run before the store is written, but the group already holds the new value.
    const AlertRules::Preferences next = preferencesFrom(settings_);
    if (next == rules_.preferences()) return;
    rules_.setPreferences(next);
    if (options_.debugLog)
        std::fprintf(stderr, "trotlet: notifications: preferences %s\n",
                     toJson(next).dump().c_str());
}

void NotificationController::onSample(const metrics::MetricsSnapshot& snapshot,
                                      metrics::Timestamp now) {
    if (!options_.metricAlerts) {
        if (options_.debugLog && !loggedMetricsOff_)
            std::fprintf(stderr,
                         "trotlet: notifications: metric alerts are off for fake data "
                         "(set TROTLET_NOTIFY_FAKE_DATA=1 to try them)\n");
        loggedMetricsOff_ = true;
        return;
    }
    handle(rules_.evaluate(snapshot, now, panelOpen_), "sample");
}

void NotificationController::onEvent(const AppEvent& event, metrics::Timestamp now) {
    handle(rules_.event(event, now, panelOpen_), describe(event));
}

void NotificationController::handle(const std::vector<AlertRules::Decision>& decisions,
                                    const std::string& input) {
    for (const AlertRules::Decision& decision : decisions) {
        if (options_.debugLog)
            std::fprintf(stderr, "trotlet: notifications: %s%s -> %s\n", input.c_str(),
                         panelOpen_ ? " (panel open)" : "", describe(decision).c_str());
        if (!decision.isPost()) continue;
        const QString identifier = QString::fromStdString(decision.alert.identifier());
        const QString title = QString::fromStdString(decision.alert.title);
        const QString body = QString::fromStdString(decision.alert.body);
        if (notifier_) notifier_->post(identifier, title, body);
        emit alertPosted(identifier, title, body);
    }
}

}  // namespace trotlet::alerts
