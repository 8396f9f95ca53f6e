#include "platform/linux/NetworkReader.h"

#include <sys/stat.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "platform/linux/TextScan.h"

namespace trotlet::platform {

using metrics::InterfaceKind;

void parseNetDev(std::string_view text, std::vector<InterfaceCounters>& out) {
    size_t n = 0;
    TextScan lines(text);
    while (!lines.atEnd()) {
        std::string_view line = lines.line();
        const size_t colon = line.find(':');
        if (colon == std::string_view::npos) continue;  // the two header lines
        const std::string_view name = trimmed(line.substr(0, colon));
        TextScan scan(line.substr(colon + 1));
        auto rx = scan.u64();
        for (int i = 0; i < 7; ++i) scan.token();
        auto tx = scan.u64();
        if (name.empty() || !rx || !tx) continue;
        if (n >= out.size()) out.emplace_back();
        out[n].name.assign(name);
        out[n].rxBytes = *rx;
        out[n].txBytes = *tx;
        ++n;
    }
    out.resize(n);
}

std::vector<Route> parseRoutes(std::string_view text) {
    std::vector<Route> out;
    TextScan lines(text);
    lines.line();  // header
    while (!lines.atEnd()) {
        TextScan scan(lines.line());
        Route r;
        r.interface = std::string(scan.token());
        auto dest = TextScan::parseHex(scan.token());
        auto gw = TextScan::parseHex(scan.token());
        auto flags = TextScan::parseHex(scan.token());
        scan.token();  // RefCnt
        scan.token();  // Use
        auto metric = scan.i64();
        auto mask = TextScan::parseHex(scan.token());
        if (r.interface.empty() || !dest || !gw || !flags || !metric || !mask) continue;
        r.destination = static_cast<std::uint32_t>(*dest);
        r.gateway = static_cast<std::uint32_t>(*gw);
        r.mask = static_cast<std::uint32_t>(*mask);
        r.metric = *metric;
        r.up = (*flags & 0x1) != 0;          // RTF_UP
        r.viaGateway = (*flags & 0x2) != 0;  // RTF_GATEWAY
        out.push_back(std::move(r));
    }
    return out;
}

std::optional<Route> defaultRoute(const std::vector<Route>& routes) {
    std::optional<Route> best;
    for (const auto& r : routes)
        if (r.up && r.destination == 0 && r.mask == 0 && (!best || r.metric < best->metric)) best = r;
    return best;
}

std::string routeAddressText(std::uint32_t v) {
    // The kernel prints the network-order word as a native integer; on a little-endian machine
    // the first octet is the lowest byte.
    const auto* b = reinterpret_cast<const unsigned char*>(&v);
    char buf[16];
    std::snprintf(buf, sizeof buf, "%u.%u.%u.%u", b[0], b[1], b[2], b[3]);
    return buf;
}

std::string dottedQuad(std::uint32_t h) {
    char buf[16];
    std::snprintf(buf, sizeof buf, "%u.%u.%u.%u", (h >> 24) & 255, (h >> 16) & 255, (h >> 8) & 255,
                  h & 255);
    return buf;
}

namespace {

std::optional<std::uint32_t> parseDotted(std::string_view s) {
    std::uint32_t out = 0;
    for (int i = 0; i < 4; ++i) {
        const size_t dot = s.find('.');
        auto part = TextScan::parseU64(i < 3 ? s.substr(0, dot) : s);
        if (!part || *part > 255 || (i < 3 && dot == std::string_view::npos)) return std::nullopt;
        out = (out << 8) | static_cast<std::uint32_t>(*part);
        if (i < 3) s = s.substr(dot + 1);
    }
    return out;
}

// The host-order value of an address as /proc/net/route prints it.
std::uint32_t hostOrder(std::uint32_t kernelValue) {
    const auto* b = reinterpret_cast<const unsigned char*>(&kernelValue);
    return (std::uint32_t(b[0]) << 24) | (std::uint32_t(b[1]) << 16) | (std::uint32_t(b[2]) << 8) | b[3];
}

std::string ipv6Text(std::string_view hex) {
    // 32 hex digits, shown as eight groups with leading zeros dropped (no "::" shortening is
    // needed for a router address to be usable, but it is friendlier, so compress the longest
    // zero run).
    if (hex.size() != 32) return {};
    unsigned groups[8];
    for (int i = 0; i < 8; ++i) {
        auto g = TextScan::parseHex(hex.substr(size_t(i) * 4, 4));
        if (!g) return {};
        groups[i] = static_cast<unsigned>(*g);
    }
    int bestStart = -1, bestLen = 0;
    for (int i = 0; i < 8;) {
        if (groups[i] != 0) { ++i; continue; }
        int j = i;
        while (j < 8 && groups[j] == 0) ++j;
        if (j - i > bestLen && j - i > 1) { bestStart = i; bestLen = j - i; }
        i = j;
    }
    std::string out;
    char buf[8];
    for (int i = 0; i < 8; ++i) {
        if (i == bestStart) {
            out += "::";
            i += bestLen - 1;
            continue;
        }
        if (!out.empty() && out.back() != ':') out += ':';
        std::snprintf(buf, sizeof buf, "%x", groups[i]);
        out += buf;
    }
    return out;
}

}  // namespace

std::vector<std::uint32_t> parseLocalAddresses(std::string_view text) {
    std::vector<std::uint32_t> out;
    std::optional<std::uint32_t> last;
    TextScan lines(text);
    while (!lines.atEnd()) {
        const std::string_view line = lines.line();
        const size_t leaf = line.find("|-- ");
        if (leaf != std::string_view::npos) {
            last = parseDotted(trimmed(line.substr(leaf + 4)));
            continue;
        }
        if (last && line.find("/32 host LOCAL") != std::string_view::npos) {
            if (std::find(out.begin(), out.end(), *last) == out.end()) out.push_back(*last);
        }
    }
    return out;
}

std::optional<V6Default> parseIpv6DefaultRoute(std::string_view text) {
    std::optional<V6Default> best;
    std::uint64_t bestMetric = UINT64_MAX;
    TextScan lines(text);
    while (!lines.atEnd()) {
        TextScan scan(lines.line());
        const std::string_view dest = scan.token();
        const std::string_view destLen = scan.token();
        scan.token();  // source
        scan.token();  // source prefix length
        const std::string_view nextHop = scan.token();
        auto metric = TextScan::parseHex(scan.token());
        scan.token();  // refcnt
        scan.token();  // use
        auto flags = TextScan::parseHex(scan.token());
        const std::string_view iface = scan.token();
        if (dest != std::string_view("00000000000000000000000000000000") || destLen != "00" ||
            !metric || !flags || iface.empty() || iface == "lo")
            continue;
        if ((*flags & 0x3) != 0x3) continue;  // up, via a gateway
        if (*metric < bestMetric) {
            bestMetric = *metric;
            best = V6Default{std::string(iface), ipv6Text(nextHop)};
        }
    }
    return best;
}

std::optional<WirelessLine> parseWireless(std::string_view text, std::string_view interface) {
    TextScan lines(text);
    while (!lines.atEnd()) {
        const std::string_view line = lines.line();
        const size_t colon = line.find(':');
        if (colon == std::string_view::npos || trimmed(line.substr(0, colon)) != interface) continue;
        TextScan scan(line.substr(colon + 1));
        scan.token();  // status
        auto number = [](std::string_view t) {
            if (!t.empty() && t.back() == '.') t.remove_suffix(1);
            return TextScan::parseDouble(t);
        };
        auto quality = number(scan.token());
        auto level = number(scan.token());
        auto noise = number(scan.token());
        WirelessLine w;
        // Drivers scale link quality to 70 (the wext maximum iwlwifi and most others report).
        if (quality && *quality > 0)
            w.qualityPercent = std::llround(std::min(100.0, *quality * 100 / 70));
        // -256 and 0 are the drivers' "no reading" values; a level is judged once rounded, so
        // "-0.05" is no reading rather than 0 dBm.
        auto dbm = [](std::optional<double> v) -> std::optional<std::int64_t> {
            if (!v || !(*v > -256.5 && *v < 0)) return std::nullopt;
            const auto rounded = std::llround(*v);
            if (rounded >= 0 || rounded <= -256) return std::nullopt;
            return rounded;
        };
        w.rssiDbm = dbm(level);
        w.noiseDbm = dbm(noise);
        return w;
    }
    return std::nullopt;
}

NetworkReader::NetworkReader(const std::string& root)
    : root_(root),
      dev_(underRoot(root, "/proc/net/dev")),
      route_(underRoot(root, "/proc/net/route")),
      ipv6Route_(underRoot(root, "/proc/net/ipv6_route")),
      fibTrie_(underRoot(root, "/proc/net/fib_trie")),
      wireless_(underRoot(root, "/proc/net/wireless")),
      ifInet6_(underRoot(root, "/proc/net/if_inet6")) {}

const NetworkReader::InterfaceInfo& NetworkReader::infoFor(const std::string& name) {
    auto it = info_.find(name);
    if (it != info_.end()) return it->second;
    InterfaceInfo info;
    const std::string base = underRoot(root_, "/sys/class/net/") + name;
    struct stat st {};
    info.physical = ::stat((base + "/device").c_str(), &st) == 0;
    const auto type = readTrimmed(base + "/type").value_or("");
    const auto uevent = readTrimmed(base + "/uevent").value_or("");
    const auto devtype = valueAfter(uevent, "DEVTYPE", '=').value_or("");
    auto startsWith = [&](std::string_view p) { return std::string_view(name).substr(0, p.size()) == p; };
    if (type == "772" || name == "lo") {
        info.kind = InterfaceKind::loopback;
    } else if (devtype == "wlan" || ::stat((base + "/wireless").c_str(), &st) == 0 ||
               ::stat((base + "/phy80211").c_str(), &st) == 0) {
        info.kind = InterfaceKind::wifi;
    } else if (devtype == "wwan" || startsWith("wwan") || startsWith("rmnet")) {
        info.kind = InterfaceKind::cellular;
    } else if (type == "1" && info.physical) {
        info.kind = InterfaceKind::wired;
    }
    // Tunnels: tun/tap devices (type 65534 "none" for tun), WireGuard, PPP.
    info.vpn = devtype == "wireguard" || type == "65534" || type == "512" || startsWith("tun") ||
               startsWith("wg") || startsWith("ppp") || startsWith("tap") || startsWith("ipsec");
    if (info.vpn) info.physical = false;
    return info_.emplace(name, info).first->second;
}

std::optional<std::string> NetworkReader::localAddressFor(const std::string& interface,
                                                          const std::vector<Route>& routes) {
    auto trie = fibTrie_.read();
    if (!trie) return std::nullopt;
    const auto locals = parseLocalAddresses(*trie);
    // The local address inside a subnet routed directly over the interface.
    for (const auto& r : routes) {
        if (r.interface != interface || r.mask == 0) continue;
        const std::uint32_t mask = hostOrder(r.mask), net = hostOrder(r.destination);
        for (auto a : locals)
            if ((a & mask) == (net & mask) && (a >> 24) != 127) return dottedQuad(a);
    }
    return std::nullopt;
}

bool NetworkReader::read(metrics::NetworkMetrics& out, double now) {
    std::vector<Route> routes;
    bool routesChanged = true;
    if (auto text = route_.read()) {
        routesChanged = *text != lastRoutes_;
        if (routesChanged) lastRoutes_.assign(*text);
        routes = parseRoutes(*text);
    } else {
        lastRoutes_.clear();
    }
    std::optional<std::string> primary;
    if (auto d = defaultRoute(routes)) {
        primary = d->interface;
        out.router = routeAddressText(d->gateway);
        // An address can change without the routes (a new DHCP lease in the same subnet), so
        // look again every 30 reads as well.
        if (routesChanged || ++readsSinceAddress_ >= 30) {
            lastLocalIP_ = localAddressFor(d->interface, routes);
            readsSinceAddress_ = 0;
        }
        out.localIP = lastLocalIP_;
    } else if (auto text = ipv6Route_.read()) {
        if (auto v6 = parseIpv6DefaultRoute(*text)) {
            primary = v6->interface;
            out.router = v6->gateway;
        }
    }
    out.interface = primary;

    auto dev = dev_.read();
    if (dev) parseNetDev(*dev, current_);
    else current_.clear();

    bool anyPhysical = false;
    for (const auto& c : current_) {
        const auto& info = infoFor(c.name);
        anyPhysical = anyPhysical || (info.physical && info.kind != InterfaceKind::loopback);
        if (info.vpn && !out.vpnInterface) {
            const auto state = readTrimmed(underRoot(root_, "/sys/class/net/") + c.name + "/operstate");
            // Tunnels report "unknown" while they pass traffic; "down" means not connected.
            if (state && *state != "down") out.vpnInterface = c.name;
        }
    }
    auto counted = [&](const InterfaceCounters& c) {
        const auto& info = infoFor(c.name);
        if (info.kind == InterfaceKind::loopback) return false;
        // In a VM or container every interface may be virtual; then the primary one stands in.
        return anyPhysical ? info.physical : (primary && c.name == *primary);
    };

    std::uint64_t rxTotal = 0, txTotal = 0, rxDelta = 0, txDelta = 0;
    bool anyCounted = false;
    for (const auto& c : current_) {
        if (!counted(c)) continue;
        anyCounted = true;
        rxTotal += c.rxBytes;
        txTotal += c.txBytes;
        auto prev = std::find_if(previous_.begin(), previous_.end(),
                                 [&](const InterfaceCounters& p) { return p.name == c.name; });
        // A counter that went backwards (driver reload, 32-bit wrap) gives no delta this time.
        if (prev != previous_.end()) {
            if (c.rxBytes >= prev->rxBytes) rxDelta += c.rxBytes - prev->rxBytes;
            if (c.txBytes >= prev->txBytes) txDelta += c.txBytes - prev->txBytes;
        }
    }
    if (anyCounted) {
        out.totalDownBytes = rxTotal;
        out.totalUpBytes = txTotal;
    }
    bool haveRates = false;
    if (previousTime_ && now > *previousTime_) {
        const double dt = now - *previousTime_;
        out.downBps = double(rxDelta) / dt;
        out.upBps = double(txDelta) / dt;
        haveRates = true;
    }
    std::swap(previous_, current_);
    previousTime_ = now;

    if (primary) {
        const InterfaceInfo info = infoFor(*primary);
        out.interfaceKind = info.kind;
        const std::string base = underRoot(root_, "/sys/class/net/") + *primary;
        const auto carrier = readTrimmed(base + "/carrier");
        const auto state = readTrimmed(base + "/operstate");
        // Tunnels and some virtual NICs have no carrier file; their operstate says "unknown".
        out.online = carrier ? *carrier == "1" : (state && *state != "down");
        if (info.kind == InterfaceKind::wifi)
            if (auto w = wireless_.read())
                if (auto line = parseWireless(*w, *primary))
                    out.wifi = metrics::WifiDetails{std::nullopt, line->rssiDbm, line->noiseDbm,
                                                    line->qualityPercent, std::nullopt};
    } else {
        out.online = false;
    }
    return haveRates;
}

}  // namespace trotlet::platform
