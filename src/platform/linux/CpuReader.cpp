#include "platform/linux/CpuReader.h"

#include "platform/linux/TextScan.h"

namespace trotlet::platform {

namespace {

bool parseTicks(TextScan& scan, CpuTicks& t) {
    std::uint64_t* fields[] = {&t.user,   &t.nice, &t.system,  &t.idle,
                               &t.iowait, &t.irq,  &t.softirq, &t.steal};
    for (size_t i = 0; i < 8; ++i) {
        auto v = scan.u64();
        if (!v) {
            // Kernels before 2.6.11 stop after softirq; steal is then zero by definition.
            if (i >= 7) return true;
            return false;
        }
        *fields[i] = *v;
    }
    return true;
}

}  // namespace

bool parseProcStat(std::string_view text, CpuStat& out) {
    TextScan lines(text);
    size_t cores = 0;
    bool haveAll = false;
    while (!lines.atEnd()) {
        TextScan scan(lines.line());
        const std::string_view label = scan.token();
        if (label.size() < 3 || label.substr(0, 3) != "cpu") {
            if (haveAll) break;  // the cpu lines come first and together
            continue;
        }
        if (label == "cpu") {
            if (!parseTicks(scan, out.all)) return false;
            haveAll = true;
            continue;
        }
        if (cores >= out.cores.size()) out.cores.emplace_back();
        if (!parseTicks(scan, out.cores[cores])) return false;
        ++cores;
    }
    out.cores.resize(cores);
    return haveAll;
}

std::optional<CpuTicks> ticksBetween(const CpuTicks& a, const CpuTicks& b) {
    std::uint64_t CpuTicks::*const fields[] = {
        &CpuTicks::user,   &CpuTicks::nice, &CpuTicks::system,  &CpuTicks::idle,
        &CpuTicks::iowait, &CpuTicks::irq,  &CpuTicks::softirq, &CpuTicks::steal};
    CpuTicks d;
    std::uint64_t sum = 0;
    for (auto field : fields) {
        if (b.*field < a.*field) return std::nullopt;
        d.*field = b.*field - a.*field;
        if (__builtin_add_overflow(sum, d.*field, &sum)) return std::nullopt;
    }
    return d;
}

std::optional<CpuShares> sharesBetween(const CpuTicks& a, const CpuTicks& b) {
    const auto d = ticksBetween(a, b);
    if (!d || d->total() == 0) return std::nullopt;
    // Every part is at most the whole in integers, and converting to double keeps that order.
    const double total = double(d->total());
    CpuShares s;
    s.total = double(d->busy()) / total;
    s.user = double(d->user + d->nice) / total;
    s.system = double(d->system + d->irq + d->softirq) / total;
    return s;
}

std::vector<double> coreLoadsBetween(const CpuStat& before, const CpuStat& after) {
    std::vector<double> loads;
    // A core that came or went between the readings makes the list incomparable.
    if (before.cores.size() != after.cores.size()) return loads;
    loads.reserve(after.cores.size());
    for (size_t i = 0; i < after.cores.size(); ++i) {
        const auto ticks = ticksBetween(before.cores[i], after.cores[i]);
        if (!ticks) return {};
        // No tick on this core since the last reading: it did no work.
        const auto total = ticks->total();
        loads.push_back(total ? double(ticks->busy()) / double(total) : 0.0);
    }
    return loads;
}

std::vector<int> parseCpuList(std::string_view text) {
    std::vector<int> out;
    text = trimmed(text);
    while (!text.empty()) {
        const size_t comma = text.find(',');
        std::string_view piece = text.substr(0, comma);
        text = comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1);
        const size_t dash = piece.find('-');
        auto first = TextScan::parseU64(piece.substr(0, dash));
        auto last =
            dash == std::string_view::npos ? first : TextScan::parseU64(piece.substr(dash + 1));
        if (!first || !last || *last < *first || *last > 65535) continue;
        for (auto c = *first; c <= *last; ++c) out.push_back(static_cast<int>(c));
    }
    return out;
}

std::optional<LoadAverage> parseLoadAvg(std::string_view text) {
    TextScan scan(text);
    auto one = scan.number(), five = scan.number(), fifteen = scan.number();
    if (!one || !five || !fifteen || *one < 0 || *five < 0 || *fifteen < 0) return std::nullopt;
    LoadAverage l{*one, *five, *fifteen, std::nullopt};
    const std::string_view entities = scan.token();
    const size_t slash = entities.find('/');
    if (slash != std::string_view::npos)
        if (auto total = TextScan::parseI64(entities.substr(slash + 1)); total && *total >= 0)
            l.schedulingEntities = *total;
    return l;
}

CpuReader::CpuReader(const std::string& root)
    : stat_(underRoot(root, "/proc/stat")), loadavg_(underRoot(root, "/proc/loadavg")) {
    // Hybrid Intel CPUs register two PMUs: cpu_core (performance) and cpu_atom (efficiency).
    if (auto atoms = readTrimmed(underRoot(root, "/sys/devices/cpu_atom/cpus")))
        efficiencyCores_ = parseCpuList(*atoms);
}

bool CpuReader::read(metrics::CPUMetrics& out) {
    out.efficiencyCoreIndices = efficiencyCores_;
    if (auto text = loadavg_.read())
        if (auto l = parseLoadAvg(*text)) {
            out.loadAvg = {l->one, l->five, l->fifteen};
            out.threadCount = l->schedulingEntities;
        }
    auto text = stat_.read();
    if (!text || !parseProcStat(*text, current_)) {
        havePrevious_ = false;
        return false;
    }
    bool ok = false;
    if (havePrevious_) {
        if (auto all = sharesBetween(previous_.all, current_.all)) {
            out.total = all->total;
            out.user = all->user;
            out.system = all->system;
            out.perCore = coreLoadsBetween(previous_, current_);
            ok = true;
        }
    }
    std::swap(previous_, current_);
    havePrevious_ = true;
    return ok;
}

}  // namespace trotlet::platform
