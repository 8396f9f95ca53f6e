#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <nlohmann/json.hpp>

// Typed, non-throwing field reads for the weather codecs: a missing key, a null or a value
// of the wrong type reads as nothing, and the caller decides whether that is fatal.
namespace trotlet::weather::json {

inline const nlohmann::json* field(const nlohmann::json& j, const char* key) {
    if (!j.is_object()) return nullptr;
    auto it = j.find(key);
    if (it == j.end() || it->is_null()) return nullptr;
    return &*it;
}

inline std::optional<double> number(const nlohmann::json& j, const char* key) {
    auto* f = field(j, key);
    if (!f || !f->is_number()) return std::nullopt;
    return f->get<double>();
}

// Integers also accept whole floating-point numbers (12.0), as some encoders write them.
inline std::optional<std::int64_t> integer(const nlohmann::json& j, const char* key) {
    auto* f = field(j, key);
    if (!f) return std::nullopt;
    if (f->is_number_integer()) return f->get<std::int64_t>();
    if (f->is_number_float()) {
        double d = f->get<double>();
        if (d > -9.0e18 && d < 9.0e18 && d == static_cast<double>(static_cast<std::int64_t>(d)))
            return static_cast<std::int64_t>(d);
    }
    return std::nullopt;
}

inline std::optional<std::string> string(const nlohmann::json& j, const char* key) {
    auto* f = field(j, key);
    if (!f || !f->is_string()) return std::nullopt;
    return f->get<std::string>();
}

inline std::optional<bool> boolean(const nlohmann::json& j, const char* key) {
    auto* f = field(j, key);
    if (!f) return std::nullopt;
    if (f->is_boolean()) return f->get<bool>();
    if (f->is_number_integer()) return f->get<std::int64_t>() != 0;
    return std::nullopt;
}

}  // namespace trotlet::weather::json
