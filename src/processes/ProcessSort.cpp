#include "processes/ProcessSort.h"

#include <cctype>

namespace trotlet::processes {
namespace {

// -1, 0 or 1 for two names compared without regard to ASCII case.
int compareNames(std::string_view a, std::string_view b) {
    const std::size_t n = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < n; ++i) {
        const int x = std::tolower(static_cast<unsigned char>(a[i]));
        const int y = std::tolower(static_cast<unsigned char>(b[i]));
        if (x != y) return x < y ? -1 : 1;
    }
    return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

template <typename T>
int compareValues(const T& a, const T& b) {
    return a < b ? -1 : (b < a ? 1 : 0);
}

// Absent readings compare as "missing", which the caller puts last in either direction.
template <typename T>
int compareOptional(const std::optional<T>& a, const std::optional<T>& b, bool& missing) {
    if (a && b) return compareValues(*a, *b);
    if (!a && !b) return 0;
    missing = true;
    return a ? -1 : 1;  // the present one first
}

}  // namespace

bool ProcessSort::descendingByDefault(ProcessColumn column) {
    return column == ProcessColumn::cpu || column == ProcessColumn::memory ||
           column == ProcessColumn::threads;
}

ProcessSort ProcessSort::choosing(ProcessColumn chosen) const {
    if (chosen == column) return {column, !descending};
    return {chosen, descendingByDefault(chosen)};
}

bool sortsBefore(const metrics::ProcessRow& a, const metrics::ProcessRow& b,
                 const ProcessSort& sort) {
    int order = 0;
    bool missing = false;
    switch (sort.column) {
        case ProcessColumn::name:
            order = compareNames(a.name, b.name);
            break;
        case ProcessColumn::cpu:
            order = compareValues(a.cpuPercent, b.cpuPercent);
            break;
        case ProcessColumn::memory:
            order = compareValues(a.memoryBytes, b.memoryBytes);
            break;
        case ProcessColumn::threads:
            order = compareOptional(a.threads, b.threads, missing);
            break;
        case ProcessColumn::user:
            if (a.user && b.user)
                order = compareNames(*a.user, *b.user);
            else
                order = compareOptional(a.user, b.user, missing);
            break;
    }
    if (order != 0) return missing ? order < 0 : (sort.descending ? order > 0 : order < 0);
    if (sort.column != ProcessColumn::name)
        if (const int byName = compareNames(a.name, b.name)) return byName < 0;
    return a.pid < b.pid;
}

bool sameProcess(const metrics::ProcessRow& a, const metrics::ProcessRow& b) {
    return a.pid == b.pid && (!a.startTicks || !b.startTicks || *a.startTicks == *b.startTicks);
}

}  // namespace trotlet::processes
