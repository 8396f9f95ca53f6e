#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace trotlet::metrics {

// Which kinds of reading a sample must fill: an option set over a 64-bit raw value, one bit
// per kind. Providers fill exactly the groups a set names, so a consumer that needs little
// (the menu bar alone) makes sampling cheap.
struct MetricKinds {
    std::uint64_t rawValue = 0;

    constexpr MetricKinds() = default;
    constexpr explicit MetricKinds(std::uint64_t raw) : rawValue(raw) {}

    static const MetricKinds cpu;
    static const MetricKinds memory;
    static const MetricKinds diskIO;
    static const MetricKinds volumes;
    static const MetricKinds network;
    static const MetricKinds battery;
    static const MetricKinds sensors;
    static const MetricKinds gpu;
    static const MetricKinds processes;
    static const MetricKinds system;
    static const MetricKinds all;

    // The ten one-bit sets, in bit order.
    static const std::array<MetricKinds, 10> singles;

    constexpr bool contains(MetricKinds other) const {
        return (rawValue & other.rawValue) == other.rawValue;
    }
    constexpr bool intersects(MetricKinds other) const { return (rawValue & other.rawValue) != 0; }
    constexpr bool isEmpty() const { return rawValue == 0; }

    constexpr MetricKinds operator|(MetricKinds other) const {
        return MetricKinds(rawValue | other.rawValue);
    }
    constexpr MetricKinds operator&(MetricKinds other) const {
        return MetricKinds(rawValue & other.rawValue);
    }
    constexpr MetricKinds& operator|=(MetricKinds other) {
        rawValue |= other.rawValue;
        return *this;
    }
    constexpr bool operator==(const MetricKinds&) const = default;

    // Member names of the kinds in this set, in bit order ("cpu", "memory", ...). Bits outside
    // the ten kinds have no name and are left out.
    std::vector<std::string_view> names() const;

    // The one-bit set with this member name, or an empty set for an unknown name.
    static MetricKinds fromName(std::string_view name);
};

inline constexpr MetricKinds MetricKinds::cpu{1};
inline constexpr MetricKinds MetricKinds::memory{2};
inline constexpr MetricKinds MetricKinds::diskIO{4};
inline constexpr MetricKinds MetricKinds::volumes{8};
inline constexpr MetricKinds MetricKinds::network{16};
inline constexpr MetricKinds MetricKinds::battery{32};
inline constexpr MetricKinds MetricKinds::sensors{64};
inline constexpr MetricKinds MetricKinds::gpu{128};
inline constexpr MetricKinds MetricKinds::processes{256};
inline constexpr MetricKinds MetricKinds::system{512};
inline constexpr MetricKinds MetricKinds::all{1023};

inline constexpr std::array<MetricKinds, 10> MetricKinds::singles = {
    MetricKinds::cpu,     MetricKinds::memory,  MetricKinds::diskIO,    MetricKinds::volumes,
    MetricKinds::network, MetricKinds::battery, MetricKinds::sensors,   MetricKinds::gpu,
    MetricKinds::processes, MetricKinds::system};

inline constexpr std::array<std::string_view, 10> MetricKindNames = {
    "cpu", "memory", "diskIO", "volumes", "network", "battery", "sensors", "gpu", "processes",
    "system"};

}  // namespace trotlet::metrics
