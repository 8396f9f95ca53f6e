#include "platform/linux/SystemReader.h"

#include "metrics/MetricsSnapshot.h"
#include "metrics/TimeRange.h"
#include "platform/linux/ProcessReader.h"
#include "platform/linux/TextScan.h"
#include "settings/Platform.h"

namespace trotlet::platform {

namespace {

std::string unquoted(std::string_view v) {
    if (v.size() >= 2 && (v.front() == '"' || v.front() == '\'') && v.back() == v.front())
        v = v.substr(1, v.size() - 2);
    return std::string(v);
}

// DMI strings that vendors leave unset.
bool meaningful(const std::optional<std::string>& s) {
    if (!s || s->empty()) return false;
    for (std::string_view junk :
         {"To be filled by O.E.M.", "To Be Filled By O.E.M.", "Default string",
          "System Product Name", "System Version", "Not Applicable", "None", "Not Specified",
          "0123456789", "Type1ProductConfigId"})
        if (*s == junk) return false;
    return true;
}

}  // namespace

std::optional<std::string> parseOsRelease(std::string_view text) {
    if (auto pretty = valueAfter(text, "PRETTY_NAME", '='); pretty && !unquoted(*pretty).empty())
        return unquoted(*pretty);
    auto name = valueAfter(text, "NAME", '=');
    if (!name) return std::nullopt;
    std::string out = unquoted(*name);
    if (auto version = valueAfter(text, "VERSION", '=')) out.append(" ").append(unquoted(*version));
    return out;
}

std::optional<std::string> parseCpuModel(std::string_view cpuinfo) {
    for (std::string_view key : {"model name", "Hardware", "Processor", "cpu model"}) {
        TextScan lines(cpuinfo);
        while (!lines.atEnd()) {
            const std::string_view line = lines.line();
            const size_t colon = line.find(':');
            if (colon == std::string_view::npos || trimmed(line.substr(0, colon)) != key) continue;
            const auto value = trimmed(line.substr(colon + 1));
            if (!value.empty()) return std::string(value);
        }
    }
    return std::nullopt;
}

std::optional<long long> parseBootTime(std::string_view procStat) {
    TextScan lines(procStat);
    while (!lines.atEnd()) {
        TextScan scan(lines.line());
        if (scan.token() != "btime") continue;
        // A boot time the clock conversion cannot hold is no boot time.
        auto boot = scan.i64();
        if (boot && !metrics::isPlausibleUnixSeconds(static_cast<double>(*boot))) boot.reset();
        return boot;
    }
    return std::nullopt;
}

SystemReader::SystemReader(const std::string& root, long ticksPerSecond, long pageSize)
    : uptime_(underRoot(root, "/proc/uptime")),
      selfStat_(underRoot(root, "/proc/self/stat")),
      selfStatm_(underRoot(root, "/proc/self/statm")),
      ticksPerSecond_(ticksPerSecond),
      pageSize_(pageSize) {
    const std::string dmi = underRoot(root, "/sys/class/dmi/id/");
    auto product = readTrimmed(dmi + "product_name");
    auto vendor = readTrimmed(dmi + "sys_vendor");
    auto version = readTrimmed(dmi + "product_version");
    auto family = readTrimmed(dmi + "product_family");
    if (meaningful(product)) {
        fixed_.model = *product;
    } else if (auto dt = readTrimmed(underRoot(root, "/proc/device-tree/model")); meaningful(dt)) {
        fixed_.model = *dt;  // ARM boards name themselves in the device tree
    } else if (auto board = readTrimmed(dmi + "board_name"); meaningful(board)) {
        fixed_.model = *board;
    } else {
        fixed_.model = std::string(settings::systemName).append(" ").append(settings::machineNoun);
    }
    // Lenovo keeps the marketing name in product_version ("ThinkPad X1 Carbon Gen 9"), most others
    // in product_family; with the vendor in front it reads as a name.
    std::optional<std::string> name;
    if (meaningful(version) && version->find(' ') != std::string::npos)
        name = version;
    else if (meaningful(family) && *family != fixed_.model)
        name = family;
    if (name && meaningful(vendor) && name->find(*vendor) == std::string::npos)
        name = std::string(*vendor).append(" ").append(*name);
    else if (!name && meaningful(vendor) && meaningful(product))
        name = std::string(*vendor).append(" ").append(*product);
    fixed_.modelName = name;
    if (auto cpuinfo = readTrimmed(underRoot(root, "/proc/cpuinfo")))
        fixed_.chip = parseCpuModel(*cpuinfo);
    auto osRelease = readTrimmed(underRoot(root, "/etc/os-release"));
    if (!osRelease) osRelease = readTrimmed(underRoot(root, "/usr/lib/os-release"));
    if (osRelease) fixed_.osVersion = parseOsRelease(*osRelease).value_or("");
    if (fixed_.osVersion.empty()) {
        auto kernel = readTrimmed(underRoot(root, "/proc/sys/kernel/osrelease"));
        fixed_.osVersion = "Linux";
        if (kernel) fixed_.osVersion.append(" ").append(*kernel);
    }
    if (auto stat = readTrimmed(underRoot(root, "/proc/stat")))
        if (auto boot = parseBootTime(*stat))
            fixed_.bootDate = metrics::fromUnixSeconds(double(*boot));
}

void SystemReader::read(metrics::SystemInfo& out, double now) {
    out = fixed_;
    if (auto text = uptime_.read()) {
        TextScan scan(*text);
        if (auto up = scan.number()) out.uptimeSec = *up;
    }
    if (auto text = selfStat_.read()) {
        ProcStat stat;
        if (parseProcStat(*text, stat)) {
            const std::uint64_t ticks = stat.utime + stat.stime;
            if (previousTicks_ && now > previousTime_ && ticks >= *previousTicks_)
                out.selfCpuPercent = double(ticks - *previousTicks_) * 100.0 /
                                     ((now - previousTime_) * double(ticksPerSecond_));
            previousTicks_ = ticks;
            previousTime_ = now;
        }
    }
    if (auto text = selfStatm_.read()) {
        TextScan scan(*text);
        scan.u64();
        if (auto resident = scan.u64()) out.selfMemoryBytes = *resident * std::uint64_t(pageSize_);
    }
}

}  // namespace trotlet::platform
