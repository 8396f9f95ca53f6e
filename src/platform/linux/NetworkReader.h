#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "metrics/MetricsSnapshot.h"
#include "platform/linux/KeptFile.h"

namespace trotlet::platform {

struct InterfaceCounters {
    std::string name;
    std::uint64_t rxBytes = 0, txBytes = 0;
};
// /proc/net/dev into `out` (storage reused); malformed lines are skipped.
void parseNetDev(std::string_view text, std::vector<InterfaceCounters>& out);

struct Route {
    std::string interface;
    std::uint32_t destination = 0, gateway = 0, mask = 0;  // as the kernel prints them
    std::int64_t metric = 0;
    bool up = false, viaGateway = false;
};
std::vector<Route> parseRoutes(std::string_view procNetRoute);

// The default route with the lowest metric that is up.
std::optional<Route> defaultRoute(const std::vector<Route>& routes);

// The IPv4 addresses the kernel calls LOCAL in /proc/net/fib_trie.
std::vector<std::uint32_t> parseLocalAddresses(std::string_view fibTrie);

// Dotted quad of an address as /proc/net/route and fib_trie represent it.
std::string routeAddressText(std::uint32_t kernelValue);
std::string dottedQuad(std::uint32_t hostOrder);

// The IPv6 default route's gateway and interface, when there is no IPv4 one.
struct V6Default {
    std::string interface;
    std::string gateway;
};
std::optional<V6Default> parseIpv6DefaultRoute(std::string_view procNetIpv6Route);

struct WirelessLine {
    std::optional<std::int64_t> qualityPercent, rssiDbm, noiseDbm;
};
// The interface's line of /proc/net/wireless.
std::optional<WirelessLine> parseWireless(std::string_view text, std::string_view interface);

// The network group: rates over the physical interfaces (virtual ones such as bridges, veth
// and VPN tunnels carry traffic that a physical interface also counts), the primary interface
// from the default route, its kind, address and router, Wi-Fi signal where the kernel shows it,
// a VPN interface that is up, and `online` (a default route over an interface with carrier).
class NetworkReader {
public:
    explicit NetworkReader(const std::string& root = "/");

    // `monotonicSec` is when the sample was taken; rates use the time since the previous call.
    // False on the first call (no rates yet).
    bool read(metrics::NetworkMetrics& out, double monotonicSec);

private:
    struct InterfaceInfo {
        metrics::InterfaceKind kind = metrics::InterfaceKind::other;
        bool physical = false;
        bool vpn = false;
    };
    const InterfaceInfo& infoFor(const std::string& name);
    std::optional<std::string> localAddressFor(const std::string& interface,
                                               const std::vector<Route>& routes);

    std::string root_;
    KeptFile dev_, route_, ipv6Route_, fibTrie_, wireless_, ifInet6_;
    std::map<std::string, InterfaceInfo> info_;
    std::vector<InterfaceCounters> current_, previous_;
    // The address only changes with the routes; fib_trie can be long, so it is read again only
    // when /proc/net/route reads differently.
    std::string lastRoutes_;
    std::optional<std::string> lastLocalIP_;
    int readsSinceAddress_ = 0;
    std::optional<double> previousTime_;
};

}  // namespace trotlet::platform
