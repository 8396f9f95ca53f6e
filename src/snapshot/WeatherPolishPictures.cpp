#include "snapshot/WeatherPolishPictures.h"

#include <QDir>
#include <QImage>

#include "layout/OverviewCardRegistry.h"
#include "panel/HeaderContent.h"
#include "sky/qt/SkyBackdrop.h"
#include "snapshot/SceneFixtures.h"
#include "snapshot/SceneRig.h"
#include "ui/cards/CardView.h"
#include "ui/panel/PanelHeader.h"

namespace trotlet::snapshot {
namespace {

struct Place {
    const char* slug;
    const char* name;
    int utcOffsetHours;
    int code;
    int sunrise, sunset;  // minutes after the place's midnight; 0 and 1440: the sun stays up
};

// Seen from the scenes' clock, 14:30 in Berlin.
constexpr Place places[] = {
    {"berlin", "Berlin", 2, 63, 7 * 60 + 10, 18 * 60 + 52},
    {"melbourne", "Melbourne", 10, 95, 5 * 60 + 59, 18 * 60 + 29},
    {"reykjavik", "Reykjavík", 0, 45, 7 * 60 + 29, 19 * 60 + 5},
    {"tokyo", "Tokyo", 9, 73, 5 * 60 + 30, 17 * 60 + 30},
    {"longyearbyen", "Longyearbyen", 2, 0, 0, 24 * 60},
};

weather::WeatherReport forecastFor(const Place& place, weather::UnixTime now) {
    weather::WeatherReport r = sceneForecast(place.code);
    r.location.name = place.name;
    r.utcOffsetSeconds = place.utcOffsetHours * 3600;
    r.fetchedAt = now - 600;
    // The place's own day around `now`, every hour of it in the one condition.
    const weather::UnixTime local = now + r.utcOffsetSeconds;
    const weather::UnixTime midnight =
        local - ((local % 86400) + 86400) % 86400 - r.utcOffsetSeconds;
    r.hourly.clear();
    for (int h = -2; h < 26; ++h) {
        weather::WeatherHour hour;
        hour.time = midnight + h * 3600;
        hour.code = place.code;
        hour.temperatureC = 14;
        hour.cloudCover = 60;
        const int minute = ((h % 24) + 24) % 24 * 60;
        hour.isDay = minute >= place.sunrise && minute < place.sunset;
        r.hourly.push_back(hour);
    }
    r.current.time = now - 3600 * 5;  // past its horizon: the hourly slots speak
    r.daily.front().date = midnight;
    r.daily.front().sunrise = midnight + place.sunrise * 60;
    r.daily.front().sunset = midnight + place.sunset * 60;
    return r;
}

}  // namespace

std::vector<PolishPicture> writeWeatherPolishPictures(const std::string& dir, std::string& error) {
    std::vector<PolishPicture> written;
    const QDir folder(QString::fromStdString(dir));
    if (!QDir().mkpath(folder.path())) {
        error = "cannot create " + dir;
        return {};
    }
    for (const Place& place : places) {
        SceneRig rig(metrics::MetricsFixture::normal);
        auto& model = rig.model();
        const auto now =
            std::chrono::duration_cast<std::chrono::seconds>(sceneTime().time_since_epoch())
                .count();
        const auto report = forecastFor(place, now);
        model.setWeather(panel::summarizeWeather(report, now), report);
        rig.settings().weather().setShowInHeader(true);

        ui::PanelHeader header(model, rig.theme());
        header.setFixedWidth(ui::Metrics::panelWidth);
        header.setAnimating(false);
        new sky::SkyBackdrop(header, model, rig.theme());
        header.setAttribute(Qt::WA_DontShowOnScreen);
        header.show();

        const auto* kind = layout::OverviewCardRegistry::standard().kind("weather");
        const auto size = kind ? kind->defaultSize : layout::CardSize::wide;
        const auto span = kind ? kind->span(size) : layout::standardSpan(size);
        ui::CardView card("weather", size, model, rig.theme());
        card.setFixedSize(int(layout::GridMetrics::width(span.cols)),
                          int(layout::GridMetrics::height(span.rows)));
        card.setAttribute(Qt::WA_DontShowOnScreen);
        card.show();

        for (auto scheme : {panel::ColorScheme::light, panel::ColorScheme::dark}) {
            const std::string suffix =
                scheme == panel::ColorScheme::dark ? "-dark@2x.png" : "-light@2x.png";
            for (auto& [what, widget] : {std::pair<const char*, QWidget*>{"header", &header},
                                         std::pair<const char*, QWidget*>{"card", &card}}) {
                const QImage image = rig.render(*widget, scheme);
                const std::string file = std::string(place.slug) + "-" + what + suffix;
                if (!image.save(folder.filePath(QString::fromStdString(file)), "PNG")) {
                    error = "cannot write " +
                            folder.filePath(QString::fromStdString(file)).toStdString();
                    return {};
                }
                written.push_back({place.name, file});
            }
        }
    }
    return written;
}

}  // namespace trotlet::snapshot
