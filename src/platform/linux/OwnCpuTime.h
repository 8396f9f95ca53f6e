#pragma once

#include <sys/resource.h>

namespace trotlet::platform {

// CPU time this process has used so far, user and system together, in seconds.
inline double ownCpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

}  // namespace trotlet::platform
