#include "platform/linux/LinuxProcessControl.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>

#include "platform/linux/ProcessReader.h"

namespace trotlet::platform {

using processes::ProcessIdentity;
using processes::QuitSignal;
using processes::SignalOutcome;

namespace {

std::optional<std::string> readSmallFile(const std::string& path, std::size_t limit) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return std::nullopt;
    std::string text;
    char buffer[4096];
    for (;;) {
        const ssize_t n = ::read(fd, buffer, sizeof buffer);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        text.append(buffer, std::size_t(n));
        if (text.size() >= limit) {
            text.resize(limit);
            break;
        }
    }
    ::close(fd);
    return text;
}

SignalOutcome outcomeOf(int error) {
    switch (error) {
        case ESRCH:
            return SignalOutcome::gone;
        case EPERM:
            return SignalOutcome::denied;
        default:
            return SignalOutcome::failed;
    }
}

int signalNumber(QuitSignal signal) { return signal == QuitSignal::kill ? SIGKILL : SIGTERM; }

}  // namespace

LinuxProcessControl::LinuxProcessControl() : LinuxProcessControl(Options{}) {}

LinuxProcessControl::LinuxProcessControl(Options options)
    : options_(std::move(options)), usePidfd_(options_.usePidfd) {
    if (options_.ticksPerSecond <= 0) options_.ticksPerSecond = ::sysconf(_SC_CLK_TCK);
    if (options_.ticksPerSecond <= 0) options_.ticksPerSecond = 100;
}

LinuxProcessControl::~LinuxProcessControl() {
    for (const auto& [pid, held] : held_) ::close(held.fd);
}

std::optional<LinuxProcessControl::Look> LinuxProcessControl::look(std::int32_t pid) const {
    const auto text = readSmallFile(options_.procPath + "/" + std::to_string(pid) + "/stat", 4096);
    ProcStat stat;
    if (!text || !parseProcStat(*text, stat)) return std::nullopt;
    return Look{stat.startTime, stat.state == 'Z' || stat.state == 'X'};
}

SignalOutcome LinuxProcessControl::hold(const ProcessIdentity& process, int& fd) {
    fd = -1;
    if (!process.startTicks) return SignalOutcome::failed;  // nothing to check it against
    if (const auto it = held_.find(process.pid); it != held_.end()) {
        if (it->second.startTicks == *process.startTicks) {
            fd = it->second.fd;
            return SignalOutcome::sent;
        }
        release({process.pid, it->second.startTicks});  // held for an older process
    }
    if (!usePidfd_) return SignalOutcome::sent;
    const int opened = int(::syscall(SYS_pidfd_open, process.pid, 0));
    if (opened < 0) {
        if (errno == ENOSYS) {
            usePidfd_ = false;
            return SignalOutcome::sent;
        }
        return outcomeOf(errno);
    }
    ::fcntl(opened, F_SETFD, FD_CLOEXEC);
    // The pidfd holds whichever process had the PID a moment ago; the start time says whether
    // that was the sampled one.
    const auto seen = look(process.pid);
    SignalOutcome outcome = SignalOutcome::sent;
    if (!seen || seen->zombie)
        outcome = SignalOutcome::gone;
    else if (seen->startTicks != *process.startTicks)
        outcome = SignalOutcome::replaced;
    if (outcome != SignalOutcome::sent) {
        ::close(opened);
        return outcome;
    }
    held_[process.pid] = {*process.startTicks, opened};
    fd = opened;
    return SignalOutcome::sent;
}

SignalOutcome LinuxProcessControl::send(const ProcessIdentity& process, QuitSignal signal) {
    int fd = -1;
    if (const auto held = hold(process, fd); held != SignalOutcome::sent) return held;
    if (fd >= 0) {
        if (::syscall(SYS_pidfd_send_signal, fd, signalNumber(signal), nullptr, 0) == 0)
            return SignalOutcome::sent;
        return outcomeOf(errno);
    }
    // No pidfd: check the start time right before kill(2). Racy by nature: the process may end
    // and its PID be reused in the microseconds between the check and the signal.
    const auto seen = look(process.pid);
    if (!seen || seen->zombie) return SignalOutcome::gone;
    if (seen->startTicks != *process.startTicks) return SignalOutcome::replaced;
    if (::kill(process.pid, signalNumber(signal)) == 0) return SignalOutcome::sent;
    return outcomeOf(errno);
}

bool LinuxProcessControl::isRunning(const ProcessIdentity& process) {
    if (const auto it = held_.find(process.pid);
        it != held_.end() && process.startTicks && it->second.startTicks == *process.startTicks) {
        pollfd p{it->second.fd, POLLIN, 0};
        const int ready = ::poll(&p, 1, 0);
        return !(ready > 0 && (p.revents & (POLLIN | POLLHUP | POLLERR)));
    }
    const auto seen = look(process.pid);
    return seen && !seen->zombie &&
           (!process.startTicks || seen->startTicks == *process.startTicks);
}

void LinuxProcessControl::release(const ProcessIdentity& process) {
    if (const auto it = held_.find(process.pid); it != held_.end()) {
        ::close(it->second.fd);
        held_.erase(it);
    }
}

std::optional<processes::ProcessDetails> LinuxProcessControl::details(
    const ProcessIdentity& process) {
    const auto seen = look(process.pid);
    if (!seen || (process.startTicks && seen->startTicks != *process.startTicks))
        return std::nullopt;
    processes::ProcessDetails out;
    const std::string dir = options_.procPath + "/" + std::to_string(process.pid);
    // Arguments are separated by NULs; a command line of 64 KiB is long enough to recognise.
    if (auto cmdline = readSmallFile(dir + "/cmdline", 64 * 1024); cmdline && !cmdline->empty()) {
        while (!cmdline->empty() && cmdline->back() == '\0') cmdline->pop_back();
        for (char& c : *cmdline)
            if (c == '\0' || c == '\n') c = ' ';
        out.commandLine = std::move(*cmdline);
    }
    if (!bootUnixSeconds_) {
        if (const auto stat = readSmallFile(options_.procPath + "/stat", 64 * 1024)) {
            const auto at = stat->find("\nbtime ");
            if (at != std::string::npos)
                bootUnixSeconds_ = std::strtod(stat->c_str() + at + 7, nullptr);
        }
    }
    if (bootUnixSeconds_)
        out.startTime = metrics::fromUnixSeconds(
            *bootUnixSeconds_ + double(seen->startTicks) / double(options_.ticksPerSecond));
    return out;
}

}  // namespace trotlet::platform
