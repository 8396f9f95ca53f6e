#include "platform/linux/VolumeReader.h"

#include <dirent.h>
#include <limits.h>
#include <stdlib.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <map>
#include <mutex>
#include <set>
#include <thread>

#include "platform/linux/TextScan.h"

namespace trotlet::platform {

namespace {

std::string unescapeOctal(std::string_view s) {
    std::string out;
    out.reserve(s.size());
    for (size_t i = 0; i < s.size(); ++i) {
        if (s[i] == '\\' && i + 3 < s.size() && s[i + 1] >= '0' && s[i + 1] <= '3' &&
            s[i + 2] >= '0' && s[i + 2] <= '7' && s[i + 3] >= '0' && s[i + 3] <= '7') {
            out +=
                static_cast<char>((s[i + 1] - '0') * 64 + (s[i + 2] - '0') * 8 + (s[i + 3] - '0'));
            i += 3;
        } else {
            out += s[i];
        }
    }
    return out;
}

bool isNetworkFs(std::string_view type) {
    for (std::string_view t : {"nfs", "nfs4", "cifs", "smb3", "smbfs", "fuse.sshfs", "9p", "ceph",
                               "afs", "glusterfs", "fuse.rclone", "davfs", "fuse.davfs2"})
        if (type == t) return true;
    return false;
}

std::string lastComponent(const std::string& path) {
    const size_t slash = path.find_last_of('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

}  // namespace

std::vector<MountEntry> parseMountInfo(std::string_view text) {
    std::vector<MountEntry> out;
    TextScan lines(text);
    while (!lines.atEnd()) {
        TextScan scan(lines.line());
        // id parent major:minor root mountpoint options [optional...] - fstype source superoptions
        if (!scan.u64() || !scan.u64()) continue;
        MountEntry e;
        e.device = std::string(scan.token());
        e.root = unescapeOctal(scan.token());
        e.mountPoint = unescapeOctal(scan.token());
        const std::string_view options = scan.token();
        std::string_view t;
        while (!(t = scan.token()).empty() && t != "-") {
        }
        if (t != "-") continue;
        e.fsType = std::string(scan.token());
        e.source = unescapeOctal(scan.token());
        if (e.device.empty() || e.mountPoint.empty() || e.fsType.empty()) continue;
        e.readOnly = options == "ro" || options.substr(0, 3) == "ro,";
        for (size_t start = 0; start <= options.size();) {
            const size_t comma = std::min(options.find(',', start), options.size());
            if (options.substr(start, comma - start) == "noexec") e.noExec = true;
            start = comma + 1;
        }
        out.push_back(std::move(e));
    }
    return out;
}

const MountEntry* mountHolding(const std::vector<MountEntry>& mounts, const std::string& path) {
    const MountEntry* best = nullptr;
    for (const auto& m : mounts) {
        const std::string& point = m.mountPoint;
        const bool holds = point == "/" || path == point ||
                           (path.size() > point.size() &&
                            path.compare(0, point.size(), point) == 0 && path[point.size()] == '/');
        if (holds && (!best || point.size() >= best->mountPoint.size())) best = &m;
    }
    return best;
}

bool deviceIsRemovable(const std::string& root, const std::string& device) {
    // /sys/dev/block/M:m leads to the disk or to a partition inside it; "removable" sits on the
    // disk. USB disks often say 0 there, so a USB path counts as removable too.
    const std::string link = underRoot(root, "/sys/dev/block/" + device);
    char resolved[PATH_MAX];
    if (!::realpath(link.c_str(), resolved)) return false;
    const std::string path = resolved;
    auto flag = readTrimmed(path + "/removable");
    if (!flag) flag = readTrimmed(path + "/../removable");
    return (flag && *flag == "1") || path.find("/usb") != std::string::npos ||
           path.find("/mmc") != std::string::npos;
}

bool isUserVolume(const MountEntry& e) {
    if (e.mountPoint == "/") return true;
    if (isNetworkFs(e.fsType)) return true;
    if (e.fsType == "squashfs" || e.source.rfind("/dev/loop", 0) == 0) return false;
    if (e.mountPoint.rfind("/snap/", 0) == 0 || e.mountPoint.rfind("/proc", 0) == 0 ||
        e.mountPoint.rfind("/sys", 0) == 0 || e.mountPoint.rfind("/run/", 0) == 0 ||
        e.mountPoint == "/run" || e.mountPoint.rfind("/dev", 0) == 0)
        return e.mountPoint.rfind("/run/media/", 0) == 0;  // udisks mounts removable media here
    return e.source.rfind("/dev/", 0) == 0 || e.fsType == "zfs" || e.fsType == "fuseblk";
}

bool meansStorageUnavailable(int error) {
    switch (error) {
        case EIO:
        case ESTALE:
        case ENOTCONN:
        case EHOSTDOWN:
        case EHOSTUNREACH:
        case ENETUNREACH:
        case ENETDOWN:
        case ETIMEDOUT:
        case ECONNREFUSED:
        case ECONNRESET:
        case ECONNABORTED:
        case ENODEV:
        case ENXIO:
        case ENOMEDIUM:
        case EREMOTEIO:
            return true;
        default:  // EACCES and EPERM (not ours), ENOENT (unmounted since), and the unforeseen
            return false;
    }
}

SpaceAnswer statvfsSpace(const std::string& path) {
    struct statvfs s {};
    if (::statvfs(path.c_str(), &s) != 0) return {std::nullopt, meansStorageUnavailable(errno)};
    auto space = spaceFromBlocks(s.f_blocks, s.f_bavail, s.f_frsize ? s.f_frsize : s.f_bsize);
    return {space, !space};
}

std::optional<SpaceReading> spaceFromBlocks(std::uint64_t blocks, std::uint64_t available,
                                            std::uint64_t unit) {
    std::int64_t total = 0, free = 0;  // the builtins check the exact product against int64
    if (__builtin_mul_overflow(blocks, unit, &total) ||
        __builtin_mul_overflow(available, unit, &free))
        return std::nullopt;
    return SpaceReading{total, free};
}

struct VolumeReader::Shared {
    std::mutex mutex;
    std::condition_variable done;
    SpaceQuery query;
    std::map<std::string, SpaceReading> lastGood;  // the latest answer, when it was a reading
    std::set<std::string> refused;                 // the latest answer: not ours to read
    std::set<std::string> unavailable;             // the latest answer: its storage failed
    std::set<std::string> hung;                    // a call outlived the time-out, still out
    bool running = false;
    unsigned generation = 0;
    std::string current;
    std::chrono::steady_clock::time_point startedAt;

    bool answered(const std::string& path) const {
        return lastGood.count(path) || refused.count(path) || unavailable.count(path);
    }
};

namespace {

void refresh(std::shared_ptr<VolumeReader::Shared> shared, std::vector<std::string> paths,
             unsigned generation) {
    for (const auto& path : paths) {
        {
            std::lock_guard lock(shared->mutex);
            if (shared->generation != generation) return;
            shared->current = path;
        }
        const SpaceAnswer answer = shared->query(path);
        std::lock_guard lock(shared->mutex);
        // A late answer is still the freshest one: it ends the hang, and the next round asks
        // this mount again.
        shared->hung.erase(path);
        if (shared->current == path) shared->current.clear();  // no call is out for it now
        shared->lastGood.erase(path);
        shared->refused.erase(path);
        shared->unavailable.erase(path);
        if (answer.space)
            shared->lastGood[path] = *answer.space;
        else if (answer.unavailable)
            shared->unavailable.insert(path);
        else
            shared->refused.insert(path);
        if (shared->generation != generation) return;
    }
    std::lock_guard lock(shared->mutex);
    if (shared->generation == generation) {
        shared->running = false;
        shared->current.clear();
        shared->done.notify_all();
    }
}

}  // namespace

VolumeReader::VolumeReader(const std::string& root, SpaceQuery query,
                           std::chrono::milliseconds timeout,
                           std::chrono::milliseconds refreshInterval,
                           std::chrono::milliseconds firstWait)
    : root_(root),
      mountInfo_(underRoot(root, "/proc/self/mountinfo")),
      timeout_(timeout),
      refreshInterval_(refreshInterval),
      firstWait_(std::min(firstWait, timeout)),
      shared_(std::make_shared<Shared>()) {
    shared_->query = std::move(query);
}

VolumeReader::~VolumeReader() {
    // A worker still inside statvfs holds its own reference to the shared state; moving the
    // generation on tells it to stop after its current call.
    std::lock_guard lock(shared_->mutex);
    ++shared_->generation;
}

const VolumeReader::Known& VolumeReader::describe(const MountEntry& e) {
    for (const auto& k : known_)
        if (k.device == e.device) return k;
    Known k;
    k.device = e.device;
    k.removable = deviceIsRemovable(root_, e.device);
    // A filesystem label names the volume as a file manager would.
    const std::string labels = underRoot(root_, "/dev/disk/by-label");
    if (DIR* dir = ::opendir(labels.c_str())) {
        char sourcePath[PATH_MAX], target[PATH_MAX];
        const bool haveSource =
            !e.source.empty() && ::realpath(underRoot(root_, e.source).c_str(), sourcePath);
        while (dirent* d = ::readdir(dir)) {
            if (d->d_name[0] == '.' || !haveSource) continue;
            if (::realpath((labels + "/" + d->d_name).c_str(), target) &&
                std::string_view(target) == sourcePath)
                k.label = unescapeOctal(std::string_view(d->d_name));
        }
        ::closedir(dir);
    }
    known_.push_back(std::move(k));
    return known_.back();
}

void VolumeReader::read(metrics::DiskMetrics& out) {
    out.volumes.clear();
    auto text = mountInfo_.read();
    if (!text) return;
    std::vector<MountEntry> mounts;
    for (auto& m : parseMountInfo(*text))
        if (isUserVolume(m)) mounts.push_back(std::move(m));
    // One entry per filesystem: bind mounts and second mounts of a device repeat its space.
    // The root mount always stays; otherwise the shortest mount point wins.
    std::stable_sort(mounts.begin(), mounts.end(), [](const MountEntry& a, const MountEntry& b) {
        return a.mountPoint.size() < b.mountPoint.size();
    });
    std::vector<MountEntry> unique;
    for (auto& m : mounts) {
        const bool seen = std::any_of(unique.begin(), unique.end(), [&](const MountEntry& u) {
            return u.device == m.device && !isNetworkFs(m.fsType);
        });
        if (!seen) unique.push_back(std::move(m));
    }

    std::vector<std::string> paths;
    for (const auto& m : unique) paths.push_back(underRoot(root_, m.mountPoint));
    enum class State { unknown, space, refused, unavailable };
    std::vector<State> states(unique.size(), State::unknown);
    std::vector<SpaceReading> readings(unique.size());
    {
        std::unique_lock lock(shared_->mutex);
        const auto now = std::chrono::steady_clock::now();
        if (shared_->running && now - shared_->startedAt > timeout_) {
            // The worker is stuck in one call: leave it there and carry on without that mount,
            // whose space is unknown from now on.
            if (!shared_->current.empty()) {
                shared_->hung.insert(shared_->current);
                shared_->lastGood.erase(shared_->current);
            }
            ++shared_->generation;
            shared_->running = false;
        }
        // Space changes slowly; a fresh round of statvfs calls every refresh interval is plenty,
        // but a mount that has never answered (new, or passed over by a round that hung) need
        // not wait for it.
        const bool anyNew = std::any_of(paths.begin(), paths.end(), [&](const std::string& p) {
            return !shared_->answered(p) && !shared_->hung.count(p);
        });
        if (!shared_->running &&
            (first_ || anyNew || now - shared_->startedAt >= refreshInterval_)) {
            // Local disks first: a dead server then holds up only the shares after it.
            std::vector<std::string> todo;
            for (const bool network : {false, true})
                for (size_t i = 0; i < unique.size(); ++i)
                    if (isNetworkFs(unique[i].fsType) == network && !shared_->hung.count(paths[i]))
                        todo.push_back(paths[i]);
            shared_->running = true;
            shared_->startedAt = now;
            std::thread(refresh, shared_, std::move(todo), shared_->generation).detach();
        }
        if (first_) {
            shared_->done.wait_until(lock, shared_->startedAt + firstWait_,
                                     [&] { return !shared_->running; });
            first_ = false;
        }
        for (size_t i = 0; i < unique.size(); ++i) {
            if (auto it = shared_->lastGood.find(paths[i]); it != shared_->lastGood.end()) {
                states[i] = State::space;
                readings[i] = it->second;
            } else if (shared_->hung.count(paths[i]) || shared_->unavailable.count(paths[i])) {
                states[i] = State::unavailable;
            } else if (shared_->refused.count(paths[i])) {
                states[i] = State::refused;
            }
        }
    }
    for (size_t i = 0; i < unique.size(); ++i) {
        // Not answered yet (its first call is in flight) or answered with an error: not listed.
        if (states[i] == State::unknown || states[i] == State::refused) continue;
        const auto& m = unique[i];
        const Known& k = describe(m);
        metrics::VolumeInfo v;
        v.path = m.mountPoint;
        v.name = k.label
                     ? *k.label
                     : (m.mountPoint == "/" ? std::string("Root") : lastComponent(m.mountPoint));
        if (states[i] == State::space) {  // an unavailable mount's space stays absent
            v.totalBytes = readings[i].totalBytes;
            v.availableBytes = readings[i].availableBytes;
        }
        v.isRemovable = k.removable;
        v.isInternal = !k.removable && !isNetworkFs(m.fsType);
        v.isRoot = m.mountPoint == "/";
        v.isReadOnly = m.readOnly;
        out.volumes.push_back(std::move(v));
    }
    std::sort(out.volumes.begin(), out.volumes.end(), [](const auto& a, const auto& b) {
        return a.isRoot != b.isRoot ? a.isRoot : a.path < b.path;
    });
}

}  // namespace trotlet::platform
