// /proc/net: dev (two readings, split at the first NUL byte), route, ipv6_route, fib_trie and
// wireless, as the network reader uses them to find the primary interface, its address, its
// router and its signal.

#include <cmath>

#include "platform/linux/NetworkReader.h"

#include "FuzzSupport.h"

using namespace trotlet;
using namespace trotlet::platform;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto [first, second] = fuzz::twoReadings(fuzz::bytes(data, size));
    std::vector<InterfaceCounters> before, after;
    parseNetDev(first, before);
    parseNetDev(second, after);
    for (const auto& c : after) FUZZ_CHECK(!c.name.empty());

    const auto routes = parseRoutes(first);
    if (auto route = defaultRoute(routes)) {
        FUZZ_CHECK(route->up && route->destination == 0 && !route->interface.empty());
        (void)routeAddressText(route->gateway);
    }
    for (auto address : parseLocalAddresses(first)) (void)dottedQuad(address);
    if (auto v6 = parseIpv6DefaultRoute(first))
        FUZZ_CHECK(!v6->interface.empty() && v6->interface != "lo");

    std::vector<std::string> names{"wlan0"};
    for (const auto& c : before) names.push_back(c.name);
    for (const auto& name : names)
        if (auto w = parseWireless(second, name)) {
            if (w->qualityPercent) FUZZ_CHECK(*w->qualityPercent >= 0 && *w->qualityPercent <= 100);
            if (w->rssiDbm) FUZZ_CHECK(*w->rssiDbm < 0 && *w->rssiDbm > -256);
            if (w->noiseDbm) FUZZ_CHECK(*w->noiseDbm < 0 && *w->noiseDbm > -256);
        }
    return 0;
}
