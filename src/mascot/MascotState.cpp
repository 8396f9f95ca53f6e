#include "mascot/MascotState.h"

#include "settings/RawEnum.h"

namespace trotlet::mascot {

nlohmann::ordered_json MascotState::toJson() const {
    nlohmann::ordered_json json;
    json["mood"] = settings::rawName(mood, MascotMoodNames);
    json["accessories"] = accessories.rawValue;
    json["load"] = load;
    json["gait"] = settings::rawName(gait, GaitNames);
    json["cyclesPerSecond"] = cyclesPerSecond;
    json["loadBand"] = loadBand;
    json["userAway"] = userAway;
    return json;
}

// Lenient: a missing or mistyped field keeps its default, so an old snapshot still loads.
MascotState MascotState::fromJson(const nlohmann::json& json) {
    MascotState s;
    if (!json.is_object()) return s;
    auto text = [&](const char* key) -> std::string {
        auto it = json.find(key);
        return it != json.end() && it->is_string() ? it->get<std::string>() : std::string();
    };
    auto number = [&](const char* key, double fallback) {
        auto it = json.find(key);
        return it != json.end() && it->is_number() ? it->get<double>() : fallback;
    };
    if (auto m = settings::fromRawName<MascotMood>(text("mood"), MascotMoodNames)) s.mood = *m;
    if (auto g = settings::fromRawName<Gait>(text("gait"), GaitNames)) s.gait = *g;
    if (auto it = json.find("accessories"); it != json.end() && it->is_number_unsigned())
        s.accessories.rawValue = it->get<std::uint64_t>();
    s.load = number("load", 0);
    s.cyclesPerSecond = number("cyclesPerSecond", 0);
    if (auto it = json.find("loadBand");
        it != json.end() && it->is_number_unsigned() && it->get<std::uint64_t>() <= 255)
        s.loadBand = static_cast<std::uint8_t>(it->get<std::uint64_t>());
    if (auto it = json.find("userAway"); it != json.end() && it->is_boolean())
        s.userAway = it->get<bool>();
    return s;
}

}  // namespace trotlet::mascot
