#include "ui/theme/ThemeStore.h"

#include <QGuiApplication>

namespace trotlet::ui {

ThemeStore::ThemeStore(QObject* parent) : QObject(parent), base_(QGuiApplication::font()) {
    theme_ = Theme::make(panel::ColorScheme::light, base_);
    rebuild();
}

void ThemeStore::setPreference(settings::AppearancePreference preference) {
    preference_ = preference;
    rebuild();
}

void ThemeStore::setPortalScheme(std::optional<panel::PortalColorScheme> scheme) {
    portal_ = scheme;
    rebuild();
}

void ThemeStore::setPaletteIsDark(bool dark) {
    paletteIsDark_ = dark;
    rebuild();
}

void ThemeStore::setBaseFont(const QFont& font) {
    base_ = font;
    theme_ = Theme::make(theme_.scheme(), base_);
    emit changed();
}

void ThemeStore::rebuild() {
    const auto scheme = panel::resolveColorScheme(preference_, portal_, paletteIsDark_);
    if (scheme == theme_.scheme() && theme_.type().body == TypeScale::from(base_).body) return;
    theme_ = Theme::make(scheme, base_);
    emit changed();
}

}  // namespace trotlet::ui
