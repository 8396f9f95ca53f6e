#include "weather/WeatherCondition.h"

#include "settings/RawEnum.h"

namespace trotlet::weather {

std::string_view rawName(WeatherCondition c) { return settings::rawName(c, WeatherConditionNames); }

std::optional<WeatherCondition> conditionFromRawName(std::string_view raw) {
    return settings::fromRawName<WeatherCondition>(raw, WeatherConditionNames);
}

WeatherCondition conditionFromWmo(int code) {
    switch (code) {
        case 0:
            return WeatherCondition::clear;
        case 1:
            return WeatherCondition::mainlyClear;
        case 2:
            return WeatherCondition::partlyCloudy;
        case 3:
            return WeatherCondition::overcast;
        case 45:
        case 48:
            return WeatherCondition::fog;
        case 51:
        case 53:
        case 55:
        case 56:
        case 57:
            return WeatherCondition::drizzle;
        case 61:
        case 63:
        case 65:
        case 66:
        case 67:
        case 80:
        case 81:
        case 82:
            return WeatherCondition::rain;
        case 71:
        case 73:
        case 75:
        case 77:
        case 85:
        case 86:
            return WeatherCondition::snow;
        case 95:
        case 96:
        case 99:
            return WeatherCondition::thunderstorm;
        default:
            return code < 4 ? WeatherCondition::clear : WeatherCondition::overcast;
    }
}

bool isWet(WeatherCondition c) {
    return c == WeatherCondition::drizzle || c == WeatherCondition::rain ||
           c == WeatherCondition::thunderstorm;
}

std::string conditionTitle(WeatherCondition c) {
    switch (c) {
        case WeatherCondition::clear:
            return "Clear";
        case WeatherCondition::mainlyClear:
            return "Mostly clear";
        case WeatherCondition::partlyCloudy:
            return "Partly cloudy";
        case WeatherCondition::overcast:
            return "Overcast";
        case WeatherCondition::fog:
            return "Fog";
        case WeatherCondition::drizzle:
            return "Drizzle";
        case WeatherCondition::rain:
            return "Rain";
        case WeatherCondition::snow:
            return "Snow";
        case WeatherCondition::thunderstorm:
            return "Thunderstorm";
    }
    return "Overcast";
}

std::string title(int code, bool isDay) {
    switch (code) {
        case 0:
            return isDay ? "Sunny" : "Clear";
        case 1:
            return "Mostly clear";
        case 2:
            return "Partly cloudy";
        case 3:
            return "Overcast";
        case 45:
            return "Fog";
        case 48:
            return "Freezing fog";
        case 51:
            return "Light drizzle";
        case 53:
            return "Drizzle";
        case 55:
            return "Heavy drizzle";
        case 56:
        case 57:
            return "Freezing drizzle";
        case 61:
            return "Light rain";
        case 63:
            return "Rain";
        case 65:
            return "Heavy rain";
        case 66:
        case 67:
            return "Freezing rain";
        case 71:
            return "Light snow";
        case 73:
            return "Snow";
        case 75:
            return "Heavy snow";
        case 77:
            return "Snow grains";
        case 80:
            return "Light showers";
        case 81:
            return "Showers";
        case 82:
            return "Heavy showers";
        case 85:
            return "Snow showers";
        case 86:
            return "Heavy snow showers";
        case 95:
            return "Thunderstorm";
        case 96:
        case 99:
            return "Thunderstorm, hail";
        default:
            return conditionTitle(conditionFromWmo(code));
    }
}

double intensity(int code) {
    switch (code) {
        case 45:
            return 0.8;
        case 51:
            return 0.35;
        case 53:
        case 56:
            return 0.45;
        case 55:
        case 57:
            return 0.55;
        case 61:
        case 66:
        case 80:
            return 0.7;
        case 63:
        case 81:
            return 0.9;
        case 71:
            return 0.5;
        case 73:
            return 0.75;
        case 77:
            return 0.4;
        case 85:
            return 0.6;
        default:
            return 1.0;
    }
}

std::string symbol(int code, bool isDay) {
    switch (conditionFromWmo(code)) {
        case WeatherCondition::clear:
            return isDay ? "sun.max.fill" : "moon.stars.fill";
        case WeatherCondition::mainlyClear:
            return isDay ? "sun.max.fill" : "moon.fill";
        case WeatherCondition::partlyCloudy:
            return isDay ? "cloud.sun.fill" : "cloud.moon.fill";
        case WeatherCondition::overcast:
            return "cloud.fill";
        case WeatherCondition::fog:
            return "cloud.fog.fill";
        case WeatherCondition::drizzle:
            return "cloud.drizzle.fill";
        case WeatherCondition::rain:
            if (code == 65 || code == 67 || code == 82) return "cloud.heavyrain.fill";
            if (code == 80 || code == 81)
                return isDay ? "cloud.sun.rain.fill" : "cloud.moon.rain.fill";
            return "cloud.rain.fill";
        case WeatherCondition::snow:
            return "cloud.snow.fill";
        case WeatherCondition::thunderstorm:
            return "cloud.bolt.rain.fill";
    }
    return "cloud.fill";
}

std::string symbolIconName(std::string_view s) {
    // Names from the freedesktop icon naming spec (and the "-night" variants common themes
    // ship); the panel falls back to drawing its own glyph when a theme lacks one.
    struct Pair {
        std::string_view symbol, icon;
    };
    static constexpr Pair kIcons[] = {
        {"sun.max.fill", "weather-clear"},
        {"moon.stars.fill", "weather-clear-night"},
        {"moon.fill", "weather-clear-night"},
        {"cloud.sun.fill", "weather-few-clouds"},
        {"cloud.moon.fill", "weather-few-clouds-night"},
        {"cloud.fill", "weather-overcast"},
        {"cloud.fog.fill", "weather-fog"},
        {"cloud.drizzle.fill", "weather-showers-scattered"},
        {"cloud.rain.fill", "weather-showers"},
        {"cloud.heavyrain.fill", "weather-showers"},
        {"cloud.sun.rain.fill", "weather-showers-scattered"},
        {"cloud.moon.rain.fill", "weather-showers-scattered"},
        {"cloud.snow.fill", "weather-snow"},
        {"cloud.bolt.rain.fill", "weather-storm"},
    };
    for (const auto& p : kIcons)
        if (p.symbol == s) return std::string(p.icon);
    return "weather-overcast";
}

}  // namespace trotlet::weather
