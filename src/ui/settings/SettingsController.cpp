#include "ui/settings/SettingsController.h"

#include "layout/LayoutStore.h"
#include "platform/freedesktop/GlobalShortcutKeys.h"
#include "settings/AppSettings.h"
#include "ui/panel/PanelModel.h"
#include "weather/WeatherLocation.h"
#include "weather/qt/WeatherSearch.h"

namespace trotlet::ui {

SettingsController::SettingsController(QObject* parent) : QObject(parent) {}

SettingsController::~SettingsController() = default;

panel::SettingsFacts SettingsController::facts(const PanelModel& model) const {
    panel::SettingsFacts f = facts_;
    const auto& settings = model.settings();
    f.mascotName = model.mascotName();
    f.shortcutText = shortcutText(settings.general().globalShortcutKeyCode(),
                                  settings.general().globalShortcutModifiers())
                         .toStdString();
    f.cards = panel::cardFacts(model.layout());
    f.canResetLayout = model.layout().canReset();
    if (const auto& encoded = settings.weather().encodedLocation())
        if (const auto place = weather::decodeLocationSetting(*encoded))
            f.placeName = panel::placeWords(*place);
    if (const auto* sample = model.sample()) f.hasBattery = sample->battery.present;
    return f;
}

QString SettingsController::shortcutText(int keyCode, int modifiers) {
    const auto keys = platform::GlobalShortcutKeys::fromCarbon(keyCode, modifiers);
    return keys ? QString::fromStdString(keys->displayText) : QString();
}

void SettingsController::setShortcut(panel::ShortcutStatus status, const QString& problem) {
    if (facts_.shortcutStatus == status && facts_.shortcutProblem == problem.toStdString()) return;
    facts_.shortcutStatus = status;
    facts_.shortcutProblem = problem.toStdString();
    emit factsChanged();
}

void SettingsController::setAutostartProblem(const QString& problem) {
    if (facts_.autostartProblem == problem.toStdString()) return;
    facts_.autostartProblem = problem.toStdString();
    emit factsChanged();
}

void SettingsController::setTestNotificationResult(const QString& result) {
    facts_.testNotificationResult = result.toStdString();
    emit factsChanged();
}

void SettingsController::setAbout(const QString& version, const QString& build,
                                  const QString& configDir, const QString& dataDir) {
    facts_.version = version.toStdString();
    facts_.build = build.toStdString();
    facts_.configDir = configDir.toStdString();
    facts_.dataDir = dataDir.toStdString();
    emit factsChanged();
}

void SettingsController::setUpdates(bool available, const QString& line) {
    facts_.updatesAvailable = available;
    facts_.updateLine = line.toStdString();
    emit factsChanged();
}

void SettingsController::setPlaceSearch(std::unique_ptr<weather::WeatherSearch> search) {
    search_ = std::move(search);
    emit factsChanged();
}

void SettingsController::setWelcomeGift(bool granted, std::int64_t fish) {
    if (granted == giftGranted_ && fish == giftFish_) return;
    giftGranted_ = granted;
    giftFish_ = fish;
    emit giftChanged();
}

}  // namespace trotlet::ui
