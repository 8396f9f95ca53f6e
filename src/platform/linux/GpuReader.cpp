#include "platform/linux/GpuReader.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <limits.h>
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <set>

#include "platform/linux/TextScan.h"

namespace trotlet::platform {

// The few NVML entry points used, resolved from libnvidia-ml at run time (their signatures are
// those of NVIDIA's published NVML API).
class NvmlLibrary {
public:
    using Device = void*;
    struct Utilization { unsigned gpu, memory; };
    struct Memory { unsigned long long total, free, used; };

    static std::unique_ptr<NvmlLibrary> load() {
        void* handle = ::dlopen("libnvidia-ml.so.1", RTLD_NOW | RTLD_LOCAL);
        if (!handle) return nullptr;
        auto lib = std::unique_ptr<NvmlLibrary>(new NvmlLibrary(handle));
        if (!lib->init || !lib->shutdown || !lib->byPci || !lib->utilization || !lib->memory || !lib->name ||
            lib->init() != 0)
            return nullptr;
        lib->initialised = true;
        return lib;
    }
    ~NvmlLibrary() {
        if (initialised && shutdown) shutdown();
        ::dlclose(handle);
    }

    int (*init)() = nullptr;
    int (*shutdown)() = nullptr;
    int (*byPci)(const char*, Device*) = nullptr;
    int (*utilization)(Device, Utilization*) = nullptr;
    int (*memory)(Device, Memory*) = nullptr;
    int (*name)(Device, char*, unsigned) = nullptr;

private:
    explicit NvmlLibrary(void* h) : handle(h) {
        init = reinterpret_cast<int (*)()>(::dlsym(h, "nvmlInit_v2"));
        shutdown = reinterpret_cast<int (*)()>(::dlsym(h, "nvmlShutdown"));
        byPci = reinterpret_cast<int (*)(const char*, Device*)>(::dlsym(h, "nvmlDeviceGetHandleByPciBusId_v2"));
        utilization = reinterpret_cast<int (*)(Device, Utilization*)>(::dlsym(h, "nvmlDeviceGetUtilizationRates"));
        memory = reinterpret_cast<int (*)(Device, Memory*)>(::dlsym(h, "nvmlDeviceGetMemoryInfo"));
        name = reinterpret_cast<int (*)(Device, char*, unsigned)>(::dlsym(h, "nvmlDeviceGetName"));
    }
    void* handle;
    bool initialised = false;
};

std::optional<std::string> pciName(std::string_view ids, unsigned vendor, unsigned device) {
    char vendorKey[8], deviceKey[8];
    std::snprintf(vendorKey, sizeof vendorKey, "%04x", vendor);
    std::snprintf(deviceKey, sizeof deviceKey, "%04x", device);
    TextScan lines(ids);
    std::optional<std::string> vendorName;
    while (!lines.atEnd()) {
        const std::string_view line = lines.line();
        if (line.empty() || line.front() == '#') continue;
        if (line.front() != '\t') {
            if (vendorName) break;  // past the vendor's block
            if (line.size() > 6 && line.substr(0, 4) == vendorKey) vendorName = std::string(trimmed(line.substr(4)));
            continue;
        }
        if (vendorName && line.size() > 7 && line[1] != '\t' && line.substr(1, 4) == deviceKey) {
            std::string_view device = trimmed(line.substr(5));
            // "Navi 23 [Radeon RX 6600/6600 XT/6600M]": the marketing name is in brackets.
            const size_t open = device.find('['), close = device.rfind(']');
            if (open != std::string_view::npos && close > open) device = device.substr(open + 1, close - open - 1);
            std::string vendorShort = *vendorName;
            if (vendor == 0x1002) vendorShort = "AMD";
            else if (vendor == 0x10de) vendorShort = "NVIDIA";
            else if (vendor == 0x8086) vendorShort = "Intel";
            return vendorShort + " " + std::string(device);
        }
    }
    return std::nullopt;
}

std::optional<std::uint64_t> parseDrmFdinfo(std::string_view text, std::string_view driver,
                                            std::uint64_t& clientId) {
    auto drv = valueAfter(text, "drm-driver", ':');
    if (!drv || *drv != driver) return std::nullopt;
    auto id = valueAfter(text, "drm-client-id", ':');
    auto busy = valueAfter(text, "drm-engine-render", ':');
    if (!id || !busy) return std::nullopt;
    auto idValue = TextScan::parseU64(*id);
    TextScan scan(*busy);
    auto ns = scan.u64();
    if (!idValue || !ns || scan.token() != "ns") return std::nullopt;
    clientId = *idValue;
    return *ns;
}

GpuReader::GpuReader(const std::string& root) : root_(root) {
    const std::string drm = underRoot(root, "/sys/class/drm");
    std::vector<std::string> names;
    if (DIR* dir = ::opendir(drm.c_str())) {
        while (dirent* e = ::readdir(dir)) {
            const std::string_view n = e->d_name;
            // "card0", not the connectors "card0-eDP-1".
            if (n.substr(0, 4) == "card" && n.find('-') == std::string_view::npos) names.emplace_back(n);
        }
        ::closedir(dir);
    }
    std::sort(names.begin(), names.end());
    std::optional<std::string> ids;
    for (const auto& n : names) {
        Card card;
        card.sysDevice = drm + "/" + n + "/device";
        auto vendor = readTrimmed(card.sysDevice + "/vendor");
        auto device = readTrimmed(card.sysDevice + "/device");
        if (!vendor || !device) continue;
        auto v = TextScan::parseHex(vendor->substr(vendor->rfind('x') + 1));
        auto d = TextScan::parseHex(device->substr(device->rfind('x') + 1));
        if (!v || !d) continue;
        card.vendor = static_cast<unsigned>(*v);
        card.device = static_cast<unsigned>(*d);
        const auto uevent = readTrimmed(card.sysDevice + "/uevent").value_or("");
        card.driver = std::string(valueAfter(uevent, "DRIVER", '=').value_or(""));
        card.pciAddress = std::string(valueAfter(uevent, "PCI_SLOT_NAME", '=').value_or(""));
        if (!ids) {
            ids = readTrimmed(underRoot(root, "/usr/share/misc/pci.ids"));
            if (!ids) ids = readTrimmed(underRoot(root, "/usr/share/hwdata/pci.ids"));
            if (!ids) ids = std::string();
        }
        char fallback[48];
        std::snprintf(fallback, sizeof fallback, "GPU %04x:%04x", card.vendor, card.device);
        card.name = pciName(*ids, card.vendor, card.device).value_or(fallback);
        card.busy = KeptFile(card.sysDevice + "/gpu_busy_percent");
        card.vramUsed = KeptFile(card.sysDevice + "/mem_info_vram_used");
        card.runtimeStatus = KeptFile(card.sysDevice + "/power/runtime_status");
        cards_.push_back(std::move(card));
    }
    // Discrete cards first: their load is the one that matters when both exist.
    std::stable_sort(cards_.begin(), cards_.end(), [](const Card& a, const Card& b) {
        auto rank = [](const Card& c) { return c.vendor == 0x10de ? 0 : c.vendor == 0x1002 ? 1 : 2; };
        return rank(a) < rank(b);
    });
}

GpuReader::~GpuReader() = default;

std::optional<metrics::GPUMetrics> GpuReader::readAmd(Card& card) {
    auto text = card.busy.read();
    if (!text) return std::nullopt;
    auto busy = TextScan::parseDouble(trimmed(*text));
    if (!busy || *busy < 0 || *busy > 100) return std::nullopt;
    metrics::GPUMetrics g;
    g.name = card.name;
    g.utilization = *busy / 100;
    if (auto vram = card.vramUsed.read())
        if (auto used = TextScan::parseU64(trimmed(*vram))) g.memoryUsedBytes = *used;
    return g;
}

std::optional<metrics::GPUMetrics> GpuReader::readNvidia(Card& card) {
    // Asking a runtime-suspended card would wake it (and keep a laptop's dGPU powered).
    if (auto status = card.runtimeStatus.read(); status && trimmed(*status) == "suspended") return std::nullopt;
    if (!nvmlTried_) {
        nvmlTried_ = true;
        nvml_ = NvmlLibrary::load();
    }
    if (!nvml_ || card.pciAddress.empty()) return std::nullopt;
    NvmlLibrary::Device device = nullptr;
    if (nvml_->byPci(card.pciAddress.c_str(), &device) != 0) return std::nullopt;
    NvmlLibrary::Utilization u{};
    if (nvml_->utilization(device, &u) != 0) return std::nullopt;
    metrics::GPUMetrics g;
    char name[96] = {};
    g.name = nvml_->name(device, name, sizeof name) == 0 ? std::string(name) : card.name;
    g.utilization = std::min(100u, u.gpu) / 100.0;
    NvmlLibrary::Memory m{};
    if (nvml_->memory(device, &m) == 0) g.memoryUsedBytes = m.used;
    return g;
}

std::optional<metrics::GPUMetrics> GpuReader::readIntel(Card& card, double now) {
    const std::string proc = underRoot(root_, "/proc");
    DIR* dir = ::opendir(proc.c_str());
    if (!dir) return std::nullopt;
    std::uint64_t total = 0;
    bool any = false;
    std::set<std::uint64_t> clients;
    char buf[2048];
    while (dirent* p = ::readdir(dir)) {
        if (p->d_name[0] < '1' || p->d_name[0] > '9') continue;
        const std::string fdinfo = proc + "/" + p->d_name + "/fdinfo";
        DIR* fds = ::opendir(fdinfo.c_str());
        if (!fds) continue;  // another user's process: not readable
        while (dirent* f = ::readdir(fds)) {
            if (f->d_name[0] == '.') continue;
            const int fd = ::open((fdinfo + "/" + f->d_name).c_str(), O_RDONLY | O_CLOEXEC);
            if (fd < 0) continue;
            const ssize_t n = ::read(fd, buf, sizeof buf);
            ::close(fd);
            if (n <= 0) continue;
            std::uint64_t client = 0;
            if (auto ns = parseDrmFdinfo(std::string_view(buf, size_t(n)), card.driver, client))
                if (clients.insert(client).second) {
                    total += *ns;
                    any = true;
                }
        }
        ::closedir(fds);
    }
    ::closedir(dir);
    if (!any) return std::nullopt;
    std::optional<metrics::GPUMetrics> out;
    // Busy time of clients that exit drops out of the sum; a smaller total gives no reading.
    if (previousIntelNs_ && now > previousIntelTime_ && total >= *previousIntelNs_) {
        metrics::GPUMetrics g;
        g.name = card.name;
        g.utilization = std::min(1.0, double(total - *previousIntelNs_) / ((now - previousIntelTime_) * 1e9));
        out = g;
    }
    previousIntelNs_ = total;
    previousIntelTime_ = now;
    return out;
}

std::optional<metrics::GPUMetrics> GpuReader::read(double now) {
    for (auto& card : cards_) {
        std::optional<metrics::GPUMetrics> g;
        if (card.vendor == 0x1002) g = readAmd(card);
        else if (card.vendor == 0x10de) g = readNvidia(card);
        else if (card.vendor == 0x8086 && (card.driver == "i915" || card.driver == "xe")) g = readIntel(card, now);
        if (g) return g;
    }
    return std::nullopt;
}

}  // namespace trotlet::platform
