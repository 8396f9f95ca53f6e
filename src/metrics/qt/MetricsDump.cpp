#include "metrics/qt/MetricsDump.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "metrics/IsoTime.h"
#include "metrics/MetricsJson.h"
#include "metrics/qt/MetricsTimeline.h"
#include "metrics/qt/PowerProfiles.h"
#include "metrics/qt/ProviderFactory.h"
#include "platform/linux/LinuxMetricsProvider.h"
#include "platform/linux/ProcessReader.h"

namespace trotlet::metrics {

namespace {

MetricsDump::MascotEncoder& mascotEncoder() {
    static MetricsDump::MascotEncoder encoder;
    return encoder;
}

std::unique_ptr<MetricsProvider> providerFor(const cli::LaunchOptions& options) {
    std::vector<std::string> warnings;
    auto provider = makeProvider(options, &warnings);
    for (const auto& w : warnings) std::fprintf(stderr, "trotlet: %s\n", w.c_str());
    if (auto* real = dynamic_cast<platform::LinuxMetricsProvider*>(provider.get()))
        real->setLowPowerMode(PowerProfiles::queryOnce());
    return provider;
}

double microsecondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start)
        .count();
}

Json stats(std::vector<double> us) {
    std::sort(us.begin(), us.end());
    Json j = Json::object();
    auto round1 = [](double v) { return std::round(v * 10) / 10; };
    j["minUs"] = round1(us.front());
    j["medianUs"] =
        round1(us.size() % 2 ? us[us.size() / 2] : (us[us.size() / 2 - 1] + us[us.size() / 2]) / 2);
    j["maxUs"] = round1(us.back());
    return j;
}

}  // namespace

void MetricsDump::setMascotEncoder(MascotEncoder encoder) { mascotEncoder() = std::move(encoder); }

int MetricsDump::run(const cli::LaunchOptions& options) {
    if (const char* scenario = std::getenv("TROTLET_METRICS_TIMELINE"))
        return MetricsTimeline::run(scenario, options);

    auto provider = providerFor(options);
    const auto start = std::chrono::steady_clock::now();
    const MetricsSnapshot snapshot =
        provider->sample(MetricKinds::all, std::chrono::system_clock::now());
    const double sampleMs =
        std::max(0.0, microsecondsSince(start) / 1000 - provider->lastWaitSec() * 1000);

    try {
        Json out = Json::object();
        out["provider"] = provider->name();
        out["timestamp"] = formatIso8601(snapshot.timestamp);
        out["sampleMs"] = std::round(sampleMs * 1000) / 1000;
        const Json groups = encode(snapshot);
        for (const char* key : {"cpu", "memory", "disks", "network", "battery", "thermal", "gpu",
                                "processes", "system"})
            out[key] = groups.at(key);
        if (const auto& encoder = mascotEncoder())
            if (auto mascot = encoder(snapshot, options)) out["mascot"] = *mascot;
        const std::string text = out.dump(2);
        std::fwrite(text.data(), 1, text.size(), stdout);
        std::fputc('\n', stdout);
        return 0;
    } catch (const std::exception&) {
        std::fputs("trotlet: could not encode metrics\n", stderr);
        return 1;
    }
}

int MetricsBench::run(const cli::LaunchOptions& options) {
    const int n = std::max(1, options.benchIterations);
    auto measure = [&](MetricKinds kinds, bool fullList) {
        auto provider = providerFor(options);
        provider->setFullProcessList(fullList);
        provider->sample(kinds, std::chrono::system_clock::now());  // discovery and baseline
        std::vector<double> us;
        us.reserve(size_t(n));
        for (int i = 0; i < n; ++i) {
            const auto start = std::chrono::steady_clock::now();
            const auto s = provider->sample(kinds, std::chrono::system_clock::now());
            us.push_back(microsecondsSince(start));
            (void)s;
        }
        return stats(std::move(us));
    };

    Json out = Json::object();
    std::unique_ptr<MetricsProvider> probe = providerFor(options);
    out["provider"] = probe->name();
    out["iterations"] = n;
    out["processCount"] = platform::countProcesses();
    Json kinds = Json::array();
    for (auto single : MetricKinds::singles) {
        Json k = Json::object();
        k["kind"] = std::string(single.names().front());
        k.update(measure(single, single == MetricKinds::processes));
        kinds.push_back(k);
    }
    Json all = Json::object();
    all["kind"] = "all";
    all.update(measure(MetricKinds::all, true));
    kinds.push_back(all);
    out["kinds"] = kinds;

    // What the menu bar alone asks for on each tick.
    const MetricKinds menuBar = MetricKinds::cpu | MetricKinds::memory | MetricKinds::network |
                                MetricKinds::battery | MetricKinds::sensors;
    Json bar = Json::object();
    bar["kinds"] = menuBar.names();
    bar.update(measure(menuBar, false));
    out["menuBar"] = bar;

    // The floor a process scan cannot beat by much: open, read and close stat and statm of
    // every process.
    std::vector<double> us;
    for (int i = 0; i < n; ++i) {
        const auto start = std::chrono::steady_clock::now();
        platform::scanStatAndStatm();
        us.push_back(microsecondsSince(start));
    }
    Json baseline = Json::object();
    baseline["what"] = "open and read /proc/[pid]/stat and statm for every process";
    baseline.update(stats(std::move(us)));
    out["procScanBaseline"] = baseline;

    const std::string text = out.dump(2);
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fputc('\n', stdout);
    return 0;
}

}  // namespace trotlet::metrics
