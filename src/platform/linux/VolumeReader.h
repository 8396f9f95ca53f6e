#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "metrics/MetricsSnapshot.h"
#include "platform/linux/KeptFile.h"

namespace trotlet::platform {

struct MountEntry {
    std::string device;      // "major:minor"
    std::string root;        // the directory of the filesystem mounted here ("/" for the whole)
    std::string mountPoint;  // unescaped
    std::string fsType;
    std::string source;
    bool readOnly = false;
    bool noExec = false;  // programs on it cannot be run
};
// /proc/self/mountinfo; octal escapes (\040 for a space) are undone.
std::vector<MountEntry> parseMountInfo(std::string_view text);

// The mount that holds `path` (an absolute path with symbolic links resolved): the entry with
// the longest mount point above it, later mounts winning over earlier ones at the same point.
const MountEntry* mountHolding(const std::vector<MountEntry>& mounts, const std::string& path);

// Whether the block device "major:minor" is removable, read from /sys under `root`. USB and
// MMC disks count as removable even when their flag says 0, as many USB disks do.
bool deviceIsRemovable(const std::string& root, const std::string& device);

// Filesystems a user thinks of as volumes: block-device filesystems and network shares, plus
// whatever is mounted at "/" (an overlay in a container). Pseudo filesystems, snap squashfs
// images and loop devices are left out.
bool isUserVolume(const MountEntry& entry);

struct SpaceReading {
    std::int64_t totalBytes = 0, availableBytes = 0;
};
// What asking a mount for its space gave: the space, or why not.
struct SpaceAnswer {
    std::optional<SpaceReading> space;
    // Without space: the mount is there but its storage can't answer (a share whose server
    // dropped the connection, a failing disk, a size too large to be true), so it is listed as
    // unavailable. Otherwise (not ours to read, or gone since) it is left out.
    bool unavailable = false;
};
using SpaceQuery = std::function<SpaceAnswer(const std::string& path)>;
SpaceAnswer statvfsSpace(const std::string& path);
// Whether a statvfs error means the storage behind a mount can't answer, rather than that the
// mount isn't the caller's to read or is gone.
bool meansStorageUnavailable(int error);
// The space statvfs reports (counts of `unit`-byte blocks); absent when the byte counts do not
// fit 64 bits, as a FUSE file system may claim.
std::optional<SpaceReading> spaceFromBlocks(std::uint64_t blocks, std::uint64_t available,
                                            std::uint64_t unit);

// Mounted volumes and their space. statvfs runs on a worker thread, never on the caller's: a
// hung network mount stalls only that worker, and the caller keeps the volume's last good
// reading while its call is merely slow. A call that outlives `timeout` marks the mount hung: it
// is listed without space (unavailable, never zero), a fresh worker takes over the other
// mounts, and the hung one is asked again once its call returns. A mount whose storage answers
// with an error is listed the same way; one that refuses (another user's private mount) is
// left out.
class VolumeReader {
public:
    static constexpr std::chrono::milliseconds defaultTimeout{300};
    static constexpr std::chrono::milliseconds defaultRefreshInterval{2000};
    static constexpr std::chrono::milliseconds defaultFirstWait{25};

    explicit VolumeReader(const std::string& root = "/", SpaceQuery query = statvfsSpace,
                          std::chrono::milliseconds timeout = defaultTimeout,
                          std::chrono::milliseconds refreshInterval = defaultRefreshInterval,
                          std::chrono::milliseconds firstWait = defaultFirstWait);
    ~VolumeReader();
    VolumeReader(const VolumeReader&) = delete;
    VolumeReader& operator=(const VolumeReader&) = delete;

    // The volumes with the space readings at hand. Only the first call waits, and at most
    // `firstWait` from the start of the first round: enough for healthy disks to answer, so a
    // one-shot sample shows sizes, and short enough that a hung share never holds up a tick.
    // A mount seen for the first time starts a round at once instead of at the next interval.
    void read(metrics::DiskMetrics& out);

    struct Shared;  // between the reader and its workers, which may outlive it

private:
    struct Known {
        std::string device;
        bool removable = false;
        std::optional<std::string> label;
    };
    const Known& describe(const MountEntry& entry);

    std::string root_;
    KeptFile mountInfo_;
    std::chrono::milliseconds timeout_;
    std::chrono::milliseconds refreshInterval_;
    std::chrono::milliseconds firstWait_;
    std::shared_ptr<Shared> shared_;
    std::vector<Known> known_;
    bool first_ = true;
};

}  // namespace trotlet::platform
