#include "panel/PublicAddress.h"

#include <arpa/inet.h>

#include <nlohmann/json.hpp>

namespace trotlet::panel {
namespace {

std::string_view trimmed(std::string_view s) {
    const auto first = s.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos) return {};
    const auto last = s.find_last_not_of(" \t\r\n");
    return s.substr(first, last - first + 1);
}

bool isAddress(const std::string& text) {
    // inet_pton is a pure parser: no lookup, no I/O.
    unsigned char buffer[16];
    return inet_pton(AF_INET, text.c_str(), buffer) == 1 ||
           inet_pton(AF_INET6, text.c_str(), buffer) == 1;
}

}  // namespace

std::optional<std::string> parsePublicAddress(std::string_view body) {
    const std::string_view text = trimmed(body);
    if (text.empty() || text.size() > 4096) return std::nullopt;
    if (text.front() == '{') {
        const auto json = nlohmann::json::parse(text, nullptr, false);
        if (!json.is_object() || !json.contains("ip") || !json["ip"].is_string())
            return std::nullopt;
        const std::string ip = json["ip"].get<std::string>();
        if (isAddress(ip)) return ip;
        return std::nullopt;
    }
    const std::string ip(text);
    if (isAddress(ip)) return ip;
    return std::nullopt;
}

}  // namespace trotlet::panel
