#include "processes/SimulatedProcessControl.h"

namespace trotlet::processes {

bool SimulatedProcessControl::sameProcess(const ProcessIdentity& identity,
                                          const Process& process) const {
    return !identity.startTicks || !process.startTicks ||
           *identity.startTicks == *process.startTicks;
}

SignalOutcome SimulatedProcessControl::send(const ProcessIdentity& identity, QuitSignal signal) {
    Process& p = processes_[identity.pid];
    if (!p.running) return SignalOutcome::gone;
    if (!sameProcess(identity, p)) return SignalOutcome::replaced;
    if (p.denies) return SignalOutcome::denied;
    sent_.emplace_back(identity.pid, signal);
    if (signal == QuitSignal::kill || !p.ignoresTerminate) p.running = false;
    return SignalOutcome::sent;
}

bool SimulatedProcessControl::isRunning(const ProcessIdentity& identity) {
    const auto it = processes_.find(identity.pid);
    if (it == processes_.end()) return true;
    return it->second.running && sameProcess(identity, it->second);
}

std::optional<ProcessDetails> SimulatedProcessControl::details(const ProcessIdentity& identity) {
    const auto it = processes_.find(identity.pid);
    if (it == processes_.end()) return ProcessDetails{};
    if (!it->second.running || !sameProcess(identity, it->second)) return std::nullopt;
    return it->second.details;
}

}  // namespace trotlet::processes
