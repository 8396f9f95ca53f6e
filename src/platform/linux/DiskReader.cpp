#include "platform/linux/DiskReader.h"

#include <sys/stat.h>

#include <algorithm>

#include "platform/linux/TextScan.h"

namespace trotlet::platform {

void parseDiskStats(std::string_view text, std::vector<DiskCounters>& out) {
    size_t n = 0;
    TextScan lines(text);
    while (!lines.atEnd()) {
        TextScan scan(lines.line());
        // major minor name reads merged sectorsRead msRead writes merged sectorsWritten ...
        if (!scan.u64() || !scan.u64()) continue;
        const std::string_view name = scan.token();
        scan.token();
        scan.token();
        auto read = scan.u64();
        scan.token();
        scan.token();
        scan.token();
        auto written = scan.u64();
        if (name.empty() || !read || !written) continue;
        if (n >= out.size()) out.emplace_back();
        out[n].name.assign(name);
        out[n].sectorsRead = *read;
        out[n].sectorsWritten = *written;
        ++n;
    }
    out.resize(n);
}

bool countsAsDisk(std::string_view name, bool wholeDisk) {
    if (!wholeDisk) return false;
    for (std::string_view layered : {"loop", "ram", "zram", "dm-", "md", "nbd", "fd"})
        if (name.substr(0, layered.size()) == layered) return false;
    return true;
}

DiskIOReader::DiskIOReader(const std::string& root)
    : root_(root), stats_(underRoot(root, "/proc/diskstats")) {}

bool DiskIOReader::counted(const std::string& name) {
    for (const auto& [n, verdict] : verdicts_)
        if (n == name) return verdict;
    struct stat st {};
    // Partitions have no entry of their own in /sys/block; a "!" in a name stands for "/".
    std::string sysName = name;
    std::replace(sysName.begin(), sysName.end(), '/', '!');
    const bool whole = ::stat(underRoot(root_, "/sys/block/" + sysName).c_str(), &st) == 0;
    const bool verdict = countsAsDisk(name, whole);
    verdicts_.emplace_back(name, verdict);
    return verdict;
}

bool DiskIOReader::read(metrics::DiskMetrics& out, double now) {
    auto text = stats_.read();
    if (!text) {
        previousTime_.reset();
        return false;
    }
    parseDiskStats(*text, current_);
    std::uint64_t read = 0, written = 0, readDelta = 0, writtenDelta = 0;
    bool any = false;
    for (const auto& d : current_) {
        if (!counted(d.name)) continue;
        any = true;
        read += d.sectorsRead;
        written += d.sectorsWritten;
        auto prev = std::find_if(previous_.begin(), previous_.end(),
                                 [&](const DiskCounters& p) { return p.name == d.name; });
        // Counters are unsigned long in the kernel and wrap at 2^32 on 32-bit systems; a
        // reading below the last one (wrap, or a disk re-attached) gives no delta this time.
        if (prev != previous_.end()) {
            if (d.sectorsRead >= prev->sectorsRead) readDelta += d.sectorsRead - prev->sectorsRead;
            if (d.sectorsWritten >= prev->sectorsWritten) writtenDelta += d.sectorsWritten - prev->sectorsWritten;
        }
    }
    if (!any) {
        std::swap(previous_, current_);
        previousTime_ = now;
        return false;
    }
    out.totalReadBytes = read * 512;
    out.totalWrittenBytes = written * 512;
    bool haveRates = false;
    if (previousTime_ && now > *previousTime_) {
        const double dt = now - *previousTime_;
        out.readBps = double(readDelta) * 512 / dt;
        out.writeBps = double(writtenDelta) * 512 / dt;
        haveRates = true;
    }
    std::swap(previous_, current_);
    previousTime_ = now;
    return haveRates;
}

}  // namespace trotlet::platform
