// The fixed system facts: os-release, /proc/cpuinfo's model, the pci.ids database that names a
// GPU, and a DRM client's fdinfo busy time.

#include "platform/linux/GpuReader.h"
#include "platform/linux/SystemReader.h"

#include "FuzzSupport.h"

using namespace trotlet;
using namespace trotlet::platform;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto text = fuzz::bytes(data, size);
    (void)parseOsRelease(text);
    if (auto model = parseCpuModel(text)) FUZZ_CHECK(!model->empty());
    for (auto [vendor, device] :
         {std::pair{0x1002u, 0x73ffu}, std::pair{0x8086u, 0x46a6u}, std::pair{0x10deu, 0x2684u}})
        (void)pciName(text, vendor, device);
    std::uint64_t client = 0;
    for (std::string_view driver : {"i915", "amdgpu", "xe"})
        (void)parseDrmFdinfo(text, driver, client);
    return 0;
}
