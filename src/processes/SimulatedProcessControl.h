#pragma once

#include <map>
#include <vector>

#include "processes/ProcessControl.h"

namespace trotlet::processes {

// Processes played in memory, for tests, snapshot scenes and sessions on fixture or mock data
// (whose PIDs are made up and must never be signalled for real). A process not described is
// taken to be running, owned by the user and willing to quit.
class SimulatedProcessControl : public ProcessControl {
public:
    struct Process {
        bool running = true;
        bool ignoresTerminate = false;
        bool denies = false;                      // another user's
        std::optional<std::uint64_t> startTicks;  // a different value: the PID was reused
        ProcessDetails details;
    };

    Process& process(std::int32_t pid) { return processes_[pid]; }
    // Every signal sent, in order.
    const std::vector<std::pair<std::int32_t, QuitSignal>>& sent() const { return sent_; }

    SignalOutcome send(const ProcessIdentity& process, QuitSignal signal) override;
    bool isRunning(const ProcessIdentity& process) override;
    void release(const ProcessIdentity&) override {}
    std::optional<ProcessDetails> details(const ProcessIdentity& process) override;

private:
    bool sameProcess(const ProcessIdentity& identity, const Process& process) const;

    std::map<std::int32_t, Process> processes_;
    std::vector<std::pair<std::int32_t, QuitSignal>> sent_;
};

}  // namespace trotlet::processes
