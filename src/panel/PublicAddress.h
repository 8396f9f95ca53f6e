#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace trotlet::panel {

// The public address look-up as the network detail shows it. Nothing is asked until the user
// presses the button; then one request goes to an address-echo service.
struct PublicAddressState {
    enum class Status { idle, loading, found, failed };
    Status status = Status::idle;
    std::string address;
    std::int64_t fetchedAt = 0;  // Unix seconds
    std::string error;           // for `failed`: what the user reads
    std::string service;         // the host asked: "api.ipify.org"
    bool operator==(const PublicAddressState&) const = default;
};

// The address in an echo service's answer: the body trimmed, accepted only when it is an IPv4
// or IPv6 address, or a JSON object whose "ip" is one. None for anything else (an HTML error
// page, a captive portal).
std::optional<std::string> parsePublicAddress(std::string_view body);

}  // namespace trotlet::panel
