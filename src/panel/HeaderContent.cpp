#include "panel/HeaderContent.h"

#include "menubar/Format.h"
#include "weather/WeatherCondition.h"
#include "weather/WeatherSky.h"
#include "weather/WeatherText.h"

namespace trotlet::panel {

std::string groupedNumber(std::int64_t n) {
    const bool negative = n < 0;
    std::string digits = std::to_string(negative ? -(n + 1) + 1ULL : std::uint64_t(n));
    for (int i = int(digits.size()) - 3; i > 0; i -= 3) digits.insert(std::size_t(i), ",");
    return negative ? "-" + digits : digits;
}

std::optional<WeatherSummary> summarizeWeather(const std::optional<weather::WeatherReport>& report,
                                               weather::UnixTime now) {
    if (!report) return std::nullopt;
    const auto conditions = weather::conditionsAt(*report, now);
    if (!conditions) return std::nullopt;
    WeatherSummary w;
    w.place = report->location.name;
    w.temperatureC = conditions->temperatureC;
    w.condition = weather::title(conditions->code, conditions->isDay);
    w.symbol = weather::symbol(conditions->code, conditions->isDay);
    w.ageSeconds = std::max<double>(0, double(now - report->fetchedAt));
    // Today is the last day that has begun at the place.
    for (const auto& day : report->daily)
        if (day.date <= now + report->utcOffsetSeconds) {
            w.highC = day.maxC;
            w.lowC = day.minC;
        }
    return w;
}

std::string headerGreeting(const weather::WeatherReport* report, weather::UnixTime now,
                           int localOffsetSeconds, const std::optional<std::string>& firstName,
                           const std::function<bool(const std::string&)>& fits) {
    const int hour = weather::localHour(now, localOffsetSeconds);
    weather::GreetingInput input;
    input.placeHour = hour;
    input.sunUp = hour >= 6 && hour < 18;
    if (report) {
        const weather::WeatherSkyInput sky = weather::skyInputAt(*report, now);
        input.condition = sky.condition;
        input.placeHour = sky.placeHour;
        input.sunUp = sky.sunUp;
        input.city = sky.city;
    }
    return weather::greetingLine(input, hour, firstName, fits);
}

HeaderChips headerChips(std::int64_t fish, const std::optional<WeatherSummary>& weather,
                        bool showWeather, menubar::TemperatureUnit unit) {
    HeaderChips chips;
    chips.fish = groupedNumber(fish);
    if (showWeather && weather) {
        WeatherChip chip;
        chip.symbol = weather->symbol;
        chip.temperature = [&] {
            const auto parts = menubar::Format::temperatureParts(weather->temperatureC, unit);
            return parts.value + parts.unit;
        }();
        if (weather->ageSeconds) chip.age = weather::shortAge(*weather->ageSeconds);
        chips.weather = chip;
    }
    return chips;
}

}  // namespace trotlet::panel
