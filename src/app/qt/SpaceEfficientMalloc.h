#pragma once

namespace trotlet::app {

// The allocator switch, first thing at entry.
struct SpaceEfficientMalloc {
    static void adopt(char** argv);
};

}  // namespace trotlet::app
