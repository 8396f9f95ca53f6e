#pragma once

#include <map>
#include <optional>
#include <string>

#include "processes/ProcessControl.h"

namespace trotlet::platform {

// Signals processes on this machine so that a signal reaches exactly the process the user saw.
// The first action on a process opens a pidfd for its PID and then checks the start time in
// /proc against the sampled one: a match proves the pidfd holds that very process, and signals
// sent through it cannot reach a newer process that is later given the same PID. The pidfd also
// tells when the process ends (it becomes readable), zombie or not.
//
// On kernels without pidfds (before 5.3) the start time is checked again right before each
// kill(2) instead; that leaves a window of microseconds in which the process could end and its
// PID be reused, which is as close as the plain PID interface allows.
class LinuxProcessControl : public processes::ProcessControl {
public:
    struct Options {
        std::string procPath = "/proc";
        long ticksPerSecond = 0;  // 0: the system's clock tick
        bool usePidfd = true;     // false tries the fallback where pidfds exist too
    };
    LinuxProcessControl();
    explicit LinuxProcessControl(Options options);
    ~LinuxProcessControl() override;
    LinuxProcessControl(const LinuxProcessControl&) = delete;
    LinuxProcessControl& operator=(const LinuxProcessControl&) = delete;

    processes::SignalOutcome send(const processes::ProcessIdentity& process,
                                  processes::QuitSignal signal) override;
    bool isRunning(const processes::ProcessIdentity& process) override;
    void release(const processes::ProcessIdentity& process) override;
    std::optional<processes::ProcessDetails> details(
        const processes::ProcessIdentity& process) override;

    // Whether signals go through pidfds (false on old kernels or when turned off).
    bool usesPidfd() const { return usePidfd_; }

private:
    struct Look {
        std::uint64_t startTicks = 0;
        bool zombie = false;
    };
    // The process's start time and state from its stat file; absent when it has gone.
    std::optional<Look> look(std::int32_t pid) const;
    // The checked pidfd of the process, or why there is none (`sent` means: no pidfds here).
    processes::SignalOutcome hold(const processes::ProcessIdentity& process, int& fd);

    Options options_;
    bool usePidfd_ = true;
    struct Held {
        std::uint64_t startTicks = 0;
        int fd = -1;
    };
    std::map<std::int32_t, Held> held_;  // by PID: the pidfd of the checked process
    std::optional<double> bootUnixSeconds_;
};

}  // namespace trotlet::platform
