#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "shop/Timestamp.h"

// Lenient field readers for the shop's extras: a missing key or a value of the wrong shape
// leaves the caller's default in place and the rest of the object still loads.
namespace trotlet::shop::json {

inline const nlohmann::json* field(const nlohmann::json& object, std::string_view key) {
    if (!object.is_object()) return nullptr;
    const auto it = object.find(key);
    return it == object.end() ? nullptr : &*it;
}

inline void read(const nlohmann::json& object, std::string_view key, int64_t& out) {
    const auto* v = field(object, key);
    if (!v) return;
    if (v->is_number_unsigned()) {
        if (v->get<uint64_t>() <= static_cast<uint64_t>(std::numeric_limits<int64_t>::max())) out = v->get<int64_t>();
    } else if (v->is_number_integer()) {
        out = v->get<int64_t>();
    }
}

inline void read(const nlohmann::json& object, std::string_view key, uint64_t& out) {
    const auto* v = field(object, key);
    if (v && v->is_number_unsigned()) out = v->get<uint64_t>();
    else if (v && v->is_number_integer() && v->get<int64_t>() >= 0) out = static_cast<uint64_t>(v->get<int64_t>());
}

inline void read(const nlohmann::json& object, std::string_view key, double& out) {
    const auto* v = field(object, key);
    if (v && v->is_number()) out = v->get<double>();
}

inline void read(const nlohmann::json& object, std::string_view key, bool& out) {
    const auto* v = field(object, key);
    if (v && v->is_boolean()) out = v->get<bool>();
}

inline void read(const nlohmann::json& object, std::string_view key, std::string& out) {
    const auto* v = field(object, key);
    if (v && v->is_string()) out = v->get<std::string>();
}

inline void readTime(const nlohmann::json& object, std::string_view key, Timestamp& out) {
    const auto* v = field(object, key);
    if (!v || !v->is_string()) return;
    if (auto t = parseIso8601(v->get<std::string>())) out = *t;
}

inline void readTime(const nlohmann::json& object, std::string_view key, std::optional<Timestamp>& out) {
    const auto* v = field(object, key);
    if (!v || !v->is_string()) return;
    if (auto t = parseIso8601(v->get<std::string>())) out = *t;
}

// A list of strings; elements of another type are dropped, the rest kept.
inline void readStrings(const nlohmann::json& object, std::string_view key, std::vector<std::string>& out) {
    const auto* v = field(object, key);
    if (!v || !v->is_array()) return;
    out.clear();
    for (const auto& element : *v)
        if (element.is_string()) out.push_back(element.get<std::string>());
}

inline nlohmann::ordered_json timeOrNull(const std::optional<Timestamp>& t) {
    return t ? nlohmann::ordered_json(formatIso8601(*t)) : nlohmann::ordered_json(nullptr);
}

}  // namespace trotlet::shop::json
