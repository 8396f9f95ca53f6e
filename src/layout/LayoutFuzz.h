#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "layout/OverviewCardKind.h"
#include "layout/OverviewCardRegistry.h"
#include "layout/OverviewLayout.h"

namespace trotlet::layout {

// Seeded random layouts and random edit sequences, each result checked for the packing
// properties and the edit rules. Draws only from the generator's raw output (no library
// distribution), so a seed gives the same run with every standard library.
class LayoutFuzz {
public:
    struct Failure {
        std::string message;               // the harness's failure message
        std::vector<std::string> details;  // the first few cases, "layout #12: ..."
        int count = 0;
    };

    struct Totals {
        int layouts = 0;
        int cards = 0;          // cards packed, over all layouts and edits
        int edits = 0;          // edit operations applied
        int keyboardMoves = 0;  // ⌥ moves tried
        int blockedMoves = 0;   // of those, blocked (top row, nothing that way)
        std::vector<Failure> failures;  // in the order first seen
    };

    explicit LayoutFuzz(uint32_t seed, const OverviewCardRegistry& registry);

    // A document as a user or a damaged file might hold it: registry cards in a random order
    // at random sizes, some hidden, now and then an unknown id, a repeat or a missing card.
    OverviewLayout randomDocument();
    // Which cards this machine shows: each available with probability 9/10.
    Availability randomAvailability();

    Totals run(int layouts, int editsPerLayout);

private:
    uint32_t below(uint32_t bound) { return static_cast<uint32_t>(rng() % bound); }
    void checkPacking(const OverviewLayout& layout, const Availability& available,
                      const std::string& where, Totals& totals);
    void checkKeyboard(const OverviewLayout& layout, const Availability& available,
                       const std::string& where, Totals& totals);
    OverviewLayout randomEdit(const OverviewLayout& layout, const Availability& available);

    std::mt19937 rng;
    const OverviewCardRegistry& registry;
};

}  // namespace trotlet::layout
