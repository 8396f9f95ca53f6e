#include "weather/WeatherError.h"

namespace trotlet::weather {

std::string WeatherError::message() const {
    switch (kind) {
        case Kind::server: return "Open-Meteo is unavailable (" + std::to_string(status) + ")";
        case Kind::offline: return "You're offline";
        case Kind::badResponse: return "Unexpected answer from Open-Meteo";
        case Kind::cancelled: return "Cancelled";
    }
    return "Unexpected answer from Open-Meteo";
}

std::string WeatherError::name() const {
    switch (kind) {
        case Kind::server: return "server(" + std::to_string(status) + ")";
        case Kind::offline: return "offline";
        case Kind::badResponse: return "badResponse";
        case Kind::cancelled: return "cancelled";
    }
    return "badResponse";
}

}  // namespace trotlet::weather
