#include "weather/WeatherText.h"

#include <cmath>
#include <cstdio>

namespace trotlet::weather {

namespace {

long long roundHalfAway(double v) { return std::llround(v); }

std::string number(long long v) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%lld", v);
    return buf;
}

}  // namespace

std::string age(double s) {
    if (s < 90) return "just now";
    if (s < 3600) return number(roundHalfAway(s / 60)) + " min ago";
    if (s < 129600) return number(roundHalfAway(s / 3600)) + " h ago";
    return number(roundHalfAway(s / 86400)) + " d ago";
}

std::string shortAge(double s) {
    if (s < 3600) {
        long long m = roundHalfAway(s / 60);
        return number(m < 1 ? 1 : m) + "m";
    }
    if (s < 129600) return number(roundHalfAway(s / 3600)) + "h";
    return number(roundHalfAway(s / 86400)) + "d";
}

bool usesImperialWind(std::string_view region) {
    // Accept a bare territory or a locale name, "en_US.UTF-8" / "en-GB" / "US".
    std::string_view territory = region;
    if (auto sep = region.find_first_of("_-"); sep != std::string_view::npos)
        territory = region.substr(sep + 1, 2);
    territory = territory.substr(0, 2);
    return territory == "US" || territory == "GB" || territory == "UK";
}

std::string wind(double kmh, bool imperial) {
    if (imperial) return number(roundHalfAway(kmh / 1.609344)) + " mph";
    return number(roundHalfAway(kmh)) + " km/h";
}

std::string compass(double degrees) {
    static const char* kPoints[] = {"N", "NE", "E", "SE", "S", "SW", "W", "NW"};
    if (!std::isfinite(degrees)) return "N";
    double index = std::floor((std::fmod(degrees, 360.0) + 360.0 + 22.5) / 45.0);
    long long i = static_cast<long long>(index) % 8;
    return kPoints[i];
}

std::string temperatureText(double celsius, bool fahrenheit) {
    double v = fahrenheit ? celsius * 9.0 / 5.0 + 32.0 : celsius;
    long long n = roundHalfAway(v);
    return number(n) + (fahrenheit ? "°F" : "°C");
}

PartOfDay partOfDay(int hour) {
    if (hour >= 5 && hour < 12) return PartOfDay::morning;
    if (hour >= 12 && hour < 17) return PartOfDay::afternoon;
    if (hour >= 17 && hour < 22) return PartOfDay::evening;
    return PartOfDay::night;
}

std::string_view partOfDayName(PartOfDay part) {
    switch (part) {
        case PartOfDay::morning: return "morning";
        case PartOfDay::afternoon: return "afternoon";
        case PartOfDay::evening: return "evening";
        case PartOfDay::night: return "night";
    }
    return "night";
}

std::string greetingPhrase(std::optional<WeatherCondition> condition, PartOfDay part, bool sunUp) {
    const std::string when(partOfDayName(part));
    const bool daytime = part == PartOfDay::morning || part == PartOfDay::afternoon;
    auto plain = [&] { return part == PartOfDay::night ? std::string("Quiet night") : "Good " + when; };
    if (!condition) return plain();
    switch (*condition) {
        case WeatherCondition::clear:
        case WeatherCondition::mainlyClear:
            return std::string(daytime && sunUp ? "Sunny" : "Clear") + " " + when;
        case WeatherCondition::partlyCloudy: return plain();
        case WeatherCondition::overcast: return "Grey " + when;
        case WeatherCondition::fog: return "Foggy " + when;
        case WeatherCondition::drizzle: return "Drizzly " + when;
        case WeatherCondition::rain: return "Rainy " + when;
        case WeatherCondition::thunderstorm: return "Stormy " + when;
        case WeatherCondition::snow: return daytime ? std::string("Snow day") : "Snowy " + when;
    }
    return plain();
}

std::string greetingLine(const GreetingInput& input, int localHour,
                         const std::optional<std::string>& firstName,
                         const std::function<bool(const std::string&)>& fits) {
    const PartOfDay placePart = partOfDay(input.placeHour);
    const std::string phrase = greetingPhrase(input.condition, placePart, input.sunUp);
    const bool elsewhere = placePart != partOfDay(localHour) && !input.city.empty();
    const std::string city = elsewhere ? " in " + input.city : "";
    const std::string name = firstName && !firstName->empty() ? ", " + *firstName : "";

    for (const std::string& candidate : {phrase + city + name, phrase + city, phrase + name}) {
        if (fits(candidate)) return candidate;
    }
    return phrase;
}

}  // namespace trotlet::weather
