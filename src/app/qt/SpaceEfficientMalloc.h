#pragma once

namespace trotlet::app {

// The allocator switch, first thing at entry: may replace the process image once with the
// same executable and arguments and allocator settings in the environment (see MallocSwitch.h).
struct SpaceEfficientMalloc {
    static void adopt(char** argv);
};

}  // namespace trotlet::app
