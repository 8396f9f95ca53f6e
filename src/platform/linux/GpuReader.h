#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "metrics/MetricsSnapshot.h"
#include "platform/linux/KeptFile.h"

namespace trotlet::platform {

class NvmlLibrary;

// "Vendor Device" names from a pci.ids database for a vendor and device id; absent when the
// database lacks them.
std::optional<std::string> pciName(std::string_view pciIds, unsigned vendor, unsigned device);

// Sums the DRM fdinfo busy time (ns) of the "render" engine of the given driver in one fdinfo
// text; absent when the text is not a DRM client of that driver. `clientId` gets drm-client-id
// so a client shared by several descriptors counts once.
std::optional<std::uint64_t> parseDrmFdinfo(std::string_view text, std::string_view driver,
                                            std::uint64_t& clientId);

// GPU load without waking a sleeping GPU:
// - AMD (amdgpu): gpu_busy_percent and mem_info_vram_used in sysfs;
// - NVIDIA: NVML, loaded with dlopen at first use (absent when the library is missing), and
//   asked only while the card's PCI runtime power state is not "suspended";
// - Intel (i915, xe): the render engine's busy time from the DRM fdinfo of the processes whose
//   descriptors are readable;
// otherwise the group is absent.
class GpuReader {
public:
    explicit GpuReader(const std::string& root = "/");
    ~GpuReader();
    std::optional<metrics::GPUMetrics> read(double monotonicSec);

private:
    struct Card {
        unsigned vendor = 0, device = 0;
        std::string sysDevice;  // /sys/class/drm/cardN/device
        std::string pciAddress;
        std::string driver;
        std::string name;
        KeptFile busy, vramUsed, runtimeStatus;
    };
    std::optional<metrics::GPUMetrics> readAmd(Card& card);
    std::optional<metrics::GPUMetrics> readNvidia(Card& card);
    std::optional<metrics::GPUMetrics> readIntel(Card& card, double now);

    std::string root_;
    std::vector<Card> cards_;
    std::unique_ptr<NvmlLibrary> nvml_;
    bool nvmlTried_ = false;
    std::optional<std::uint64_t> previousIntelNs_;
    double previousIntelTime_ = 0;
};

}  // namespace trotlet::platform
