#include "layout/OverviewCardKind.h"

#include <algorithm>

namespace trotlet::layout {

bool OverviewCardKind::supports(CardSize size) const {
    return std::find(sizes.begin(), sizes.end(), size) != sizes.end();
}

GridSpan OverviewCardKind::span(CardSize size) const {
    for (const auto& [overridden, span] : spanOverrides)
        if (overridden == size) return span;
    return standardSpan(size);
}

}  // namespace trotlet::layout
