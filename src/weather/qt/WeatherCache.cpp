#include "weather/qt/WeatherCache.h"

#include <cstdio>
#include <cstdlib>

#include <nlohmann/json.hpp>

#include "json/ParseBounded.h"
#include "platform/linux/AtomicFile.h"
#include "platform/linux/XdgPaths.h"

namespace trotlet::weather {

WeatherCache WeatherCache::forSession(bool ephemeral) {
    if (const char* env = std::getenv("TROTLET_WEATHER_CACHE"); env && *env) return WeatherCache(std::string(env));
    if (ephemeral) return WeatherCache();
    return WeatherCache(platform::XdgPaths::dataDir() + "/weather.json");
}

std::optional<WeatherReport> WeatherCache::load() const {
    if (!path_) return std::nullopt;
    auto read = platform::readWholeFile(*path_);
    if (read.status != platform::ReadStatus::ok) return std::nullopt;
    auto j = trotlet::json::parseBounded(read.contents);
    if (j.is_discarded() || !j.is_object()) return std::nullopt;
    auto version = j.find("version");
    if (version == j.end() || !version->is_number_integer() || version->get<int>() != kVersion)
        return std::nullopt;
    auto report = j.find("report");
    if (report == j.end()) return std::nullopt;
    return reportFromJson(*report);
}

bool WeatherCache::save(const WeatherReport& report, UnixTime savedAt) const {
    if (!path_) return false;
    auto slash = path_->find_last_of('/');
    if (slash != std::string::npos && slash > 0 && !platform::ensureDirectory(path_->substr(0, slash)))
        return false;
    nlohmann::ordered_json j;
    j["version"] = kVersion;
    j["savedAt"] = savedAt;
    j["report"] = reportToJson(report);
    return static_cast<bool>(platform::writeAtomically(*path_, j.dump(2) + "\n"));
}

void WeatherCache::clear() const {
    if (path_) std::remove(path_->c_str());
}

}  // namespace trotlet::weather
