#pragma once

#include <QObject>

#include <optional>

#include "panel/Appearance.h"
#include "ui/theme/Theme.h"

namespace trotlet::ui {

// The theme the panel paints with, kept current: the appearance setting, the desktop's colour
// scheme from the settings portal (live) and the desktop font. Views read `theme()` at paint
// time and repaint on `changed`.
class ThemeStore : public QObject {
    Q_OBJECT
public:
    explicit ThemeStore(QObject* parent = nullptr);

    const Theme& theme() const { return theme_; }

    void setPreference(settings::AppearancePreference preference);
    void setPortalScheme(std::optional<panel::PortalColorScheme> scheme);
    // The toolkit palette's answer, for desktops without the portal.
    void setPaletteIsDark(bool dark);
    void setBaseFont(const QFont& font);

signals:
    void changed();

private:
    void rebuild();

    settings::AppearancePreference preference_ = settings::AppearancePreference::system;
    std::optional<panel::PortalColorScheme> portal_;
    bool paletteIsDark_ = false;
    QFont base_;
    Theme theme_;
};

}  // namespace trotlet::ui
