#include "shop/qt/CheckInReminders.h"

#include "alerts/qt/NotificationController.h"
#include "settings/AppSettings.h"
#include "settings/SettingsKeys.h"
#include "shop/qt/ShopRuntime.h"

namespace trotlet::shop {

CheckInReminders::CheckInReminders(ShopRuntime& shop, settings::AppSettings& settings,
                                   alerts::NotificationController& notifications, QObject* parent)
    : QObject(parent), shop_(shop), settings_(settings), notifications_(notifications) {}

bool CheckInReminders::check(bool panelOpen, const std::string& mascotName) {
    const bool enabled = settings_.general().checkInReminders();
    if (!enabled || panelOpen) return false;
    EconomyEngine& engine = shop_.engine();
    // Any doubt about the clock, behind or far ahead, and the day itself is uncertain.
    if (engine.clockStatus().kind != ClockStatus::Kind::ok || !engine.isUserActive()) return false;
    auto& store = settings_.store();
    const std::string lastDay = store.string(settings::keys::lastCheckInReminderDay, "");
    if (!engine.isCheckInReminderDue(
            enabled, lastDay.empty() ? std::nullopt : std::optional<std::string>(lastDay)))
        return false;
    const std::string today = engine.dayKey(engine.trustedNow());
    const StreakPreview preview = engine.preview(today);
    store.set(settings::SettingValue(today), settings::keys::lastCheckInReminderDay);
    notifications_.onEvent(
        alerts::CheckInReminder{mascotName, EconomyRules::checkInReward(preview.day), preview.day},
        std::chrono::system_clock::now());
    return true;
}

}  // namespace trotlet::shop
