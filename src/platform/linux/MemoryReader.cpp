#include "platform/linux/MemoryReader.h"

#include <dirent.h>

#include <cmath>

#include "platform/linux/TextScan.h"

namespace trotlet::platform {

MemInfo parseMemInfo(std::string_view text) {
    MemInfo m;
    struct Field { std::string_view key; std::optional<std::uint64_t> MemInfo::*member; };
    static constexpr Field fields[] = {
        {"MemTotal", &MemInfo::total},         {"MemFree", &MemInfo::free},
        {"MemAvailable", &MemInfo::available}, {"Buffers", &MemInfo::buffers},
        {"Cached", &MemInfo::cached},          {"SwapCached", &MemInfo::swapCached},
        {"SwapTotal", &MemInfo::swapTotal},    {"SwapFree", &MemInfo::swapFree},
        {"Shmem", &MemInfo::shmem},            {"SReclaimable", &MemInfo::sReclaimable},
        {"SUnreclaim", &MemInfo::sUnreclaim},  {"KernelStack", &MemInfo::kernelStack},
        {"PageTables", &MemInfo::pageTables},  {"Unevictable", &MemInfo::unevictable},
        {"Zswap", &MemInfo::zswap},
    };
    TextScan lines(text);
    while (!lines.atEnd()) {
        TextScan scan(lines.line());
        std::string_view key = scan.token();
        if (key.empty() || key.back() != ':') continue;
        key.remove_suffix(1);
        for (const auto& f : fields) {
            if (f.key != key) continue;
            auto value = scan.u64();
            const std::string_view unit = scan.token();
            if (!value) break;
            // Every size in meminfo is in kibibytes ("kB"); a bare number would be a count.
            if (unit == "kB" && *value <= UINT64_MAX / 1024) m.*f.member = *value * 1024;
            break;
        }
    }
    return m;
}

PsiAverages parsePressure(std::string_view text) {
    PsiAverages p;
    TextScan lines(text);
    while (!lines.atEnd()) {
        TextScan scan(lines.line());
        const std::string_view kind = scan.token();
        const std::string_view avg10 = scan.token();
        if (avg10.substr(0, 6) != "avg10=") continue;
        auto value = TextScan::parseDouble(avg10.substr(6));
        if (value && (*value < 0 || *value > 100)) value.reset();  // a share of time, in percent
        if (kind == "some") p.someAvg10 = value;
        if (kind == "full") p.fullAvg10 = value;
    }
    return p;
}

std::optional<std::uint64_t> parseZramMemUsed(std::string_view mmStat) {
    TextScan scan(mmStat);
    scan.u64();
    scan.u64();
    return scan.u64();
}

bool mapMemInfo(const MemInfo& m, std::uint64_t zramBytes, metrics::MemoryMetrics& out) {
    if (!m.total || *m.total == 0) return false;
    auto v = [](const std::optional<std::uint64_t>& x) { return x.value_or(0); };
    auto minus = [](std::uint64_t a, std::uint64_t b) { return a > b ? a - b : 0; };
    const std::uint64_t total = *m.total;
    out.total = total;
    out.free = v(m.free);
    out.cached = v(m.buffers) + v(m.cached) + v(m.sReclaimable);
    if (m.available) {
        out.used = minus(total, *m.available);
        out.freePercent = std::llround(100.0 * double(std::min(*m.available, total)) / double(total));
    } else {
        out.used = minus(total, out.free + out.cached);
        out.freePercent.reset();
    }
    out.wired = std::min(out.used, v(m.sUnreclaim) + v(m.kernelStack) + v(m.pageTables) + v(m.unevictable));
    out.compressed = std::min(minus(out.used, out.wired), zramBytes + v(m.zswap));
    out.app = minus(out.used, out.wired + out.compressed);
    out.swapTotal = v(m.swapTotal);
    out.swapUsed = minus(v(m.swapTotal), v(m.swapFree));
    return true;
}

MemoryReader::MemoryReader(const std::string& root)
    : meminfo_(underRoot(root, "/proc/meminfo")), pressure_(underRoot(root, "/proc/pressure/memory")) {
    const std::string block = underRoot(root, "/sys/block");
    if (DIR* dir = ::opendir(block.c_str())) {
        while (dirent* e = ::readdir(dir)) {
            const std::string_view name = e->d_name;
            if (name.substr(0, 4) == "zram") zramStats_.emplace_back(block + "/" + e->d_name + "/mm_stat");
        }
        ::closedir(dir);
    }
}

bool MemoryReader::read(metrics::MemoryMetrics& out) {
    auto text = meminfo_.read();
    if (!text) return false;
    const MemInfo info = parseMemInfo(*text);
    std::uint64_t zram = 0;
    for (auto& f : zramStats_)
        if (auto s = f.read())
            if (auto used = parseZramMemUsed(*s)) zram += *used;
    if (!mapMemInfo(info, zram, out)) return false;
    PsiAverages psi;
    if (auto p = pressure_.read()) psi = parsePressure(*p);
    out.pressure = tracker_.update(psi.someAvg10, psi.fullAvg10);
    return true;
}

}  // namespace trotlet::platform
