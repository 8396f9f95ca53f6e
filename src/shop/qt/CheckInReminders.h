#pragma once

#include <QObject>

#include <string>

namespace trotlet::settings {
class AppSettings;
}
namespace trotlet::alerts {
class NotificationController;
}

namespace trotlet::shop {

class ShopRuntime;

// The daily check-in nudge ("general.checkInReminders"). Looked at with every sample: when the
// engine finds the reminder due (from 18:00 local time, today's check-in still open), the user is
// at the computer, the panel is closed (an open panel already shows the check-in) and the clock
// guard trusts the time, one reminder goes to the notifications, where it shares the fun budget.
// The day it went out is kept in the settings file, so a restart does not repeat it.
class CheckInReminders : public QObject {
    Q_OBJECT
public:
    CheckInReminders(ShopRuntime& shop, settings::AppSettings& settings,
                     alerts::NotificationController& notifications, QObject* parent = nullptr);

    // One look; true when a reminder went to the notifications now.
    bool check(bool panelOpen, const std::string& mascotName);

private:
    ShopRuntime& shop_;
    settings::AppSettings& settings_;
    alerts::NotificationController& notifications_;
};

}  // namespace trotlet::shop
