#include "metrics/WifiExtras.h"

#include <cstdio>

namespace trotlet::metrics {
namespace {

// Well-formed UTF-8 without control characters.
bool isPrintableUtf8(const std::string& s) {
    std::size_t i = 0;
    while (i < s.size()) {
        const auto c = static_cast<unsigned char>(s[i]);
        int extra = 0;
        if (c < 0x20 || c == 0x7f) return false;
        if (c < 0x80)
            extra = 0;
        else if ((c & 0xe0) == 0xc0 && c >= 0xc2)
            extra = 1;
        else if ((c & 0xf0) == 0xe0)
            extra = 2;
        else if ((c & 0xf8) == 0xf0 && c <= 0xf4)
            extra = 3;
        else
            return false;
        if (i + std::size_t(extra) >= s.size() && extra > 0) return false;
        for (int k = 1; k <= extra; ++k)
            if ((static_cast<unsigned char>(s[i + std::size_t(k)]) & 0xc0) != 0x80) return false;
        i += std::size_t(extra) + 1;
    }
    return true;
}

}  // namespace

std::string ssidText(const std::string& bytes) {
    if (isPrintableUtf8(bytes)) return bytes;
    std::string out;
    for (unsigned char c : bytes) {
        if (c >= 0x20 && c < 0x7f) {
            out.push_back(char(c));
            continue;
        }
        char hex[5];
        std::snprintf(hex, sizeof hex, "\\x%02x", c);
        out += hex;
    }
    return out;
}

void mergeWifiExtras(NetworkMetrics& network, const WifiExtras& extras) {
    if (network.interfaceKind != InterfaceKind::wifi || !network.interface ||
        *network.interface != extras.interface)
        return;
    WifiDetails wifi = network.wifi.value_or(WifiDetails{});
    if (!wifi.ssid && extras.ssid && !extras.ssid->empty()) wifi.ssid = ssidText(*extras.ssid);
    if (!wifi.frequencyMHz && extras.frequencyMHz) wifi.frequencyMHz = extras.frequencyMHz;
    if (!wifi.qualityPercent && extras.strengthPercent)
        wifi.qualityPercent = extras.strengthPercent;
    network.wifi = wifi;
}

}  // namespace trotlet::metrics
