#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace trotlet::weather {

// What the sky is doing, in the few classes the UI draws. Persisted and printed by raw name.
enum class WeatherCondition { clear, mainlyClear, partlyCloudy, overcast, fog, drizzle, rain, snow, thunderstorm };

inline constexpr std::array<std::string_view, 9> WeatherConditionNames = {
    "clear", "mainlyClear", "partlyCloudy", "overcast", "fog", "drizzle", "rain", "snow", "thunderstorm"};

std::string_view rawName(WeatherCondition condition);
std::optional<WeatherCondition> conditionFromRawName(std::string_view raw);

// WMO weather interpretation codes (WW) as Open-Meteo reports them.
WeatherCondition conditionFromWmo(int code);
// Rain-like precipitation: drizzle, rain and thunderstorms. Snow is not wet.
bool isWet(WeatherCondition condition);

// "Light rain", "Sunny" / "Clear" for code 0 by day / night, and so on.
std::string title(int code, bool isDay);
// The condition's own title, used for codes the table does not name.
std::string conditionTitle(WeatherCondition condition);
// 0...1: how much rain, snow or fog the painted sky draws.
double intensity(int code);

// The symbol name for a code by day or night. The names follow the common symbol-font
// naming ("cloud.rain.fill"); `symbolIconName` maps each to the freedesktop icon the tray
// and panel draw on Linux.
std::string symbol(int code, bool isDay);
std::string symbolIconName(std::string_view symbol);

}  // namespace trotlet::weather
