#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "metrics/MetricsSnapshot.h"

namespace trotlet::metrics {

// What the network manager knows about a Wi-Fi link that the kernel's files do not say: the
// network's name and the channel's frequency (and a signal strength when the kernel gives none).
struct WifiExtras {
    std::string interface;
    std::optional<std::string> ssid;
    std::optional<double> frequencyMHz;
    std::optional<std::int64_t> strengthPercent;
    bool operator==(const WifiExtras&) const = default;
};

// Adds the extras to the sample's Wi-Fi details when they are about its primary interface and
// that interface is Wi-Fi; the kernel's own readings are kept where it has them.
void mergeWifiExtras(NetworkMetrics& network, const WifiExtras& extras);

// An SSID as text: its bytes when they are UTF-8 (and printable), else each byte in hex
// ("\x8f"), so an odd name still shows as something.
std::string ssidText(const std::string& bytes);

// Where the store asks for the extras of an interface, without waiting: the answer on hand, if
// any (a source refreshes in the background). Implemented over NetworkManager.
class WifiSource {
public:
    virtual ~WifiSource() = default;
    virtual std::optional<WifiExtras> extrasFor(const std::string& interface) = 0;
};

}  // namespace trotlet::metrics
