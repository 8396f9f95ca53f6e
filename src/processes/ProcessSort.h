#pragma once

#include <array>
#include <string_view>

#include "metrics/MetricsSnapshot.h"

namespace trotlet::processes {

// The Processes list's columns, in the order they are shown.
enum class ProcessColumn { name, cpu, memory, threads, user };
inline constexpr std::array<std::string_view, 5> ProcessColumnNames = {"name", "cpu", "memory",
                                                                       "threads", "user"};

struct ProcessSort {
    ProcessColumn column = ProcessColumn::cpu;
    bool descending = true;

    // Numbers start with the largest, names with A.
    static bool descendingByDefault(ProcessColumn column);
    // Choosing the sorted column again turns its order round; another column starts in its
    // own default direction.
    ProcessSort choosing(ProcessColumn chosen) const;

    bool operator==(const ProcessSort&) const = default;
};

// Whether `a` is listed before `b`. Ties fall back to the name, then the PID, so processes with
// equal readings (most sit at 0% CPU) keep one order from sample to sample instead of
// shuffling. Absent readings go last whichever way the column runs.
bool sortsBefore(const metrics::ProcessRow& a, const metrics::ProcessRow& b,
                 const ProcessSort& sort);

// The same process in two samples: the PID, and the start time when both rows know it (a PID
// that the kernel handed to a newer process names another process).
bool sameProcess(const metrics::ProcessRow& a, const metrics::ProcessRow& b);

}  // namespace trotlet::processes
