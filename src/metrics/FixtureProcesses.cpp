#include "metrics/FixtureProcesses.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace trotlet::metrics {
namespace {

struct Program {
    const char* name;
    const char* user;  // "" for a kernel thread
    const char* exe;
    int threads;
};

// The background of a GNOME laptop, most frequent kinds listed more than once.
constexpr Program background[] = {
    {"systemd", "alice", "/usr/lib/systemd/systemd", 1},
    {"gnome-session-binary", "alice", "/usr/libexec/gnome-session-binary", 4},
    {"dbus-daemon", "alice", "/usr/bin/dbus-daemon", 1},
    {"pipewire", "alice", "/usr/bin/pipewire", 3},
    {"wireplumber", "alice", "/usr/bin/wireplumber", 5},
    {"pipewire-pulse", "alice", "/usr/bin/pipewire-pulse", 3},
    {"xdg-desktop-portal", "alice", "/usr/libexec/xdg-desktop-portal", 6},
    {"gvfsd", "alice", "/usr/libexec/gvfsd", 3},
    {"gsd-power", "alice", "/usr/libexec/gsd-power", 4},
    {"gsd-media-keys", "alice", "/usr/libexec/gsd-media-keys", 4},
    {"ibus-daemon", "alice", "/usr/bin/ibus-daemon", 3},
    {"at-spi2-registryd", "alice", "/usr/libexec/at-spi2-registryd", 3},
    {"tracker-miner-fs-3", "alice", "/usr/libexec/tracker-miner-fs-3", 5},
    {"evolution-alarm-notify", "alice", "/usr/libexec/evolution-data-server/evolution-alarm-notify",
     6},
    {"Web Content", "alice", "/usr/lib/firefox/firefox", 22},
    {"Isolated Web Co", "alice", "/usr/lib/firefox/firefox", 27},
    {"RDD Process", "alice", "/usr/lib/firefox/firefox", 4},
    {"code", "alice", "/usr/share/code/code", 14},
    {"bash", "alice", "/usr/bin/bash", 1},
    {"ssh-agent", "alice", "/usr/bin/ssh-agent", 1},
    {"python3", "alice", "/usr/bin/python3.11", 2},
    {"gnome-terminal-server", "alice", "/usr/libexec/gnome-terminal-server", 5},
    {"systemd-journald", "root", "/usr/lib/systemd/systemd-journald", 1},
    {"systemd-udevd", "root", "/usr/lib/systemd/systemd-udevd", 1},
    {"NetworkManager", "root", "/usr/sbin/NetworkManager", 3},
    {"gdm-session-worker", "root", "/usr/libexec/gdm-session-worker", 3},
    {"cupsd", "root", "/usr/sbin/cupsd", 1},
    {"sshd", "root", "/usr/sbin/sshd", 1},
    {"polkitd", "polkitd", "/usr/lib/polkit-1/polkitd", 4},
    {"systemd-resolved", "systemd-resolve", "/usr/lib/systemd/systemd-resolved", 1},
    {"avahi-daemon", "avahi", "/usr/sbin/avahi-daemon", 1},
    {"colord", "colord", "/usr/libexec/colord", 3},
    {"rtkit-daemon", "rtkit", "/usr/libexec/rtkit-daemon", 3},
    {"kworker/0:1-events", "", nullptr, 1},
    {"kworker/u16:2-flush-259:0", "", nullptr, 1},
    {"ksoftirqd/3", "", nullptr, 1},
    {"rcu_preempt", "", nullptr, 1},
    {"migration/5", "", nullptr, 1},
    {"kworker/7:0H-kblockd", "", nullptr, 1},
    {"irq/142-iwlwifi", "", nullptr, 1},
};

constexpr std::size_t firstHelper = 14;  // "Web Content" to "python3"
constexpr std::size_t helpers = 7;
constexpr std::size_t kernelThreads = 7;  // the last entries

// A small repeatable pseudo-random stream.
struct Stream {
    std::uint64_t state;
    std::uint64_t next() {
        state = state * 6364136223846793005ull + 1442695040888963407ull;
        return state >> 33;
    }
};

}  // namespace

std::vector<ProcessRow> fixtureProcessTable(const MetricsSnapshot& sample) {
    std::vector<ProcessRow> rows = sample.processes.topCPU;
    for (const auto& r : sample.processes.topMemory)
        if (std::none_of(rows.begin(), rows.end(),
                         [&](const ProcessRow& a) { return a.pid == r.pid; }))
            rows.push_back(r);
    if (rows.empty()) return rows;
    double quietest = rows.front().cpuPercent;
    std::uint64_t smallest = rows.front().memoryBytes;
    for (const auto& r : rows) {
        quietest = std::min(quietest, r.cpuPercent);
        smallest = std::min(smallest, r.memoryBytes);
    }
    const auto total = std::size_t(
        std::max<std::int64_t>(sample.processes.totalCount.value_or(0), std::int64_t(rows.size())));
    Stream random{0x7e57c0de};
    std::int32_t pid = 2;
    const auto count = std::size(background);
    for (std::size_t i = 0; rows.size() < total; ++i) {
        pid += 1 + std::int32_t(random.next() % 37);
        if (std::any_of(rows.begin(), rows.end(),
                        [&](const ProcessRow& r) { return r.pid == pid; }))
            continue;
        // The background once each, then mostly kernel threads and app helpers.
        std::size_t index = i;
        if (i >= count) {
            if (random.next() % 20 < 13)
                index = count - kernelThreads + random.next() % kernelThreads;
            else
                index = firstHelper + random.next() % helpers;
        }
        const Program& program = background[index];
        ProcessRow r;
        r.pid = pid;
        r.name = program.name;
        const bool kernel = *program.user == '\0';
        // Kernel threads are numbered by CPU and queue.
        if (const std::string base(program.name);
            kernel && i >= count && base.find('/') != std::string::npos) {
            r.name = base.substr(0, base.find('/') + 1) + std::to_string(random.next() % 8);
            if (base.find(':') != std::string::npos)
                r.name += ":" + std::to_string(random.next() % 3);
        }
        if (kernel) {
            r.user = "root";
            r.isPrivileged = true;
        } else {
            r.user = program.user;
            r.isPrivileged = std::string_view(program.user) == "root";
            r.canQuit = std::string_view(program.user) == "alice";
            r.executablePath = program.exe;
            const double share = double(random.next() % 1000) / 1000.0;
            r.memoryBytes = std::uint64_t(double(smallest) * (0.08 + 0.9 * share * share));
            r.memoryBytes -= r.memoryBytes % 4096;
        }
        r.threads = program.threads;
        // A few background processes tick over; none outdo the quietest top row.
        if (!kernel && random.next() % 4 == 0)
            r.cpuPercent = std::floor(quietest * double(random.next() % 10) / 10.0 * 10) / 10;
        r.startTicks = 1000 + std::uint64_t(pid) * 17;
        rows.push_back(std::move(r));
    }
    std::sort(rows.begin(), rows.end(), [](const auto& a, const auto& b) { return a.pid < b.pid; });
    return rows;
}

}  // namespace trotlet::metrics
