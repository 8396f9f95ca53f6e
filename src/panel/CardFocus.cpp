#include "panel/CardFocus.h"

#include <cmath>
#include <limits>

namespace trotlet::panel {

std::optional<std::string> focusNeighbour(const std::string& id, layout::MoveDirection direction,
                                          const layout::Frames& frames) {
    const auto self = frames.find(id);
    if (self == frames.end()) return std::nullopt;
    const layout::PointRect& from = self->second;
    const bool vertical =
        direction == layout::MoveDirection::up || direction == layout::MoveDirection::down;

    std::optional<std::string> best;
    // Cards that share the band win over any that do not; then the smaller gap, then the
    // closer centre across.
    double bestScore = std::numeric_limits<double>::infinity();
    for (const auto& [otherId, to] : frames) {
        if (otherId == id) continue;
        double gap = 0;
        switch (direction) {
            case layout::MoveDirection::left:
                gap = from.x - to.maxX();
                break;
            case layout::MoveDirection::right:
                gap = to.x - from.maxX();
                break;
            case layout::MoveDirection::up:
                gap = from.y - to.maxY();
                break;
            case layout::MoveDirection::down:
                gap = to.y - from.maxY();
                break;
        }
        if (gap < 0) continue;
        const bool shares = vertical ? to.x < from.maxX() && from.x < to.maxX()
                                     : to.y < from.maxY() && from.y < to.maxY();
        const double across =
            vertical ? std::abs(to.midX() - from.midX()) : std::abs(to.midY() - from.midY());
        const double score = (shares ? 0 : 1e6) + gap * 1e3 + across;
        if (score < bestScore) {
            bestScore = score;
            best = otherId;
        }
    }
    return best;
}

}  // namespace trotlet::panel
