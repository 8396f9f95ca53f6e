#include "panel/Appearance.h"

namespace trotlet::panel {

ColorScheme resolveColorScheme(settings::AppearancePreference preference,
                               std::optional<PortalColorScheme> portal, bool paletteIsDark) {
    switch (preference) {
        case settings::AppearancePreference::light:
            return ColorScheme::light;
        case settings::AppearancePreference::dark:
            return ColorScheme::dark;
        case settings::AppearancePreference::system:
            break;
    }
    if (portal == 1u) return ColorScheme::dark;
    if (portal == 2u) return ColorScheme::light;
    return paletteIsDark ? ColorScheme::dark : ColorScheme::light;
}

}  // namespace trotlet::panel
