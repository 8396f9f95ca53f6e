#pragma once

#include <string>
#include <vector>

#include "layout/BentoPacker.h"
#include "layout/OverviewCardRegistry.h"
#include "layout/OverviewLayout.h"

namespace trotlet::layout {

// The properties every packed Overview must have, checked from the outside: it recomputes the
// lanes and free cells itself rather than asking the packer, so a packer fault shows here.
struct LayoutFitCheck {
    struct Findings {
        std::vector<std::string> overlapOrOverflow;
        std::vector<std::string> wrongSpan;
        std::vector<std::string> holeAbove;  // "<id> fits a hole at col … row … above its slot (col … row …)"
        std::vector<std::string> offLane;
        std::vector<std::string> badHoles;   // `holes` not exactly the free cells of the packed rows

        bool clean() const {
            return overlapOrOverflow.empty() && wrongSpan.empty() && holeAbove.empty() &&
                   offLane.empty() && badHoles.empty();
        }
    };

    // `items` is what was packed, in order; `layout` and `registry` give each card's size and
    // the span that size must have.
    static Findings check(const BentoPacker::Result& result,
                          const std::vector<BentoPacker::Item>& items,
                          const OverviewLayout& layout, const OverviewCardRegistry& registry);
};

}  // namespace trotlet::layout
