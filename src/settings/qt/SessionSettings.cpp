#include "settings/qt/SessionSettings.h"

#include <QLocale>

#include "settings/qt/SettingsFile.h"

namespace trotlet::settings {

bool localeUsesUSMeasurement() {
    return QLocale::system().measurementSystem() == QLocale::ImperialUSSystem;
}

std::unique_ptr<AppSettings> makeSessionSettings(const cli::LaunchOptions& options,
                                                 const std::vector<std::string>& args) {
    if (options.skipOnboarding) {
        auto settings = std::make_unique<AppSettings>(DefaultsStore::ephemeral(args),
                                                      localeUsesUSMeasurement());
        settings->general().completeOnboardingForSession();
        return settings;
    }
    return std::make_unique<AppSettings>(standardDefaultsStore(), localeUsesUSMeasurement());
}

}  // namespace trotlet::settings
