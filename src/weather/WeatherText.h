#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "weather/WeatherCondition.h"

namespace trotlet::weather {

// The weather's words and numbers, pure and stateless. Numbers are printed in the "C"
// locale; rounding is to the nearest, halves away from zero.

// "just now", "5 min ago", "3 h ago", "2 d ago".
std::string age(double seconds);
// The chip's short form: "1m" at least, "3h", "2d".
std::string shortAge(double seconds);

// Imperial wind for the United States and the United Kingdom. `region` is a locale's
// territory ("US", "GB") or a whole locale name ("en_US.UTF-8", "en-GB").
bool usesImperialWind(std::string_view region);
std::string wind(double kmh, bool imperial);
// Eight compass points; 350° is "N", 22.5° is "NE".
std::string compass(double degrees);

// "12°C", "54°F": the menu bar's temperature, the number right against its unit.
std::string temperatureText(double celsius, bool fahrenheit);

enum class PartOfDay { morning, afternoon, evening, night };
// Morning 5-12, afternoon 12-17, evening 17-22, night the rest (hours in the place's zone).
PartOfDay partOfDay(int hour);
std::string_view partOfDayName(PartOfDay part);

// "Rainy night", "Sunny afternoon", "Snow day", "Good evening", "Quiet night".
std::string greetingPhrase(std::optional<WeatherCondition> condition, PartOfDay part, bool sunUp);

// The header sky's weather at one moment, as the greeting needs it.
struct GreetingInput {
    std::optional<WeatherCondition> condition;
    int placeHour = 12;  // 0-23 in the place's zone
    bool sunUp = true;
    std::string city;
};

// The greeting line: the phrase, " in <city>" when the place's part of day differs from the
// computer's, ", <name>" when a first name is known. The longest form for which `fits` holds
// wins: all parts, then without the name, then without the city (name kept), then the
// phrase alone.
std::string greetingLine(const GreetingInput& input, int localHour,
                         const std::optional<std::string>& firstName,
                         const std::function<bool(const std::string&)>& fits);

}  // namespace trotlet::weather
