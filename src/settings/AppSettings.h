#pragma once

#include "settings/DefaultsStore.h"
#include "settings/GeneralSettings.h"
#include "settings/LayoutSettings.h"
#include "settings/MascotSettings.h"
#include "settings/MenuBarSettings.h"
#include "settings/MonitoringSettings.h"
#include "settings/NotificationSettings.h"
#include "settings/WeatherSettings.h"

namespace trotlet::settings {

// The session's settings: one store and every group read from it once. Groups refer to the
// store held here, so AppSettings stays where it was built.
class AppSettings {
public:
    // `usesUSMeasurement` picks the default temperature unit (the application layer asks the
    // locale).
    AppSettings(DefaultsStore store, bool usesUSMeasurement);
    AppSettings(const AppSettings&) = delete;
    AppSettings& operator=(const AppSettings&) = delete;

    DefaultsStore& store() { return store_; }
    const DefaultsStore& store() const { return store_; }

    GeneralSettings& general() { return general_; }
    MonitoringSettings& monitoring() { return monitoring_; }
    MenuBarSettings& menuBar() { return menuBar_; }
    MascotSettings& mascot() { return mascot_; }
    NotificationSettings& notifications() { return notifications_; }
    WeatherSettings& weather() { return weather_; }
    LayoutSettings& layout() { return layout_; }

    const GeneralSettings& general() const { return general_; }
    const MonitoringSettings& monitoring() const { return monitoring_; }
    const MenuBarSettings& menuBar() const { return menuBar_; }
    const MascotSettings& mascot() const { return mascot_; }
    const NotificationSettings& notifications() const { return notifications_; }
    const WeatherSettings& weather() const { return weather_; }
    const LayoutSettings& layout() const { return layout_; }

private:
    DefaultsStore store_;
    GeneralSettings general_;
    MonitoringSettings monitoring_;
    MenuBarSettings menuBar_;
    MascotSettings mascot_;
    NotificationSettings notifications_;
    WeatherSettings weather_;
    LayoutSettings layout_;
};

}  // namespace trotlet::settings
