// /proc/diskstats (two readings, split at the first NUL byte) and /proc/self/mountinfo, with
// the choice of which devices count as disks and which mounts as the user's volumes.

#include "platform/linux/DiskReader.h"
#include "platform/linux/VolumeReader.h"

#include "FuzzSupport.h"

using namespace trotlet;
using namespace trotlet::platform;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto [first, second] = fuzz::twoReadings(fuzz::bytes(data, size));
    std::vector<DiskCounters> before, after;
    parseDiskStats(first, before);
    parseDiskStats(second, after);
    for (const auto& d : after) {
        FUZZ_CHECK(!d.name.empty());
        (void)countsAsDisk(d.name, d.name.size() % 2 == 0);
    }
    for (const auto& mount : parseMountInfo(first)) {
        FUZZ_CHECK(!mount.device.empty() && !mount.mountPoint.empty() && !mount.fsType.empty());
        (void)isUserVolume(mount);
    }
    return 0;
}
