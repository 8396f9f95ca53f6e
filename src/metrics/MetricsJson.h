#pragma once

#include <optional>
#include <string>

#include <nlohmann/json.hpp>

#include "metrics/MetricKinds.h"
#include "metrics/MetricsSnapshot.h"

namespace trotlet::metrics {

// JSON for a sample and each of its groups. Keys are the field names in declaration order;
// absent optionals are left out; enums are their raw names; times are ISO 8601 strings (see
// IsoTime.h). Decoding is strict about the fields that are not optional (a missing or mistyped
// one fails with a message naming the key) and ignores keys it does not know, so
// decode(encode(x)) == x for every value.
using Json = nlohmann::ordered_json;

Json encode(const CPUMetrics&);
Json encode(const MemoryMetrics&);
Json encode(const VolumeInfo&);
Json encode(const DiskMetrics&);
Json encode(const WifiDetails&);
Json encode(const NetworkMetrics&);
Json encode(const BatteryMetrics&);
Json encode(const TemperatureSensor&);
Json encode(const FanReading&);
Json encode(const ThermalMetrics&);
Json encode(const GPUMetrics&);
Json encode(const std::optional<GPUMetrics>&);  // {} when absent
Json encode(const ProcessRow&);
Json encode(const ProcessMetrics&);
Json encode(const SystemInfo&);
Json encode(const MetricsSnapshot&);

template <typename T>
struct Decoded {
    std::optional<T> value;
    std::string error;  // when value is absent: which key was wrong and how
};

// Instantiated for every type `encode` takes (std::optional<GPUMetrics> included).
template <typename T>
Decoded<T> decode(const Json& json);

// The same for text; a parse error is reported as a failure, never thrown.
Decoded<MetricsSnapshot> decodeSnapshotText(const std::string& text);

}  // namespace trotlet::metrics
