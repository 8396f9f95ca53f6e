#pragma once

#include <string>
#include <variant>

namespace trotlet::weather {

// Every weather failure the user can meet, with the words they see. The kind decides the
// store's reaction: everything but `cancelled` counts toward the backoff.
struct WeatherError {
    enum class Kind { server, offline, badResponse, cancelled };

    Kind kind = Kind::badResponse;
    int status = 0;  // the HTTP status, for `server` only

    static WeatherError server(int status) { return {Kind::server, status}; }
    static WeatherError offline() { return {Kind::offline, 0}; }
    static WeatherError badResponse() { return {Kind::badResponse, 0}; }
    static WeatherError cancelled() { return {Kind::cancelled, 0}; }

    std::string message() const;
    // A short machine name for traces and harness JSON: "server(503)", "offline", ...
    std::string name() const;
    bool operator==(const WeatherError&) const = default;
};

// A value or the error that replaced it.
template <typename T>
using WeatherResult = std::variant<T, WeatherError>;

template <typename T>
const WeatherError* errorOf(const WeatherResult<T>& r) {
    return std::get_if<WeatherError>(&r);
}

}  // namespace trotlet::weather
