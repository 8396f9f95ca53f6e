#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "metrics/MetricsSnapshot.h"

namespace trotlet::processes {

// The process a user saw in a sample: its PID and when it started, so that a later process
// given the same PID is never mistaken for it.
struct ProcessIdentity {
    std::int32_t pid = 0;
    std::optional<std::uint64_t> startTicks;

    static ProcessIdentity of(const metrics::ProcessRow& row) { return {row.pid, row.startTicks}; }
    bool operator==(const ProcessIdentity&) const = default;
};

enum class QuitSignal { terminate, kill };

// What became of a signal.
enum class SignalOutcome {
    sent,
    gone,      // the process had already ended
    replaced,  // the PID now belongs to a newer process, which was left alone
    denied,    // not the user's to signal
    failed,    // anything else (the process could not be checked)
};

// What a row's details show beyond the sample.
struct ProcessDetails {
    std::optional<std::string> commandLine;  // arguments joined by spaces
    std::optional<metrics::Timestamp> startTime;
};

// Signals processes and reads their details. The real one (Linux) holds each process it acts on
// by a handle that cannot be redirected to a newer process; the simulated one plays processes in
// memory for tests, scenes and fixture sessions.
class ProcessControl {
public:
    virtual ~ProcessControl() = default;

    virtual SignalOutcome send(const ProcessIdentity& process, QuitSignal signal) = 0;
    // False once the process has ended (or its PID names another process).
    virtual bool isRunning(const ProcessIdentity& process) = 0;
    // Lets go of whatever is kept for the process.
    virtual void release(const ProcessIdentity& process) = 0;
    // Absent when the process has ended or cannot be read.
    virtual std::optional<ProcessDetails> details(const ProcessIdentity& process) = 0;
};

}  // namespace trotlet::processes
